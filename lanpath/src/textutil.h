// Small text helpers shared by the endpoint and URI readers. Internal.
#ifndef LANPATH_SRC_TEXTUTIL_H
#define LANPATH_SRC_TEXTUTIL_H

#include <string>

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

inline bool EqualIgnoreCase(std::string const& a, char const* b) {
    std::string::size_type i = 0;
    for (; i < a.size() && b[i] != '\0'; ++i) {
        char x = a[i];
        char y = b[i];
        if (x >= 'A' && x <= 'Z') {
            x = static_cast<char>(x - 'A' + 'a');
        }
        if (y >= 'A' && y <= 'Z') {
            y = static_cast<char>(y - 'A' + 'a');
        }
        if (x != y) {
            return false;
        }
    }
    return i == a.size() && b[i] == '\0';
}

// True if text is an IPv6 literal, optionally followed by "%" and a non-empty zone
// of any characters. Used to decide on brackets, so the zone need not be numeric.
bool IsIpv6Literal(std::string const& text);

}  // namespace Detail
}  // namespace Net

#endif
