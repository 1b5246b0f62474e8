#include "KestrioKit/Core/Session/FrontEnd.h"
#include "KestrioKit/KestrioKitWidgetsExport.h"
#include "KestrioKit/Widgets/Survey/SurveyViewController.h"

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

/// Shows surveys over `QWidget` hosts.
class WidgetsFrontEnd final : public FrontEnd {
public:
    bool suits(const QObject &host) const override { return host.isWidgetType(); }

    std::optional<QString> obstacle(const QObject &host) const override {
        if (static_cast<const QWidget &>(host).window()->isVisible())
            return std::nullopt;
        return u"The window to show the survey over is not shown itself."_s;
    }

    void show(std::unique_ptr<SurveySession> session, QObject &host, const Clock &clock) override {
        auto *const controller = new SurveyViewController(std::move(session), clock);
        controller->present(&static_cast<QWidget &>(host));
    }
};

/// Registers the front end when the library is loaded.
const struct Registration {
    Registration() { FrontEnd::add(new WidgetsFrontEnd); }
} registration;

} // namespace

} // namespace KestrioKit

/// Programs that link the library require this symbol. Without it the linker would drop the shared
/// library, or this file of the static one, because the program calls nothing in it.
extern "C" KESTRIOKITWIDGETS_EXPORT void kestrioKitWidgets() {}
