#include "service/HttpServer.h"
#include "service/Log.h"
#include "service/Options.h"
#include "service/Routes.h"
#include "service/SampleSurveys.h"

#include <csignal>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <netinet/in.h>
#include <pthread.h>
#include <sys/socket.h>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <vector>

namespace SurveyService {
namespace {

constexpr int cannotStart = 1;
constexpr int wrongUsage = 2;
/// How many free ports are tried until one is free on every address.
constexpr int mostFreePorts = 20;

std::string readSurveys(const std::string &file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream || std::filesystem::is_directory(file))
        throw std::runtime_error("cannot read surveys file '" + file + "'");
    return {std::istreambuf_iterator<char>(stream), {}};
}

SurveyCatalogue loadSurveys(const std::optional<std::string> &file) {
    if (!file)
        return SurveyCatalogue(sampleSurveys);
    try {
        return SurveyCatalogue(readSurveys(*file));
    } catch (const JsonError &error) {
        throw std::runtime_error("surveys file '" + *file + "': " + error.what());
    }
}

std::unique_ptr<RecordStore> openRecords(const std::string &file) {
    try {
        return std::make_unique<RecordStore>(file);
    } catch (const SqlError &error) {
        throw std::runtime_error("cannot use database '" + file + "': " + error.what());
    }
}

sigset_t endSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    return signals;
}

bool hasIPv6Loopback() {
    sockaddr_in6 loopback{};
    loopback.sin6_family = AF_INET6;
    loopback.sin6_addr = in6addr_loopback;
    const int probe = ::socket(AF_INET6, SOCK_STREAM, 0);
    const auto *const address = reinterpret_cast<const sockaddr *>(&loopback);
    const bool bound = probe != -1 && ::bind(probe, address, sizeof loopback) == 0;
    if (probe != -1)
        ::close(probe);
    return bound;
}

std::vector<std::string> addressesOf(const Options &options) {
    if (options.host)
        return {*options.host};
    std::vector<std::string> addresses{"127.0.0.1"};
    if (hasIPv6Loopback())
        addresses.emplace_back("::1");
    return addresses;
}

using Servers = std::vector<std::unique_ptr<HttpServer>>;

/// Binds one server to each address, all to the same port. Returns the port.
int bindServers(Servers &servers, const Options &options, const HttpServer::Handler &handler) {
    int port = options.port;
    for (const std::string &address : addressesOf(options)) {
        servers.push_back(std::make_unique<HttpServer>(handler));
        port = servers.back()->bind(address, port);
    }
    return port;
}

/// Does the same, and retries while the port picked on the first address is in use on the second.
int bindServersToFreePort(Servers &servers, const Options &options,
                          const HttpServer::Handler &handler) {
    for (int attempt = 1;; ++attempt) {
        try {
            return bindServers(servers, options, handler);
        } catch (const std::system_error &error) {
            const bool inUse = error.code() == std::errc::address_in_use;
            if (!inUse || options.port != 0 || attempt == mostFreePorts)
                throw;
            servers.clear();
        }
    }
}

/// Serves until SIGINT or SIGTERM arrives. These signals must be blocked in every thread.
void serveUntilSignal(const Servers &servers) {
    std::vector<std::jthread> runners;
    for (const auto &server : servers)
        runners.emplace_back([&server] { server->run(); });
    const sigset_t signals = endSignals();
    int signal = 0;
    sigwait(&signals, &signal);
    for (const auto &server : servers)
        server->stop();
}

std::string urlOf(const std::string &address, int port) {
    const bool isIPv6 = address.find(':') != std::string::npos;
    return "http://" + (isIPv6 ? '[' + address + ']' : address) + ':' + std::to_string(port);
}

void serve(const Options &options) {
    const SurveyCatalogue surveys = loadSurveys(options.surveysFile);
    const auto records = openRecords(options.databaseFile);
    Router router;
    addVisitorRoutes(router, surveys, *records);
    addEventRoutes(router, surveys, *records);
    addAttributeRoutes(router, *records);
    addReportRoutes(router, *records);

    const auto handler = [&router](const httplib::Request &request, const std::string &body) {
        return router.answer(request, body);
    };
    Servers servers;
    const int port = bindServersToFreePort(servers, options, handler);
    logMessage("listening on " + urlOf(options.host.value_or("localhost"), port));
    serveUntilSignal(servers);
}

int run(int argc, char **argv) {
    try {
        const Options options = parseOptions(argc, argv);
        if (options.help) {
            std::fputs(helpText, stdout);
            return 0;
        }
        const sigset_t signals = endSignals();
        pthread_sigmask(SIG_BLOCK, &signals, nullptr);
        serve(options);
        return 0;
    } catch (const UsageError &error) {
        logMessage(error.what());
        return wrongUsage;
    } catch (const std::exception &error) {
        logMessage(error.what());
        return cannotStart;
    }
}

} // namespace
} // namespace SurveyService

int main(int argc, char **argv) {
    return SurveyService::run(argc, argv);
}
