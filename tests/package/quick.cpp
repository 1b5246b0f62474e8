#include <QGuiApplication>
#include <QQmlApplicationEngine>
#include <QTimer>

// Runs a QML document, though nothing here names the library. Succeeds when the document says so by
// `Qt.exit(0)` or, with "--load" as the second argument, once it is loaded. Fails when the engine
// warns of anything.
int main(int argc, char **argv) {
    QGuiApplication application(argc, argv);
    QTimer::singleShot(60000, [] { QCoreApplication::exit(1); });
    QQmlApplicationEngine engine;
    bool isFaulty = false;
    QObject::connect(&engine, &QQmlEngine::warnings, [&isFaulty] { isFaulty = true; });
    engine.load(argv[1]);
    if (argc > 2)
        QTimer::singleShot(0, [] { QCoreApplication::exit(0); });
    const int status = QCoreApplication::exec();
    return isFaulty ? 2 : status;
}
