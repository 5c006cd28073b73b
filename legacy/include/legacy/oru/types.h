// The vocabulary every family speaks: the value family of an Info or Item,
// the element type of the numeric families, and the access word of an Info.
//
// Threads: plain values; any thread.
#ifndef LEGACY_ORU_TYPES_H
#define LEGACY_ORU_TYPES_H

#include <cstdint>

#include <legacy/oru/export.h>

namespace Legacy {
namespace Oru {

// The value family; cut to one byte it is the type byte of a serial record.
enum class OruType_t : std::uint32_t {
    Undefined = 0,
    Bool = 1,
    Numeric = 2,
    NumericArray = 3,
    NumericSparse = 4,
    Enum = 5,
    String = 6,
    StringArray = 7,
    BoolArray = 8,
    StringSparse = 9,
    Colour = 128,
    Coordinate = 129,
    Rectangle = 130,
    Orientation = 131,
    Addr = 134,
    LocalizedString = 135,
    Endpoint = 136,
    AppEndpoint = 137,
    Connection = 138,
    AppEndpointArray = 140,
    RectArray = 141,
    Extended = 252,
    Composite = 253,
    Collection = 254,
};

// The element type of a numeric family, 0 for every other family; cut to one
// byte it is the numeric-type byte of a serial record.
enum class NumericType_t : std::uint32_t {
    Undefined = 0,
    U8 = 1,
    S8 = 2,
    U16 = 3,
    S16 = 4,
    U32 = 5,
    S32 = 6,
    U64 = 7,
    S64 = 8,
    Float = 9,
    Double = 10,
};

// The 16-bit access word of an Info. Stored, copied and printed; its bits
// belong to the callers.
class Permission_t {
public:
    Permission_t() noexcept : bits_(0) {}
    explicit Permission_t(unsigned short bits) noexcept : bits_(bits) {}

    unsigned short Value() const noexcept { return bits_; }

    bool operator==(Permission_t const& other) const noexcept { return bits_ == other.bits_; }
    bool operator!=(Permission_t const& other) const noexcept { return bits_ != other.bits_; }

private:
    unsigned short bits_;
};

static_assert(sizeof(OruType_t) == 4 && sizeof(NumericType_t) == 4, "32-bit enumerations");
static_assert(sizeof(Permission_t) == 2, "Permission_t is 16 bits");

}  // namespace Oru
}  // namespace Legacy

#endif
