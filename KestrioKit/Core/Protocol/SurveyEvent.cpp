#include "KestrioKit/Core/Protocol/SurveyEvent.h"

namespace KestrioKit {

using namespace Qt::StringLiterals;
using Request::SurveyEventType;

namespace {

constexpr auto seenText = "seen"_L1;
constexpr auto closedText = "closed"_L1;

} // namespace

void JSONCoding<SurveyEventType>::encode(JSONWriter &writer, SurveyEventType type) {
    writer.string(type == SurveyEventType::seen ? seenText : closedText);
}

bool JSONCoding<SurveyEventType>::decode(const QJsonValue &value, SurveyEventType &result,
                                         DecodingError &error) {
    const QString text = value.toString();
    if (text != seenText && text != closedText)
        return reportTypeMismatch(error, u"expected \"seen\" or \"closed\""_s);
    result = text == seenText ? SurveyEventType::seen : SurveyEventType::closed;
    return true;
}

} // namespace KestrioKit
