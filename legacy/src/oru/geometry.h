// Dispatch over the three element types of the coordinate and rectangle
// families, for the conversions that take a source of another element type.
#ifndef LEGACY_ORU_SRC_GEOMETRY_H
#define LEGACY_ORU_SRC_GEOMETRY_H

#include <type_traits>

#include <legacy/oru/types.h>

#include "numericconv.h"

namespace Legacy {
namespace Oru {

// The traits classes that coordinates and rectangles are made for.
template <class S>
struct IsGeometryTraits : std::integral_constant<bool, std::is_same<S, U16Traits>::value ||
                                                           std::is_same<S, S32Traits>::value ||
                                                           std::is_same<S, FloatTraits>::value> {};

// Calls visit(TraitsTag<S>{}) for U16, S32 or Float and answers true; false
// for any other element type, which these families do not exist for.
template <class Visitor>
bool VisitGeometryType(NumericType_t type, Visitor&& visit) {
    bool known = false;
    VisitNumericType(type, [&](auto tag) {
        using S = typename decltype(tag)::Traits;
        if constexpr (IsGeometryTraits<S>::value) {
            visit(tag);
            known = true;
        }
    });
    return known;
}

// Calls visit(from) with `source` as Family<S> for its own element type S;
// false if it is no such object.
template <template <class> class Family, class Base, class Visitor>
bool VisitGeometry(Base const& source, Visitor&& visit) {
    bool found = false;
    VisitGeometryType(source.GetNumericType(), [&](auto tag) {
        using S = typename decltype(tag)::Traits;
        if (auto const* const from = dynamic_cast<Family<S> const*>(&source)) {
            visit(*from);
            found = true;
        }
    });
    return found;
}

}  // namespace Oru
}  // namespace Legacy

#endif
