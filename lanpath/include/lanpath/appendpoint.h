// Net::AppEndpoint: a URI together with the network endpoint it names (its host
// and port), so that the protocol (the scheme) travels with the address. Not to
// be confused with Legacy::Oru::AppEndpoint<E>. A plain value.
#ifndef LANPATH_APPENDPOINT_H
#define LANPATH_APPENDPOINT_H

#include <string>

#include <lanpath/endpoint.h>
#include <lanpath/export.h>
#include <lanpath/uri.h>

namespace Net {

class LANPATH_API AppEndpoint {
public:
    // No URI, the default endpoint.
    AppEndpoint();
    // Parses a whole URI; the endpoint is its host (IPv6 without brackets) and
    // port, 0 when the URI gives none: no port is assumed for a scheme. Never throws.
    explicit AppEndpoint(std::string const& uri);

    // The parsed URI.
    Uri const& GetUri() const;
    // The host and port of the URI.
    Endpoint<AddrStr> const& GetEndpoint() const;
    // The URI text as given, but for an RTSP endpoint, whose scheme is
    // written "rtsp" whatever its case in the text.
    std::string ToString() const;

    // Equal when the URI texts are equal.
    bool operator==(AppEndpoint const& other) const;
    bool operator!=(AppEndpoint const& other) const;

private:
    Uri uri_;
    Endpoint<AddrStr> endpoint_;
};

}  // namespace Net

#endif
