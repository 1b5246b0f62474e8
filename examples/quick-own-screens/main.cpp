#include <QGuiApplication>
#include <QQmlApplicationEngine>

int main(int argc, char **argv) {
    QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationName("own-screens");

    QQmlApplicationEngine engine("qrc:/QuickOwnScreens/Main.qml");
    return QGuiApplication::exec();
}
