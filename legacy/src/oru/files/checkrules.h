// The files layer's rules for what the model holds without checking: host
// texts, endpoints and URIs; and the nearest name for "did you mean".
//
// Internal to Oru::files; plain functions, any thread.
#ifndef LEGACY_ORU_FILES_CHECKRULES_H
#define LEGACY_ORU_FILES_CHECKRULES_H

#include <string>
#include <vector>

#include <legacy/oru/files/problem.h>
#include <legacy/oru/oru.h>

namespace Legacy {
namespace Oru {
namespace Files {
namespace CheckRules {

using StrEndpoint = Net::Endpoint<Net::AddrStr>;
using StrAppEndpoint = AppEndpoint<StrEndpoint>;

// Why host is neither a host name, an IPv4 address nor an IPv6 address
// ("10.0.0.400 is no IPv4 address: 400 is above 255"); empty when it is one,
// or when it is empty (no address set).
std::string HostProblem(std::string const& host);

// Why an endpoint's record or text would not carry it: its host, or a port
// swallowed into the address text; empty when it would.
std::string EndpointProblem(StrEndpoint const& endpoint);

// The same for a URI: a known scheme, a host the family holds, no path.
std::string AppEndpointProblem(StrAppEndpoint const& endpoint);

// The record and text rules of Check alone: the problems of an item whose
// serial record or values-file text would not give it back.
Problems Forms(ItemBase const& item, InfoBase const& info, std::string const& pointer);

// The record and text rules for each entry of a sparse table, whose entries
// are values the setting may take ("/table/3: 6.5 does not survive its
// record: ..."); empty for the other families.
Problems TableForms(InfoBase const& info, std::string const& pointer);

// The schemes a URI may name: "http, https, rtsp, ...".
std::vector<std::string> Schemes();

// "; did you mean Imaging/Sharpness?" for the candidate nearest to word,
// when one is near enough to be a slip; empty otherwise.
std::string DidYouMean(std::string const& word, std::vector<std::string> const& candidates);

}  // namespace CheckRules
}  // namespace Files
}  // namespace Oru
}  // namespace Legacy

#endif
