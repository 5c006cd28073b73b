#include <legacy/oru/appendpoint.h>

#include <lanpath/parser.h>
#include <lanpath/pbconvert.h>
#include <vintor/strptrlen.h>

#include "texts.h"

namespace Legacy {
namespace Oru {

namespace {

using EndpointStr = Net::Endpoint<Net::AddrStr>;
using AppEndpointStr = AppEndpoint<EndpointStr>;

struct WireRow {
    AppProtocolType_t type;
    Pb::AppProtocolType number;
};

// The message numbers differ from ours; both are wire values.
constexpr WireRow k_wire[] = {
    {AppProtocolType_t::Unknown, Pb::APP_PROTOCOL_UNKNOWN},
    {AppProtocolType_t::Soap, Pb::APP_PROTOCOL_SOAP},
    {AppProtocolType_t::SoapSsl, Pb::APP_PROTOCOL_SOAP_SSL},
    {AppProtocolType_t::Http, Pb::APP_PROTOCOL_HTTP},
    {AppProtocolType_t::Https, Pb::APP_PROTOCOL_HTTPS},
    {AppProtocolType_t::TcpRaw, Pb::APP_PROTOCOL_TCP_RAW},
    {AppProtocolType_t::HttpXml, Pb::APP_PROTOCOL_HTTP_XML},
    {AppProtocolType_t::Modbus, Pb::APP_PROTOCOL_MODBUS},
    {AppProtocolType_t::Ntp, Pb::APP_PROTOCOL_NTP},
    {AppProtocolType_t::Rtsp, Pb::APP_PROTOCOL_RTSP},
};

bool StartsWith(std::string const& text, char const* prefix) {
    return text.compare(0, std::char_traits<char>::length(prefix), prefix) == 0;
}

}  // namespace

// ---- AppEndpoint<E> ----

template <class E>
AppEndpoint<E>::AppEndpoint() : protocolInfo_(), endpoint_(), addrGroupPrefix_(0) {}

template <class E>
AppEndpoint<E>::AppEndpoint(AppEndpoint const& other) = default;

template <class E>
AppEndpoint<E>::AppEndpoint(AppProtocolInfo_t const& protocolInfo, E const& endpoint,
                            unsigned char addrGroupPrefix)
    : protocolInfo_(protocolInfo), endpoint_(endpoint), addrGroupPrefix_(addrGroupPrefix) {}

template <class E>
AppEndpoint<E>& AppEndpoint<E>::operator=(AppEndpoint const& other) = default;

template <class E>
AppEndpoint<E>::~AppEndpoint() = default;

template <class E>
AppEndpoint<E> AppEndpoint<E>::FromUri(std::string const& uri) {
    Vintor::StrPtrLen view(uri);
    std::string scheme;
    {
        Net::StringParser parser(scheme, ':', false);
        parser.SetSkipDelimiter(true);
        // Without a ":" the parser leaves the view alone and the scheme empty,
        // which is what a text without scheme should give.
        parser.Parse(view, nullptr);
    }
    // "x://h", "x:h" and "x:////h" all name the same endpoint.
    char const* rest = view.Begin();
    char const* const end = view.End();
    while (rest != end && (*rest == ':' || *rest == '/')) {
        ++rest;
    }
    return AppEndpoint(AppProtocolInfoFromScheme(scheme), E::FromString(std::string(rest, end)), 0);
}

template <class E>
bool AppEndpoint<E>::IsAppProtocolCompatible(AppProtocolType_t type,
                                             unsigned short const& version) const {
    return protocolInfo_.IsProtocolCompatible(type, version);
}

template <class E>
bool AppEndpoint<E>::RequiresEncryption() const {
    return protocolInfo_.ProtocolRequiresEncryption();
}

template <class E>
bool AppEndpoint<E>::IsLocalhost() const {
    return endpoint_.IsLocalhostAddr();
}

template <class E>
bool AppEndpoint<E>::IsSpecified() const {
    return endpoint_.IsFullySpecified();
}

template <class E>
bool AppEndpoint<E>::IsUnspecified() const {
    return !IsSpecified();
}

template <class E>
bool AppEndpoint<E>::IsEqual(AppEndpoint const& other) const {
    if (protocolInfo_.type != other.protocolInfo_.type || endpoint_ != other.endpoint_) {
        return false;
    }
    // A prefix of 0 means none, which matches any group.
    return addrGroupPrefix_ == 0 || other.addrGroupPrefix_ == 0 ||
           addrGroupPrefix_ == other.addrGroupPrefix_;
}

template <class E>
bool AppEndpoint<E>::operator==(AppEndpoint const& other) const {
    return protocolInfo_ == other.protocolInfo_ && endpoint_ == other.endpoint_ &&
           addrGroupPrefix_ == other.addrGroupPrefix_;
}

template <class E>
bool AppEndpoint<E>::operator!=(AppEndpoint const& other) const {
    return !(*this == other);
}

template <class E>
std::string AppEndpoint<E>::ToString() const {
    std::string const text = endpoint_.ToString();
    switch (protocolInfo_.type) {
        // Soap is spoken over http, so people see an http address.
        case AppProtocolType_t::Soap:
        case AppProtocolType_t::Http:
            return "http" + Texts::UriSeparator() + text;
        case AppProtocolType_t::SoapSsl:
        case AppProtocolType_t::Https:
            return "https" + Texts::UriSeparator() + text;
        case AppProtocolType_t::Rtsp:
            return "rtsp" + Texts::UriSeparator() + text;
        default:
            return text + " (" + AppProtocolTypeText(protocolInfo_.type) + ")";
    }
}

template <class E>
std::string AppEndpoint<E>::ToUri() const {
    std::string text = endpoint_.ToString();
    // An rtsp endpoint holds its whole URI as the address (see
    // ToLegacyAppEndpointStr); only the port suffix of the endpoint text goes.
    if (StartsWith(text, "rtsp://")) {
        text.erase(text.rfind(':'));
        return text;
    }
    return AppProtocolScheme(protocolInfo_.type) + Texts::UriSeparator() + text;
}

template class AppEndpoint<Net::Endpoint<Net::AddrIp>>;
template class AppEndpoint<Net::Endpoint<Net::AddrStr>>;

// ---- conversions ----

AppEndpoint<Net::Endpoint<Net::AddrIp>> ToLegacyAppEndpointIp(Net::AppEndpoint const& src) {
    return AppEndpoint<Net::Endpoint<Net::AddrIp>>(
        ToLegacyAppProtocolInfo(src.GetUri().GetScheme()), src.GetEndpoint().ToIp(), 0);
}

AppEndpoint<Net::Endpoint<Net::AddrStr>> ToLegacyAppEndpointStr(Net::AppEndpoint const& src) {
    AppProtocolInfo_t const info = ToLegacyAppProtocolInfo(src.GetUri().GetScheme());
    if (info.type != AppProtocolType_t::Rtsp) {
        return AppEndpointStr(info, src.GetEndpoint(), 0);
    }
    // An rtsp URI keeps its path, which no host and port pair can carry: the
    // whole URI becomes the address, and ToUri gives it back (the net text
    // of an RTSP endpoint begins with "rtsp://", which ToUri looks for).
    EndpointStr endpoint{Net::AddrStr(src.ToString())};
    endpoint.SetPort(0);
    return AppEndpointStr(info, endpoint, 0);
}

Pb::AppProtocolType AppProtocolTypeToPb(AppProtocolType_t type) noexcept {
    for (auto const& row : k_wire) {
        if (row.type == type) {
            return row.number;
        }
    }
    return Pb::APP_PROTOCOL_UNKNOWN;
}

AppProtocolType_t AppProtocolTypeFromPb(int number) noexcept {
    for (auto const& row : k_wire) {
        if (static_cast<int>(row.number) == number) {
            return row.type;
        }
    }
    return AppProtocolType_t::Unknown;
}

void Sys2LegacyPb::Convert(AppProtocolInfo_t const& in, Pb::AppProtocolInfo& out) {
    out.Clear();
    out.set_app_protocol_type(AppProtocolTypeToPb(in.type));
    out.set_version(in.version);
    out.set_compat_version(in.compatVersion);
}

void Sys2LegacyPb::Convert(AppEndpointStr const& in, Pb::AppEndpointStr& out) {
    out.Clear();
    Convert(in.GetAppProtocolInfo(), *out.mutable_protocol_info());
    Net::Sys2Pb::Convert(in.GetEndpoint(), *out.mutable_endpoint());
    out.set_addr_group_prefix(in.GetAddrGroupPrefix());
}

void Sys2LegacyPb::Convert(AppEndpointStr const& in, std::string& out) {
    out = in.ToUri();
}

void LegacyPb2Sys::Convert(Pb::AppProtocolInfo const& in, AppProtocolInfo_t& out) {
    // Versions are 16 bits here; the message's upper bits are dropped.
    out = AppProtocolInfo_t(AppProtocolTypeFromPb(in.app_protocol_type()),
                            static_cast<unsigned short>(in.version()),
                            static_cast<unsigned short>(in.compat_version()));
}

void LegacyPb2Sys::Convert(Pb::AppEndpointStr const& in, AppEndpointStr& out) {
    // The accessors of unset sub-messages answer the default instances.
    AppProtocolInfo_t info;
    Convert(in.protocol_info(), info);
    EndpointStr endpoint;
    Net::Pb2Sys::Convert(in.endpoint(), endpoint);
    out = AppEndpointStr(info, endpoint, static_cast<unsigned char>(in.addr_group_prefix()));
}

void LegacyPb2Sys::Convert(std::string const& in, AppEndpointStr& out) {
    out = AppEndpointStr::FromUri(in);
}

}  // namespace Oru
}  // namespace Legacy
