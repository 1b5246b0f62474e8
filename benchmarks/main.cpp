#include "benchmarks/FrameRecorder.h"

#include <benchmark/benchmark.h>

#include <QTemporaryDir>

int main(int argc, char **argv) {
    const QTemporaryDir data;
    qputenv("XDG_DATA_HOME", QFile::encodeName(data.path()));
    FrameRecorder application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("kestrio-bench"));
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
