#include "benchmarks/FrameRecorder.h"
#include "host/window/DemoStyle.h"
#include "host/window/DemoWindow.h"

#include "KestrioKit/Facade/DebugSurvey.h"
#include "KestrioKit/UI/SurveyViewController.h"

#include <benchmark/benchmark.h>

#include <QAbstractButton>
#include <QEventLoop>
#include <QPainter>
#include <QTimer>

using namespace KestrioKit;
using namespace std::chrono_literals;

namespace {

constexpr QSize windowSize(1280, 800);
constexpr QColor themeColor(0x3B, 0x5B, 0xDB);
/// Longer than any of the movements.
constexpr auto settlingTime = 800ms;

void settle() {
    QEventLoop loop;
    QTimer::singleShot(settlingTime, &loop, &QEventLoop::quit);
    loop.exec();
}

FrameRecorder &recorder() {
    return *static_cast<FrameRecorder *>(qApp);
}

/// Counts the frames of what is going on now.
void report(benchmark::State &state, const char *median, const char *high) {
    recorder().takeFrames();
    settle();
    const std::vector<FrameRecorder::Milliseconds> frames = recorder().takeFrames();
    if (frames.empty())
        return;
    const auto at = [&frames](double part) {
        return benchmark::Counter(frames[std::size_t(double(frames.size()) * part)].count(),
                                  benchmark::Counter::kAvgIterations);
    };
    state.counters[median].value += at(0.5).value;
    state.counters[high].value += at(0.95).value;
    state.counters[median].flags = state.counters[high].flags = benchmark::Counter::kAvgIterations;
}

QAbstractButton *option(const QWidget &window, const char *identifier) {
    return window.findChild<QAbstractButton *>(QString::fromLatin1(identifier));
}

/// In milliseconds: entry, change of page, and dismissal over a window of some ninety widgets.
void surveyFrames(benchmark::State &state) {
    applyDemoStyle();
    DemoWindow window;
    window.resize(windowSize);
    window.show();
    settle();
    for ([[maybe_unused]] auto iteration : state) {
        auto *const survey =
            new SurveyViewController(debugSurvey(), themeColor, nullptr, Clock::system());
        survey->present(&window);
        report(state, "entry_ms", "entry_p95_ms");
        option(window, "Option 4")->click();
        report(state, "page_ms", "page_p95_ms");
        survey->dismiss(true);
        report(state, "dismiss_ms", "dismiss_p95_ms");
    }
}
BENCHMARK(surveyFrames)->Iterations(3)->Unit(benchmark::kMillisecond);

/// The call, and with it the first frame.
void present(benchmark::State &state) {
    DemoWindow window;
    window.resize(windowSize);
    window.show();
    settle();
    for ([[maybe_unused]] auto iteration : state) {
        auto *const survey =
            new SurveyViewController(debugSurvey(), themeColor, nullptr, Clock::system());
        survey->present(&window);
        QCoreApplication::processEvents();
        state.PauseTiming();
        settle();
        survey->dismiss(false);
        settle();
        state.ResumeTiming();
    }
}
BENCHMARK(present)->Iterations(5)->Unit(benchmark::kMillisecond);

/// What any frame of the window's size costs at least.
void fillWindowOnce(benchmark::State &state) {
    QImage image(windowSize * qApp->devicePixelRatio(), QImage::Format_ARGB32_Premultiplied);
    for ([[maybe_unused]] auto iteration : state)
        QPainter(&image).fillRect(image.rect(), QColor(0, 0, 0, 153));
}
BENCHMARK(fillWindowOnce)->Unit(benchmark::kMillisecond);

} // namespace
