#include <gtest/gtest.h>

#include <string>

#include "tool_util.h"

namespace {

using OruTest::RunTool;

struct Sample {
    char const* family;
    char const* text;   // as given to encode
    char const* shown;  // as decode shows the value
};

// One value of every family the program can encode, as it reads back.
Sample const kSamples[] = {
    {"Bool", "1", "True"},
    {"Numeric:U8", "200", "200"},
    {"Numeric:S8", "-5", "-5"},
    {"Numeric:U16", "65535", "65535"},
    {"Numeric:S16", "-300", "-300"},
    {"Numeric:U32", "72", "72"},
    {"Numeric:S32", "-2147483648", "-2147483648"},
    {"Numeric:U64", "18446744073709551615", "18446744073709551615"},
    {"Numeric:S64", "-9000000000", "-9000000000"},
    {"Numeric:Float", "300", "300"},
    {"Numeric:Double", "123456", "123456"},
    {"NumericArray:U16", "3 1 2 65535", "(1, 2, 65535)"},
    // The double wire mapping keeps whole non-negative numbers only: -1.5 comes back as 128.
    {"NumericArray:Double", "2 -1.5 8", "(128, 8)"},
    {"NumericSparse:S8", "-7", "-7"},
    {"Enum", "3", "3"},
    {"String", "hello", "hello"},
    {"StringArray", "3 a b c", "(a, b, c)"},
    {"BoolArray", "3 1 0 1", "(True, False, True)"},
    {"StringSparse", "hello", "hello"},
    {"Colour", "(0 1 2 255)", "(0 1 2 255)"},
    {"Coordinate:S32", "-5 7", "(-5,  7)"},
    {"Rectangle:Float", "1 2 3 4", "(TLC(1,  2),  BRC(3,  4))"},
    {"Orientation", "90 -10 0", "OrientationItem"},
    {"Addr", "camera.local", "camera.local"},
    {"Endpoint", "[::1]:80", "[::1]:80"},
    {"AppEndpoint", "10.0.0.1:80", "10.0.0.1:80 (Unknown)"},
    {"AppEndpointArray", "http://10.0.0.1:80/a", "(http://10.0.0.1:80/a:0)"},
    {"RectArray:U16", "1 1 2 3 4", "((TLC(1,  2),  BRC(3,  4)))"},
    {"Composite", "Numeric:U16 65", "(65)"},
};

TEST(OruRecordsTest, EncodeThenDecodeRoundTripsEveryFamily) {
    for (Sample const& sample : kSamples) {
        SCOPED_TRACE(sample.family);
        auto const encoded =
            RunTool(std::string("encode ") + sample.family + " 0x420C0005 '" + sample.text + "'");
        ASSERT_EQ(encoded.status, 0) << encoded.err;
        auto const decoded = RunTool("decode --hex", encoded.out);
        EXPECT_EQ(decoded.status, 0) << decoded.err;
        EXPECT_EQ(decoded.out.rfind(
                      std::string("@0 0x420C0005 (section 2/3, info 5) ") + sample.family, 0),
                  0u)
            << decoded.out;
        EXPECT_NE(decoded.out.find(std::string(": ") + sample.shown + "\n"), std::string::npos)
            << decoded.out;
        // The binary form decodes the same.
        auto const binary = RunTool(std::string("encode --binary ") + sample.family +
                                    " 0x420C0005 '" + sample.text + "'");
        EXPECT_EQ(RunTool("decode", binary.out).out, decoded.out);
    }
}

TEST(OruRecordsTest, CompositeChildrenAreShownIndented) {
    auto const encoded =
        RunTool("encode Composite 0x42000001 'Numeric:U16 65' 'String pcm' 'BoolArray 2 1 0'");
    ASSERT_EQ(encoded.status, 0) << encoded.err;
    auto const decoded = RunTool("decode --hex", encoded.out);
    EXPECT_EQ(decoded.status, 0);
    EXPECT_EQ(decoded.out,
              "@0 0x42000001 (section 2/0, info 1) Composite size 40: (65, pcm, (True, False))\n"
              "  @12 0x00000000 (section 0, info 0) Numeric:U16 size 2: 65\n"
              "  @24 0x00000000 (section 0, info 0) String size 4: pcm\n"
              "  @38 0x00000000 (section 0, info 0) BoolArray size 2: (True, False)\n");
    auto const json = RunTool("decode --hex --json", encoded.out);
    EXPECT_NE(json.out.find("\"nesting\":1"), std::string::npos);
    auto const badChild = RunTool("encode Composite 1 'NoSuchFamily 3'");
    EXPECT_EQ(badChild.status, 1);
    EXPECT_NE(badChild.err.find("Error parsing child"), std::string::npos);
}

TEST(OruRecordsTest, EncodeReportsTheFamilysOwnParseError) {
    auto const bad = RunTool("encode Numeric:U8 1 abc");
    EXPECT_EQ(bad.status, 1);
    EXPECT_EQ(bad.err, "oru encode: Error parsing numericItem\n");
    EXPECT_EQ(RunTool("encode NoSuchFamily 1 2").status, 2);
    EXPECT_EQ(RunTool("encode Numeric:U8 0x1FFFFFFFF 2").status, 2);
    EXPECT_EQ(RunTool("encode Numeric:U8").status, 2);
    auto const help = RunTool("encode --help");
    EXPECT_EQ(help.status, 0);
    EXPECT_NE(help.out.find("Numeric:Double"), std::string::npos);
    EXPECT_EQ(RunTool("encode numeric:u32 5 7").out, "00 00 00 05 00 00 00 04 02 05 00 00 00 07\n");
}

TEST(OruRecordsTest, DecodeGoesOnPastARecordThatDoesNotRead) {
    // A U32 record of size 2 (refused), then a good String record.
    std::string const input =
        "00000001 00000002 02 05 0102\n"
        "00000002 00000003 06 00 616200";
    auto const run = RunTool("decode --hex", input);
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out,
              "@0 0x00000001 (section 0, info 1) Numeric:U32 size 2: does not read, code -41\n"
              "@12 0x00000002 (section 0, info 2) String size 3: ab\n");

    auto const json = RunTool("decode --hex --json", input);
    EXPECT_NE(json.out.find("\"code\":-41"), std::string::npos);
    EXPECT_NE(json.out.find("\"value\":\"ab\""), std::string::npos);
}

TEST(OruRecordsTest, DecodeStopsWhereTheHeaderCannotBeTrusted) {
    auto const claims = RunTool("decode --hex", "00000001 000000FF 06 00 6100");
    EXPECT_EQ(claims.status, 1);
    EXPECT_EQ(claims.out,
              "@0 the record claims 255 payload bytes, 2 remain; decoding stops here\n");
    auto const shortHeader = RunTool("decode --hex", "00000001 0000");
    EXPECT_EQ(shortHeader.status, 1);
    EXPECT_NE(shortHeader.out.find("truncated header: 6 bytes left"), std::string::npos);
    auto const unknown = RunTool("decode --hex", "00000001 00000000 8A 00");
    EXPECT_EQ(unknown.status, 1);
    EXPECT_NE(unknown.out.find("Connection size 0: does not read, code -41"), std::string::npos);
    EXPECT_EQ(RunTool("decode --hex", "0g").status, 1);
    EXPECT_EQ(RunTool("decode --hex", "").out, "no records\n");
    EXPECT_EQ(RunTool("decode /no/such/file").status, 2);
    EXPECT_EQ(RunTool("decode --frob").status, 2);
}

}  // namespace
