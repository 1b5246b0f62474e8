#include "KestrioKit/Core/Platform/HTTP/URLSession.h"

#include "KestrioKit/Core/Platform/HTTP/HTTPStatus.h"

#include <QNetworkReply>

namespace KestrioKit {

using namespace Qt::StringLiterals;

Error transportError(const URLRequest &request, int code, const QString &reason) {
    const QString host = request.url.adjusted(QUrl::RemoveUserInfo).authority();
    return {transportErrorDomain, code, u"The request to %1 failed: %2."_s.arg(host, reason)};
}

std::optional<Error> undecidedError(const URLRequest &request, int statusCode) {
    switch (statusClass(statusCode)) {
    case HTTPStatusClass::redirection:
        return transportError(request, QNetworkReply::InsecureRedirectError,
                              u"its answer, status %1, leads elsewhere"_s.arg(statusCode));
    case HTTPStatusClass::invalid:
        return transportError(request, QNetworkReply::ProtocolFailure,
                              u"its answer has the status %1"_s.arg(statusCode));
    default:
        return std::nullopt;
    }
}

URLSession::URLSession(std::shared_ptr<URLTransport> transport, QList<HTTPHeader> additionalHeaders)
    : m_transport(std::move(transport)), m_additionalHeaders(std::move(additionalHeaders)) {}

void URLSession::dataTask(URLRequest request, URLTransport::Body body,
                          URLCompletion completion) const {
    request.headers = m_additionalHeaders + request.headers;
    m_transport->send(std::move(request), body, std::move(completion));
}

} // namespace KestrioKit
