#pragma once

#include "KestrioKit/Core/Platform/JSON/JSONCoding.h"

#include <QString>

#include <optional>

namespace KestrioKit {

namespace Request {

enum class SurveyEventType { seen, closed };

/// Something that happened to a survey on the screen.
struct SurveyEvent {
    QString environmentId;
    qint64 surveyId = 0;
    /// The question seen or closed; absent for the survey as a whole.
    std::optional<qint64> questionId;
    qint64 visitorId = 0;
    /// True exactly when a question was seen.
    bool isNew = false;
    SurveyEventType action = SurveyEventType::seen;
    QString responseGroupUid;

    friend bool operator==(const SurveyEvent &, const SurveyEvent &) = default;
};

} // namespace Request

/// "seen" or "closed".
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
