// oru serve: one device's settings over HTTP, from a description and a
// values file, each applied change written back to the values file.
#include <iostream>
#include <memory>
#include <string>

#include <CLI/CLI.hpp>
#include <boost/asio/ip/address.hpp>

#include <legacy/oru/files/files.h>
#include <legacy/oru/service/durable.h>
#include <legacy/oru/service/server.h>
#include <legacy/oru/service/service.h>

#include "commands.h"
#include "util.h"

namespace OruTool {

namespace {

using namespace Legacy::Oru;

struct ServeOptions {
    std::string description;
    std::string values;
    std::string listen = "127.0.0.1:8950";
    std::string tokenFile;
};

// "ADDRESS:PORT", the address of IPv6 in brackets; false with the reason.
bool SplitListen(std::string const& listen, std::string& address, unsigned short& port,
                 std::string& problem) {
    std::size_t const colon = listen.rfind(':');
    if (colon == std::string::npos || colon + 1 == listen.size() ||
        listen.find_first_not_of("0123456789", colon + 1) != std::string::npos ||
        listen.size() - colon > 6 || std::stoul(listen.substr(colon + 1)) > 65535) {
        problem = "--listen takes ADDRESS:PORT, not " + Quote(listen);
        return false;
    }
    port = static_cast<unsigned short>(std::stoul(listen.substr(colon + 1)));
    address = listen.substr(0, colon);
    if (address.size() >= 2 && address.front() == '[' && address.back() == ']') {
        address = address.substr(1, address.size() - 2);
    }
    boost::system::error_code error;
    boost::asio::ip::make_address(address, error);
    if (error) {
        problem = "--listen takes an IP address, not " + Quote(address);
        return false;
    }
    return true;
}

int Serve(ServeOptions const& options) {
    std::string address;
    unsigned short port = 0;
    std::string problem;
    if (!SplitListen(options.listen, address, port, problem)) {
        std::cerr << "oru serve: " << problem << "\n";
        return 2;
    }
    std::string description;
    std::string values;
    if (!ReadInput(options.description, description, problem) ||
        !ReadInput(options.values, values, problem)) {
        std::cerr << "oru serve: " << problem << "\n";
        return 1;
    }
    boost::system::error_code ignored;
    if (!boost::asio::ip::make_address(address, ignored).is_loopback() &&
        options.tokenFile.empty()) {
        std::cerr << "oru serve: warning: listening on " << address
                  << ", beyond this machine, with the token of " << Service::DefaultTokenFile()
                  << "; give --token-file to choose it\n";
    }
    Service::Access access;
    std::string const tokenFile =
        options.tokenFile.empty() ? Service::DefaultTokenFile() : options.tokenFile;
    if (!Service::LoadToken(tokenFile, access.token, problem)) {
        std::cerr << "oru serve: " << problem << "\n";
        return 1;
    }
    Files::Problems problems;
    std::unique_ptr<Service::Service> service =
        Service::Service::Load(description, values, access, problems);
    if (!service) {
        for (Files::Problem const& each : problems) {
            std::cerr << "oru serve: " << Files::ToString(each) << "\n";
        }
        std::cerr << "oru serve: " << options.description << " and " << options.values
                  << " do not make a device; nothing is served\n";
        return 1;
    }
    Service::ServerOptions serverOptions;
    serverOptions.address = address;
    serverOptions.port = port;
    serverOptions.valuesFile = options.values;
    serverOptions.stopOnSignals = true;
    Service::Server server(std::move(service), serverOptions);
    if (!server.Open(problem)) {
        std::cerr << "oru serve: " << problem << "\n";
        return 1;
    }
    std::string const host = address.find(':') != std::string::npos ? "[" + address + "]" : address;
    std::string const url = "http://" + host + ":" + std::to_string(server.Port());
    std::cout << "listening on " << url << "\n"
              << "editor: " << url << "/?token=" << access.token << std::endl;
    server.Run();
    return 0;
}

char const* const k_serveFooter =
    "Serves the settings of one device over HTTP: DESCRIPTION declares them,\n"
    "VALUES holds their values, and every change applied through the service is\n"
    "written back to VALUES before it is answered. Both files must pass, as\n"
    "'oru check' says, or nothing is served.\n"
    "\n"
    "The first line printed is 'listening on http://HOST:PORT'; the second gives\n"
    "the editor's one-time address, which carries the token. Every request needs\n"
    "the token of the token file (made with a random token when absent). SIGTERM\n"
    "or Ctrl-C stops the service once the changes in hand are on disk.\n"
    "The routes, codes and limits are in docs/service.md.\n"
    "\n"
    "example:\n"
    "  $ oru describe > device.json && oru demo --values > values.json\n"
    "  $ oru serve device.json values.json --listen 127.0.0.1:0\n"
    "  listening on http://127.0.0.1:40215\n";

}  // namespace

void AddServe(CLI::App& program, int& status) {
    auto const options = std::make_shared<ServeOptions>();
    CLI::App* const command =
        program.add_subcommand("serve", "Serve a device's settings over HTTP");
    command->add_option("DESCRIPTION", options->description, "The settings, as JSON")->required();
    command->add_option("VALUES", options->values, "The values, as JSON; rewritten on change")
        ->required();
    command->add_option("--listen", options->listen,
                        "ADDRESS:PORT to listen on (default 127.0.0.1:8950; port 0: any)");
    command->add_option(
        "--token-file", options->tokenFile,
        "The token file (default " + Legacy::Oru::Service::DefaultTokenFile() + ")");
    command->footer(k_serveFooter);
    command->callback([options, &status] { status = Serve(*options); });
}

}  // namespace OruTool
