#include "service/Options.h"

#include <arpa/inet.h>
#include <charconv>
#include <cstdint>
#include <string_view>

namespace SurveyService {

const char *const helpText =
    R"(Usage: kestrio-service [--host ADDRESS] [--port PORT] [--surveys FILE]
                       [--database FILE]

A survey service for development. It hands out surveys over HTTP and keeps what
clients report; GET /records answers with all of it.

  --host ADDRESS   IP address to listen on, and on no other; "::" is every address
                   of this machine, IPv4 and IPv6 (default: 127.0.0.1 and ::1,
                   which this machine alone reaches)
  --port PORT      port to listen on; 0 picks a free one (default 8080)
  --surveys FILE   surveys and configuration to serve (default: a built-in sample)
  --database FILE  SQLite database, made when missing; ":memory:" keeps nothing
                   (default: kestrio-service.sqlite in the current folder)
  --help           print this text and exit

Log lines go to standard error. SIGINT and SIGTERM end the service.
Exit codes: 0 ended by a signal, 1 could not start, 2 wrong command line.
)";

namespace {

int parsePort(std::string_view text) {
    std::uint16_t port = 0;
    const auto *const end = text.data() + text.size();
    const auto [parsedTo, error] = std::from_chars(text.data(), end, port);
    if (error != std::errc{} || parsedTo != end)
        throw UsageError("--port needs a number from 0 to 65535, not '" + std::string(text) + "'");
    return port;
}

std::string parseAddress(const std::string &text) {
    in6_addr address{};
    if (::inet_pton(AF_INET, text.c_str(), &address) != 1 &&
        ::inet_pton(AF_INET6, text.c_str(), &address) != 1)
        throw UsageError("--host needs an IP address, not '" + text + "'");
    return text;
}

} // namespace

Options parseOptions(int argc, const char *const *argv) {
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string_view name = argv[i];
        if (name == "--help") {
            options.help = true;
            continue;
        }
        if (name != "--host" && name != "--port" && name != "--surveys" && name != "--database")
            throw UsageError("unknown option '" + std::string(name) + "' (see --help)");
        if (++i == argc)
            throw UsageError(std::string(name) + " needs a value (see --help)");
        if (name == "--host")
            options.host = parseAddress(argv[i]);
        else if (name == "--port")
            options.port = parsePort(argv[i]);
        else if (name == "--surveys")
            options.surveysFile = argv[i];
        else
            options.databaseFile = argv[i];
    }
    return options;
}

} // namespace SurveyService
