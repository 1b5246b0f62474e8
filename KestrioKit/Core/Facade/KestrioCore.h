#pragma once

#include "KestrioKit/Core/Facade/EventTracking.h"
#include "KestrioKit/Core/Facade/FacadeObserver.h"
#include "KestrioKit/Core/Facade/StartUp.h"
#include "KestrioKit/Core/Facade/SurveyPresentation.h"
#include "KestrioKit/Core/Platform/LibraryContext.h"
#include "KestrioKit/Core/Protocol/ResponseConfig.h"
#include "KestrioKit/Core/Protocol/ResponseVisitors.h"
#include "KestrioKit/Core/Service/KestrioService.h"
#include "KestrioKit/Core/Survey/Survey.h"

#include <QMap>
#include <QPointer>
#include <QStringList>

#include <atomic>
#include <functional>
#include <memory>
#include <optional>

namespace KestrioKit {

/// The implementation of `Kestrio`. Each public operation checks whether calls may run now, and
/// forwards to the network service. Thread-safe, except where `Kestrio` names the main thread.
class KestrioCore final : public std::enable_shared_from_this<KestrioCore> {
public:
    using TrackHandler = EventTracking::Handler;
    using SharedHandler = EventTracking::SharedHandler;
    using FetchCompletion = std::function<void()>;
    using SharedCompletion = std::shared_ptr<const FetchCompletion>;
    using SessionReceiver = std::function<void(std::unique_ptr<SurveySession>)>;

    /// Returns the instance behind `Kestrio::shared()`, which uses the machine's own clock, network
    /// and files.
    static const std::shared_ptr<KestrioCore> &shared();

    /// Creates an instance that uses the clock, network and files of `context`.
    static std::shared_ptr<KestrioCore> make(const LibraryContext &context);

    /// Sets the observer, which must outlive this object.
    void setObserver(FacadeObserver *observer) { m_observer = observer; }

    const std::shared_ptr<KestrioService> &api() const { return m_api; }

    /// Returns the held survey, if there is one.
    std::optional<Survey> survey() const { return m_tracking->survey(); }
    void setSurvey(std::optional<Survey> survey) { m_tracking->setSurvey(std::move(survey)); }

    /// Returns the configuration from the last successful request, if there was one.
    std::optional<ResponseConfig> config() const { return m_startUp->config(); }

    // The operations of `Kestrio`, documented there.
    bool disableNetworkAccess() const;
    void setDisableNetworkAccess(bool disable);
    void setQueueLimit(int limit);
    void setServiceHost(const QString &host);
    bool retriesStartUp() const { return m_startUp->retries(); }
    void setRetriesStartUp(bool retries) { m_startUp->setRetries(retries); }
    bool savesPromptly() const { return m_api->savesPromptly(); }
    void setSavesPromptly(bool saves) { m_api->setSavesPromptly(saves); }
    SurveyAppearance appearance() const { return m_appearance; }
    void setAppearance(SurveyAppearance appearance) { m_appearance = appearance; }
    void configure(const QString &environment);
    void setLocale(const QString &locale);
    void setUserIdentifier(const QString &userIdentifier);
    void setEmailAddress(const QString &email);
    void setVisitorAttribute(const QString &key, const QString &value);
    void setVisitorAttributes(const QMap<QString, QString> &attributes);
    void removeVisitorAttributes(const QStringList &keys);
    void track(const QString &eventName, const TrackHandler &handler);
    void presentSurvey(const QPointer<QObject> &from);
    void presentSurvey(qint64 surveyId, const QPointer<QObject> &from,
                       const FetchCompletion &fetchCompletion);
    void presentDebugSurvey(const QPointer<QObject> &from);
    std::unique_ptr<SurveySession> startSurvey();
    /// `isWanted` is called on the main thread when the survey has arrived. If it returns false,
    /// the survey does not begin.
    void startSurvey(qint64 surveyId, const std::function<bool()> &isWanted,
                     const SessionReceiver &receiver);
    std::unique_ptr<SurveySession> startDebugSurvey();
    void logout();
    void withdrawConsent();

private:
    using Announcement = std::function<void(FacadeObserver &observer)>;

    explicit KestrioCore(const LibraryContext &context);
    void connectParts();
    /// Calls the observer, if there is one. Must be called on the main thread.
    void announce(const Announcement &announcement) const;

    /// A public call that needs a visitor.
    struct Call {
        using Operation = std::function<void(KestrioCore &)>;

        HeldCall::Kind kind;
        Operation operation;
        /// Runs instead of `operation` if the call was held. If empty, the call is repeated.
        Operation later = {};
        /// Runs when the call is dropped; may be empty.
        Block dropped = {};
    };

    /// Runs the call, holds it, queues its record, or drops it.
    void whenReady(const Call &call);
    HeldCall held(const Call &call);
    /// Fetches the survey and passes it to `use` on the main thread. Does not call `use` if that
    /// fails.
    void fetch(qint64 surveyId, const std::function<void(const Survey &)> &use);
    void presentSpecifiedSurvey(const Survey &survey, const QPointer<QObject> &from);
    std::unique_ptr<SurveySession> startSession(const Survey &survey);
    PresentationContext presentationContext(const Survey &survey);
    SessionObserver sessionObserver(qint64 surveyId);
    std::function<void(const std::optional<Error> &error)> handlingErrors();
    SimpleCompletion completion();
    void handleError(const std::optional<Error> &error);
    void reportError(const Error &error);

    const Clock &m_clock;
    std::shared_ptr<KestrioService> m_api;
    std::shared_ptr<StartUp> m_startUp;
    std::shared_ptr<EventTracking> m_tracking;
    std::atomic<FacadeObserver *> m_observer = nullptr;
    std::atomic<SurveyAppearance> m_appearance = SurveyAppearance::light;
};

} // namespace KestrioKit
