// Colour_t: four float components in the order a, r, g, b, nominally
// fractions of 1. A default colour has all four at 0.
#ifndef VINTOR_COLOUR_H
#define VINTOR_COLOUR_H

#include <vintor/export.h>  // for its C++17 check

namespace Vintor {

struct Colour_t {
    float a;
    float r;
    float g;
    float b;

    Colour_t() noexcept : a(0.0f), r(0.0f), g(0.0f), b(0.0f) {}
    Colour_t(float alpha, float red, float green, float blue) noexcept
        : a(alpha), r(red), g(green), b(blue) {}

    bool operator==(Colour_t const& other) const noexcept {
        return a == other.a && r == other.r && g == other.g && b == other.b;
    }
    // True if any component differs.
    bool operator!=(Colour_t const& other) const noexcept { return !(*this == other); }
};

static_assert(sizeof(Colour_t) == 4 * sizeof(float), "Colour_t is four floats");

}  // namespace Vintor

#endif
