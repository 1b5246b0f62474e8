#include "tests/support/Programs.h"

#include <gtest/gtest.h>

#include <QJsonDocument>
#include <QNetworkAccessManager>
#include <QNetworkReply>

#include <algorithm>
#include <csignal>
#include <cstdlib>

namespace KestrioKit {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

QProcessEnvironment merged(const Environment &environment) {
    QProcessEnvironment all = QProcessEnvironment::systemEnvironment();
    for (const auto &[name, value] : environment.asKeyValueRange())
        value.isNull() ? all.remove(name) : all.insert(name, value);
    return all;
}

Environment hostEnvironment(const QString &dataFolder, const Environment &environment) {
    Environment all{{u"XDG_DATA_HOME"_s, dataFolder}, {u"KESTRIO_ENVIRONMENT"_s, u"local"_s}};
    all.insert(environment);
    return all;
}

} // namespace

QString hostProgramFile() {
    return QStringLiteral(KESTRIO_HOST_PROGRAM);
}

QString serviceProgramFile() {
    return QStringLiteral(KESTRIO_SERVICE_PROGRAM);
}

// QProcess would share its memory with the child, and the sanitizer would report false data races.
bool shell(const QString &folder, const QString &commands) {
    return std::system(qPrintable(u"cd '%1' && { %2; }"_s.arg(folder, commands))) == 0;
}

RunningProgram::RunningProgram(const QString &program, const QStringList &arguments,
                               const Environment &environment) {
    QObject::connect(&m_process, &QProcess::readyReadStandardOutput, &m_process,
                     [this] { m_output += m_process.readAllStandardOutput(); });
    QObject::connect(&m_process, &QProcess::readyReadStandardError, &m_process,
                     [this] { m_errors += m_process.readAllStandardError(); });
    m_process.setProcessEnvironment(merged(environment));
    m_process.start(program, arguments);
    EXPECT_TRUE(m_process.waitForStarted()) << qPrintable(program);
}

RunningProgram::~RunningProgram() {
    m_process.kill();
    m_process.waitForFinished();
    EXPECT_FALSE(m_errors.contains("Sanitizer: ") || m_errors.contains("runtime error: "))
        << m_errors.toStdString();
}

void RunningProgram::signal(int number) {
    ::kill(pid_t(m_process.processId()), number);
}

std::optional<int> RunningProgram::waitForEnd(std::chrono::milliseconds limit) {
    if (!waitFor([this] { return m_process.state() == QProcess::NotRunning; }, limit) ||
        m_process.exitStatus() != QProcess::NormalExit)
        return std::nullopt;
    return m_process.exitCode();
}

HostProgram::HostProgram(const QString &dataFolder, const Environment &environment,
                         const QStringList &launcher, const QStringList &options)
    : RunningProgram(u"env"_s,
                     launcher + QStringList{hostProgramFile(), u"--script"_s, u"-"_s} + options,
                     hostEnvironment(dataFolder, environment)) {}

QJsonObject HostProgram::nextReport() {
    waitFor([this] { return reports().size() > m_taken; });
    return reports().value(m_taken++);
}

std::optional<int> HostProgram::finish() {
    endInput();
    return waitForEnd();
}

void RunningProgram::kill() {
    signal(SIGKILL);
    waitForEnd();
}

QList<QJsonObject> HostProgram::reports() const {
    QList<QJsonObject> reports;
    // The text after the last line feed is an incomplete line.
    for (const QByteArray &line : output().first(output().lastIndexOf('\n') + 1).split('\n')) {
        if (line.startsWith('{'))
            reports.append(QJsonDocument::fromJson(line).object());
    }
    return reports;
}

ServiceProgram::ServiceProgram(const QString &databaseFile, const QStringList &arguments,
                               quint16 port)
    : RunningProgram(serviceProgramFile(), QStringList{u"--port"_s, QString::number(port),
                                                       u"--database"_s, databaseFile} +
                                               arguments) {
    waitFor([this] { return errors().contains("listening on ") || waitForEnd(0ms); });
    EXPECT_TRUE(errors().contains("listening on ")) << errors().toStdString();
    // "... listening on http://localhost:8080"
    m_port = errors().split('\n').first().split(':').last().toUShort();
}

QJsonObject ServiceProgram::records() const {
    QNetworkAccessManager manager;
    const QUrl url(u"http://localhost:%1/records"_s.arg(m_port));
    const std::unique_ptr<QNetworkReply> reply(manager.get(QNetworkRequest(url)));
    waitFor([&reply] { return reply->isFinished(); });
    EXPECT_EQ(reply->error(), QNetworkReply::NoError) << qPrintable(reply->errorString());
    return QJsonDocument::fromJson(reply->readAll()).object();
}

std::optional<int> ServiceProgram::stop() {
    signal(SIGTERM);
    return waitForEnd();
}

} // namespace KestrioKit
