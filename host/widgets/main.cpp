#include "host/HostMain.h"
#include "host/widgets/WidgetsHostWindow.h"
#include "host/window/DemoStyle.h"

#include <QApplication>

int main(int argc, char **argv) {
    const bool hasDisplay = findDisplay();
    const QApplication application(argc, argv);
    applyDemoStyle();
    return runHost(hasDisplay, std::make_unique<WidgetsHostWindow>);
}
