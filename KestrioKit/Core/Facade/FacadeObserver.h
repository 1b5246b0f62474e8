#pragma once

#include "KestrioKit/Core/Protocol/DisabledError.h"
#include "KestrioKit/SurveySession.h"

namespace KestrioKit {

/// Receives what the signals of `Kestrio` report; the functions have the names of the signals. They
/// are called on the main thread, while the library holds no lock.
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
