#include "host/ScriptRunner.h"

#include <QCommandLineParser>
#include <QGuiApplication>
#include <QTimer>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

constexpr int wrongUsage = 2;

const QCommandLineOption
    scriptOption(u"script"_s, u"Obey the commands in FILE; \"-\" is standard input."_s, u"FILE"_s);

int refuse(const QString &reason) {
    std::fprintf(stderr, "kestrio-host: %s\n", qPrintable(reason));
    return wrongUsage;
}

void useOffscreenWithoutDisplay() {
    const bool hasDisplay =
        !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
    if (!hasDisplay && !qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
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

} // namespace

int main(int argc, char **argv) {
    useOffscreenWithoutDisplay();
    const QGuiApplication application(argc, argv);
    QCoreApplication::setApplicationName(u"kestrio-host"_s);
    QCoreApplication::setApplicationVersion(QStringLiteral(KESTRIO_HOST_VERSION));

    const QCommandLineOption scriptOption(
        u"script"_s, u"Obey the commands in FILE; \"-\" is standard input."_s, u"FILE"_s);
    QCommandLineParser parser;
    parser.setApplicationDescription(u"A host application of KestrioKit that a script drives."_s);
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOption(scriptOption);
    if (!parser.parse(QCoreApplication::arguments()))
        return refuse(parser.errorText());
    if (parser.isSet(u"help"_s))
        parser.showHelp();
    if (parser.isSet(u"version"_s))
        parser.showVersion();
    if (!parser.positionalArguments().isEmpty() || !parser.isSet(scriptOption))
        return refuse(u"nothing to do; give it --script FILE (see --help)"_s);
    return runScript(parser.value(scriptOption));
}
