// The settings service on a socket: limits, hostile senders, the durable
// file, event streams, and a graceful stop. The server runs in this process
// on a free port, with short timeouts so that the cases stay quick.
#include <legacy/oru/service/server.h>

#include <poll.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <boost/asio.hpp>
#include <nlohmann/json.hpp>

#include <legacy/oru/files/files.h>

namespace {

using namespace Legacy::Oru;
namespace asio = boost::asio;
using tcp = asio::ip::tcp;
using Json = nlohmann::json;

char const k_description[] = R"({"settings": [
  {"path": "Audio/Gain", "type": "Numeric:U32", "permission": 3, "min": 0, "max": 100, "default": 50},
  {"path": "Device/Name", "type": "String", "permission": 3, "maxLength": 16, "default": "camera"}
]})";
char const k_values[] = R"({"Audio/Gain": 72, "Device/Name": "cam"})";
char const k_token[] = "feedfacefeedface";
// "Host: 127.0.0.1:PORT" of the server running now.
std::string g_host;

std::string ReadFile(std::string const& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

class Running {
public:
    explicit Running(Service::Limits limits = ShortLimits(), bool durable = true,
                     char const* description = k_description) {
        char folder[] = "/tmp/oru-service-XXXXXX";
        folder_ = mkdtemp(folder);
        values_ = folder_ + "/values.json";
        std::ofstream(values_) << k_values;
        Service::Access access;
        access.token = k_token;
        Files::Problems problems;
        auto service = Service::Service::Load(description, k_values, access, problems);
        Service::ServerOptions options;
        options.address = "127.0.0.1";
        options.port = 0;
        options.valuesFile = durable ? values_ : std::string();
        options.limits = limits;
        server_ = std::make_unique<Service::Server>(std::move(service), options);
        std::string error;
        EXPECT_TRUE(server_->Open(error)) << error;
        g_host = "Host: 127.0.0.1:" + std::to_string(server_->Port()) + "\r\n";
        thread_ = std::thread([this] { server_->Run(); });
    }
    ~Running() {
        if (thread_.joinable()) {
            server_->Stop();
            thread_.join();
        }
        std::remove(values_.c_str());
        ::rmdir(folder_.c_str());
    }
    static Service::Limits ShortLimits() {
        Service::Limits limits;
        limits.readTimeout = std::chrono::milliseconds(300);
        limits.heartbeat = std::chrono::milliseconds(100);
        return limits;
    }
    unsigned short Port() const { return server_->Port(); }
    std::string const& ValuesFile() const { return values_; }
    void Stop() { server_->Stop(); }
    void Join() { thread_.join(); }

private:
    std::string folder_;
    std::string values_;
    std::unique_ptr<Service::Server> server_;
    std::thread thread_;
};

// A plain client socket that speaks raw bytes.
class Client {
public:
    explicit Client(unsigned short port) : socket_(io_) {
        socket_.connect(tcp::endpoint(asio::ip::make_address("127.0.0.1"), port));
    }
    // A client with a small receive window.
    Client(unsigned short port, int window) : socket_(io_) {
        socket_.open(tcp::v4());
        socket_.set_option(asio::socket_base::receive_buffer_size(window));
        socket_.connect(tcp::endpoint(asio::ip::make_address("127.0.0.1"), port));
    }
    // A server that refuses early closes before all is sent; what it
    // answered is read all the same.
    void Send(std::string const& bytes) {
        boost::system::error_code ignored;
        asio::write(socket_, asio::buffer(bytes), ignored);
    }
    // Everything until the server closes, or until `until` appears.
    std::string Receive(std::string const& until = std::string()) {
        char chunk[65536];
        boost::system::error_code error;
        while (until.empty() || received_.find(until) == std::string::npos) {
            // A server silent for this long fails the case, not the suite.
            pollfd ready{socket_.native_handle(), POLLIN, 0};
            if (::poll(&ready, 1, 10000) <= 0) {
                break;
            }
            std::size_t const size = socket_.read_some(asio::buffer(chunk), error);
            if (error) {
                break;
            }
            received_.append(chunk, size);
        }
        return received_;
    }
    // One whole response of a keep-alive exchange.
    std::string Response() {
        Receive("\r\n\r\n");
        std::size_t const end = received_.find("\r\n\r\n") + 4;
        std::size_t const length = received_.find("Content-Length: ");
        std::size_t size = 0;
        if (length != std::string::npos && length < end) {
            size = std::stoul(received_.substr(length + 16));
        }
        char chunk[65536];
        while (received_.size() < end + size) {
            std::size_t const got = socket_.read_some(asio::buffer(chunk));
            received_.append(chunk, got);
        }
        std::string const whole = received_.substr(0, end + size);
        received_.erase(0, end + size);
        return whole;
    }
    void ShutdownSend() { socket_.shutdown(tcp::socket::shutdown_send); }

private:
    asio::io_context io_;
    tcp::socket socket_;
    std::string received_;
};

std::string Request(std::string const& method, std::string const& target,
                    std::string const& body = std::string(), bool close = false) {
    std::string request = method + " " + target + " HTTP/1.1\r\n" + g_host +
                          "Authorization: Bearer " + k_token + "\r\n";
    if (close) {
        request += "Connection: close\r\n";
    }
    if (method == "POST") {
        request +=
            "Content-Type: application/json\r\nContent-Length: " + std::to_string(body.size()) +
            "\r\n";
    }
    return request + "\r\n" + body;
}

int StatusOf(std::string const& response) {
    return response.size() > 12 ? std::stoi(response.substr(9, 3)) : 0;
}

std::string BodyOf(std::string const& response) {
    std::size_t const end = response.find("\r\n\r\n");
    return end == std::string::npos ? std::string() : response.substr(end + 4);
}

// One request on its own connection: the whole response.
std::string Exchange(unsigned short port, std::string const& request) {
    Client client(port);
    client.Send(request);
    return client.Receive();
}

TEST(ServiceServerTest, AnAppliedChangeIsOnDiskWhenAnswered) {
    Running server;
    std::string const response = Exchange(
        server.Port(), Request("POST", "/api/apply",
                               R"({"changes": {"Audio/Gain": 33, "Device/Name": "x"}})", true));
    ASSERT_EQ(200, StatusOf(response)) << response;
    Json const file = Json::parse(ReadFile(server.ValuesFile()));
    EXPECT_EQ(33, file["Audio/Gain"]);
    EXPECT_EQ("x", file["Device/Name"]);
    // Refused changes leave the file alone.
    std::string const before = ReadFile(server.ValuesFile());
    EXPECT_EQ(422, StatusOf(Exchange(server.Port(),
                                     Request("POST", "/api/apply",
                                             R"({"changes": {"Audio/Gain": 101}})", true))));
    EXPECT_EQ(before, ReadFile(server.ValuesFile()));
}

TEST(ServiceServerTest, HostileRequestsAreRefusedAndTheServiceGoesOn) {
    Running server;
    std::string const before = ReadFile(server.ValuesFile());
    std::string const big(1024 * 1024 + 1, ' ');
    struct Row {
        char const* name;
        std::string request;
        int status;
    };
    std::vector<Row> const rows = {
        {"body of 1 MiB + 1", Request("POST", "/api/apply", big), 413},
        {"header over 8 KiB",
         "GET /api/settings HTTP/1.1\r\n" + g_host + "X-Pad: " + std::string(9000, 'a') +
             "\r\n\r\n",
         431},
        {"not HTTP", "\x16\x03\x01\x02\x00\x01\x00\x01\xfc\x03\x03\r\n\r\n", 400},
        {"bad method line", "GET\r\n\r\n", 400},
        {"malformed JSON", Request("POST", "/api/apply", "{\"changes\": {", true), 400},
        {"deep nesting",
         Request("POST", "/api/apply",
                 "{\"changes\": {\"Audio/Gain\": " + std::string(500000, '[') + "}}", true),
         400},
        {"no token", "GET /api/settings HTTP/1.1\r\n" + g_host + "Connection: close\r\n\r\n", 401},
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(row.name);
        Client client(server.Port());
        client.Send(row.request);
        std::string const response = client.Receive();
        EXPECT_EQ(row.status, StatusOf(response)) << response.substr(0, 200);
        // The connection is closed after the refusal.
        EXPECT_NE(std::string::npos, response.find("\r\n\r\n"));
    }

    // Many unknown paths on one connection.
    Client client(server.Port());
    for (int i = 0; i < 10000; ++i) {
        client.Send(Request("GET", "/api/settings/Nope/" + std::to_string(i)));
        std::string const response = client.Response();
        if (StatusOf(response) != 404) {
            ADD_FAILURE() << i << ": " << response;
            break;
        }
    }
    client.Send(Request("GET", "/api/settings/Audio/Gain"));
    EXPECT_EQ(72, Json::parse(BodyOf(client.Response()))["value"]);
    EXPECT_EQ(before, ReadFile(server.ValuesFile()));
}

TEST(ServiceServerTest, SlowAndHalfClosedSendersAreBounded) {
    Running server;
    // A sender that stops mid-header is cut off after the read timeout.
    auto const started = std::chrono::steady_clock::now();
    Client slow(server.Port());
    slow.Send("GET /api/settings HTTP/1.1\r\n" + g_host);
    EXPECT_EQ("", slow.Receive());
    auto const waited = std::chrono::steady_clock::now() - started;
    EXPECT_GE(waited, std::chrono::milliseconds(250));
    EXPECT_LT(waited, std::chrono::seconds(5));

    // One that closes its sending side after the request still gets the answer.
    Client half(server.Port());
    half.Send(Request("GET", "/api/settings/Audio/Gain"));
    half.ShutdownSend();
    std::string const answer = half.Receive();
    EXPECT_EQ(200, StatusOf(answer));

    // One that closes before its body ends changes nothing.
    std::string const before = ReadFile(server.ValuesFile());
    {
        Client cut(server.Port());
        std::string const request =
            Request("POST", "/api/apply", R"({"changes": {"Audio/Gain": 1}})");
        cut.Send(request.substr(0, request.size() - 5));
        cut.ShutdownSend();
        EXPECT_EQ("", cut.Receive());
    }
    EXPECT_EQ(before, ReadFile(server.ValuesFile()));
    EXPECT_EQ(200, StatusOf(Exchange(server.Port(), Request("GET", "/api/settings", "", true))));
}

TEST(ServiceServerTest, ConnectionsAndEventClientsAreCounted) {
    Service::Limits limits = Running::ShortLimits();
    limits.connections = 4;
    limits.eventClients = 2;
    Running server(limits);
    std::vector<std::unique_ptr<Client>> streams;
    for (int i = 0; i < 2; ++i) {
        streams.push_back(std::make_unique<Client>(server.Port()));
        streams.back()->Send(Request("GET", "/api/events"));
        EXPECT_NE(std::string::npos, streams.back()->Receive("event: revision").find(" 200 OK"));
    }
    EXPECT_EQ(503, StatusOf(Exchange(server.Port(), Request("GET", "/api/events"))));
    // Two streams and two idle connections fill the server.
    Client first(server.Port());
    Client second(server.Port());
    first.Send(Request("GET", "/api/settings/Audio/Gain"));
    EXPECT_EQ(200, StatusOf(first.Response()));
    EXPECT_EQ(503, StatusOf(Exchange(server.Port(), Request("GET", "/api/settings", "", true))));
    streams.pop_back();
    second.Send(Request("GET", "/api/settings/Audio/Gain"));
    EXPECT_EQ(200, StatusOf(second.Response()));
}

TEST(ServiceServerTest, StreamsCarryChangeSetsAndHeartbeats) {
    Running server;
    Client stream(server.Port());
    stream.Send(Request("GET", "/api/events"));
    std::string const opening = stream.Receive("event: revision");
    std::size_t const id = opening.find("id: ");
    ASSERT_NE(std::string::npos, id);
    std::uint64_t const start = std::stoull(opening.substr(id + 4));

    EXPECT_EQ(
        200, StatusOf(Exchange(server.Port(), Request("POST", "/api/apply",
                                                      R"({"changes": {"Audio/Gain": 5}})", true))));
    std::string const frame = "id: " + std::to_string(start + 1) +
                              "\ndata: {\"revision\":" + std::to_string(start + 1) +
                              ",\"changes\":{\"Audio/Gain\":5}}\n\n";
    EXPECT_NE(std::string::npos, stream.Receive(frame).find(frame));
    EXPECT_NE(std::string::npos, stream.Receive(": heartbeat\n\n").find(": heartbeat\n\n"));

    // A client that comes back resumes after its last event.
    Client again(server.Port());
    again.Send("GET /api/events HTTP/1.1\r\n" + g_host + "Authorization: Bearer " +
               std::string(k_token) + "\r\nLast-Event-ID: " + std::to_string(start) + "\r\n\r\n");
    EXPECT_NE(std::string::npos, again.Receive(frame).find(frame));
}

TEST(ServiceServerTest, AStreamThatFallsBehindIsToldToResyncAndGoesOn) {
    Service::Limits limits = Running::ShortLimits();
    limits.eventQueue = 4;
    limits.heartbeat = std::chrono::milliseconds(60000);
    // Kept in memory, so that thousands of changes do not wait for the
    // disk; each frame carries kilobytes, more than the socket buffers hold.
    Running server(limits, false, R"({"settings": [
      {"path": "Audio/Gain", "type": "Numeric:U32", "permission": 3, "max": 100, "default": 50},
      {"path": "Device/Name", "type": "String", "permission": 3, "maxLength": 4096}]})");
    Client stream(server.Port(), 1024);
    stream.Send(Request("GET", "/api/events"));
    stream.Receive("event: revision");
    // The stream is not read meanwhile: its frames fill the socket, then
    // the queue, which the server drops for one resync frame.
    Client writer(server.Port());
    int const applies = 3000;
    for (int i = 0; i < applies; ++i) {
        std::string const name(4000, static_cast<char>('a' + i % 26));
        writer.Send(
            Request("POST", "/api/apply", R"({"changes": {"Device/Name": ")" + name + "\"}}"));
        ASSERT_EQ(200, StatusOf(writer.Response())) << i;
    }
    std::string const behind = stream.Receive("event: resync");
    std::size_t const resync = behind.find("event: resync");
    ASSERT_NE(std::string::npos, resync);
    std::size_t frames = 0;
    for (std::size_t at = behind.find("\"changes\""); at != std::string::npos;
         at = behind.find("\"changes\"", at + 1)) {
        ++frames;
    }
    EXPECT_LT(frames, static_cast<std::size_t>(applies));
    // The resync names the revision to fetch from; the stream goes on after it.
    EXPECT_NE(std::string::npos, behind.find("data: {\"revision\":", resync));
    // The writer's idle connection has timed out meanwhile.
    ASSERT_EQ(200, StatusOf(Exchange(server.Port(),
                                     Request("POST", "/api/apply",
                                             R"({"changes": {"Device/Name": "after"}})", true))));
    EXPECT_NE(std::string::npos,
              stream.Receive("\"after\"").find("\"Device/Name\":\"after\"", resync));
}

TEST(ServiceServerTest, StopFinishesWhatItHoldsAndEndsStreams) {
    auto server = std::make_unique<Running>();
    Client stream(server->Port());
    stream.Send(Request("GET", "/api/events"));
    stream.Receive("event: revision");
    Client idle(server->Port());
    EXPECT_EQ(200, StatusOf(Exchange(
                       server->Port(),
                       Request("POST", "/api/apply", R"({"changes": {"Audio/Gain": 6}})", true))));
    server->Stop();
    server->Join();
    // Run returned: the stream and the idle connection were closed.
    stream.Receive();
    EXPECT_EQ("", idle.Receive());
    EXPECT_EQ(6, Json::parse(ReadFile(server->ValuesFile()))["Audio/Gain"]);
    EXPECT_THROW(Client late(server->Port()), boost::system::system_error);
}

}  // namespace
