#pragma once

#include "KestrioKit/Core/Platform/HTTP/URLSession.h"
#include "KestrioKit/Core/Platform/Threads/Executor.h"

#include <QNetworkReply>
#include <QNetworkRequest>
#include <QObject>

namespace KestrioKit {

/// One request on its way, redirections included. Lives on its manager's thread, completes there,
/// and then destroys itself. Destroyed before that, with its manager, it is cut off.
class NetworkTask final : public QObject {
public:
    /// What the request leaves of its manager's connections.
    enum class Connections {
        sound,
        /// One fell silent, and those that are idle may be as dead.
        doubtful,
        /// An answer was none, and the next one may be read from the middle; or TLS failed, after
        /// which Qt's manager fails for good.
        broken,
    };
    using Finished = std::function<void(Connections connections)>;

    /// The task becomes a child of `manager`. `finished` is called after `completion`, and not when
    /// the task is cut off: then `completion` is called by `executor`, once that has a thread
    /// again.
    NetworkTask(QNetworkAccessManager &manager, Executor &executor, URLRequest request,
                URLTransport::Body body, URLCompletion completion, Finished finished);
    ~NetworkTask() override;

    /// Sends the request. Fails at once, with a completion, when its URL is none to send to.
    void start();
    /// Ends it for having taken too long, unless it is over.
    void giveUp();

    /// How many redirections one request follows.
    static constexpr int maximumRedirections = 5;

private:
    void readBody();
    void replyFinished();
    bool followRedirection();
    int statusCode() const;
    qint64 toldLength() const;
    QNetworkReply::NetworkError replyError() const;
    URLResult result() const;
    std::optional<Error> failure() const;
    std::optional<Error> statusFailure() const;
    Connections connections(const std::optional<Error> &error) const;
    void complete(const URLResult &result, Connections connections);

    QNetworkAccessManager &m_manager;
    Executor &m_executor;
    URLRequest m_request;
    URLTransport::Body m_body;
    URLCompletion m_completion;
    Finished m_finished;
    QNetworkReply *m_reply = nullptr;
    QByteArray m_data;
    qint64 m_received = 0;
    int m_redirections = 0;
    bool m_gaveUp = false;
};

} // namespace KestrioKit
