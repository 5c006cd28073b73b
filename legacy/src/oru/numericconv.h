// Numeric conversion across element types, by the source's NumericType_t:
// the one switch over element types that the numeric families share.
#ifndef LEGACY_ORU_SRC_NUMERICCONV_H
#define LEGACY_ORU_SRC_NUMERICCONV_H

#include <cmath>
#include <limits>
#include <type_traits>

#include <legacy/oru/traits.h>
#include <legacy/oru/types.h>

#include "serialcodec.h"

namespace Legacy {
namespace Oru {

template <class T>
struct TraitsTag {
    using Traits = T;
};

// Calls visit(TraitsTag<S>{}) for the traits class S of the element type and
// answers true; false for a value outside 1 to 10.
template <class Visitor>
bool VisitNumericType(NumericType_t type, Visitor&& visit) {
    switch (type) {
        case NumericType_t::U8:
            visit(TraitsTag<U8Traits>{});
            return true;
        case NumericType_t::S8:
            visit(TraitsTag<S8Traits>{});
            return true;
        case NumericType_t::U16:
            visit(TraitsTag<U16Traits>{});
            return true;
        case NumericType_t::S16:
            visit(TraitsTag<S16Traits>{});
            return true;
        case NumericType_t::U32:
            visit(TraitsTag<U32Traits>{});
            return true;
        case NumericType_t::S32:
            visit(TraitsTag<S32Traits>{});
            return true;
        case NumericType_t::U64:
            visit(TraitsTag<U64Traits>{});
            return true;
        case NumericType_t::S64:
            visit(TraitsTag<S64Traits>{});
            return true;
        case NumericType_t::Float:
            visit(TraitsTag<FloatTraits>{});
            return true;
        case NumericType_t::Double:
            visit(TraitsTag<DoubleTraits>{});
            return true;
        default:
            return false;
    }
}

// Plain numeric conversion: integers keep their low bits, floating-point
// numbers are truncated toward zero. Out-of-range floating values give what
// the processor's truncation gives rather than undefined behaviour.
template <class To, class From>
To ConvertNumber(From value) noexcept {
    if constexpr (std::is_floating_point<From>::value && std::is_integral<To>::value) {
        if constexpr (std::is_same<To, unsigned long long>::value) {
            constexpr From two63 = From(9223372036854775808.0);
            if (value >= two63) {
                return static_cast<To>(Serial::TruncateToInt64(value - two63)) | (To(1) << 63);
            }
        }
        return static_cast<To>(Serial::TruncateToInt64(value));
    } else if constexpr (std::is_same<To, float>::value && std::is_same<From, double>::value) {
        if (std::isfinite(value) && std::fabs(value) > std::numeric_limits<float>::max()) {
            return value > 0 ? std::numeric_limits<float>::infinity()
                             : -std::numeric_limits<float>::infinity();
        }
        return static_cast<float>(value);
    } else {
        return static_cast<To>(value);
    }
}

}  // namespace Oru
}  // namespace Legacy

#endif
