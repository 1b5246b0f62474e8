#include "tests/fuzz/Fuzzing.h"

#include "KestrioKit/Protocol/SessionHeaders.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace KestrioKit {

using namespace Qt::StringLiterals;

void require(bool holds, const char *property) {
    if (holds)
        return;
    std::fprintf(stderr, "violated: %s\n", property);
    std::abort();
}

void requirePlace(const QByteArray &text, const DecodingError &error) {
    const Decoded<QJsonValue> parsed = parseJSON(text);
    const auto *const document = std::get_if<QJsonValue>(&parsed);
    require((error.reason == DecodingError::Reason::notJSON) == !document, "the reason is right");
    require(!error.description.isEmpty(), "an error has a description");
    QJsonValue place = document ? *document : QJsonValue(QJsonValue::Undefined);
    // A step is a key or "[index]".
    const QString path = QString(error.path).replace(u'[', u".["_s);
    for (const QString &step : path.split(u'.', Qt::SkipEmptyParts)) {
        require(place.isObject() || place.isArray(), "a path goes through what is there");
        place = step.startsWith(u'[') ? place[step.sliced(1).chopped(1).toLongLong()] : place[step];
    }
    require(place.isUndefined() == (error.reason != DecodingError::Reason::typeMismatch),
            "what is missing is missing, and what is wrong is there");
}

void requireWellFormed(const URLRequest &request) {
    const QByteArray url = request.url.toEncoded();
    const auto isPrintable = [](char character) {
        return character > ' ' && character < '\x7f';
    };
    require(!request.url.host().isEmpty() && std::ranges::all_of(url, isPrintable),
            "a URL names a host, and is escaped");
    require(QUrl::fromEncoded(url, QUrl::StrictMode) == request.url, "a URL is read as written");
    require(request.body.isEmpty() || std::holds_alternative<QJsonValue>(parseJSON(request.body)),
            "a body is JSON");
}

void requireOneLineHeaders(const std::optional<QString> &token) {
    const auto isControl = [](char character) {
        return uchar(character) < 0x20 || character == 0x7f;
    };
    for (const HTTPHeader &header : sessionHeaders({}, token, {}, token))
        require(std::ranges::none_of(header.value, isControl), "a header is one line");
}

} // namespace KestrioKit
