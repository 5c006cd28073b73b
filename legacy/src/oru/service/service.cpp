#include <legacy/oru/service/service.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstring>
#include <map>
#include <unordered_map>

#include <nlohmann/json.hpp>

#include <legacy/oru/files/files.h>
#include <legacy/oru/oru.h>

#include "assets.h"
#include "checking.h"

namespace Legacy {
namespace Oru {
namespace Service {

namespace {

using Json = nlohmann::ordered_json;

// Deeper JSON than this is refused before any parser sees it: no route
// takes more than a value inside "changes", and a value nests little.
constexpr std::size_t k_maxDepth = 64;

std::string Lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

std::string Dump(Json const& json) {
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

// The path a problem's pointer names: its first token, unescaped.
std::string PathOf(std::string const& pointer) {
    if (pointer.empty() || pointer[0] != '/') {
        return std::string();
    }
    std::size_t const end = pointer.find('/', 1);
    std::string const token = pointer.substr(1, end == std::string::npos ? end : end - 1);
    std::string path;
    for (std::size_t i = 0; i < token.size(); ++i) {
        if (token[i] == '~' && i + 1 < token.size() &&
            (token[i + 1] == '0' || token[i + 1] == '1')) {
            path += token[i + 1] == '0' ? '~' : '/';
            ++i;
        } else {
            path += token[i];
        }
    }
    return path;
}

Json ProblemJson(std::string const& pointer, std::string const& path, std::string const& message) {
    Json problem = Json::object();
    problem["pointer"] = pointer;
    problem["path"] = path;
    problem["message"] = message;
    return problem;
}

Response JsonResponse(int status, std::string body) {
    Response response;
    response.status = status;
    response.contentType = "application/json";
    response.body = std::move(body);
    return response;
}

Response Problem(int status, std::string const& pointer, std::string const& path,
                 std::string const& message) {
    Json body = Json::object();
    body["problems"] = Json::array({ProblemJson(pointer, path, message)});
    return JsonResponse(status, Dump(body));
}

// Whether text nests no deeper than k_maxDepth, strings skipped.
bool ShallowJson(std::string const& text) {
    std::size_t depth = 0;
    bool inString = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        char const c = text[i];
        if (inString) {
            if (c == '\\') {
                ++i;
            } else if (c == '"') {
                inString = false;
            }
        } else if (c == '"') {
            inString = true;
        } else if (c == '[' || c == '{') {
            if (++depth > k_maxDepth) {
                return false;
            }
        } else if ((c == ']' || c == '}') && depth > 0) {
            --depth;
        }
    }
    return true;
}

// %XX decoded; false on a broken escape.
bool PercentDecode(std::string const& text, std::string& out) {
    out.clear();
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            out += text[i];
            continue;
        }
        if (i + 2 >= text.size()) {
            return false;
        }
        unsigned int byte = 0;
        char const* const end = text.data() + i + 3;
        auto const read = std::from_chars(text.data() + i + 1, end, byte, 16);
        if (read.ec != std::errc() || read.ptr != end) {
            return false;
        }
        out += static_cast<char>(byte);
        i += 2;
    }
    return true;
}

// Compares without leaking, through timing, how much of the token matched.
bool SameSecret(std::string const& given, std::string const& secret) {
    if (secret.empty()) {
        return false;
    }
    unsigned char differ = given.size() == secret.size() ? 0 : 1;
    for (std::size_t i = 0; i < secret.size(); ++i) {
        differ |= static_cast<unsigned char>(secret[i] ^ (i < given.size() ? given[i] : 0));
    }
    return differ == 0;
}

// The value of cookie `name` in a Cookie header, or empty.
std::string CookieValue(std::string const& header, std::string const& name) {
    std::size_t start = 0;
    while (start < header.size()) {
        std::size_t end = header.find(';', start);
        if (end == std::string::npos) {
            end = header.size();
        }
        std::string pair = header.substr(start, end - start);
        std::size_t const first = pair.find_first_not_of(' ');
        pair = first == std::string::npos ? std::string() : pair.substr(first);
        std::size_t const equals = pair.find('=');
        if (equals != std::string::npos && pair.substr(0, equals) == name) {
            return pair.substr(equals + 1);
        }
        start = end + 1;
    }
    return std::string();
}

// The value of query parameter `name`, or false.
bool QueryValue(std::string const& query, std::string const& name, std::string& value) {
    std::size_t start = 0;
    while (start <= query.size()) {
        std::size_t end = query.find('&', start);
        if (end == std::string::npos) {
            end = query.size();
        }
        std::string const pair = query.substr(start, end - start);
        std::size_t const equals = pair.find('=');
        if (equals != std::string::npos && pair.substr(0, equals) == name) {
            return PercentDecode(pair.substr(equals + 1), value);
        }
        start = end + 1;
    }
    return false;
}

// A directory that notes which settings a change set touched.
class NotingDirectory : public InfoItemDirectory {
public:
    std::vector<unsigned int> changed;

protected:
    void ItemChanged_(boost::intrusive_ptr<ItemHolder const> const&,
                      boost::intrusive_ptr<InfoItemHolder const> const& holder) override {
        if (holder && holder->GetInfoHolder() && holder->GetInfoHolder()->GetInfo()) {
            changed.push_back(holder->GetInfoHolder()->GetInfo()->GetId());
        }
    }
};

// One setting as the routes show it.
struct Entry {
    std::string path;
    unsigned int id = 0;
    // Its description entry as compact JSON without the closing brace.
    std::string described;
    bool readable = false;
    bool writable = false;
};

}  // namespace

std::string const* Request::Header(std::string const& name) const {
    for (auto const& header : headers) {
        if (header.first.size() == name.size() &&
            std::equal(name.begin(), name.end(), header.first.begin(), [](char a, char b) {
                return std::tolower(static_cast<unsigned char>(a)) ==
                       std::tolower(static_cast<unsigned char>(b));
            })) {
            return &header.second;
        }
    }
    return nullptr;
}

bool TakeAccess(std::string& description, Permissions& permissions, Files::Problems& problems) {
    if (!ShallowJson(description)) {
        return true;  // the description reader says what is wrong with it
    }
    Json document = Json::parse(description, nullptr, false);
    if (document.is_discarded() || !document.is_object() || !document.contains("access")) {
        return true;
    }
    Json const access = document["access"];
    bool good = true;
    if (!access.is_object()) {
        problems.push_back({"/access", "access must be an object with \"read\" and \"write\""});
        return false;
    }
    for (auto const& member : access.items()) {
        std::string const pointer = "/access/" + Files::PointerToken(member.key());
        unsigned short* mask = member.key() == "read"    ? &permissions.read
                               : member.key() == "write" ? &permissions.write
                                                         : nullptr;
        if (!mask) {
            problems.push_back({pointer, "unknown key \"" + member.key() + "\""});
            good = false;
        } else if (!member.value().is_number_unsigned() ||
                   member.value().get<std::uint64_t>() > 0xffff) {
            problems.push_back({pointer, "a mask of permission bits from 0 to 65535 is expected"});
            good = false;
        } else {
            *mask = static_cast<unsigned short>(member.value().get<std::uint64_t>());
        }
    }
    if (good) {
        document.erase("access");
        description = document.dump(2);
    }
    return good;
}

struct Service::State {
    NotingDirectory directory;
    Access access;
    Permissions permissions;
    std::vector<Entry> entries;
    std::unordered_map<std::string, std::size_t> byPath;
    std::unordered_map<unsigned int, std::size_t> byId;
    std::uint64_t first = 0;
    std::uint64_t revision = 0;
    std::uint64_t published = 0;
    std::deque<Event> history;
    std::unique_ptr<Checker> checker;

    Response Route(Request const& request);
    bool Allowed(Request const& request, Response& refusal) const;
    Response Settings() const;
    Response Setting(std::string const& path) const;
    Response Changes(Request const& request, bool apply);
    Response Asset(std::string const& name) const;
    std::string ValueOf(Entry const& entry) const;
};

std::unique_ptr<Service> Service::Load(std::string const& description, std::string const& values,
                                       Access access, Files::Problems& problems) {
    auto state = std::make_unique<State>();
    state->access = std::move(access);
    std::string described = description;
    if (!TakeAccess(described, state->permissions, problems)) {
        return nullptr;
    }
    Files::Problems const read = Files::ReadDescription(described, state->directory);
    if (!read.empty()) {
        problems.insert(problems.end(), read.begin(), read.end());
        return nullptr;
    }
    Files::ValuesReport const report =
        Files::ReadValues(values, state->directory, Files::Apply::AllOrNothing);
    if (!report.problems.empty()) {
        problems.insert(problems.end(), report.problems.begin(), report.problems.end());
        return nullptr;
    }
    state->checker = Checker::Make(state->directory);

    // Infos never change while serving: each entry is described once.
    Json const document = Json::parse(Files::WriteDescription(state->directory));
    for (Json const& setting : document["settings"]) {
        Entry entry;
        entry.path = setting["path"].get<std::string>();
        // The description writes ids as text; the directory knows each by its path.
        auto const slot = state->directory.FindInfoItem(entry.path);
        auto const& info = slot->GetInfoHolder()->GetInfo();
        entry.id = info->GetId();
        unsigned short const bits = info->GetPermission().Value();
        Permissions const& masks = state->permissions;
        entry.readable = masks.read == 0 || (bits & masks.read) != 0;
        entry.writable = masks.write == 0 || (bits & masks.write) != 0;
        entry.described = Dump(setting);
        entry.described.pop_back();
        // What the access masks make of the permission, so a page need not.
        entry.described += entry.writable ? ",\"writable\":true" : ",\"writable\":false";
        state->byPath.emplace(entry.path, state->entries.size());
        state->byId.emplace(entry.id, state->entries.size());
        state->entries.push_back(std::move(entry));
    }
    // Revisions go on from the start time, so that an event id of an earlier
    // run is not taken for one of this run.
    state->first =
        static_cast<std::uint64_t>(std::chrono::duration_cast<std::chrono::microseconds>(
                                       std::chrono::system_clock::now().time_since_epoch())
                                       .count());
    state->revision = state->first;
    state->published = state->first;
    state->directory.changed.clear();
    return std::unique_ptr<Service>(new Service(std::move(state)));
}

Service::Service(std::unique_ptr<State> state) : state_(std::move(state)) {}
Service::~Service() = default;

std::uint64_t Service::Revision() const {
    return state_->revision;
}

std::uint64_t Service::Published() const {
    return state_->published;
}

void Service::SetAccess(Access access) {
    state_->access = std::move(access);
}

Access const& Service::GetAccess() const {
    return state_->access;
}

Permissions const& Service::GetPermissions() const {
    return state_->permissions;
}

std::string Service::Values() const {
    return Files::WriteValues(state_->directory);
}

void Service::Publish(std::uint64_t revision, std::vector<Event const*>& out) {
    revision = std::min(revision, state_->revision);
    for (Event const& event : state_->history) {
        if (event.revision > state_->published && event.revision <= revision) {
            out.push_back(&event);
        }
    }
    state_->published = std::max(state_->published, revision);
}

bool Service::EventsSince(std::uint64_t revision, std::vector<Event const*>& out) const {
    State const& state = *state_;
    if (revision < state.first || revision > state.published) {
        return false;
    }
    if (revision == state.published) {
        return true;
    }
    if (state.history.empty() || state.history.front().revision > revision + 1) {
        return false;
    }
    for (Event const& event : state.history) {
        if (event.revision > revision && event.revision <= state.published) {
            out.push_back(&event);
        }
    }
    return true;
}

std::string Service::ResyncFrame() const {
    std::string const revision = std::to_string(state_->published);
    return "event: resync\nid: " + revision + "\ndata: {\"revision\":" + revision + "}\n\n";
}

Response Service::Handle(Request const& request) {
    Response response = state_->Route(request);
    if (response.events) {
        std::string const lastId =
            request.Header("Last-Event-ID") ? *request.Header("Last-Event-ID") : "";
        std::string const revision = std::to_string(state_->published);
        response.body = "retry: 2000\n\n";
        std::vector<Event const*> frames;
        bool resumed = false;
        if (!lastId.empty() && lastId.size() <= 20 &&
            lastId.find_first_not_of("0123456789") == std::string::npos) {
            resumed = EventsSince(std::stoull(lastId), frames);
        }
        if (lastId.empty()) {
            response.body +=
                "event: revision\nid: " + revision + "\ndata: {\"revision\":" + revision + "}\n\n";
        } else if (!resumed) {
            response.body += ResyncFrame();
        }
        for (Event const* event : frames) {
            response.body += event->frame;
        }
    }
    return response;
}

bool Service::State::Allowed(Request const& request, Response& refusal) const {
    std::string const* const host = request.Header("Host");
    if (host && !access.hosts.empty() &&
        std::find(access.hosts.begin(), access.hosts.end(), Lower(*host)) == access.hosts.end()) {
        refusal = Problem(403, "", "", "this service does not answer for host " + *host);
        return false;
    }
    std::string const* const origin = request.Header("Origin");
    if (origin && (!host || Lower(*origin) != "http://" + Lower(*host))) {
        refusal = Problem(403, "", "", "requests from another origin are refused");
        return false;
    }
    std::string given;
    if (std::string const* const authorization = request.Header("Authorization")) {
        if (authorization->size() > 7 && Lower(authorization->substr(0, 7)) == "bearer ") {
            given = authorization->substr(7);
        }
    } else if (std::string const* const cookie = request.Header("Cookie")) {
        given = CookieValue(*cookie, access.cookie);
    }
    if (!SameSecret(given, access.token)) {
        refusal = Problem(401, "", "",
                          "a token is needed: \"Authorization: Bearer TOKEN\", or open the "
                          "address oru serve printed");
        refusal.headers.emplace_back("WWW-Authenticate", "Bearer");
        return false;
    }
    return true;
}

Response Service::State::Route(Request const& request) {
    std::string path = request.target;
    std::string query;
    std::size_t const mark = path.find('?');
    if (mark != std::string::npos) {
        query = path.substr(mark + 1);
        path.resize(mark);
    }
    std::string token;
    if (path == "/" && request.method == "GET" && QueryValue(query, "token", token)) {
        // The one-time address: the token goes into a cookie and out of the address.
        Request checked = request;
        checked.headers.emplace_back("Authorization", "Bearer " + token);
        Response refusal;
        for (auto it = checked.headers.begin(); it != checked.headers.end();) {
            bool const drop =
                Lower(it->first) == "cookie" ||
                (Lower(it->first) == "authorization" && it + 1 != checked.headers.end());
            it = drop ? checked.headers.erase(it) : it + 1;
        }
        if (!Allowed(checked, refusal)) {
            return refusal;
        }
        Response response;
        response.status = 303;
        response.contentType = "text/plain; charset=utf-8";
        response.headers.emplace_back("Location", "/");
        response.headers.emplace_back(
            "Set-Cookie", access.cookie + "=" + token + "; Path=/; HttpOnly; SameSite=Strict");
        return response;
    }
    Response refusal;
    if (!Allowed(request, refusal)) {
        return refusal;
    }
    auto const only = [&request](char const* method) { return request.method == method; };
    auto const notAllowed = [](char const* allow) {
        Response response = Problem(405, "", "", std::string("this route takes ") + allow);
        response.headers.emplace_back("Allow", allow);
        return response;
    };
    static std::string const k_one = "/api/settings/";
    if (path == "/api/settings") {
        return only("GET") ? Settings() : notAllowed("GET");
    }
    if (path.compare(0, k_one.size(), k_one) == 0) {
        if (!only("GET")) {
            return notAllowed("GET");
        }
        std::string decoded;
        if (!PercentDecode(path.substr(k_one.size()), decoded)) {
            return Problem(400, "", "", "the path has a broken %-escape");
        }
        return Setting(decoded);
    }
    if (path == "/api/check" || path == "/api/apply") {
        return only("POST") ? Changes(request, path == "/api/apply") : notAllowed("POST");
    }
    if (path == "/api/events") {
        if (!only("GET")) {
            return notAllowed("GET");
        }
        Response response;
        response.contentType = "text/event-stream";
        response.events = true;
        return response;
    }
    if (path.compare(0, 5, "/api/") != 0 && path.size() > 1 && path[0] == '/' && only("GET")) {
        return Asset(path.substr(1));
    }
    if (path == "/") {
        return only("GET") ? Asset("index.html") : notAllowed("GET");
    }
    return Problem(404, "", "", "no such route");
}

std::string Service::State::ValueOf(Entry const& entry) const {
    boost::intrusive_ptr<InfoItemHolder const> const slot = directory.FindInfoItem(entry.id);
    if (!slot || !slot->GetItemHolder() || !slot->GetItemHolder()->GetItem() ||
        !slot->GetInfoHolder() || !slot->GetInfoHolder()->GetInfo()) {
        return std::string();
    }
    ItemBase const& item = *slot->GetItemHolder()->GetItem();
    if (!Files::RecordLimit(item).empty()) {
        return std::string();
    }
    // What a values file holds for the setting; nothing for a family without a form.
    std::string value = Files::WriteValue(item, *slot->GetInfoHolder()->GetInfo());
    return value == "null" ? std::string() : value;
}

Response Service::State::Settings() const {
    std::string body = "{\"revision\":" + std::to_string(revision) + ",\"settings\":[";
    bool leading = true;
    for (Entry const& entry : entries) {
        if (!entry.readable) {
            continue;
        }
        body += leading ? "" : ",";
        leading = false;
        body += entry.described;
        std::string const value = ValueOf(entry);
        if (!value.empty()) {
            body += ",\"value\":" + value;
        }
        body += "}";
    }
    body += "]}";
    return JsonResponse(200, std::move(body));
}

Response Service::State::Setting(std::string const& path) const {
    auto const found = byPath.find(path);
    if (found == byPath.end() || !entries[found->second].readable) {
        return Problem(404, "", path, "no setting has this path");
    }
    Entry const& entry = entries[found->second];
    std::string body = entry.described;
    std::string const value = ValueOf(entry);
    if (!value.empty()) {
        body += ",\"value\":" + value;
    }
    body += "}";
    Response response = JsonResponse(200, std::move(body));
    response.headers.emplace_back("Oru-Revision", std::to_string(revision));
    return response;
}

Response Service::State::Changes(Request const& request, bool apply) {
    if (!ShallowJson(request.body)) {
        return Problem(400, "", "",
                       "the body nests deeper than " + std::to_string(k_maxDepth) + " levels");
    }
    Json body = Json::parse(request.body, nullptr, false);
    if (body.is_discarded()) {
        return Problem(400, "", "", "the body is not JSON");
    }
    if (!body.is_object()) {
        return Problem(400, "", "", "the body must be an object with \"changes\"");
    }
    for (auto const& member : body.items()) {
        if (member.key() != "changes" && (member.key() != "revision" || !apply)) {
            return Problem(400, "/" + Files::PointerToken(member.key()), "",
                           "unknown key \"" + member.key() + "\"");
        }
    }
    if (!body.contains("changes") || !body["changes"].is_object()) {
        return Problem(400, "/changes", "", "changes must be an object of paths and values");
    }
    if (body.contains("revision")) {
        Json const& given = body["revision"];
        if (!given.is_number_unsigned()) {
            return Problem(400, "/revision", "", "revision must be a revision number");
        }
        if (given.get<std::uint64_t>() != revision) {
            Response response = Problem(409, "/revision", "",
                                        "the device changed since revision " +
                                            std::to_string(given.get<std::uint64_t>()) +
                                            "; it is at " + std::to_string(revision));
            return response;
        }
    }
    Json const& changes = body["changes"];
    Json problems = Json::array();
    bool refused = false;
    for (auto const& member : changes.items()) {
        auto const slot = directory.FindInfoItem(member.key());
        if (!slot) {
            continue;  // the files layer names it
        }
        auto const found = byId.find(slot->GetInfoHolder()->GetInfo()->GetId());
        if (found != byId.end() && !entries[found->second].writable) {
            problems.push_back(ProblemJson("/changes/" + Files::PointerToken(member.key()),
                                           entries[found->second].path,
                                           "the setting may not be written through the service"));
            refused = true;
        }
    }
    std::string const values = Dump(changes);
    Files::ValuesReport const report =
        apply && !refused ? Files::ReadValues(values, directory, Files::Apply::AllOrNothing)
                          : checker->Check(values);
    for (Files::Problem const& problem : report.problems) {
        problems.push_back(ProblemJson(
            "/changes" + problem.pointer,
            problem.path.empty() ? PathOf(problem.pointer) : problem.path, problem.message));
    }
    Json answer = Json::object();
    if (!problems.empty()) {
        directory.changed.clear();
        answer["problems"] = std::move(problems);
        // A dry run that found problems has done its job: it answers them with 200.
        return JsonResponse(apply ? (refused ? 403 : 422) : 200, Dump(answer));
    }
    if (!apply) {
        answer["problems"] = Json::array();
        return JsonResponse(200, Dump(answer));
    }
    if (directory.changed.empty()) {
        answer["revision"] = revision;
        answer["applied"] = 0;
        return JsonResponse(200, Dump(answer));
    }
    ++revision;
    Json data = Json::object();
    data["revision"] = revision;
    Json changed = Json::object();
    for (unsigned int const id : directory.changed) {
        auto const found = byId.find(id);
        if (found != byId.end() && entries[found->second].readable) {
            std::string const value = ValueOf(entries[found->second]);
            changed[entries[found->second].path] =
                value.empty() ? Json() : Json::parse(value, nullptr, false);
        }
    }
    directory.changed.clear();
    data["changes"] = std::move(changed);
    std::string const id = std::to_string(revision);
    history.push_back(Event{revision, "id: " + id + "\ndata: " + Dump(data) + "\n\n"});
    if (history.size() > k_history) {
        history.pop_front();
    }
    answer["revision"] = revision;
    answer["applied"] = report.applied;
    Response response = JsonResponse(200, Dump(answer));
    response.durableRevision = revision;
    return response;
}

Response Service::State::Asset(std::string const& name) const {
    for (Oru::Service::Asset const& asset : Assets()) {
        if (name == asset.name) {
            Response response;
            response.contentType = asset.contentType;
            response.body.assign(reinterpret_cast<char const*>(asset.data), asset.size);
            return response;
        }
    }
    return Problem(404, "", "", "no such page");
}

}  // namespace Service
}  // namespace Oru
}  // namespace Legacy
