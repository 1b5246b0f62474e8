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

/// In-app surveys for a Qt application: tells the survey service who the visitor is and what
/// happens, and shows the surveys that the service answers with.
///
///     auto &kestrio = Kestrio::shared();
///     kestrio.configure("environment-id");
///     kestrio.setUserIdentifier("user-7");
///     kestrio.track("Checkout Finished", [window](SurveyState state) {
///         if (state == SurveyState::surveyReady)
///             Kestrio::shared().presentSurvey(window);
///     });
///
/// Every operation may be called from any thread, returns at once and never throws. Errors are
/// logged (see `setLogHandler()`) and reported to the service; none comes back. Calls that are
/// dropped, and requests that the service refuses, are neither.
///
/// Calls made before `configure()` are dropped, except `setLocale`, `setDisableNetworkAccess`,
/// `setQueueLimit`, `setRetriesStartUp`, `setSavesPromptly`, `setAppearance`,
/// `setServiceHost` and `withdrawConsent`. Calls made while it is under way, or between `logout()` and the arrival of
/// the next visitor, are held. They run on the main thread, in their order, once there is a
/// visitor. Of events without a handler and changes of attributes, the last 1,000 are held. Held
/// calls are lost with the process.
///
/// All signals are emitted on the main thread, and while the library holds no lock: a slot may call
/// any operation.
///
/// Applications and processes:
/// - One application object may follow another, also on another thread. Records wait for the next
///   one, start-up goes on where it was, and other requests that the end of the first one cut off
///   fail when the next one starts: the handler of an event is then told `noSurvey`.
/// - `exit()` may be called on any thread; what was recorded by then is stored. Calls made while
///   the process ends, by destructors of static objects for example, are ignored.
/// - A child that is forked after `configure()` has nothing of the library's: calls in it are
///   ignored, and nothing is waited for. Qt itself waits there without end for threads that have
///   looked up names lately, so that a child should end by `_exit()` or start another program. A
///   child that is forked before `configure()` may call it itself.
/// - The library may be loaded with `dlopen()`, on any thread. It then stays until the process
///   ends: `dlclose()` does not remove it.
///
/// Name the application (`QCoreApplication::setApplicationName`) before `configure()`: the name
/// says where the library keeps its files. Several processes of one application may run at a time:
/// what one of them leaves unsent when it ends, or is killed, a running one sends within seconds,
/// or else the next start does, as long as the visitor is the same. Who saves the visitor last
/// decides who that is at the next start.
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
    Q_DISABLE_COPY_MOVE(Kestrio)

public:
    /// Why the library is disabled.
    enum class DisabledReason {
        /// A start-up or a request for another visitor has failed. It is repeated where
        /// `setRetriesStartUp()` says so.
        StartUpFailed,
        /// The service refuses this version of the library.
        Version,
        /// The service refuses the environment.
        Environment,
        /// The service gives a reason of its own.
        Service,
    };
    Q_ENUM(DisabledReason)

    /// Called once, on the main thread, with what became of an event: `disabled` for one that was
    /// dropped. It is not called if start-up never completes, when the application quits, unless
    /// another application object follows, while the process ends, and in a forked child. It is
    /// destroyed on the main thread, too.
    using TrackHandler = std::function<void(SurveyState)>;

    /// Called, and destroyed, on the main thread.
    using FetchCompletion = std::function<void()>;

    /// Takes one log line, without its end. Levels are `QtDebugMsg`, `QtInfoMsg` and, for what the
    /// host's developer should look at, `QtWarningMsg`.
    using LogHandler = std::function<void(QtMsgType level, const QString &line)>;

    /// Has the library's log lines handed to `handler` instead of printed to standard output. Null,
    /// the default, prints them. "KESTRIO_LOG_LEVEL" decides which lines there are, as before. May
    /// be called at any time, also before there is an application object.
    ///
    /// The handler is called on the thread that logs, which may be any, and on several threads at a
    /// time. It must not throw, call the library, or wait for a thread that does, since the library
    /// may hold locks meanwhile. If it nevertheless causes a log line on its own thread, that line
    /// is printed. A handler that is replaced may still be running on another thread when this
    /// returns, and is destroyed after that.
    static void setLogHandler(const LogHandler &handler);

    /// The one object there is, made on first use. It lives for the whole process.
    static Kestrio &shared();

    /// The service's number for the visitor; absent while there is none.
    std::optional<qint64> visitorIdentifier() const;

    /// Whether a survey is held: an event was answered with it, and it has not been shown yet, or
    /// is being shown.
    bool isSurveyHeld() const;

    /// Whether the library keeps off the network; false at first. While set, nothing is sent, new
    /// events, attributes and answers are dropped, and requests fail at once: starting, too, and
    /// that for good. What was queued before is kept, and sent together with the first record
    /// after it is cleared.
    bool disableNetworkAccess() const;
    void setDisableNetworkAccess(bool disable);

    /// How many records of each kind (events without a handler, attributes, answers, records of
    /// what was shown, error reports) may wait to be sent, in memory and on disk: 25 by default,
    /// from 1 to 10,000; a value outside becomes the nearest of these. Beyond it the oldest records
    /// are dropped. One log line, at most once a minute, says how many that were.
    ///
    /// To be called before `configure()`, at every start of the application with the same value:
    /// under a lower one, records that were stored before are dropped as well. Later calls are
    /// ignored. Each record takes about a kilobyte of memory while it waits.
    void setQueueLimit(int limit);

    /// Whether a start that fails for a reason that may pass is repeated until one succeeds; true
    /// by default. Such reasons are a service that cannot be reached, one that answers with a
    /// status of 3xx, 408, 429 or 5xx, and an answer that cannot be read. It is repeated after 5,
    /// 10, 30 and 60 seconds, then every minute, and as soon as the network returns; while network
    /// access is disabled it waits. What `logout()` asks for is repeated likewise.
    ///
    /// Meanwhile handlers are told `disabled`, and surveys are not shown. Events without a handler
    /// and changes of attributes are kept: where a visitor is stored they are queued as they are at
    /// other times, so that the next process delivers them; otherwise they are held until there is
    /// one. The last user identifier is held, too. `logout()` forgets what is kept, and the start
    /// that succeeds asks for an anonymous visitor.
    ///
    /// One line is logged when a start has failed, and one when it has succeeded or is given up.
    /// When false, the library stays disabled after such a failure, or holds its calls.
    bool retriesStartUp() const;
    void setRetriesStartUp(bool retries);

    /// Whether what is queued is on disk soon after the call that queued it; false at first. By
    /// default the library saves after each request that has ended, when the application stops
    /// being active, and when it ends: a process that is killed loses what it has queued since.
    /// While set, events without a handler, single attributes, answers and error reports are saved
    /// too, 200 milliseconds after the call at the latest if the disk is fast, and at most once in
    /// 200 milliseconds. The disk is written on a thread of the library's. Records that were queued
    /// before it is set are saved with the next one. May be set before `configure()`.
    bool savesPromptly() const;
    void setSavesPromptly(bool saves);

    /// Names the service's host, with or without a port: "surveys.example.com", "localhost:3000" or
    /// "[::1]:3000". A host with "localhost" in its name is reached over HTTP, by default at port
    /// 8080, every other one over HTTPS. Empty, the default, means the host that the library was
    /// built for.
    ///
    /// The first of these that is there decides: the environment variable "KESTRIO_ENVIRONMENT",
    /// the environment variable "KESTRIO_HOSTNAME", this call, the host that the library was built
    /// for. To be called before the first `configure()` of the process; later calls are ignored,
    /// and logged. A text that cannot be a host is logged by `configure()`, and nothing is sent.
    void setServiceHost(const QString &host);

    /// The colours of surveys; `SurveyAppearance::light` at first. Applies to surveys that begin
    /// afterwards; one that is shown keeps its appearance. May be set before `configure()`.
    SurveyAppearance appearance() const;
    void setAppearance(SurveyAppearance appearance);

    /// Starts: reads the stored identity, fetches the environment's configuration and a visitor.
    /// Called before the application object exists, it starts once the event loop runs.
    ///
    /// A second call is ignored, unless a visitor could not be had, or an answer about one could
    /// not be read: then it starts over. Where not even the configuration could be had, the start
    /// is repeated (see `setRetriesStartUp`). Where the service refuses it, or starts are not
    /// repeated, the library stays disabled, or holds its calls, as long as the process lives.
    /// A second call that is ignored although it names another environment is logged.
    ///
    /// An environment named "." or "..", which no path can hold, is never asked for.
    Q_INVOKABLE void configure(const QString &environment);

    /// The language wanted from the service, as an "Accept-Language" value (RFC 9110, 12.5.4); by
    /// default the system's languages.
    Q_INVOKABLE void setLocale(const QString &locale);

    /// Says who the visitor is. Visits before are attached to that user where the service allows.
    /// While starting, the last call counts, and is done before those that are held. When no answer
    /// can be had, the library is disabled until `configure()` is called again.
    ///
    /// Calls that follow immediately belong to the user where the library does not know a visitor
    /// yet: while starting, and right after `logout()`. Where it knows one, who stays until the
    /// service has answered, they still belong to that one. To change from one user to another,
    /// call `logout()` first.
    Q_INVOKABLE void setUserIdentifier(const QString &userIdentifier);

    /// Sets the visitor's attribute "!email".
    Q_INVOKABLE void setEmailAddress(const QString &email);

    /// Sets one attribute of the visitor. Queued, on disk too, and sent up to five times. Keys "."
    /// and "..", which no path can hold, are dropped.
    Q_INVOKABLE void setVisitorAttribute(const QString &key, const QString &value);
    /// Sets several attributes in one request. Queued in memory only; nothing when empty.
    Q_INVOKABLE void setVisitorAttributes(const QMap<QString, QString> &attributes);
    /// Removes attributes in one request. Queued in memory only; nothing when empty.
    Q_INVOKABLE void removeVisitorAttributes(const QStringList &keys);

    /// Reports that something happened. Blanks around the name are cut off; an empty name is no
    /// event, and its handler is not called.
    ///
    /// Without a handler the event is queued, on disk too, and sent in a batch with others. A burst
    /// of more events than `setQueueLimit()` allows loses the oldest. With a
    /// handler it is sent at once and once only, and the service may answer it with a survey.
    Q_INVOKABLE void track(const QString &eventName, const TrackHandler &handler = {});

    /// The same, but `handler` is not called once `context` has been destroyed. The event is
    /// tracked in any case. The handler runs on the main thread, whatever thread `context` belongs
    /// to; destroying a context on another thread does not wait for a handler that is running. A
    /// null `context` counts as destroyed. What the handler captures is kept until the event has
    /// been answered.
    void track(const QString &eventName, const QObject *context, const TrackHandler &handler);

    /// Shows the survey that an event was answered with over the window of `from`, until the
    /// visitor has finished or closed it; then it is held no more. Logs "No survey found." when
    /// none is held.
    ///
    /// `from` is an object that a linked component can show surveys over: a `QWidget` with
    /// `KestrioKit::Widgets`.
    ///
    /// While a survey is up, the window under it gets no input and no actions of assistive
    /// technology, and the focus goes back where it was when it ends. The visitor's keys and taps
    /// count once the survey has come up, which takes 0.6 seconds, or no time where the style does
    /// without animations. A question is reported seen once the window shows it; a minimized
    /// window does not.
    ///
    /// A survey ends in one of these ways. Whichever it is, what was answered is reported once,
    /// when it ends:
    /// - The visitor has come to its last page, which is shown for a second. Nothing else is
    ///   reported.
    /// - The visitor closes it: with its close button, with Escape, or with a tap beside it.
    /// - The window is closed or hidden, and not shown again within two seconds. Shown again by
    ///   then, with other flags or inside of another window (a dock, a tab), it continues.
    /// - The window is destroyed, or the application quits.
    /// In all but the first, "closed" is reported, too, with the question that it was at; on
    /// the last page, without one.
    ///
    /// The survey looks the same in every host: neither style sheets nor a style or widget font
    /// reach it, and the palette does only with `SurveyAppearance::system`. Its text has the family
    /// of the application's font, and grows with it above 10 points. It keeps its own language,
    /// whatever arrives meanwhile.
    ///
    /// Nothing is shown, and the survey stays held, when `from` is null or has been destroyed, no
    /// linked component can show a survey over it, its window is not shown, another survey is up or
    /// waits for its hidden window, or the survey has no questions; that is logged, and not
    /// reported. Meant for the main thread; from another one the survey is shown a little later,
    /// and `from` must still exist when this returns. Needs a `QApplication`.
    ///
    /// Over a window with native child windows, such as those of `QWidget::createWindowContainer`,
    /// the survey is a native window itself, and what is behind it stands still meanwhile.
    Q_INVOKABLE void presentSurvey(QObject *from);

    /// Fetches that survey and shows it like `presentSurvey(QObject *)`. `fetchCompletion` is
    /// called when it has come, just before it is shown: never where it cannot be had, nor for
    /// calls that are held. When it ends, the survey held from an event,
    /// if any, is held no more either.
    Q_INVOKABLE void presentSurvey(qint64 surveyId, QObject *from,
                                   const FetchCompletion &fetchCompletion = {});

    /// The same, but `fetchCompletion` is not called once `context` has been destroyed; see
    /// `track()` with a context. The survey is shown in any case.
    void presentSurvey(qint64 surveyId, QObject *from, const QObject *context,
                       const FetchCompletion &fetchCompletion);

    /// Shows a built-in survey of four questions, to see how surveys look in the host. Its answers
    /// go to the service as those of survey 123. Not held while the library starts.
    Q_INVOKABLE void presentDebugSurvey(QObject *from);

    /// Receives the session of a survey that was fetched, on the main thread; destroyed there, too.
    using SessionReceiver = std::function<void(std::unique_ptr<SurveySession>)>;

    /// Begins to answer the survey that an event was answered with, for a host that draws surveys
    /// itself. The caller owns the session; when it is destroyed, the survey is held no more.
    /// Returns null when no survey is held, when another session exists, or when the survey has no
    /// questions; the reason is logged. For the main thread.
    std::unique_ptr<SurveySession> startSurvey();

    /// Fetches that survey, and begins to answer it. `receiver` is not called when the survey
    /// cannot be had, or when another session exists by then.
    void startSurvey(qint64 surveyId, const SessionReceiver &receiver);

    /// Begins to answer the built-in survey, see `presentDebugSurvey()`. Returns null when the
    /// library is disabled or not configured, or when another session exists. For the main thread.
    std::unique_ptr<SurveySession> startDebugSurvey();

    /// Forgets the visitor, and with it what is still queued, and starts afresh as an anonymous
    /// one. When that fails, the library is disabled until `configure()` is called again,
    /// or a repeated start succeeds (see `setRetriesStartUp`).
    ///
    /// Calls that follow are held until the next visitor is known, and then made for that one.
    /// After `setUserIdentifier()` they wait for that user. They are dropped, and their handlers
    /// told `disabled`, when the host logs out again before, or when the user cannot be had.
    Q_INVOKABLE void logout();

    /// Erases what the library knows, for a visitor who withdraws consent: the identity and the
    /// queued records, in memory and on this machine, the held survey and the held calls. Requests
    /// that are out are cancelled. A survey on screen goes, and a session ends, without a report.
    /// Handlers of events that had no answer yet are told `disabled`.
    ///
    /// Nothing is sent, and calls are dropped, until `configure()` is called again, which begins as
    /// on a machine that the library was never used on. Settings such as `setLocale()` remain. May
    /// be called before `configure()`: then it erases what earlier processes have left.
    ///
    /// A request that the service has received already cannot be called back. Records of other
    /// processes that run at the same time are theirs to erase. Files are removed by the time the
    /// application ends.
    Q_INVOKABLE void withdrawConsent();

    /// Calls an operation by its selector, for callers that know it only at run time: "shared",
    /// "visitorIdentifier", "disableNetworkAccess", "setDisableNetworkAccess:",
    /// "configureWithEnvironment:", "setLocale:", "setUserIdentifier:", "setEmailAddress:",
    /// "setVisitorAttributeWithKey:value:", "setVisitorAttributes:", "removeVisitorAttributes:",
    /// "trackWithEventName:handler:" (the handler a `TrackHandler`, or a null variant for none),
    /// "presentSurveyFrom:", "presentSurveyWithId:from:fetchCompletion:" (a `FetchCompletion`, or a
    /// null variant), "presentDebugSurveyFrom:", "logout". Returns the operation's result (null
    /// where it has none), or nothing for an unknown selector or arguments that do not fit, such as
    /// "abc" for a number, in which case nothing was called.
    Q_INVOKABLE std::optional<QVariant> perform(const QString &selector,
                                                const QVariantList &arguments = {});

Q_SIGNALS:
    /// The visitor is known, is another one, or is forgotten.
    void visitorIdentifierChanged();

    /// A survey is held, or is held no more.
    void surveyHeldChanged();

    /// The visitor has seen the first question of a survey. `surveyId` is the service's number for
    /// the survey, 0 if it has none; so it is below.
    void surveyShown(qint64 surveyId);

    /// The visitor has answered the question at `index` of the survey's list.
    void questionAnswered(qint64 surveyId, int index);

    /// A survey is over, whichever way it ended. Comes once for each survey that was begun, also
    /// when its session is destroyed, when the application quits and after `withdrawConsent()`. Its
    /// screen may still be fading out, and its session still exists: to present another survey,
    /// wait until control returns to the event loop and `surveyHeldChanged` was emitted.
    void surveyEnded(qint64 surveyId, SurveySession::Outcome outcome);

    /// The library has been disabled: handlers of events are told `SurveyState::disabled`.
    /// `description` says why, for the host's developer. Not emitted for
    /// `setDisableNetworkAccess()` and `withdrawConsent()`.
    void disabled(Kestrio::DisabledReason reason, const QString &description);

    /// The library is not disabled any more: start-up has succeeded after a failure, or
    /// `configure()` has begun again after one.
    void enabled();

    void disableNetworkAccessChanged();
    void retriesStartUpChanged();
    void savesPromptlyChanged();

private:
    QVariant visitorIdentifierValue() const;

    explicit Kestrio(std::shared_ptr<KestrioKit::KestrioCore> core);
    ~Kestrio() override;

    std::shared_ptr<KestrioKit::KestrioCore> m_core;
};
