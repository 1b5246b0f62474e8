#pragma once

#include "KestrioKit/Core/Survey/CodableDynamicType.h"

#include <QList>

#include <functional>
#include <optional>
#include <utility>
#include <variant>

// Access to private parts of the library, for tests that need more than the public API offers. It
// works because this program links the library statically. All functions are for the main thread.

/// A survey that the library holds for the host to show.
struct HeldSurvey {
    std::optional<qint64> surveyId;
    qsizetype questionCount = 0;
};

/// Returns the held survey; absent if there is none.
std::optional<HeldSurvey> heldSurvey();

/// The result of answering the held survey.
struct AnsweredSurvey {
    /// The names of the questions with their answers, in the order in which they were answered.
    QList<std::pair<qint64, KestrioKit::CodableDynamicType>> answers;
    /// The index of the next question. It lies outside of the survey if the survey is finished.
    qint64 next = 0;
};

/// Answers the held survey as its screen does, and drops it. `json` is an array with the values in
/// the order of the questions asked. If that is impossible, returns the reason as a text, reports
/// nothing and keeps the survey.
std::variant<AnsweredSurvey, QString> answerHeldSurvey(const QByteArray &json);

/// Reports the held survey as closed at its first question, and drops it. Returns false if there is
/// none.
bool closeHeldSurvey();

/// Calls `answer` later on the main thread. `idle` is true if no request is in flight and no
/// waiting record is due.
void askWhetherIdle(const std::function<void(bool idle)> &answer);

/// Calls `done` later on the main thread, after the library's thread has finished its present work.
void afterPresentWork(std::function<void()> done);
