#include "KestrioKit/Quick/Facade/QuickKestrio.h"

#include "KestrioKit/Quick/Facade/MotionPreference.h"

#include <QJSEngine>
#include <QJSValueIterator>
#include <QMap>
#include <QQmlEngine>
#include <QQmlInfo>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

bool isOmitted(const QJSValue &value) {
    return value.isUndefined() || value.isNull();
}

bool isText(const QJSValue &value) {
    return value.isString() || value.isNumber() || value.isBool();
}

/// Returns the properties of an object as texts, or nothing if one of them is no text.
std::optional<QMap<QString, QString>> textsIn(const QJSValue &object) {
    if (!object.isObject() || object.isArray() || object.isCallable())
        return std::nullopt;
    QMap<QString, QString> texts;
    QJSValueIterator properties(object);
    while (properties.next()) {
        if (!isText(properties.value()))
            return std::nullopt;
        texts.insert(properties.name(), properties.value().toString());
    }
    return texts;
}

Kestrio::TrackHandler trackHandler(const QuickCallback &callback) {
    return [callback](SurveyState state) {
        callback(int(state));
    };
}

Kestrio::FetchCompletion fetchCompletion(const QuickCallback &callback) {
    return [callback] {
        callback();
    };
}

/// Hands the session to JavaScript, which also destroys it.
SurveySession *ownedByScript(std::unique_ptr<SurveySession> session) {
    if (session)
        QJSEngine::setObjectOwnership(session.get(), QJSEngine::JavaScriptOwnership);
    return session.release();
}

} // namespace

QuickKestrio *QuickKestrio::create(QQmlEngine *engine, QJSEngine *) {
    if (engine->thread() == Kestrio::shared().thread())
        return new QuickKestrio(*engine);
    qmlWarning(engine) << "Kestrio is for engines on the main thread.";
    return nullptr;
}

QuickKestrio::QuickKestrio(QJSEngine &engine) : m_engine(engine) {
    connect(&m_kestrio, &Kestrio::visitorIdentifierChanged, this,
            &QuickKestrio::visitorIdentifierChanged);
    connect(&m_kestrio, &Kestrio::surveyHeldChanged, this, &QuickKestrio::surveyHeldChanged);
    connect(&m_kestrio, &Kestrio::surveyShown, this, &QuickKestrio::surveyShown);
    connect(&m_kestrio, &Kestrio::questionAnswered, this, &QuickKestrio::questionAnswered);
    connect(&m_kestrio, &Kestrio::surveyEnded, this, &QuickKestrio::surveyEnded);
    connect(&m_kestrio, &Kestrio::disabled, this,
            [this](Kestrio::DisabledReason reason, const QString &description) {
                Q_EMIT disabled(DisabledReason(reason), description);
            });
    connect(&m_kestrio, &Kestrio::enabled, this, &QuickKestrio::enabled);
    connect(&m_kestrio, &Kestrio::disableNetworkAccessChanged, this,
            &QuickKestrio::disableNetworkAccessChanged);
    connect(&m_kestrio, &Kestrio::retriesStartUpChanged, this,
            &QuickKestrio::retriesStartUpChanged);
    connect(&m_kestrio, &Kestrio::savesPromptlyChanged, this, &QuickKestrio::savesPromptlyChanged);
    connect(&m_kestrio, &Kestrio::appearanceChanged, this, &QuickKestrio::appearanceChanged);
    connect(&MotionPreference::shared(), &MotionPreference::changed, this,
            &QuickKestrio::reducedMotionChanged);
}

QVariant QuickKestrio::visitorIdentifier() const {
    const std::optional<qint64> identifier = m_kestrio.visitorIdentifier();
    return identifier ? QVariant(*identifier) : QVariant();
}

bool QuickKestrio::isSurveyHeld() const {
    return m_kestrio.isSurveyHeld();
}

bool QuickKestrio::disableNetworkAccess() const {
    return m_kestrio.disableNetworkAccess();
}

void QuickKestrio::setDisableNetworkAccess(bool disable) {
    m_kestrio.setDisableNetworkAccess(disable);
}

bool QuickKestrio::retriesStartUp() const {
    return m_kestrio.retriesStartUp();
}

void QuickKestrio::setRetriesStartUp(bool retries) {
    m_kestrio.setRetriesStartUp(retries);
}

bool QuickKestrio::savesPromptly() const {
    return m_kestrio.savesPromptly();
}

void QuickKestrio::setSavesPromptly(bool saves) {
    m_kestrio.setSavesPromptly(saves);
}

QuickSurveyAppearance::Value QuickKestrio::appearance() const {
    return QuickSurveyAppearance::Value(m_kestrio.appearance());
}

// QML does not check numbers that are assigned to enumerations.
void QuickKestrio::setAppearance(QuickSurveyAppearance::Value appearance) {
    if (appearance < QuickSurveyAppearance::Light || appearance > QuickSurveyAppearance::Service)
        qmlWarning(this) << "No value of SurveyAppearance: " << int(appearance);
    else
        m_kestrio.setAppearance(SurveyAppearance(appearance));
}

bool QuickKestrio::reducedMotion() const {
    return MotionPreference::shared().isReduced();
}

void QuickKestrio::setReducedMotion(bool isReduced) {
    MotionPreference::shared().setReduced(isReduced);
}

void QuickKestrio::setServiceHost(const QString &host) {
    m_kestrio.setServiceHost(host);
}

void QuickKestrio::setQueueLimit(int limit) {
    m_kestrio.setQueueLimit(limit);
}

void QuickKestrio::configure(const QString &environment) {
    m_kestrio.configure(environment);
}

void QuickKestrio::setLocale(const QString &locale) {
    m_kestrio.setLocale(locale);
}

void QuickKestrio::setUserIdentifier(const QString &userIdentifier) {
    m_kestrio.setUserIdentifier(userIdentifier);
}

void QuickKestrio::setEmailAddress(const QString &email) {
    m_kestrio.setEmailAddress(email);
}

void QuickKestrio::setVisitorAttribute(const QString &key, const QString &value) {
    m_kestrio.setVisitorAttribute(key, value);
}

void QuickKestrio::setVisitorAttributes(const QJSValue &attributes) {
    if (const std::optional<QMap<QString, QString>> texts = textsIn(attributes))
        m_kestrio.setVisitorAttributes(*texts);
    else
        throwTypeError(u"The attributes are not an object with texts."_s);
}

void QuickKestrio::removeVisitorAttributes(const QStringList &keys) {
    m_kestrio.removeVisitorAttributes(keys);
}

void QuickKestrio::track(const QString &eventName, const QJSValue &callback) {
    if (isOmitted(callback))
        m_kestrio.track(eventName);
    else if (const std::optional<QuickCallback> function = functionIn(callback))
        m_kestrio.track(eventName, trackHandler(*function));
}

void QuickKestrio::presentSurvey(QObject *windowOrItem) {
    m_kestrio.presentSurvey(windowOrItem);
}

void QuickKestrio::presentSurvey(qint64 surveyId, QObject *windowOrItem, const QJSValue &callback) {
    if (isOmitted(callback))
        m_kestrio.presentSurvey(surveyId, windowOrItem);
    else if (const std::optional<QuickCallback> function = functionIn(callback))
        m_kestrio.presentSurvey(surveyId, windowOrItem, fetchCompletion(*function));
}

void QuickKestrio::presentDebugSurvey(QObject *windowOrItem) {
    m_kestrio.presentDebugSurvey(windowOrItem);
}

SurveySession *QuickKestrio::startSurvey() {
    return ownedByScript(m_kestrio.startSurvey());
}

void QuickKestrio::startSurvey(qint64 surveyId, const QJSValue &callback) {
    const std::optional<QuickCallback> function = functionIn(callback);
    if (!function)
        return;
    m_kestrio.startSurvey(surveyId, function->context(),
                          [function](std::unique_ptr<SurveySession> session) {
                              (*function)(QVariant::fromValue(ownedByScript(std::move(session))));
                          });
}

SurveySession *QuickKestrio::startDebugSurvey() {
    return ownedByScript(m_kestrio.startDebugSurvey());
}

void QuickKestrio::logout() {
    m_kestrio.logout();
}

void QuickKestrio::withdrawConsent() {
    m_kestrio.withdrawConsent();
}

QVariant QuickKestrio::perform(const QString &selector, const QJSValue &arguments) {
    QVariantList variants;
    const int count = arguments.property(u"length"_s).toInt();
    for (int index = 0; index < count; ++index)
        variants.append(variantIn(arguments.property(index), selector));
    const std::optional<QVariant> result = m_kestrio.perform(selector, variants);
    if (!result)
        return {};
    if (result->value<QObject *>() == &m_kestrio)
        return QVariant::fromValue(this);
    return result->isValid() ? *result : QVariant::fromValue(nullptr);
}

std::optional<QuickCallback> QuickKestrio::functionIn(const QJSValue &value) {
    if (value.isCallable())
        return QuickCallback(m_engine, value, this);
    throwTypeError(u"The callback is not a function."_s);
    return std::nullopt;
}

QVariant QuickKestrio::variantIn(const QJSValue &argument, const QString &selector) {
    if (!argument.isCallable())
        return argument.toVariant();
    const QuickCallback callback(m_engine, argument, this);
    if (selector.startsWith("track"_L1))
        return QVariant::fromValue(trackHandler(callback));
    return QVariant::fromValue(fetchCompletion(callback));
}

void QuickKestrio::throwTypeError(const QString &message) {
    m_engine.throwError(QJSValue::TypeError, message);
}

} // namespace KestrioKit
