// Reads text into an Item of a family that the first byte picks. Whatever
// the text, nothing crashes, and a refused text leaves the value as it was.
#include <cstdint>
#include <sstream>
#include <string>

#include <legacy/oru/oru.h>

#include "families.h"

using Legacy::Oru::InfoBase;
using Legacy::Oru::ItemBase;

namespace {

// The value by its record bytes, which a failed read must not change.
std::string State(ItemBase const& item) {
    ItemBase::SerialStruct_t record;
    if (item.Serialize(&record) != 0) {
        return item.GetValAsString();
    }
    return std::string(reinterpret_cast<char const*>(record.GetData()), record.GetDataSize());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    if (size < 1) {
        return 0;
    }
    auto const& families = OruTool::Families();
    OruTool::Family const& family = families[data[0] % families.size()];
    boost::intrusive_ptr<ItemBase> item(family.makeItem(0x420C0005));
    boost::intrusive_ptr<InfoBase const> info(family.makeInfo ? family.makeInfo(0x420C0005)
                                                              : nullptr);
    std::string const before = State(*item);
    std::istringstream in(std::string(reinterpret_cast<char const*>(data + 1), size - 1));
    std::ostringstream errors;
    // Coordinates, rectangles and their arrays read part by part and keep
    // what was read before a failure, as callers of those families expect;
    // every other family reads all or nothing.
    bool const partsStay =
        family.typeByte == 129 || family.typeByte == 130 || family.typeByte == 141;
    if (!item->SetValFromStream(in, errors, info) && !partsStay) {
        if (State(*item) != before) {
            __builtin_trap();
        }
    }
    return 0;
}
