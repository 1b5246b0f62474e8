#include "benchmarks/BenchHost.h"

#include <KestrioKit/Kestrio.h>

#include <QSslCertificate>
#include <QSslConfiguration>
#include <QTimer>

#include <chrono>
#include <functional>

// A host with the library.
//     kestrio-bench-host idle [minute | online | https CERTIFICATE] | configure | quit ENVIRONMENT

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto environment = "answers"_L1;
constexpr auto secureService = "127.0.0.1:8443"_L1;
constexpr int callsBeforeQuit = 1000;
constexpr auto step = 10ms;

/// Calls `then` from the event loop as soon as there is a visitor.
void whenVisitor(const std::function<void()> &then) {
    QTimer::singleShot(step, qApp, [then] {
        if (Kestrio::shared().visitorIdentifier())
            then();
        else
            whenVisitor(then);
    });
}

/// Makes the library use the service over HTTPS, as it uses the real one. The host trusts the
/// certificate in that file in the way that any host may trust a certificate of its own.
void useSecureService(const QString &certificate) {
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setCaCertificates(QSslCertificate::fromPath(certificate));
    QSslConfiguration::setDefaultConfiguration(configuration);
    qunsetenv("KESTRIO_ENVIRONMENT");
    Kestrio::shared().setServiceHost(secureService);
}

void callAndQuit() {
    for (int call = 0; call < callsBeforeQuit; ++call)
        Kestrio::shared().track(u"Catalogue Opened"_s);
    BenchHost::quit();
}

} // namespace

int main(int argc, char **argv) {
    BenchHost host(argc, argv);
    QCoreApplication::setApplicationName(u"kestrio-bench"_s);
    if (host.detail() == "https"_L1)
        useSecureService(QCoreApplication::arguments().value(3));
    const auto configure = [&host] {
        Kestrio::shared().configure(host.mode() == "quit"_L1 ? host.detail()
                                                             : QString(environment));
    };
    if (host.mode() == "configure"_L1)
        BenchHost::reportTimeOf(configure);
    else
        configure();
    if (host.mode() == "idle"_L1)
        whenVisitor(BenchHost::reportWhenIdle);
    else if (host.mode() == "quit"_L1)
        whenVisitor(callAndQuit);
    return BenchHost::run();
}
