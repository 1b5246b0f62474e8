#include <gtest/gtest.h>

#include <QApplication>
#include <QStandardPaths>
#include <QTemporaryDir>

namespace {

// A Qt warning that no test expects is a defect and fails the run.
void failOnWarning(QtMsgType type, const QMessageLogContext &, const QString &message) {
    if (type == QtDebugMsg || type == QtInfoMsg)
        return;
    ADD_FAILURE() << "unexpected warning: " << qPrintable(message);
}

} // namespace

int main(int argc, char **argv) {
    ::testing::InitGoogleTest(&argc, argv);
    const QTemporaryDir data;
    qputenv("XDG_DATA_HOME", QFile::encodeName(data.path()));
    QApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("kestrio-tests"));
    qInstallMessageHandler(failOnWarning);
    return RUN_ALL_TESTS();
}
