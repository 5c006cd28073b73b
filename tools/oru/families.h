// The value families the program can make by name ("Numeric:U32", "String",
// ...), for encode, and the names it shows for the two type bytes of a
// record. The families are the model's catalogue; what the program adds to
// each (how its VALUE words read, an example) is an overload set over the
// catalogue's classes, in families.cpp and values.cpp.
#ifndef ORU_TOOL_FAMILIES_H
#define ORU_TOOL_FAMILIES_H

#include <cstdint>
#include <string>
#include <vector>

#include <legacy/oru/catalogue.h>

namespace OruTool {

struct Family {
    // The catalogue's row: name, type bytes and factories.
    Legacy::Oru::Catalogue::Family const* row;
    // "Numeric:U32".
    std::string name;
    std::uint8_t typeByte;
    std::uint8_t numericTypeByte;
    // How the VALUE arguments are read, and an example, for the help text.
    char const* valueHelp;
    char const* example;
};

// Every family with a serial form, in the order of their type bytes.
std::vector<Family> const& Families();

// The family of that name, case ignored; null if there is none.
Family const* FindFamily(std::string const& name);

// "Numeric:U32" for the bytes of a known family, else the type's own text
// with the element, or "type 0xNN" for a byte no family has.
std::string FamilyName(std::uint8_t typeByte, std::uint8_t numericTypeByte);

}  // namespace OruTool

#endif
