// Small text helpers shared by the endpoint and URI readers. Internal.
#ifndef LANPATH_SRC_TEXTUTIL_H
#define LANPATH_SRC_TEXTUTIL_H

#include <string>

#include <vintor/strptrlen.h>

namespace Net {
namespace Detail {

// Reads [begin, end) as a port: one or more decimal digits of value at most 65535.
// Leading zeros are allowed; the value is capped while reading, so long digit runs
// cannot overflow.
inline bool ParsePort(char const* begin, char const* end, unsigned short& out) {
    if (begin == end) {
        return false;
    }
    unsigned long value = 0;
    for (char const* p = begin; p != end; ++p) {
        if (*p < '0' || *p > '9') {
            return false;
        }
        value = value * 10 + static_cast<unsigned long>(*p - '0');
        if (value > 65535) {
            return false;
        }
    }
    out = static_cast<unsigned short>(value);
    return true;
}

// True if a equals b with ASCII case ignored, as the base library compares.
inline bool EqualIgnoreCase(std::string const& a, std::string const& b) {
    return Vintor::StrPtrLen(a).EqualIgnoreCase(Vintor::StrPtrLen(b));
}

// True if text is an IPv6 literal, optionally followed by "%" and a non-empty zone
// of any characters. Used to decide on brackets, so the zone need not be numeric.
bool IsIpv6Literal(std::string const& text);

}  // namespace Detail
}  // namespace Net

#endif
