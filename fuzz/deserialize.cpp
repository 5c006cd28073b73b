// Reads a flat record through ItemBase::Deserialize. Whatever reads must
// write and read back (but for one known shape of composite, below, whose
// record answers -1); and, unless it carries floating-point values, write the
// same bytes again and read back an equal value. The float and double
// mappings of the wire round on every pass (a large double read, written and
// read again can change), so for those only the reading back is required.
//
// The record is also read into an existing Item of its family that holds a
// known value: a refused record answers a code of the vocabulary and leaves
// that value as it was, but for the two families whose partial state is
// documented (application-endpoint arrays empty first, composites keep the
// children they appended); an accepted one leaves the value that
// ItemBase::Deserialize read, appended to the old one where the family
// appends (string and bool arrays, composites).
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <sstream>
#include <string>
#include <vector>

#include <legacy/oru/oru.h>

#include "families.h"
#include "record.h"
#include "values.h"

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

// A string table can write fewer payload bytes than GetSerialDataSize
// claims (a nine-byte payload against 32), and a composite reader walks to
// the next child by that claim; so a composite that holds such a table before
// another child writes a record that does not read back as written: it
// lands in the padding (-1) or inside a later child. Both numbers stay as
// they are for the peers' sake.
bool HasShortTableBeforeChild(ItemBase const& item) {
    auto const* const composite = dynamic_cast<Legacy::Oru::CompositeItem const*>(&item);
    if (!composite) {
        return false;
    }
    for (std::size_t i = 0; i < composite->GetSize(); ++i) {
        auto const child = composite->GetItem(i);
        if (!child) {
            continue;
        }
        if (child->GetType() == Legacy::Oru::OruType_t::StringSparse &&
            i + 1 < composite->GetSize()) {
            ItemBase::SerialStruct_t record;
            if (child->Serialize(&record) == 0 &&
                record.GetDataSize() != child->GetSerialDataSize()) {
                return true;
            }
        }
        if (HasShortTableBeforeChild(*child)) {
            return true;
        }
    }
    return false;
}

// An Item of the record's family and id holding the family's example value
// (the one `oru encode --help` shows), or null for bytes no family has.
boost::intrusive_ptr<ItemBase> KnownItem(unsigned int id, std::uint8_t type,
                                         std::uint8_t numericType) {
    for (OruTool::Family const& family : OruTool::Families()) {
        if (family.typeByte != type || family.numericTypeByte != numericType) {
            continue;
        }
        std::vector<std::string> words;
        if (family.typeByte == 253) {
            words = {"Numeric:U16 65", "String pcm"};
        } else {
            // The example is written as a shell would take it: 'b c' is one word.
            std::string word;
            bool quoted = false, any = false;
            for (char const c : std::string(family.example ? family.example : "")) {
                if (c == '\'') {
                    quoted = !quoted;
                    any = true;
                } else if (c == ' ' && !quoted) {
                    if (any) {
                        words.push_back(word);
                    }
                    word.clear();
                    any = false;
                } else {
                    word += c;
                    any = true;
                }
            }
            if (any) {
                words.push_back(word);
            }
        }
        boost::intrusive_ptr<ItemBase> item;
        std::string problem;
        if (!OruTool::ReadValue(family, id, words, item, problem)) {
            Fail("a family's example does not read");
        }
        return item;
    }
    return nullptr;
}

// Whether `now` holds the old list with the read one behind it: string and
// bool arrays append what they read to what they hold.
template <class ArrayItem>
bool Appended(ItemBase const& now, ItemBase const& old, ItemBase const& read) {
    auto value = static_cast<ArrayItem const&>(old).GetVal();
    auto const added = static_cast<ArrayItem const&>(read).GetVal();
    value.insert(value.end(), added.begin(), added.end());
    return static_cast<ArrayItem const&>(now).GetVal() == value;
}

void CheckReadIntoExisting(OruFuzz::InputRecord const& input,
                           boost::intrusive_ptr<ItemBase> const& read, int readCode) {
    boost::intrusive_ptr<ItemBase> const existing =
        KnownItem(input.record.GetId(), input.record.type, input.record.numericType);
    if (!existing) {
        return;
    }
    boost::intrusive_ptr<ItemBase const> const old(existing->DeepCopy());
    std::string const oldText = existing->GetValAsString();
    int const code = existing->Deserialize(&input.record);
    auto const type = existing->GetType();
    bool const composite = type == Legacy::Oru::OruType_t::Composite;
    if ((code == 0) != (readCode == 0)) {
        Fail("reading into an existing Item and into a new one disagree");
    }
    if (composite) {
        // Children are appended behind those held, read or refused.
        auto const& now = static_cast<Legacy::Oru::CompositeItem const&>(*existing);
        auto const& before = static_cast<Legacy::Oru::CompositeItem const&>(*old);
        if (now.GetSize() < before.GetSize()) {
            Fail("a composite lost children it held");
        }
        for (std::size_t i = 0; i < before.GetSize(); ++i) {
            if (!now.GetItem(i)->IsEqualValue(before.GetItem(i))) {
                Fail("a composite changed a child it held");
            }
        }
        if (code == 0 &&
            now.GetSize() != before.GetSize() +
                                 static_cast<Legacy::Oru::CompositeItem const&>(*read).GetSize()) {
            Fail("a composite did not append every child it read");
        }
        if (code != 0 && code != -1 && code != -41) {
            Fail("a composite refused a record with a code of no meaning here");
        }
        return;
    }
    if (code == 0 && type == Legacy::Oru::OruType_t::StringArray) {
        if (!Appended<Legacy::Oru::StringArrayItem>(*existing, *old, *read)) {
            Fail("a string array did not append what it read");
        }
        return;
    }
    if (code == 0 && type == Legacy::Oru::OruType_t::BoolArray) {
        if (!Appended<Legacy::Oru::BoolArrayItem>(*existing, *old, *read)) {
            Fail("a bool array did not append what it read");
        }
        return;
    }
    if (code == 0) {
        if (existing->GetValAsString() != read->GetValAsString()) {
            Fail("an existing Item read another value than a new one");
        }
        return;
    }
    if (code != -41) {
        Fail("a refused record answered another code than -41");
    }
    if (type != Legacy::Oru::OruType_t::AppEndpointArray &&
        (!existing->IsEqualValue(old) || existing->GetValAsString() != oldText)) {
        Fail("a refused record changed the value held");
    }
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
    int const code = ItemBase::Deserialize(&input.record, item);
    CheckReadIntoExisting(input, item, code);
    if (code != 0) {
        return 0;
    }
    ItemBase::SerialStruct_t first;
    if (item->Serialize(&first) != 0) {
        Fail("an item that read does not write");
    }
    ItemBase::ConstSerialStruct_t const firstView(first);
    boost::intrusive_ptr<ItemBase> second;
    int const secondCode = ItemBase::Deserialize(&firstView, second);
    if (HasShortTableBeforeChild(*item)) {
        // The reader walks on by the table's claim, into the padding (-1) or
        // into the bytes of a later child, which may read as anything.
        if (secondCode != -1 && secondCode != 0) {
            Fail("a composite with a short string table answered another code than -1");
        }
        return 0;
    }
    if (secondCode != 0) {
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
