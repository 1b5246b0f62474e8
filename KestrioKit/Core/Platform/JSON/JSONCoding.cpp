#include "KestrioKit/Core/Platform/JSON/JSONCoding.h"

#include <QJsonDocument>

#include <algorithm>
#include <cmath>
#include <limits>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

constexpr QByteArrayView byteOrderMark("\xEF\xBB\xBF");

bool isBlank(char character) {
    return character == ' ' || character == '\t' || character == '\n' || character == '\r';
}

// Qt's parser only accepts an object or an array as the outermost value.
bool startsWithContainer(const QByteArray &text) {
    const auto first = std::find_if_not(text.begin(), text.end(), isBlank);
    return first != text.end() && (*first == '{' || *first == '[');
}

/// Escapes the mark at the beginning of each text and key. Qt reads them one by one as UTF-8, drops
/// the mark in that place, and then does not find the key.
QByteArray withMarksEscaped(const QByteArray &text) {
    static const QByteArray openingMark = '"' + byteOrderMark.toByteArray();
    if (!text.contains(openingMark))
        return text;
    return QByteArray(text).replace(openingMark, R"("\uFEFF)");
}

DecodingError notJSON(const QString &reason) {
    return {DecodingError::Reason::notJSON, {}, u"it is not JSON: %1"_s.arg(reason)};
}

} // namespace

bool reportTypeMismatch(DecodingError &error, const QString &description) {
    error = {DecodingError::Reason::typeMismatch, {}, description};
    return false;
}

bool reportMissingKey(DecodingError &error, QLatin1StringView key) {
    error = {DecodingError::Reason::keyNotFound, {}, u"a required key is missing"_s};
    error.enterKey(key);
    return false;
}

std::optional<qint64> exactInteger(const QJsonValue &value) {
    // The default is returned for a value that is not an integer. Two different defaults
    // distinguish it from a real value.
    const qint64 number = value.toInteger(0);
    if (number == 0 && value.toInteger(1) != 0)
        return std::nullopt;
    return number;
}

bool JSONCoding<QString>::decode(const QJsonValue &value, QString &result, DecodingError &error) {
    if (!value.isString())
        return reportTypeMismatch(error, u"expected a text"_s);
    result = value.toString();
    return true;
}

bool JSONCoding<bool>::decode(const QJsonValue &value, bool &result, DecodingError &error) {
    if (!value.isBool())
        return reportTypeMismatch(error, u"expected true or false"_s);
    result = value.toBool();
    return true;
}

bool JSONCoding<qint64>::decode(const QJsonValue &value, qint64 &result, DecodingError &error) {
    const std::optional<qint64> number = exactInteger(value);
    if (!number)
        return reportTypeMismatch(error, u"expected an integer"_s);
    result = *number;
    return true;
}

bool JSONCoding<quint64>::decode(const QJsonValue &value, quint64 &result, DecodingError &error) {
    const std::optional<qint64> number = exactInteger(value);
    if (!number || *number < 0)
        return reportTypeMismatch(error, u"expected an integer of 0 or more"_s);
    result = quint64(*number);
    return true;
}

bool JSONCoding<double>::decode(const QJsonValue &value, double &result, DecodingError &error) {
    if (!value.isDouble())
        return reportTypeMismatch(error, u"expected a number"_s);
    result = value.toDouble();
    return true;
}

bool JSONCoding<float>::decode(const QJsonValue &value, float &result, DecodingError &error) {
    double number = 0;
    if (!JSONCoding<double>::decode(value, number, error))
        return false;
    if (std::abs(number) > double(std::numeric_limits<float>::max()))
        return reportTypeMismatch(error, u"expected a number of single precision"_s);
    result = float(number);
    return true;
}

Decoded<QJsonValue> parseJSON(const QByteArray &bytes) {
    // RFC 8259, section 8.1, allows parsers to ignore the mark. Qt's parser refuses it.
    const QByteArray text = withMarksEscaped(
        bytes.startsWith(byteOrderMark) ? bytes.sliced(byteOrderMark.size()) : bytes);
    const bool container = startsWithContainer(text);
    QJsonParseError failure;
    const QJsonDocument document =
        QJsonDocument::fromJson(container ? text : '[' + text + ']', &failure);
    if (failure.error != QJsonParseError::NoError)
        return notJSON(failure.errorString());
    if (document.isObject())
        return QJsonValue(document.object());
    if (container)
        return QJsonValue(document.array());
    const QJsonArray wrapped = document.array();
    if (wrapped.size() != 1)
        return notJSON(u"expected one value"_s);
    return wrapped.first();
}

} // namespace KestrioKit
