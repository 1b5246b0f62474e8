#pragma once

#include <QQmlEngine>
#include <QQuickItem>

#include <optional>

namespace KestrioKit::Quick {

/// Makes the screens. They have a QML engine of their own, so that they do not depend on the host's
/// engines, which may be deleted while a survey is shown. Use it on the main thread only.
class ScreenEngine final : public QObject {
public:
    /// Returns the engine of the application. It is created on first use and destroyed with the
    /// application object.
    static ScreenEngine &shared();

    /// Returns why the screens cannot be loaded, or nothing if they can. The reason is usually a
    /// module of Qt Quick that is not installed.
    std::optional<QString> error();

    /// Creates the item of a screen with these properties, as a child of `parent`. There must be no
    /// error.
    QQuickItem *create(const QString &screen, const QVariantMap &properties, QQuickItem *parent);

private:
    using QObject::QObject;

    QQmlEngine m_engine;
};

} // namespace KestrioKit::Quick
