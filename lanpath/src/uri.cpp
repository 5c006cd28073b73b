#include <lanpath/uri.h>

#include "textutil.h"

namespace Net {

namespace {

bool IsAlpha(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool IsSchemeChar(char c) {
    return IsAlpha(c) || (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.';
}

// Length of the scheme at the front of text, 0 if there is no "scheme:".
std::string::size_type SchemeLength(std::string const& text) {
    if (text.empty() || !IsAlpha(text[0])) {
        return 0;
    }
    std::string::size_type i = 1;
    while (i < text.size() && IsSchemeChar(text[i])) {
        ++i;
    }
    return i < text.size() && text[i] == ':' ? i : 0;
}

}  // namespace

UriScheme::UriScheme() = default;

UriScheme::UriScheme(std::string const& scheme) : scheme_(scheme) {}

std::string const& UriScheme::GetString() const {
    return scheme_;
}

bool UriScheme::IsEmpty() const {
    return scheme_.empty();
}

bool UriScheme::operator==(UriScheme const& other) const {
    return Detail::EqualIgnoreCase(scheme_, other.scheme_);
}

bool UriScheme::operator!=(UriScheme const& other) const {
    return !(*this == other);
}

Uri::Uri() : port_(0), hasPort_(false), valid_(false) {}

Uri::Uri(std::string const& text) : text_(text), port_(0), hasPort_(false), valid_(true) {
    std::string::size_type pos = 0;
    std::string::size_type schemeLength = SchemeLength(text_);
    if (schemeLength > 0) {
        scheme_ = UriScheme(text_.substr(0, schemeLength));
        pos = schemeLength + 1;
    } else {
        valid_ = false;
    }
    if (text_.compare(pos, 2, "//") == 0) {
        pos += 2;
        std::string::size_type end = text_.find_first_of("/?#", pos);
        if (end == std::string::npos) {
            end = text_.size();
        }
        ParseAuthority_(text_.substr(pos, end - pos));
        pos = end;
    }
    std::string::size_type end = text_.find_first_of("?#", pos);
    if (end == std::string::npos) {
        end = text_.size();
    }
    path_ = text_.substr(pos, end - pos);
    pos = end;
    if (pos < text_.size() && text_[pos] == '?') {
        end = text_.find('#', pos + 1);
        if (end == std::string::npos) {
            end = text_.size();
        }
        query_ = text_.substr(pos + 1, end - pos - 1);
        pos = end;
    }
    if (pos < text_.size() && text_[pos] == '#') {
        fragment_ = text_.substr(pos + 1);
    }
}

void Uri::ParseAuthority_(std::string const& authority) {
    // "@" may not stand in a host, so the last one ends the user info.
    std::string::size_type at = authority.rfind('@');
    std::string::size_type hostStart = 0;
    if (at != std::string::npos) {
        userInfo_ = authority.substr(0, at);
        hostStart = at + 1;
    }
    std::string::size_type portColon;
    if (hostStart < authority.size() && authority[hostStart] == '[') {
        std::string::size_type close = authority.find(']', hostStart);
        if (close == std::string::npos) {
            // No end to the literal: keep what there is, but the URI is broken.
            host_ = authority.substr(hostStart + 1);
            valid_ = false;
            return;
        }
        host_ = authority.substr(hostStart + 1, close - hostStart - 1);
        portColon = close + 1;
        if (portColon < authority.size() && authority[portColon] != ':') {
            valid_ = false;
            return;
        }
    } else {
        portColon = authority.find(':', hostStart);
        host_ = authority.substr(hostStart, portColon - hostStart);
    }
    if (portColon >= authority.size()) {
        return;
    }
    char const* portBegin = authority.data() + portColon + 1;
    char const* portEnd = authority.data() + authority.size();
    // "host:" with an empty port is allowed and means no port.
    if (portBegin == portEnd) {
        return;
    }
    if (Detail::ParsePort(portBegin, portEnd, port_)) {
        hasPort_ = true;
    } else {
        valid_ = false;
    }
}

UriScheme const& Uri::GetScheme() const {
    return scheme_;
}

std::string const& Uri::GetUserInfo() const {
    return userInfo_;
}

std::string const& Uri::GetHost() const {
    return host_;
}

unsigned short Uri::GetPort() const {
    return port_;
}

bool Uri::HasPort() const {
    return hasPort_;
}

std::string const& Uri::GetPath() const {
    return path_;
}

std::string const& Uri::GetQuery() const {
    return query_;
}

std::string const& Uri::GetFragment() const {
    return fragment_;
}

bool Uri::IsValid() const {
    return valid_;
}

std::string const& Uri::ToString() const {
    return text_;
}

bool Uri::operator==(Uri const& other) const {
    return text_ == other.text_;
}

bool Uri::operator!=(Uri const& other) const {
    return text_ != other.text_;
}

}  // namespace Net
