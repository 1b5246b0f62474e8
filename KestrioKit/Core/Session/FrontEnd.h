#pragma once

#include "KestrioKit/Core/Platform/Threads/Clock.h"
#include "KestrioKit/SurveySession.h"

#include <QString>

#include <memory>
#include <optional>

namespace KestrioKit {

/// Shows surveys over objects of one kind, such as widgets. Each component with screens registers
/// one front end when it is loaded, because the core does not depend on any screens. Used on the
/// main thread, except `add()`.
class KESTRIOKIT_EXPORT FrontEnd {
public:
    virtual ~FrontEnd();

    /// Registers a front end, which must never be destroyed. Thread-safe.
    static void add(FrontEnd *frontEnd);

    /// Returns the front end that can show surveys over `host`, or null if there is none.
    static FrontEnd *suitableFor(const QObject &host);

    /// Returns whether surveys can be shown over objects of the class of `host`.
    virtual bool suits(const QObject &host) const = 0;

    /// Returns why no survey can be shown over `host` now, or nothing if one can.
    virtual std::optional<QString> obstacle(const QObject &host) const = 0;

    /// Shows the survey over `host`. There must be no obstacle. The session ends with the survey.
    /// If the session ends for another reason, the screen disappears. `clock` must outlive both.
    virtual void show(std::unique_ptr<SurveySession> session, QObject &host,
                      const Clock &clock) = 0;
};

} // namespace KestrioKit
