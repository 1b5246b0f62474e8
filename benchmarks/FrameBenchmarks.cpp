#include "benchmarks/FrameRecorder.h"
#include "benchmarks/Programs.h"
#include "host/window/DemoStyle.h"
#include "host/window/DemoWindow.h"

#include "KestrioKit/Core/Facade/DebugSurvey.h"
#include "KestrioKit/Core/Session/SurveySessionPrivate.h"
#include "KestrioKit/Widgets/Survey/SurveyViewController.h"

#include <benchmark/benchmark.h>

#include <QBoxLayout>
#include <QDialog>
#include <QEventLoop>
#include <QLabel>
#include <QPainter>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollArea>
#include <QTimer>
#include <QToolButton>

#include <functional>
#include <string>

using namespace KestrioKit;
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr QSize windowSize(1280, 800);
constexpr QColor themeColor(0x3B, 0x5B, 0xDB);
/// Longer than any of the movements.
constexpr auto settlingTime = 800ms;
constexpr int presentations = 10;
/// Of a movement of 200 ms, at 60 a second; half of them may be lost.
constexpr std::size_t fewestFrames = 6;

void settle() {
    QEventLoop loop;
    QTimer::singleShot(settlingTime, &loop, &QEventLoop::quit);
    loop.exec();
}

FrameRecorder &recorder() {
    return *static_cast<FrameRecorder *>(qApp);
}

/// A page with buttons in a row, one with buttons below one another, and the page that thanks.
Survey survey() {
    Survey survey = debugSurvey();
    survey.questions.resize(2);
    QList<Option> &options = *survey.questions.last().details.options;
    for (qsizetype index = 0; index < options.size(); ++index)
        options[index].id = index;
    return survey;
}

std::unique_ptr<SurveySession> session() {
    return SurveySessionPrivate::make(survey(),
                                      {.clock = Clock::system(), .themeColor = themeColor});
}

void click(const QWidget &window, QLatin1StringView identifier) {
    window.findChild<QAbstractButton *>(identifier)->click();
}

struct Movement {
    std::string name;
    std::function<void()> begin;
    std::vector<double> frames;
};

/// In milliseconds: every movement of a survey over a window of some ninety widgets.
void surveyFrames(benchmark::State &state) {
    DemoWindow window;
    window.resize(windowSize);
    window.show();
    settle();
    SurveyViewController *controller = nullptr;
    const auto present = [&] {
        controller = new SurveyViewController(session(), Clock::system());
        controller->present(&window);
    };
    Movement movements[]{{"entry", present, {}},
                         {"page", [&] { click(window, "Option 4"_L1); }, {}},
                         {"finish", [&] { click(window, "Multi-choice option: Red"_L1); }, {}},
                         {"dismiss", [&] { controller->dismiss(true); }, {}}};
    for ([[maybe_unused]] auto iteration : state) {
        for (Movement &movement : movements) {
            recorder().takeFrames();
            movement.begin();
            settle();
            for (const FrameRecorder::Milliseconds frame : recorder().takeFrames())
                movement.frames.push_back(frame.count());
        }
    }
    for (const Movement &movement : movements) {
        if (movement.frames.size() < fewestFrames * state.iterations())
            state.SkipWithError("too few frames");
        state.counters[movement.name + "_median"] = quantile(movement.frames, 0.5);
        state.counters[movement.name + "_p95"] = quantile(movement.frames, 0.95);
    }
}
BENCHMARK(surveyFrames)->Iterations(5)->Unit(benchmark::kMillisecond);

/// Runs the event loop until `view` has been painted.
class FirstFrame final : public QObject {
public:
    void waitFor(QWidget *view) {
        view->installEventFilter(this);
        while (!m_isPainted)
            QCoreApplication::processEvents();
    }

protected:
    bool eventFilter(QObject *view, QEvent *event) override {
        m_isPainted = m_isPainted || event->type() == QEvent::Paint;
        return QObject::eventFilter(view, event);
    }

private:
    bool m_isPainted = false;
};

/// `show` returns what it has shown over the window; its time counts, and that until it is painted.
template <typename Show>
void timeFirstFrame(benchmark::State &state, const Show &show) {
    DemoWindow window;
    window.resize(windowSize);
    window.show();
    settle();
    std::vector<double> times;
    for ([[maybe_unused]] auto iteration : state) {
        const auto start = std::chrono::steady_clock::now();
        QWidget *const shown = show(&window);
        FirstFrame().waitFor(shown);
        const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
        state.SetIterationTime(took.count());
        times.push_back(took.count() * 1000);
        settle();
        shown->deleteLater();
        settle();
    }
    state.counters["median"] = quantile(times, 0.5);
}

void present(benchmark::State &state) {
    timeFirstFrame(state, [](QWidget *window) {
        auto *const controller = new SurveyViewController(session(), Clock::system());
        controller->present(window);
        return controller;
    });
}
BENCHMARK(present)->Iterations(presentations)->UseManualTime()->Unit(benchmark::kMillisecond);

/// A modal dialog with the controls of the survey's first page, all of them Qt's own.
QWidget *showDialog(QWidget *window) {
    auto *const dialog = new QDialog(window);
    auto *const page = new QWidget;
    auto *const scrollArea = new QScrollArea;
    scrollArea->setWidget(page);
    scrollArea->setWidgetResizable(true);
    auto *const layout = new QVBoxLayout(page);
    layout->addWidget(new QLabel(u"How many?"_s));
    auto *const row = new QHBoxLayout;
    for (int value = 1; value <= 5; ++value)
        row->addWidget(new QPushButton(QString::number(value)));
    auto *const labels = new QHBoxLayout;
    labels->addWidget(new QLabel(u"A few"_s));
    labels->addWidget(new QLabel(u"A lot"_s));
    layout->addLayout(row);
    layout->addLayout(labels);
    auto *const column = new QVBoxLayout(dialog);
    column->addWidget(new QToolButton);
    column->addWidget(scrollArea);
    column->addWidget(new QProgressBar);
    dialog->setModal(true);
    dialog->show();
    return dialog;
}

void presentDialog(benchmark::State &state) {
    timeFirstFrame(state, showDialog);
}
BENCHMARK(presentDialog)->Iterations(presentations)->UseManualTime()->Unit(benchmark::kMillisecond);

/// What any frame of the window's size costs at least.
void fillWindowOnce(benchmark::State &state) {
    QImage image(windowSize * qApp->devicePixelRatio(), QImage::Format_ARGB32_Premultiplied);
    for ([[maybe_unused]] auto iteration : state)
        QPainter(&image).fillRect(image.rect(), QColor(0, 0, 0, 153));
}
BENCHMARK(fillWindowOnce)->Unit(benchmark::kMillisecond);

} // namespace
