#include "host/HostMain.h"
#include "host/quick/QuickHostWindow.h"
#include "host/window/DemoPalette.h"

#include <QGuiApplication>

namespace {

/// Offscreen there may be no graphics driver.
void chooseRenderer() {
    if (qgetenv("QT_QPA_PLATFORM") == "offscreen" && !qEnvironmentVariableIsSet("QT_QUICK_BACKEND"))
        qputenv("QT_QUICK_BACKEND", "software");
}

} // namespace

int main(int argc, char **argv) {
    const bool hasDisplay = findDisplay();
    chooseRenderer();
    const QGuiApplication application(argc, argv);
    QGuiApplication::setPalette(demoPalette());
    QGuiApplication::setFont(demoFont());
    return runHost(hasDisplay, QuickHostWindow::create);
}
