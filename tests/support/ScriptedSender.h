#pragma once

#include "KestrioKit/Core/Queue/SubmissionSender.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <atomic>

namespace KestrioKit {

/// A network service whose requests stay in flight until the test responds. Thread-safe.
class ScriptedSender final : public SubmissionSender {
public:
    /// Sends as visitor 8 of the environment "shop".
    explicit ScriptedSender(const Clock &clock) : m_requests(clock) {
        m_requests.setEnvironment(QStringLiteral("shop"));
        m_requests.setVisitorIdentifier(8);
    }

    /// Returns the requests in flight, oldest first. A batch is named by its events ("a,b"), any
    /// other request by the last segment of its path.
    QStringList out() const {
        QStringList names;
        for (const Send &send : m_out.value())
            names.append(nameOf(send.request));
        return names;
    }
    /// Returns the path and the token of the last request, separated by a space.
    QString lastSend() const { return m_lastSend.value(); }
    /// Returns the number of requests so far.
    int sends() const { return m_sends; }

    /// Responds to the oldest request in flight. Status 0 stands for no response.
    void answer(int status, std::optional<Error> error = {}) {
        const auto send = m_out.mutate([](QList<Send> &out) { return out.takeFirst(); });
        send.completion(
            {status == 0 ? std::nullopt : std::optional(HTTPURLResponse{status}), error});
    }
    /// Responds to all further requests immediately, with this status.
    void answerAtOnce(int status) { m_status = status; }

    /// Sets the visitor on whose behalf requests are built; absent for none.
    void setVisitor(std::optional<qint64> visitor) { m_requests.setVisitorIdentifier(visitor); }
    /// Returns the errors that were passed to `handleError()`.
    QList<Error> handledErrors() const { return m_handledErrors.value(); }

    const KestrioServiceRequests &networkRequests() const override { return m_requests; }
    void sendSimpleRequest(const URLRequest &request, const std::optional<QString> &token,
                           SimpleCompletion completion) override {
        ++m_sends;
        m_lastSend.setValue(request.url.path() + QLatin1Char(' ') + token.value_or(QString()));
        if (m_status != 0)
            completion({HTTPURLResponse{m_status}, {}});
        else
            m_out.mutate([&](QList<Send> &out) { out.append({request, std::move(completion)}); });
    }
    std::optional<DisabledError> disabledError() const override { return {}; }
    std::optional<qint64> visitorIdentifier() const override {
        return m_requests.visitorIdentifier();
    }
    std::optional<QString> authorizationToken() const override { return QStringLiteral("token"); }
    void handleError(const Error &error) override {
        m_handledErrors.mutate([&error](QList<Error> &errors) { errors.append(error); });
    }

private:
    struct Send {
        URLRequest request;
        SimpleCompletion completion;
    };

    static QString nameOf(const URLRequest &request) {
        QStringList names;
        for (const QJsonValue event :
             QJsonDocument::fromJson(request.body)[QLatin1String("events")].toArray())
            names.append(event[QLatin1String("event")].toString());
        return names.isEmpty() ? request.url.fileName() : names.join(QLatin1Char(','));
    }

    KestrioServiceRequests m_requests;
    Atomic<QList<Send>> m_out;
    Atomic<QString> m_lastSend;
    std::atomic<int> m_sends = 0;
    std::atomic<int> m_status = 0;
    Atomic<QList<Error>> m_handledErrors;
};

} // namespace KestrioKit
