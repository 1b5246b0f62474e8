#pragma once

#include "KestrioKit/Core/Platform/JSON/JSONCoding.h"

#include <QMap>
#include <QString>

#include <variant>

namespace KestrioKit {

/// A value of one of four forms: an answer, the operand of a routing rule, or free-form extra data.
/// Its JSON is the bare number, text or object; an empty object is read as `DictBoolValue`.
struct CodableDynamicType {
    using DictStringValue = QMap<QString, QString>;
    using DictBoolValue = QMap<QString, bool>;

    std::variant<qint64, QString, DictStringValue, DictBoolValue> payload;

    static CodableDynamicType intValue(qint64 number) { return {number}; }
    static CodableDynamicType stringValue(QString text) { return {std::move(text)}; }
    static CodableDynamicType dictStringValue(DictStringValue map) { return {std::move(map)}; }
    static CodableDynamicType dictBoolValue(DictBoolValue map) { return {std::move(map)}; }

    /// The payload, when it has that form; otherwise null.
    const qint64 *asInt() const { return std::get_if<qint64>(&payload); }
    const QString *asString() const { return std::get_if<QString>(&payload); }
    const DictStringValue *asDictString() const { return std::get_if<DictStringValue>(&payload); }
    const DictBoolValue *asDictBool() const { return std::get_if<DictBoolValue>(&payload); }

    /// The same form and the same code points. `SurveyLogicComparator` compares more leniently.
    friend bool operator==(const CodableDynamicType &, const CodableDynamicType &) = default;
};

template <>
struct JSONCoding<CodableDynamicType> {
    static void encode(JSONWriter &writer, const CodableDynamicType &value);
    static bool decode(const QJsonValue &value, CodableDynamicType &result, DecodingError &error);
};

} // namespace KestrioKit
