#include <KestrioKit/Kestrio.h>

#include <QCoreApplication>
#include <QTimer>

#include <cstdlib>
#include <cstring>
#include <thread>

// A host that uses the library when and where a well-behaved one would not. The scene is the first
// argument; each ends with the exit code 0 unless something breaks.

using namespace Qt::StringLiterals;

namespace {

void callEverything() {
    Kestrio &kestrio = Kestrio::shared();
    kestrio.setLocale(u"de"_s);
    kestrio.setUserIdentifier(u"user"_s);
    kestrio.setEmailAddress(u"user@example.com"_s);
    kestrio.setVisitorAttribute(u"key"_s, u"value"_s);
    kestrio.setVisitorAttributes({{u"a"_s, u"b"_s}});
    kestrio.removeVisitorAttributes({u"a"_s});
    kestrio.track(u"Event"_s);
    kestrio.track(u"Asked"_s, [](SurveyState) {});
    kestrio.setDisableNetworkAccess(true);
    kestrio.setDisableNetworkAccess(false);
    kestrio.visitorIdentifier();
    kestrio.perform(u"logout"_s);
}

// Runs the event loop until there is a visitor.
int runUntilVisitor() {
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [] {
        if (Kestrio::shared().visitorIdentifier())
            QCoreApplication::quit();
    });
    QTimer::singleShot(60000, &timer, [] { QCoreApplication::exit(1); });
    timer.start(10);
    return QCoreApplication::exec();
}

int aroundTheApplication(int argc, char **argv) {
    callEverything();
    Kestrio::shared().configure(u"env"_s);
    callEverything();
    int code = 0;
    {
        QCoreApplication application(argc, argv);
        code = runUntilVisitor();
    }
    callEverything();
    std::thread(callEverything).join();
    QCoreApplication application(argc, argv);
    callEverything();
    return code + runUntilVisitor();
}

int withoutAnEventLoop(int argc, char **argv) {
    QCoreApplication application(argc, argv);
    Kestrio::shared().configure(u"env"_s);
    callEverything();
    return 0;
}

int leavingByExit(int argc, char **argv) {
    QCoreApplication application(argc, argv);
    Kestrio::shared().configure(u"env"_s);
    Kestrio::shared().track(u"Asked"_s, [](SurveyState) { QCoreApplication::quit(); });
    const int code = QCoreApplication::exec();
    Kestrio::shared().track(u"Unanswered"_s);
    std::exit(code);
}

constexpr struct {
    const char *name;
    int (*play)(int argc, char **argv);
} scenes[] = {
    {"around", aroundTheApplication},
    {"no-loop", withoutAnEventLoop},
    {"exit", leavingByExit},
};

} // namespace

int main(int argc, char **argv) {
    for (const auto &scene : scenes) {
        if (argc == 2 && std::strcmp(argv[1], scene.name) == 0)
            return scene.play(argc, argv);
    }
    return 2;
}
