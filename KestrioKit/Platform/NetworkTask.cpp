#include "KestrioKit/Platform/NetworkTask.h"

#include "KestrioKit/Platform/Atomic.h"
#include "KestrioKit/Platform/Redirection.h"
#include "KestrioKit/Platform/UploadBody.h"

#include <QNetworkAccessManager>

#include <utility>
#include <vector>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

// What may wait to be read: without a limit a fast server fills the memory while a file is saved.
constexpr qint64 readBufferSize = 256 * 1024;

enum StatusCode {
    firstFinal = 200,
    firstRedirection = 300,
    firstRefusal = 400,
    firstInvalid = 600
};

// Whether the error is one that Qt makes of a status of 400 and above.
bool isRefusal(QNetworkReply::NetworkError error) {
    return error == QNetworkReply::ProxyAuthenticationRequiredError ||
           error == QNetworkReply::ProtocolInvalidOperationError ||
           (error >= QNetworkReply::ContentAccessDenied &&
            error <= QNetworkReply::UnknownContentError &&
            error != QNetworkReply::ContentReSendError) ||
           error >= QNetworkReply::InternalServerError;
}

bool canBeSentTo(const QUrl &url) {
    return url.isValid() && !url.host().isEmpty() &&
           (url.scheme() == u"https"_s || url.scheme() == u"http"_s);
}

// What would end a header line early becomes a blank (RFC 9110, 5.5). So does no value at all, for
// which Qt would put one of its own.
QByteArray headerValue(QByteArray value) {
    if (value.isEmpty())
        return " ";
    return value.replace('\r', ' ').replace('\n', ' ').replace('\0', ' ');
}

QNetworkRequest networkRequest(const URLRequest &request) {
    QNetworkRequest result(request.url);
    for (const HTTPHeader &header : request.headers)
        result.setRawHeader(header.name, headerValue(header.value));
    // Without a length Qt would read the whole body into a buffer that can be sent again.
    result.setHeader(QNetworkRequest::ContentLengthHeader, request.body.size());
    result.setAttribute(QNetworkRequest::DoNotBufferUploadDataAttribute, true);
    // Small requests wait for 40 ms over HTTP/2.
    result.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    result.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    result.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    result.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    result.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                        QNetworkRequest::ManualRedirectPolicy);
    result.setTransferTimeout(int(std::chrono::milliseconds(request.timeout).count()));
    return result;
}

// Completions of requests that the end of the application cut off. What they hold would notice
// being destroyed (an unfinished log trace prints itself), so they stay, where leak checkers see
// them.
void keepForGood(URLCompletion completion) {
    static auto *const kept = new Atomic<std::vector<URLCompletion>>;
    kept->mutate([&](auto &completions) { completions.push_back(std::move(completion)); });
}

} // namespace

NetworkTask::NetworkTask(QNetworkAccessManager &manager, URLRequest request,
                         URLTransport::Body body, URLCompletion completion)
    : QObject(&manager),
      m_manager(manager),
      m_request(std::move(request)),
      m_body(body),
      m_completion(std::move(completion)) {}

NetworkTask::~NetworkTask() {
    if (m_completion)
        keepForGood(std::move(m_completion));
}

void NetworkTask::start() {
    if (!canBeSentTo(m_request.url)) {
        const QString reason = u"its URL is not one of an HTTP service"_s;
        return complete({{}, {}, error(QNetworkReply::ProtocolUnknownError, reason)});
    }
    auto *const body = new UploadBody(m_request.body);
    m_reply = m_manager.sendCustomRequest(networkRequest(m_request), m_request.method, body);
    body->setParent(m_reply);
    // Qt heeds this only once the request is on its way, and it starts that from the event loop.
    QMetaObject::invokeMethod(
        m_reply, [reply = m_reply] { reply->setReadBufferSize(readBufferSize); },
        Qt::QueuedConnection);
    connect(m_reply, &QNetworkReply::readyRead, this, &NetworkTask::readBody);
    connect(m_reply, &QNetworkReply::finished, this, &NetworkTask::replyFinished);
}

void NetworkTask::giveUp() {
    // It may be over: the reply goes before the task does.
    if (!m_completion)
        return;
    m_gaveUp = true;
    m_reply->abort();
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
    if (!followRedirection())
        complete(result());
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
    // Qt rewinds the body for a redirection that it then leaves to us.
    const bool redirected = error == QNetworkReply::ContentReSendError && statusCode() != 0;
    // Qt reports refusals (4xx, 5xx) as errors, although their answers are whole.
    const bool refused = isRefusal(error) && statusCode() >= firstRefusal;
    if (error != QNetworkReply::NoError && !redirected && !refused)
        return error;
    // Sometimes it takes one that was cut off for whole.
    const qint64 length = m_reply->header(QNetworkRequest::ContentLengthHeader).toLongLong();
    return m_received < length ? QNetworkReply::RemoteHostClosedError : QNetworkReply::NoError;
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
        result.error = error(QNetworkReply::OperationCanceledError, u"its answer is too long"_s);
    if (!result.error)
        result.data = m_data;
    return result;
}

std::optional<Error> NetworkTask::failure() const {
    switch (const QNetworkReply::NetworkError code = replyError()) {
    case QNetworkReply::NoError:
        return statusFailure();
    case QNetworkReply::OperationCanceledError:
        return error(QNetworkReply::TimeoutError,
                     m_gaveUp ? u"its answer took too long"_s
                              : u"nothing arrived for %1 seconds"_s.arg(m_request.timeout.count()));
    case QNetworkReply::ContentReSendError:
    case QNetworkReply::RemoteHostClosedError:
        return error(QNetworkReply::RemoteHostClosedError,
                     u"the connection was closed before the whole answer came"_s);
    default:
        return error(code, m_reply->errorString());
    }
}

std::optional<Error> NetworkTask::statusFailure() const {
    const int code = statusCode();
    if (code < firstFinal || code >= firstInvalid)
        return error(QNetworkReply::ProtocolFailure, u"its answer has the status %1"_s.arg(code));
    if (code < firstRedirection || code >= firstRefusal)
        return std::nullopt;
    if (m_redirections == maximumRedirections)
        return error(QNetworkReply::TooManyRedirectsError, u"it was redirected too often"_s);
    return error(QNetworkReply::InsecureRedirectError,
                 u"its answer, status %1, leads elsewhere"_s.arg(code));
}

Error NetworkTask::error(QNetworkReply::NetworkError code, const QString &reason) const {
    const QString host = m_request.url.adjusted(QUrl::RemoveUserInfo).authority();
    return {transportErrorDomain, code, u"The request to %1 failed: %2."_s.arg(host, reason)};
}

void NetworkTask::complete(const URLResult &result) {
    const URLCompletion completion = std::exchange(m_completion, nullptr);
    completion(result);
    deleteLater();
}

} // namespace KestrioKit
