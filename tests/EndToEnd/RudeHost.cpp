#include <KestrioKit/Kestrio.h>

#include <QCoreApplication>
#include <QSocketNotifier>
#include <QTimer>

#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <future>
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

/// Calls while the process ends, and after Qt's own statics have gone.
struct CallsToTheLast {
    ~CallsToTheLast() { callEverything(); }
} callsToTheLast;

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

int leavingFromAWorker(int argc, char **argv) {
    QCoreApplication application(argc, argv);
    Kestrio::shared().configure(u"env"_s);
    static const CallsToTheLast late;
    Kestrio::shared().track(u"Asked"_s, [](SurveyState) {
        std::thread([] {
            Kestrio::shared().track(u"Unanswered"_s);
            std::exit(0);
        }).detach();
    });
    return QCoreApplication::exec();
}

// The child has none of the library's threads to wait for. (It has none of Qt's either, which waits
// without end for those that looked up names.)
int leavingAForkedChild(int argc, char **argv) {
    constexpr unsigned limit = 60; // seconds
    QCoreApplication application(argc, argv);
    Kestrio::shared().configure(u"env"_s);
    const int code = runUntilVisitor();
    const pid_t child = fork();
    if (child == 0) {
        alarm(limit);
        std::atexit([] { _exit(0); });
        callEverything();
        std::exit(1);
    }
    int status = 0;
    return waitpid(child, &status, 0) == child && status == 0 ? code : 1;
}

// The first application ends on its thread while a request is in flight: when the test says so.
int withTwoApplications(int argc, char **argv) {
    std::promise<void> firstGone, secondThere;
    std::thread first([&] {
        {
            QCoreApplication application(argc, argv);
            Kestrio::shared().configure(u"env"_s);
            const QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
            QObject::connect(&input, &QSocketNotifier::activated, &QCoreApplication::quit);
            QCoreApplication::exec();
        }
        firstGone.set_value();
        secondThere.get_future().wait();
    });
    firstGone.get_future().wait();
    QCoreApplication application(argc, argv);
    secondThere.set_value();
    first.join();
    return runUntilVisitor();
}

constexpr struct {
    const char *name;
    int (*play)(int argc, char **argv);
} scenes[] = {
    {"around", aroundTheApplication}, {"no-loop", withoutAnEventLoop},
    {"exit", leavingByExit},          {"worker-exit", leavingFromAWorker},
    {"fork", leavingAForkedChild},    {"two-applications", withTwoApplications},
};

} // namespace

int main(int argc, char **argv) {
    for (const auto &scene : scenes) {
        if (argc == 2 && std::strcmp(argv[1], scene.name) == 0)
            return scene.play(argc, argv);
    }
    return 2;
}
