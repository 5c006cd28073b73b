// The value families the program can make by name ("Numeric:U32", "String",
// ...), for encode, and the names it shows for the two type bytes of a record.
#ifndef ORU_TOOL_FAMILIES_H
#define ORU_TOOL_FAMILIES_H

#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

#include <legacy/oru/oru.h>

namespace OruTool {

struct Family {
    std::string name;
    std::uint8_t typeByte;
    std::uint8_t numericTypeByte;
    // A new Item of the family with that id and the family's default value.
    Legacy::Oru::ItemBase* (*makeItem)(unsigned int id);
    // The Info that text is read against, or null where the family reads none.
    Legacy::Oru::InfoBase* (*makeInfo)(unsigned int id);
    // For a family without a text input of its own: reads the value from the
    // VALUE arguments, one per element or child; false with a message else.
    bool (*readArgs)(Legacy::Oru::ItemBase& item, std::vector<std::string> const& values,
                     std::ostream& errors) = nullptr;
    // How the VALUE arguments are read, and an example, for the help text.
    char const* valueHelp = nullptr;
    char const* example = nullptr;
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
