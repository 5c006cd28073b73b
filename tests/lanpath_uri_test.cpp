// Uri, UriScheme and AppEndpoint: parts of well-formed and broken URIs.
#include <lanpath/lanpath.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

using Net::AppEndpoint;
using Net::Uri;
using Net::UriScheme;

// All parts in one line, so a table row states the whole parse.
std::string Show(Uri const& uri) {
    return "scheme=" + uri.GetScheme().GetString() + " user=" + uri.GetUserInfo() +
           " host=" + uri.GetHost() + " port=" + std::to_string(uri.GetPort()) +
           (uri.HasPort() ? "" : "(none)") + " path=" + uri.GetPath() + " query=" + uri.GetQuery() +
           " fragment=" + uri.GetFragment() + (uri.IsValid() ? " valid" : " invalid");
}

TEST(LanpathUriTest, PartsOfWellFormedAndBrokenUris) {
    struct Row {
        std::string text;
        std::string parts;
    };
    std::vector<Row> const rows = {
        {"http://example.com:8080/a/b?x=1&y#top",
         "scheme=http user= host=example.com port=8080 path=/a/b query=x=1&y fragment=top valid"},
        {"rtsp://user:pw@cam.local/live/ch1",
         "scheme=rtsp user=user:pw host=cam.local port=0(none) path=/live/ch1 query= fragment= "
         "valid"},
        {"HTTP://[::1]:80/", "scheme=HTTP user= host=::1 port=80 path=/ query= fragment= valid"},
        {"http://[fe80::1%25eth0]/",
         "scheme=http user= host=fe80::1%25eth0 port=0(none) path=/ query= fragment= valid"},
        {"x-zyl-tcpraw://10.0.0.1:502",
         "scheme=x-zyl-tcpraw user= host=10.0.0.1 port=502 path= query= fragment= valid"},
        {"mailto:someone@example.com",
         "scheme=mailto user= host= port=0(none) path=someone@example.com query= fragment= "
         "valid"},
        {"http:", "scheme=http user= host= port=0(none) path= query= fragment= valid"},
        {"http://h?q#f", "scheme=http user= host=h port=0(none) path= query=q fragment=f valid"},
        {"http://h#f?q", "scheme=http user= host=h port=0(none) path= query= fragment=f?q valid"},
        {"http://a@b@c/", "scheme=http user=a@b host=c port=0(none) path=/ query= fragment= valid"},
        // An empty port is no port.
        {"http://host:/p",
         "scheme=http user= host=host port=0(none) path=/p query= fragment= valid"},
        {"http://host:65535",
         "scheme=http user= host=host port=65535 path= query= fragment= valid"},
        {"http://host:00080", "scheme=http user= host=host port=80 path= query= fragment= valid"},
        {"http://", "scheme=http user= host= port=0(none) path= query= fragment= valid"},
        // Broken authorities: what could be read is kept, the port is never guessed.
        {"http://host:65536/",
         "scheme=http user= host=host port=0(none) path=/ query= fragment= invalid"},
        {"http://host:8a/",
         "scheme=http user= host=host port=0(none) path=/ query= fragment= invalid"},
        {"http://host:1:2/",
         "scheme=http user= host=host port=0(none) path=/ query= fragment= invalid"},
        {"http://[::1", "scheme=http user= host=::1 port=0(none) path= query= fragment= invalid"},
        {"http://[::1]x/",
         "scheme=http user= host=::1 port=0(none) path=/ query= fragment= invalid"},
        {"http://::1:80/", "scheme=http user= host= port=0(none) path=/ query= fragment= invalid"},
        // No scheme: a reference, never valid.
        {"", "scheme= user= host= port=0(none) path= query= fragment= invalid"},
        {"//host:1/p", "scheme= user= host=host port=1 path=/p query= fragment= invalid"},
        {"1http://x", "scheme= user= host= port=0(none) path=1http://x query= fragment= invalid"},
        {"://x", "scheme= user= host= port=0(none) path=://x query= fragment= invalid"},
        {"ht tp://x", "scheme= user= host= port=0(none) path=ht tp://x query= fragment= invalid"},
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(row.text);
        Uri const uri(row.text);
        EXPECT_EQ(row.parts, Show(uri));
        EXPECT_EQ(row.text, uri.ToString());
    }
    EXPECT_EQ(Show(Uri("")), Show(Uri()));
}

TEST(LanpathUriTest, SchemesCompareWithoutCase) {
    EXPECT_EQ(UriScheme("HTTP"), UriScheme("http"));
    EXPECT_EQ(UriScheme("x-Zyl-Ntp"), UriScheme("x-zyl-ntp"));
    EXPECT_NE(UriScheme("http"), UriScheme("https"));
    EXPECT_NE(UriScheme("https"), UriScheme("http"));
    EXPECT_NE(UriScheme("http"), UriScheme(""));
    EXPECT_EQ(UriScheme(), UriScheme(""));
    EXPECT_TRUE(UriScheme().IsEmpty());
    // Zero bytes are compared like any other byte, not taken as the end.
    EXPECT_EQ(UriScheme(std::string("a\0b", 3)), UriScheme(std::string("A\0B", 3)));
    EXPECT_NE(UriScheme(std::string("a\0b", 3)), UriScheme("a"));
    // The word is kept as written; only comparison ignores case.
    EXPECT_EQ("RTSP", Uri("RTSP://cam/").GetScheme().GetString());
    EXPECT_EQ(Uri("a:b"), Uri("a:b"));
    EXPECT_NE(Uri("a:b"), Uri("A:b"));
}

TEST(LanpathUriTest, AppEndpointTakesHostAndPortFromTheUri) {
    struct Row {
        std::string uri;
        std::string endpoint;  // Endpoint<AddrStr>::ToString
        std::string text;      // ToString: the URI, an RTSP scheme in lower case
    };
    std::vector<Row> const rows = {
        {"rtsp://cam:554/live?ch=1", "cam:554", "rtsp://cam:554/live?ch=1"},
        {"RTSP://cam.example/live", "cam.example:0", "rtsp://cam.example/live"},
        {"RtSp://Cam/Live", "Cam:0", "rtsp://Cam/Live"},
        {"HTTP://[::1]:8080/x", "[::1]:8080", "HTTP://[::1]:8080/x"},
        {"http://u@host/", "host:0", "http://u@host/"},  // no port assumed for a scheme
        {"x-zyl-modbus://10.0.0.9:502", "10.0.0.9:502", "x-zyl-modbus://10.0.0.9:502"},
        {"http://host:65536/", "host:0", "http://host:65536/"},
        {"rtspx://cam/", "cam:0", "rtspx://cam/"},
        {"not a uri", ":0", "not a uri"},
        {"", ":0", ""},
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(row.uri);
        AppEndpoint const app(row.uri);
        EXPECT_EQ(row.endpoint, app.GetEndpoint().ToString());
        EXPECT_EQ(row.text, app.ToString());
        EXPECT_EQ(row.uri, app.GetUri().ToString());
    }
    AppEndpoint const rtsp("rtsp://cam/live");
    EXPECT_EQ("rtsp", rtsp.GetUri().GetScheme().GetString());
    EXPECT_EQ("cam", rtsp.GetEndpoint().GetAddr().ToString());
    EXPECT_EQ(0, rtsp.GetEndpoint().GetPort());
    EXPECT_EQ(rtsp, AppEndpoint("rtsp://cam/live"));
    EXPECT_NE(rtsp, AppEndpoint("rtsp://cam/live2"));
    EXPECT_EQ("", AppEndpoint().ToString());
    EXPECT_EQ(Net::Endpoint<Net::AddrStr>(), AppEndpoint().GetEndpoint());
}

}  // namespace

namespace {

// Every short text over the URI delimiters parses without harm, keeps its text,
// and yields an endpoint whose text form reads back to the same host and port.
TEST(LanpathUriTest, AnyShortTextParsesAndItsEndpointRoundTrips) {
    std::string const alphabet = "a1:/[]@?#%";
    std::vector<std::string> texts = {"h://"};
    for (std::size_t length = 1; length <= 4; ++length) {
        std::vector<std::string> longer;
        for (std::string const& text : texts) {
            if (text.size() == length + 3) {
                for (char c : alphabet) {
                    longer.push_back(text + c);
                }
            }
        }
        texts.insert(texts.end(), longer.begin(), longer.end());
    }
    for (std::string const& text : texts) {
        SCOPED_TRACE(text);
        AppEndpoint const app(text);
        ASSERT_EQ(text, app.ToString());
        ASSERT_EQ(app.GetUri().GetHost(), app.GetEndpoint().GetAddr().ToString());
        ASSERT_EQ(app.GetUri().GetPort(), app.GetEndpoint().GetPort());
        ASSERT_EQ(app.GetEndpoint(),
                  Net::Endpoint<Net::AddrStr>::FromString(app.GetEndpoint().ToString()));
    }
}

}  // namespace
