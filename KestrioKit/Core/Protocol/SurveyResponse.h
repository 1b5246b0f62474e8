#pragma once

#include "KestrioKit/Core/Protocol/Metadata.h"
#include "KestrioKit/Core/Survey/QuestionType.h"

#include <QList>

namespace KestrioKit {

namespace Request {

/// The answer to one question.
struct SurveyQuestionResponse {
    /// The question's `name`.
    qint64 questionId = 0;
    CodableDynamicType value;
    /// When the question was shown, in seconds since 1970.
    double seenAt = 0;
    /// When it was answered, in seconds since 1970; absent for one that was left empty.
    std::optional<double> answeredAt;
    /// Absent once the record has been stored and read again.
    std::optional<QuestionType> questionType;

    friend bool operator==(const SurveyQuestionResponse &,
                           const SurveyQuestionResponse &) = default;
};

/// What is sent of the answers to one survey.
struct SurveyResponseBody {
    /// In the order in which they were given.
    QList<SurveyQuestionResponse> responses;
    Metadata metadata;
    QString responseGroupUid;

    friend bool operator==(const SurveyResponseBody &, const SurveyResponseBody &) = default;
};

/// The answers to one survey.
struct SurveyResponse {
    qint64 surveyId = 0;
    SurveyResponseBody body;
    /// Seconds since 1970.
    double completedAt = 0;

    friend bool operator==(const SurveyResponse &, const SurveyResponse &) = default;
};

} // namespace Request

/// Reading does not undo writing, and the service relies on both forms. Times are written as
/// milliseconds and read as they stand. The type is never written, nor is the value of an open
/// question that was left empty; a missing value is read as the empty text.
template <>
struct JSONCoding<Request::SurveyQuestionResponse> {
    static void encode(JSONWriter &writer, const Request::SurveyQuestionResponse &response);
    static bool decode(const QJsonValue &value, Request::SurveyQuestionResponse &result,
                       DecodingError &error);
};

template <>
inline constexpr auto keyTable<Request::SurveyResponseBody> =
    std::tuple(required("responses", &Request::SurveyResponseBody::responses),
               required("meta", &Request::SurveyResponseBody::metadata),
               required("responseGroupUid", &Request::SurveyResponseBody::responseGroupUid));

template <>
inline constexpr auto keyTable<Request::SurveyResponse> =
    std::tuple(required("surveyId", &Request::SurveyResponse::surveyId),
               required("body", &Request::SurveyResponse::body),
               required("completedAt", &Request::SurveyResponse::completedAt));

} // namespace KestrioKit
