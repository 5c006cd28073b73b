// Numeric conversion across element types, by the source's NumericType_t:
// the one switch over element types that the numeric families share.
#ifndef LEGACY_ORU_SRC_NUMERICCONV_H
#define LEGACY_ORU_SRC_NUMERICCONV_H

#include <cmath>
#include <limits>
#include <type_traits>

#include <legacy/oru/itembase.h>
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

// A number read from another Item, held in the source's own element type
// until a family converts it to its own.
class SourceNumber {
public:
    SourceNumber() noexcept : type_(NumericType_t::Undefined), s64_(0) {}

    template <class S>
    void Set(typename S::Element value) noexcept {
        type_ = S::k_numericType;
        Store(value);
    }

    // The number converted to E by ConvertNumber.
    template <class E>
    E As() const noexcept {
        E result{};
        VisitNumericType(type_, [&](auto tag) {
            using S = typename decltype(tag)::Traits;
            result = ConvertNumber<E>(Load<typename S::Element>());
        });
        return result;
    }

private:
    void Store(unsigned char v) noexcept { u8_ = v; }
    void Store(signed char v) noexcept { s8_ = v; }
    void Store(unsigned short v) noexcept { u16_ = v; }
    void Store(short v) noexcept { s16_ = v; }
    void Store(unsigned int v) noexcept { u32_ = v; }
    void Store(int v) noexcept { s32_ = v; }
    void Store(unsigned long long v) noexcept { u64_ = v; }
    void Store(long long v) noexcept { s64_ = v; }
    void Store(float v) noexcept { f_ = v; }
    void Store(double v) noexcept { d_ = v; }

    template <class E>
    E Load() const noexcept {
        if constexpr (std::is_same<E, unsigned char>::value)
            return u8_;
        else if constexpr (std::is_same<E, signed char>::value)
            return s8_;
        else if constexpr (std::is_same<E, unsigned short>::value)
            return u16_;
        else if constexpr (std::is_same<E, short>::value)
            return s16_;
        else if constexpr (std::is_same<E, unsigned int>::value)
            return u32_;
        else if constexpr (std::is_same<E, int>::value)
            return s32_;
        else if constexpr (std::is_same<E, unsigned long long>::value)
            return u64_;
        else if constexpr (std::is_same<E, long long>::value)
            return s64_;
        else if constexpr (std::is_same<E, float>::value)
            return f_;
        else
            return d_;
    }

    NumericType_t type_;
    union {
        unsigned char u8_;
        signed char s8_;
        unsigned short u16_;
        short s16_;
        unsigned int u32_;
        int s32_;
        unsigned long long u64_;
        long long s64_;
        float f_;
        double d_;
    };
};

// Reads the number that an Item offers as the source of a numeric
// assignment: a Bool gives 1 or 0, a Numeric its value, a NumericArray its
// element at index, an Enum its int value. Answers 0, -26 for a family or
// element type that gives no number, -41 for an index past an array's end.
// The one switch over source families of the numeric families.
int ReadSourceNumber(ItemBase const& source, unsigned int index, SourceNumber& out);

// Reads the four numbers of a rectangle Item in their own element type, in
// the order top left X, top left Y, bottom right X, bottom right Y. Answers 0,
// or -26 for an Item that is no rectangle of U16, S32 or Float. Rectangles
// are no source of a single number, so ReadSourceNumber refuses them.
int ReadSourceRectangle(ItemBase const& source, SourceNumber (&out)[4]);

}  // namespace Oru
}  // namespace Legacy

#endif
