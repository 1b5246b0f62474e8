#include "KestrioKit/Core/Protocol/SurveyResponse.h"

#include <algorithm>
#include <limits>

namespace KestrioKit {

using Request::SurveyQuestionResponse;

namespace {

constexpr std::string_view questionIdKey = "questionId";
constexpr std::string_view valueKey = "value";
constexpr std::string_view seenAtKey = "seenAt";
constexpr std::string_view answeredAtKey = "answeredAt";

bool isLeftEmpty(const SurveyQuestionResponse &response) {
    const QString *const text = response.value.asString();
    return response.questionType && response.questionType->kind == QuestionType::open && text &&
           text->isEmpty();
}

// Times are stored as milliseconds but read as seconds, so a stored time grows with every start of
// a program that never sends it. JSON cannot represent infinity: a null would make the whole state
// file unreadable.
double milliseconds(double seconds) {
    constexpr double largest = std::numeric_limits<double>::max();
    return std::clamp(seconds * 1000.0, -largest, largest);
}

} // namespace

/// The keys for decoding. Encoding differs, see the header.
template <>
inline constexpr auto keyTable<SurveyQuestionResponse> =
    std::tuple(required(questionIdKey, &SurveyQuestionResponse::questionId),
               required(valueKey, &SurveyQuestionResponse::value),
               required(seenAtKey, &SurveyQuestionResponse::seenAt),
               optional(answeredAtKey, &SurveyQuestionResponse::answeredAt),
               optional("questionType", &SurveyQuestionResponse::questionType));

void JSONCoding<SurveyQuestionResponse>::encode(JSONWriter &writer,
                                                const SurveyQuestionResponse &response) {
    writer.beginObject();
    writer.key(questionIdKey);
    writer.integer(response.questionId);
    writer.key(seenAtKey);
    writer.number(milliseconds(response.seenAt));
    if (response.answeredAt) {
        writer.key(answeredAtKey);
        writer.number(milliseconds(*response.answeredAt));
    }
    if (!isLeftEmpty(response)) {
        writer.key(valueKey);
        JSONCoding<CodableDynamicType>::encode(writer, response.value);
    }
    writer.endObject();
}

bool JSONCoding<SurveyQuestionResponse>::decode(const QJsonValue &value,
                                                SurveyQuestionResponse &result,
                                                DecodingError &error) {
    QJsonValue completed = value;
    if (value.isObject() && !value.toObject().contains(QLatin1StringView(valueKey))) {
        QJsonObject object = value.toObject();
        object.insert(QLatin1StringView(valueKey), QString());
        completed = object;
    }
    return KeyTableCoding<SurveyQuestionResponse>::decode(completed, result, error);
}

} // namespace KestrioKit
