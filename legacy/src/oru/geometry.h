// Shared by the coordinate and rectangle families: the dispatch over their
// three element types, for the conversions that take a source of another
// element type, and the moves over their two parts (x and y, or the corners).
#ifndef LEGACY_ORU_SRC_GEOMETRY_H
#define LEGACY_ORU_SRC_GEOMETRY_H

#include <ostream>
#include <type_traits>

#include <boost/intrusive_ptr.hpp>

#include <legacy/oru/infobase.h>
#include <legacy/oru/itembase.h>
#include <legacy/oru/types.h>

#include "codes.h"
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

// AssignValue of two Info parts: both are always assigned, the first negative
// code wins, and `changed` is written only on success.
template <class Part>
int AssignInfoParts(Part const& first, Part const& second,
                    boost::intrusive_ptr<InfoBase const> const& sourceFirst,
                    boost::intrusive_ptr<InfoBase const> const& sourceSecond, bool* changed) {
    bool firstChanged = false;
    bool secondChanged = false;
    int const firstCode = first->AssignValue(sourceFirst, &firstChanged);
    int const secondCode = second->AssignValue(sourceSecond, &secondChanged);
    if (firstCode < 0) {
        return firstCode;
    }
    if (secondCode < 0) {
        return secondCode;
    }
    if (changed) {
        *changed = firstChanged || secondChanged;
    }
    return 0;
}

// AssignArrayValue of two Item parts with index 0: both are always assigned,
// and any failing part answers -26, whatever its own code.
template <class Part>
int AssignItemParts(Part const& first, Part const& second,
                    boost::intrusive_ptr<ItemBase const> const& sourceFirst,
                    boost::intrusive_ptr<ItemBase const> const& sourceSecond, bool* changed) {
    bool firstChanged = false;
    bool secondChanged = false;
    int const firstCode = first->AssignArrayValue(sourceFirst, 0, &firstChanged);
    int const secondCode = second->AssignArrayValue(sourceSecond, 0, &secondChanged);
    if (firstCode < 0 || secondCode < 0) {
        return Codes::k_unsupported;
    }
    if (changed) {
        *changed = firstChanged || secondChanged;
    }
    return 0;
}

// MergeBounds of two Info parts, with no rollback: the first stays merged when
// the second fails.
template <class Part>
int MergePartBounds(Part const& first, Part const& second, Part const& otherFirst,
                    Part const& otherSecond) {
    int const code = first->MergeBounds(otherFirst);
    if (code < 0) {
        return code;
    }
    return second->MergeBounds(otherSecond);
}

// The corner lines of a rectangle Info's dump. "topRight" names the bottom
// right corner: readers of the dump match it.
template <class Corner>
void DumpCorners(std::ostream& out, Corner const& topLeft, Corner const& bottomRight) {
    out << "topLeft: ";
    topLeft.operator<<(out) << std::endl;
    out << "topRight: ";
    bottomRight.operator<<(out) << std::endl;
}

}  // namespace Oru
}  // namespace Legacy

#endif
