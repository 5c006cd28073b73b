// Endpoint<A>: an address with a port, for A = AddrStr (text) or A = AddrIp
// (numeric); no other members exist. A plain value: constant operations may be
// called from several threads at once, a writer needs the object alone.
//
// Text form. ToString writes
//     endpoint = host ":" port
//     host     = "[" address "]"  if the address text is an IPv6 literal (with or
//                                 without "%" zone), or itself starts with "[" and
//                                 ends with "]"
//              / address          otherwise, as it is; it may hold ":" and "/",
//                                 as a URI does
//     port     = the decimal port, always written, 0 included
// so "[::1]:80", "10.0.0.1:0", "camera.local:554", "rtsp://cam/live:0".
//
// FromString reads any text and never throws: it splits at the last ":" when what
// follows is 1 or more decimal digits of value at most 65535 (leading zeros
// allowed); otherwise the whole text is the host and the port is 0. A host in one
// outer pair of brackets loses that pair. Hence FromString(e.ToString()) == e for
// every endpoint. An IPv6 address read without brackets is split like any other
// text ("::1" gives host ":" and port 1), so write it as "[::1]".
//
// For AddrIp the host must be numeric; any other host gives the unspecified address.
#ifndef LANPATH_ENDPOINT_H
#define LANPATH_ENDPOINT_H

#include <string>

#include <lanpath/addr.h>
#include <lanpath/export.h>

namespace Net {

template <class A>
class LANPATH_API Endpoint {
public:
    // The default address with port 0.
    Endpoint();
    // An endpoint of the address and port; port 0 means none given.
    explicit Endpoint(A const& addr, unsigned short port = 0);

    // Parses the text form described above; never fails, never throws.
    static Endpoint FromString(std::string const& text);
    // The same from a zero-terminated text; a null pointer gives the default endpoint.
    static Endpoint FromString(char const* text);

    // The text form described above.
    std::string ToString() const;

    // The address.
    A const& GetAddr() const;
    // Replaces the address.
    void SetAddr(A const& addr);
    // The port; 0 is a legal value and means none given.
    unsigned short GetPort() const;
    // Replaces the port.
    void SetPort(unsigned short port);

    // True when the address is given (non-empty text, or not the unspecified
    // address) and the port is not 0.
    bool IsFullySpecified() const;
    // True for a loopback address and, for text, the name "localhost" in any case.
    bool IsLocalhostAddr() const;

    // The numeric form: a numeric address text is converted, anything else (a
    // host name included, which is not resolved) gives the unspecified address.
    // The port is kept. On Endpoint<AddrIp> a copy.
    Endpoint<AddrIp> ToIp() const;

    // Equal when address and port are equal.
    bool operator==(Endpoint const& other) const;
    bool operator!=(Endpoint const& other) const;
    // By address, then port, for ordered containers.
    bool operator<(Endpoint const& other) const;

private:
    A addr_;
    unsigned short port_;
};

extern template class Endpoint<AddrStr>;
extern template class Endpoint<AddrIp>;

}  // namespace Net

#endif
