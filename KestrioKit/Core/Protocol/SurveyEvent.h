#pragma once

#include "KestrioKit/Core/Platform/JSON/JSONCoding.h"

#include <QString>

#include <optional>

namespace KestrioKit {

namespace Request {

/// What happened to the survey or the question.
enum class SurveyEventType { seen, closed };

/// Reports that a survey or one of its questions was seen or closed on screen. Sent as POST to
/// "/1/visitors/VID/surveys/ID/history" with a body such as this:
///
///     {"eid":"shop","sid":1,"qid":11,"vid":7,"isNew":true,"action":"seen","responseGroupUid":"…"}
struct SurveyEvent {
    /// The id of the host's environment at the time of the event.
    QString environmentId;
    qint64 surveyId = 0;
    /// The question that was seen or closed; absent if the event concerns the whole survey.
    std::optional<qint64> questionId;
    /// The visitor at the time of the event.
    qint64 visitorId = 0;
    /// True if and only if a question was seen.
    bool isNew = false;
    SurveyEventType action = SurveyEventType::seen;
    /// Identifies this showing of the survey. The service assigns it.
    QString responseGroupUid;

    friend bool operator==(const SurveyEvent &, const SurveyEvent &) = default;
};

} // namespace Request

/// Encodes the type as "seen" or "closed". Decoding refuses any other value.
template <>
struct JSONCoding<Request::SurveyEventType> {
    static void encode(JSONWriter &writer, Request::SurveyEventType type);
    static bool decode(const QJsonValue &value, Request::SurveyEventType &result,
                       DecodingError &error);
};

template <>
inline constexpr auto keyTable<Request::SurveyEvent> =
    std::tuple(required("eid", &Request::SurveyEvent::environmentId),
               required("sid", &Request::SurveyEvent::surveyId),
               optional("qid", &Request::SurveyEvent::questionId),
               required("vid", &Request::SurveyEvent::visitorId),
               required("isNew", &Request::SurveyEvent::isNew),
               required("action", &Request::SurveyEvent::action),
               required("responseGroupUid", &Request::SurveyEvent::responseGroupUid));

} // namespace KestrioKit
