#include <legacy/oru/appprotocol.h>

#include <cstring>
#include <ostream>
#include <string>

#include <vintor/strptrlen.h>

namespace Legacy {
namespace Oru {

namespace {

struct ProtocolRow {
    AppProtocolType_t type;
    char const* text;
    char const* scheme;
};

// In the order schemes are matched on input; the first match wins.
constexpr ProtocolRow k_protocols[] = {
    {AppProtocolType_t::Unknown, "Unknown", "x-zyl-unknown"},
    {AppProtocolType_t::Http, "Http", "http"},
    {AppProtocolType_t::Https, "Https", "https"},
    {AppProtocolType_t::Soap, "Soap", "x-zyl-devsoap"},
    {AppProtocolType_t::SoapSsl, "SoapSsl", "x-zyl-devsoapssl"},
    {AppProtocolType_t::TcpRaw, "TcpRaw", "x-zyl-tcpraw"},
    {AppProtocolType_t::HttpXml, "HttpXml", "x-zyl-httpxml"},
    {AppProtocolType_t::Modbus, "Modbus", "x-zyl-modbus"},
    {AppProtocolType_t::Ntp, "Ntp", "x-zyl-ntp"},
    {AppProtocolType_t::Rtsp, "Rtsp", "rtsp"},
};

ProtocolRow const* FindRow(AppProtocolType_t type) noexcept {
    for (auto const& row : k_protocols) {
        if (row.type == type) {
            return &row;
        }
    }
    return nullptr;
}

}  // namespace

AppProtocolInfo_t AppProtocolInfoFromScheme(std::string const& scheme) {
    Vintor::StrPtrLen const text(scheme);
    for (auto const& row : k_protocols) {
        if (text.EqualIgnoreCase(Vintor::StrPtrLen(row.scheme, std::strlen(row.scheme)))) {
            // rtsp alone carries versions: peers expect version 1 of it.
            if (row.type == AppProtocolType_t::Rtsp) {
                return AppProtocolInfo_t(row.type, 1, 1);
            }
            return AppProtocolInfo_t(row.type, 0, 0);
        }
    }
    return AppProtocolInfo_t();
}

AppProtocolInfo_t ToLegacyAppProtocolInfo(Net::UriScheme const& scheme) {
    return AppProtocolInfoFromScheme(scheme.GetString());
}

char const* AppProtocolScheme(AppProtocolType_t type) noexcept {
    ProtocolRow const* const row = FindRow(type);
    return row ? row->scheme : k_protocols[0].scheme;
}

char const* AppProtocolTypeText(AppProtocolType_t type) noexcept {
    ProtocolRow const* const row = FindRow(type);
    return row ? row->text : "Invalid";
}

std::ostream& operator<<(std::ostream& out, AppProtocolType_t type) {
    return out << AppProtocolTypeText(type);
}

}  // namespace Oru
}  // namespace Legacy
