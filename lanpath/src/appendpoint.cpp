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
    std::string text = uri_.ToString();
    // Legacy endpoints know an RTSP address by its "rtsp://" prefix, case and all.
    UriScheme const& scheme = uri_.GetScheme();
    if (scheme == UriScheme("rtsp")) {
        text.replace(0, scheme.GetString().size(), "rtsp");
    }
    return text;
}

bool AppEndpoint::operator==(AppEndpoint const& other) const {
    return uri_ == other.uri_;
}

bool AppEndpoint::operator!=(AppEndpoint const& other) const {
    return uri_ != other.uri_;
}

}  // namespace Net
