// Reads a flat record through ItemBase::Deserialize. Whatever reads must
// write and read back (but for one known shape of composite, below); and,
// unless it carries floating-point values, write the same bytes again and
// read back an equal value. The float and double mappings of the wire round
// on every pass (a large double read, written and read again can change), so
// for those only the reading back is required.
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <legacy/oru/oru.h>

#include "record.h"

namespace {

using Legacy::Oru::ItemBase;

// Says which promise broke, so that a crash report names it.
[[noreturn]] void Fail(char const* what) {
    std::fprintf(stderr, "deserialize: %s\n", what);
    __builtin_trap();
}

// Floating values anywhere in the item, children of composites included.
bool HasFloatingValues(ItemBase const& item) {
    auto const type = static_cast<unsigned>(item.GetType());
    auto const element = item.GetNumericType();
    if (type == 128 || type == 131 || element == Legacy::Oru::NumericType_t::Float ||
        element == Legacy::Oru::NumericType_t::Double) {
        return true;
    }
    if (auto const* const composite = dynamic_cast<Legacy::Oru::CompositeItem const*>(&item)) {
        for (std::size_t i = 0; i < composite->GetSize(); ++i) {
            auto const child = composite->GetItem(i);
            if (child && HasFloatingValues(*child)) {
                return true;
            }
        }
    }
    return false;
}

// A string table writes a nine-byte payload but claims 32 in
// GetSerialDataSize, and a composite reader walks to the next child by that
// claim; so a composite that holds one before another child writes a record
// it cannot read back. Both numbers stay as they are for the peers' sake.
bool HasStringTableBeforeChild(ItemBase const& item) {
    auto const* const composite = dynamic_cast<Legacy::Oru::CompositeItem const*>(&item);
    if (!composite) {
        return false;
    }
    for (std::size_t i = 0; i < composite->GetSize(); ++i) {
        auto const child = composite->GetItem(i);
        if (!child) {
            continue;
        }
        if ((child->GetType() == Legacy::Oru::OruType_t::StringSparse &&
             i + 1 < composite->GetSize()) ||
            HasStringTableBeforeChild(*child)) {
            return true;
        }
    }
    return false;
}

bool SameBytes(ItemBase::SerialStruct_t const& a, ItemBase::SerialStruct_t const& b) {
    return a.GetId() == b.GetId() && a.GetDataSize() == b.GetDataSize() && a.type == b.type &&
           a.numericType == b.numericType &&
           (a.GetDataSize() == 0 || std::memcmp(a.GetData(), b.GetData(), a.GetDataSize()) == 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    OruFuzz::InputRecord input;
    if (!OruFuzz::MakeRecord(data, size, input)) {
        return 0;
    }
    boost::intrusive_ptr<ItemBase> item;
    if (ItemBase::Deserialize(&input.record, item) != 0) {
        return 0;
    }
    ItemBase::SerialStruct_t first;
    if (item->Serialize(&first) != 0) {
        Fail("an item that read does not write");
    }
    if (HasStringTableBeforeChild(*item)) {
        return 0;
    }
    ItemBase::ConstSerialStruct_t const firstView(first);
    boost::intrusive_ptr<ItemBase> second;
    if (ItemBase::Deserialize(&firstView, second) != 0) {
        Fail("a written record does not read back");
    }
    ItemBase::SerialStruct_t again;
    if (second->Serialize(&again) != 0) {
        Fail("a record read back does not write");
    }
    bool const exact = !HasFloatingValues(*second);
    if (exact && !SameBytes(first, again)) {
        Fail("a record read back writes other bytes");
    }
    ItemBase::ConstSerialStruct_t const againView(again);
    boost::intrusive_ptr<ItemBase> third;
    if (ItemBase::Deserialize(&againView, third) != 0) {
        Fail("the second record does not read back");
    }
    if (exact && !second->IsEqualValue(third)) {
        Fail("two reads of one record differ in value");
    }
    return 0;
}
