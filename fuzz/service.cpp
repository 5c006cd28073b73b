// The settings service's request handler from a hostile client: method,
// target, headers and body from the input. Whatever arrives, nothing
// crashes, every answer is an HTTP status with a body, the revision never
// goes back, and the device's values always read back as a values file that
// passes. The first byte says whether the request carries the token, so
// that the routes behind it are reached too.
#include <cstdint>
#include <memory>
#include <string>

#include <legacy/oru/files/files.h>
#include <legacy/oru/oru.h>
#include <legacy/oru/service/service.h>

using namespace Legacy::Oru;

namespace {

char const k_description[] = R"({"settings": [
  {"path": "Audio/Gain", "type": "Numeric:U32", "permission": 3, "min": 0, "max": 100, "default": 50},
  {"path": "Audio/Codec", "type": "Enum", "permission": 3,
   "table": [{"name": "pcm", "value": 0}, {"name": "aac", "value": 1, "disabled": true}], "default": "pcm"},
  {"path": "Device/Name", "type": "String", "permission": 1, "maxLength": 16, "default": "camera"},
  {"path": "Device/Tags", "type": "StringArray", "permission": 3, "minSize": 0, "maxSize": 4, "default": []},
  {"path": "Video/Crop", "type": "Rectangle:U16", "permission": 2,
   "topLeft": {"x": {"min": 0, "max": 640}, "y": {"min": 0, "max": 480}},
   "bottomRight": {"x": {"min": 0, "max": 640}, "y": {"min": 0, "max": 480}}}
]})";
char const k_values[] =
    R"({"Audio/Gain": 72, "Audio/Codec": "pcm", "Device/Name": "cam", "Device/Tags": ["a"],
        "Video/Crop": {"left": 0, "top": 0, "right": 640, "bottom": 480}})";
char const k_token[] = "0123456789abcdef";

void Check(bool condition) {
    if (!condition) {
        __builtin_trap();
    }
}

// The next field of the input, up to a NUL byte.
std::string Field(std::string const& input, std::size_t& at) {
    std::size_t const end = input.find('\0', at);
    std::string const field = input.substr(at, end == std::string::npos ? end : end - at);
    at = end == std::string::npos ? input.size() : end + 1;
    return field;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
    static std::unique_ptr<Service::Service> service = [] {
        Service::Access access;
        access.token = k_token;
        access.hosts = {"127.0.0.1:8950"};
        access.cookie = "oru_token_8950";
        Files::Problems problems;
        auto made = Service::Service::Load(k_description, k_values, access, problems);
        Check(made != nullptr);
        return made;
    }();
    if (size == 0) {
        return 0;
    }
    std::string const input(reinterpret_cast<char const*>(data) + 1, size - 1);
    std::size_t at = 0;
    Service::Request request;
    request.method = Field(input, at);
    request.target = Field(input, at);
    std::string const headers = Field(input, at);
    request.body = input.substr(at);
    for (std::size_t start = 0; start < headers.size();) {
        std::size_t end = headers.find('\n', start);
        end = end == std::string::npos ? headers.size() : end;
        std::string const line = headers.substr(start, end - start);
        std::size_t const colon = line.find(':');
        request.headers.emplace_back(line.substr(0, colon),
                                     colon == std::string::npos ? "" : line.substr(colon + 1));
        start = end + 1;
    }
    if (data[0] & 1) {
        request.headers.emplace_back("Authorization", std::string("Bearer ") + k_token);
    }
    std::uint64_t const before = service->Revision();
    Service::Response const response = service->Handle(request);
    Check(response.status >= 200 && response.status < 600);
    Check(service->Revision() >= before);
    Check(response.durableRevision == 0 || response.durableRevision == service->Revision());
    std::vector<Service::Event const*> events;
    service->Publish(service->Revision(), events);
    if (service->Revision() != before) {
        // What the device now holds reads back whole for the same settings.
        InfoItemDirectory copy;
        Check(Files::ReadDescription(k_description, copy).empty());
        Check(Files::ReadValues(service->Values(), copy, Files::Apply::Nothing).problems.empty());
    }
    return 0;
}
