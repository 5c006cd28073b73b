// Uri and UriScheme: a URI taken apart into scheme, user info, host, port, path,
// query and fragment, keeping its original text. Parsing never throws; a text
// that is not a well-formed absolute URI still yields a Uri, with IsValid false
// and whatever parts could be recognised. Plain values: constant operations may
// be called from several threads at once.
//
// Grammar read (after RFC 3986, without percent-decoding):
//     uri       = scheme ":" [ "//" authority ] path [ "?" query ] [ "#" fragment ]
//     scheme    = ALPHA *( ALPHA / DIGIT / "+" / "-" / "." )
//     authority = [ userinfo "@" ] host [ ":" [ port ] ]
//     host      = "[" IPv6 text "]" / text without ":"
//     port      = 1*DIGIT, at most 65535
// The host is kept without its brackets. A text without a scheme is parsed as a
// reference with an empty scheme and is not valid.
#ifndef LANPATH_URI_H
#define LANPATH_URI_H

#include <string>

#include <lanpath/export.h>

namespace Net {

// The scheme of a URI, such as "http" or "rtsp". Schemes compare without regard
// to case; the text is kept as given.
class LANPATH_API UriScheme {
public:
    // The empty scheme.
    UriScheme();
    // A scheme of the given word, kept as it is.
    explicit UriScheme(std::string const& scheme);

    // The scheme's word as given.
    std::string const& GetString() const;
    // True for the empty scheme.
    bool IsEmpty() const;

    // Equal when the words are equal with ASCII case ignored.
    bool operator==(UriScheme const& other) const;
    bool operator!=(UriScheme const& other) const;

private:
    std::string scheme_;
};

// A parsed URI.
class LANPATH_API Uri {
public:
    // The empty URI: no parts, not valid.
    Uri();
    // Parses the text; never throws.
    explicit Uri(std::string const& text);

    // The scheme; empty if the text has none.
    UriScheme const& GetScheme() const;
    // The user info before "@" in the authority, if any.
    std::string const& GetUserInfo() const;
    // The host, without the brackets of an IPv6 literal; empty if there is no authority.
    std::string const& GetHost() const;
    // The port, 0 when none is given or it is malformed.
    unsigned short GetPort() const;
    // True when the authority gives a well-formed port.
    bool HasPort() const;
    // The path, with its leading "/" if it has one.
    std::string const& GetPath() const;
    // The text after "?" and before "#".
    std::string const& GetQuery() const;
    // The text after "#".
    std::string const& GetFragment() const;
    // True when the text has a scheme and a well-formed authority, if any.
    bool IsValid() const;

    // The original text.
    std::string const& ToString() const;

    // Equal when the texts are equal.
    bool operator==(Uri const& other) const;
    bool operator!=(Uri const& other) const;

private:
    void ParseAuthority_(std::string const& authority);

    std::string text_;
    UriScheme scheme_;
    std::string userInfo_;
    std::string host_;
    std::string path_;
    std::string query_;
    std::string fragment_;
    unsigned short port_;
    bool hasPort_;
    bool valid_;
};

}  // namespace Net

#endif
