#include <KestrioKit/Kestrio.h>

#include <QAbstractButton>
#include <QApplication>
#include <QKeyEvent>
#include <QTimer>
#include <QWidget>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <random>
#include <thread>
#include <vector>

// A host whose threads call every operation at random, while its window presents surveys and ends
// them: busy-host SECONDS SEED. Tells on standard error how many calls it made,
// and how many surveys it showed.

using namespace Qt::StringLiterals;

namespace {

constexpr int threads = 8;
constexpr auto longestPause = std::chrono::milliseconds(16);
constexpr auto mainPause = std::chrono::milliseconds(10);
const auto environment = u"env"_s;
/// The service answers it with a survey.
const auto event = u"en"_s;

using Random = std::mt19937;
struct Call {
    Kestrio &kestrio;
    QWidget *window;
    QString text;
};
using Operation = void (*)(const Call &);

constexpr Operation operations[] = {
    [](const Call &call) { call.kestrio.visitorIdentifier(); },
    [](const Call &call) { call.kestrio.disableNetworkAccess(); },
    [](const Call &call) { call.kestrio.configure(environment); },
    [](const Call &call) { call.kestrio.setLocale(call.text); },
    [](const Call &call) { call.kestrio.setEmailAddress(call.text); },
    [](const Call &call) { call.kestrio.setVisitorAttribute(call.text, call.text); },
    [](const Call &call) {
        call.kestrio.setVisitorAttributes({{call.text, call.text}});
    },
    [](const Call &call) { call.kestrio.removeVisitorAttributes({call.text}); },
    [](const Call &call) { call.kestrio.track(call.text); },
    [](const Call &call) {
        call.kestrio.perform(u"trackWithEventName:handler:"_s, {event, QVariant()});
    },
    [](const Call &call) {
        call.kestrio.track(event, [window = call.window](SurveyState state) {
            if (state == SurveyState::surveyReady)
                Kestrio::shared().presentSurvey(window);
        });
    },
};

/// After each of these there is a while in which the others do little.
constexpr Operation upheavals[] = {
    [](const Call &call) { call.kestrio.setUserIdentifier(call.text); },
    [](const Call &call) { call.kestrio.presentSurvey(call.window); },
    [](const Call &call) { call.kestrio.presentSurvey(1, call.window, [] {}); },
    [](const Call &call) { call.kestrio.presentDebugSurvey(call.window); },
    [](const Call &call) { call.kestrio.logout(); },
    [](const Call &call) {
        call.kestrio.setDisableNetworkAccess(true);
        call.kestrio.setDisableNetworkAccess(false);
    },
};
constexpr unsigned callsPerUpheaval = 50;

template <typename Operations>
Operation any(const Operations &from, Random &random) {
    return from[random() % std::size(from)];
}

void callOne(QWidget *window, Random &random) {
    const Operation operation =
        random() % callsPerUpheaval == 0 ? any(upheavals, random) : any(operations, random);
    operation({Kestrio::shared(), window, QString::number(random() % 5)});
}

/// Ends a survey, if one is up, or answers something.
void touch(QWidget &window, Random &random) {
    const auto buttons = window.findChildren<QAbstractButton *>();
    switch (random() % 16) {
    case 0:
        window.hide();
        return window.show();
    case 1:
        if (QWidget *const focused = QApplication::focusWidget()) {
            QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
            QCoreApplication::sendEvent(focused, &escape);
        }
        return;
    case 2:
        return callOne(&window, random);
    default:
        if (!buttons.isEmpty())
            buttons[qsizetype(random() % unsigned(buttons.size()))]->click();
    }
}

} // namespace

int main(int argc, char **argv) {
    QApplication application(argc, argv);
    if (argc != 3)
        return 2;
    const int seconds = std::atoi(argv[1]);
    Random random(unsigned(std::strtoul(argv[2], nullptr, 10)));
    QWidget window;
    window.resize(390, 700);
    window.show();
    Kestrio::shared().configure(environment);
    while (!Kestrio::shared().visitorIdentifier())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 10);

    std::atomic<bool> stop = false;
    std::atomic<int> calls = 0;
    std::vector<std::thread> callers;
    for (int caller = 0; caller < threads; ++caller) {
        callers.emplace_back([&, own = Random(random())]() mutable {
            for (; !stop; ++calls) {
                callOne(&window, own);
                std::this_thread::sleep_for(own() % 100 * longestPause / 100);
            }
        });
    }
    int shown = 0;
    bool wasUp = false;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &window, [&] {
        touch(window, random);
        const bool isUp = !window.children().isEmpty();
        shown += isUp && !wasUp;
        wasUp = isUp;
    });
    timer.start(mainPause);
    QTimer::singleShot(std::chrono::seconds(seconds), &window, [] { QCoreApplication::quit(); });
    const int code = QApplication::exec();
    stop = true;
    for (std::thread &caller : callers)
        caller.join();
    std::fprintf(stderr, "{\"calls\":%d,\"shown\":%d}\n", calls.load(), shown);
    return code;
}
