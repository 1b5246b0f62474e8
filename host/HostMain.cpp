#include "host/HostMain.h"

#include "host/ScriptRunner.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTimer>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

int runScript(const QString &path, const HostWindowFactory &makeWindow) {
    QString error;
    std::unique_ptr<LineSource> lines = LineSource::open(path, error);
    if (!lines)
        return refuse(u"cannot read script '%1': %2"_s.arg(path, error));
    ScriptRunner runner(std::move(lines), makeWindow);
    QTimer::singleShot(0, QCoreApplication::instance(), [&runner] { runner.advance(); });
    return QCoreApplication::exec();
}

int showWindow(bool hasDisplay, const HostWindowFactory &makeWindow) {
    if (!hasDisplay)
        return refuse(u"no display to open the window on; give it --script FILE (see --help)"_s);
    const std::unique_ptr<HostWindow> window = makeWindow();
    if (!window)
        return refuse(u"cannot create the window"_s);
    window->show();
    return QCoreApplication::exec();
}

} // namespace

int refuse(const QString &reason) {
    std::fprintf(stderr, "kestrio-host: %s\n", qPrintable(reason));
    return wrongUsage;
}

bool findDisplay() {
    const bool hasDisplay =
        !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
    if (hasDisplay || qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        return true;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    return false;
}

int runHost(bool hasDisplay, const HostWindowFactory &makeWindow) {
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
    parser.addOption(
        {u"quick"_s, u"Show the window with Qt Quick: run kestrio-host-quick instead."_s});
    if (!parser.parse(QCoreApplication::arguments()))
        return refuse(parser.errorText());
    if (parser.isSet(u"help"_s))
        parser.showHelp();
    if (parser.isSet(u"version"_s))
        parser.showVersion();
    if (!parser.positionalArguments().isEmpty())
        return refuse(
            u"unexpected argument '%1' (see --help)"_s.arg(parser.positionalArguments().first()));
    return parser.isSet(scriptOption) ? runScript(parser.value(scriptOption), makeWindow)
                                      : showWindow(hasDisplay, makeWindow);
}
