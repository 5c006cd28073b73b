// AppProtocolType_t and AppProtocolInfo_t: the application protocol spoken at
// a network endpoint and the range of protocol versions on offer. Each type
// has a fixed URI scheme. Plain values without shared state: constant
// operations may be called from several threads at once.
#ifndef LEGACY_ORU_APPPROTOCOL_H
#define LEGACY_ORU_APPPROTOCOL_H

#include <cstdint>
#include <iosfwd>
#include <string>

#include <lanpath/uri.h>

#include <legacy/oru/export.h>

namespace Legacy {
namespace Oru {

// The application protocols. The numbers are compared and stored as they are,
// so they never change; the gaps are unassigned.
enum class AppProtocolType_t : std::uint32_t {
    Unknown = 0,
    Soap = 1,
    SoapSsl = 2,
    Http = 5,
    Https = 7,
    TcpRaw = 8,
    HttpXml = 9,
    Modbus = 10,
    Ntp = 32,
    Rtsp = 66,
};

static_assert(sizeof(AppProtocolType_t) == 4, "AppProtocolType_t holds 32 bits");

// A protocol with the newest version offered and the oldest still understood.
struct ORU_API AppProtocolInfo_t {
    AppProtocolType_t type;
    unsigned short version;
    unsigned short compatVersion;

    // Type 0, both versions 0.
    AppProtocolInfo_t() noexcept : type(AppProtocolType_t::Unknown), version(0), compatVersion(0) {}
    AppProtocolInfo_t(AppProtocolType_t protocolType, unsigned short protocolVersion,
                      unsigned short protocolCompatVersion) noexcept
        : type(protocolType), version(protocolVersion), compatVersion(protocolCompatVersion) {}

    // True when type is this type and version lies within compat version and
    // version, both inclusive.
    bool IsProtocolCompatible(AppProtocolType_t protocolType,
                              unsigned short protocolVersion) const noexcept {
        return protocolType == type && compatVersion <= protocolVersion &&
               protocolVersion <= version;
    }
    // True for SoapSsl and Https only.
    bool ProtocolRequiresEncryption() const noexcept {
        return type == AppProtocolType_t::SoapSsl || type == AppProtocolType_t::Https;
    }

    // All three fields take part.
    bool operator==(AppProtocolInfo_t const& other) const noexcept {
        return type == other.type && version == other.version &&
               compatVersion == other.compatVersion;
    }
    bool operator!=(AppProtocolInfo_t const& other) const noexcept { return !(*this == other); }
};

// The info of a URI scheme, case ignored: the type of the scheme with versions
// 0 (rtsp: versions 1 and 1); an unknown or empty scheme gives all zero.
ORU_API AppProtocolInfo_t ToLegacyAppProtocolInfo(Net::UriScheme const& scheme);

// The same from the scheme's word.
ORU_API AppProtocolInfo_t AppProtocolInfoFromScheme(std::string const& scheme);

// The lower-case URI scheme of a type; "x-zyl-unknown" for a number without one.
ORU_API char const* AppProtocolScheme(AppProtocolType_t type) noexcept;

// "Soap", "Http", ...; "Invalid" for a number without a text.
ORU_API char const* AppProtocolTypeText(AppProtocolType_t type) noexcept;

// Writes AppProtocolTypeText of the type.
ORU_API std::ostream& operator<<(std::ostream& out, AppProtocolType_t type);

}  // namespace Oru
}  // namespace Legacy

#endif
