#include <httplib.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>

// The smallest service that the library can use, in a separate process so that it takes no time
// from the measured threads. The environment of the visitor selects how it treats that visitor's
// requests: "answers", "refuses" or "silent". It ends when its standard input is closed.
//     kestrio-bench-service                   over HTTP, on port 8080
//     kestrio-bench-service CERTIFICATE KEY   over HTTPS, on port 8443

namespace {

constexpr int httpPort = 8080;
constexpr int httpsPort = 8443;
constexpr std::size_t threads = 64;
constexpr std::size_t requestsPerConnection = 1'000'000;
constexpr int forbidden = 403;
/// Longer than any host may take to quit. It must end, or the service would run out of threads.
constexpr std::chrono::seconds silence{3};

bool has(const httplib::Request &request, const char *part) {
    return request.path.find(part) != std::string::npos;
}

void answer(const httplib::Request &request, httplib::Response &response) {
    const char *body = "{}";
    if (has(request, "/answers/visitors"))
        body = R"({"vid":1,"token":"T"})";
    else if (has(request, "/refuses/visitors"))
        body = R"({"vid":2,"token":"T"})";
    else if (has(request, "/silent/visitors"))
        body = R"({"vid":3,"token":"T"})";
    else if (has(request, "/visitors/2/"))
        response.status = forbidden;
    else if (has(request, "/visitors/3/"))
        std::this_thread::sleep_for(silence);
    response.set_content(body, "application/json; charset=utf-8");
}

void setUp(httplib::Server &server) {
    server.new_task_queue = [] {
        return new httplib::ThreadPool(threads);
    };
    server.set_keep_alive_max_count(requestsPerConnection);
    server.set_keep_alive_timeout(std::chrono::seconds(std::chrono::minutes(10)).count());
    server.set_tcp_nodelay(true);
    // With httplib's default, binding fails for a minute after another program used the port.
    server.set_socket_options([](socket_t socket) {
        const int on = 1;
        setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    });
    constexpr auto everyPath = ".*";
    server.Get(everyPath, answer).Post(everyPath, answer).Put(everyPath, answer);
}

void endWithStandardInput() {
    std::thread([] {
        while (std::getchar() != EOF)
            continue;
        std::_Exit(0);
    }).detach();
}

int serve(httplib::Server &server, int port) {
    setUp(server);
    if (!server.is_valid())
        return 1;
    if (!server.bind_to_port("::", port) && !server.bind_to_port("0.0.0.0", port))
        return 1;
    endWithStandardInput();
    std::puts("listening");
    std::fflush(stdout);
    return server.listen_after_bind() ? 0 : 1;
}

} // namespace

int main(int argc, char **argv) {
    if (argc == 3) {
        httplib::SSLServer server(argv[1], argv[2]);
        return serve(server, httpsPort);
    }
    httplib::Server server;
    return serve(server, httpPort);
}
