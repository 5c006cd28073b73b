#include "checkrules.h"

#include <algorithm>
#include <cctype>
#include <cstddef>

#include <lanpath/addr.h>

#include "valuejson.h"

namespace Legacy {
namespace Oru {
namespace Files {
namespace CheckRules {

namespace {

// Digits and dots only: an IPv4 address or a mistyped one ("1.2.3"), never
// a name.
bool IsIpv4Like(std::string const& host) {
    return !host.empty() && host.find_first_not_of("0123456789.") == std::string::npos &&
           host.find('.') != std::string::npos;
}

std::string Ipv4Problem(std::string const& host) {
    if (std::count(host.begin(), host.end(), '.') != 3) {
        return Shown(host, 64) + " is no IPv4 address: it needs four numbers of 0 to 255";
    }
    std::size_t start = 0;
    while (start <= host.size()) {
        std::size_t end = host.find('.', start);
        if (end == std::string::npos) {
            end = host.size();
        }
        std::string const octet = host.substr(start, end - start);
        if (octet.empty() || octet.size() > 3) {
            return Shown(host, 64) + " is no IPv4 address: it needs four numbers of 0 to 255";
        }
        if (std::stoi(octet) > 255) {
            return Shown(host, 64) + " is no IPv4 address: " + octet + " is above 255";
        }
        start = end + 1;
    }
    return std::string();
}

// Looks like one and is one: "fffff::1" or "1::2::3" is refused.
bool IsIpv6(std::string const& host) {
    Net::AddrIp parsed;
    return std::count(host.begin(), host.end(), ':') >= 2 &&
           host.find_first_not_of("0123456789abcdefABCDEF:.") == std::string::npos &&
           Net::AddrIp::TryParse(host, parsed) && parsed.IsV6();
}

// Labels of letters, digits, '-' and '_' between dots, none empty, none
// longer than 63 or with a '-' at either end; one dot may end the name.
bool IsHostName(std::string const& host) {
    std::string const name =
        host.size() > 1 && host.back() == '.' ? host.substr(0, host.size() - 1) : host;
    if (name.size() > 253) {
        return false;
    }
    std::size_t start = 0;
    while (start <= name.size()) {
        std::size_t end = name.find('.', start);
        if (end == std::string::npos) {
            end = name.size();
        }
        std::size_t const length = end - start;
        if (length == 0 || length > 63 || name[start] == '-' || name[end - 1] == '-') {
            return false;
        }
        for (std::size_t i = start; i < end; ++i) {
            char const c = name[i];
            if (!std::isalnum(static_cast<unsigned char>(c)) && c != '-' && c != '_') {
                return false;
            }
        }
        start = end + 1;
    }
    return true;
}

std::size_t Distance(std::string const& a, std::string const& b) {
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j) {
        row[j] = j;
    }
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            std::size_t const above = row[j];
            char const x = static_cast<char>(std::tolower(static_cast<unsigned char>(a[i - 1])));
            char const y = static_cast<char>(std::tolower(static_cast<unsigned char>(b[j - 1])));
            row[j] = std::min({row[j] + 1, row[j - 1] + 1, diagonal + (x == y ? 0 : 1)});
            diagonal = above;
        }
    }
    return row[b.size()];
}

}  // namespace

std::string HostProblem(std::string const& host) {
    if (host.empty()) {
        return std::string();
    }
    std::size_t const slash = host.find('/');
    if (slash != std::string::npos) {
        return "the path " + Shown(host.substr(slash), 48) +
               " cannot be held: the family holds a host and a port, not a path";
    }
    if (IsIpv4Like(host)) {
        return Ipv4Problem(host);
    }
    if (IsIpv6(host) || IsHostName(host)) {
        return std::string();
    }
    return Shown(host, 64) + " is no host name or address";
}

std::string EndpointProblem(StrEndpoint const& endpoint) {
    std::string const host = endpoint.GetAddr().ToString();
    std::string why = HostProblem(host);
    if (!why.empty() && host.find(':') != std::string::npos && !IsIpv6(host)) {
        // "10.0.0.5:99999" keeps its port in the address when it is no port.
        std::size_t const colon = host.rfind(':');
        std::string const port = host.substr(colon + 1);
        // Only a number past the range stays there: "a:1:2" is host "a:1".
        std::size_t const digits = port.find_first_not_of('0');
        std::size_t const width = digits == std::string::npos ? 0 : port.size() - digits;
        if (!port.empty() && port.find_first_not_of("0123456789") == std::string::npos &&
            (width > 5 || (width == 5 && port.compare(digits, 5, "65535") > 0))) {
            return "port " + Shown(port, 32) + " is above the maximum 65535";
        }
    }
    return why;
}

std::string AppEndpointProblem(StrAppEndpoint const& endpoint) {
    bool const unset = endpoint.GetAddr().ToString().empty() && endpoint.GetPort() == 0;
    if (unset) {
        return std::string();
    }
    if (endpoint.GetAppProtocolType() == AppProtocolType_t::Unknown) {
        std::string allowed;
        for (std::string const& scheme : Schemes()) {
            allowed += allowed.empty() ? "" : ", ";
            allowed += scheme;
        }
        return "the URI names no known scheme; allowed: " + allowed;
    }
    return EndpointProblem(endpoint.GetEndpoint());
}

std::vector<std::string> Schemes() {
    static AppProtocolType_t const types[] = {
        AppProtocolType_t::Http,    AppProtocolType_t::Https,   AppProtocolType_t::Rtsp,
        AppProtocolType_t::Soap,    AppProtocolType_t::SoapSsl, AppProtocolType_t::TcpRaw,
        AppProtocolType_t::HttpXml, AppProtocolType_t::Modbus,  AppProtocolType_t::Ntp};
    std::vector<std::string> schemes;
    for (AppProtocolType_t const type : types) {
        schemes.emplace_back(AppProtocolScheme(type));
    }
    return schemes;
}

std::string DidYouMean(std::string const& word, std::vector<std::string> const& candidates) {
    std::string const* best = nullptr;
    std::size_t bestDistance = 0;
    // The distance is at least the difference in length: far longer or
    // shorter words are no slips, and hostile ones cost nothing.
    std::size_t const reach = std::max<std::size_t>(1, std::min<std::size_t>(3, word.size() / 3));
    for (std::string const& candidate : candidates) {
        std::size_t const longer = std::max(word.size(), candidate.size());
        std::size_t const shorter = std::min(word.size(), candidate.size());
        if (longer - shorter > reach) {
            continue;
        }
        std::size_t const distance = Distance(word, candidate);
        if (!best || distance < bestDistance) {
            best = &candidate;
            bestDistance = distance;
        }
    }
    // A slip is a few letters in a word of some length, or a case; the last
    // part of a path must keep more than half of its letters.
    std::size_t const allowed = reach;
    std::size_t const slash = word.rfind('/');
    std::size_t const last = slash == std::string::npos ? word.size() : word.size() - slash - 1;
    if (!best || bestDistance > allowed || 2 * bestDistance >= std::max<std::size_t>(last, 2) ||
        *best == word) {
        return std::string();
    }
    return "; did you mean " + *best + "?";
}

}  // namespace CheckRules
}  // namespace Files
}  // namespace Oru
}  // namespace Legacy
