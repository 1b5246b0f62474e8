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

/// A request as it was received.
struct RecordedRequest {
    QByteArray method;
    /// Path and query, as they were sent.
    QByteArray target;
    /// In the order of arrival.
    QList<HTTPHeader> headers;
    QByteArray body;
    std::chrono::steady_clock::time_point arrival;

    /// Returns the header's value; absent if the header was not sent. Case does not matter.
    std::optional<QByteArray> header(const QByteArray &name) const;
};

/// A response of the test's server, and how the server sends it.
struct ServerAnswer {
    enum class Manner {
        /// Sends the whole response and keeps the connection open.
        whole,
        /// Sends the whole response, then closes the connection.
        wholeThenClose,
        /// Sends the first `cutAfter` bytes of the response, then closes the connection.
        cut,
        /// Sends nothing until the client closes the connection.
        hang,
        /// Sends `body` alone, without status line and headers, then closes the connection.
        raw,
    };

    int status = 200;
    QByteArray body = "{}";
    /// "Content-Length" is added unless it is in this list.
    QList<HTTPHeader> headers = {};
    Manner manner = Manner::whole;
    /// The number of bytes that `cut` sends, including the status line and headers.
    qsizetype cutAfter = 0;
    /// How many times `body` is sent, and the server's pause before each repetition.
    int bodies = 1;
    std::chrono::milliseconds pause{0};

    /// Returns the status line and the headers, including the empty line at the end.
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

/// A small HTTP/1.1 server on this machine. It records every request and responds by a script.
///
///     RecordingServer server;
///     server.setScript([](const RecordedRequest &) { return ServerAnswer{503}; });
///     …
///     EXPECT_EQ(server.requests()[1].target, "/1/errors");
///
/// The server runs on its own threads. Every operation is thread-safe.
class RecordingServer {
public:
    using Script = std::function<ServerAnswer(const RecordedRequest &)>;

    /// Listens on 127.0.0.1, and on ::1 if the machine has it. Port 0 picks a free port. The test
    /// fails if the port is not available.
    explicit RecordingServer(quint16 port = 0);
    /// Closes every connection and waits for the server's threads.
    ~RecordingServer();
    Q_DISABLE_COPY_MOVE(RecordingServer)

    quint16 port() const { return m_port; }
    /// Returns "http://127.0.0.1:<port>" followed by `path`, which may contain a query.
    QUrl url(const QString &path = {}) const;

    /// Sets the function that returns the responses. It is called on the server's threads, for one
    /// request at a time, after the request was recorded. Without a script, the server responds
    /// with 200 and "{}".
    void setScript(Script script);

    /// Returns all requests so far, in the order of arrival.
    QList<RecordedRequest> requests() const;
    /// Returns the number of connections that the client has not closed.
    int openConnections() const;

private:
    void acceptConnections(int listener);
    void beginConnection(int socket);
    void serve(int socket);
    ServerAnswer answerTo(const RecordedRequest &request);
    bool send(int socket, const ServerAnswer &answer);

    quint16 m_port = 0;
    QTcpServer m_listeners[2]; // IPv4, and IPv6 if the machine has it
    mutable std::mutex m_lock;
    bool m_stopping = false;
    std::vector<int> m_sockets;
    QList<RecordedRequest> m_requests;
    /// Locked while a request is recorded and the script runs. The script may use the server.
    std::mutex m_scriptLock;
    Script m_script;
    /// The acceptors are destroyed first, because they start connections. Both are destroyed before
    /// the members that they use.
    std::vector<std::jthread> m_connections;
    std::vector<std::jthread> m_acceptors;
};

} // namespace KestrioKit
