// oru get, oru set and oru watch: the clients of oru serve. They speak the
// service's HTTP API with the token of the token file, so that scripts need
// neither a browser nor an HTTP tool.
#include <sys/stat.h>

#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>
#include <boost/asio/connect.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/beast/core.hpp>
#include <boost/beast/http.hpp>
#include <nlohmann/json.hpp>

#include <legacy/oru/files/problem.h>

#include <legacy/oru/service/durable.h>

#include "commands.h"
#include "util.h"

namespace OruTool {

namespace {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = beast::http;
using tcp = asio::ip::tcp;
using Json = nlohmann::ordered_json;

struct ClientOptions {
    std::string server;
    std::string tokenFile;
};

struct Connection {
    std::string host;
    std::string port;
    std::string token;
};

// The server and token a client uses; false with the reason printed.
bool Prepare(std::string const& command, ClientOptions const& options, Connection& connection) {
    std::string server = options.server;
    if (server.empty()) {
        char const* const fromEnvironment = std::getenv("ORU_SERVER");
        server = fromEnvironment && *fromEnvironment ? fromEnvironment : "http://127.0.0.1:8950";
    }
    std::string rest = server;
    if (rest.compare(0, 7, "http://") != 0) {
        std::cerr << "oru " << command << ": --server takes http://HOST:PORT, not " << Quote(server)
                  << "\n";
        return false;
    }
    rest = rest.substr(7);
    while (!rest.empty() && rest.back() == '/') {
        rest.pop_back();
    }
    std::size_t const colon = rest.rfind(':');
    if (colon == std::string::npos || rest.find(']', colon) != std::string::npos) {
        connection.host = rest;
        connection.port = "80";
    } else {
        connection.host = rest.substr(0, colon);
        connection.port = rest.substr(colon + 1);
    }
    if (connection.host.size() >= 2 && connection.host.front() == '[') {
        connection.host = connection.host.substr(1, connection.host.size() - 2);
    }
    std::string const tokenFile =
        options.tokenFile.empty() ? Legacy::Oru::Service::DefaultTokenFile() : options.tokenFile;
    struct stat info;
    std::string problem;
    if (::stat(tokenFile.c_str(), &info) != 0) {
        std::cerr << "oru " << command << ": no token file " << tokenFile
                  << " (oru serve makes it; or give --token-file)\n";
        return false;
    }
    if (!Legacy::Oru::Service::LoadToken(tokenFile, connection.token, problem)) {
        std::cerr << "oru " << command << ": " << problem << "\n";
        return false;
    }
    return true;
}

// "Audio%2FInput%2FGain" for a path inside a target.
std::string Encoded(std::string const& text) {
    static char const k_hex[] = "0123456789ABCDEF";
    std::string out;
    for (unsigned char const c : text) {
        if (std::isalnum(c) || c == '-' || c == '_' || c == '.' || c == '~' || c == '/') {
            out += static_cast<char>(c);
        } else {
            out += '%';
            out += k_hex[c >> 4];
            out += k_hex[c & 15];
        }
    }
    return out;
}

struct Answer {
    unsigned status = 0;
    std::string body;
};

void Open(Connection const& connection, beast::tcp_stream& stream) {
    tcp::resolver resolver(stream.get_executor());
    stream.connect(resolver.resolve(connection.host, connection.port));
}

http::request<http::string_body> MakeRequest(Connection const& connection, http::verb verb,
                                             std::string const& target, std::string body) {
    http::request<http::string_body> request(verb, target, 11);
    request.set(http::field::host, connection.host + ":" + connection.port);
    request.set(http::field::authorization, "Bearer " + connection.token);
    if (verb == http::verb::post) {
        request.set(http::field::content_type, "application/json");
        request.body() = std::move(body);
    }
    request.keep_alive(false);
    request.prepare_payload();
    return request;
}

// One request and its answer; throws what the network throws.
Answer Exchange(Connection const& connection, http::verb verb, std::string const& target,
                std::string body = std::string()) {
    asio::io_context io;
    beast::tcp_stream stream(io);
    Open(connection, stream);
    http::write(stream, MakeRequest(connection, verb, target, std::move(body)));
    beast::flat_buffer buffer;
    http::response_parser<http::string_body> parser;
    parser.body_limit(std::uint64_t(1) << 32);
    http::read(stream, buffer, parser);
    return Answer{parser.get().result_int(), parser.get().body()};
}

// The problems of an answer, one per line, as `oru check` prints them: the
// place in the change set as a values file's pointer, then the reason.
void PrintProblems(std::string const& command, Answer const& answer) {
    Json const body = Json::parse(answer.body, nullptr, false);
    if (body.is_object() && body.contains("problems") && body["problems"].is_array() &&
        !body["problems"].empty()) {
        std::string const prefix = "/changes";
        for (Json const& problem : body["problems"]) {
            std::string pointer = problem.value("pointer", "");
            if (pointer.compare(0, prefix.size(), prefix) == 0) {
                pointer.erase(0, prefix.size());
            }
            std::cout << Legacy::Oru::Files::ToString(Legacy::Oru::Files::Problem(
                             pointer, problem.value("message", ""), problem.value("path", "")))
                      << "\n";
        }
        return;
    }
    std::cerr << "oru " << command << ": the service answered " << answer.status << "\n";
}

std::string Shown(Json const& value) {
    return value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

template <typename Body>
int Guarded(std::string const& command, ClientOptions const& options, Body const& body) {
    Connection connection;
    if (!Prepare(command, options, connection)) {
        return 1;
    }
    try {
        return body(connection);
    } catch (boost::system::system_error const& error) {
        std::cerr << "oru " << command << ": cannot talk to http://" << connection.host << ":"
                  << connection.port << ": " << error.code().message() << "\n";
        return 1;
    }
}

struct GetOptions : ClientOptions {
    std::vector<std::string> paths;
    bool json = false;
};

int Get(GetOptions const& options) {
    return Guarded("get", options, [&options](Connection const& connection) {
        Json values = Json::object();
        int status = 0;
        if (options.paths.empty()) {
            Answer const answer = Exchange(connection, http::verb::get, "/api/settings");
            if (answer.status != 200) {
                PrintProblems("get", answer);
                return 1;
            }
            Json const all = Json::parse(answer.body);
            for (Json const& setting : all["settings"]) {
                if (setting.contains("value")) {
                    values[setting["path"].get<std::string>()] = setting["value"];
                }
            }
        }
        for (std::string const& path : options.paths) {
            Answer const answer =
                Exchange(connection, http::verb::get, "/api/settings/" + Encoded(path));
            if (answer.status != 200) {
                std::cerr << "oru get: " << path << ": ";
                Json const body = Json::parse(answer.body, nullptr, false);
                if (body.is_object() && body.contains("problems") && !body["problems"].empty()) {
                    std::cerr << body["problems"][0].value("message", "") << "\n";
                } else {
                    std::cerr << "the service answered " << answer.status << "\n";
                }
                status = 1;
                continue;
            }
            Json const setting = Json::parse(answer.body);
            if (setting.contains("value")) {
                values[path] = setting["value"];
            }
        }
        if (options.json) {
            std::cout << values.dump(2, ' ', false, Json::error_handler_t::replace) << "\n";
        } else {
            for (auto const& member : values.items()) {
                std::cout << member.key() << ": " << Shown(member.value()) << "\n";
            }
        }
        return status;
    });
}

struct SetOptions : ClientOptions {
    std::vector<std::string> pairs;
    long long revision = -1;
    bool dryRun = false;
};

int Set(SetOptions const& options) {
    if (options.pairs.size() % 2 != 0) {
        std::cerr << "oru set: give PATH VALUE pairs; " << Quote(options.pairs.back())
                  << " has no value (try 'oru set --help')\n";
        return 2;
    }
    return Guarded("set", options, [&options](Connection const& connection) {
        Json body = Json::object();
        if (options.revision >= 0 && !options.dryRun) {
            body["revision"] = static_cast<std::uint64_t>(options.revision);
        }
        Json changes = Json::object();
        for (std::size_t i = 0; i < options.pairs.size(); i += 2) {
            // A value that reads as JSON is taken as such; anything else is text.
            Json value = Json::parse(options.pairs[i + 1], nullptr, false);
            changes[options.pairs[i]] =
                value.is_discarded() ? Json(options.pairs[i + 1]) : std::move(value);
        }
        body["changes"] = std::move(changes);
        Answer const answer =
            Exchange(connection, http::verb::post, options.dryRun ? "/api/check" : "/api/apply",
                     body.dump(-1, ' ', false, Json::error_handler_t::replace));
        if (answer.status != 200) {
            PrintProblems("set", answer);
            return 1;
        }
        if (options.dryRun) {
            std::cout << "all " << options.pairs.size() / 2 << " values pass\n";
            return 0;
        }
        Json const result = Json::parse(answer.body);
        std::cout << "applied " << Shown(result["applied"]) << ", revision "
                  << Shown(result["revision"]) << "\n";
        return 0;
    });
}

struct WatchOptions : ClientOptions {
    long long count = -1;
    std::string since;
};

// Prints one event's lines; answers whether it was a change set or a resync.
bool PrintEvent(std::string const& type, std::string const& data) {
    Json const body = Json::parse(data, nullptr, false);
    if (!body.is_object()) {
        return false;
    }
    std::string const revision = body.contains("revision") ? Shown(body["revision"]) : "?";
    if (type == "resync") {
        std::cout << revision << " resync: read every value again" << std::endl;
        return true;
    }
    if (!type.empty() && type != "message") {
        return false;
    }
    if (body.contains("changes") && body["changes"].is_object()) {
        for (auto const& member : body["changes"].items()) {
            std::cout << revision << " " << member.key() << ": " << Shown(member.value()) << "\n";
        }
    }
    std::cout.flush();
    return true;
}

int Watch(WatchOptions const& options) {
    return Guarded("watch", options, [&options](Connection const& connection) {
        asio::io_context io;
        beast::tcp_stream stream(io);
        Open(connection, stream);
        auto request = MakeRequest(connection, http::verb::get, "/api/events", std::string());
        if (!options.since.empty()) {
            request.set("Last-Event-ID", options.since);
        }
        http::write(stream, request);
        std::string pending;
        bool headerDone = false;
        long long seen = 0;
        char chunk[4096];
        boost::system::error_code error;
        while (options.count < 0 || seen < options.count) {
            std::size_t const size = stream.socket().read_some(asio::buffer(chunk), error);
            if (error) {
                break;
            }
            pending.append(chunk, size);
            if (!headerDone) {
                std::size_t const end = pending.find("\r\n\r\n");
                if (end == std::string::npos) {
                    continue;
                }
                std::string const statusLine = pending.substr(0, pending.find("\r\n"));
                if (statusLine.find(" 200 ") == std::string::npos) {
                    std::size_t const space = statusLine.find(' ');
                    Answer answer;
                    answer.status = space == std::string::npos
                                        ? 0
                                        : static_cast<unsigned>(std::atoi(&statusLine[space + 1]));
                    answer.body = pending.substr(end + 4);
                    PrintProblems("watch", answer);
                    return 1;
                }
                pending.erase(0, end + 4);
                headerDone = true;
            }
            // Events end at an empty line; comments (heartbeats) are skipped.
            for (std::size_t end; (end = pending.find("\n\n")) != std::string::npos;) {
                std::string const frame = pending.substr(0, end + 1);
                pending.erase(0, end + 2);
                std::string type;
                std::string data;
                std::size_t start = 0;
                for (std::size_t stop; (stop = frame.find('\n', start)) != std::string::npos;
                     start = stop + 1) {
                    std::string const line = frame.substr(start, stop - start);
                    if (line.compare(0, 6, "event:") == 0) {
                        type = line.substr(line.size() > 6 && line[6] == ' ' ? 7 : 6);
                    } else if (line.compare(0, 5, "data:") == 0) {
                        data += line.substr(line.size() > 5 && line[5] == ' ' ? 6 : 5);
                    }
                }
                if (!data.empty() && PrintEvent(type, data)) {
                    ++seen;
                    if (options.count >= 0 && seen >= options.count) {
                        break;
                    }
                }
            }
        }
        if (options.count >= 0 && seen < options.count) {
            std::cerr << "oru watch: the service closed the stream";
            std::cerr << (error ? ": " + error.message() : std::string()) << "\n";
            return 1;
        }
        return 0;
    });
}

void AddClientOptions(CLI::App& command, ClientOptions& options) {
    command.add_option("--server", options.server,
                       "The service, http://HOST:PORT (default $ORU_SERVER or "
                       "http://127.0.0.1:8950)");
    command.add_option("--token-file", options.tokenFile,
                       "The token file (default " + Legacy::Oru::Service::DefaultTokenFile() + ")");
}

}  // namespace

void AddGet(CLI::App& program, int& status) {
    auto const options = std::make_shared<GetOptions>();
    CLI::App* const command =
        program.add_subcommand("get", "Print values of a device that oru serve serves");
    AddClientOptions(*command, *options);
    command->add_option("PATH", options->paths, "Setting paths (default: every readable one)");
    command->add_flag("--json", options->json, "Print a values file instead");
    command->footer(
        "Prints 'PATH: VALUE' for each setting named, each value in its JSON form.\n"
        "Exit status: 0 when every setting was read, 1 otherwise.\n"
        "\n"
        "example:\n"
        "  $ oru get Audio/Input/Gain\n"
        "  Audio/Input/Gain: 72\n");
    command->callback([options, &status] { status = Get(*options); });
}

void AddSet(CLI::App& program, int& status) {
    auto const options = std::make_shared<SetOptions>();
    CLI::App* const command =
        program.add_subcommand("set", "Change values of a device that oru serve serves");
    AddClientOptions(*command, *options);
    command->add_option("PATH VALUE", options->pairs, "Settings and their new values")->required();
    command->add_option("--revision", options->revision,
                        "Apply only if the device is still at this revision");
    command->add_flag("--dry-run", options->dryRun, "Check the values, apply nothing");
    command->footer(
        "Applies the values as one change set: all of them or, when one is refused,\n"
        "none; then prints each problem as 'PATH: reason'. A VALUE that reads as JSON\n"
        "is taken as JSON (72, true, [1,2], \"text\"), anything else as text.\n"
        "Exit status: 0 applied, 1 refused or unreachable, 2 usage.\n"
        "\n"
        "example:\n"
        "  $ oru set Audio/Input/Gain 80 Device/Name cam-2\n"
        "  applied 2, revision 1764073920000001\n");
    command->callback([options, &status] { status = Set(*options); });
}

void AddWatch(CLI::App& program, int& status) {
    auto const options = std::make_shared<WatchOptions>();
    CLI::App* const command =
        program.add_subcommand("watch", "Print the changes of a device as they happen");
    AddClientOptions(*command, *options);
    command->add_option("--count", options->count, "Stop after this many change sets");
    command->add_option("--since", options->since,
                        "Start after this revision (the changes since are printed first)");
    command->footer(
        "Prints one line per changed setting, 'REVISION PATH: VALUE', as each change\n"
        "set is applied, until interrupted. When the service cannot tell what was\n"
        "missed, it prints 'REVISION resync: ...'.\n");
    command->callback([options, &status] { status = Watch(*options); });
}

}  // namespace OruTool
