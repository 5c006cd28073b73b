// A load generator for the settings service on loopback: GET of one setting
// and POST /api/apply of one value, at 1, 16 and 64 connections, on a device
// of 72 and one of 10,000 settings. Beside each read, the floor: the same
// server answering a fixed text on the same route, in the same run. Applies
// go to a real values file, so they pay the durable write; group commit is
// what lets many connections share it. Prints a Markdown section.
//
// usage: service_load [SECONDS_PER_CASE]
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <boost/asio.hpp>
#include <boost/beast/core.hpp>
#include <boost/beast/http.hpp>
#include <nlohmann/json.hpp>

#include <legacy/oru/service/server.h>

namespace {

using namespace Legacy::Oru;
namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = beast::http;
using tcp = asio::ip::tcp;
using Clock = std::chrono::steady_clock;
using Json = nlohmann::ordered_json;

char const k_token[] = "benchbenchbenchbench";

std::string PathOf(std::size_t i) {
    char name[32];
    std::snprintf(name, sizeof name, "Bench/Group%03zu/S%05zu", i / 100, i);
    return name;
}

// A server of n settings in its own thread, its values in folder.
class Running {
public:
    Running(std::size_t n, std::string const& folder, bool fixed) {
        Json description = {{"settings", Json::array()}};
        Json values = Json::object();
        for (std::size_t i = 0; i < n; ++i) {
            description["settings"].push_back({{"path", PathOf(i)},
                                               {"type", "Numeric:U32"},
                                               {"permission", 3},
                                               {"min", 0},
                                               {"max", 4000000000u},
                                               {"default", 0}});
            values[PathOf(i)] = 0;
        }
        std::string const file = folder + (fixed ? "/floor.json" : "/values.json");
        std::ofstream(file) << values.dump(2);
        Service::Access access;
        access.token = k_token;
        Files::Problems problems;
        auto service = Service::Service::Load(description.dump(), values.dump(), access, problems);
        if (!service) {
            std::cerr << "service_load: the device was refused\n";
            std::exit(1);
        }
        Service::ServerOptions options;
        options.port = 0;
        options.valuesFile = file;
        options.fixedAnswer = fixed;
        server_ = std::make_unique<Service::Server>(std::move(service), options);
        std::string error;
        if (!server_->Open(error)) {
            std::cerr << "service_load: " << error << "\n";
            std::exit(1);
        }
        thread_ = std::thread([this] { server_->Run(); });
    }
    ~Running() {
        server_->Stop();
        thread_.join();
    }
    unsigned short Port() const { return server_->Port(); }

private:
    std::unique_ptr<Service::Server> server_;
    std::thread thread_;
};

struct Result {
    double perSecond = 0;
    double p50 = 0;  // milliseconds
    double p99 = 0;
    std::size_t failed = 0;
};

// One keep-alive connection sending request after request until the end.
class Loop : public std::enable_shared_from_this<Loop> {
public:
    Loop(asio::io_context& io, unsigned short port, bool apply, std::size_t setting,
         Clock::time_point end, std::vector<double>& latencies, std::size_t& failed)
        : stream_(io),
          port_(port),
          apply_(apply),
          setting_(setting),
          end_(end),
          latencies_(latencies),
          failed_(failed) {}

    void Start() {
        stream_.socket().connect(tcp::endpoint(asio::ip::make_address("127.0.0.1"), port_));
        stream_.socket().set_option(tcp::no_delay(true));
        Next();
    }

private:
    void Next() {
        if (Clock::now() >= end_) {
            return;
        }
        request_ = {};
        request_.version(11);
        request_.set(http::field::host, "127.0.0.1:" + std::to_string(port_));
        request_.set(http::field::authorization, std::string("Bearer ") + k_token);
        if (apply_) {
            request_.method(http::verb::post);
            request_.target("/api/apply");
            request_.body() =
                "{\"changes\": {\"" + PathOf(setting_) + "\": " + std::to_string(++value_) + "}}";
        } else {
            request_.method(http::verb::get);
            request_.target("/api/settings/" + PathOf(setting_));
        }
        request_.prepare_payload();
        started_ = Clock::now();
        http::async_write(
            stream_, request_, [self = shared_from_this()](beast::error_code error, std::size_t) {
                if (error) {
                    ++self->failed_;
                    return;
                }
                self->response_ = {};
                http::async_read(
                    self->stream_, self->buffer_, self->response_,
                    [self](beast::error_code readError, std::size_t) { self->Done(readError); });
            });
    }
    void Done(beast::error_code error) {
        if (error || response_.result_int() != 200) {
            ++failed_;
            if (error) {
                return;
            }
        } else {
            latencies_.push_back(
                std::chrono::duration<double, std::milli>(Clock::now() - started_).count());
        }
        Next();
    }

    beast::tcp_stream stream_;
    unsigned short port_;
    bool apply_;
    std::size_t setting_;
    Clock::time_point end_;
    std::vector<double>& latencies_;
    std::size_t& failed_;
    std::uint64_t value_ = 0;
    http::request<http::string_body> request_;
    http::response<http::string_body> response_;
    beast::flat_buffer buffer_;
    Clock::time_point started_;
};

Result Load(unsigned short port, bool apply, std::size_t connections, std::size_t settings,
            double seconds) {
    asio::io_context io;
    std::vector<double> latencies;
    std::size_t failed = 0;
    auto const begin = Clock::now();
    auto const end =
        begin + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds));
    for (std::size_t i = 0; i < connections; ++i) {
        // Each connection its own setting, spread over the device.
        std::make_shared<Loop>(io, port, apply, (i * 7919) % settings, end, latencies, failed)
            ->Start();
    }
    io.run();
    double const elapsed = std::chrono::duration<double>(Clock::now() - begin).count();
    Result result;
    result.failed = failed;
    result.perSecond = latencies.size() / elapsed;
    if (!latencies.empty()) {
        std::sort(latencies.begin(), latencies.end());
        result.p50 = latencies[latencies.size() / 2];
        result.p99 = latencies[std::min(latencies.size() - 1, latencies.size() * 99 / 100)];
    }
    return result;
}

std::string Fixed(double value, int digits) {
    char text[32];
    std::snprintf(text, sizeof text, "%.*f", digits, value);
    return text;
}

}  // namespace

int main(int argc, char** argv) {
    double const seconds = argc > 1 ? std::atof(argv[1]) : 2.0;
    char folder[] = "/tmp/oru-service-load-XXXXXX";
    if (!mkdtemp(folder)) {
        return 1;
    }
    std::cout << "## The settings service (bench/service_load)\n\n"
              << "Loopback, one client thread (asio) and the server's I/O thread in one process, "
              << Fixed(seconds, 1) << " s per case. Floor: the same server answering a fixed "
              << "text on the same route. Applies write the values file each time (temporary "
              << "file, fsync, rename, fsync of the folder).\n\n"
              << "| Settings | Request | Connections | req/s | p50 ms | p99 ms | Floor req/s | "
                 "Ratio to floor | Failed |\n"
              << "|---:|---|---:|---:|---:|---:|---:|---:|---:|\n";
    std::vector<std::string> verdicts;
    for (std::size_t const settings : {std::size_t(72), std::size_t(10000)}) {
        Running floor(settings, folder, true);
        Running real(settings, folder, false);
        double appliesAtOne = 0;
        for (std::size_t const connections : {1, 16, 64}) {
            Result const base = Load(floor.Port(), false, connections, settings, seconds);
            Result const read = Load(real.Port(), false, connections, settings, seconds);
            double const ratio = read.perSecond / base.perSecond;
            std::cout << "| " << settings << " | GET /api/settings/PATH | " << connections << " | "
                      << Fixed(read.perSecond, 0) << " | " << Fixed(read.p50, 3) << " | "
                      << Fixed(read.p99, 3) << " | " << Fixed(base.perSecond, 0) << " | "
                      << Fixed(ratio, 2) << " | " << read.failed << " |\n";
            Result const apply = Load(real.Port(), true, connections, settings, seconds);
            std::cout << "| " << settings << " | POST /api/apply | " << connections << " | "
                      << Fixed(apply.perSecond, 0) << " | " << Fixed(apply.p50, 3) << " | "
                      << Fixed(apply.p99, 3) << " | | | " << apply.failed << " |\n";
            if (connections == 1) {
                appliesAtOne = apply.perSecond;
            }
            if (connections == 16) {
                verdicts.push_back(
                    std::to_string(settings) + " settings, 16 connections: reads at " +
                    Fixed(ratio, 2) + "x the floor (target >= 0.50: " +
                    (ratio >= 0.5 ? "met" : "missed") + "), read p99 " + Fixed(read.p99, 2) +
                    " ms (target < 10: " + (read.p99 < 10 ? "met" : "missed") + "), applies " +
                    Fixed(apply.perSecond / appliesAtOne, 1) +
                    "x those of one connection (target >= 5: " +
                    (apply.perSecond >= 5 * appliesAtOne ? "met" : "missed") + ")");
            }
        }
    }
    std::cout << "\n";
    for (std::string const& verdict : verdicts) {
        std::cout << "- " << verdict << "\n";
    }
    std::system(("rm -rf '" + std::string(folder) + "'").c_str());
    return 0;
}
