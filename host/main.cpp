#include "host/ScriptRunner.h"
#include "host/window/DemoStyle.h"
#include "host/window/DemoWindow.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QTimer>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

constexpr int wrongUsage = 2;

int refuse(const QString &reason) {
    std::fprintf(stderr, "kestrio-host: %s\n", qPrintable(reason));
    return wrongUsage;
}

/// Returns whether a display is available. Without one, windows are drawn offscreen.
bool findDisplay() {
    const bool hasDisplay =
        !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
    if (hasDisplay || qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        return true;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    return false;
}

int runScript(const QString &path) {
    QString error;
    std::unique_ptr<LineSource> lines = LineSource::open(path, error);
    if (!lines)
        return refuse(u"cannot read script '%1': %2"_s.arg(path, error));
    ScriptRunner runner(std::move(lines));
    QTimer::singleShot(0, QCoreApplication::instance(), [&runner] { runner.advance(); });
    return QCoreApplication::exec();
}

int showWindow(bool hasDisplay) {
    if (!hasDisplay)
        return refuse(u"no display to open the window on; give it --script FILE (see --help)"_s);
    DemoWindow window;
    window.show();
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char **argv) {
    const bool hasDisplay = findDisplay();
    const QApplication application(argc, argv);
    applyDemoStyle();
    QCoreApplication::setApplicationName(u"kestrio-host"_s);
    QCoreApplication::setApplicationVersion(QStringLiteral(KESTRIO_HOST_VERSION));

    const QCommandLineOption scriptOption(
        u"script"_s, u"Obey the commands in FILE; \"-\" is standard input."_s, u"FILE"_s);
    QCommandLineParser parser;
    parser.setApplicationDescription(
        u"A host application of KestrioKit: a window to try everything in, or a script."_s);
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOption(scriptOption);
    if (!parser.parse(QCoreApplication::arguments()))
        return refuse(parser.errorText());
    if (parser.isSet(u"help"_s))
        parser.showHelp();
    if (parser.isSet(u"version"_s))
        parser.showVersion();
    if (!parser.positionalArguments().isEmpty())
        return refuse(
            u"unexpected argument '%1' (see --help)"_s.arg(parser.positionalArguments().first()));
    return parser.isSet(scriptOption) ? runScript(parser.value(scriptOption))
                                      : showWindow(hasDisplay);
}
