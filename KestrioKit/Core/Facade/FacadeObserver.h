#pragma once

#include "KestrioKit/Core/Protocol/DisabledError.h"
#include "KestrioKit/SurveySession.h"

namespace KestrioKit {

/// Told what hosts can learn from the signals of `Kestrio`, which have the same names. Called on
/// the main thread, while the library holds no lock.
class FacadeObserver {
public:
    virtual ~FacadeObserver() = default;

    virtual void visitorIdentifierChanged() = 0;
    virtual void surveyHeldChanged() = 0;
    virtual void surveyShown(qint64 surveyId) = 0;
    virtual void questionAnswered(qint64 surveyId, int index) = 0;
    virtual void surveyEnded(qint64 surveyId, SurveySession::Outcome outcome) = 0;
    virtual void disabled(const DisabledError &reason) = 0;
    virtual void enabled() = 0;
};

} // namespace KestrioKit
