#pragma once

#include <QJsonObject>
#include <QProcess>
#include <QStringList>

#include <vector>

/// The value that `part` of the values, 0 to 1, do not exceed; 0 where there are none.
double quantile(std::vector<double> values, double part);

/// A program beside this one, started with this environment; ends with this object.
class Program {
public:
    Program(const QString &name, const QStringList &arguments,
            const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment());
    ~Program();

    /// The first line that it prints that begins with `start`; empty when it ends without one.
    QByteArray line(const char *start);
    /// Waits for its end; false when it failed.
    bool finish();

private:
    QProcess m_process;
};

/// Whether the service on port 8080, which every case shares, runs; it is started the first time.
bool serviceRuns();
