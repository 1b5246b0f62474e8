#pragma once

#include "KestrioKit/Core/Survey/CodableDynamicType.h"

#include <QList>

#include <functional>
#include <optional>
#include <utility>
#include <variant>

// What no host can know, and a script for tests must: these few functions use private parts of the
// library, which this program, linking it statically, can reach. All are for the main thread.

struct HeldSurvey {
    std::optional<qint64> surveyId;
    qsizetype questionCount = 0;
};

/// The survey that the library holds for the host to show.
std::optional<HeldSurvey> heldSurvey();

struct AnsweredSurvey {
    /// The questions' names with their answers, in the order in which they were answered.
    QList<std::pair<qint64, KestrioKit::CodableDynamicType>> answers;
    /// The index of the question that would be next; outside of the survey when it is finished.
    qint64 next = 0;
};

/// Answers the held survey as its screen does, with the values of a JSON array in turn, and drops
/// it. What it gives instead is why that cannot be; then nothing was reported, and it is still
/// held.
std::variant<AnsweredSurvey, QString> answerHeldSurvey(const QByteArray &json);

/// Closes the held survey at its first question, and drops it. False when there is none.
bool closeHeldSurvey();

/// Calls `answer` later: whether nothing is being sent and nothing that waits is ready to be.
void askWhetherIdle(const std::function<void(bool idle)> &answer);

/// Calls `done` later, when the library's thread has finished what it is doing now.
void afterPresentWork(std::function<void()> done);
