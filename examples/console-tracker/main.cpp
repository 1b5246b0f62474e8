#include <KestrioKit/Kestrio.h>

#include <QCoreApplication>

// Reports from a program without a window that something happened. Ends when the service has the
// event, or when the library cannot reach it.
int main(int argc, char **argv) {
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName("console-tracker");

    Kestrio::shared().configure("my-environment");
    Kestrio::shared().track("Backup Finished", [](SurveyState state) {
        QCoreApplication::exit(state == SurveyState::disabled ? 1 : 0);
    });
    return QCoreApplication::exec();
}
