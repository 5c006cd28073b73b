// The labelled lines of DumpVal, shared by every family: one field per line,
// each closed by a newline and a flush.
#ifndef LEGACY_ORU_SRC_DUMP_H
#define LEGACY_ORU_SRC_DUMP_H

#include <ostream>

#include <legacy/oru/infobase.h>
#include <legacy/oru/itembase.h>

#include "typetext.h"

namespace Legacy {
namespace Oru {
namespace Dump {

template <class V>
void Line(std::ostream& out, char const* label, V const& value) {
    out << label << value << std::endl;
}

// "id: ", "permission: ", "name: ", "type: ".
inline void InfoHead(std::ostream& out, InfoBase const& info) {
    Line(out, "id: ", info.GetId());
    Line(out, "permission: ", info.GetPermission().Value());
    Line(out, "name: ", info.GetName());
    Line(out, "type: ", info.GetType());
}

// InfoHead, then "numericType: ".
inline void NumericInfoHead(std::ostream& out, InfoBase const& info) {
    InfoHead(out, info);
    Line(out, "numericType: ", info.GetNumericType());
}

// "id: ", "type: ".
inline void ItemHead(std::ostream& out, ItemBase const& item) {
    Line(out, "id: ", item.GetId());
    Line(out, "type: ", item.GetType());
}

}  // namespace Dump
}  // namespace Oru
}  // namespace Legacy

#endif
