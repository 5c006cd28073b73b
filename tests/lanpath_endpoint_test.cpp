// Endpoint<A>: text form, round trips, numeric conversion and the questions.
#include <lanpath/lanpath.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using Net::AddrIp;
using Net::AddrStr;
using Net::Endpoint;

using EndpointStr = Endpoint<AddrStr>;
using EndpointIp = Endpoint<AddrIp>;

// "addr|port", so a failure shows both halves and any stray bracket.
std::string Show(EndpointStr const& e) {
    return e.GetAddr().ToString() + "|" + std::to_string(e.GetPort());
}

TEST(LanpathEndpointTest, ToStringWritesPortAlwaysAndBracketsOnlyWhereNeeded) {
    struct Row {
        std::string addr;
        unsigned short port;
        std::string text;
    };
    std::vector<Row> const rows = {
        {"camera.local", 554, "camera.local:554"},
        {"10.0.0.1", 0, "10.0.0.1:0"},
        {"10.0.0.1", 65535, "10.0.0.1:65535"},
        {"", 0, ":0"},
        {"::1", 80, "[::1]:80"},
        {"2001:db8::7", 1, "[2001:db8::7]:1"},
        {"fe80::1%eth0", 5, "[fe80::1%eth0]:5"},
        {"::ffff:10.0.0.1", 9, "[::ffff:10.0.0.1]:9"},
        // A URI keeps its scheme in front: callers look for "rtsp://" at the start.
        {"rtsp://cam:554/live", 0, "rtsp://cam:554/live:0"},
        // Colons that make no IPv6 address need no brackets.
        {"a:b", 0, "a:b:0"},
        {"host:", 3, "host::3"},
        // A text that is bracketed itself is wrapped once more, or it would lose them.
        {"[x]", 1, "[[x]]:1"},
        {"[]", 2, "[[]]:2"},
        {"[", 2, "[:2"},
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(row.addr);
        EXPECT_EQ(row.text, EndpointStr(AddrStr(row.addr), row.port).ToString());
    }
    EXPECT_EQ(":0", EndpointStr().ToString());
}

TEST(LanpathEndpointTest, FromStringSplitsAtLastColonBeforeAPort) {
    struct Row {
        std::string text;
        std::string expected;  // Show() of the result
    };
    std::vector<Row> const rows = {
        {"host:80", "host|80"},
        {"host", "host|0"},
        {"", "|0"},
        {":", ":|0"},
        {":0", "|0"},
        {"host:", "host:|0"},
        {"host:0", "host|0"},
        {"host:65535", "host|65535"},
        {"host:65536", "host:65536|0"},
        {"host:0080", "host|80"},
        {"host:99999999999999999999999", "host:99999999999999999999999|0"},
        {"host:+80", "host:+80|0"},
        {"host:-1", "host:-1|0"},
        {"host: 80", "host: 80|0"},
        {"host:80 ", "host:80 |0"},
        {"a:1:2", "a:1|2"},
        {"[::1]:80", "::1|80"},
        {"[::1]", "::1|0"},
        {"[::1]:", "[::1]:|0"},
        {"[]:5", "|5"},
        {"[a]b:1", "[a]b|1"},
        {"[[x]]:1", "[x]|1"},
        // Unbracketed IPv6 is split like any text; the header says to bracket it.
        {"::1", ":|1"},
        {"rtsp://cam:554/live", "rtsp://cam:554/live|0"},
        {"rtsp://cam/live:554", "rtsp://cam/live|554"},
        {std::string("a\0b:7", 5), std::string("a\0b|7", 5)},
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(row.expected, Show(EndpointStr::FromString(row.text)));
    }
    EXPECT_EQ("h|9", Show(EndpointStr::FromString("h:9")));
    EXPECT_EQ(EndpointStr(), EndpointStr::FromString(static_cast<char const*>(nullptr)));
}

// Every text over a small alphabet of the troublesome characters, with the ports
// at the edges: the text form must carry each endpoint through unchanged.
TEST(LanpathEndpointTest, EveryAddressTextSurvivesTheRoundTrip) {
    std::string const alphabet = ":[]1a%";
    std::vector<std::string> texts = {""};
    for (std::size_t length = 1; length <= 5; ++length) {
        std::vector<std::string> longer;
        for (std::string const& text : texts) {
            if (text.size() == length - 1) {
                for (char c : alphabet) {
                    longer.push_back(text + c);
                }
            }
        }
        texts.insert(texts.end(), longer.begin(), longer.end());
    }
    texts.push_back("fe80::1%eth0");
    texts.push_back("rtsp://u:p@h:554/a?b#c");
    texts.push_back("[::1]:80");
    texts.push_back(std::string("\0:1", 3));
    for (std::string const& text : texts) {
        for (unsigned short port : {0, 7, 65535}) {
            EndpointStr const e(AddrStr(text), port);
            std::string const written = e.ToString();
            SCOPED_TRACE(written);
            ASSERT_EQ(Show(e), Show(EndpointStr::FromString(written)));
        }
    }
}

// Whatever text comes in, reading it gives an endpoint whose text reads back the same.
TEST(LanpathEndpointTest, FromStringOfAnyTextIsStable) {
    for (std::string const text : {"", "::", "[[", "]]:", "[::1]]:2", "]:1", "1.2.3.4:99999",
                                   "\xff\xfe:1", "%:%", "[%]:0"}) {
        SCOPED_TRACE(text);
        EndpointStr const once = EndpointStr::FromString(text);
        EXPECT_EQ(once, EndpointStr::FromString(once.ToString()));
    }
}

TEST(LanpathEndpointTest, NumericEndpointsUseCanonicalText) {
    EndpointIp const v6 = EndpointIp::FromString("[2001:0db8:0:0::1]:443");
    EXPECT_TRUE(v6.GetAddr().IsV6());
    EXPECT_EQ("[2001:db8::1]:443", v6.ToString());

    EndpointIp const v4 = EndpointIp::FromString("127.0.0.1");
    EXPECT_EQ("127.0.0.1:0", v4.ToString());

    EndpointIp const scoped = EndpointIp::FromString("[fe80::1%3]:80");
    EXPECT_EQ("[fe80::1%3]:80", scoped.ToString());
    EXPECT_EQ(3u, scoped.GetAddr().GetAddress().to_v6().scope_id());

    // A name isn't numeric: the address is unspecified, the port is still read.
    EndpointIp const named = EndpointIp::FromString("example.com:8080");
    EXPECT_TRUE(named.GetAddr().IsUnspecified());
    EXPECT_EQ(8080, named.GetPort());

    for (EndpointIp const& e :
         {v6, v4, scoped, named, EndpointIp(), EndpointIp(AddrIp::FromString("::"), 65535),
          EndpointIp(AddrIp::FromString("::ffff:1.2.3.4"), 1)}) {
        SCOPED_TRACE(e.ToString());
        EXPECT_EQ(e, EndpointIp::FromString(e.ToString()));
    }
}

TEST(LanpathEndpointTest, ToIpConvertsNumericTextOnly) {
    struct Row {
        std::string text;
        std::string ip;  // ToString of the numeric endpoint
    };
    std::vector<Row> const rows = {
        {"10.1.2.3:80", "10.1.2.3:80"},
        {"[::1]:5", "[::1]:5"},
        {"[fe80::a%12]:5", "[fe80::a%12]:5"},
        {"example.com:80", "0.0.0.0:80"},
        // No name is resolved, not even this one, and interface names aren't looked up.
        {"localhost:1", "0.0.0.0:1"},
        {"[fe80::1%eth0]:5", "0.0.0.0:5"},
        {"10.1.2.3.4:6", "0.0.0.0:6"},
        {"", "0.0.0.0:0"},
        {"rtsp://10.0.0.1:554/live:0", "0.0.0.0:0"},
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(row.ip, EndpointStr::FromString(row.text).ToIp().ToString());
    }
    EndpointIp const ip = EndpointIp::FromString("[::1]:9");
    EXPECT_EQ(ip, ip.ToIp());
}

TEST(LanpathEndpointTest, LocalhostAndFullySpecified) {
    for (char const* text :
         {"localhost", "LocalHost", "127.0.0.1", "127.200.0.9", "::1", "::ffff:127.0.0.1"}) {
        SCOPED_TRACE(text);
        EXPECT_TRUE(EndpointStr(AddrStr(text), 1).IsLocalhostAddr());
    }
    for (char const* text : {"", "localhost.example", "localhos", "0.0.0.0", "::", "10.0.0.1",
                             "128.0.0.1", "::2", "[::1]"}) {
        SCOPED_TRACE(text);
        EXPECT_FALSE(EndpointStr(AddrStr(text), 1).IsLocalhostAddr());
    }
    EXPECT_TRUE(EndpointIp(AddrIp::FromString("127.0.0.1")).IsLocalhostAddr());
    EXPECT_FALSE(EndpointIp().IsLocalhostAddr());

    EXPECT_TRUE(EndpointStr(AddrStr("h"), 1).IsFullySpecified());
    EXPECT_FALSE(EndpointStr(AddrStr("h"), 0).IsFullySpecified());
    EXPECT_FALSE(EndpointStr(AddrStr(""), 80).IsFullySpecified());
    EXPECT_TRUE(EndpointIp(AddrIp::FromString("10.0.0.1"), 1).IsFullySpecified());
    EXPECT_FALSE(EndpointIp(AddrIp::FromString("::"), 1).IsFullySpecified());
    EXPECT_FALSE(EndpointIp(AddrIp::FromString("10.0.0.1"), 0).IsFullySpecified());
}

TEST(LanpathEndpointTest, AccessorsAndComparisons) {
    EndpointStr e(AddrStr("a"));
    EXPECT_EQ(0, e.GetPort());
    e.SetPort(65535);
    e.SetAddr(AddrStr("b"));
    EXPECT_EQ("b|65535", Show(e));

    EndpointStr const same(AddrStr("b"), 65535);
    EndpointStr const otherPort(AddrStr("b"), 1);
    EndpointStr const otherAddr(AddrStr("B"), 65535);
    EXPECT_TRUE(e == same);
    EXPECT_FALSE(e != same);
    EXPECT_TRUE(e != otherPort);
    EXPECT_TRUE(e != otherAddr);
    EXPECT_TRUE(otherPort < e);
    EXPECT_FALSE(e < otherPort);
    EXPECT_TRUE(otherAddr < e);  // by address first
    EXPECT_FALSE(e < same);
}

}  // namespace
