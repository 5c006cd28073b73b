// The endpoint messages and the conversions to and from them. This file links
// against the shared library only, so it also shows that the generated message
// classes are exported.
#include <lanpath/lanpath.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using Legacy::Oru::Pb::AppEndpointStr;
using Legacy::Oru::Pb::AppProtocolInfo;
using Legacy::Oru::Pb::AppProtocolType;
using Net::AddrStr;
using Net::Endpoint;

TEST(LanpathPbTest, EndpointsSurviveTheMessageAndTheWire) {
    std::vector<Endpoint<AddrStr>> const endpoints = {
        Endpoint<AddrStr>(),
        Endpoint<AddrStr>(AddrStr("camera.local"), 554),
        Endpoint<AddrStr>(AddrStr("::1"), 65535),
        Endpoint<AddrStr>(AddrStr("rtsp://cam:554/live?x"), 0),
        // Address texts are bytes, not necessarily UTF-8, and may hold zero bytes.
        Endpoint<AddrStr>(AddrStr(std::string("\xff\xfe\0x", 4)), 1),
    };
    for (Endpoint<AddrStr> const& e : endpoints) {
        SCOPED_TRACE(e.ToString());
        Net::Pb::EndpointStr message;
        Net::Sys2Pb::Convert(e, message);
        EXPECT_EQ(e.GetAddr().ToString(), message.addr());
        EXPECT_EQ(e.GetPort(), message.port());

        std::string wire;
        ASSERT_TRUE(message.SerializeToString(&wire));
        Net::Pb::EndpointStr parsed;
        ASSERT_TRUE(parsed.ParseFromString(wire));
        Endpoint<AddrStr> back(AddrStr("stale"), 9);
        Net::Pb2Sys::Convert(parsed, back);
        EXPECT_EQ(e, back);
    }
}

TEST(LanpathPbTest, MessageToEndpointFillsGapsAndRefusesLargePorts) {
    Endpoint<AddrStr> out(AddrStr("stale"), 9);
    Net::Pb2Sys::Convert(Net::Pb::EndpointStr(), out);
    EXPECT_EQ(Endpoint<AddrStr>(), out);

    Net::Pb::EndpointStr message;
    message.set_addr("h");
    for (unsigned int port : {65535u, 65536u, 65616u, 0xFFFFFFFFu}) {
        SCOPED_TRACE(port);
        message.set_port(port);
        Net::Pb2Sys::Convert(message, out);
        EXPECT_EQ("h", out.GetAddr().ToString());
        EXPECT_EQ(port == 65535u ? 65535 : 0, out.GetPort());
    }

    // Converting into a used message leaves nothing of the old content behind.
    Net::Pb::EndpointStr used;
    ASSERT_TRUE(used.ParseFromString(std::string("\x0a\x01z\x10\x05\x18\x07", 7)));
    ASSERT_FALSE(used.unknown_fields().empty());
    Net::Sys2Pb::Convert(Endpoint<AddrStr>(AddrStr("a"), 1), used);
    EXPECT_TRUE(used.unknown_fields().empty());
    EXPECT_EQ("a", used.addr());
    EXPECT_EQ(1u, used.port());
}

TEST(LanpathPbTest, ProtocolTypeNumbersAreTheWireValues) {
    struct Row {
        AppProtocolType type;
        int number;
    };
    std::vector<Row> const rows = {
        {Legacy::Oru::Pb::APP_PROTOCOL_UNKNOWN, 0},   {Legacy::Oru::Pb::APP_PROTOCOL_SOAP, 1},
        {Legacy::Oru::Pb::APP_PROTOCOL_SOAP_SSL, 2},  {Legacy::Oru::Pb::APP_PROTOCOL_HTTP, 4},
        {Legacy::Oru::Pb::APP_PROTOCOL_HTTPS, 5},     {Legacy::Oru::Pb::APP_PROTOCOL_TCP_RAW, 6},
        {Legacy::Oru::Pb::APP_PROTOCOL_HTTP_XML, 11}, {Legacy::Oru::Pb::APP_PROTOCOL_MODBUS, 12},
        {Legacy::Oru::Pb::APP_PROTOCOL_NTP, 7},       {Legacy::Oru::Pb::APP_PROTOCOL_RTSP, 9},
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(row.number);
        EXPECT_EQ(row.number, static_cast<int>(row.type));
        EXPECT_TRUE(Legacy::Oru::Pb::AppProtocolType_IsValid(row.number));
    }
    for (int gap : {3, 8, 10, 13, -1}) {
        SCOPED_TRACE(gap);
        EXPECT_FALSE(Legacy::Oru::Pb::AppProtocolType_IsValid(gap));
    }

    // A number without a name on the wire reads as unknown; it isn't lost, but kept
    // among the unknown fields.
    AppProtocolInfo info;
    ASSERT_TRUE(info.ParseFromString(std::string("\x08\x03\x10\x02", 4)));
    EXPECT_FALSE(info.has_app_protocol_type());
    EXPECT_EQ(Legacy::Oru::Pb::APP_PROTOCOL_UNKNOWN, info.app_protocol_type());
    EXPECT_EQ(2u, info.version());
    EXPECT_FALSE(info.unknown_fields().empty());
}

TEST(LanpathPbTest, AppEndpointMessageDefaultsAndRoundTrip) {
    AppEndpointStr message;
    // Unset sub-messages read as the default instances.
    EXPECT_FALSE(message.has_protocol_info());
    EXPECT_FALSE(message.has_endpoint());
    EXPECT_EQ(&AppProtocolInfo::default_instance(), &message.protocol_info());
    EXPECT_EQ(&Net::Pb::EndpointStr::default_instance(), &message.endpoint());
    EXPECT_EQ(Legacy::Oru::Pb::APP_PROTOCOL_UNKNOWN, message.protocol_info().app_protocol_type());
    EXPECT_EQ(0u, message.addr_group_prefix());

    message.mutable_protocol_info()->set_app_protocol_type(Legacy::Oru::Pb::APP_PROTOCOL_RTSP);
    message.mutable_protocol_info()->set_version(65537u);
    message.mutable_protocol_info()->set_compat_version(1u);
    Net::Sys2Pb::Convert(Endpoint<AddrStr>(AddrStr("[x]"), 554), *message.mutable_endpoint());
    message.set_addr_group_prefix(7u);

    std::string wire;
    ASSERT_TRUE(message.SerializeToString(&wire));
    AppEndpointStr parsed;
    ASSERT_TRUE(parsed.ParseFromString(wire));
    EXPECT_EQ(Legacy::Oru::Pb::APP_PROTOCOL_RTSP, parsed.protocol_info().app_protocol_type());
    EXPECT_EQ(65537u, parsed.protocol_info().version());
    EXPECT_EQ(1u, parsed.protocol_info().compat_version());
    EXPECT_EQ(7u, parsed.addr_group_prefix());
    Endpoint<AddrStr> e;
    Net::Pb2Sys::Convert(parsed.endpoint(), e);
    EXPECT_EQ(Endpoint<AddrStr>(AddrStr("[x]"), 554), e);

    parsed.Clear();
    EXPECT_FALSE(parsed.has_protocol_info());
    EXPECT_EQ(0u, parsed.addr_group_prefix());
    EXPECT_EQ("", parsed.endpoint().addr());
}

}  // namespace
