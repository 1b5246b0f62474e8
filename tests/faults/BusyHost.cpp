#include <KestrioKit/Kestrio.h>

#include <QAbstractButton>
#include <QApplication>
#include <QDeadlineTimer>
#include <QKeyEvent>
#include <QTimer>
#include <QWidget>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <functional>
#include <random>
#include <thread>
#include <vector>

// A host whose threads call every operation at random, while its window presents surveys and ends
// them: busy-host SECONDS SEED, or longer, until there was a survey. Tells on standard error how
// many calls it made, and how many surveys it showed.

using namespace Qt::StringLiterals;

namespace {

constexpr int threads = 8;
constexpr auto longestPause = std::chrono::milliseconds(16);
constexpr auto mainPause = std::chrono::milliseconds(10);
constexpr unsigned callsPerUpheaval = 50;
const auto environment = u"env"_s;
/// The service answers it with a survey.
const auto event = u"Checkout Finished"_s;

using Random = std::mt19937;

void callOne(QWidget *window, Random &random) {
    Kestrio &kestrio = Kestrio::shared();
    const QString text = QString::number(random() % 5);
    const std::function<void()> operations[] = {
        [&] { kestrio.visitorIdentifier(); },
        [&] { kestrio.disableNetworkAccess(); },
        [&] { kestrio.configure(environment); },
        [&] { kestrio.setLocale(text); },
        [&] { kestrio.setEmailAddress(text); },
        [&] { kestrio.setVisitorAttribute(text, text); },
        [&] {
            kestrio.setVisitorAttributes({{text, text}});
        },
        [&] { kestrio.removeVisitorAttributes({text}); },
        [&] { kestrio.track(text); },
        [&] {
            kestrio.perform(u"trackWithEventName:handler:"_s, {event, QVariant()});
        },
        [&] {
            kestrio.track(event, [window](SurveyState state) {
                if (state == SurveyState::surveyReady)
                    Kestrio::shared().presentSurvey(window);
            });
        },
    };
    // After each of these there is a while in which the others do little.
    const std::function<void()> upheavals[] = {
        [&] { kestrio.setUserIdentifier(text); },
        [&] { kestrio.presentSurvey(window); },
        [&] { kestrio.presentSurvey(1, window, [] {}); },
        [&] { kestrio.presentDebugSurvey(window); },
        [&] { kestrio.logout(); },
        [&] {
            kestrio.setDisableNetworkAccess(true);
            kestrio.setDisableNetworkAccess(false);
        },
    };
    if (random() % callsPerUpheaval == 0)
        upheavals[random() % std::size(upheavals)]();
    else
        operations[random() % std::size(operations)]();
}

/// Ends a survey, if one is up, or answers something.
void touch(QWidget &window, Random &random) {
    const auto buttons = window.findChildren<QAbstractButton *>();
    const auto way = random() % 16;
    if (way == 0) {
        window.hide();
        window.show();
    } else if (way == 1 && QApplication::focusWidget()) {
        QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        QCoreApplication::sendEvent(QApplication::focusWidget(), &escape);
    } else if (way == 2) {
        callOne(&window, random);
    } else if (!buttons.isEmpty()) {
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

    std::atomic<int> calls = 0;
    std::vector<std::jthread> callers;
    for (int caller = 0; caller < threads; ++caller) {
        callers.emplace_back([&, own = Random(random())](const std::stop_token &stop) mutable {
            for (; !stop.stop_requested(); ++calls) {
                callOne(&window, own);
                std::this_thread::sleep_for(own() % 100 * longestPause / 100);
            }
        });
    }
    const QDeadlineTimer end(std::chrono::seconds{seconds});
    int shown = 0;
    bool wasUp = false;
    QTimer timer;
    timer.callOnTimeout([&] {
        touch(window, random);
        const bool isUp = !window.children().isEmpty();
        shown += isUp && !wasUp;
        wasUp = isUp;
        if (shown > 0 && end.hasExpired())
            QCoreApplication::quit();
    });
    timer.start(mainPause);
    const int code = QApplication::exec();
    callers.clear();
    std::fprintf(stderr, "{\"calls\":%d,\"shown\":%d}\n", calls.load(), shown);
    return code;
}
