// AppEndpoint<E>: a network endpoint together with the application protocol
// spoken there and an address group prefix, written as a URI. Two members
// exist, over Net::Endpoint<Net::AddrIp> and Net::Endpoint<Net::AddrStr>.
// Beside it the bridges to the neighbouring representations: the net
// library's Net::AppEndpoint and the protobuf messages of Legacy::Oru::Pb.
// Plain values: constant operations may be called from several threads at
// once, a writer needs the object alone.
#ifndef LEGACY_ORU_APPENDPOINT_H
#define LEGACY_ORU_APPENDPOINT_H

#include <string>
#include <type_traits>
#include <utility>

#include <lanpath/addr.h>
#include <lanpath/appendpoint.h>
#include <lanpath/appendpoint.pb.h>
#include <lanpath/endpoint.h>

#include <legacy/oru/appprotocol.h>
#include <legacy/oru/export.h>

namespace Legacy {
namespace Oru {

template <class E>
class ORU_API AppEndpoint {
public:
    using Endpoint_t = E;
    using Addr_t = typename std::decay<decltype(std::declval<E const&>().GetAddr())>::type;

    // Protocol info all zero, the default endpoint, prefix 0.
    AppEndpoint();
    AppEndpoint(AppEndpoint const& other);
    AppEndpoint(AppProtocolInfo_t const& protocolInfo, E const& endpoint,
                unsigned char addrGroupPrefix);
    AppEndpoint& operator=(AppEndpoint const& other);
    ~AppEndpoint();

    // Reads scheme, any run of ":" and "/", then the endpoint text, which goes
    // whole to E::FromString. Never fails: an unknown scheme gives type 0.
    // The prefix has no place in a URI and is 0.
    static AppEndpoint FromUri(std::string const& uri);

    AppProtocolInfo_t const& GetAppProtocolInfo() const noexcept { return protocolInfo_; }
    AppProtocolType_t const& GetAppProtocolType() const noexcept { return protocolInfo_.type; }
    unsigned short const& GetAppProtocolVersion() const noexcept { return protocolInfo_.version; }
    unsigned short const& GetAppProtocolCompatVersion() const noexcept {
        return protocolInfo_.compatVersion;
    }
    E const& GetEndpoint() const noexcept { return endpoint_; }
    // The address inside the endpoint.
    Addr_t const& GetAddr() const { return endpoint_.GetAddr(); }
    unsigned short GetPort() const { return endpoint_.GetPort(); }
    unsigned char GetAddrGroupPrefix() const noexcept { return addrGroupPrefix_; }

    // The setters check nothing.
    void SetAppProtocolInfo(AppProtocolInfo_t const& info) noexcept { protocolInfo_ = info; }
    void SetAppProtocolType(AppProtocolType_t type) noexcept { protocolInfo_.type = type; }
    void SetAppProtocolVersion(unsigned short version) noexcept { protocolInfo_.version = version; }
    void SetAppProtocolCompatVersion(unsigned short version) noexcept {
        protocolInfo_.compatVersion = version;
    }
    void SetEndpoint(E const& endpoint) { endpoint_ = endpoint; }
    void SetAddr(Addr_t const& addr) { endpoint_.SetAddr(addr); }
    void SetPort(unsigned short port) { endpoint_.SetPort(port); }
    void SetAddrGroupPrefix(unsigned char prefix) noexcept { addrGroupPrefix_ = prefix; }

    // IsProtocolCompatible of the protocol info.
    bool IsAppProtocolCompatible(AppProtocolType_t type, unsigned short const& version) const;
    // ProtocolRequiresEncryption of the protocol info.
    bool RequiresEncryption() const;
    bool IsLocalhost() const;
    // Address and port both given.
    bool IsSpecified() const;
    bool IsUnspecified() const;

    // Loose equality: the same service. Type and endpoint equal; versions
    // ignored; prefixes compared only when both are non-zero.
    bool IsEqual(AppEndpoint const& other) const;
    // Strict equality: every field.
    bool operator==(AppEndpoint const& other) const;
    bool operator!=(AppEndpoint const& other) const;

    // A text for people: "http://", "https://" or "rtsp://" and the endpoint
    // text by type, otherwise the endpoint text and the type in parentheses.
    std::string ToString() const;
    // The scheme of the type, "://" and the endpoint text. An endpoint text
    // that is itself an rtsp URI is given back alone, without its port suffix.
    std::string ToUri() const;

private:
    AppProtocolInfo_t protocolInfo_;
    E endpoint_;
    unsigned char addrGroupPrefix_;
};

extern template class AppEndpoint<Net::Endpoint<Net::AddrIp>>;
extern template class AppEndpoint<Net::Endpoint<Net::AddrStr>>;

// The numeric endpoint of src (ToIp) with the protocol of its scheme, prefix 0.
ORU_API AppEndpoint<Net::Endpoint<Net::AddrIp>> ToLegacyAppEndpointIp(Net::AppEndpoint const& src);

// The endpoint of src with the protocol of its scheme, prefix 0. An rtsp
// endpoint keeps its whole URI as the address, with port 0, since no host and
// port pair can carry its path.
ORU_API AppEndpoint<Net::Endpoint<Net::AddrStr>> ToLegacyAppEndpointStr(
    Net::AppEndpoint const& src);

// System values to messages and text.
class ORU_API Sys2LegacyPb {
public:
    Sys2LegacyPb() = delete;

    // Clears out; writes the message number of the type and both versions.
    static void Convert(AppProtocolInfo_t const& in, Pb::AppProtocolInfo& out);
    // Clears out; writes protocol info, endpoint and prefix.
    static void Convert(AppEndpoint<Net::Endpoint<Net::AddrStr>> const& in,
                        Pb::AppEndpointStr& out);
    // The URI of in; the prefix is lost.
    static void Convert(AppEndpoint<Net::Endpoint<Net::AddrStr>> const& in, std::string& out);
};

// Messages and text to system values.
class ORU_API LegacyPb2Sys {
public:
    LegacyPb2Sys() = delete;

    // The type of the message number (0 for a number without one) and both
    // versions cut to 16 bits.
    static void Convert(Pb::AppProtocolInfo const& in, AppProtocolInfo_t& out);
    // Unset sub-messages read as their defaults; the prefix is cut to 8 bits.
    static void Convert(Pb::AppEndpointStr const& in,
                        AppEndpoint<Net::Endpoint<Net::AddrStr>>& out);
    // AppEndpoint::FromUri of the text.
    static void Convert(std::string const& in, AppEndpoint<Net::Endpoint<Net::AddrStr>>& out);
};

// The message number of a type: the wire has numbers of its own.
ORU_API Pb::AppProtocolType AppProtocolTypeToPb(AppProtocolType_t type) noexcept;
// The type of a message number; 0 for a number without a type.
ORU_API AppProtocolType_t AppProtocolTypeFromPb(int number) noexcept;

}  // namespace Oru
}  // namespace Legacy

#endif
