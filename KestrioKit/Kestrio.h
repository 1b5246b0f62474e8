#pragma once

#include <KestrioKit/KestrioKitExport.h>
#include <KestrioKit/SurveyAppearance.h>
#include <KestrioKit/SurveySession.h>
#include <KestrioKit/SurveyState.h>

#include <QMap>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <functional>
#include <memory>
#include <optional>

namespace KestrioKit {
class KestrioCore;
}

/// In-app surveys for a Qt application. Tells the survey service who the visitor is and which
/// events happen, and shows the surveys that the service returns.
///
///     auto &kestrio = Kestrio::shared();
///     kestrio.configure("environment-id");
///     kestrio.setUserIdentifier("user-7");
///     kestrio.track("Checkout Finished", [window](SurveyState state) {
///         if (state == SurveyState::surveyReady)
///             Kestrio::shared().presentSurvey(window);
///     });
///
/// Every operation returns without waiting for the network and never throws. Every operation is
/// thread-safe unless its comment names the main thread, which is the thread of the application
/// object. The library logs errors (see `setLogHandler()`) and reports them to the service. It does
/// not return them. It neither logs nor reports dropped calls and requests that the service
/// refuses.
///
/// Calls made before `configure()` are dropped, except `setLocale`, `setDisableNetworkAccess`,
/// `setQueueLimit`, `setRetriesStartUp`, `setSavesPromptly`, `setAppearance`, `setServiceHost` and
/// `withdrawConsent`. Calls made during start-up, or between `logout()` and the arrival of the next
/// visitor, are held. They run on the main thread, in the order of the calls, once there is a
/// visitor. The library holds at most 1,000 events without a handler and attribute changes, and
/// drops the oldest beyond that. Held calls are lost when the process ends.
///
/// All signals are emitted on the main thread. The library holds no lock meanwhile, so a slot may
/// call any operation.
///
/// Applications and processes:
/// - One application object may follow another, also on another thread. Queued records wait for the
///   next one, and start-up continues where it was. Other requests that were in flight when the
///   first one ended fail when the next one starts. If such a request sent an event, its handler
///   then receives `noSurvey`.
/// - `exit()` may be called on any thread. Everything recorded by then is stored. Calls made while
///   the process ends, for example by destructors of static objects, are ignored.
/// - In a child process that is forked after `configure()`, calls are ignored and the library waits
///   for nothing. Qt itself may wait there forever for threads that have recently looked up host
///   names. Such a child should therefore end with `_exit()` or start another program. A child that
///   is forked before `configure()` may call it itself.
/// - The library may be loaded with `dlopen()`, on any thread. It then stays loaded until the
///   process ends: `dlclose()` does not unload it.
///
/// Set the application's name (`QCoreApplication::setApplicationName`) before `configure()`,
/// because the library's folder is named after it. Several processes of one application may run at
/// a time. If a process ends or is killed, a running process with the same visitor sends its unsent
/// records within seconds. If none is running, the next start with the same visitor sends them. The
/// process that saves its visitor last decides who the visitor is at the next start.
class KESTRIOKIT_EXPORT Kestrio final : public QObject {
    Q_OBJECT
    Q_PROPERTY(
        QVariant visitorIdentifier READ visitorIdentifierValue NOTIFY visitorIdentifierChanged)
    Q_PROPERTY(bool surveyHeld READ isSurveyHeld NOTIFY surveyHeldChanged)
    Q_PROPERTY(bool disableNetworkAccess READ disableNetworkAccess WRITE setDisableNetworkAccess
                   NOTIFY disableNetworkAccessChanged)
    Q_PROPERTY(bool retriesStartUp READ retriesStartUp WRITE setRetriesStartUp NOTIFY
                   retriesStartUpChanged)
    Q_PROPERTY(
        bool savesPromptly READ savesPromptly WRITE setSavesPromptly NOTIFY savesPromptlyChanged)
    Q_PROPERTY(
        SurveyAppearance appearance READ appearance WRITE setAppearance NOTIFY appearanceChanged)
    Q_DISABLE_COPY_MOVE(Kestrio)

public:
    /// Why the library is disabled.
    enum class DisabledReason {
        /// Start-up or a request for another visitor has failed. `setRetriesStartUp()` says when
        /// the library retries.
        StartUpFailed,
        /// The service refuses this version of the library.
        Version,
        /// The service refuses the environment.
        Environment,
        /// The service gives a reason of its own.
        Service,
    };
    Q_ENUM(DisabledReason)

    /// Called once, on the main thread, with the outcome of an event. A dropped event has the
    /// outcome `disabled`. The handler is not called if start-up never completes, if the
    /// application quits and no other application object follows, while the process ends, or in a
    /// forked child process. It is destroyed on the main thread. It must not throw.
    using TrackHandler = std::function<void(SurveyState)>;

    /// Called once the survey has been fetched. It is called and destroyed on the main thread. It
    /// must not throw.
    using FetchCompletion = std::function<void()>;

    /// Receives one log line, without a line terminator. The levels are `QtDebugMsg`, `QtInfoMsg`
    /// and `QtWarningMsg`. Warnings are lines that the host's developer should look at. The handler
    /// must not throw.
    using LogHandler = std::function<void(QtMsgType level, const QString &line)>;

    /// Passes the library's log lines to `handler` instead of printing them to standard output. An
    /// empty handler, the default, prints them. The environment variable "KESTRIO_LOG_LEVEL" still
    /// decides which diagnostic lines are logged. May be called at any time, also before there is
    /// an application object. Thread-safe.
    ///
    /// The handler is called on the thread that logs. This may be any thread, and several at a
    /// time. The handler must not throw, call the library, or wait for a thread that calls it,
    /// because the library may hold locks meanwhile. If the handler causes a log line on its own
    /// thread, that line is printed. A replaced handler may still be running on another thread when
    /// this function returns. It is destroyed after that.
    static void setLogHandler(const LogHandler &handler);

    /// Returns the only instance, which is created on first use and lives as long as the process.
    static Kestrio &shared();

    /// Returns the number by which the service knows the visitor, or nothing while there is no
    /// visitor.
    std::optional<qint64> visitorIdentifier() const;

    /// Returns whether a survey is held. A survey is held from the response that contains it until
    /// it has been shown and has ended.
    bool isSurveyHeld() const;

    /// Whether the library stays off the network; false by default. While set, nothing is sent. New
    /// events, attributes and answers are dropped. Requests fail immediately. Start-up fails, too,
    /// and is not retried; a start-up that is already being retried waits instead. Records that
    /// were queued before are kept. They are sent with the first record that is queued after
    /// network access is allowed again.
    bool disableNetworkAccess() const;
    void setDisableNetworkAccess(bool disable);

    /// Sets how many records of each kind may wait to be sent, in memory and on disk. The kinds are
    /// events without a handler, attributes, answers, records of what was shown, and error reports.
    /// The default is 25, the range is 1 to 10,000, and other values are clamped to it. When the
    /// limit is exceeded, the oldest records are dropped. A log line, at most one per minute, says
    /// how many.
    ///
    /// Call this function before `configure()`, with the same value at every start of the
    /// application. A lower value than before also drops stored records. Calls after `configure()`
    /// are ignored. Each waiting record takes about a kilobyte of memory.
    void setQueueLimit(int limit);

    /// Whether a start-up that fails for a temporary reason is retried until it succeeds; true by
    /// default. Temporary reasons are: the service cannot be reached, it responds with status 3xx,
    /// 408, 429 or 5xx, or its response cannot be read. The library retries after 5, 10, 30 and 60
    /// seconds, then every minute, and as soon as the network returns. It does not retry while
    /// network access is disabled. The request that `logout()` makes is retried in the same way.
    ///
    /// While start-up is being retried, handlers receive `disabled` and surveys are not shown.
    /// Events without a handler and attribute changes are kept. If a visitor is stored, they are
    /// queued as usual, and the next process delivers them. Otherwise they are held until there is
    /// a visitor. The last user identifier is held, too. `logout()` discards everything that is
    /// kept, and the start-up that succeeds then requests an anonymous visitor.
    ///
    /// The library logs one line when start-up has failed, and one when it has succeeded or is
    /// given up. When false, the library stays disabled after such a failure, or keeps holding
    /// calls.
    bool retriesStartUp() const;
    void setRetriesStartUp(bool retries);

    /// Whether queued records are saved soon after the call that queues them; false by default. By
    /// default the library saves after each completed request, when the application becomes
    /// inactive, and when it ends. A process that is killed loses the records queued since then.
    ///
    /// While set, events without a handler, single attributes, answers and error reports are also
    /// saved within 200 milliseconds of the call if the disk is fast, and at most once in 200
    /// milliseconds. One of the library's threads writes to the disk. Records queued before it is
    /// set are saved with the next one. May be set before `configure()`.
    bool savesPromptly() const;
    void setSavesPromptly(bool saves);

    /// Sets the service's host, with or without a port: "surveys.example.com", "localhost:3000" or
    /// "[::1]:3000". A host whose name contains "localhost" is reached over HTTP, by default at
    /// port 8080. Every other host is reached over HTTPS. Empty, the default, means the host that
    /// the library was built for.
    ///
    /// The first of these that is set applies: the environment variable "KESTRIO_ENVIRONMENT", the
    /// environment variable "KESTRIO_HOSTNAME", this call, the host that the library was built for.
    /// Call this function before the first `configure()` of the process. Later calls are ignored
    /// and logged. If the text is not a valid host, `configure()` logs that, and nothing is sent.
    void setServiceHost(const QString &host);

    /// The colours of surveys; `SurveyAppearance::light` by default. A change applies to surveys
    /// that begin afterwards. A survey on screen keeps its appearance. May be set before
    /// `configure()`.
    SurveyAppearance appearance() const;
    void setAppearance(SurveyAppearance appearance);

    /// Starts the library: reads the stored identity, then fetches the environment's configuration
    /// and a visitor. If there is no application object yet, start-up begins when the event loop
    /// runs.
    ///
    /// A second call is ignored, unless a request for a visitor has failed or its response could
    /// not be read. Start-up then begins again. If the request for the configuration fails,
    /// start-up is retried (see `setRetriesStartUp`). If the service refuses the request, or
    /// retries are off, the library stays disabled, or keeps holding calls, until the process ends.
    /// A second call that is ignored although it names another environment is logged.
    ///
    /// The environments "." and "..", which cannot be part of a URL path, are never requested.
    Q_INVOKABLE void configure(const QString &environment);

    /// Sets the language to request from the service, as an "Accept-Language" value (RFC 9110,
    /// 12.5.4). The default is the system's languages.
    Q_INVOKABLE void setLocale(const QString &locale);

    /// Identifies the visitor as a user of the host. The service attaches earlier visits to that
    /// user where it allows this. During start-up the last call counts, and it takes effect before
    /// the held calls run. If the request fails, the library is disabled until `configure()` is
    /// called again. A request that is part of start-up is retried (see `setRetriesStartUp`).
    ///
    /// If the library does not know a visitor yet (during start-up and right after `logout()`), the
    /// calls that follow belong to the new user. If it knows a visitor, that visitor stays until
    /// the service has responded, and calls made until then still belong to that visitor. To change
    /// from one user to another, call `logout()` first.
    Q_INVOKABLE void setUserIdentifier(const QString &userIdentifier);

    /// Sets the visitor's attribute "!email".
    Q_INVOKABLE void setEmailAddress(const QString &email);

    /// Sets one attribute of the visitor. It is queued in memory and on disk, and sent up to five
    /// times. The keys "." and "..", which cannot be part of a URL path, are dropped.
    Q_INVOKABLE void setVisitorAttribute(const QString &key, const QString &value);
    /// Sets several attributes in one request, which is queued in memory only. Does nothing if
    /// `attributes` is empty.
    Q_INVOKABLE void setVisitorAttributes(const QMap<QString, QString> &attributes);
    /// Removes attributes in one request, which is queued in memory only. Does nothing if `keys` is
    /// empty.
    Q_INVOKABLE void removeVisitorAttributes(const QStringList &keys);

    /// Reports that an event has happened. Whitespace around the name is removed. An empty name is
    /// ignored, and its handler is not called.
    ///
    /// Without a handler, the event is queued in memory and on disk, and sent in a batch with
    /// others. If more events than `setQueueLimit()` allows are waiting, the oldest are dropped.
    /// With a handler, the event is sent immediately and only once, and the service may return a
    /// survey.
    Q_INVOKABLE void track(const QString &eventName, const TrackHandler &handler = {});

    /// Tracks an event like the overload above, but does not call `handler` after `context` has
    /// been destroyed. The event is tracked in any case. The handler runs on the main thread,
    /// whichever thread `context` belongs to. Destroying `context` on another thread does not wait
    /// for a running handler. A null `context` counts as destroyed. The captures of the handler
    /// live until the service has responded to the event.
    void track(const QString &eventName, const QObject *context, const TrackHandler &handler);

    /// Shows the held survey (see `isSurveyHeld()`) over the window of `from`, until the visitor
    /// has finished or closed it. The survey is then no longer held. Logs "No survey found." if no
    /// survey is held.
    ///
    /// `from` is an object that a linked component can show surveys over. `KestrioKit::Widgets`
    /// shows them over a `QWidget` and needs a `QApplication`. `KestrioKit::Quick` shows them over
    /// a `QQuickWindow` or the window of a `QQuickItem`, and needs a `QGuiApplication`. Intended
    /// for the main thread: on another thread the survey is shown a little later, and `from` must
    /// still exist when this function returns.
    ///
    /// While a survey is on screen, the window under it receives no input and no actions of
    /// assistive technology. The focus returns to its previous place when the survey ends. Keys and
    /// taps count once the survey has appeared. This takes 0.6 seconds, or no time if the style has
    /// animations turned off. A question is reported as seen once the window shows it; a minimized
    /// window does not.
    ///
    /// A survey ends in one of the following ways. In each case the answers are reported once, when
    /// the survey ends:
    /// - The visitor has reached the last page, which is shown for a second. Nothing else is
    ///   reported.
    /// - The visitor closes it with its close button, with Escape, or with a tap beside it.
    /// - The window is closed or hidden, and not shown again within two seconds. If it is shown
    ///   again by then, also with other flags or inside another window (a dock, a tab), the survey
    ///   continues.
    /// - The window is destroyed, or the application quits.
    ///
    /// In all cases but the first, "closed" is reported as well, with the current question, or
    /// without one on the last page.
    ///
    /// The survey looks the same in every host. Style sheets, styles and widget fonts do not affect
    /// it, and the palette does only with `SurveyAppearance::system`. Its text uses the family of
    /// the application's font, and grows with that font above 10 points. The language of a survey
    /// on screen never changes.
    ///
    /// Nothing is shown, and the survey stays held, if `from` is null or destroyed, if no linked
    /// component can show a survey over it, if its window is not shown, if another survey is on
    /// screen or waits for its hidden window, or if the survey has no questions. The reason is
    /// logged and not reported to the service.
    ///
    /// Over a window with native child windows, such as those of `QWidget::createWindowContainer`,
    /// the survey is itself a native window, and the content behind it does not update meanwhile.
    Q_INVOKABLE void presentSurvey(QObject *from);

    /// Fetches the survey with the number `surveyId` and shows it like `presentSurvey(QObject *)`.
    /// `fetchCompletion` is called when the survey has arrived, just before it is shown. It is not
    /// called if the request fails, nor for a held call. When this survey ends, a survey that was
    /// held before is no longer held either.
    Q_INVOKABLE void presentSurvey(qint64 surveyId, QObject *from,
                                   const FetchCompletion &fetchCompletion = {});

    /// Shows a survey like the overload above, but does not call `fetchCompletion` after `context`
    /// has been destroyed; see `track()` with a context. The survey is shown in any case.
    void presentSurvey(qint64 surveyId, QObject *from, const QObject *context,
                       const FetchCompletion &fetchCompletion);

    /// Shows a built-in survey of four questions, for checking how surveys look in the host. Its
    /// answers are submitted to the service as answers to survey 123. The call is not held during
    /// start-up.
    Q_INVOKABLE void presentDebugSurvey(QObject *from);

    /// Receives and owns the session of a fetched survey. It is called and destroyed on the main
    /// thread. It must not throw.
    using SessionReceiver = std::function<void(std::unique_ptr<SurveySession>)>;

    /// Begins the held survey, for a host that draws surveys itself. The caller owns the session.
    /// When the session is destroyed, the survey is no longer held. Returns null if no survey is
    /// held, if another session exists, or if the survey has no questions; the reason is logged.
    /// Must be called on the main thread.
    std::unique_ptr<SurveySession> startSurvey();

    /// Fetches the survey with the number `surveyId` and begins it. `receiver` is not called if the
    /// request fails, or if the survey cannot begin: see `startSurvey()`.
    void startSurvey(qint64 surveyId, const SessionReceiver &receiver);

    /// Fetches a survey like the overload above. If `context` has been destroyed when the survey
    /// arrives, the survey does not begin and `receiver` is not called; see `track()` with a
    /// context.
    void startSurvey(qint64 surveyId, const QObject *context, const SessionReceiver &receiver);

    /// Begins the built-in survey, see `presentDebugSurvey()`. Returns null if the library is
    /// disabled or not configured, or if another session exists. Must be called on the main thread.
    std::unique_ptr<SurveySession> startDebugSurvey();

    /// Forgets the visitor, discards the queued records, and requests a new anonymous visitor. If
    /// that request fails, the library is disabled until `configure()` is called again or a retry
    /// succeeds (see `setRetriesStartUp`).
    ///
    /// Calls made after `logout()` are held until the next visitor is known, and then run for that
    /// visitor. If `setUserIdentifier()` is called, they wait for that user. They are dropped, and
    /// their handlers receive `disabled`, if the host logs out again before that, or if the request
    /// for the user fails.
    Q_INVOKABLE void logout();

    /// Erases all data about the visitor, for a visitor who withdraws consent: the identity and the
    /// queued records, in memory and on this machine, the held survey and the held calls. Requests
    /// in flight are cancelled. A survey on screen disappears, and a session ends, without a
    /// report. Handlers of events without a response yet receive `disabled`.
    ///
    /// Nothing is sent and calls are dropped until `configure()` is called again. The library then
    /// starts as on a machine where it was never used. Settings such as `setLocale()` remain. May
    /// be called before `configure()`, to erase the data of earlier processes.
    ///
    /// A request that the service has already received cannot be recalled. Other processes that run
    /// at the same time keep their records. Files are removed by the time the application ends.
    Q_INVOKABLE void withdrawConsent();

    /// Calls an operation by its selector, for callers that know it only at run time. The selectors
    /// are "shared", "visitorIdentifier", "disableNetworkAccess", "setDisableNetworkAccess:",
    /// "configureWithEnvironment:", "setLocale:", "setUserIdentifier:", "setEmailAddress:",
    /// "setVisitorAttributeWithKey:value:", "setVisitorAttributes:", "removeVisitorAttributes:",
    /// "trackWithEventName:handler:", "presentSurveyFrom:",
    /// "presentSurveyWithId:from:fetchCompletion:", "presentDebugSurveyFrom:" and "logout". A
    /// handler argument is a `TrackHandler` or a `FetchCompletion`; a null variant means none.
    ///
    /// Returns the result of the operation, or a null variant if it has none. Returns nothing, and
    /// calls nothing, for an unknown selector or for arguments that do not fit, such as "abc" for a
    /// number.
    Q_INVOKABLE std::optional<QVariant> perform(const QString &selector,
                                                const QVariantList &arguments = {});

Q_SIGNALS:
    /// Emitted when the visitor becomes known, changes, or is forgotten.
    void visitorIdentifierChanged();

    /// Emitted when `isSurveyHeld()` changes.
    void surveyHeldChanged();

    /// Emitted when the visitor has seen the first question of a survey. Here and below, `surveyId`
    /// is the service's number for the survey, or 0 if it has none.
    void surveyShown(qint64 surveyId);

    /// Emitted when the visitor has answered the question at `index` in the survey's list of
    /// questions.
    void questionAnswered(qint64 surveyId, int index);

    /// Emitted once for each survey that has begun, however it ends: also when its session is
    /// destroyed, when the application quits, and after `withdrawConsent()`. Its screen may still
    /// be fading out, and its session still exists. To present another survey, wait until control
    /// has returned to the event loop and `surveyHeldChanged` was emitted.
    void surveyEnded(qint64 surveyId, SurveySession::Outcome outcome);

    /// Emitted when the library is disabled. Handlers of events then receive
    /// `SurveyState::disabled`. `description` gives the reason, for the host's developer. Not
    /// emitted for `setDisableNetworkAccess()` and `withdrawConsent()`.
    void disabled(Kestrio::DisabledReason reason, const QString &description);

    /// Emitted when the library is no longer disabled: start-up has succeeded after a failure, or
    /// `configure()` has begun again after one.
    void enabled();

    /// Emitted when `disableNetworkAccess` changes.
    void disableNetworkAccessChanged();
    /// Emitted when `retriesStartUp` changes.
    void retriesStartUpChanged();
    /// Emitted when `savesPromptly` changes.
    void savesPromptlyChanged();
    /// Emitted when `appearance` changes.
    void appearanceChanged();

private:
    QVariant visitorIdentifierValue() const;

    explicit Kestrio(std::shared_ptr<KestrioKit::KestrioCore> core);
    ~Kestrio() override;

    std::shared_ptr<KestrioKit::KestrioCore> m_core;
};
