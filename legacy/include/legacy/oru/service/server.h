// Server: a Service on the network. One I/O thread (the one calling Run)
// owns the Service and every connection; a second thread only writes the
// values file. Change sets applied while a write is in flight go to disk
// together in the next one, and each is answered after the write that holds
// it. Open and Port from the owner's thread; Stop from any thread.
#ifndef LEGACY_ORU_SERVICE_SERVER_H
#define LEGACY_ORU_SERVICE_SERVER_H

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>

#include <legacy/oru/export.h>
#include <legacy/oru/service/service.h>

namespace Legacy {
namespace Oru {
namespace Service {

// The limits of a server; the defaults are those documented for oru serve.
struct ORU_API Limits {
    std::size_t body = 1024 * 1024;
    std::size_t header = 8 * 1024;
    std::chrono::milliseconds readTimeout{10000};
    std::chrono::milliseconds heartbeat{15000};
    std::size_t connections = 256;
    std::size_t eventClients = 64;
    // Frames waiting for one event client before it is told to resync.
    std::size_t eventQueue = 64;
};

struct ORU_API ServerOptions {
    // An IPv4 or IPv6 address; port 0 picks a free one.
    std::string address = "127.0.0.1";
    unsigned short port = 8950;
    // Where each applied change set is written; empty keeps them in memory.
    std::string valuesFile;
    Limits limits;
    // SIGTERM and SIGINT stop the server gracefully.
    bool stopOnSignals = false;
    // Answers every route with a fixed text: the floor of the benchmark.
    bool fixedAnswer = false;
};

class ORU_API Server {
public:
    Server(std::unique_ptr<Service> service, ServerOptions options);
    ~Server();
    Server(Server const&) = delete;
    Server& operator=(Server const&) = delete;

    // Binds and listens; false with the reason when it cannot.
    bool Open(std::string& error);
    // The port listened on, once open.
    unsigned short Port() const;
    // Serves until Stop; returns once the change sets in hand are on disk.
    void Run();
    // Stops accepting, finishes the requests in hand and their writes, then
    // makes Run return. Any thread, any number of times.
    void Stop();

    // The Host forms a browser may use for an address and port:
    // "127.0.0.1:8950", "localhost:8950", ...; empty for a wildcard address.
    static std::vector<std::string> HostsFor(std::string const& address, unsigned short port);

    // The server's state, defined with it.
    class Impl;

private:
    std::unique_ptr<Impl> impl_;
};

}  // namespace Service
}  // namespace Oru
}  // namespace Legacy

#endif
