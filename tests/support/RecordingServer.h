#pragma once

#include "KestrioKit/Core/Platform/HTTP/URLRequest.h"
#include "tests/support/Waiting.h"

#include <QTcpServer>

#include <functional>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace KestrioKit {

/// A request as it came over the wire.
struct RecordedRequest {
    QByteArray method;
    /// Path and query, as sent.
    QByteArray target;
    /// In the order in which they came.
    QList<HTTPHeader> headers;
    QByteArray body;
    std::chrono::steady_clock::time_point arrival;

    /// The header's value; absent when it was not sent.
    std::optional<QByteArray> header(const QByteArray &name) const;
};

/// What a test's server answers, and how well it behaves.
struct ServerAnswer {
    enum class Manner {
        /// The whole answer; the connection stays open for the next request.
        whole,
        /// The whole answer, then the connection is closed.
        wholeThenClose,
        /// The first `cutAfter` bytes of the answer, then the connection is closed.
        cut,
        /// Nothing, for as long as the client waits.
        hang,
        /// `body` alone, as it stands, then the connection is closed.
        raw,
    };

    int status = 200;
    QByteArray body = "{}";
    /// "Content-Length" is added unless it is among them.
    QList<HTTPHeader> headers = {};
    Manner manner = Manner::whole;
    /// Counted from the first byte of the status line.
    qsizetype cutAfter = 0;
    /// How many times `body` comes, when it comes whole, and how long the server pauses before each
    /// but the first.
    int bodies = 1;
    std::chrono::milliseconds pause{0};

    /// Status line and headers, with the empty line that ends them.
    QByteArray head() const;

    static ServerAnswer redirect(int status, const QByteArray &location) {
        return {status, {}, {{"Location", location}}};
    }
    static ServerAnswer cut(int status, qsizetype after) {
        return {status, "{}", {}, Manner::cut, after};
    }
    static ServerAnswer raw(const QByteArray &text) { return {200, text, {}, Manner::raw}; }
    static ServerAnswer badly(Manner manner) { return {200, "{}", {}, manner}; }
};

/// A small HTTP/1.1 server on this machine that records every request and answers by a script.
///
///     RecordingServer server;
///     server.setScript([](const RecordedRequest &) { return ServerAnswer{503}; });
///     …
///     EXPECT_EQ(server.requests()[1].target, "/1/errors");
///
/// It runs on threads of its own; every operation is thread-safe.
class RecordingServer {
public:
    using Script = std::function<ServerAnswer(const RecordedRequest &)>;

    /// Listens on 127.0.0.1, and on ::1 where there is one. Port 0 is any free port; the test fails
    /// when the port cannot be had.
    explicit RecordingServer(quint16 port = 0);
    /// Closes every connection.
    ~RecordingServer();
    Q_DISABLE_COPY_MOVE(RecordingServer)

    quint16 port() const { return m_port; }
    /// "http://127.0.0.1:<port>" with the path (and query).
    QUrl url(const QString &path = {}) const;

    /// Called for one request at a time on the server's threads, after the request was recorded.
    /// Without one: 200 with "{}".
    void setScript(Script script);

    QList<RecordedRequest> requests() const;
    /// How many connections neither side, or only the server, has closed.
    int openConnections() const;

private:
    void acceptConnections(int listener);
    void beginConnection(int socket);
    void serve(int socket);
    ServerAnswer answerTo(const RecordedRequest &request);
    bool send(int socket, const ServerAnswer &answer);

    quint16 m_port = 0;
    QTcpServer m_listeners[2]; // IPv4, and IPv6 where there is one
    mutable std::mutex m_lock;
    bool m_stopping = false;
    std::vector<int> m_sockets;
    QList<RecordedRequest> m_requests;
    /// Held while a request is recorded and the script runs, which may use the server.
    std::mutex m_scriptLock;
    Script m_script;
    /// The acceptors end first, since they begin connections; all end before what they use.
    std::vector<std::jthread> m_connections;
    std::vector<std::jthread> m_acceptors;
};

} // namespace KestrioKit
