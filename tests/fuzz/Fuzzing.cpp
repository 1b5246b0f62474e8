#include "tests/fuzz/Fuzzing.h"

#include "KestrioKit/Protocol/SessionHeaders.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

bool isPrintable(char character) {
    return character > ' ' && character < '\x7f';
}

bool isControl(char character) {
    return (character >= 0 && character < ' ') || character == '\x7f';
}

/// What a step of a path, a key or "[index]", leads to.
QJsonValue valueAt(const QJsonValue &value, const QString &step) {
    if (!step.startsWith(u'['))
        return value.toObject().value(step);
    return value.toArray().at(step.sliced(1).chopped(1).toLongLong());
}

bool comesFrom(const QJsonValue &written, const QJsonValue &read) {
    if (!written.isObject() && !written.isArray())
        return written == read;
    if (written.type() != read.type())
        return false;
    const QJsonObject object = written.toObject();
    for (auto entry = object.begin(); entry != object.end(); ++entry) {
        if (!comesFrom(entry.value(), read.toObject().value(entry.key())))
            return false;
    }
    const QJsonArray list = written.toArray();
    const QJsonArray source = read.toArray();
    return std::equal(list.begin(), list.end(), source.begin(), source.end(), comesFrom);
}

} // namespace

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
    const QString path = QString(error.path).replace(u'[', u".["_s);
    for (const QString &step : path.split(u'.', Qt::SkipEmptyParts)) {
        require(place.isObject() || place.isArray(), "a path goes through what is there");
        place = valueAt(place, step);
    }
    require(place.isUndefined() == (error.reason != DecodingError::Reason::typeMismatch),
            "what is missing is missing, and what is wrong is there");
}

void requireOrigin(const QByteArray &text, const QByteArray &written, const char *key) {
    QJsonValue read = std::get<QJsonValue>(parseJSON(text));
    if (key)
        read = read.toObject().value(QLatin1StringView(key));
    require(mayHoldHalves(text) || comesFrom(std::get<QJsonValue>(parseJSON(written)), read),
            "a record holds what was in the text");
}

void requireWellFormed(const URLRequest &request) {
    const QByteArray url = request.url.toEncoded();
    require(!request.url.host().isEmpty() && std::ranges::all_of(url, isPrintable),
            "a URL names a host, and is escaped");
    require(QUrl::fromEncoded(url, QUrl::StrictMode) == request.url, "a URL is read as written");
    require(request.body.isEmpty() || std::holds_alternative<QJsonValue>(parseJSON(request.body)),
            "a body is JSON");
}

void requireOneLineHeaders(const std::optional<QString> &token) {
    for (const HTTPHeader &header : sessionHeaders({}, token, {}, token))
        require(std::ranges::none_of(header.value, isControl), "a header is one line");
}

} // namespace KestrioKit
