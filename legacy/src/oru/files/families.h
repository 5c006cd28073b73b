// The family vocabulary of settings files: the texts of the type words, and
// the table of the families a description may name, each with its Info class.
#ifndef LEGACY_ORU_FILES_SRC_FAMILIES_H
#define LEGACY_ORU_FILES_SRC_FAMILIES_H

#include <string>
#include <vector>

#include <boost/intrusive_ptr.hpp>

#include <legacy/oru/oru.h>

namespace Legacy {
namespace Oru {
namespace Files {

// "Numeric", "Bool", "Invalid" for the families that print no name.
char const* OruTypeText(OruType_t type) noexcept;

// "U32", "Undefined", "Invalid" beyond the table.
char const* NumericTypeText(NumericType_t type) noexcept;

// "Numeric(U32)", "Bool(Undefined)": the type text of check messages.
std::string BracketedTypeText(OruType_t type, NumericType_t numericType);

// One family a description may name: "Numeric:U32" for NumericInfo<U32Traits>.
struct Family {
    std::string name;
    OruType_t type;
    NumericType_t numericType;
    // A new Info of the family with id 0, no name and permission 0.
    InfoBase* (*create)();
};

// Every family with an Info class, in the order `oru encode --families` lists
// them, then those without a serial form.
std::vector<Family> const& Families();

// The family of that exact name, or null.
Family const* FindFamily(std::string const& name);

// The family of an Info, by its type and element type; null for a class
// outside the table.
Family const* FamilyOf(InfoBase const& info);

// Calls visit with info as its own Info class, chosen by its type bytes
// through the catalogue; false for a class outside it. Base is InfoBase or
// InfoBase const.
template <class Base, class F>
bool VisitInfo(Base& info, F&& visit) {
    return Catalogue::VisitInfo(info, visit);
}

}  // namespace Files
}  // namespace Oru
}  // namespace Legacy

#endif
