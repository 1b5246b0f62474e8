#include "KestrioKit/Core/Platform/HTTP/Redirection.h"

#include "KestrioKit/Core/Platform/HTTP/HTTPStatus.h"

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

bool keepsMethod(int statusCode, const QByteArray &method) {
    switch (statusCode) {
    case HTTPStatus::temporaryRedirect:
    case HTTPStatus::permanentRedirect:
        return true;
    case HTTPStatus::movedPermanently:
    case HTTPStatus::found:
    case HTTPStatus::seeOther:
        return method == "GET"_ba;
    default:
        return false;
    }
}

int portOf(const QUrl &url) {
    constexpr int httpPort = 80;
    constexpr int httpsPort = 443;
    return url.port(url.scheme() == u"https"_s ? httpsPort : httpPort);
}

bool sameOrigin(const QUrl &one, const QUrl &other) {
    return one.scheme() == other.scheme() && one.host() == other.host() &&
           portOf(one) == portOf(other);
}

} // namespace

std::optional<URLRequest> redirectedRequest(const URLRequest &request, int statusCode,
                                            const QUrl &target) {
    if (target.isEmpty() || !target.isValid() || !keepsMethod(statusCode, request.method))
        return std::nullopt;
    URLRequest next = request;
    next.url = request.url.resolved(target);
    if (!sameOrigin(request.url, next.url))
        return std::nullopt;
    return next;
}

} // namespace KestrioKit
