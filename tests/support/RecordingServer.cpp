#include "tests/support/RecordingServer.h"

#include <gtest/gtest.h>

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

bool sendBytes(int socket, const QByteArray &bytes) {
    return send(socket, bytes.constData(), std::size_t(bytes.size()), MSG_NOSIGNAL) == bytes.size();
}

// Returns the next bytes; empty if the client has closed the connection.
QByteArray receiveBytes(int socket) {
    std::array<char, 4096> buffer;
    const ssize_t size = recv(socket, buffer.data(), buffer.size(), 0);
    return {buffer.data(), std::max<qsizetype>(size, 0)};
}

// Removes the first complete request from `bytes`; absent if there is none.
std::optional<RecordedRequest> takeRequest(QByteArray &bytes) {
    constexpr QByteArrayView headEnd("\r\n\r\n");
    const qsizetype headSize = bytes.indexOf(headEnd);
    if (headSize < 0)
        return std::nullopt;
    RecordedRequest request;
    QList<QByteArray> lines = bytes.first(headSize).replace('\r', ""_ba).split('\n');
    const QList<QByteArray> requestLine = lines.takeFirst().split(' ');
    request.method = requestLine.value(0);
    request.target = requestLine.value(1);
    for (const QByteArray &line : lines) {
        const qsizetype colon = line.indexOf(':');
        request.headers.append({line.first(colon), line.sliced(colon + 1).trimmed()});
    }
    const qsizetype bodyStart = headSize + headEnd.size();
    const qsizetype bodySize = request.header("Content-Length"_ba).value_or("0"_ba).toLongLong();
    if (bytes.size() < bodyStart + bodySize)
        return std::nullopt;
    request.body = bytes.sliced(bodyStart, bodySize);
    bytes.remove(0, bodyStart + bodySize);
    return request;
}

} // namespace

std::optional<QByteArray> RecordedRequest::header(const QByteArray &name) const {
    const auto found = std::ranges::find_if(headers, [&name](const HTTPHeader &header) {
        return header.name.compare(name, Qt::CaseInsensitive) == 0;
    });
    return found == headers.end() ? std::nullopt : std::optional(found->value);
}

QByteArray ServerAnswer::head() const {
    QByteArray text = "HTTP/1.1 " + QByteArray::number(status) + " Status\r\n";
    bool hasLength = false;
    for (const HTTPHeader &header : headers) {
        hasLength = hasLength || header.name == "Content-Length";
        text += header.name + ": " + header.value + "\r\n";
    }
    if (!hasLength)
        text += "Content-Length: " + QByteArray::number(body.size() * bodies) + "\r\n";
    return text + "\r\n";
}

RecordingServer::RecordingServer(quint16 port) : m_port(port) {
    for (QTcpServer &listener : m_listeners) {
        const bool first = &listener == &m_listeners[0];
        listener.setListenBacklogSize(SOMAXCONN);
        if (listener.listen(first ? QHostAddress::LocalHost : QHostAddress::LocalHostIPv6, m_port))
            m_acceptors.emplace_back(
                [this, socket = int(listener.socketDescriptor())] { acceptConnections(socket); });
        else
            EXPECT_FALSE(first) << qPrintable(listener.errorString());
        listener.pauseAccepting(); // the acceptor accepts the connections
        m_port = m_listeners[0].serverPort();
    }
}

RecordingServer::~RecordingServer() {
    const std::lock_guard guard(m_lock);
    m_stopping = true;
    for (const int socket : m_sockets)
        shutdown(socket, SHUT_RDWR);
    for (const QTcpServer &listener : m_listeners)
        shutdown(int(listener.socketDescriptor()), SHUT_RDWR);
}

QUrl RecordingServer::url(const QString &path) const {
    return QUrl(u"http://127.0.0.1:%1%2"_s.arg(m_port).arg(path));
}

void RecordingServer::setScript(Script script) {
    const std::lock_guard guard(m_scriptLock);
    m_script = std::move(script);
}

QList<RecordedRequest> RecordingServer::requests() const {
    const std::lock_guard guard(m_lock);
    // Returns a separate list: with implicit sharing, the server would append while the caller
    // reads.
    return {m_requests.begin(), m_requests.end()};
}

int RecordingServer::openConnections() const {
    const std::lock_guard guard(m_lock);
    return int(m_sockets.size());
}

void RecordingServer::acceptConnections(int listener) {
    pollfd incoming{listener, POLLIN, 0};
    while (poll(&incoming, 1, -1) > 0) {
        const int socket = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (socket < 0)
            return;
        beginConnection(socket);
    }
}

void RecordingServer::beginConnection(int socket) {
    const std::lock_guard guard(m_lock);
    if (m_stopping) {
        close(socket);
        return;
    }
    m_sockets.push_back(socket);
    m_connections.emplace_back([this, socket] {
        serve(socket);
        shutdown(socket, SHUT_WR);
        while (!receiveBytes(socket).isEmpty())
            continue;
        const std::lock_guard endGuard(m_lock);
        std::erase(m_sockets, socket);
        close(socket);
    });
}

void RecordingServer::serve(int socket) {
    QByteArray bytes;
    while (true) {
        const QByteArray received = receiveBytes(socket);
        if (received.isEmpty())
            return;
        bytes += received;
        while (std::optional<RecordedRequest> request = takeRequest(bytes)) {
            request->arrival = std::chrono::steady_clock::now();
            if (!send(socket, answerTo(*request)))
                return;
        }
    }
}

ServerAnswer RecordingServer::answerTo(const RecordedRequest &request) {
    const std::lock_guard scriptGuard(m_scriptLock);
    {
        const std::lock_guard guard(m_lock);
        m_requests.append(request);
    }
    return m_script ? m_script(request) : ServerAnswer{};
}

// Returns false if the connection must be closed.
bool RecordingServer::send(int socket, const ServerAnswer &answer) {
    using Manner = ServerAnswer::Manner;
    if (answer.manner == Manner::hang) {
        receiveBytes(socket);
        return false;
    }
    QByteArray bytes = answer.manner == Manner::raw ? answer.body : answer.head() + answer.body;
    if (answer.manner == Manner::cut)
        bytes.truncate(answer.cutAfter);
    bool goesOn = sendBytes(socket, bytes);
    for (int number = 1; goesOn && number < answer.bodies; ++number) {
        std::this_thread::sleep_for(answer.pause);
        goesOn = sendBytes(socket, answer.body);
    }
    return goesOn && answer.manner == Manner::whole;
}

} // namespace KestrioKit
