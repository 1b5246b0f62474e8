#pragma once

#include "tests/support/Waiting.h"

#include <QByteArrayList>
#include <QJsonObject>
#include <QMap>
#include <QProcess>
#include <QStringList>

#include <optional>

namespace KestrioKit {

/// The port at which the library expects the service on "localhost".
inline constexpr quint16 servicePort = 8080;

/// The paths of the programs' executables.
QString hostProgramFile();
QString serviceProgramFile();

/// Variables that are added to the environment of the test. A null text removes a variable.
using Environment = QMap<QString, QString>;

/// Runs shell commands in the folder. Returns whether they succeed.
bool shell(const QString &folder, const QString &commands);

/// A program that runs while the test does. The destructor kills it if it is still running.
/// Anything that a sanitizer finds in it fails the test.
class RunningProgram {
public:
    RunningProgram(const QString &program, const QStringList &arguments,
                   const Environment &environment = {});
    ~RunningProgram();
    Q_DISABLE_COPY_MOVE(RunningProgram)

    /// Writes to the program's standard input.
    void write(const QByteArray &bytes) { m_process.write(bytes); }
    /// Closes the program's standard input.
    void endInput() { m_process.closeWriteChannel(); }

    /// Everything that the program has written so far to standard output and to standard error.
    const QByteArray &output() const { return m_output; }
    const QByteArray &errors() const { return m_errors; }

    qint64 processId() const { return m_process.processId(); }
    /// Sends the signal to the program.
    void signal(int number);
    /// Kills the program, which has no chance to save.
    void kill();
    /// Waits for the end of the program and returns its exit code; absent if it does not end in
    /// time or is ended by a signal.
    std::optional<int> waitForEnd(std::chrono::milliseconds limit = patience);

private:
    QProcess m_process;
    QByteArray m_output;
    QByteArray m_errors;
};

/// Runs kestrio-host with the test's commands, against a service at "localhost".
///
///     HostProgram host(dataFolder.path());
///     host.send("configure shop\nwait-for visitor 60000\nvisitor");
///     EXPECT_EQ(host.nextReport()["visitor"].toInt(), 1);
///     EXPECT_EQ(host.finish(), 0);
class HostProgram : public RunningProgram {
public:
    /// The commands for start-up: configure, wait for a visitor, wait until the library is idle.
    inline static const QByteArray start =
        "configure env\nwait-for visitor 60000\nwait-for idle 60000\n";

    /// `dataFolder` holds the host's files. `launcher` is a command that starts the program, for
    /// example with fewer permissions. `options` are additional options of the program.
    explicit HostProgram(const QString &dataFolder, const Environment &environment = {},
                         const QStringList &launcher = {}, const QStringList &options = {});

    /// Sends one or more script lines to the program.
    void send(const QByteArray &lines) { write(lines + '\n'); }
    /// Returns the next report; empty if none arrives in time.
    QJsonObject nextReport();
    /// Ends the script, waits for the end of the program and returns its exit code.
    std::optional<int> finish();

    /// Returns all reports so far, including those that `nextReport()` has returned.
    QList<QJsonObject> reports() const;

private:
    qsizetype m_taken = 0;
};

/// Runs kestrio-service on a database of the test.
class ServiceProgram : public RunningProgram {
public:
    /// Starts the service and waits until it listens or has ended. `arguments` are additional
    /// arguments. Port 0 picks a free port.
    explicit ServiceProgram(const QString &databaseFile, const QStringList &arguments = {},
                            quint16 port = servicePort);

    quint16 port() const { return m_port; }
    /// Returns all records of the service.
    QJsonObject records() const;
    /// Ends the service cleanly and returns its exit code.
    std::optional<int> stop();

private:
    quint16 m_port;
};

} // namespace KestrioKit
