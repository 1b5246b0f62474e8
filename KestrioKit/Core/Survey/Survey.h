#pragma once

#include "KestrioKit/Core/Survey/Question.h"

#include <QList>

#include <optional>

namespace KestrioKit {

/// A survey as the service delivers it. Malformed optional fields are read as absent; anything
/// wrong with a required one, in whichever question, leaves no survey at all.
struct Survey {
    std::optional<qint64> unit;
    /// The visitor for whom the survey was chosen.
    qint64 visitorIdentifier = 0;
    /// In the order in which they are presented.
    QList<Question> questions;
    /// How long to wait before presenting, in the service's own unit.
    std::optional<qint64> delay;
    std::optional<qint64> surveyId;
    /// Groups what this visitor answers at this showing.
    std::optional<QString> responseGroupUid;
    /// The language of the texts.
    std::optional<QString> locale;

    /// Whether every question and every routing rule is of a kind known here.
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
