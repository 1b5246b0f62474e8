#include "benchmarks/Programs.h"
#include "benchmarks/RunningLibrary.h"

#include "KestrioKit/Kestrio.h"

#include <benchmark/benchmark.h>

#include <QBasicTimer>
#include <QEventLoop>
#include <QPainter>
#include <QTimerEvent>
#include <QWidget>

#include <algorithm>
#include <chrono>
#include <utility>
#include <vector>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr QSize windowSize(320, 200);
/// The time of a frame at 60 Hz, in the whole milliseconds that Qt's timers count in.
constexpr auto period = 16ms;
constexpr int events = 100;
constexpr int eventsPerFrame = 2;
constexpr int animations = 10;

/// An animation of the host that calls `duringFrame` in each frame.
template <typename DuringFrame>
class Animation final : public QWidget {
public:
    explicit Animation(DuringFrame duringFrame) : m_duringFrame(std::move(duringFrame)) {
        resize(windowSize);
        show();
        m_timer.start(period.count(), Qt::PreciseTimer, this);
    }

    /// Returns how many milliseconds later than the most punctual frame the latest one ends,
    /// compared with when each is due.
    double latest() const {
        const auto [least, most] = std::ranges::minmax(m_delays);
        return most - least;
    }

protected:
    void timerEvent(QTimerEvent *event) override {
        if (event->timerId() != m_timer.timerId())
            return QWidget::timerEvent(event);
        m_duringFrame();
        repaint();
        const auto due = m_start + int(m_delays.size()) * period;
        const std::chrono::duration<double, std::milli> delay =
            std::chrono::steady_clock::now() - due;
        m_delays.push_back(delay.count());
    }

    void paintEvent(QPaintEvent *) override {
        const int step = int(m_delays.size()) % width();
        QPainter(this).fillRect(step, 0, height(), height(), Qt::darkBlue);
    }

private:
    DuringFrame m_duringFrame;
    QBasicTimer m_timer;
    const std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
    std::vector<double> m_delays;
};

/// Measures how late the frames of a host's animation are while events are tracked and delivered.
/// The floor is the same animation without events.
void animate(benchmark::State &state, bool tracks) {
    if (!libraryRuns())
        return state.SkipWithError("there is no visitor");
    std::vector<double> latest;
    for ([[maybe_unused]] auto iteration : state) {
        QEventLoop trackedAll;
        int left = events;
        const Animation animation([&] {
            for (int event = 0; event < eventsPerFrame && left > 0; ++event, --left) {
                if (tracks)
                    Kestrio::shared().track(u"Catalogue Opened"_s);
            }
            if (left == 0)
                trackedAll.quit();
        });
        trackedAll.exec();
        if (!waitUntilDelivered())
            state.SkipWithError("the events are not delivered");
        latest.push_back(animation.latest());
    }
    state.counters["median"] = quantile(latest, 0.5);
    state.counters["max"] = quantile(latest, 1);
}
BENCHMARK_CAPTURE(animate, tracking, true)->Iterations(animations);
BENCHMARK_CAPTURE(animate, bare, false)->Iterations(animations);

} // namespace
