#include <lanpath/addr.h>

#include <string>

#include "textutil.h"

namespace Net {

namespace {

// Parses an IPv6 text with an optional "%" zone. Boost would look an interface
// name up through the system (which opens a socket), so the zone is split off
// here and must be decimal. With anyZone the zone may be any non-empty text and
// is ignored, which is all the bracket decision needs.
bool ParseV6(std::string const& text, bool anyZone, boost::asio::ip::address_v6& out) {
    std::string::size_type percent = text.find('%');
    std::string base = text.substr(0, percent);
    unsigned long scope = 0;
    if (percent != std::string::npos) {
        std::string::size_type zoneStart = percent + 1;
        if (zoneStart == text.size()) {
            return false;
        }
        if (!anyZone) {
            for (std::string::size_type i = zoneStart; i < text.size(); ++i) {
                char c = text[i];
                if (c < '0' || c > '9') {
                    return false;
                }
                scope = scope * 10 + static_cast<unsigned long>(c - '0');
                if (scope > 0xFFFFFFFFul) {
                    return false;
                }
            }
        }
    }
    boost::system::error_code error;
    boost::asio::ip::address_v6 address = boost::asio::ip::make_address_v6(base.c_str(), error);
    if (error) {
        return false;
    }
    address.scope_id(scope);
    out = address;
    return true;
}

}  // namespace

namespace Detail {

bool IsIpv6Literal(std::string const& text) {
    if (text.find('\0') != std::string::npos) {
        return false;
    }
    boost::asio::ip::address_v6 ignored;
    return ParseV6(text, true, ignored);
}

}  // namespace Detail

AddrStr::AddrStr() = default;

AddrStr::AddrStr(std::string const& text) : text_(text) {}

AddrStr::AddrStr(char const* text) : text_(text != nullptr ? text : "") {}

std::string AddrStr::ToString() const {
    return text_;
}

bool AddrStr::IsEmpty() const {
    return text_.empty();
}

bool AddrStr::operator==(AddrStr const& other) const {
    return text_ == other.text_;
}

bool AddrStr::operator!=(AddrStr const& other) const {
    return text_ != other.text_;
}

bool AddrStr::operator<(AddrStr const& other) const {
    return text_ < other.text_;
}

AddrIp::AddrIp() = default;

AddrIp::AddrIp(boost::asio::ip::address const& address) : address_(address) {}

bool AddrIp::TryParse(std::string const& text, AddrIp& out) {
    // The system parser reads up to a zero byte; text behind it must not be ignored.
    if (text.find('\0') != std::string::npos) {
        return false;
    }
    if (text.find(':') != std::string::npos) {
        boost::asio::ip::address_v6 v6;
        if (!ParseV6(text, false, v6)) {
            return false;
        }
        out.address_ = v6;
        return true;
    }
    boost::system::error_code error;
    boost::asio::ip::address_v4 v4 = boost::asio::ip::make_address_v4(text.c_str(), error);
    if (error) {
        return false;
    }
    out.address_ = v4;
    return true;
}

AddrIp AddrIp::FromString(std::string const& text) {
    AddrIp result;
    TryParse(text, result);
    return result;
}

boost::asio::ip::address const& AddrIp::GetAddress() const {
    return address_;
}

std::string AddrIp::ToString() const {
    if (address_.is_v4()) {
        return address_.to_v4().to_string();
    }
    boost::asio::ip::address_v6 v6 = address_.to_v6();
    unsigned long scope = v6.scope_id();
    if (scope == 0) {
        return v6.to_string();
    }
    // Boost would print the interface name, looked up through the system; the
    // number is what TryParse reads back.
    v6.scope_id(0);
    return v6.to_string() + "%" + std::to_string(scope);
}

bool AddrIp::IsV4() const {
    return address_.is_v4();
}

bool AddrIp::IsV6() const {
    return address_.is_v6();
}

bool AddrIp::IsUnspecified() const {
    return address_.is_unspecified();
}

bool AddrIp::IsLoopback() const {
    if (address_.is_loopback()) {
        return true;
    }
    if (address_.is_v6()) {
        boost::asio::ip::address_v6 v6 = address_.to_v6();
        return v6.is_v4_mapped() &&
               boost::asio::ip::make_address_v4(boost::asio::ip::v4_mapped, v6).is_loopback();
    }
    return false;
}

bool AddrIp::operator==(AddrIp const& other) const {
    return address_ == other.address_;
}

bool AddrIp::operator!=(AddrIp const& other) const {
    return address_ != other.address_;
}

bool AddrIp::operator<(AddrIp const& other) const {
    return address_ < other.address_;
}

}  // namespace Net
