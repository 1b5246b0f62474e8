#pragma once

#include <QJsonObject>
#include <QProcess>
#include <QStringList>

#include <vector>

/// Returns the value that the fraction `part` (0 to 1) of the values does not exceed; 0 without
/// values.
double quantile(std::vector<double> values, double part);

/// A program that is started from the folder of this one. It ends with this object.
class Program {
public:
    Program(const QString &name, const QStringList &arguments,
            const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment());
    ~Program();

    /// Returns the next output line that starts with `start`; empty if the program ends without
    /// one.
    QByteArray line(const char *start);
    /// Waits for the end of the program. Returns false if it failed.
    bool finish();

private:
    QProcess m_process;
};

/// Starts the service on port 8080 at the first call; all cases share it. Returns whether it runs.
bool serviceRuns();

/// Starts the service on port 8443, over HTTPS, at the first call. Returns the path of its
/// certificate; empty if the service does not run.
QString secureServiceCertificate();
