#include <lanpath/endpoint.h>

#include "textutil.h"

namespace Net {

namespace {

// What the template needs of each address type, in one place per type.

std::string AddrText(AddrStr const& addr) {
    return addr.ToString();
}
std::string AddrText(AddrIp const& addr) {
    return addr.ToString();
}

void AddrFromText(std::string const& text, AddrStr& out) {
    out = AddrStr(text);
}
void AddrFromText(std::string const& text, AddrIp& out) {
    out = AddrIp::FromString(text);
}

bool IsAddrGiven(AddrStr const& addr) {
    return !addr.IsEmpty();
}
bool IsAddrGiven(AddrIp const& addr) {
    return !addr.IsUnspecified();
}

AddrIp ToAddrIp(AddrStr const& addr) {
    return AddrIp::FromString(addr.ToString());
}
AddrIp ToAddrIp(AddrIp const& addr) {
    return addr;
}

bool IsLoopbackAddr(AddrStr const& addr) {
    std::string text = addr.ToString();
    return Detail::EqualIgnoreCase(text, std::string("localhost")) ||
           AddrIp::FromString(text).IsLoopback();
}
bool IsLoopbackAddr(AddrIp const& addr) {
    return addr.IsLoopback();
}

// Brackets are needed for IPv6, and for a text that FromString would otherwise
// unwrap. Everything else reads back as it is, because the port always follows
// the last ":".
bool NeedsBrackets(std::string const& text) {
    if (text.size() >= 2 && text.front() == '[' && text.back() == ']') {
        return true;
    }
    return text.find(':') != std::string::npos && Detail::IsIpv6Literal(text);
}

}  // namespace

template <class A>
Endpoint<A>::Endpoint() : addr_(), port_(0) {}

template <class A>
Endpoint<A>::Endpoint(A const& addr, unsigned short port) : addr_(addr), port_(port) {}

template <class A>
Endpoint<A> Endpoint<A>::FromString(std::string const& text) {
    std::string host = text;
    unsigned short port = 0;
    std::string::size_type colon = text.rfind(':');
    if (colon != std::string::npos &&
        Detail::ParsePort(text.data() + colon + 1, text.data() + text.size(), port)) {
        host = text.substr(0, colon);
    }
    if (host.size() >= 2 && host.front() == '[' && host.back() == ']') {
        host = host.substr(1, host.size() - 2);
    }
    Endpoint result;
    AddrFromText(host, result.addr_);
    result.port_ = port;
    return result;
}

template <class A>
Endpoint<A> Endpoint<A>::FromString(char const* text) {
    return text != nullptr ? FromString(std::string(text)) : Endpoint();
}

template <class A>
std::string Endpoint<A>::ToString() const {
    std::string host = AddrText(addr_);
    std::string port = std::to_string(port_);
    std::string result;
    if (NeedsBrackets(host)) {
        result.reserve(host.size() + port.size() + 3);
        result += '[';
        result += host;
        result += ']';
    } else {
        result.reserve(host.size() + port.size() + 1);
        result += host;
    }
    result += ':';
    result += port;
    return result;
}

template <class A>
A const& Endpoint<A>::GetAddr() const {
    return addr_;
}

template <class A>
void Endpoint<A>::SetAddr(A const& addr) {
    addr_ = addr;
}

template <class A>
unsigned short Endpoint<A>::GetPort() const {
    return port_;
}

template <class A>
void Endpoint<A>::SetPort(unsigned short port) {
    port_ = port;
}

template <class A>
bool Endpoint<A>::IsFullySpecified() const {
    return port_ != 0 && IsAddrGiven(addr_);
}

template <class A>
bool Endpoint<A>::IsLocalhostAddr() const {
    return IsLoopbackAddr(addr_);
}

template <class A>
Endpoint<AddrIp> Endpoint<A>::ToIp() const {
    return Endpoint<AddrIp>(ToAddrIp(addr_), port_);
}

template <class A>
bool Endpoint<A>::operator==(Endpoint const& other) const {
    return port_ == other.port_ && addr_ == other.addr_;
}

template <class A>
bool Endpoint<A>::operator!=(Endpoint const& other) const {
    return !(*this == other);
}

template <class A>
bool Endpoint<A>::operator<(Endpoint const& other) const {
    if (addr_ < other.addr_) {
        return true;
    }
    if (other.addr_ < addr_) {
        return false;
    }
    return port_ < other.port_;
}

template class Endpoint<AddrStr>;
template class Endpoint<AddrIp>;

}  // namespace Net
