// Reads a flat record through ItemBase::Deserialize. Whatever reads must
// write, read back, and write the same bytes again: the wire mappings are
// lossy once, then stable.
#include <cstdlib>
#include <cstring>
#include <string>

#include <legacy/oru/oru.h>

#include "record.h"

namespace {

using Legacy::Oru::ItemBase;

[[noreturn]] void Fail(char const* what) {
    __builtin_trap();
    (void)what;
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
    ItemBase::ConstSerialStruct_t const firstView(first);
    boost::intrusive_ptr<ItemBase> second;
    if (ItemBase::Deserialize(&firstView, second) != 0) {
        Fail("a written record does not read back");
    }
    ItemBase::SerialStruct_t again;
    if (second->Serialize(&again) != 0 || !SameBytes(first, again)) {
        Fail("a record read back writes other bytes");
    }
    ItemBase::ConstSerialStruct_t const againView(again);
    boost::intrusive_ptr<ItemBase> third;
    if (ItemBase::Deserialize(&againView, third) != 0) {
        Fail("the second record does not read back");
    }
    // A NaN is equal to nothing, itself included.
    std::string const text = second->GetValAsString();
    if (!second->IsEqualValue(third) && text.find("nan") == std::string::npos) {
        Fail("two reads of one record differ in value");
    }
    return 0;
}
