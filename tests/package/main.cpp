#include <KestrioKit/Kestrio.h>

#include <QCoreApplication>
#include <QTimer>

// Succeeds when the library, used before `configure()`, answers on the main thread as it promises.
int main(int argc, char **argv) {
    QCoreApplication application(argc, argv);
    QTimer::singleShot(60000, [] { QCoreApplication::exit(1); });
    Kestrio::shared().track("Started", [](SurveyState state) {
        QCoreApplication::exit(state == SurveyState::disabled ? 0 : 2);
    });
    return QCoreApplication::exec();
}
