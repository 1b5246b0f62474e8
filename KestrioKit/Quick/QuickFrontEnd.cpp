#include "KestrioKit/Core/Session/FrontEnd.h"
#include "KestrioKit/KestrioKitQuickExport.h"
#include "KestrioKit/Quick/Survey/ScreenEngine.h"
#include "KestrioKit/Quick/Survey/SurveyViewController.h"
#include "KestrioKit/Quick/SurveyOverlay.h"

#include <QQuickItem>
#include <QQuickWindow>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

QQuickWindow *windowOf(const QObject &host) {
    if (const auto *const item = qobject_cast<const QQuickItem *>(&host))
        return item->window();
    return qobject_cast<QQuickWindow *>(const_cast<QObject *>(&host));
}

/// Returns the item that a survey covers: the host's own item for surveys, or the whole window.
QQuickItem *areaFor(QObject &host) {
    if (auto *const overlay = qobject_cast<Quick::SurveyOverlay *>(&host))
        return overlay;
    return windowOf(host)->contentItem();
}

/// Shows surveys over `QQuickWindow` and `QQuickItem` hosts.
class QuickFrontEnd final : public FrontEnd {
public:
    bool suits(const QObject &host) const override {
        return host.inherits("QQuickItem") || host.inherits("QQuickWindow");
    }

    std::optional<QString> obstacle(const QObject &host) const override {
        const QQuickWindow *const window = windowOf(host);
        if (window && window->isVisible())
            return Quick::ScreenEngine::shared().error();
        return u"The window to show the survey over is not shown itself."_s;
    }

    void show(std::unique_ptr<SurveySession> session, QObject &host, const Clock &clock) override {
        auto *const controller = new Quick::SurveyViewController(std::move(session), clock);
        controller->present(areaFor(host));
    }
};

/// Registers the front end when the library is loaded.
const struct Registration {
    Registration() { FrontEnd::add(new QuickFrontEnd); }
} registration;

} // namespace

} // namespace KestrioKit

void qml_register_types_KestrioKit();

/// Refers to the files of the static library that register the QML module and its resources.
static void keepModule() {
    qml_register_types_KestrioKit();
    Q_INIT_RESOURCE(qmake_KestrioKit);
#ifdef KESTRIO_QML_FILES
    Q_INIT_RESOURCE(KestrioKitQuick_raw_qml_0);
    Q_INIT_RESOURCE(qmlcache_KestrioKitQuick);
#endif
}

/// Programs that link the library require this symbol. Without it the linker would drop the shared
/// library, or this file of the static one, because the program calls nothing in it.
extern "C" KESTRIOKITQUICK_EXPORT void kestrioKitQuick() {
    keepModule();
}
