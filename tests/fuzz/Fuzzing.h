#pragma once

#include "KestrioKit/Core/Platform/HTTP/URLRequest.h"
#include "KestrioKit/Core/Platform/JSON/JSONCoding.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>

/// Each fuzzer defines this, which fails for an input that violates a property.
void tryInput(const QByteArray &input);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    tryInput({reinterpret_cast<const char *>(data), qsizetype(size)});
    return 0;
}

namespace KestrioKit {

using namespace Qt::StringLiterals;

/// Makes the input a finding unless the property holds.
inline void require(bool holds, const char *property) {
    if (holds)
        return;
    std::fprintf(stderr, "violated: %s\n", property);
    std::abort();
}

/// That the error leads to what it complains about, wherever that is in the text.
inline void requirePlace(const QByteArray &text, const DecodingError &error) {
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

/// That any HTTP server can make sense of the request.
inline void requireWellFormed(const URLRequest &request) {
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

/// The record; absent when there is an error instead, and a good one.
template <typename Record>
std::optional<Record> decodedRecord(const QByteArray &text) {
    const Decoded<Record> decoded = decodeJSON<Record>(text);
    if (const auto *const record = std::get_if<Record>(&decoded))
        return *record;
    requirePlace(text, std::get<DecodingError>(decoded));
    return std::nullopt;
}

/// That a record read from `text` survives being written: as it is, or changed as `expected` says.
template <typename Record, typename Expected = std::identity>
void requireSurvival(const QByteArray &text, const Record &record, Expected expected = {}) {
    const Decoded<Record> decoded = decodeJSON<Record>(encodeJSON(record));
    const auto *const again = std::get_if<Record>(&decoded);
    require(again, "what is written can be read");
    // Half a surrogate pair has no form in UTF-8.
    const bool mayHoldHalves = text.contains("\\ud") || text.contains("\\uD");
    require(mayHoldHalves || *again == expected(record), "a record is read as written");
}

} // namespace KestrioKit
