#pragma once

#include "KestrioKit/Core/Survey/Question.h"

#include <QList>

#include <optional>

namespace KestrioKit {

/// A survey as the service delivers it. Malformed optional fields are read as absent. If a required
/// field of any question is missing or malformed, decoding the whole survey fails.
struct Survey {
    std::optional<qint64> unit;
    /// The visitor for whom the service chose the survey.
    qint64 visitorIdentifier = 0;
    /// The questions, in the order in which they are presented.
    QList<Question> questions;
    /// The time to wait before the survey is presented, in the service's own unit.
    std::optional<qint64> delay;
    /// Identifies the survey within the service.
    std::optional<qint64> surveyId;
    /// Groups the answers that the visitor gives in one presentation of the survey.
    std::optional<QString> responseGroupUid;
    /// The language of the survey's texts.
    std::optional<QString> locale;

    /// Returns whether this version of the library knows the type of every question and the
    /// comparator of every routing rule.
    bool preflight() const;

    friend bool operator==(const Survey &, const Survey &) = default;
};

template <>
inline constexpr auto keyTable<Survey> = std::tuple(
    lenient("unitId", &Survey::unit), required("vid", &Survey::visitorIdentifier),
    required("questions", &Survey::questions), lenient("delay", &Survey::delay),
    lenient("surveyId", &Survey::surveyId), lenient("responseGroupUid", &Survey::responseGroupUid),
    lenient("locale", &Survey::locale));

} // namespace KestrioKit
