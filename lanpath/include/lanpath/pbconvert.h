// Conversions between the net values and their protobuf messages. Stateless
// classes of static functions; safe from any thread.
#ifndef LANPATH_PBCONVERT_H
#define LANPATH_PBCONVERT_H

#include <lanpath/endpoint.h>
#include <lanpath/endpoint.pb.h>
#include <lanpath/export.h>

namespace Net {

// Value to message.
class LANPATH_API Sys2Pb {
public:
    Sys2Pb() = delete;

    // Clears out and writes the address text and port of the endpoint.
    static void Convert(Endpoint<AddrStr> const& in, Pb::EndpointStr& out);
};

// Message to value.
class LANPATH_API Pb2Sys {
public:
    Pb2Sys() = delete;

    // Replaces out by the message's address and port; unset fields give the empty
    // address and port 0, and a port above 65535 gives 0 rather than another port.
    static void Convert(Pb::EndpointStr const& in, Endpoint<AddrStr>& out);
};

}  // namespace Net

#endif
