#pragma once

#include "KestrioKit/Core/Platform/JSON/JSONCoding.h"

#include <QMap>
#include <QString>

#include <variant>

namespace KestrioKit {

/// A value in one of four forms: an integer, a string, a map of strings or a map of booleans. It
/// holds an answer, the operand of a routing rule, or free-form extra data. Its JSON is the bare
/// number, string or object. An empty object is decoded as `DictBoolValue`. Other JSON is an error.
struct CodableDynamicType {
    using DictStringValue = QMap<QString, QString>;
    using DictBoolValue = QMap<QString, bool>;

    std::variant<qint64, QString, DictStringValue, DictBoolValue> payload;

    static CodableDynamicType intValue(qint64 number) { return {number}; }
    static CodableDynamicType stringValue(QString text) { return {std::move(text)}; }
    static CodableDynamicType dictStringValue(DictStringValue map) { return {std::move(map)}; }
    static CodableDynamicType dictBoolValue(DictBoolValue map) { return {std::move(map)}; }

    /// Returns the payload if it has that form, otherwise null.
    const qint64 *asInt() const { return std::get_if<qint64>(&payload); }
    const QString *asString() const { return std::get_if<QString>(&payload); }
    const DictStringValue *asDictString() const { return std::get_if<DictStringValue>(&payload); }
    const DictBoolValue *asDictBool() const { return std::get_if<DictBoolValue>(&payload); }

    /// Compares form and code points. `SurveyLogicComparator` is more lenient.
    friend bool operator==(const CodableDynamicType &, const CodableDynamicType &) = default;
};

template <>
struct JSONCoding<CodableDynamicType> {
    static void encode(JSONWriter &writer, const CodableDynamicType &value);
    static bool decode(const QJsonValue &value, CodableDynamicType &result, DecodingError &error);
};

} // namespace KestrioKit
