#include "host/HostMain.h"
#include "host/widgets/WidgetsHostWindow.h"
#include "host/window/DemoStyle.h"

#include <QApplication>
#include <QFile>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string_view>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr std::string_view quickOption = "--quick";

/// Replaces this process by kestrio-host-quick, which ignores the option. Returns only if that
/// fails.
int runQuickHost(int argc, char **argv) {
    const QCoreApplication application(argc, argv);
    const QString program = QCoreApplication::applicationDirPath() + u"/kestrio-host-quick"_s;
    execv(QFile::encodeName(program).constData(), argv);
    return refuse(
        u"cannot run '%1': %2"_s.arg(program, QString::fromLocal8Bit(std::strerror(errno))));
}

} // namespace

int main(int argc, char **argv) {
    if (std::find(argv, argv + argc, quickOption) != argv + argc)
        return runQuickHost(argc, argv);
    const bool hasDisplay = findDisplay();
    const QApplication application(argc, argv);
    applyDemoStyle();
    return runHost(hasDisplay, std::make_unique<WidgetsHostWindow>);
}
