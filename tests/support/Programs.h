#pragma once

#include "tests/support/Waiting.h"

#include <QByteArrayList>
#include <QJsonObject>
#include <QMap>
#include <QProcess>
#include <QStringList>

#include <optional>

namespace KestrioKit {

/// Where "localhost" makes the library look for its service.
inline constexpr quint16 servicePort = 8080;

/// The files of the programs.
QString hostProgramFile();
QString serviceProgramFile();

/// Variables of a program's environment, beside those of the test. A null text takes one away.
using Environment = QMap<QString, QString>;

/// Runs the commands in the folder; whether they succeed.
bool shell(const QString &folder, const QString &commands);

/// A program that runs beside the test, and is killed with this object at the latest. What a
/// sanitizer finds in it is a failure of the test.
class RunningProgram {
public:
    RunningProgram(const QString &program, const QStringList &arguments,
                   const Environment &environment = {});
    ~RunningProgram();
    Q_DISABLE_COPY_MOVE(RunningProgram)

    void write(const QByteArray &bytes) { m_process.write(bytes); }
    void endInput() { m_process.closeWriteChannel(); }

    /// All it has written so far, to standard output and to standard error.
    const QByteArray &output() const { return m_output; }
    const QByteArray &errors() const { return m_errors; }

    qint64 processId() const { return m_process.processId(); }
    void signal(int number);
    /// Cuts it off without any chance to save.
    void kill();
    /// The exit code; absent when it does not end in time, or ended by a signal.
    std::optional<int> waitForEnd(std::chrono::milliseconds limit = patience);

private:
    QProcess m_process;
    QByteArray m_output;
    QByteArray m_errors;
};

/// kestrio-host, obeying what the test tells it, against a service at "localhost".
///
///     HostProgram host(dataFolder.path());
///     host.send("configure shop\nwait-for visitor 60000\nvisitor");
///     EXPECT_EQ(host.nextReport()["visitor"].toInt(), 1);
///     EXPECT_EQ(host.finish(), 0);
class HostProgram : public RunningProgram {
public:
    /// Lines that bring it as far as it comes by itself.
    inline static const QByteArray start =
        "configure env\nwait-for visitor 60000\nwait-for idle 60000\n";

    /// `launcher` is a command that runs the program with what it takes away or adds.
    explicit HostProgram(const QString &dataFolder, const Environment &environment = {},
                         const QStringList &launcher = {});

    /// Hands it one line or several.
    void send(const QByteArray &lines) { write(lines + '\n'); }
    /// The first report that was not taken yet; empty when none comes in time.
    QJsonObject nextReport();
    /// Ends the script, and waits for the program's end: its exit code.
    std::optional<int> finish();

    /// Every report so far, taken or not.
    QList<QJsonObject> reports() const;

private:
    qsizetype m_taken = 0;
};

/// kestrio-service on a database of the test's.
class ServiceProgram : public RunningProgram {
public:
    /// Starts it, and waits until it listens or has ended. `arguments` are further ones; for port 0
    /// it picks a free one.
    explicit ServiceProgram(const QString &databaseFile, const QStringList &arguments = {},
                            quint16 port = servicePort);

    quint16 port() const { return m_port; }
    /// Everything it holds.
    QJsonObject records() const;
    /// Lets it end cleanly: its exit code.
    std::optional<int> stop();

private:
    quint16 m_port;
};

} // namespace KestrioKit
