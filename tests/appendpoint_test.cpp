// Application endpoints: URIs in and out, the rtsp road, the two equalities,
// and the bridges to Net::AppEndpoint and the protobuf messages.
#include <gtest/gtest.h>

#include <string>

#include <legacy/oru/oru.h>

namespace {

using namespace Legacy::Oru;
using EndpointStr = Net::Endpoint<Net::AddrStr>;
using AppStr = AppEndpoint<EndpointStr>;
using AppIp = AppEndpoint<Net::Endpoint<Net::AddrIp>>;

AppStr Make(std::uint32_t type, char const* endpoint, unsigned short version = 0,
            unsigned short compat = 0, unsigned char prefix = 0) {
    return AppStr(AppProtocolInfo_t(static_cast<AppProtocolType_t>(type), version, compat),
                  EndpointStr::FromString(endpoint), prefix);
}

TEST(AppEndpointTest, FromUriSplitsSchemeAndHandsTheRestToFromString) {
    struct Row {
        char const* uri;
        std::uint32_t type;
        unsigned short version;
        char const* host;
        unsigned short port;
    };
    Row const rows[] = {
        {"x-zyl-tcpraw://10.0.0.1:4001", 8, 0, "10.0.0.1", 4001},
        // Any run of ":" and "/" behind the scheme, none included.
        {"X-ZYL-TCPRAW:10.0.0.1:4001", 8, 0, "10.0.0.1", 4001},
        {"x-zyl-tcpraw:////10.0.0.1:4001", 8, 0, "10.0.0.1", 4001},
        // No default port for a scheme, and the path stays in the host.
        {"http://cam.local/index.html", 5, 0, "cam.local/index.html", 0},
        {"rtsp://cam:554/live", 66, 1, "cam:554/live", 0},
        {"rtsp://cam/live:8554", 66, 1, "cam/live", 8554},
        {"gopher://[::1]:70", 0, 0, "::1", 70},
        // Without a scheme the whole text is the endpoint.
        {"camera:80", 0, 0, "", 0},
        {"camera", 0, 0, "camera", 0},
        {"", 0, 0, "", 0},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(row.uri);
        AppStr const app = AppStr::FromUri(row.uri);
        EXPECT_EQ(static_cast<std::uint32_t>(app.GetAppProtocolType()), row.type);
        EXPECT_EQ(app.GetAppProtocolVersion(), row.version);
        EXPECT_EQ(app.GetAppProtocolCompatVersion(), row.version);
        EXPECT_EQ(app.GetAddrGroupPrefix(), 0);
        if (std::string(row.uri) != "camera:80") {
            EXPECT_EQ(app.GetAddr().ToString(), row.host);
            EXPECT_EQ(app.GetPort(), row.port);
        }
    }
    // "camera:80" reads "camera" as the scheme: the rest is the endpoint "80".
    AppStr const noScheme = AppStr::FromUri("camera:80");
    EXPECT_EQ(noScheme.GetEndpoint(), EndpointStr::FromString("80"));

    AppIp const ip = AppIp::FromUri("https://192.168.1.20:8443");
    EXPECT_EQ(ip.GetAppProtocolType(), AppProtocolType_t::Https);
    EXPECT_EQ(ip.GetAddr(), Net::AddrIp::FromString("192.168.1.20"));
    EXPECT_EQ(ip.GetPort(), 8443);
    EXPECT_TRUE(AppIp::FromUri("http://name.local:80").GetAddr().IsUnspecified());
}

TEST(AppEndpointTest, ToUriWritesTheSchemeOrCutsAnRtspAddress) {
    struct Row {
        AppStr app;
        char const* uri;
    };
    Row const rows[] = {
        {Make(8, "10.0.0.1:4001"), "x-zyl-tcpraw://10.0.0.1:4001"},
        {Make(1, "dev:80"), "x-zyl-devsoap://dev:80"},
        {Make(5, "[::1]:8080"), "http://[::1]:8080"},
        {Make(3, "h:1"), "x-zyl-unknown://h:1"},
        {Make(66, "cam:554", 1, 1), "rtsp://cam:554"},
        // An address holding an rtsp URI loses the port suffix, whatever the type.
        {Make(66, "rtsp://cam:554/live:0", 1, 1), "rtsp://cam:554/live"},
        {Make(5, "rtsp://cam/live:99"), "rtsp://cam/live"},
        // The test is case-sensitive and anchored at the start.
        {Make(66, "RTSP://cam/live:0"), "rtsp://RTSP://cam/live:0"},
        {Make(0, "x rtsp://cam:0"), "x-zyl-unknown://x rtsp://cam:0"},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(row.uri);
        EXPECT_EQ(row.app.ToUri(), row.uri);
    }
    // Round trip through text keeps everything but the prefix.
    AppStr const app = Make(8, "10.0.0.1:4001", 0, 0, 9);
    AppStr const back = AppStr::FromUri(app.ToUri());
    EXPECT_TRUE(back.IsEqual(app));
    EXPECT_NE(back, app);
    EXPECT_EQ(back.GetAddrGroupPrefix(), 0);
}

TEST(AppEndpointTest, ToStringIsForPeopleAndHasNoRtspGuard) {
    struct Row {
        std::uint32_t type;
        char const* endpoint;
        char const* text;
    };
    Row const rows[] = {
        {1, "dev:80", "http://dev:80"},    {5, "dev:80", "http://dev:80"},
        {2, "dev:443", "https://dev:443"}, {7, "dev:443", "https://dev:443"},
        {66, "cam:554", "rtsp://cam:554"}, {66, "rtsp://cam/live:0", "rtsp://rtsp://cam/live:0"},
        {8, "dev:23", "dev:23 (TcpRaw)"},  {0, "dev:1", "dev:1 (Unknown)"},
        {4, "dev:1", "dev:1 (Invalid)"},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(Make(row.type, row.endpoint).ToString(), row.text);
    }
}

TEST(AppEndpointTest, StrictAndLooseEquality) {
    AppStr const base = Make(5, "dev:80", 1, 1, 0);
    // Versions: loose yes, strict no.
    EXPECT_TRUE(base.IsEqual(Make(5, "dev:80", 2, 0)));
    EXPECT_NE(base, Make(5, "dev:80", 2, 0));
    // Prefix 0 matches any prefix, two non-zero prefixes must agree.
    EXPECT_TRUE(Make(5, "dev:80", 0, 0, 0).IsEqual(Make(5, "dev:80", 0, 0, 7)));
    EXPECT_TRUE(Make(5, "dev:80", 0, 0, 7).IsEqual(Make(5, "dev:80", 0, 0, 0)));
    EXPECT_FALSE(Make(5, "dev:80", 0, 0, 3).IsEqual(Make(5, "dev:80", 0, 0, 7)));
    EXPECT_NE(Make(5, "dev:80", 0, 0, 0), Make(5, "dev:80", 0, 0, 7));
    // Type and endpoint always count.
    EXPECT_FALSE(base.IsEqual(Make(7, "dev:80", 1, 1)));
    EXPECT_FALSE(base.IsEqual(Make(5, "dev:81", 1, 1)));
    EXPECT_EQ(base, Make(5, "dev:80", 1, 1, 0));

    for (char const* endpoint : {"dev:80", "dev:0", ":80", "", "localhost:1"}) {
        SCOPED_TRACE(endpoint);
        AppStr const app = Make(5, endpoint);
        EXPECT_NE(app.IsSpecified(), app.IsUnspecified());
    }
    EXPECT_TRUE(Make(5, "dev:80").IsSpecified());
    EXPECT_FALSE(Make(5, "dev:0").IsSpecified());
    EXPECT_TRUE(Make(5, "LocalHost:80").IsLocalhost());
    EXPECT_FALSE(Make(5, "dev:80").IsLocalhost());
    // Encryption goes by the type, not by a well-known port.
    EXPECT_FALSE(Make(0, "dev:443").RequiresEncryption());
    EXPECT_TRUE(Make(7, "dev:80").RequiresEncryption());
    EXPECT_TRUE(Make(5, "dev:80", 3, 1).IsAppProtocolCompatible(AppProtocolType_t::Http, 2));
    EXPECT_FALSE(Make(5, "dev:80", 3, 1).IsAppProtocolCompatible(AppProtocolType_t::Http, 4));
}

TEST(AppEndpointTest, NetAppEndpointsBecomeLegacyEndpoints) {
    Net::AppEndpoint const http("HTTP://cam.local:8080/cfg");
    AppStr const str = ToLegacyAppEndpointStr(http);
    EXPECT_EQ(str, AppStr(AppProtocolInfo_t(AppProtocolType_t::Http, 0, 0),
                          EndpointStr(Net::AddrStr("cam.local"), 8080), 0));

    // rtsp keeps the whole URI, path included, as the address with port 0,
    // and ToUri gives the source text back.
    for (char const* uri : {"rtsp://cam:554/live/main?x=1", "rtsp://cam/live", "rtsp://cam"}) {
        SCOPED_TRACE(uri);
        AppStr const rtsp = ToLegacyAppEndpointStr(Net::AppEndpoint(uri));
        EXPECT_EQ(rtsp.GetAppProtocolInfo(), AppProtocolInfo_t(AppProtocolType_t::Rtsp, 1, 1));
        EXPECT_EQ(rtsp.GetPort(), 0);
        EXPECT_EQ(rtsp.GetAddr().ToString(), uri);
        EXPECT_EQ(rtsp.ToUri(), uri);
    }

    // A scheme in capitals is the same scheme; the text takes the one
    // spelling that ToUri recognises, so the scheme is not written twice.
    AppStr const capitals = ToLegacyAppEndpointStr(Net::AppEndpoint("RTSP://cam.example/live"));
    EXPECT_EQ(capitals.GetAppProtocolType(), AppProtocolType_t::Rtsp);
    EXPECT_EQ(capitals.GetAddr().ToString(), "rtsp://cam.example/live");
    EXPECT_EQ(capitals.ToUri(), "rtsp://cam.example/live");

    AppIp const ip = ToLegacyAppEndpointIp(Net::AppEndpoint("https://[fe80::1%3]:443/x"));
    EXPECT_EQ(ip.GetAppProtocolType(), AppProtocolType_t::Https);
    EXPECT_EQ(ip.GetAddr(), Net::AddrIp::FromString("fe80::1%3"));
    EXPECT_EQ(ip.GetPort(), 443);
    EXPECT_EQ(ip.GetAddrGroupPrefix(), 0);
    AppIp const named = ToLegacyAppEndpointIp(Net::AppEndpoint("x-zyl-modbus://plc:502"));
    EXPECT_EQ(named.GetAppProtocolType(), AppProtocolType_t::Modbus);
    EXPECT_TRUE(named.GetAddr().IsUnspecified());
    EXPECT_EQ(named.GetPort(), 502);
}

TEST(AppEndpointTest, MessageNumbersAreTheWireValues) {
    struct Row {
        std::uint32_t type;
        int number;
    };
    Row const rows[] = {{0, 0}, {1, 1},  {2, 2},   {5, 4},  {7, 5},
                        {8, 6}, {9, 11}, {10, 12}, {32, 7}, {66, 9}};
    for (auto const& row : rows) {
        SCOPED_TRACE(row.type);
        AppProtocolInfo_t const info(static_cast<AppProtocolType_t>(row.type), 3, 2);
        Pb::AppProtocolInfo message;
        Sys2LegacyPb::Convert(info, message);
        EXPECT_EQ(static_cast<int>(message.app_protocol_type()), row.number);
        EXPECT_EQ(message.version(), 3u);
        EXPECT_EQ(message.compat_version(), 2u);
        AppProtocolInfo_t back;
        LegacyPb2Sys::Convert(message, back);
        EXPECT_EQ(back, info);
    }
    // Numbers without a row on either side become unknown.
    for (int gap : {3, 8, 10, 13, 66, -1}) {
        EXPECT_EQ(AppProtocolTypeFromPb(gap), AppProtocolType_t::Unknown) << gap;
    }
    for (std::uint32_t gap : {3u, 4u, 6u, 11u, 12u, 65u}) {
        EXPECT_EQ(AppProtocolTypeToPb(static_cast<AppProtocolType_t>(gap)),
                  Pb::APP_PROTOCOL_UNKNOWN)
            << gap;
    }
    // A 3 on the wire is not an enumerator: it reads as unknown and writes back as 0.
    Pb::AppProtocolInfo parsed;
    ASSERT_TRUE(parsed.ParseFromString(std::string("\x08\x03\x10\x01", 4)));
    AppProtocolInfo_t info;
    LegacyPb2Sys::Convert(parsed, info);
    EXPECT_EQ(info, AppProtocolInfo_t(AppProtocolType_t::Unknown, 1, 0));
    Pb::AppProtocolInfo written;
    Sys2LegacyPb::Convert(info, written);
    EXPECT_EQ(written.app_protocol_type(), Pb::APP_PROTOCOL_UNKNOWN);
}

TEST(AppEndpointTest, MessagesCutWideFieldsAndKeepThePrefix) {
    Pb::AppProtocolInfo wide;
    wide.set_app_protocol_type(Pb::APP_PROTOCOL_NTP);
    wide.set_version(65537);
    wide.set_compat_version(0xFFFF0002u);
    AppProtocolInfo_t info;
    LegacyPb2Sys::Convert(wide, info);
    EXPECT_EQ(info, AppProtocolInfo_t(AppProtocolType_t::Ntp, 1, 2));

    AppStr const app = Make(66, "rtsp://cam/live:0", 1, 1, 42);
    Pb::AppEndpointStr message;
    message.set_addr_group_prefix(7);  // cleared by the conversion
    Sys2LegacyPb::Convert(app, message);
    EXPECT_EQ(message.addr_group_prefix(), 42u);
    EXPECT_EQ(message.protocol_info().app_protocol_type(), Pb::APP_PROTOCOL_RTSP);
    AppStr back;
    LegacyPb2Sys::Convert(message, back);
    EXPECT_EQ(back, app);

    // The text road has no place for the prefix.
    std::string uri;
    Sys2LegacyPb::Convert(app, uri);
    EXPECT_EQ(uri, "rtsp://cam/live");
    AppStr fromText = Make(1, "x:1", 9, 9, 9);
    LegacyPb2Sys::Convert(uri, fromText);
    EXPECT_EQ(fromText.GetAddrGroupPrefix(), 0);
    EXPECT_TRUE(fromText.IsEqual(Make(66, "cam/live", 1, 1, 42)));

    // Unset sub-messages read as their defaults; a wide prefix keeps its low byte.
    Pb::AppEndpointStr empty;
    empty.set_addr_group_prefix(0x1FF);
    AppStr fromEmpty = app;
    LegacyPb2Sys::Convert(empty, fromEmpty);
    EXPECT_EQ(fromEmpty, AppStr(AppProtocolInfo_t(), EndpointStr(), 0xFF));
}

}  // namespace
