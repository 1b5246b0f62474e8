#pragma once

#include "KestrioKit/Core/Platform/Threads/Atomic.h"
#include "KestrioKit/Core/Queue/SubmissionSender.h"

#include <QStringList>

#include <atomic>
#include <limits>

namespace KestrioKit {

/// A network service whose requests stay in flight until the test responds. The current visitor is
/// 8, with the token "token". Thread-safe.
class ScriptedSender final : public SubmissionSender {
public:
    /// Returns the requests in flight, oldest first. A batch is named by its events ("a,b"), an
    /// attribute by its key.
    QStringList out() const {
        QStringList names;
        for (const Send &send : m_out.value())
            names.append(send.name);
        return names;
    }
    /// Returns the name, the visitor and the token of the last request, as in "a,b 8 token".
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

    /// Sets how many records fit into one request. Default: any number.
    void setMostTogether(qsizetype most) { m_mostTogether = most; }
    /// Sets the current visitor.
    void setVisitor(qint64 visitor) { m_visitor = visitor; }
    /// Returns the errors that were passed to `handleError()`.
    QList<Error> handledErrors() const { return m_handledErrors.value(); }

    Submission submit(const QList<QueueableRequest> &records, const VisitorCredentials &visitor,
                      SimpleCompletion completion) override {
        if (!visitor.visitorIdentifier)
            return Submission::impossible;
        if (records.size() > m_mostTogether)
            return Submission::tooLarge;
        ++m_sends;
        const QString name = nameOf(records);
        m_lastSend.setValue(QStringLiteral("%1 %2 %3")
                                .arg(name, QString::number(*visitor.visitorIdentifier),
                                     visitor.token.value_or(QString())));
        if (m_status != 0)
            completion({HTTPURLResponse{m_status}, {}});
        else
            m_out.mutate([&](QList<Send> &out) { out.append({name, std::move(completion)}); });
        return Submission::started;
    }
    QString serviceHost() const override { return QStringLiteral("service.example"); }
    std::optional<DisabledError> disabledError() const override { return {}; }
    std::optional<qint64> visitorIdentifier() const override { return m_visitor; }
    std::optional<QString> authorizationToken() const override { return QStringLiteral("token"); }
    void handleError(const Error &error) override {
        m_handledErrors.mutate([&error](QList<Error> &errors) { errors.append(error); });
    }

private:
    struct Send {
        QString name;
        SimpleCompletion completion;
    };

    static QString nameOf(const QList<QueueableRequest> &records) {
        QStringList names;
        for (const QueueableRequest &record : records) {
            if (const auto *const event = std::get_if<Request::TrackEvent>(&record))
                names.append(event->event);
            else if (const auto *const attribute = std::get_if<Request::UpdateAttribute>(&record))
                names.append(attribute->key);
        }
        return names.join(QLatin1Char(','));
    }

    std::atomic<qint64> m_visitor = 8;
    std::atomic<qsizetype> m_mostTogether = std::numeric_limits<qsizetype>::max();
    Atomic<QList<Send>> m_out;
    Atomic<QString> m_lastSend;
    std::atomic<int> m_sends = 0;
    std::atomic<int> m_status = 0;
    Atomic<QList<Error>> m_handledErrors;
};

} // namespace KestrioKit
