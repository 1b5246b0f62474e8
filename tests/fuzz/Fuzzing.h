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

/// That nothing is in the record `written` which was not in the text it was read from, or under
/// `key` there.
void requireOrigin(const QByteArray &text, const QByteArray &written, const char *key = nullptr);

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
    if (const auto *const error = std::get_if<DecodingError>(&decoded)) {
        requirePlace(text, *error);
        return std::nullopt;
    }
    return std::get<Record>(decoded);
}

template <typename Record>
Record writtenAndRead(const Record &record) {
    const Decoded<Record> decoded = decodeJSON<Record>(encodeJSON(record));
    require(std::holds_alternative<Record>(decoded), "what is written can be read");
    return std::get<Record>(decoded);
}

/// Whether the text may hold half a surrogate pair, which has no form in UTF-8.
inline bool mayHoldHalves(const QByteArray &text) {
    return text.contains("\\ud") || text.contains("\\uD");
}

/// That a record read from `text` survives being written: as it is, or changed as `expected` says.
template <typename Record, typename Expected = std::identity>
void requireSurvival(const QByteArray &text, const Record &record, Expected expected = {}) {
    const Record once = writtenAndRead(record);
    require(mayHoldHalves(text) || once == expected(record), "a record is read as written");
    require(writtenAndRead(once) == expected(once), "a record is read as written again");
}

} // namespace KestrioKit
