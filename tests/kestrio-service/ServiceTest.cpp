#include "tests/service/ServiceTest.h"

#include <array>
#include <csignal>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr time_t watchdogSeconds = 60;

} // namespace

std::string ServiceTest::Visitor::path(const std::string &rest) const {
    return "/1/visitors/" + std::to_string(id) + rest;
}

std::string ServiceTest::Visitor::bulkPath(const std::string &environment,
                                           const std::string &rest) const {
    return "/2/environments/" + environment + "/visitors/" + std::to_string(id) + rest;
}

ServiceTest::ServiceTest()
    : service({"--port", "0", "--database", ":memory:"}), client("localhost", service.port()) {
    client.set_keep_alive(true);
    client.set_tcp_nodelay(true);
    client.set_read_timeout(watchdogSeconds, 0);
}

void ServiceTest::endService() {
    EXPECT_EQ(service.end(SIGTERM), 0) << service.output();
}

void ServiceTest::TearDown() {
    if (service.isRunning())
        endService();
}

ServiceTest::Reply ServiceTest::send(const std::string &method, const std::string &path,
                                     const std::string &body, const std::string &token,
                                     httplib::Headers headers) {
    httplib::Request request;
    request.method = method;
    request.path = path;
    request.body = body;
    request.headers = std::move(headers);
    if (!token.empty())
        request.set_header("Authorization", "Bearer " + token);
    const auto result = client.send(request);
    if (!result) {
        ADD_FAILURE() << method << ' ' << path << ": " << httplib::to_string(result.error());
        return {};
    }
    return {result->status, result->body};
}

ServiceTest::Visitor ServiceTest::newVisitor(const std::string &environment,
                                             const std::string &body) {
    const auto json = send("POST", "/1/environments/" + environment + "/visitors", body).json();
    return {json.at("vid"), json.at("token")};
}

nlohmann::json ServiceTest::records(const std::string &kind) {
    return send("GET", "/records").json().at(kind);
}

RawConnection::RawConnection(int port) : m_socket(::socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    EXPECT_EQ(::connect(m_socket, reinterpret_cast<sockaddr *>(&address), sizeof address), 0);
    const timeval watchdog{.tv_sec = watchdogSeconds, .tv_usec = 0};
    ::setsockopt(m_socket, SOL_SOCKET, SO_RCVTIMEO, &watchdog, sizeof watchdog);
}

RawConnection::~RawConnection() {
    ::close(m_socket);
}

bool RawConnection::send(const std::string &bytes) {
    const ssize_t sent = ::send(m_socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    return sent == static_cast<ssize_t>(bytes.size());
}

std::string RawConnection::ask(const std::string &bytes) {
    send(bytes);
    // An answer is its head and a body of one line, {"error":...}.
    std::string received;
    std::array<char, 4096> buffer{};
    while (!received.ends_with('}')) {
        const ssize_t size = ::recv(m_socket, buffer.data(), buffer.size(), 0);
        if (size <= 0)
            return {};
        received.append(buffer.data(), static_cast<std::size_t>(size));
    }
    return received.substr(0, received.find("\r\n"));
}

std::string eventBody(const std::string &name) {
    return nlohmann::json{
        {"event", name}, {"metadata", {{"sw", 1}}}, {"delayed", false}, {"timestamp", 1}}
        .dump();
}
