#include <legacy/oru/service/server.h>

#include <condition_variable>
#include <csignal>
#include <deque>
#include <iostream>
#include <map>
#include <mutex>
#include <optional>
#include <thread>

#include <boost/asio.hpp>
#include <boost/beast/core.hpp>
#include <boost/beast/http.hpp>

#include <legacy/oru/service/durable.h>

namespace Legacy {
namespace Oru {
namespace Service {

namespace {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = beast::http;
using tcp = asio::ip::tcp;
using ErrorCode = boost::system::error_code;

std::string ProblemBody(std::string const& message) {
    std::string escaped;
    for (char const c : message) {
        if (c == '"' || c == '\\') {
            escaped += '\\';
        }
        escaped += c;
    }
    return "{\"problems\":[{\"pointer\":\"\",\"path\":\"\",\"message\":\"" + escaped + "\"}]}";
}

Response Refusal(int status, std::string const& message) {
    Response response;
    response.status = status;
    response.contentType = "application/json";
    response.body = ProblemBody(message);
    return response;
}

char const k_fixed[] = "{\"value\":50}";

}  // namespace

class Connection;

class Server::Impl {
public:
    Impl(std::unique_ptr<Service> service, ServerOptions options)
        : service_(std::move(service)), options_(std::move(options)) {}
    ~Impl();

    bool Open(std::string& error);
    void Run();
    void Stop() {
        asio::post(*io_, [this] { BeginStop(); });
    }

    // For connections, on the I/O thread.
    Service& GetService() { return *service_; }
    ServerOptions const& Options() const { return options_; }
    bool Stopping() const { return stopping_; }
    // Answers now, or once the revision it holds is on disk.
    void Answer(std::shared_ptr<Connection> const& connection, Response response);
    bool AddEventClient(Connection* connection);
    void Forget(Connection* connection);

    unsigned short port_ = 0;

private:
    void Accept();
    void BeginStop();
    void CheckDone();
    void Beat();
    void MaybeWrite();
    void Written(std::uint64_t revision, bool ok, std::string const& error);
    void Publish(std::uint64_t revision);
    void WriterLoop();

    std::unique_ptr<Service> service_;
    ServerOptions options_;
    std::unique_ptr<asio::io_context> io_ = std::make_unique<asio::io_context>(1);
    std::optional<tcp::acceptor> acceptor_;
    std::optional<asio::steady_timer> heartbeat_;
    std::optional<asio::signal_set> signals_;
    std::map<Connection*, std::weak_ptr<Connection>> connections_;
    std::map<Connection*, std::weak_ptr<Connection>> eventClients_;
    std::vector<std::pair<std::shared_ptr<Connection>, Response>> waiting_;
    bool stopping_ = false;

    // The file writer: one job at a time, handed over under mutex_.
    std::uint64_t durable_ = 0;
    bool writing_ = false;
    std::thread writer_;
    std::mutex mutex_;
    std::condition_variable wake_;
    std::optional<std::pair<std::uint64_t, std::string>> job_;
    bool quit_ = false;
};

class Connection : public std::enable_shared_from_this<Connection> {
public:
    Connection(Server::Impl& server, tcp::socket socket)
        : server_(server), stream_(std::move(socket)) {}
    ~Connection() { server_.Forget(this); }

    void Read();
    void Send(Response const& response);
    void Push(std::string const& frame);
    void Close();
    // Whether the connection waits for a request (none in hand).
    bool Idle() const { return reading_ || events_; }

private:
    void Received(ErrorCode error);
    void StartEvents(std::string const& initial);
    void Flush();
    void WatchClose();

    Server::Impl& server_;
    beast::tcp_stream stream_;
    beast::flat_buffer buffer_;
    std::optional<http::request_parser<http::string_body>> parser_;
    std::shared_ptr<http::response<http::string_body>> reply_;
    bool keepAlive_ = false;
    bool reading_ = false;
    bool events_ = false;
    bool closed_ = false;
    std::deque<std::string> queue_;
    bool flushing_ = false;
    char sink_[256];
};

void Connection::Read() {
    if (closed_) {
        return;
    }
    parser_.emplace();
    parser_->body_limit(server_.Options().limits.body);
    parser_->header_limit(static_cast<std::uint32_t>(server_.Options().limits.header));
    reading_ = true;
    stream_.expires_after(server_.Options().limits.readTimeout);
    http::async_read(
        stream_, buffer_, *parser_,
        [self = shared_from_this()](ErrorCode error, std::size_t) { self->Received(error); });
}

void Connection::Received(ErrorCode error) {
    reading_ = false;
    if (error == http::error::body_limit) {
        keepAlive_ = false;
        Send(Refusal(413, "the body is larger than " +
                              std::to_string(server_.Options().limits.body) + " bytes"));
        return;
    }
    if (error == http::error::header_limit) {
        keepAlive_ = false;
        Send(Refusal(431, "the header is larger than " +
                              std::to_string(server_.Options().limits.header) + " bytes"));
        return;
    }
    if (error && error.category() == http::make_error_code(http::error::bad_method).category() &&
        error != http::error::end_of_stream && error != http::error::partial_message) {
        keepAlive_ = false;
        Send(Refusal(400, "the request is not HTTP/1.1: " + error.message()));
        return;
    }
    if (error) {
        Close();
        return;
    }
    http::request<http::string_body> message = parser_->release();
    keepAlive_ = message.keep_alive() && !server_.Stopping();
    if (server_.Options().fixedAnswer) {
        Response fixed;
        fixed.contentType = "application/json";
        fixed.body = k_fixed;
        Send(fixed);
        return;
    }
    Request request;
    request.method = std::string(message.method_string());
    request.target = std::string(message.target());
    for (auto const& field : message) {
        request.headers.emplace_back(std::string(field.name_string()), std::string(field.value()));
    }
    request.body = std::move(message.body());
    Response response = server_.GetService().Handle(request);
    if (response.events) {
        if (!server_.AddEventClient(this)) {
            keepAlive_ = false;
            Send(Refusal(503, "too many event clients"));
            return;
        }
        StartEvents(response.body);
        return;
    }
    server_.Answer(shared_from_this(), std::move(response));
}

void Connection::Send(Response const& response) {
    if (closed_) {
        return;
    }
    reply_ = std::make_shared<http::response<http::string_body>>();
    http::response<http::string_body>& reply = *reply_;
    reply.version(11);
    reply.result(static_cast<unsigned>(response.status));
    if (!response.contentType.empty()) {
        reply.set(http::field::content_type, response.contentType);
    }
    reply.set(http::field::cache_control, "no-store");
    reply.set("X-Content-Type-Options", "nosniff");
    if (response.contentType.compare(0, 9, "text/html") == 0) {
        // The page is whole in itself: nothing from elsewhere, no framing.
        reply.set("Content-Security-Policy",
                  "default-src 'self'; img-src 'self' data:; style-src 'self' 'unsafe-inline'; "
                  "frame-ancestors 'none'; form-action 'self'; base-uri 'none'");
        reply.set("X-Frame-Options", "DENY");
    }
    for (auto const& header : response.headers) {
        reply.insert(header.first, header.second);
    }
    reply.body() = response.body;
    reply.keep_alive(keepAlive_ && !server_.Stopping());
    reply.prepare_payload();
    stream_.expires_after(server_.Options().limits.readTimeout);
    http::async_write(stream_, reply, [self = shared_from_this()](ErrorCode error, std::size_t) {
        bool const again = !error && self->reply_->keep_alive() && !self->server_.Stopping();
        self->reply_.reset();
        if (again) {
            self->Read();
        } else {
            self->Close();
        }
    });
}

void Connection::StartEvents(std::string const& initial) {
    events_ = true;
    queue_.push_back(
        "HTTP/1.1 200 OK\r\nContent-Type: text/event-stream\r\nCache-Control: no-store\r\n"
        "X-Content-Type-Options: nosniff\r\nConnection: close\r\n\r\n" +
        initial);
    Flush();
    WatchClose();
}

void Connection::WatchClose() {
    // A stream only talks one way: anything the client sends is dropped, and
    // its end closes the stream.
    stream_.socket().async_read_some(asio::buffer(sink_),
                                     [self = shared_from_this()](ErrorCode error, std::size_t) {
                                         if (error) {
                                             self->Close();
                                         } else {
                                             self->WatchClose();
                                         }
                                     });
}

void Connection::Push(std::string const& frame) {
    if (!events_ || closed_) {
        return;
    }
    if (queue_.size() >= server_.Options().limits.eventQueue) {
        // A client that falls this far behind reads everything again.
        std::string inFlight;
        if (flushing_) {
            inFlight = std::move(queue_.front());
        }
        queue_.clear();
        if (flushing_) {
            queue_.push_back(std::move(inFlight));
        }
        queue_.push_back(server_.GetService().ResyncFrame());
        return;
    }
    queue_.push_back(frame);
    Flush();
}

void Connection::Flush() {
    if (flushing_ || queue_.empty() || closed_) {
        return;
    }
    flushing_ = true;
    Limits const& limits = server_.Options().limits;
    stream_.expires_after(limits.readTimeout + 4 * limits.heartbeat);
    asio::async_write(stream_, asio::buffer(queue_.front()),
                      [self = shared_from_this()](ErrorCode error, std::size_t) {
                          self->flushing_ = false;
                          if (error) {
                              self->Close();
                              return;
                          }
                          self->queue_.pop_front();
                          self->Flush();
                      });
}

void Connection::Close() {
    if (closed_) {
        return;
    }
    closed_ = true;
    ErrorCode ignored;
    stream_.socket().shutdown(tcp::socket::shutdown_both, ignored);
    stream_.socket().close(ignored);
}

Server::Impl::~Impl() {
    {
        std::lock_guard<std::mutex> lock(mutex_);
        quit_ = true;
    }
    wake_.notify_all();
    if (writer_.joinable()) {
        writer_.join();
    }
    waiting_.clear();
    signals_.reset();
    heartbeat_.reset();
    acceptor_.reset();
    // The pending handlers hold the connections, which unregister here.
    io_.reset();
}

bool Server::Impl::Open(std::string& error) {
    ErrorCode code;
    asio::ip::address const address = asio::ip::make_address(options_.address, code);
    if (code) {
        error = "not an IP address: " + options_.address;
        return false;
    }
    tcp::endpoint const endpoint(address, options_.port);
    acceptor_.emplace(*io_);
    acceptor_->open(endpoint.protocol(), code);
    if (!code) {
        acceptor_->set_option(asio::socket_base::reuse_address(true), code);
    }
    if (!code) {
        acceptor_->bind(endpoint, code);
    }
    if (!code) {
        acceptor_->listen(asio::socket_base::max_listen_connections, code);
    }
    if (code) {
        error = "cannot listen on " + options_.address + ":" + std::to_string(options_.port) +
                ": " + code.message();
        acceptor_.reset();
        return false;
    }
    port_ = acceptor_->local_endpoint().port();
    Access access = service_->GetAccess();
    access.hosts = Server::HostsFor(options_.address, port_);
    access.cookie = "oru_token_" + std::to_string(port_);
    service_->SetAccess(std::move(access));
    durable_ = service_->Revision();
    return true;
}

void Server::Impl::Run() {
    if (!acceptor_) {
        return;
    }
    if (!options_.valuesFile.empty()) {
        writer_ = std::thread([this] { WriterLoop(); });
    }
    if (options_.stopOnSignals) {
        signals_.emplace(*io_, SIGTERM, SIGINT);
        signals_->async_wait([this](ErrorCode error, int) {
            if (!error) {
                BeginStop();
            }
        });
    }
    heartbeat_.emplace(*io_);
    Beat();
    Accept();
    io_->run();
}

void Server::Impl::Accept() {
    acceptor_->async_accept([this](ErrorCode error, tcp::socket socket) {
        if (stopping_ || !acceptor_ || !acceptor_->is_open()) {
            return;
        }
        if (!error) {
            if (connections_.size() >= options_.limits.connections) {
                static char const k_busy[] =
                    "HTTP/1.1 503 Service Unavailable\r\nContent-Length: 0\r\nConnection: "
                    "close\r\n\r\n";
                ErrorCode ignored;
                asio::write(socket, asio::buffer(k_busy, sizeof k_busy - 1), ignored);
                socket.close(ignored);
            } else {
                auto connection = std::make_shared<Connection>(*this, std::move(socket));
                connections_.emplace(connection.get(), connection);
                connection->Read();
            }
        }
        Accept();
    });
}

void Server::Impl::Beat() {
    heartbeat_->expires_after(options_.limits.heartbeat);
    heartbeat_->async_wait([this](ErrorCode error) {
        if (error || stopping_) {
            return;
        }
        for (auto const& client : eventClients_) {
            if (auto const connection = client.second.lock()) {
                connection->Push(": heartbeat\n\n");
            }
        }
        Beat();
    });
}

bool Server::Impl::AddEventClient(Connection* connection) {
    if (eventClients_.size() >= options_.limits.eventClients || stopping_) {
        return false;
    }
    eventClients_.emplace(connection, connections_[connection]);
    return true;
}

void Server::Impl::Forget(Connection* connection) {
    connections_.erase(connection);
    eventClients_.erase(connection);
    if (stopping_ && io_) {
        asio::post(*io_, [this] { CheckDone(); });
    }
}

void Server::Impl::Answer(std::shared_ptr<Connection> const& connection, Response response) {
    if (response.durableRevision == 0) {
        connection->Send(response);
        return;
    }
    waiting_.emplace_back(connection, std::move(response));
    MaybeWrite();
}

void Server::Impl::MaybeWrite() {
    if (options_.valuesFile.empty()) {
        Publish(service_->Revision());
        return;
    }
    if (writing_ || service_->Revision() == durable_) {
        return;
    }
    writing_ = true;
    std::uint64_t const revision = service_->Revision();
    std::string content = service_->Values();
    {
        std::lock_guard<std::mutex> lock(mutex_);
        job_.emplace(revision, std::move(content));
    }
    wake_.notify_one();
}

void Server::Impl::WriterLoop() {
    for (;;) {
        std::pair<std::uint64_t, std::string> job;
        {
            std::unique_lock<std::mutex> lock(mutex_);
            wake_.wait(lock, [this] { return quit_ || job_; });
            if (!job_) {
                return;
            }
            job = std::move(*job_);
            job_.reset();
        }
        std::string error;
        bool const ok = ReplaceFile(options_.valuesFile, job.second, error);
        asio::post(*io_, [this, revision = job.first, ok, error] { Written(revision, ok, error); });
    }
}

void Server::Impl::Written(std::uint64_t revision, bool ok, std::string const& error) {
    writing_ = false;
    if (ok) {
        durable_ = revision;
        Publish(revision);
    } else {
        std::cerr << "oru serve: " << error << "\n";
        // The change sets stay applied in memory and go with the next write;
        // their callers learn that they are not on disk.
        std::vector<std::pair<std::shared_ptr<Connection>, Response>> failed;
        for (auto it = waiting_.begin(); it != waiting_.end();) {
            if (it->second.durableRevision <= revision) {
                failed.push_back(std::move(*it));
                it = waiting_.erase(it);
            } else {
                ++it;
            }
        }
        for (auto& each : failed) {
            each.first->Send(Refusal(500, "the values could not be saved: " + error));
        }
    }
    MaybeWrite();
    CheckDone();
}

void Server::Impl::Publish(std::uint64_t revision) {
    std::vector<Event const*> events;
    service_->Publish(revision, events);
    std::vector<std::pair<std::shared_ptr<Connection>, Response>> ready;
    for (auto it = waiting_.begin(); it != waiting_.end();) {
        if (it->second.durableRevision <= revision) {
            ready.push_back(std::move(*it));
            it = waiting_.erase(it);
        } else {
            ++it;
        }
    }
    for (auto& each : ready) {
        each.first->Send(each.second);
    }
    for (Event const* event : events) {
        for (auto const& client : eventClients_) {
            if (auto const connection = client.second.lock()) {
                connection->Push(event->frame);
            }
        }
    }
}

void Server::Impl::BeginStop() {
    if (stopping_) {
        return;
    }
    stopping_ = true;
    ErrorCode ignored;
    if (acceptor_) {
        acceptor_->close(ignored);
    }
    if (heartbeat_) {
        heartbeat_->cancel();
    }
    if (signals_) {
        signals_->cancel(ignored);
    }
    // Requests in hand are answered; idle connections and streams end now.
    std::vector<std::shared_ptr<Connection>> idle;
    for (auto const& each : connections_) {
        auto const connection = each.second.lock();
        if (connection && connection->Idle()) {
            idle.push_back(connection);
        }
    }
    for (auto const& connection : idle) {
        connection->Close();
    }
    CheckDone();
}

void Server::Impl::CheckDone() {
    if (!stopping_ || writing_ || !waiting_.empty() || !connections_.empty()) {
        return;
    }
    if (!options_.valuesFile.empty() && service_->Revision() != durable_) {
        MaybeWrite();
        return;
    }
    io_->stop();
}

Server::Server(std::unique_ptr<Service> service, ServerOptions options)
    : impl_(std::make_unique<Impl>(std::move(service), std::move(options))) {}

Server::~Server() = default;

bool Server::Open(std::string& error) {
    return impl_->Open(error);
}

unsigned short Server::Port() const {
    return impl_->port_;
}

void Server::Run() {
    impl_->Run();
}

void Server::Stop() {
    impl_->Stop();
}

std::vector<std::string> Server::HostsFor(std::string const& address, unsigned short port) {
    ErrorCode error;
    asio::ip::address const parsed = asio::ip::make_address(address, error);
    if (error || parsed.is_unspecified()) {
        return {};
    }
    std::string const suffix = ":" + std::to_string(port);
    std::vector<std::string> hosts;
    hosts.push_back(parsed.is_v6() ? "[" + parsed.to_string() + "]" + suffix
                                   : parsed.to_string() + suffix);
    if (parsed.is_loopback()) {
        for (char const* name : {"localhost", "127.0.0.1", "[::1]"}) {
            if (name + suffix != hosts.front()) {
                hosts.push_back(name + suffix);
            }
        }
    }
    return hosts;
}

}  // namespace Service
}  // namespace Oru
}  // namespace Legacy
