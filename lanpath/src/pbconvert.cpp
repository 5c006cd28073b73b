#include <lanpath/pbconvert.h>

namespace Net {

void Sys2Pb::Convert(Endpoint<AddrStr> const& in, Pb::EndpointStr& out) {
    out.Clear();
    out.set_addr(in.GetAddr().ToString());
    out.set_port(in.GetPort());
}

void Pb2Sys::Convert(Pb::EndpointStr const& in, Endpoint<AddrStr>& out) {
    // Cutting a too large port to 16 bits would name some other service.
    unsigned short port = in.port() <= 65535u ? static_cast<unsigned short>(in.port()) : 0;
    out = Endpoint<AddrStr>(AddrStr(in.addr()), port);
}

}  // namespace Net
