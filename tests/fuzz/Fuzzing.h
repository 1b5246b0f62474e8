#pragma once

#include "KestrioKit/Platform/JSONCoding.h"
#include "KestrioKit/Platform/URLRequest.h"

#include <cstddef>
#include <cstdint>
#include <functional>

namespace KestrioKit {

/// Makes the input a finding unless the property holds.
void require(bool holds, const char *property);

/// That the error leads to what it complains about, wherever that is in the text.
void requirePlace(const QByteArray &text, const DecodingError &error);

/// That any HTTP server can make sense of the request.
void requireWellFormed(const URLRequest &request);

/// That none of what a session sends with every request begins a header of its own.
void requireOneLineHeaders(const std::optional<QString> &token);

inline QByteArray inputText(const std::uint8_t *data, std::size_t size) {
    return {reinterpret_cast<const char *>(data), qsizetype(size)};
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
