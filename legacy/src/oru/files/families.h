// The family vocabulary of settings files: the texts of the type words, and
// the table of the families a description may name, each with its Info class.
#ifndef LEGACY_ORU_FILES_SRC_FAMILIES_H
#define LEGACY_ORU_FILES_SRC_FAMILIES_H

#include <string>
#include <type_traits>
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

namespace Detail {

template <class Concrete, class Base, class F>
bool VisitAs(Base& info, F& visit) {
    using Target = std::conditional_t<std::is_const<Base>::value, Concrete const, Concrete>;
    if (auto* const concrete = dynamic_cast<Target*>(&info)) {
        visit(*concrete);
        return true;
    }
    return false;
}

}  // namespace Detail

// Calls visit with info as its own Info class; false for a class outside the
// table. Base is InfoBase or InfoBase const.
template <class Base, class F>
bool VisitInfo(Base& info, F&& visit) {
#define ORU_FILES_VISIT_NUMERIC(T)                            \
    if (Detail::VisitAs<NumericInfo<T>>(info, visit) ||       \
        Detail::VisitAs<NumericArrayInfo<T>>(info, visit) ||  \
        Detail::VisitAs<NumericSparseInfo<T>>(info, visit)) { \
        return true;                                          \
    }
    LEGACY_ORU_FOR_EACH_NUMERIC_TRAITS(ORU_FILES_VISIT_NUMERIC)
#undef ORU_FILES_VISIT_NUMERIC
#define ORU_FILES_VISIT_GEOMETRY(T)                        \
    if (Detail::VisitAs<CoordinateInfo<T>>(info, visit) || \
        Detail::VisitAs<RectInfo<T>>(info, visit)) {       \
        return true;                                       \
    }
    LEGACY_ORU_FOR_EACH_GEOMETRY_TRAITS(ORU_FILES_VISIT_GEOMETRY)
#undef ORU_FILES_VISIT_GEOMETRY
    return Detail::VisitAs<RectArrayInfo<U16Traits>>(info, visit) ||
           Detail::VisitAs<BoolInfo>(info, visit) || Detail::VisitAs<BoolArrayInfo>(info, visit) ||
           Detail::VisitAs<EnumInfo>(info, visit) || Detail::VisitAs<StringInfo>(info, visit) ||
           Detail::VisitAs<StringArrayInfo>(info, visit) ||
           Detail::VisitAs<StringSparseInfo>(info, visit) ||
           Detail::VisitAs<ColourInfo>(info, visit) || Detail::VisitAs<AddrInfo>(info, visit) ||
           Detail::VisitAs<EndpointInfo>(info, visit) ||
           Detail::VisitAs<AppEndpointInfo>(info, visit) ||
           Detail::VisitAs<AppEndpointArrayInfo>(info, visit) ||
           Detail::VisitAs<CompositeInfo>(info, visit) ||
           Detail::VisitAs<CollectionInfo>(info, visit) ||
           Detail::VisitAs<ExtendedInfo>(info, visit) ||
           Detail::VisitAs<LocalizedStringInfo>(info, visit);
}

}  // namespace Files
}  // namespace Oru
}  // namespace Legacy

#endif
