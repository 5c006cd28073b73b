// Application protocols: schemes in and out, versions, encryption, equality.
#include <gtest/gtest.h>

#include <cctype>

#include <legacy/oru/oru.h>

#include "test_util.h"

namespace {

using namespace Legacy::Oru;
using OruTest::TextOf;

AppProtocolType_t Type(std::uint32_t number) {
    return static_cast<AppProtocolType_t>(number);
}

TEST(AppProtocolTest, SchemesMapToTypesIgnoringCase) {
    struct Row {
        char const* scheme;
        std::uint32_t type;
        unsigned short version;
        char const* text;
    };
    Row const rows[] = {
        {"x-zyl-unknown", 0, 0, "Unknown"},
        {"X-ZYL-DEVSOAP", 1, 0, "Soap"},
        {"x-zyl-devsoapssl", 2, 0, "SoapSsl"},
        {"HTTP", 5, 0, "Http"},
        {"hTTpS", 7, 0, "Https"},
        {"x-zyl-tcpraw", 8, 0, "TcpRaw"},
        {"x-zyl-httpxml", 9, 0, "HttpXml"},
        {"x-zyl-Modbus", 10, 0, "Modbus"},
        {"x-zyl-ntp", 32, 0, "Ntp"},
        {"RTSP", 66, 1, "Rtsp"},
    };
    for (auto const& row : rows) {
        SCOPED_TRACE(row.scheme);
        AppProtocolInfo_t const info = ToLegacyAppProtocolInfo(Net::UriScheme(row.scheme));
        // Only rtsp carries versions.
        EXPECT_EQ(info, AppProtocolInfo_t(Type(row.type), row.version, row.version));
        EXPECT_STREQ(AppProtocolTypeText(info.type), row.text);
        // Output is always the lower-case word.
        std::string lower(row.scheme);
        for (char& c : lower) {
            c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        }
        EXPECT_EQ(AppProtocolScheme(info.type), lower);
    }
    for (char const* unknown : {"", "ftp", "http2", "rtsps", "x-zyl-"}) {
        SCOPED_TRACE(unknown);
        EXPECT_EQ(ToLegacyAppProtocolInfo(Net::UriScheme(unknown)), AppProtocolInfo_t());
    }
    // Numbers without a row: no text, and the unknown scheme on the way out.
    for (std::uint32_t gap : {3u, 4u, 6u, 11u, 65u, 67u, 0xFFFFFFFFu}) {
        SCOPED_TRACE(gap);
        EXPECT_STREQ(AppProtocolScheme(Type(gap)), "x-zyl-unknown");
        EXPECT_EQ(TextOf(Type(gap)), "Invalid");
    }
}

TEST(AppProtocolTest, CompatibilityEncryptionAndEquality) {
    AppProtocolInfo_t const http = ToLegacyAppProtocolInfo(Net::UriScheme("http"));
    EXPECT_TRUE(http.IsProtocolCompatible(AppProtocolType_t::Http, 0));
    EXPECT_FALSE(http.IsProtocolCompatible(AppProtocolType_t::Http, 1));

    AppProtocolInfo_t const range(AppProtocolType_t::Soap, 5, 2);
    EXPECT_FALSE(range.IsProtocolCompatible(AppProtocolType_t::Soap, 1));
    EXPECT_TRUE(range.IsProtocolCompatible(AppProtocolType_t::Soap, 2));
    EXPECT_TRUE(range.IsProtocolCompatible(AppProtocolType_t::Soap, 5));
    EXPECT_FALSE(range.IsProtocolCompatible(AppProtocolType_t::Soap, 6));
    EXPECT_FALSE(range.IsProtocolCompatible(AppProtocolType_t::SoapSsl, 3));
    // An inverted range admits nothing.
    AppProtocolInfo_t const inverted(AppProtocolType_t::Soap, 2, 5);
    for (unsigned short v = 0; v < 8; ++v) {
        EXPECT_FALSE(inverted.IsProtocolCompatible(AppProtocolType_t::Soap, v)) << v;
    }

    for (std::uint32_t number : {0u, 1u, 2u, 5u, 7u, 8u, 9u, 10u, 32u, 66u, 3u, 443u}) {
        SCOPED_TRACE(number);
        bool const secure = number == 2 || number == 7;
        EXPECT_EQ(AppProtocolInfo_t(Type(number), 1, 1).ProtocolRequiresEncryption(), secure);
    }

    AppProtocolInfo_t const a(AppProtocolType_t::Http, 1, 1);
    EXPECT_NE(a, AppProtocolInfo_t(AppProtocolType_t::Http, 2, 1));
    EXPECT_NE(a, AppProtocolInfo_t(AppProtocolType_t::Http, 1, 0));
    EXPECT_NE(a, AppProtocolInfo_t(AppProtocolType_t::Https, 1, 1));
    EXPECT_EQ(a, AppProtocolInfo_t(AppProtocolType_t::Http, 1, 1));
}

}  // namespace
