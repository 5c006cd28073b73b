#include <lanpath/appendpoint.h>

namespace Net {

AppEndpoint::AppEndpoint() = default;

AppEndpoint::AppEndpoint(std::string const& uri)
    : uri_(uri), endpoint_(AddrStr(uri_.GetHost()), uri_.GetPort()) {}

Uri const& AppEndpoint::GetUri() const {
    return uri_;
}

Endpoint<AddrStr> const& AppEndpoint::GetEndpoint() const {
    return endpoint_;
}

std::string AppEndpoint::ToString() const {
    return uri_.ToString();
}

bool AppEndpoint::operator==(AppEndpoint const& other) const {
    return uri_ == other.uri_;
}

bool AppEndpoint::operator!=(AppEndpoint const& other) const {
    return uri_ != other.uri_;
}

}  // namespace Net
