#pragma once

#include "KestrioKit/Core/Facade/KestrioCore.h"
#include "tests/support/OnlineFixture.h"

namespace KestrioKit {

/// Surveys that the service sends, and what the service is told about them.
class SurveyFixture : public OnlineFixture {
protected:
    SurveyFixture();

    /// Makes the service answer an event with a survey of these questions.
    void hold(const QByteArray &questions, const QByteArray &locale = "en");

    /// Returns what the service was told: "seen", "seen 11", "closed 12". Sorted, since two that
    /// are sent at the same time may overtake one another.
    QStringList history();
    /// Returns the responses, each a list of answers as "11=9".
    QList<QStringList> responses();

    std::shared_ptr<KestrioCore> core;
};

} // namespace KestrioKit
