#include "benchmarks/FrameRecorder.h"
#include "host/window/DemoStyle.h"

#include <benchmark/benchmark.h>

#include <QTemporaryDir>

int main(int argc, char **argv) {
    const QTemporaryDir data;
    qputenv("XDG_DATA_HOME", QFile::encodeName(data.path()));
    // With this variable, the library looks for the service where the benchmarks run it.
    qputenv("KESTRIO_ENVIRONMENT", "local");
    FrameRecorder application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("kestrio-bench"));
    applyDemoStyle();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
