#include "benchmarks/Programs.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int patience = 120'000; // ms

/// A certificate of the service, made by and for this run.
struct Certificate {
    QString file() const { return folder.filePath(u"certificate.pem"_s); }
    QString key() const { return folder.filePath(u"key.pem"_s); }
    bool make() const {
        QStringList arguments{u"req"_s, u"-x509"_s, u"-nodes"_s, u"-newkey"_s, u"rsa:2048"_s};
        arguments << u"-days"_s << u"1"_s << u"-subj"_s << u"/CN=127.0.0.1"_s;
        arguments << u"-addext"_s << u"subjectAltName=IP:127.0.0.1"_s;
        arguments << u"-keyout"_s << key() << u"-out"_s << file();
        return QProcess::execute(u"openssl"_s, arguments) == 0;
    }

    const QTemporaryDir folder;
};

} // namespace

double quantile(std::vector<double> values, double part) {
    if (values.empty())
        return 0;
    const auto place = values.begin() + std::ptrdiff_t(double(values.size() - 1) * part);
    std::ranges::nth_element(values, place);
    return *place;
}

Program::Program(const QString &name, const QStringList &arguments,
                 const QProcessEnvironment &environment) {
    m_process.setProcessEnvironment(environment);
    m_process.start(QCoreApplication::applicationDirPath() + u'/' + name, arguments);
}

Program::~Program() {
    m_process.closeWriteChannel();
    if (!m_process.waitForFinished(patience))
        m_process.kill();
}

QByteArray Program::line(const char *start) {
    while (m_process.canReadLine() || m_process.waitForReadyRead(patience)) {
        while (m_process.canReadLine()) {
            const QByteArray line = m_process.readLine().trimmed();
            if (line.startsWith(start))
                return line;
        }
    }
    return {};
}

bool Program::finish() {
    const bool ended =
        m_process.state() == QProcess::NotRunning || m_process.waitForFinished(patience);
    return ended && m_process.exitStatus() == QProcess::NormalExit && m_process.exitCode() == 0;
}

bool serviceRuns() {
    static Program service(u"kestrio-bench-service"_s, {});
    static const bool runs = !service.line("listening").isEmpty();
    return runs;
}

QString secureServiceCertificate() {
    static const Certificate certificate;
    static const bool isMade = certificate.make();
    if (!isMade)
        return {};
    static Program service(u"kestrio-bench-service"_s, {certificate.file(), certificate.key()});
    static const bool runs = !service.line("listening").isEmpty();
    return runs ? certificate.file() : QString();
}
