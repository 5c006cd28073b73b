// Reads text into an Item of a family that the first byte picks. Whatever
// the text, nothing crashes, and a refused text leaves the value as it was.
// A value that was read is written as text and read back, through the
// program's reader that takes what the library prints, to the same text:
// for the families whose values are numbers and flags, whose printed form
// is not ambiguous (a printed string list cannot tell its commas apart).
#include <algorithm>
#include <cstdint>
#include <sstream>
#include <string>

#include <legacy/oru/oru.h>

#include "families.h"
#include "values.h"

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

// For a composite: an Info of up to four children, their families picked by
// the bytes after the count; `used` says how many bytes the shape took.
boost::intrusive_ptr<InfoBase const> CompositeShape(std::uint8_t const* data, std::size_t size,
                                                    std::size_t& used) {
    auto const& families = OruTool::Families();
    boost::intrusive_ptr<Legacy::Oru::CompositeInfo> info(
        new Legacy::Oru::CompositeInfo(0x420C0005, "c", Legacy::Oru::Permission_t()));
    used = 0;
    if (size == 0) {
        return info;
    }
    std::size_t const count = std::min<std::size_t>(data[0] % 5, size - 1);
    used = 1 + count;
    for (std::size_t i = 0; i < count; ++i) {
        OruTool::Family const& child = families[data[1 + i] % families.size()];
        if (child.typeByte == 253) {
            // A nested composite gets no Info from its parent and refuses.
            info->AddInfo(boost::intrusive_ptr<InfoBase>(
                new Legacy::Oru::CompositeInfo(0x420C0006 + i, "n", Legacy::Oru::Permission_t())));
        } else if (child.row->makeInfo) {
            info->AddInfo(boost::intrusive_ptr<InfoBase>(
                child.row->makeInfo(0x420C0006 + i, "", Legacy::Oru::Permission_t())));
        }
    }
    return info;
}

// Families whose printed value reads back: numbers, flags, their arrays.
bool PrintedFormReadsBack(OruTool::Family const& family) {
    std::string const prefix = family.name.substr(0, family.name.find(':'));
    for (char const* name : {"Bool", "Numeric", "NumericArray", "NumericSparse", "Enum",
                             "BoolArray", "Colour", "Coordinate", "Rectangle", "RectArray"}) {
        if (prefix == name) {
            return true;
        }
    }
    return false;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    if (size < 1) {
        return 0;
    }
    auto const& families = OruTool::Families();
    OruTool::Family const& family = families[data[0] % families.size()];
    bool const composite = family.typeByte == 253;
    std::size_t used = 0;
    boost::intrusive_ptr<ItemBase> item(family.row->makeItem(0x420C0005));
    boost::intrusive_ptr<InfoBase const> info;
    if (composite) {
        // A composite reads in the shape of its Info, so the input gives one.
        info = CompositeShape(data + 1, size - 1, used);
    } else if (family.row->makeInfo) {
        info.reset(family.row->makeInfo(0x420C0005, "", Legacy::Oru::Permission_t()));
    }
    std::string const before = State(*item);
    std::istringstream in(
        std::string(reinterpret_cast<char const*>(data + 1 + used), size - 1 - used));
    std::ostringstream errors;
    // Coordinates, rectangles, their arrays and composites read part by part
    // and keep what was read before a failure, as callers of those families
    // expect; every other family reads all or nothing.
    bool const partsStay =
        composite || family.typeByte == 129 || family.typeByte == 130 || family.typeByte == 141;
    bool const read = item->SetValFromStream(in, errors, info);
    if (!read && !partsStay && State(*item) != before) {
        __builtin_trap();
    }
    if (read && PrintedFormReadsBack(family)) {
        std::string const printed = item->GetValAsString();
        boost::intrusive_ptr<ItemBase> back;
        std::string problem;
        if (!OruTool::ReadValue(family, 0x420C0005, {printed}, back, problem) ||
            back->GetValAsString() != printed) {
            __builtin_trap();
        }
    }
    if (composite) {
        // Read or not, never more children than the shape has; all of them
        // when it was read.
        auto const& shape = static_cast<Legacy::Oru::CompositeInfo const&>(*info);
        auto const& children = static_cast<Legacy::Oru::CompositeItem const&>(*item);
        if (children.GetSize() > shape.GetSize() ||
            (read && children.GetSize() != shape.GetSize())) {
            __builtin_trap();
        }
    }
    return 0;
}
