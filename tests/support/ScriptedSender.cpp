#include "tests/support/ScriptedSender.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace KestrioKit {

namespace {

QString nameOf(const URLRequest &request) {
    const QJsonObject body = QJsonDocument::fromJson(request.body).object();
    QStringList names;
    for (const QJsonValue event : body[QLatin1String("events")].toArray())
        names.append(event[QLatin1String("event")].toString());
    return names.isEmpty() ? request.url.fileName() : names.join(QLatin1Char(','));
}

} // namespace

ScriptedSender::ScriptedSender(const Clock &clock) : m_requests(clock) {
    m_requests.setEnvironment(QStringLiteral("shop"));
    m_requests.setVisitorIdentifier(8);
}

QStringList ScriptedSender::out() const {
    QStringList names;
    for (const Send &send : m_out.value())
        names.append(nameOf(send.request));
    return names;
}

void ScriptedSender::answer(int status, std::optional<Error> error) {
    const auto send = m_out.mutate([](QList<Send> &out) { return out.takeFirst(); });
    send.completion(status == 0 ? std::nullopt : std::optional(HTTPURLResponse{status}), error);
}

void ScriptedSender::sendSimpleRequest(const URLRequest &request,
                                       const std::optional<QString> &token,
                                       SimpleCompletion completion) {
    ++m_sends;
    m_lastSend.setValue(request.url.path() + QLatin1Char(' ') + token.value_or(QString()));
    if (m_status != 0)
        completion(HTTPURLResponse{m_status}, {});
    else
        m_out.mutate([&](QList<Send> &out) { out.append({request, std::move(completion)}); });
}

std::optional<qint64> ScriptedSender::visitorIdentifier() const {
    return m_requests.visitorIdentifier();
}

void ScriptedSender::handleError(const Error &error) {
    m_handledErrors.mutate([&error](QList<Error> &errors) { errors.append(error); });
}

} // namespace KestrioKit
