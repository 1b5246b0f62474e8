#include <QGuiApplication>
#include <QQmlApplicationEngine>

int main(int argc, char **argv) {
    QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationName("first-survey"); // says where the library keeps its files
    QGuiApplication::setApplicationVersion("1.0");       // is sent to the service

    QQmlApplicationEngine engine("qrc:/FirstQuickSurvey/Main.qml");
    return QGuiApplication::exec();
}
