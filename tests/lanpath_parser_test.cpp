// StringParser: the field reader behind scheme splitting.
#include <lanpath/lanpath.h>

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace {

using Net::IParser;
using Net::StringParser;
using Vintor::StrPtrLen;

TEST(LanpathParserTest, ReadsUpToTheFirstDelimiter) {
    std::string const text = "rtsp://cam:554/live";
    for (bool skip : {false, true}) {
        SCOPED_TRACE(skip);
        std::string scheme = "stale";
        StrPtrLen view(text);
        StringParser parser(scheme, ':', skip);
        IParser& asInterface = parser;
        EXPECT_TRUE(asInterface.Parse(view, nullptr));
        EXPECT_EQ("rtsp", scheme);
        EXPECT_EQ(skip ? "//cam:554/live" : "://cam:554/live", view.ToStdString());
        EXPECT_EQ(text.data() + text.size(), view.End());
    }
}

TEST(LanpathParserTest, EmptyFieldsAndRepeatedUse) {
    std::string const text = "::x";
    std::string field = "stale";
    StrPtrLen view(text);
    StringParser parser(field, ':', false);
    EXPECT_TRUE(parser.Parse(view, nullptr));
    EXPECT_EQ("", field);
    EXPECT_EQ("::x", view.ToStdString());

    std::string const fields = "a:b::c";
    StrPtrLen rest(fields);
    parser.SetSkipDelimiter(true);
    EXPECT_TRUE(parser.GetSkipDelimiter());
    EXPECT_TRUE(parser.Parse(rest, nullptr));
    EXPECT_EQ("a", field);
    EXPECT_TRUE(parser.Parse(rest, nullptr));
    EXPECT_EQ("b", field);
    EXPECT_TRUE(parser.Parse(rest, nullptr));
    EXPECT_EQ("", field);
    EXPECT_EQ("c", rest.ToStdString());
    // The last field has no delimiter behind it: refused, and nothing consumed.
    EXPECT_FALSE(parser.Parse(rest, nullptr));
    EXPECT_EQ("c", rest.ToStdString());
}

TEST(LanpathParserTest, MissingDelimiterConsumesNothing) {
    std::string const text = "hostname/path";
    std::string field = "stale";
    StrPtrLen view(text);
    StringParser parser(field, ':', false);
    std::string error;
    EXPECT_FALSE(parser.Parse(view, &error));
    EXPECT_EQ("", field);
    EXPECT_EQ(text.data(), view.Begin());
    EXPECT_EQ("delimiter ':' not found", error);

    StrPtrLen empty;
    EXPECT_FALSE(parser.Parse(empty, nullptr));
    EXPECT_TRUE(empty.Empty());
    StrPtrLen emptyOfText(text.data(), std::size_t{0});
    EXPECT_FALSE(parser.Parse(emptyOfText, &error));
    EXPECT_EQ(text.data(), emptyOfText.Begin());

    // The delimiter is found in the view only, not in the text behind its end.
    StrPtrLen shortened(text.data(), 4);
    std::string const withColon = "ab:cd";
    StrPtrLen cut(withColon.data(), 2);
    EXPECT_FALSE(parser.Parse(cut, nullptr));
    EXPECT_EQ("ab", cut.ToStdString());
    EXPECT_FALSE(parser.Parse(shortened, nullptr));
}

// The way a URI is split by callers: scheme, then any run of ":" and "/", then an
// endpoint text. Destruction through the interface must be safe.
TEST(LanpathParserTest, SplitsAUriIntoSchemeAndEndpointText) {
    std::string const uri = "x-zyl-tcpraw:////[::1]:502";
    std::string scheme;
    StrPtrLen view(uri);
    std::unique_ptr<IParser> parser(new StringParser(scheme, ':', false));
    parser->Parse(view, nullptr);
    while (!view.Empty() && (*view.Begin() == ':' || *view.Begin() == '/')) {
        view.Advance(1);
    }
    parser.reset();
    EXPECT_EQ("x-zyl-tcpraw", scheme);
    Net::Endpoint<Net::AddrStr> const e =
        Net::Endpoint<Net::AddrStr>::FromString(view.ToStdString());
    EXPECT_EQ("::1", e.GetAddr().ToString());
    EXPECT_EQ(502, e.GetPort());
}

}  // namespace
