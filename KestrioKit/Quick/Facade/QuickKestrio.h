#pragma once

#include "KestrioKit/Kestrio.h"
#include "KestrioKit/Quick/Facade/QuickCallback.h"
#include "KestrioKit/Quick/Facade/QuickEnums.h"

#include <QJSValue>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QtQml/qqml.h>
#include <QVariant>

#include <optional>

class QJSEngine;
class QQmlEngine;

namespace KestrioKit {

/// The QML singleton `Kestrio`: the operations, properties and signals of `::Kestrio`, which
/// documents them. Each engine on the main thread has one of these, over the one `::Kestrio` of the
/// process.
///
/// - Attributes are a JavaScript object with texts, numbers and Booleans as values. Lists are
///   arrays.
/// - Callbacks are JavaScript functions, which may be omitted, null or undefined. They are called
///   on the main thread, and never after their engine has been destroyed.
/// - Arguments of another type throw a TypeError, and the call then does nothing.
class QuickKestrio final : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(Kestrio)
    QML_SINGLETON
    Q_PROPERTY(QVariant visitorIdentifier READ visitorIdentifier NOTIFY visitorIdentifierChanged)
    Q_PROPERTY(bool surveyHeld READ isSurveyHeld NOTIFY surveyHeldChanged)
    Q_PROPERTY(bool disableNetworkAccess READ disableNetworkAccess WRITE setDisableNetworkAccess
                   NOTIFY disableNetworkAccessChanged)
    Q_PROPERTY(bool retriesStartUp READ retriesStartUp WRITE setRetriesStartUp NOTIFY
                   retriesStartUpChanged)
    Q_PROPERTY(
        bool savesPromptly READ savesPromptly WRITE setSavesPromptly NOTIFY savesPromptlyChanged)
    Q_PROPERTY(KestrioKit::QuickSurveyAppearance::Value appearance READ appearance WRITE
                   setAppearance NOTIFY appearanceChanged)
    Q_PROPERTY(
        bool reducedMotion READ reducedMotion WRITE setReducedMotion NOTIFY reducedMotionChanged)
    Q_DISABLE_COPY_MOVE(QuickKestrio)

public:
    /// See `::Kestrio::DisabledReason`.
    enum class DisabledReason {
        StartUpFailed = int(Kestrio::DisabledReason::StartUpFailed),
        Version = int(Kestrio::DisabledReason::Version),
        Environment = int(Kestrio::DisabledReason::Environment),
        Service = int(Kestrio::DisabledReason::Service),
    };
    Q_ENUM(DisabledReason)

    /// Returns the object for `engine`, which owns it. Returns null, with a warning, on other
    /// threads than the main thread.
    static QuickKestrio *create(QQmlEngine *engine, QJSEngine *scriptEngine);

    /// Returns a number, or undefined while there is no visitor.
    QVariant visitorIdentifier() const;
    bool isSurveyHeld() const;
    bool disableNetworkAccess() const;
    void setDisableNetworkAccess(bool disable);
    bool retriesStartUp() const;
    void setRetriesStartUp(bool retries);
    bool savesPromptly() const;
    void setSavesPromptly(bool saves);
    QuickSurveyAppearance::Value appearance() const;
    void setAppearance(QuickSurveyAppearance::Value appearance);

    /// Whether surveys appear, change and disappear without animations; false by default. Only this
    /// class has this property, because Qt Quick does not know the platform's preference. Set it if
    /// the visitor prefers less motion.
    bool reducedMotion() const;
    void setReducedMotion(bool isReduced);

    Q_INVOKABLE void setServiceHost(const QString &host);
    Q_INVOKABLE void setQueueLimit(int limit);
    Q_INVOKABLE void configure(const QString &environment);
    Q_INVOKABLE void setLocale(const QString &locale);
    Q_INVOKABLE void setUserIdentifier(const QString &userIdentifier);
    Q_INVOKABLE void setEmailAddress(const QString &email);
    Q_INVOKABLE void setVisitorAttribute(const QString &key, const QString &value);
    Q_INVOKABLE void setVisitorAttributes(const QJSValue &attributes);
    Q_INVOKABLE void removeVisitorAttributes(const QStringList &keys);

    /// `callback` receives a value of `SurveyState`.
    Q_INVOKABLE void track(const QString &eventName, const QJSValue &callback = {});

    /// `windowOrItem` is a window, an item in a window, or a `SurveyOverlay`.
    Q_INVOKABLE void presentSurvey(QObject *windowOrItem);
    Q_INVOKABLE void presentSurvey(qint64 surveyId, QObject *windowOrItem,
                                   const QJSValue &callback = {});
    Q_INVOKABLE void presentDebugSurvey(QObject *windowOrItem);

    /// Returns a session or null. JavaScript owns the session: it ends when it is destroyed or
    /// when nothing refers to it any longer.
    Q_INVOKABLE SurveySession *startSurvey();
    /// `callback` receives the session.
    Q_INVOKABLE void startSurvey(qint64 surveyId, const QJSValue &callback);
    Q_INVOKABLE SurveySession *startDebugSurvey();

    Q_INVOKABLE void logout();
    Q_INVOKABLE void withdrawConsent();

    /// Returns undefined where `::Kestrio::perform()` returns nothing, and null for an operation
    /// without a result. A callback is a function here, too.
    Q_INVOKABLE QVariant perform(const QString &selector, const QJSValue &arguments = {});

Q_SIGNALS:
    void visitorIdentifierChanged();
    void surveyHeldChanged();
    void surveyShown(qint64 surveyId);
    void questionAnswered(qint64 surveyId, int index);
    void surveyEnded(qint64 surveyId, SurveySession::Outcome outcome);
    void disabled(KestrioKit::QuickKestrio::DisabledReason reason, const QString &description);
    void enabled();
    void disableNetworkAccessChanged();
    void retriesStartUpChanged();
    void savesPromptlyChanged();
    void appearanceChanged();
    void reducedMotionChanged();

private:
    explicit QuickKestrio(QJSEngine &engine);

    /// Returns the function in `value`, or nothing if it is none, which throws a TypeError.
    std::optional<QuickCallback> functionIn(const QJSValue &value);
    /// Returns what `perform()` passes on for `argument`.
    QVariant variantIn(const QJSValue &argument, const QString &selector);
    void throwTypeError(const QString &message);

    QJSEngine &m_engine;
    Kestrio &m_kestrio = Kestrio::shared();
};

} // namespace KestrioKit
