// Service: one device's settings behind the HTTP routes of the settings
// service, without the network. It owns a directory loaded from a
// description and a values file, answers each request (method, target,
// headers, body) with a response, counts revisions, and keeps the recent
// change sets as Server-Sent Events. Every value is read and checked by
// Oru::files, so the service refuses what `oru check` refuses, for the same
// reasons.
//
// Not thread-safe: one thread (the server's I/O thread) owns a Service.
#ifndef LEGACY_ORU_SERVICE_SERVICE_H
#define LEGACY_ORU_SERVICE_SERVICE_H

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <legacy/oru/export.h>
#include <legacy/oru/files/problem.h>

namespace Legacy {
namespace Oru {
namespace Service {

// One HTTP request as the service sees it. Header names in any case.
struct ORU_API Request {
    std::string method;
    std::string target;
    std::vector<std::pair<std::string, std::string>> headers;
    std::string body;

    // The first header of that name (any case), or null.
    std::string const* Header(std::string const& name) const;
};

// The answer to one Request.
struct ORU_API Response {
    int status = 200;
    std::string contentType;
    std::string body;
    // Further headers: Location, Set-Cookie, Allow, WWW-Authenticate.
    std::vector<std::pair<std::string, std::string>> headers;
    // A revision that must be on disk before the answer may go out; 0 for none.
    std::uint64_t durableRevision = 0;
    // The request opened an event stream: body holds its first events.
    bool events = false;
};

// What the service accepts beside the settings themselves.
struct ORU_API Access {
    // Every request carries it, as "Authorization: Bearer TOKEN" or the cookie.
    std::string token;
    // The "host:port" forms a browser may name this service by (Host and
    // Origin); empty accepts any host.
    std::vector<std::string> hosts;
    // The name of the cookie the page gets; one per port, since cookies are not.
    std::string cookie = "oru_token";
};

// The permission word's meaning: a setting is readable through the service
// when its permission has a bit of `read`, writable when it has one of
// `write`. A mask of 0 lets every setting through.
struct ORU_API Permissions {
    unsigned short read = 1;
    unsigned short write = 2;
};

// An applied change set, as an event: its revision and its SSE frame.
struct ORU_API Event {
    std::uint64_t revision = 0;
    std::string frame;
};

class ORU_API Service {
public:
    // How many change sets the service keeps for clients that resume.
    static constexpr std::size_t k_history = 256;

    // Loads the description and the values (JSON texts). Null with the
    // problems when either is refused; the values must all pass. The
    // description may carry a top-level "access" object (see Permissions).
    static std::unique_ptr<Service> Load(std::string const& description, std::string const& values,
                                         Access access, Files::Problems& problems);

    ~Service();
    Service(Service const&) = delete;
    Service& operator=(Service const&) = delete;

    // Answers one request. An applied change set answers with
    // durableRevision set: the caller writes Values() to disk first.
    Response Handle(Request const& request);

    // The present revision: it grows by one with each applied change set.
    std::uint64_t Revision() const;

    // The last revision whose change set went out as an event (once on disk).
    std::uint64_t Published() const;

    // Marks the change sets up to revision as safe to tell: their events are
    // appended to out, and event streams opened from now on start there.
    void Publish(std::uint64_t revision, std::vector<Event const*>& out);

    // Replaces what requests must carry (the server learns its port late).
    void SetAccess(Access access);
    Access const& GetAccess() const;

    // Every readable and unreadable value, as a values file.
    std::string Values() const;

    // The frames of the change sets after `revision`, oldest first; false
    // when they are no longer all kept (or `revision` was never this run's):
    // the client must then read everything again.
    bool EventsSince(std::uint64_t revision, std::vector<Event const*>& out) const;

    // The frame that tells a client to read everything again.
    std::string ResyncFrame() const;

    Permissions const& GetPermissions() const;

private:
    struct State;
    explicit Service(std::unique_ptr<State> state);
    std::unique_ptr<State> state_;
};

// The "access" member of a description, taken out of description: its
// masks in permissions. False with the problems when it is malformed.
ORU_API bool TakeAccess(std::string& description, Permissions& permissions,
                        Files::Problems& problems);

}  // namespace Service
}  // namespace Oru
}  // namespace Legacy

#endif
