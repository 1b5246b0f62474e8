#pragma once

#include "KestrioKit/Core/Platform/Threads/Clock.h"
#include "KestrioKit/SurveySession.h"

#include <QString>

#include <memory>
#include <optional>

namespace KestrioKit {

/// Shows surveys over objects of one kind, such as widgets. Each library of screens has one, and
/// registers it when it is loaded; the core knows no screens otherwise. For the main thread, but
/// for `add()`.
class KESTRIOKIT_EXPORT FrontEnd {
public:
    virtual ~FrontEnd();

    /// Registers a front end, which is never destroyed. Thread-safe.
    static void add(FrontEnd *frontEnd);

    /// The front end that can show surveys over that object; null when there is none.
    static FrontEnd *suitableFor(const QObject &host);

    /// Whether surveys can be shown over objects of that class.
    virtual bool suits(const QObject &host) const = 0;

    /// Why no survey can be shown over `host` now; absent when one can.
    virtual std::optional<QString> obstacle(const QObject &host) const = 0;

    /// Shows the survey over `host`, for which there is no obstacle. The session ends with the
    /// survey, and the screen goes when the session ends otherwise. `clock` outlives both.
    virtual void show(std::unique_ptr<SurveySession> session, QObject &host,
                      const Clock &clock) = 0;
};

} // namespace KestrioKit
