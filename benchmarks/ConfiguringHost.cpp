#include "benchmarks/BenchHost.h"

#include <KestrioKit/Kestrio.h>

#include <QTimer>

#include <chrono>
#include <functional>

// A host with the library.
//     kestrio-bench-host idle [online] | configure | quit ENVIRONMENT

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto environment = "answers"_L1;
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

void callAndQuit() {
    for (int call = 0; call < callsBeforeQuit; ++call)
        Kestrio::shared().track(u"Catalogue Opened"_s);
    BenchHost::quit();
}

} // namespace

int main(int argc, char **argv) {
    BenchHost host(argc, argv);
    QCoreApplication::setApplicationName(u"kestrio-bench"_s);
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
