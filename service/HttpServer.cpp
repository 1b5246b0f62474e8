#include "service/HttpServer.h"

#include "service/Log.h"
#include "service/Router.h"

#include <cerrno>
#include <chrono>
#include <filesystem>
#include <memory>
#include <system_error>

namespace SurveyService {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t threads = 64;
constexpr std::size_t requestsPerConnection = 1'000'000;
constexpr std::size_t largestBody = std::size_t{1024} * 1024;
/// A body above the limit is read up to this size, so that its sender gets to see the response.
/// Beyond it, the connection is closed.
constexpr std::size_t mostReadAndDropped = 16 * largestBody;
/// Longer than the pauses of clients that retry after 5, 10, 20 or 40 seconds: if a connection
/// closes just as it is reused, the request seems to fail.
constexpr std::chrono::seconds keepAlive{60};
/// The limit for receiving the next bytes of a request and for writing a response.
constexpr std::chrono::seconds patience{30};
/// httplib compresses plain "application/json", but not a type that names its character set.
constexpr auto jsonType = "application/json; charset=utf-8";
/// httplib matches the decoded path, which may contain line feeds.
constexpr auto everyPath = R"([\s\S]*)";

// httplib offers no place to store this. A request is handled and logged on the same thread.
thread_local Clock::time_point requestStart;

int portOf(const sockaddr_storage &address) {
    if (address.ss_family == AF_INET)
        return ntohs(reinterpret_cast<const sockaddr_in &>(address).sin_port);
    if (address.ss_family == AF_INET6)
        return ntohs(reinterpret_cast<const sockaddr_in6 &>(address).sin6_port);
    return 0;
}

bool isListener(int socket) {
    int listens = 0;
    socklen_t size = sizeof listens;
    return ::getsockopt(socket, SOL_SOCKET, SO_ACCEPTCONN, &listens, &size) == 0 && listens != 0;
}

/// Shuts down the reading side of every connection to that port. httplib does not expose its
/// sockets, and would wait for idle ones until their keep-alive time is over.
void endReading(int port) {
    for (const auto &entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        const int descriptor = std::stoi(entry.path().filename());
        sockaddr_storage address{};
        socklen_t size = sizeof address;
        auto *const pointer = reinterpret_cast<sockaddr *>(&address);
        const bool isConnection = ::getsockname(descriptor, pointer, &size) == 0 &&
                                  portOf(address) == port && !isListener(descriptor);
        if (isConnection)
            ::shutdown(descriptor, SHUT_RD);
    }
}

class WorkerPool : public httplib::ThreadPool {
public:
    explicit WorkerPool(int port) : ThreadPool(threads), m_port(port) {}

    void shutdown() override {
        endReading(m_port);
        ThreadPool::shutdown();
    }

private:
    int m_port;
};

bool announcesBody(const httplib::Request &request) {
    return request.has_header("Transfer-Encoding") ||
           (request.has_header("Content-Length") &&
            request.get_header_value("Content-Length") != "0");
}

void write(const Answer &answer, httplib::Response &response, bool keepConnection) {
    response.status = answer.status;
    for (const auto &[name, value] : answer.headers)
        response.set_header(name, value);
    if (keepConnection) {
        response.set_content(answer.body, jsonType);
        return;
    }
    // httplib closes a connection from its side only if writing a response fails, so this reports a
    // failure after the last byte.
    response.set_header("Connection", "close");
    const auto writeAndFail = [body = answer.body](std::size_t offset, std::size_t length,
                                                   httplib::DataSink &sink) {
        sink.write(body.data() + offset, length);
        return false;
    };
    response.set_content_provider(answer.body.size(), jsonType, writeAndFail);
}

} // namespace

HttpServer::HttpServer(Handler handler) : m_handler(std::move(handler)) {
    m_server.set_keep_alive_max_count(requestsPerConnection);
    m_server.set_keep_alive_timeout(keepAlive.count());
    m_server.set_read_timeout(patience);
    m_server.set_write_timeout(patience);
    m_server.set_tcp_nodelay(true);
    m_server.set_socket_options([this](socket_t socket) {
        // httplib's default, SO_REUSEPORT, would let two services share a port.
        const int on = 1;
        ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
        m_listener = socket;
    });
    m_server.new_task_queue = [this] {
        m_serving.count_down();
        return new WorkerPool(m_port);
    };
    installHandlers();
}

HttpServer::~HttpServer() {
    // httplib closes the socket only if it has served.
    if (!m_serving.try_wait())
        ::close(m_listener);
}

int HttpServer::bind(const std::string &address, int port) {
    errno = 0;
    if (port == 0)
        m_port = m_server.bind_to_any_port(address);
    else
        m_port = m_server.bind_to_port(address, port) ? port : -1;
    if (m_port == -1) {
        m_listener = INVALID_SOCKET;
        throw std::system_error(errno, std::generic_category(),
                                "cannot listen on " + address + " port " + std::to_string(port));
    }
    ::listen(m_listener, SOMAXCONN); // httplib's backlog is only 5
    return m_port;
}

void HttpServer::run() {
    m_server.listen_after_bind();
}

void HttpServer::stop() {
    m_serving.wait();
    m_server.stop();
}

void HttpServer::installHandlers() {
    m_server.set_pre_routing_handler([this](const auto &request, auto &response) {
        requestStart = Clock::now();
        const std::string &method = request.method;
        if (method == "POST" || method == "PUT" || method == "PATCH" || method == "DELETE")
            return httplib::Server::HandlerResponse::Unhandled; // continues with the handlers below
        respondWithoutBody(request, response);
        return httplib::Server::HandlerResponse::Handled;
    });
    const auto withBody = [this](const auto &request, auto &response, const auto &reader) {
        respond(request, response, reader);
    };
    m_server.Post(everyPath, withBody)
        .Put(everyPath, withBody)
        .Patch(everyPath, withBody)
        .Delete(everyPath, withBody);
    // Handles requests that httplib refuses itself, before any handler runs.
    m_server.set_error_handler([](const httplib::Request &, httplib::Response &response) {
        if (!response.body.empty() || response.content_length_ > 0)
            return;
        requestStart = Clock::now();
        const bool pathTooLong = response.status == 414;
        write(errorAnswer(response.status, pathTooLong ? "path: too long" : "request: malformed"),
              response, true);
    });
    m_server.set_logger([](const httplib::Request &request, const httplib::Response &response) {
        logRequest(request.method, request.target, response.status, Clock::now() - requestStart);
    });
}

HttpServer::Body HttpServer::readBody(const httplib::Request &request,
                                      const httplib::ContentReader &reader) {
    Body body;
    if (!announcesBody(request))
        return body; // httplib would read until the connection closes
    body.complete = reader([&body](const char *data, std::size_t size) {
        body.size += size;
        if (body.size <= largestBody)
            body.text.append(data, size);
        return body.size <= mostReadAndDropped;
    });
    return body;
}

void HttpServer::respondWithoutBody(const httplib::Request &request,
                                    httplib::Response &response) const {
    // httplib does not read the body of these methods.
    write(m_handler(request, {}), response, !announcesBody(request));
}

void HttpServer::respond(const httplib::Request &request, httplib::Response &response,
                         const httplib::ContentReader &reader) const {
    if (request.is_multipart_form_data()) {
        write(errorAnswer(415, "Content-Type: must be application/json"), response, false);
        return;
    }
    const Body body = readBody(request, reader);
    if (body.size > largestBody)
        write(errorAnswer(413, "body: more than 1 MiB"), response, body.complete);
    else if (!body.complete)
        write(errorAnswer(400, "body: ended early"), response, false);
    else
        write(m_handler(request, body.text), response, true);
}

} // namespace SurveyService
