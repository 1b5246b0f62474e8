#include <KestrioKit/Kestrio.h>

#include <QApplication>
#include <QTimer>
#include <QWidget>

// Succeeds when a survey comes up over a window, though nothing here names a front end.
int main(int argc, char **argv) {
    QApplication application(argc, argv);
    QTimer::singleShot(60000, [] { QCoreApplication::exit(1); });
    QWidget window;
    window.resize(800, 600);
    window.show();
    Kestrio::shared().configure("my-environment");
    Kestrio::shared().presentDebugSurvey(&window);
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, [&window] {
        if (window.findChild<QWidget *>("Kestrio Survey"))
            QCoreApplication::exit(0);
    });
    look.start(10);
    return QCoreApplication::exec();
}
