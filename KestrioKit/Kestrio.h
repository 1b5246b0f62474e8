#pragma once

#include <KestrioKit/KestrioKitExport.h>
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
/// happens, and receives the surveys that the service answers with.
///
///     auto &kestrio = Kestrio::shared();
///     kestrio.configure("environment-id");
///     kestrio.setUserIdentifier("user-7");
///     kestrio.track("Checkout Finished");
///
/// Every operation may be called from any thread, returns at once and never throws. What cannot be
/// done is logged to standard output and reported to the service; nothing comes back as an error.
/// Calls made before `configure()` are dropped, but for `setLocale` and `setDisableNetworkAccess`.
/// Calls made while it is under way are held and run on the main thread, in their order, once there
/// is a visitor.
///
/// Name the application (`QCoreApplication::setApplicationName`) before `configure()`: the name
/// says where the library keeps its files.
class KESTRIOKIT_EXPORT Kestrio final : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool disableNetworkAccess READ disableNetworkAccess WRITE setDisableNetworkAccess)
    Q_DISABLE_COPY_MOVE(Kestrio)

public:
    /// Called once, on the main thread, with what became of an event. Never called for what is not
    /// sent at all: while starting does not come to an end, right after `logout()`, and when the
    /// application quits. It is destroyed on the main thread, too.
    using TrackHandler = std::function<void(SurveyState)>;

    /// The one object there is, made on first use. It lives for the whole process.
    static Kestrio &shared();

    /// The service's number for the visitor; absent while there is none.
    std::optional<qint64> visitorIdentifier() const;

    /// Whether the library keeps off the network; false at first. While set, nothing is sent, new
    /// events, attributes and answers are dropped, and requests fail at once: starting, too, and
    /// that for good. What was queued before is kept, and sent together with the first record
    /// after it is cleared.
    bool disableNetworkAccess() const;
    void setDisableNetworkAccess(bool disable);

    /// Starts: reads the stored identity, fetches the environment's configuration and a visitor.
    /// Called before the application object exists, it starts once the event loop runs.
    ///
    /// A second call is ignored, unless the service has refused a visitor or a user, or did not
    /// answer: then it starts over. Where not even the configuration could be had, the library
    /// stays disabled as long as the process lives.
    Q_INVOKABLE void configure(const QString &environment);

    /// The language wanted from the service, as an "Accept-Language" value (RFC 9110, 12.5.4); by
    /// default the system's languages.
    Q_INVOKABLE void setLocale(const QString &locale);

    /// Says who the visitor is. Visits before are attached to that user where the service allows.
    /// When the request fails, the library is disabled until `configure()` is called again.
    Q_INVOKABLE void setUserIdentifier(const QString &userIdentifier);

    /// Sets the visitor's attribute "!email".
    Q_INVOKABLE void setEmailAddress(const QString &email);

    /// Sets one attribute of the visitor. Queued, on disk too, and sent up to five times.
    Q_INVOKABLE void setVisitorAttribute(const QString &key, const QString &value);
    /// Sets several attributes in one request. Queued in memory only; nothing when empty.
    Q_INVOKABLE void setVisitorAttributes(const QMap<QString, QString> &attributes);
    /// Removes attributes in one request. Queued in memory only; nothing when empty.
    Q_INVOKABLE void removeVisitorAttributes(const QStringList &keys);

    /// Reports that something happened. Blanks around the name are cut off; an empty name is no
    /// event, and its handler is not called.
    ///
    /// Without a handler the event is queued, on disk too, and sent in a batch with others. With a
    /// handler it is sent at once and once only, and the service may answer it with a survey.
    Q_INVOKABLE void track(const QString &eventName, const TrackHandler &handler = {});

    /// Forgets the visitor, and with it what is still queued, and starts afresh as an anonymous
    /// one.
    Q_INVOKABLE void logout();

    /// Calls an operation by its selector, for callers that know it only at run time: "shared",
    /// "visitorIdentifier", "disableNetworkAccess", "setDisableNetworkAccess:",
    /// "configureWithEnvironment:", "setLocale:", "setUserIdentifier:", "setEmailAddress:",
    /// "setVisitorAttributeWithKey:value:", "setVisitorAttributes:", "removeVisitorAttributes:",
    /// "trackWithEventName:handler:" (the handler a `TrackHandler`, or a null variant for none),
    /// "logout". Returns the operation's result (null where it has none), or nothing for an
    /// unknown selector or arguments that do not fit, in which case nothing was called.
    Q_INVOKABLE std::optional<QVariant> perform(const QString &selector,
                                                const QVariantList &arguments = {});

private:
    explicit Kestrio(std::shared_ptr<KestrioKit::KestrioCore> core);
    ~Kestrio() override;

    std::shared_ptr<KestrioKit::KestrioCore> m_core;
};
