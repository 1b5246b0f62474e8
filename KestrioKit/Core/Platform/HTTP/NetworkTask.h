#pragma once

#include "KestrioKit/Core/Platform/HTTP/URLSession.h"
#include "KestrioKit/Core/Platform/Threads/Executor.h"

#include <QNetworkReply>
#include <QNetworkRequest>
#include <QObject>

namespace KestrioKit {

/// A request in flight, including its redirections. It lives and completes on its manager's thread,
/// and then destroys itself. If its manager is destroyed first, the request is interrupted.
class NetworkTask final : public QObject {
public:
    /// The state in which the request leaves its manager's connections.
    enum class Connections {
        /// The connections can be used.
        sound,
        /// A connection timed out, and idle ones may be dead, too.
        doubtful,
        /// A response was malformed or incomplete, so that the next one may be read from the
        /// middle. Or TLS failed, after which Qt's manager keeps failing.
        broken,
    };
    /// Called with the state of the connections when the request is finished.
    using Finished = std::function<void(Connections connections)>;

    /// The task becomes a child of `manager`. `finished` is called after `completion`. If the
    /// request is interrupted, `finished` is not called, and `executor` calls `completion` once it
    /// has a thread again.
    NetworkTask(QNetworkAccessManager &manager, Executor &executor, URLRequest request,
                URLTransport::Body body, URLCompletion completion, Finished finished);
    ~NetworkTask() override;

    /// Sends the request. Completes immediately with an error if the URL is not one of an HTTP
    /// service.
    void start();
    /// Ends the request with an error for that reason. Does nothing if it is finished.
    void giveUp(const QString &reason);

    /// The maximum number of redirections that a request follows.
    static constexpr int maximumRedirections = 5;

private:
    void readBody();
    void replyFinished();
    /// Sends the redirected request, if there is one. Returns whether it did.
    bool followRedirection();
    /// Returns the response's status, or 0 before a response has begun.
    int statusCode() const;
    /// Returns the content length that the response announces, or 0.
    qint64 toldLength() const;
    /// Returns the reply's error, without those that Qt reports for complete responses.
    QNetworkReply::NetworkError replyError() const;
    URLResult result() const;
    std::optional<Error> failure() const;
    std::optional<Error> statusFailure() const;
    /// Returns what the outcome says about the manager's connections.
    Connections connections(const std::optional<Error> &error) const;
    void complete(const URLResult &result, Connections connections);

    QNetworkAccessManager &m_manager;
    Executor &m_executor;
    URLRequest m_request;
    URLTransport::Body m_body;
    URLCompletion m_completion;
    Finished m_finished;
    QNetworkReply *m_reply = nullptr;
    /// The body received so far. Empty if it is discarded.
    QByteArray m_data;
    /// The number of bytes of the body received so far.
    qint64 m_received = 0;
    int m_redirections = 0;
    /// Why the request was given up. Empty if it was not.
    QString m_reason;
};

} // namespace KestrioKit
