#pragma once

#include "KestrioKit/Core/Protocol/Metadata.h"
#include "KestrioKit/Core/Survey/QuestionType.h"

#include <QList>

namespace KestrioKit {

namespace Request {

/// The answer to one question. A rating of 7 is sent as follows, with times in milliseconds:
///
///     {"questionId":11,"seenAt":1700000000000,"answeredAt":1700000004000,"value":7}
struct SurveyQuestionResponse {
    /// The `name` of the question, which is its id.
    qint64 questionId = 0;
    /// The answer: a number for scales, a text for open questions, a map for options.
    CodableDynamicType value;
    /// The time when the question was shown, in seconds since 1970.
    double seenAt = 0;
    /// The time of the answer, in seconds since 1970; absent if the question was left empty.
    std::optional<double> answeredAt;
    /// The question's type. It is not stored, so it is absent in a record that was read from disk.
    std::optional<QuestionType> questionType;

    friend bool operator==(const SurveyQuestionResponse &,
                           const SurveyQuestionResponse &) = default;
};

/// The body of the request that submits a survey's answers. Sent as POST to
/// "/2/environments/ENV/visitors/VID/responses/submit".
struct SurveyResponseBody {
    /// In the order in which the answers were given.
    QList<SurveyQuestionResponse> responses;
    Metadata metadata;
    /// Identifies the showing of the survey that was answered. The service assigns it.
    QString responseGroupUid;

    friend bool operator==(const SurveyResponseBody &, const SurveyResponseBody &) = default;
};

/// The answers to one survey, as a record of the submission queue.
struct SurveyResponse {
    qint64 surveyId = 0;
    SurveyResponseBody body;
    /// The time of the submission, in seconds since 1970.
    double completedAt = 0;

    friend bool operator==(const SurveyResponse &, const SurveyResponse &) = default;
};

} // namespace Request

/// Decoding is not the inverse of encoding, and the service relies on both forms. Times are written
/// in milliseconds, but read as seconds without conversion. The question's type is never written.
/// The value is not written if an open question was left empty. A missing value is read as the
/// empty text.
template <>
struct JSONCoding<Request::SurveyQuestionResponse> {
    static void encode(JSONWriter &writer, const Request::SurveyQuestionResponse &response);
    static bool decode(const QJsonValue &value, Request::SurveyQuestionResponse &result,
                       DecodingError &error);
};

/// The keys in the state file and in the request's body.
template <>
inline constexpr auto keyTable<Request::SurveyResponseBody> =
    std::tuple(required("responses", &Request::SurveyResponseBody::responses),
               required("meta", &Request::SurveyResponseBody::metadata),
               required("responseGroupUid", &Request::SurveyResponseBody::responseGroupUid));

/// The keys in the state file. The request has the body only.
template <>
inline constexpr auto keyTable<Request::SurveyResponse> =
    std::tuple(required("surveyId", &Request::SurveyResponse::surveyId),
               required("body", &Request::SurveyResponse::body),
               required("completedAt", &Request::SurveyResponse::completedAt));

} // namespace KestrioKit
