#include "benchmarks/BenchHost.h"

#include <QFile>
#include <QTimer>

#include <cstdlib>

// A host without the library. It is the floor for the host with the library.
//     kestrio-bench-bare idle [minute | online] | read FILE | quit

using namespace Qt::StringLiterals;

int main(int argc, char **argv) {
    BenchHost host(argc, argv);
    if (host.mode() == "idle"_L1)
        BenchHost::reportWhenIdle();
    else if (host.mode() == "read"_L1)
        BenchHost::reportTimeOf([&host] {
            QFile file(host.detail());
            if (!file.open(QIODevice::ReadOnly) || file.readAll().isEmpty())
                std::_Exit(1);
        });
    else
        QTimer::singleShot(0, qApp, &BenchHost::quit);
    return BenchHost::run();
}
