#include "KestrioKit/Quick/Survey/ScreenEngine.h"

#include <QCoreApplication>
#include <QPointer>
#include <QQmlComponent>

namespace KestrioKit::Quick {

using namespace Qt::StringLiterals;

namespace {

QUrl urlOf(const QString &screen) {
    return QUrl(u"qrc:/qt-project.org/imports/KestrioKit/Screens/%1.qml"_s.arg(screen));
}

} // namespace

ScreenEngine &ScreenEngine::shared() {
    static auto *const engine = new QPointer<ScreenEngine>;
    if (!*engine)
        *engine = new ScreenEngine(QCoreApplication::instance());
    return **engine;
}

std::optional<QString> ScreenEngine::error() {
    const QQmlComponent card(&m_engine, urlOf(u"SurveyView"_s));
    return card.isError() ? std::optional(card.errorString().trimmed()) : std::nullopt;
}

QQuickItem *ScreenEngine::create(const QString &screen, const QVariantMap &properties,
                                 QQuickItem *parent) {
    QQmlComponent component(&m_engine, urlOf(screen));
    auto *const item =
        qobject_cast<QQuickItem *>(component.createWithInitialProperties(properties));
    item->setParent(parent);
    item->setParentItem(parent);
    return item;
}

} // namespace KestrioKit::Quick
