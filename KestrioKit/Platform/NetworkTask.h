#pragma once

#include "KestrioKit/Platform/URLSession.h"

#include <QNetworkReply>
#include <QNetworkRequest>
#include <QObject>

namespace KestrioKit {

/// One request on its way, redirections included. Lives on its manager's thread, completes there,
/// and then destroys itself. Destroyed before that, it never completes; what its completion holds
/// then stays in memory.
class NetworkTask final : public QObject {
public:
    /// The task becomes a child of `manager`.
    NetworkTask(QNetworkAccessManager &manager, URLRequest request, URLTransport::Body body,
                URLCompletion completion);
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
    QNetworkReply::NetworkError replyError() const;
    URLResult result() const;
    std::optional<Error> failure() const;
    std::optional<Error> statusFailure() const;
    Error error(QNetworkReply::NetworkError code, const QString &reason) const;
    void complete(const URLResult &result);

    QNetworkAccessManager &m_manager;
    URLRequest m_request;
    URLTransport::Body m_body;
    URLCompletion m_completion;
    QNetworkReply *m_reply = nullptr;
    QByteArray m_data;
    qint64 m_received = 0;
    int m_redirections = 0;
    bool m_gaveUp = false;
};

} // namespace KestrioKit
