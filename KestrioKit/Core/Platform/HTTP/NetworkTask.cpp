#include "KestrioKit/Core/Platform/HTTP/NetworkTask.h"

#include "KestrioKit/Core/Platform/HTTP/HTTPStatus.h"
#include "KestrioKit/Core/Platform/HTTP/Redirection.h"
#include "KestrioKit/Core/Platform/HTTP/UploadBody.h"

#include <QNetworkAccessManager>

#include <utility>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

// The limit of unread data, in bytes. Without it a fast server could fill the memory while a file
// is saved.
constexpr qint64 readBufferSize = 256 * 1024;

// Whether Qt reports a status of 400 or above with this error.
bool isRefusal(QNetworkReply::NetworkError error) {
    return error == QNetworkReply::ProxyAuthenticationRequiredError ||
           error == QNetworkReply::ProtocolInvalidOperationError ||
           (error >= QNetworkReply::ContentAccessDenied &&
            error <= QNetworkReply::UnknownContentError &&
            error != QNetworkReply::ContentReSendError) ||
           error >= QNetworkReply::InternalServerError;
}

// Whether Qt reads no body after this status, whatever the content length (RFC 9112, 6.3).
bool lacksBody(int status) {
    return statusClass(status) == HTTPStatusClass::notFinal || status == HTTPStatus::noContent ||
           status == HTTPStatus::notModified;
}

bool canBeSentTo(const QUrl &url) {
    return url.isValid() && !url.host().isEmpty() &&
           (url.scheme() == u"https"_s || url.scheme() == u"http"_s);
}

// Replaces characters that would end the header line early with blanks (RFC 9110, 5.5). An empty
// value becomes a blank, since Qt would replace it with a value of its own.
QByteArray headerValue(QByteArray value) {
    if (value.isEmpty())
        return " ";
    return value.replace('\r', ' ').replace('\n', ' ').replace('\0', ' ');
}

QNetworkRequest networkRequest(const URLRequest &request) {
    QNetworkRequest result(request.url);
    for (const HTTPHeader &header : request.headers)
        result.setRawHeader(header.name, headerValue(header.value));
    // Without a length, Qt would read the whole body into a buffer from which it can be sent again.
    result.setHeader(QNetworkRequest::ContentLengthHeader, request.body.size());
    result.setAttribute(QNetworkRequest::DoNotBufferUploadDataAttribute, true);
    // Small requests are delayed by 40 ms over HTTP/2.
    result.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    result.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    result.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    result.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    result.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                        QNetworkRequest::ManualRedirectPolicy);
    result.setTransferTimeout(int(std::chrono::milliseconds(request.timeout).count()));
    return result;
}

} // namespace

NetworkTask::NetworkTask(QNetworkAccessManager &manager, Executor &executor, URLRequest request,
                         URLTransport::Body body, URLCompletion completion, Finished finished)
    : QObject(&manager),
      m_manager(manager),
      m_executor(executor),
      m_request(std::move(request)),
      m_body(body),
      m_completion(std::move(completion)),
      m_finished(std::move(finished)) {}

NetworkTask::~NetworkTask() {
    if (!m_completion)
        return;
    URLResult result;
    result.cutOff = true;
    result.error = transportError(m_request, QNetworkReply::OperationCanceledError,
                                  u"the application ended before the answer came"_s);
    m_executor.post([completion = std::move(m_completion), result] { completion(result); });
}

void NetworkTask::start() {
    if (!canBeSentTo(m_request.url)) {
        const QString reason = u"its URL is not one of an HTTP service"_s;
        const int code = QNetworkReply::ProtocolUnknownError;
        return complete({{}, {}, transportError(m_request, code, reason)}, Connections::sound);
    }
    auto *const body = new UploadBody(m_request.body);
    m_reply = m_manager.sendCustomRequest(networkRequest(m_request), m_request.method, body);
    body->setParent(m_reply);
    // Qt ignores the size until the request has started, which happens in the event loop.
    QMetaObject::invokeMethod(
        m_reply, [reply = m_reply] { reply->setReadBufferSize(readBufferSize); },
        Qt::QueuedConnection);
    connect(m_reply, &QNetworkReply::readyRead, this, &NetworkTask::readBody);
    connect(m_reply, &QNetworkReply::finished, this, &NetworkTask::replyFinished);
}

void NetworkTask::giveUp(const QString &reason) {
    // The request may be finished, since the reply is destroyed before the task.
    if (!m_completion)
        return;
    m_reason = reason;
    // A reply has one error only, or else Qt logs a warning. One that has an error is about to
    // finish. One that is aborted must not receive the error that may be on its way.
    if (m_reply->error() != QNetworkReply::NoError)
        return;
    m_reply->abort();
    delete m_reply;
}

void NetworkTask::readBody() {
    const QByteArray bytes = m_reply->readAll();
    m_received += bytes.size();
    if (m_received > URLTransport::maximumBodySize)
        m_reply->abort();
    else if (m_body == URLTransport::Body::keep)
        m_data += bytes;
}

void NetworkTask::replyFinished() {
    if (m_reply->isOpen())
        readBody();
    m_reply->deleteLater();
    if (followRedirection())
        return;
    const URLResult outcome = result();
    complete(outcome, connections(outcome.error));
}

bool NetworkTask::followRedirection() {
    if (replyError() != QNetworkReply::NoError || m_redirections == maximumRedirections)
        return false;
    const QUrl target = m_reply->attribute(QNetworkRequest::RedirectionTargetAttribute).toUrl();
    std::optional<URLRequest> next = redirectedRequest(m_request, statusCode(), target);
    if (!next)
        return false;
    ++m_redirections;
    m_request = std::move(*next);
    m_data.clear();
    m_received = 0;
    start();
    return true;
}

QNetworkReply::NetworkError NetworkTask::replyError() const {
    const QNetworkReply::NetworkError error = m_reply->error();
    // Qt tries to rewind the body for a redirection although it leaves the redirection to this
    // class.
    const bool redirected = error == QNetworkReply::ContentReSendError && statusCode() != 0;
    // Qt reports refusals (4xx, 5xx) as errors, although their responses are complete.
    const bool refused =
        isRefusal(error) && statusClass(statusCode()) >= HTTPStatusClass::clientError;
    if (error != QNetworkReply::NoError && !redirected && !refused)
        return error;
    // Qt sometimes reports a response that was cut off as complete.
    return !lacksBody(statusCode()) && m_received < toldLength()
               ? QNetworkReply::RemoteHostClosedError
               : QNetworkReply::NoError;
}

qint64 NetworkTask::toldLength() const {
    return m_reply->header(QNetworkRequest::ContentLengthHeader).toLongLong();
}

int NetworkTask::statusCode() const {
    return m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
}

URLResult NetworkTask::result() const {
    URLResult result;
    if (const int code = statusCode(); code != 0)
        result.response = HTTPURLResponse{code};
    const bool tooLong = m_received > URLTransport::maximumBodySize;
    if (!tooLong)
        result.error = failure();
    else if (m_body == URLTransport::Body::keep)
        result.error = transportError(m_request, QNetworkReply::OperationCanceledError,
                                      u"its answer is too long"_s);
    if (!result.error)
        result.data = m_data;
    return result;
}

std::optional<Error> NetworkTask::failure() const {
    switch (const QNetworkReply::NetworkError code = replyError()) {
    case QNetworkReply::NoError:
        return statusFailure();
    case QNetworkReply::OperationCanceledError:
        return transportError(
            m_request, QNetworkReply::TimeoutError,
            m_reason.isEmpty() ? u"nothing arrived for %1 seconds"_s.arg(m_request.timeout.count())
                               : m_reason);
    case QNetworkReply::ContentReSendError:
    case QNetworkReply::RemoteHostClosedError:
        return transportError(m_request, QNetworkReply::RemoteHostClosedError,
                              u"the connection was closed before the whole answer came"_s);
    default:
        return transportError(m_request, code, m_reply->errorString());
    }
}

std::optional<Error> NetworkTask::statusFailure() const {
    const int code = statusCode();
    if (statusClass(code) == HTTPStatusClass::notFinal)
        return transportError(m_request, QNetworkReply::ProtocolFailure,
                              u"its answer has the status %1"_s.arg(code));
    if (m_redirections == maximumRedirections && statusClass(code) == HTTPStatusClass::redirection)
        return transportError(m_request, QNetworkReply::TooManyRedirectsError,
                              u"it was redirected too often"_s);
    return std::nullopt;
}

NetworkTask::Connections NetworkTask::connections(const std::optional<Error> &error) const {
    // A body that is not allowed here may still follow on the connection.
    if (!error)
        return lacksBody(statusCode()) && toldLength() > 0 ? Connections::broken
                                                           : Connections::sound;
    switch (error->code) {
    case QNetworkReply::SslHandshakeFailedError:
    case QNetworkReply::ProtocolFailure:
    case QNetworkReply::ProtocolUnknownError:
    case QNetworkReply::UnknownContentError:
        return Connections::broken;
    case QNetworkReply::RemoteHostClosedError:
        return statusCode() == 0 ? Connections::sound : Connections::broken;
    case QNetworkReply::TimeoutError:
        return Connections::doubtful;
    default:
        return Connections::sound;
    }
}

void NetworkTask::complete(const URLResult &result, Connections connections) {
    const URLCompletion completion = std::exchange(m_completion, nullptr);
    completion(result);
    m_finished(connections);
    deleteLater();
}

} // namespace KestrioKit
