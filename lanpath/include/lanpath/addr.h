// Network addresses: AddrStr holds an address as text (a host name, a numeric
// address or even a whole URI, possibly not yet resolved); AddrIp holds a numeric
// IPv4 or IPv6 address. Both are plain values: constant operations may be called
// from several threads at once, a writer needs the object alone. Nothing here
// resolves names or opens sockets.
#ifndef LANPATH_ADDR_H
#define LANPATH_ADDR_H

#include <string>

#include <boost/asio/ip/address.hpp>

#include <lanpath/export.h>

namespace Net {

// An address in text form. Any text is accepted and kept byte for byte, so
// AddrStr(a.ToString()) == a for every address.
class LANPATH_API AddrStr {
public:
    // The empty address.
    AddrStr();
    // An address of the given text, whatever it holds.
    AddrStr(std::string const& text);
    // The same from a zero-terminated text; a null pointer gives the empty address.
    AddrStr(char const* text);

    // The text as it was given.
    std::string ToString() const;
    // True for the empty text.
    bool IsEmpty() const;

    bool operator==(AddrStr const& other) const;
    bool operator!=(AddrStr const& other) const;
    // Byte-wise order of the texts, for ordered containers.
    bool operator<(AddrStr const& other) const;

private:
    std::string text_;
};

// A numeric IPv4 or IPv6 address (with an IPv6 scope id if given). The default
// is the IPv4 unspecified address 0.0.0.0.
class LANPATH_API AddrIp {
public:
    // The IPv4 unspecified address.
    AddrIp();
    // Wraps an address of Boost.Asio.
    explicit AddrIp(boost::asio::ip::address const& address);

    // Parses a numeric address: dotted IPv4, or IPv6 optionally followed by "%"
    // and a decimal scope id. Interface names as scope are refused, since looking
    // them up would need the system. Returns false and leaves out alone on failure.
    static bool TryParse(std::string const& text, AddrIp& out);
    // As TryParse, but gives the unspecified address for a text that isn't numeric.
    static AddrIp FromString(std::string const& text);

    // The address of Boost.Asio, for callers that open sockets.
    boost::asio::ip::address const& GetAddress() const;
    // The canonical text: dotted IPv4, compressed IPv6 with "%" and the decimal
    // scope id if there is one. No brackets.
    std::string ToString() const;

    bool IsV4() const;
    bool IsV6() const;
    // True for 0.0.0.0 and ::.
    bool IsUnspecified() const;
    // True for 127.0.0.0/8, ::1 and IPv4-mapped 127.0.0.0/8.
    bool IsLoopback() const;

    bool operator==(AddrIp const& other) const;
    bool operator!=(AddrIp const& other) const;
    // IPv4 before IPv6, then by bytes and scope id.
    bool operator<(AddrIp const& other) const;

private:
    boost::asio::ip::address address_;
};

}  // namespace Net

#endif
