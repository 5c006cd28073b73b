// The settings service in-process: every route, status code, the token, Host
// and Origin, permissions, and the events a change set leaves.
#include <legacy/oru/service/service.h>

#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <legacy/oru/files/files.h>
#include <legacy/oru/oru.h>

namespace {

using namespace Legacy::Oru;
using Json = nlohmann::json;
using Service::Request;
using Service::Response;

char const k_description[] = R"({"settings": [
  {"path": "Audio/Gain", "type": "Numeric:U32", "permission": 3, "min": 0, "max": 100, "default": 50},
  {"path": "Audio/Balance", "type": "Numeric:S16", "permission": 3, "min": -50, "max": 50, "default": 0},
  {"path": "Device/Name", "type": "String", "permission": 1, "maxLength": 16, "default": "camera"},
  {"path": "Device/Secret", "type": "String", "permission": 2, "maxLength": 16, "default": ""},
  {"path": "Device/Serial", "type": "String", "permission": 0, "maxLength": 16, "default": ""}
]})";

char const k_values[] =
    R"({"Audio/Gain": 72, "Audio/Balance": -5, "Device/Name": "cam", "Device/Secret": "s",
        "Device/Serial": "X1"})";

char const k_token[] = "0123456789abcdef";

std::unique_ptr<Service::Service> Make(std::string const& description = k_description) {
    Service::Access access;
    access.token = k_token;
    access.hosts = {"127.0.0.1:8950", "localhost:8950"};
    access.cookie = "oru_token_8950";
    Files::Problems problems;
    auto service = Service::Service::Load(description, k_values, access, problems);
    EXPECT_TRUE(problems.empty()) << (problems.empty() ? "" : Files::ToString(problems[0]));
    return service;
}

Response Call(Service::Service& service, std::string const& method, std::string const& target,
              std::string const& body = "",
              std::vector<std::pair<std::string, std::string>> headers = {
                  {"Authorization", std::string("Bearer ") + k_token}}) {
    Request request;
    request.method = method;
    request.target = target;
    request.body = body;
    request.headers = std::move(headers);
    return service.Handle(request);
}

Json Body(Response const& response) {
    return Json::parse(response.body);
}

// The value of path as the whole list shows it; null when not listed.
Json Listed(Service::Service& service, std::string const& path) {
    Json const all = Body(Call(service, "GET", "/api/settings"));
    for (Json const& setting : all["settings"]) {
        if (setting["path"] == path) {
            return setting["value"];
        }
    }
    return Json();
}

TEST(ServiceTest, LoadRefusesWhatTheFilesLayerRefuses) {
    struct Row {
        char const* name;
        std::string description;
        std::string values;
    };
    std::vector<Row> const rows = {
        {"value above its maximum", k_description, R"({"Audio/Gain": 101})"},
        {"unknown path", k_description, R"({"Audio/Nope": 1})"},
        {"broken values", k_description, "{"},
        {"broken description", "{\"settings\": [", k_values},
        {"access not an object", R"({"access": 3, "settings": []})", "{}"},
        {"access with an unknown key", R"({"access": {"read": 1, "delete": 2}, "settings": []})",
         "{}"},
        {"access mask out of range", R"({"access": {"read": 65536}, "settings": []})", "{}"},
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(row.name);
        Files::Problems problems;
        EXPECT_EQ(nullptr, Service::Service::Load(row.description, row.values, {}, problems));
        EXPECT_FALSE(problems.empty());
    }
    // The values' problems are those ReadValues gives.
    Files::Problems problems;
    Service::Service::Load(k_description, R"({"Audio/Gain": 101})", {}, problems);
    InfoItemDirectory directory;
    ASSERT_TRUE(Files::ReadDescription(k_description, directory).empty());
    EXPECT_EQ(Files::ReadValues(R"({"Audio/Gain": 101})", directory).problems, problems);
}

TEST(ServiceTest, EveryRequestCarriesTheTokenFromThisHostAndOrigin) {
    auto service = Make();
    std::string const bearer = std::string("Bearer ") + k_token;
    struct Row {
        char const* name;
        std::vector<std::pair<std::string, std::string>> headers;
        int status;
    };
    std::vector<Row> const rows = {
        {"no token", {}, 401},
        {"wrong token", {{"Authorization", "Bearer 0123456789abcdeX"}}, 401},
        {"token prefix", {{"Authorization", "Bearer 0123"}}, 401},
        {"token longer", {{"Authorization", bearer + "0"}}, 401},
        {"other scheme", {{"Authorization", std::string("Basic ") + k_token}}, 401},
        {"bearer", {{"Authorization", bearer}}, 200},
        {"bearer in lower case", {{"authorization", std::string("bearer ") + k_token}}, 200},
        {"cookie", {{"Cookie", std::string("a=b; oru_token_8950=") + k_token}}, 200},
        {"cookie of another port", {{"Cookie", std::string("oru_token_8951=") + k_token}}, 401},
        {"this host", {{"Host", "localhost:8950"}, {"Authorization", bearer}}, 200},
        {"another host", {{"Host", "evil.example:8950"}, {"Authorization", bearer}}, 403},
        {"another port", {{"Host", "127.0.0.1:8951"}, {"Authorization", bearer}}, 403},
        {"same origin",
         {{"Host", "127.0.0.1:8950"},
          {"Origin", "http://127.0.0.1:8950"},
          {"Authorization", bearer}},
         200},
        {"cross origin with the cookie",
         {{"Host", "127.0.0.1:8950"},
          {"Origin", "http://evil.example"},
          {"Cookie", std::string("oru_token_8950=") + k_token}},
         403},
        {"null origin",
         {{"Host", "127.0.0.1:8950"}, {"Origin", "null"}, {"Authorization", bearer}},
         403},
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(row.name);
        Response const response = Call(*service, "GET", "/api/settings", "", row.headers);
        EXPECT_EQ(row.status, response.status);
        if (row.status != 200) {
            EXPECT_EQ(1u, Body(response)["problems"].size());
            EXPECT_EQ(std::string::npos, response.body.find("Gain"));
        }
    }

    // The one-time address trades the token for a cookie.
    Response const opened = Call(*service, "GET", std::string("/?token=") + k_token, "", {});
    EXPECT_EQ(303, opened.status);
    std::vector<std::pair<std::string, std::string>> const expected = {
        {"Location", "/"},
        {"Set-Cookie",
         std::string("oru_token_8950=") + k_token + "; Path=/; HttpOnly; SameSite=Strict"}};
    EXPECT_EQ(expected, opened.headers);
    EXPECT_EQ(401, Call(*service, "GET", "/?token=0123456789abcdeX", "", {}).status);
    EXPECT_EQ(401, Call(*service, "GET", "/?token=", "", {}).status);
    EXPECT_EQ(403, Call(*service, "GET", std::string("/?token=") + k_token, "",
                        {{"Host", "evil.example"}})
                       .status);
}

TEST(ServiceTest, RoutesAnswerWithTheirCodes) {
    auto service = Make();
    struct Row {
        char const* method;
        char const* target;
        int status;
        char const* contentType;
    };
    std::vector<Row> const rows = {
        {"GET", "/api/settings", 200, "application/json"},
        {"GET", "/api/settings/Audio/Gain", 200, "application/json"},
        {"GET", "/api/settings/Audio%2FGain", 200, "application/json"},
        {"GET", "/api/settings/Audio/Gain?x=1", 200, "application/json"},
        {"GET", "/api/settings/Audio/Nope", 404, "application/json"},
        {"GET", "/api/settings/Device/Secret", 404, "application/json"},
        {"GET", "/api/settings/Device/Serial", 404, "application/json"},
        {"GET", "/api/settings/Audio%2", 400, "application/json"},
        {"GET", "/api/settings/Audio%zzGain", 400, "application/json"},
        {"GET", "/api/settings/Audio%+FGain", 400, "application/json"},
        {"POST", "/api/settings", 405, "application/json"},
        {"DELETE", "/api/settings/Audio/Gain", 405, "application/json"},
        {"GET", "/api/apply", 405, "application/json"},
        {"PUT", "/api/check", 405, "application/json"},
        {"POST", "/api/events", 405, "application/json"},
        {"GET", "/api/nothing", 404, "application/json"},
        {"GET", "/", 200, "text/html; charset=utf-8"},
        {"GET", "/index.html", 200, "text/html; charset=utf-8"},
        {"GET", "/../etc/passwd", 404, "application/json"},
        {"GET", "/nothing.js", 404, "application/json"},
        {"POST", "/", 405, "application/json"},
        {"GET", "/api/events", 200, "text/event-stream"},
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(std::string(row.method) + " " + row.target);
        Response const response = Call(*service, row.method, row.target);
        EXPECT_EQ(row.status, response.status);
        EXPECT_EQ(row.contentType, response.contentType);
        if (row.status == 405) {
            ASSERT_EQ(1u, response.headers.size());
            EXPECT_EQ("Allow", response.headers[0].first);
        }
    }
}

TEST(ServiceTest, SettingsAreTheirDescriptionWithTheValue) {
    auto service = Make();
    InfoItemDirectory directory;
    ASSERT_TRUE(Files::ReadDescription(k_description, directory).empty());
    ASSERT_TRUE(Files::ReadValues(k_values, directory).problems.empty());
    Json const described = Json::parse(Files::WriteDescription(directory))["settings"];
    Json const values = Json::parse(Files::WriteValues(directory));

    Json const all = Body(Call(*service, "GET", "/api/settings"));
    EXPECT_EQ(service->Revision(), all["revision"].get<std::uint64_t>());
    // Readable ones only, in the description's order, each with its value.
    std::vector<std::string> paths;
    for (Json const& setting : all["settings"]) {
        std::string const path = setting["path"];
        paths.push_back(path);
        Json expected;
        for (Json const& entry : described) {
            if (entry["path"] == path) {
                expected = entry;
            }
        }
        // With the default masks, bit 1 of the permission makes a setting writable.
        expected["writable"] = (expected["permission"].get<int>() & 2) != 0;
        expected["value"] = values[path];
        EXPECT_EQ(expected, setting) << path;
        Response const one = Call(*service, "GET", "/api/settings/" + path);
        EXPECT_EQ(expected, Body(one)) << path;
    }
    EXPECT_EQ((std::vector<std::string>{"Audio/Gain", "Audio/Balance", "Device/Name"}), paths);
}

TEST(ServiceTest, CheckAnswersWhatApplyWouldAndAppliesNothing) {
    auto service = Make();
    InfoItemDirectory directory;
    ASSERT_TRUE(Files::ReadDescription(k_description, directory).empty());
    struct Row {
        char const* name;
        char const* changes;
        int status;
    };
    std::vector<Row> const rows = {
        {"passes", R"({"Audio/Gain": 10, "Audio/Balance": 50})", 200},
        {"above its maximum", R"({"Audio/Gain": 101})", 422},
        {"one good, one bad", R"({"Audio/Gain": 10, "Audio/Balance": -51})", 422},
        {"wrong form", R"({"Audio/Gain": "loud"})", 422},
        {"unknown path", R"({"Audio/Nope": 1})", 422},
        {"not writable", R"({"Device/Name": "x"})", 403},
        {"neither readable nor writable", R"({"Device/Serial": "x"})", 403},
        {"not writable and a bad value", R"({"Device/Name": "x", "Audio/Gain": 101})", 403},
        {"write-only", R"({"Device/Secret": "t"})", 200},
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(row.name);
        std::uint64_t const revision = service->Revision();
        Json const gain = Listed(*service, "Audio/Gain");
        std::string const body = std::string("{\"changes\": ") + row.changes + "}";
        // A dry run answers 200 with whatever it found; apply answers the status.
        Response const checked = Call(*service, "POST", "/api/check", body);
        EXPECT_EQ(200, checked.status);
        EXPECT_EQ(0u, checked.durableRevision);
        EXPECT_EQ(revision, service->Revision());
        EXPECT_EQ(gain, Listed(*service, "Audio/Gain"));
        // Those the service adds, then the files layer's own, under /changes.
        Json expected = Json::array();
        Json const problems = Body(checked)["problems"];
        for (Json const& problem : problems) {
            if (problem["message"] == "the setting may not be written through the service") {
                expected.push_back(problem);
            }
        }
        for (Files::Problem const& problem :
             Files::ReadValues(row.changes, directory, Files::Apply::AllOrNothing).problems) {
            std::string path = problem.pointer.substr(1, problem.pointer.find('/', 1) - 1);
            path.replace(path.find("~1"), 2, "/");
            path = problem.path.empty() ? path : problem.path;
            expected.push_back(Json{{"pointer", "/changes" + problem.pointer},
                                    {"path", path},
                                    {"message", problem.message}});
        }
        EXPECT_EQ(expected, problems);
        if (row.status == 403) {
            EXPECT_FALSE(problems.empty());
        }
        // Apply answers the same.
        Response const applied = Call(*service, "POST", "/api/apply", body);
        EXPECT_EQ(row.status, applied.status);
        if (row.status != 200) {
            EXPECT_EQ(problems, Body(applied)["problems"]);
            EXPECT_EQ(revision, service->Revision());
            EXPECT_EQ(gain, Listed(*service, "Audio/Gain"));
        }
    }
}

TEST(ServiceTest, ApplyIsAllOrNothingAndCountsRevisions) {
    auto service = Make();
    std::uint64_t const start = service->Revision();
    Response const applied = Call(*service, "POST", "/api/apply",
                                  R"({"revision": )" + std::to_string(start) +
                                      R"(, "changes": {"Audio/Gain": 10, "Audio/Balance": 7}})");
    ASSERT_EQ(200, applied.status) << applied.body;
    EXPECT_EQ((Json{{"revision", start + 1}, {"applied", 2}}), Body(applied));
    EXPECT_EQ(start + 1, applied.durableRevision);
    EXPECT_EQ(10, Listed(*service, "Audio/Gain"));
    EXPECT_EQ(7, Listed(*service, "Audio/Balance"));
    EXPECT_EQ(10, Json::parse(service->Values())["Audio/Gain"]);
    // The write-only setting is written, and shown nowhere.
    ASSERT_EQ(
        200, Call(*service, "POST", "/api/apply", R"({"changes": {"Device/Secret": "t"}})").status);
    EXPECT_EQ("t", Json::parse(service->Values())["Device/Secret"]);

    // A caller that read an older revision is turned away.
    Response const stale =
        Call(*service, "POST", "/api/apply",
             R"({"revision": )" + std::to_string(start) + R"(, "changes": {"Audio/Gain": 11}})");
    EXPECT_EQ(409, stale.status);
    EXPECT_EQ("/revision", Body(stale)["problems"][0]["pointer"]);
    EXPECT_EQ(10, Listed(*service, "Audio/Gain"));

    // Nothing to change: the same revision, nothing written.
    Response const empty = Call(*service, "POST", "/api/apply", R"({"changes": {}})");
    EXPECT_EQ(200, empty.status);
    EXPECT_EQ(0u, empty.durableRevision);
    EXPECT_EQ((Json{{"revision", start + 2}, {"applied", 0}}), Body(empty));
}

TEST(ServiceTest, MalformedBodiesAreRefusedAndChangeNothing) {
    auto service = Make();
    std::string const deep = std::string("{\"changes\": {\"Audio/Gain\": ") +
                             std::string(100000, '[') + std::string(100000, ']') + "}}";
    struct Row {
        char const* name;
        std::string body;
        std::string pointer;
    };
    std::vector<Row> const rows = {
        {"empty", "", ""},
        {"not JSON", "{\"changes\": ", ""},
        {"an array", "[]", ""},
        {"a string", "\"changes\"", ""},
        {"no changes", "{}", "/changes"},
        {"changes an array", R"({"changes": [1]})", "/changes"},
        {"unknown key", R"({"changes": {}, "force": true})", "/force"},
        {"revision negative", R"({"revision": -1, "changes": {}})", "/revision"},
        {"revision text", R"({"revision": "1", "changes": {}})", "/revision"},
        {"revision fraction", R"({"revision": 1.5, "changes": {}})", "/revision"},
        {"deep nesting", deep, ""},
        {"invalid UTF-8", "{\"changes\": {\"\xff\": 1}}", ""},
    };
    std::string const before = service->Values();
    for (Row const& row : rows) {
        SCOPED_TRACE(row.name);
        for (char const* route : {"/api/apply", "/api/check"}) {
            Response const response = Call(*service, "POST", route, row.body);
            if (row.pointer == "/revision" && std::string(route) == "/api/check") {
                EXPECT_EQ(400, response.status);  // check takes no revision
                continue;
            }
            EXPECT_EQ(400, response.status) << response.body;
            EXPECT_EQ(row.pointer, Body(response)["problems"][0]["pointer"]);
        }
    }
    EXPECT_EQ(before, service->Values());
}

TEST(ServiceTest, EventsFollowPublishedChangeSets) {
    auto service = Make();
    std::uint64_t const start = service->Revision();
    std::string const opening = Call(*service, "GET", "/api/events").body;
    EXPECT_EQ("retry: 2000\n\nevent: revision\nid: " + std::to_string(start) +
                  "\ndata: {\"revision\":" + std::to_string(start) + "}\n\n",
              opening);

    ASSERT_EQ(200, Call(*service, "POST", "/api/apply",
                        R"({"changes": {"Audio/Gain": 1, "Device/Secret": "hidden"}})")
                       .status);
    // Not on disk yet: not told.
    std::vector<Service::Event const*> events;
    EXPECT_TRUE(service->EventsSince(start, events));
    EXPECT_TRUE(events.empty());
    service->Publish(service->Revision(), events);
    ASSERT_EQ(1u, events.size());
    std::string const first = std::to_string(start + 1);
    EXPECT_EQ(
        "id: " + first + "\ndata: {\"revision\":" + first + ",\"changes\":{\"Audio/Gain\":1}}\n\n",
        events[0]->frame);

    struct Row {
        char const* name;
        std::string lastId;
        std::string tail;
    };
    std::vector<Row> const rows = {
        {"resumes", std::to_string(start), events[0]->frame},
        {"up to date", first, ""},
        {"from the future", std::to_string(start + 5), service->ResyncFrame()},
        {"from an earlier run", "12", service->ResyncFrame()},
        {"not a number", "abc", service->ResyncFrame()},
        {"too long", std::string(30, '9'), service->ResyncFrame()},
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(row.name);
        Response const stream = Call(
            *service, "GET", "/api/events", "",
            {{"Authorization", std::string("Bearer ") + k_token}, {"Last-Event-ID", row.lastId}});
        EXPECT_TRUE(stream.events);
        EXPECT_EQ("retry: 2000\n\n" + row.tail, stream.body);
    }

    // Past what is kept, a client reads everything again.
    for (std::size_t i = 0; i <= Service::Service::k_history; ++i) {
        ASSERT_EQ(200, Call(*service, "POST", "/api/apply",
                            "{\"changes\": {\"Audio/Gain\": " + std::to_string(i % 100) + "}}")
                           .status);
    }
    events.clear();
    service->Publish(service->Revision(), events);
    EXPECT_EQ(Service::Service::k_history, events.size());
    std::vector<Service::Event const*> since;
    EXPECT_FALSE(service->EventsSince(start, since));
    EXPECT_TRUE(service->EventsSince(service->Revision() - 3, since));
    EXPECT_EQ(3u, since.size());
}

TEST(ServiceTest, AccessRemapsThePermissionBits) {
    std::string description = k_description;
    description.replace(description.find('{'), 1, R"({"access": {"read": 2, "write": 0}, )");
    auto service = Make(description);
    ASSERT_NE(nullptr, service);
    EXPECT_EQ(2, service->GetPermissions().read);
    EXPECT_EQ(0, service->GetPermissions().write);
    std::vector<std::string> paths;
    Json const all = Body(Call(*service, "GET", "/api/settings"));
    for (Json const& setting : all["settings"]) {
        paths.push_back(setting["path"]);
    }
    EXPECT_EQ((std::vector<std::string>{"Audio/Gain", "Audio/Balance", "Device/Secret"}), paths);
    EXPECT_EQ(200, Call(*service, "POST", "/api/apply",
                        R"({"changes": {"Device/Name": "n", "Device/Serial": "s"}})")
                       .status);
}

}  // namespace
