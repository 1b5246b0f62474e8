#include <KestrioKit/Kestrio.h>

#include <QCoreApplication>
#include <QSocketNotifier>
#include <QTimer>

#include <linux/filter.h>
#include <linux/futex.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstddef>
#include <cstdlib>
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
    timer.callOnTimeout([] {
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

int withoutAnEventLoop() {
    callEverything();
    return 0;
}

int leavingByExit() {
    Kestrio::shared().track(u"Asked"_s, [](SurveyState) { QCoreApplication::quit(); });
    const int code = QCoreApplication::exec();
    Kestrio::shared().track(u"Unanswered"_s);
    std::exit(code);
}

int leavingFromAWorker() {
    static const CallsToTheLast late;
    Kestrio::shared().track(u"Asked"_s, [](SurveyState) {
        std::thread([] {
            Kestrio::shared().track(u"Unanswered"_s);
            std::exit(0);
        }).detach();
    });
    return QCoreApplication::exec();
}

// Ends the process when it waits for another thread: when it calls futex(2), but not to wake one.
void forbidWaiting() {
    sock_filter filter[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_futex, 0, 3),
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, args[1])),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, FUTEX_WAKE | FUTEX_PRIVATE_FLAG, 1, 0),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_KILL_PROCESS),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    const sock_fprog program{std::size(filter), filter};
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) ||
        prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program))
        _exit(2);
}

// The child has none of the library's threads to wait for. (It has none of Qt's either, which waits
// without end for those that looked up names.)
int leavingAForkedChild() {
    const int code = runUntilVisitor();
    const pid_t child = fork();
    if (child == 0) {
        forbidWaiting();
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

/// Scenes that begin with an application and a configured library.
constexpr struct {
    const char *name;
    int (*play)();
} usualScenes[] = {
    {"no-loop", withoutAnEventLoop},
    {"exit", leavingByExit},
    {"worker-exit", leavingFromAWorker},
    {"fork", leavingAForkedChild},
};

} // namespace

int main(int argc, char **argv) {
    const QByteArrayView wanted(argv[1]);
    if (wanted == "around")
        return aroundTheApplication(argc, argv);
    if (wanted == "two-applications")
        return withTwoApplications(argc, argv);
    QCoreApplication application(argc, argv);
    Kestrio::shared().configure(u"env"_s);
    for (const auto &[name, play] : usualScenes) {
        if (wanted == name)
            return play();
    }
    return 2;
}
