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
Sample const k_samples[] = {
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
    {"NumericArray:Double", "2 1 8", "(1, 8)"},
    {"NumericSparse:S8", "-7", "-7"},
    {"Enum", "3", "3"},
    {"String", "hello", "hello"},
    {"StringArray", "3 a b c", "(a, b, c)"},
    {"BoolArray", "3 1 0 1", "(True, False, True)"},
    {"StringSparse", "hello", "hello"},
    {"Colour", "(0 1 2 255)", "(0 1 2 255)"},
    {"Coordinate:S32", "-5 7", "(-5,  7)"},
    {"Rectangle:Float", "1 2 3 4", "(TLC(1,  2),  BRC(3,  4))"},
    {"Orientation", "90 1 2", "OrientationItem"},
    {"Addr", "camera.local", "camera.local"},
    {"Endpoint", "[::1]:80", "[::1]:80"},
    {"AppEndpoint", "10.0.0.1:80", "10.0.0.1:80 (Unknown)"},
    {"AppEndpointArray", "http://10.0.0.1:80/a", "(http://10.0.0.1:80/a:0)"},
    {"RectArray:U16", "1 1 2 3 4", "((TLC(1,  2),  BRC(3,  4)))"},
    {"Composite", "Numeric:U16 65", "(65)"},
};

TEST(OruRecordsTest, EncodeThenDecodeRoundTripsEveryFamily) {
    for (Sample const& sample : k_samples) {
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
              "@0 0x00000001 (section 0, info 1) Numeric:U32 size 2: does not read, code -41 "
              "(malformed or unknown record, or invalid argument)\n"
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
    EXPECT_EQ(RunTool("decode /no/such/file").status, 1);
    EXPECT_EQ(RunTool("decode --frob").status, 2);
}

}  // namespace

namespace {

using OruTest::RunToolArgs;

// Each of these the library would read into something else (300 into a U8
// is 44); the program refuses them and writes nothing.
TEST(OruRecordsTest, EncodeNeverWritesAValueOtherThanTheOneTyped) {
    struct Refused {
        char const* args;
        char const* message;  // the whole of standard error
    };
    Refused const refused[] = {
        {"Numeric:U8 1 300", "300 does not fit Numeric:U8 (0 to 255)"},
        {"Numeric:S8 1 -129", "-129 does not fit Numeric:S8 (-128 to 127)"},
        {"Numeric:U32 1 -1", "-1 does not fit Numeric:U32 (0 to 4294967295)"},
        {"Numeric:U64 1 -1", "-1 does not fit Numeric:U64 (0 to 18446744073709551615)"},
        {"NumericArray:U64 1 2 0 -1",
         "-1 does not fit NumericArray:U64 (0 to 18446744073709551615)"},
        {"Numeric:U64 1 18446744073709551616",
         "18446744073709551616 does not fit Numeric:U64 (0 to 18446744073709551615)"},
        {"Numeric:S16 1 1.5", "1.5 does not fit Numeric:S16 (-32768 to 32767)"},
        {"Numeric:Float 1 1e39", "1e39 does not fit Numeric:Float (-3.40282e+38 to 3.40282e+38)"},
        {"NumericArray:U8 1 3 1 2 256", "256 does not fit NumericArray:U8 (0 to 255)"},
        {"Coordinate:U16 1 5 70000", "70000 does not fit Coordinate:U16 (0 to 65535)"},
        {"Numeric:U8 1 5 6", "'6' is left over after the Numeric:U8 value '5'"},
        // Values, not printed digits: each of these rounds to its neighbour.
        {"Numeric:Float 1 16777217",
         "16777217 is no Numeric:Float value: the nearest one is 16777216"},
        {"Numeric:Double 1 9007199254740993",
         "9007199254740993 is no Numeric:Double value: the nearest one is 9007199254740992"},
        {"NumericArray:Float 1 2 1 16777217",
         "16777217 is no NumericArray:Float value: the nearest one is 16777216"},
        {"Rectangle:Float 1 0 0 16777217 1",
         "16777217 is no Rectangle:Float value: the nearest one is 16777216"},
        // More digits than the element holds; but as many as it holds are its
        // value, and then the record is what refuses a fraction.
        {"Numeric:Double 1 0.1000000000000000001",
         "0.1000000000000000001 is no Numeric:Double value: the nearest one is 0.1"},
        {"NumericSparse:Float 1 0.4",
         "'0.4' cannot be written exactly as NumericSparse:Float: its record reads back as '0'"},
        {"Enum 1 4294967295", "4294967295 does not fit Enum (-2147483648 to 2147483647)"},
        {"Enum 1 -2147483649", "-2147483649 does not fit Enum (-2147483648 to 2147483647)"},
        {"Numeric:Float 1 30.5",
         "'30.5' cannot be written exactly as Numeric:Float: its record reads back as '30'"},
        {"NumericArray:Double 1 2 -1.5 8",
         "'2 -1.5 8' cannot be written exactly as NumericArray:Double: its record reads back "
         "as '(128, 8)'"},
        {"Orientation 1 90 -10 0",
         "'90 -10 0' cannot be written exactly as Orientation: its record reads back as another "
         "value"},
        {"AppEndpoint 1 '10.0.0.1:80 (Http)'",
         "'(Http)' is left over after the AppEndpoint value '10.0.0.1:80 (Unknown)'"},
        {"Composite 1 'Numeric:U8 256'",
         "Error parsing child 'Numeric:U8 256': 256 does not fit Numeric:U8 (0 to 255)"},
    };
    for (Refused const& row : refused) {
        SCOPED_TRACE(row.args);
        auto const run = RunTool(std::string("encode ") + row.args);
        EXPECT_EQ(run.status, 1);
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(run.err, std::string("oru encode: ") + row.message + "\n");
    }
    // The edges of a range are values like any other.
    EXPECT_EQ(RunTool("encode Numeric:S8 1 -128").out, "00 00 00 01 00 00 00 01 02 02 80\n");
    EXPECT_EQ(RunTool("encode Enum 1 -2147483648").out,
              "00 00 00 01 00 00 00 04 05 00 80 00 00 00\n");
    // Exactly held, in any spelling.
    for (char const* same : {"16777216", "1.6777216e7", "16777216.000"}) {
        SCOPED_TRACE(same);
        EXPECT_EQ(RunTool(std::string("encode Numeric:Float 1 ") + same).out,
                  "00 00 00 01 00 00 00 04 02 09 00 00 80 3F\n");
    }
    EXPECT_EQ(RunTool("encode Numeric:U8 1 255").out, "00 00 00 01 00 00 00 01 02 01 FF\n");
}

// Whatever decode prints of a value, encode takes back to the same record.
TEST(OruRecordsTest, EncodeAcceptsWhatDecodePrints) {
    for (Sample const& sample : k_samples) {
        std::string const family = sample.family;
        if (family == "Orientation" || family == "Composite" || family == "String" ||
            family == "StringSparse" || family == "Addr") {
            continue;  // shown as a name only, or read exactly as shown already
        }
        SCOPED_TRACE(family);
        auto const typed = RunTool("encode " + family + " 7 '" + sample.text + "'");
        auto const printed = RunTool("encode " + family + " 7 '" + sample.shown + "'");
        EXPECT_EQ(printed.status, 0) << printed.err;
        EXPECT_EQ(printed.out, typed.out);
    }
    EXPECT_EQ(RunTool("encode Bool 1 True").out, RunTool("encode Bool 1 1").out);
    EXPECT_EQ(RunTool("encode Bool 1 false").out, RunTool("encode Bool 1 0").out);
    EXPECT_EQ(RunTool("encode Colour 1 1 2 3 4").out, RunTool("encode Colour 1 '(1 2 3 4)'").out);
    // Empty lists as decode prints them.
    for (char const* family : {"NumericArray:U16", "StringArray", "BoolArray", "RectArray:U16"}) {
        SCOPED_TRACE(family);
        auto const empty = RunTool(std::string("encode ") + family + " 1 '()'");
        EXPECT_EQ(empty.status, 0) << empty.err;
        std::string const shown = RunTool("decode --hex", empty.out).out;
        EXPECT_EQ(shown.rfind(std::string("@0 0x00000001 (section 0, info 1) ") + family, 0), 0u);
        EXPECT_EQ(shown.substr(shown.size() - 5), ": ()\n");
    }
}

// Texts are read as typed, and what decode prints of them reads back to the
// same record; a list that decode could not show apart is refused.
TEST(OruRecordsTest, EncodeReadsTextsAsTypedAndTheirPrintedFormBack) {
    struct Row {
        char const* family;
        char const* words;  // as given to the shell
        char const* shown;  // as decode shows the value
    };
    Row const rows[] = {
        {"String", "hello world", "hello world"},
        {"String", "'hello world'", "hello world"},
        {"String", "'two  blanks'", "two  blanks"},
        {"StringSparse", "a b", "a b"},
        {"StringArray", "2 'a b' c", "(a b, c)"},
        {"StringArray", "'(a b, c)'", "(a b, c)"},
        {"StringArray", "'3 a b c'", "(a, b, c)"},
        {"StringArray", "1 '(x)'", "((x))"},
        {"AppEndpointArray", "http://10.0.0.1:80/a rtsp://cam/live",
         "(http://10.0.0.1:80/a:0, rtsp://cam/live:0)"},
        {"AppEndpointArray", "'(http://10.0.0.1:80/a:0, rtsp://cam/live:0)'",
         "(http://10.0.0.1:80/a:0, rtsp://cam/live:0)"},
        {"Composite", "'String a b' 'StringArray 2 c d'", "(a b, (c, d))"},
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(std::string(row.family) + " " + row.words);
        auto const encoded = RunTool(std::string("encode ") + row.family + " 1 " + row.words);
        ASSERT_EQ(encoded.status, 0) << encoded.err;
        auto const decoded = RunTool("decode --hex", encoded.out);
        std::string const head = std::string("@0 0x00000001 (section 0, info 1) ") + row.family;
        EXPECT_EQ(decoded.out.rfind(head, 0), 0u) << decoded.out;
        std::string const value = decoded.out.substr(decoded.out.find(": ") + 2);
        EXPECT_EQ(value.substr(0, value.find('\n')), row.shown);
        if (std::string(row.family) != "Composite") {
            auto const again =
                RunTool(std::string("encode ") + row.family + " 1 '" + row.shown + "'");
            EXPECT_EQ(again.status, 0) << again.err;
            EXPECT_EQ(again.out, encoded.out);
        }
    }
    auto const ambiguous = RunTool("encode StringArray 1 2 'a, b' c");
    EXPECT_EQ(ambiguous.status, 1);
    EXPECT_EQ(ambiguous.out, "");
    EXPECT_EQ(ambiguous.err,
              "oru encode: '2 a, b c' cannot be written as StringArray: decode would show it as "
              "'(a, b, c)', which reads as another value\n");
    auto const miscounted = RunTool("encode StringArray 1 3 a b");
    EXPECT_EQ(miscounted.status, 1);
    EXPECT_EQ(miscounted.err, "oru encode: the count 3 differs from the 2 elements given\n");
}

TEST(OruRecordsTest, EncodeTakesOptionsAnywhereAndNegativeNumbersAsValues) {
    auto const before = RunTool("encode --binary Numeric:U8 1 7");
    EXPECT_EQ(RunTool("encode Numeric:U8 1 7 --binary").out, before.out);
    EXPECT_EQ(before.out, std::string("\0\0\0\1\0\0\0\1\2\1\7", 11));
    EXPECT_EQ(RunTool("encode Numeric:S8 1 -5").out, "00 00 00 01 00 00 00 01 02 02 FB\n");
    // A value that names a command, or begins with '-' after '--', is a value.
    EXPECT_EQ(RunTool("decode --hex", RunTool("encode String 1 decode").out).out,
              "@0 0x00000001 (section 0, info 1) String size 7: decode\n");
    EXPECT_EQ(RunTool("decode --hex", RunTool("encode String 1 -- -x").out).out,
              "@0 0x00000001 (section 0, info 1) String size 3: -x\n");
    EXPECT_EQ(RunTool("encode String 1 --frob").status, 2);
    // '--' may follow words of the value as well.
    auto const after = RunTool("encode StringArray 1 2 a -- -b");
    EXPECT_EQ(after.status, 0) << after.err;
    EXPECT_EQ(RunTool("decode --hex", after.out).out,
              "@0 0x00000001 (section 0, info 1) StringArray size 5: (a, -b)\n");
    EXPECT_EQ(RunTool("encode --binary StringArray 1 2 a -- -b").out,
              RunTool("encode StringArray --binary 1 2 -- a -b").out);
}

// Hex text that ends in half a byte is refused whole: no digit is dropped.
TEST(OruRecordsTest, DecodeRefusesAnOddNumberOfHexDigits) {
    for (char const* input :
         {"00000001 00000001 02 01 07 0", "0x00 0x00 0x00 0x01 0x0", "000000010000000102010"}) {
        SCOPED_TRACE(input);
        auto const run = RunTool("decode --hex", input);
        EXPECT_EQ(run.status, 1);
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(run.err, "oru decode: bad hex input: an odd number of hex digits\n");
    }
}

// A composite's record counts its children in 16 bits: the 65536th child
// would be lost on the wire, so the program refuses it.
TEST(OruRecordsTest, EncodeRefusesACompositeItsRecordCannotCount) {
    std::vector<std::string> args = {"encode", "Composite", "1"};
    args.insert(args.end(), 65535, "Bool 1");
    auto const fits = RunToolArgs(args);
    EXPECT_EQ(fits.status, 0) << fits.err;
    EXPECT_EQ(fits.out.substr(0, 35), "00 00 00 01 00 0A FF F7 FD 00 FF FF");
    args.push_back("Bool 0");
    auto const over = RunToolArgs(args);
    EXPECT_EQ(over.status, 1);
    EXPECT_EQ(over.out, "");
    EXPECT_EQ(over.err,
              "oru encode: a composite record holds at most 65535 children, this one has 65536\n");
}

TEST(OruRecordsTest, DecodeExplainsBadInputInOneLine) {
    auto const directory = RunTool("decode /tmp");
    EXPECT_EQ(directory.status, 1);
    EXPECT_EQ(directory.err, "oru decode: '/tmp' is a directory\n");
    auto const missing = RunTool("decode /no/such/file");
    EXPECT_EQ(missing.err, "oru decode: cannot open '/no/such/file': No such file or directory\n");
    // Hex text given as binary: the header cannot be trusted, and the
    // program says what was probably meant.
    auto const hex = RunTool("decode", "00 00 00 01 00 00 00 01 02 01 07\n");
    EXPECT_EQ(hex.status, 1);
    EXPECT_EQ(hex.err, "oru decode: the input looks like hexadecimal text: did you mean --hex?\n");
    auto const offset = RunTool("decode --hex --offset 12", "00 00 00 01 00 00 00 01 02 01 07");
    EXPECT_EQ(offset.status, 1);
    EXPECT_EQ(offset.err, "oru decode: --offset 12 lies past the input's 11 bytes\n");
}

TEST(OruRecordsTest, DecodeReadsCapturesAsEngineersMakeThem) {
    // Four bytes of something else, then a record: xxd's columns and the
    // skipped prefix are not part of the records.
    std::string const xxd = "00000000: dead beef 0000 0001 0000 0001 0201 07    ................\n";
    auto const run = RunTool("decode --hex --offset 4", xxd);
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, "@4 0x00000001 (section 0, info 1) Numeric:U8 size 1: 7\n");
    auto const binary = RunTool("decode --offset 4", std::string("\xDE\xAD\xBE\xEF", 4) +
                                                         std::string("\0\0\0\1\0\0\0\1\2\1\7", 11));
    EXPECT_EQ(binary.out, run.out);
}

TEST(OruRecordsTest, DecodeJsonIsUtf8AndNamesTheCodesMeaning) {
    auto const accented = RunTool("decode --hex --json", RunTool("encode String 1 café").out);
    EXPECT_NE(accented.out.find("\"value\":\"café\""), std::string::npos) << accented.out;
    // A byte that is not UTF-8 cannot pass into JSON as it is.
    auto const latin1 = RunTool("decode --hex --json", "00000001 00000002 06 00 E900");
    EXPECT_NE(latin1.out.find("\"value\":\"\xEF\xBF\xBD\""), std::string::npos) << latin1.out;
    auto const refused = RunTool("decode --hex --json", "00000001 00000002 02 05 0102");
    EXPECT_NE(refused.out.find(
                  "\"code\":-41,\"meaning\":\"malformed or unknown record, or invalid argument\""),
              std::string::npos)
        << refused.out;
}

}  // namespace
