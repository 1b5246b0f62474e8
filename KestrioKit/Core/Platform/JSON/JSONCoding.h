#pragma once

#include "KestrioKit/Core/Platform/JSON/DecodingError.h"
#include "KestrioKit/Core/Platform/JSON/JSONWriter.h"
#include "KestrioKit/Core/Platform/JSON/KeyTable.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QList>
#include <QMap>

#include <optional>
#include <tuple>
#include <type_traits>
#include <variant>

namespace KestrioKit {

/// Sets `error` to a type mismatch and returns false, for use in `JSONCoding::decode()`. Pass a
/// literal as `description`: this is also called for valid documents, where a field has several
/// possible types or is lenient.
bool reportTypeMismatch(DecodingError &error, const QString &description);
/// Sets `error` to a missing required key and returns false.
bool reportMissingKey(DecodingError &error, QLatin1StringView key);

/// Returns the number as an integer if it has an integral value: 5 and 5.0, but not 5.5.
std::optional<qint64> exactInteger(const QJsonValue &value);

/// Encodes and decodes a record according to its key table.
template <typename Record>
struct KeyTableCoding {
    static void encode(JSONWriter &writer, const Record &record) {
        writer.beginObject();
        encodeFields(writer, record);
        writer.endObject();
    }

    /// Encodes the fields without the enclosing braces, for a record that adds more keys to the
    /// same object.
    static void encodeFields(JSONWriter &writer, const Record &record) {
        std::apply([&](const auto &...row) { (encodeField(writer, record, row), ...); },
                   keyTable<Record>);
    }

    static bool decode(const QJsonValue &value, Record &result, DecodingError &error) {
        if (!value.isObject())
            return reportTypeMismatch(error, QStringLiteral("expected an object"));
        const QJsonObject object = value.toObject();
        return std::apply(
            [&](const auto &...row) { return (decodeField(object, result, row, error) && ...); },
            keyTable<Record>);
    }

private:
    template <typename Row>
    static void encodeField(JSONWriter &writer, const Record &record, const Row &row);
    template <typename Row>
    static bool decodeField(const QJsonObject &object, Record &result, const Row &row,
                            DecodingError &error);
};

/// Defines how a type is encoded as JSON and decoded from it. By default this follows the type's
/// key table. A type with another representation specializes this with the same two functions.
/// `decode()` fills `result` and returns true, or sets `error` and returns false.
template <typename Record>
struct JSONCoding : KeyTableCoding<Record> {};

template <>
struct JSONCoding<QString> {
    static void encode(JSONWriter &writer, const QString &text) { writer.string(text); }
    static bool decode(const QJsonValue &value, QString &result, DecodingError &error);
};

template <>
struct JSONCoding<bool> {
    static void encode(JSONWriter &writer, bool value) { writer.boolean(value); }
    static bool decode(const QJsonValue &value, bool &result, DecodingError &error);
};

template <>
struct JSONCoding<qint64> {
    static void encode(JSONWriter &writer, qint64 number) { writer.integer(number); }
    static bool decode(const QJsonValue &value, qint64 &result, DecodingError &error);
};

template <>
struct JSONCoding<quint64> {
    static void encode(JSONWriter &writer, quint64 number) { writer.unsignedInteger(number); }
    static bool decode(const QJsonValue &value, quint64 &result, DecodingError &error);
};

template <>
struct JSONCoding<double> {
    static void encode(JSONWriter &writer, double number) { writer.number(number); }
    static bool decode(const QJsonValue &value, double &result, DecodingError &error);
};

template <>
struct JSONCoding<float> {
    static void encode(JSONWriter &writer, float number) { writer.number(double(number)); }
    static bool decode(const QJsonValue &value, float &result, DecodingError &error);
};

/// Decodes null as absent. The enclosing record handles a missing key.
template <typename Value>
struct JSONCoding<std::optional<Value>> {
    static bool decode(const QJsonValue &value, std::optional<Value> &result,
                       DecodingError &error) {
        if (value.isNull() || value.isUndefined()) {
            result.reset();
            return true;
        }
        return JSONCoding<Value>::decode(value, result.emplace(), error);
    }
};

template <typename Element>
struct JSONCoding<QList<Element>> {
    static void encode(JSONWriter &writer, const QList<Element> &list) {
        writer.beginArray();
        for (const Element &element : list)
            JSONCoding<Element>::encode(writer, element);
        writer.endArray();
    }

    static bool decode(const QJsonValue &value, QList<Element> &result, DecodingError &error) {
        if (!value.isArray())
            return reportTypeMismatch(error, QStringLiteral("expected an array"));
        const QJsonArray array = value.toArray();
        result.clear();
        result.reserve(array.size());
        for (const QJsonValue element : array) {
            if (!JSONCoding<Element>::decode(element, result.emplaceBack(), error)) {
                error.enterIndex(result.size() - 1);
                return false;
            }
        }
        return true;
    }
};

template <typename Value>
struct JSONCoding<QMap<QString, Value>> {
    static void encode(JSONWriter &writer, const QMap<QString, Value> &map) {
        writer.beginObject();
        for (auto entry = map.begin(); entry != map.end(); ++entry) {
            writer.key(entry.key());
            JSONCoding<Value>::encode(writer, entry.value());
        }
        writer.endObject();
    }

    static bool decode(const QJsonValue &value, QMap<QString, Value> &result,
                       DecodingError &error) {
        if (!value.isObject())
            return reportTypeMismatch(error, QStringLiteral("expected an object"));
        const QJsonObject object = value.toObject();
        result.clear();
        for (auto entry = object.begin(); entry != object.end(); ++entry) {
            if (!JSONCoding<Value>::decode(entry.value(), result[entry.key()], error)) {
                error.enterKey(entry.key());
                return false;
            }
        }
        return true;
    }
};

template <typename Record>
template <typename Row>
void KeyTableCoding<Record>::encodeField(JSONWriter &writer, const Record &record, const Row &row) {
    const auto &field = record.*row.field;
    if constexpr (Row::fieldPresence == Presence::required) {
        writer.key(row.key);
        JSONCoding<std::remove_cvref_t<decltype(field)>>::encode(writer, field);
    } else if (field) {
        writer.key(row.key);
        JSONCoding<std::remove_cvref_t<decltype(*field)>>::encode(writer, *field);
    }
}

template <typename Record>
template <typename Row>
bool KeyTableCoding<Record>::decodeField(const QJsonObject &object, Record &result, const Row &row,
                                         DecodingError &error) {
    auto &field = result.*row.field;
    const QLatin1StringView key(row.key.data(), qsizetype(row.key.size()));
    const QJsonValue value = object.value(key);
    if (Row::fieldPresence == Presence::required && value.isUndefined())
        return reportMissingKey(error, key);
    if (JSONCoding<std::remove_cvref_t<decltype(field)>>::decode(value, field, error))
        return true;
    if constexpr (Row::fieldPresence == Presence::lenient) {
        field.reset();
        error = {};
        return true;
    }
    error.enterKey(key);
    return false;
}

/// A decoded record, or the reason why it could not be decoded.
template <typename Record>
using Decoded = std::variant<Record, DecodingError>;

/// Parses a JSON text with any type of outermost value. A leading byte order mark is skipped.
/// Returns an error if the text is not JSON or is nested too deeply.
Decoded<QJsonValue> parseJSON(const QByteArray &bytes);

/// Decodes a record from a JSON text.
template <typename Record>
Decoded<Record> decodeJSON(const QByteArray &text) {
    Decoded<QJsonValue> parsed = parseJSON(text);
    if (DecodingError *const error = std::get_if<DecodingError>(&parsed))
        return std::move(*error);
    Record record;
    DecodingError error;
    if (!JSONCoding<Record>::decode(std::get<QJsonValue>(parsed), record, error))
        return error;
    return record;
}

/// Encodes a record as a JSON text in UTF-8.
template <typename Record>
QByteArray encodeJSON(const Record &record) {
    JSONWriter writer;
    JSONCoding<Record>::encode(writer, record);
    return writer.text();
}

} // namespace KestrioKit
