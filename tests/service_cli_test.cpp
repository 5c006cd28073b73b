// oru serve as a user runs it, driven by oru get, set and watch; and killed
// with SIGKILL while clients apply changes, to show that nothing answered is
// lost.
#include <signal.h>
#include <sys/stat.h>

#include <atomic>
#include <chrono>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <boost/asio.hpp>
#include <nlohmann/json.hpp>

#include "tool_util.h"

namespace {

using OruTest::ReadFile;
using OruTest::RunToolArgs;
using OruTest::ToolRun;
using Json = nlohmann::json;
namespace asio = boost::asio;
using tcp = asio::ip::tcp;

// A folder of this test's files, removed at the end.
class Folder {
public:
    Folder() {
        char path[] = "/tmp/oru-serve-XXXXXX";
        path_ = mkdtemp(path);
    }
    ~Folder() { std::system(("rm -rf '" + path_ + "'").c_str()); }
    std::string operator/(std::string const& name) const { return path_ + "/" + name; }

private:
    std::string path_;
};

// oru serve DESCRIPTION VALUES on a free port, until stopped or killed.
class Served {
public:
    Served(Folder const& folder, std::string const& description, std::string const& values)
        : out_(folder / ("serve-" + std::to_string(++count_) + ".out")) {
        std::vector<std::string> args = {ORU_TOOL_PATH,  "serve",         description,
                                         values,         "--listen",      "127.0.0.1:0",
                                         "--token-file", folder / "token"};
        std::vector<char*> argv;
        for (std::string& arg : args) {
            argv.push_back(&arg[0]);
        }
        argv.push_back(nullptr);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_addopen(&actions, 1, out_.c_str(), O_WRONLY | O_CREAT | O_TRUNC,
                                         0600);
        posix_spawn_file_actions_addopen(&actions, 2, (out_ + ".err").c_str(),
                                         O_WRONLY | O_CREAT | O_TRUNC, 0600);
        if (posix_spawn(&pid_, args[0].c_str(), &actions, nullptr, argv.data(), environ) != 0) {
            pid_ = 0;
        }
        posix_spawn_file_actions_destroy(&actions);
        for (int i = 0; i < 500 && pid_ != 0; ++i) {
            int raw = 0;
            if (waitpid(pid_, &raw, WNOHANG) == pid_) {
                pid_ = 0;
                exited_ = WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
                break;
            }
            std::string const out = ReadFile(out_);
            if (out.find('\n') != std::string::npos) {
                firstLine_ = out.substr(0, out.find('\n'));
                break;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
    }
    ~Served() {
        if (pid_ != 0) {
            Signal(SIGKILL);
        }
    }
    // Sends the signal and answers the exit status (-1 when killed).
    int Signal(int signal) {
        if (pid_ == 0) {
            return exited_;
        }
        kill(pid_, signal);
        int raw = 0;
        waitpid(pid_, &raw, 0);
        pid_ = 0;
        return WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
    }
    std::string const& FirstLine() const { return firstLine_; }
    std::string Url() const { return firstLine_.substr(firstLine_.find("http://")); }
    unsigned short Port() const {
        return static_cast<unsigned short>(std::stoi(firstLine_.substr(firstLine_.rfind(':') + 1)));
    }
    std::string Output() const { return ReadFile(out_); }
    std::string Errors() const { return ReadFile(out_ + ".err"); }

private:
    static int count_;
    std::string out_;
    pid_t pid_ = 0;
    int exited_ = -1;
    std::string firstLine_;
};
int Served::count_ = 0;

class ServeTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(0, RunToolArgs({"describe"}).status);
        std::ofstream(folder_ / "device.json") << RunToolArgs({"describe"}).out;
        Json values = Json::parse(RunToolArgs({"demo", "--values"}).out);
        // The sample's refused values: one brought within bounds, the others left out.
        values["Video/Brightness"] = 80;
        std::ofstream(folder_ / "values.json") << values.dump(2);
        Json const checked = Json::parse(
            RunToolArgs({"check", "--json", folder_ / "device.json", folder_ / "values.json"}).out);
        for (Json const& problem : checked["problems"]) {
            values.erase(problem["path"].get<std::string>());
        }
        std::ofstream(folder_ / "values.json") << values.dump(2);
    }
    // What oru check says of these values.
    std::string Checked(std::string const& values) {
        std::ofstream(folder_ / "check.json") << values;
        return RunToolArgs({"check", folder_ / "device.json", folder_ / "check.json"}).out;
    }
    ToolRun Client(std::string const& command, Served const& served,
                   std::vector<std::string> const& rest) {
        std::vector<std::string> args = {command, "--server", served.Url(), "--token-file",
                                         folder_ / "token"};
        args.insert(args.end(), rest.begin(), rest.end());
        return RunToolArgs(args);
    }
    Folder folder_;
};

TEST_F(ServeTest, GetSetWatchDriveTheDeviceAndItsFile) {
    Served served(folder_, folder_ / "device.json", folder_ / "values.json");
    ASSERT_EQ(0u, served.FirstLine().find("listening on http://127.0.0.1:")) << served.Errors();
    std::string const output = served.Output();
    EXPECT_NE(std::string::npos, output.find("\neditor: " + served.Url() + "/?token="));
    // The token file was made private, and the address carries its token.
    struct stat info;
    ASSERT_EQ(0, stat((folder_ / "token").c_str(), &info));
    EXPECT_EQ(0600u, info.st_mode & 0777);
    std::string token = ReadFile(folder_ / "token");
    token.resize(token.find('\n'));
    EXPECT_NE(std::string::npos, output.find("/?token=" + token + "\n"));

    ToolRun got = Client("get", served, {"Audio/Input/Gain", "Video/Brightness"});
    EXPECT_EQ(0, got.status) << got.err;
    EXPECT_EQ("Audio/Input/Gain: 72\nVideo/Brightness: 80\n", got.out);

    // Refused: the reason oru check gives, exit 1, nothing applied.
    ToolRun const refused = Client("set", served, {"Audio/Input/Gain", "120", "Video/Mode", "day"});
    EXPECT_EQ(1, refused.status);
    EXPECT_EQ(Checked(R"({"Audio/Input/Gain": 120, "Video/Mode": "day"})"), refused.out);
    ToolRun const locked = Client("set", served, {"Device/Name", "cam-2"});
    EXPECT_EQ(1, locked.status);
    EXPECT_EQ("/Device~1Name: the setting may not be written through the service\n", locked.out);
    EXPECT_EQ(72, Json::parse(ReadFile(folder_ / "values.json"))["Audio/Input/Gain"]);

    ToolRun const set = Client("set", served, {"Audio/Input/Gain", "80", "Video/Mode", "day"});
    ASSERT_EQ(0, set.status) << set.err << set.out;
    ASSERT_EQ(0u, set.out.find("applied 2, revision "));
    std::uint64_t const revision = std::stoull(set.out.substr(20));
    Json const file = Json::parse(ReadFile(folder_ / "values.json"));
    EXPECT_EQ(80, file["Audio/Input/Gain"]);
    EXPECT_EQ("day", file["Video/Mode"]);
    got = Client("get", served, {"Video/Mode"});
    EXPECT_EQ("Video/Mode: \"day\"\n", got.out);
    got = Client("get", served, {});
    EXPECT_NE(std::string::npos, got.out.find("\nVideo/Mode: \"day\"\n"));
    EXPECT_EQ(std::string::npos, got.out.find("Brightness: 130"));

    // watch resumes after a revision, and follows live changes.
    ToolRun const since =
        Client("watch", served, {"--since", std::to_string(revision - 1), "--count", "1"});
    EXPECT_EQ(0, since.status) << since.err;
    std::string const r = std::to_string(revision);
    // In the order of the settings' ids, as the change set was applied.
    EXPECT_EQ(r + " Video/Mode: \"day\"\n" + r + " Audio/Input/Gain: 80\n", since.out);
    ToolRun live;
    std::thread watcher([&] { live = Client("watch", served, {"--count", "1"}); });
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    EXPECT_EQ(0, Client("set", served, {"Audio/Input/Balance", "7"}).status);
    watcher.join();
    EXPECT_EQ(std::to_string(revision + 1) + " Audio/Input/Balance: 7\n", live.out);

    // SIGTERM: exit 0, the file as last answered.
    EXPECT_EQ(0, served.Signal(SIGTERM));
    EXPECT_EQ(7, Json::parse(ReadFile(folder_ / "values.json"))["Audio/Input/Balance"]);
    ToolRun const gone = Client("get", served, {"Audio/Input/Gain"});
    EXPECT_EQ(1, gone.status);
    EXPECT_NE(std::string::npos, gone.err.find("cannot talk to " + served.Url()));
}

TEST_F(ServeTest, RefusesToStartOnBadFiles) {
    std::ofstream(folder_ / "bad.json") << R"({"Video/Brightness": 130})";
    Served served(folder_, folder_ / "device.json", folder_ / "bad.json");
    EXPECT_EQ("", served.FirstLine());
    EXPECT_EQ(1, served.Signal(SIGKILL));
    EXPECT_EQ("", served.Output());
    std::string reason = Checked(R"({"Video/Brightness": 130})");
    reason = reason.substr(reason.find(": ") + 2);
    EXPECT_NE(std::string::npos, served.Errors().find(reason)) << served.Errors();
    ToolRun const usage = RunToolArgs(
        {"serve", folder_ / "device.json", folder_ / "values.json", "--listen", "localhost"});
    EXPECT_EQ(2, usage.status);
}

// Applies value after value to one setting until stopped; the last value
// answered 200.
void ApplyLoop(unsigned short port, std::string const& token, std::string const& path,
               std::atomic<bool> const& stop, std::uint64_t& acknowledged) {
    try {
        asio::io_context io;
        tcp::socket socket(io);
        socket.connect(tcp::endpoint(asio::ip::make_address("127.0.0.1"), port));
        std::string buffer;
        for (std::uint64_t value = 1; !stop; ++value) {
            std::string const body =
                "{\"changes\": {\"" + path + "\": " + std::to_string(value) + "}}";
            std::string const request =
                "POST /api/apply HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(port) +
                "\r\nAuthorization: Bearer " + token +
                "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
            asio::write(socket, asio::buffer(request));
            char chunk[4096];
            while (buffer.find("\r\n\r\n") == std::string::npos ||
                   buffer.back() != '}') {  // every answer is one JSON object
                buffer.append(chunk, socket.read_some(asio::buffer(chunk)));
            }
            if (buffer.compare(0, 12, "HTTP/1.1 200") == 0) {
                acknowledged = value;
            }
            buffer.clear();
        }
    } catch (std::exception const&) {
        // The server was killed: what was answered is what counts.
    }
}

TEST_F(ServeTest, NothingAnsweredIsLostToSigkill) {
    constexpr int k_clients = 8;
    Json description = {{"settings", Json::array()}};
    Json values = Json::object();
    for (int i = 0; i < k_clients; ++i) {
        std::string const path = "Load/S" + std::to_string(i);
        description["settings"].push_back({{"path", path},
                                           {"type", "Numeric:U32"},
                                           {"permission", 3},
                                           {"min", 0},
                                           {"max", 4000000000u},
                                           {"default", 0}});
        values[path] = 0;
    }
    std::ofstream(folder_ / "load.json") << description.dump();
    std::ofstream(folder_ / "load-values.json") << values.dump();

    std::vector<std::uint64_t> acknowledged(k_clients, 0);
    {
        Served served(folder_, folder_ / "load.json", folder_ / "load-values.json");
        ASSERT_FALSE(served.FirstLine().empty()) << served.Errors();
        std::string token = ReadFile(folder_ / "token");
        token.resize(token.find('\n'));
        std::atomic<bool> stop{false};
        std::vector<std::thread> clients;
        for (int i = 0; i < k_clients; ++i) {
            clients.emplace_back(ApplyLoop, served.Port(), token, "Load/S" + std::to_string(i),
                                 std::cref(stop), std::ref(acknowledged[i]));
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1500));
        EXPECT_EQ(-1, served.Signal(SIGKILL));
        stop = true;
        for (std::thread& client : clients) {
            client.join();
        }
    }

    // The file reads, and a new service starts from it.
    Served again(folder_, folder_ / "load.json", folder_ / "load-values.json");
    ASSERT_FALSE(again.FirstLine().empty()) << again.Errors();
    ToolRun const got = Client("get", again, {"--json"});
    ASSERT_EQ(0, got.status) << got.err;
    Json const after = Json::parse(got.out);
    for (int i = 0; i < k_clients; ++i) {
        std::string const path = "Load/S" + std::to_string(i);
        SCOPED_TRACE(path);
        EXPECT_GT(acknowledged[i], 0u);
        // Every answered value is there; a later one may be too, if it was
        // on disk before its answer went out.
        ASSERT_TRUE(after.contains(path)) << got.out;
        EXPECT_GE(after[path].get<std::uint64_t>(), acknowledged[i]);
        EXPECT_LE(after[path].get<std::uint64_t>(), acknowledged[i] + 1);
    }
}

}  // namespace
