// The ten traits classes that instantiate the numeric templates. Each names
// its element type, its NumericType_t, its default bounds, its equality
// tolerance and serial width, and which types the stream texts use. They
// carry no data and export nothing; their visibility mark only lets the
// templates instantiated over them be exported.
//
// Threads: constants and pure functions only.
#ifndef LEGACY_ORU_TRAITS_H
#define LEGACY_ORU_TRAITS_H

#include <cstdint>
#include <limits>
#include <type_traits>

#include <legacy/oru/export.h>
#include <legacy/oru/types.h>

namespace Legacy {
namespace Oru {

namespace Detail {

// Equality of two numbers by their distance, taken in the element's own width
// so that it wraps in the signed members (-128 and 0 are equal for S8).
// Callers rely on this exact rule for values and for change reports.
template <class E>
bool IsEqualByDistance(E a, E b, E tolerance) noexcept {
    if constexpr (std::is_floating_point<E>::value) {
        E const distance = a > b ? a - b : b - a;
        return !(tolerance < distance) && distance == distance;
    } else if constexpr (std::is_unsigned<E>::value) {
        (void)tolerance;
        return a == b;
    } else {
        (void)tolerance;
        using U = typename std::make_unsigned<E>::type;
        E const larger = a > b ? a : b;
        E const smaller = a > b ? b : a;
        auto const distance =
            static_cast<E>(static_cast<U>(static_cast<U>(larger) - static_cast<U>(smaller)));
        return distance < E(1);
    }
}

template <class E, NumericType_t N, class StreamIn, class StreamOut, class DumpOut>
struct ORU_API IntegerTraits {
    using Element = E;
    // Read by SetValFromStream as this type, then cut to the element.
    using StreamInType = StreamIn;
    // Written by operator<< as this type.
    using StreamOutType = StreamOut;
    // Written by DumpVal and into validation messages as this type; the 8-bit
    // members write the raw character there, which callers rely on.
    using DumpType = DumpOut;

    static constexpr NumericType_t k_numericType = N;
    static constexpr unsigned int k_serialWidth = sizeof(E);

    static constexpr E Lowest() noexcept { return std::numeric_limits<E>::lowest(); }
    static constexpr E Highest() noexcept { return std::numeric_limits<E>::max(); }
    static constexpr E Tolerance() noexcept { return E(0); }
    static bool IsEqual(E a, E b) noexcept { return IsEqualByDistance<E>(a, b, Tolerance()); }
    // The change rule of assignments: a change is a distance above zero,
    // taken in the element's width as IsEqual takes it.
    static bool IsChanged(E a, E b) noexcept { return !IsEqual(a, b); }
};

template <class E, NumericType_t N>
struct ORU_API FloatingTraits {
    using Element = E;
    using StreamInType = E;
    using StreamOutType = E;
    using DumpType = E;

    static constexpr NumericType_t k_numericType = N;
    static constexpr unsigned int k_serialWidth = sizeof(E);

    // The smallest positive normal number, not the most negative one: by
    // default a floating setting excludes zero and negatives.
    static constexpr E Lowest() noexcept { return std::numeric_limits<E>::min(); }
    static constexpr E Highest() noexcept { return std::numeric_limits<E>::max(); }
    // The single-precision 1e-10 widened, also for double.
    static constexpr E Tolerance() noexcept { return static_cast<E>(1e-10f); }
    static bool IsEqual(E a, E b) noexcept { return IsEqualByDistance<E>(a, b, Tolerance()); }
    // The change rule of assignments: a change is a distance above the
    // tolerance, so a NaN, which compares false, never reports one; callers
    // rely on that where IsEqual would call the NaN unequal.
    static bool IsChanged(E a, E b) noexcept {
        E const distance = a > b ? a - b : b - a;
        return Tolerance() < distance;
    }
};

}  // namespace Detail

struct ORU_API U8Traits : Detail::IntegerTraits<unsigned char, NumericType_t::U8, unsigned short,
                                                unsigned short, unsigned char> {};
struct ORU_API S8Traits
    : Detail::IntegerTraits<signed char, NumericType_t::S8, short, short, signed char> {};
struct ORU_API U16Traits : Detail::IntegerTraits<unsigned short, NumericType_t::U16, unsigned short,
                                                 unsigned short, unsigned short> {};
struct ORU_API S16Traits : Detail::IntegerTraits<short, NumericType_t::S16, short, short, short> {};
struct ORU_API U32Traits : Detail::IntegerTraits<unsigned int, NumericType_t::U32, unsigned int,
                                                 unsigned int, unsigned int> {};
struct ORU_API S32Traits : Detail::IntegerTraits<int, NumericType_t::S32, int, int, int> {};
struct ORU_API U64Traits
    : Detail::IntegerTraits<unsigned long long, NumericType_t::U64, unsigned long long,
                            unsigned long long, unsigned long long> {};
struct ORU_API S64Traits
    : Detail::IntegerTraits<long long, NumericType_t::S64, long long, long long, long long> {};
struct ORU_API FloatTraits : Detail::FloatingTraits<float, NumericType_t::Float> {};
struct ORU_API DoubleTraits : Detail::FloatingTraits<double, NumericType_t::Double> {};

}  // namespace Oru
}  // namespace Legacy

#endif
