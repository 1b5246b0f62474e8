#pragma once

#include "KestrioKit/Queue/SubmissionSender.h"

#include <QStringList>

#include <atomic>

namespace KestrioKit {

/// A network service whose sends stay out until the test answers them. Thread-safe.
class ScriptedSender final : public SubmissionSender {
public:
    /// It sends as visitor 8.
    explicit ScriptedSender(const Clock &clock);

    /// What is out, oldest first: the names of a batch's events ("a,b"), or the end of the path.
    QStringList out() const;
    /// The path and the token of the last send.
    QString lastSend() const { return m_lastSend.value(); }
    /// How many sends there have been.
    int sends() const { return m_sends; }

    /// Answers the oldest send; 0 is no response.
    void answer(int status, std::optional<Error> error = {});
    /// From now on sends are answered at once, with this status.
    void answerAtOnce(int status) { m_status = status; }

    void setVisitor(std::optional<qint64> visitor) { m_requests.setVisitorIdentifier(visitor); }
    QList<Error> handledErrors() const { return m_handledErrors.value(); }

    const KestrioServiceRequests &networkRequests() const override { return m_requests; }
    void sendSimpleRequest(const URLRequest &request, const std::optional<QString> &token,
                           SimpleCompletion completion) override;
    std::optional<DisabledError> disabledError() const override { return {}; }
    std::optional<qint64> visitorIdentifier() const override;
    std::optional<QString> authorizationToken() const override { return QStringLiteral("token"); }
    void handleError(const Error &error) override;

private:
    struct Send {
        URLRequest request;
        SimpleCompletion completion;
    };

    KestrioServiceRequests m_requests;
    Atomic<QList<Send>> m_out;
    Atomic<QString> m_lastSend;
    std::atomic<int> m_sends = 0;
    std::atomic<int> m_status = 0;
    Atomic<QList<Error>> m_handledErrors;
};

} // namespace KestrioKit
