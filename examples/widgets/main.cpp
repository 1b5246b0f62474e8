#include <KestrioKit/Kestrio.h>

#include <QApplication>
#include <QPushButton>

int main(int argc, char **argv) {
    QApplication application(argc, argv);
    QApplication::setApplicationName("first-survey"); // says where the library keeps its files
    QApplication::setApplicationVersion("1.0");       // is sent to the service

    QPushButton window("Press me");
    window.resize(800, 600);
    window.show();

    Kestrio::shared().configure("my-environment");
    QObject::connect(&window, &QPushButton::clicked, [&window] {
        Kestrio::shared().track("Button Pressed", [&window](SurveyState state) {
            if (state == SurveyState::surveyReady)
                Kestrio::shared().presentSurvey(&window);
        });
    });
    return QApplication::exec();
}
