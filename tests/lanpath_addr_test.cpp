// AddrStr and AddrIp: text kept as given, numeric parsing and canonical text.
#include <lanpath/addr.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using Net::AddrIp;
using Net::AddrStr;

TEST(LanpathAddrTest, AddrStrKeepsAnyTextByteForByte) {
    std::vector<std::string> const texts = {
        "", "host", "rtsp://cam:554/live?x#y", "[::1]:80", std::string("a\0b", 3), "\xff\x01 "};
    for (std::string const& text : texts) {
        SCOPED_TRACE(text);
        AddrStr const addr(text);
        EXPECT_EQ(text, addr.ToString());
        EXPECT_EQ(addr, AddrStr(addr.ToString()));
        EXPECT_EQ(text.empty(), addr.IsEmpty());
    }
    EXPECT_EQ(AddrStr(), AddrStr(static_cast<char const*>(nullptr)));
    EXPECT_EQ(AddrStr("x"), AddrStr(std::string("x")));
    EXPECT_NE(AddrStr("x"), AddrStr("X"));
    EXPECT_TRUE(AddrStr("a") < AddrStr("b"));
    EXPECT_FALSE(AddrStr("b") < AddrStr("a"));
}

TEST(LanpathAddrTest, TryParseReadsNumericAddressesOnly) {
    struct Row {
        std::string text;
        std::string canonical;  // empty: refused
    };
    std::vector<Row> const rows = {
        {"1.2.3.4", "1.2.3.4"},
        {"0.0.0.0", "0.0.0.0"},
        {"255.255.255.255", "255.255.255.255"},
        {"::", "::"},
        {"2001:0DB8:0000::0001", "2001:db8::1"},
        {"::ffff:1.2.3.4", "::ffff:1.2.3.4"},
        {"fe80::1%7", "fe80::1%7"},
        {"fe80::1%4294967295", "fe80::1%4294967295"},
        {"", ""},
        {"1.2.3", ""},
        {"1.2.3.4.5", ""},
        {"256.1.1.1", ""},
        {" 1.2.3.4", ""},
        {"1.2.3.4:80", ""},
        {std::string("1.2.3.4\0", 8), ""},
        {std::string("::1\0x", 5), ""},
        {"[::1]", ""},
        {"::1::2", ""},
        {"fe80::1%", ""},
        {"fe80::1%eth0", ""},
        {"fe80::1%4294967296", ""},
        {"fe80::1%1%2", ""},
        {"localhost", ""},
        {std::string(100, ':'), ""},
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(row.text);
        AddrIp parsed(AddrIp::FromString("9.9.9.9"));
        bool const ok = AddrIp::TryParse(row.text, parsed);
        EXPECT_EQ(!row.canonical.empty(), ok);
        if (ok) {
            EXPECT_EQ(row.canonical, parsed.ToString());
            EXPECT_EQ(parsed, AddrIp::FromString(parsed.ToString()));
        } else {
            // A refused text leaves the target alone, and FromString falls back.
            EXPECT_EQ("9.9.9.9", parsed.ToString());
            EXPECT_TRUE(AddrIp::FromString(row.text).IsUnspecified());
        }
    }
}

TEST(LanpathAddrTest, AddrIpQuestionsAndOrder) {
    AddrIp const none;
    EXPECT_TRUE(none.IsV4());
    EXPECT_TRUE(none.IsUnspecified());
    EXPECT_EQ("0.0.0.0", none.ToString());

    AddrIp const v6 = AddrIp::FromString("::1");
    EXPECT_TRUE(v6.IsV6());
    EXPECT_FALSE(v6.IsV4());
    EXPECT_TRUE(v6.IsLoopback());
    EXPECT_TRUE(AddrIp::FromString("127.255.0.1").IsLoopback());
    EXPECT_TRUE(AddrIp::FromString("::ffff:127.0.0.2").IsLoopback());
    EXPECT_FALSE(AddrIp::FromString("::ffff:10.0.0.1").IsLoopback());
    EXPECT_FALSE(AddrIp::FromString("::127.0.0.1").IsLoopback());
    EXPECT_FALSE(AddrIp::FromString("::").IsLoopback());

    // The scope id takes part in equality: fe80::1 on two links are two addresses.
    EXPECT_NE(AddrIp::FromString("fe80::1%1"), AddrIp::FromString("fe80::1%2"));
    EXPECT_NE(AddrIp::FromString("fe80::1%1"), AddrIp::FromString("fe80::1"));
    // IPv4 and its mapped IPv6 form are different values.
    EXPECT_NE(AddrIp::FromString("1.2.3.4"), AddrIp::FromString("::ffff:1.2.3.4"));
    EXPECT_TRUE(AddrIp::FromString("255.255.255.255") < AddrIp::FromString("::"));
    EXPECT_TRUE(AddrIp::FromString("1.2.3.4") < AddrIp::FromString("1.2.3.5"));

    boost::asio::ip::address const raw = boost::asio::ip::make_address("10.0.0.1");
    EXPECT_EQ(raw, AddrIp(raw).GetAddress());
}

}  // namespace
