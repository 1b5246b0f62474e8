#include "benchmarks/FrameRecorder.h"
#include "benchmarks/Programs.h"
#include "host/window/DemoStyle.h"
#include "host/window/DemoWindow.h"

#include "KestrioKit/Core/Facade/DebugSurvey.h"
#include "KestrioKit/Core/Session/SurveySessionPrivate.h"
#include "KestrioKit/Widgets/Survey/SurveyViewController.h"

#include <benchmark/benchmark.h>

#include <QBoxLayout>
#include <QCheckBox>
#include <QDialog>
#include <QEventLoop>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
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
/// Longer than any animation.
constexpr auto settlingTime = 800ms;
constexpr int presentations = 10;
constexpr int manyWidgets = 1000;
constexpr int columns = 25;
/// Half of the frames of a 200 ms animation at 60 Hz; the other half may be dropped.
constexpr std::size_t fewestFrames = 6;

void settle() {
    QEventLoop loop;
    QTimer::singleShot(settlingTime, &loop, &QEventLoop::quit);
    loop.exec();
}

FrameRecorder &recorder() {
    return *static_cast<FrameRecorder *>(qApp);
}

/// A survey of three pages: buttons in a row, buttons below one another, and the finish page.
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

/// Measures the frames of all animations of a survey over a window of about ninety widgets, in
/// milliseconds.
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

/// `show` shows something over the window and returns it. The time includes `show` and the first
/// paint.
template <typename Show>
void timeFirstFrame(benchmark::State &state, QWidget &window, const Show &show) {
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

QWidget *showSurvey(QWidget *window) {
    auto *const controller = new SurveyViewController(session(), Clock::system());
    controller->present(window);
    return controller;
}

void present(benchmark::State &state) {
    DemoWindow window;
    timeFirstFrame(state, window, showSurvey);
}
BENCHMARK(present)->Iterations(presentations)->UseManualTime()->Unit(benchmark::kMillisecond);

/// Returns one of the kinds of controls that a host's window has most of.
QWidget *makeControl(int index) {
    const QString text = QString::number(index);
    switch (index % 4) {
    case 0:
        return new QPushButton(text);
    case 1:
        return new QCheckBox(text);
    case 2:
        return new QLineEdit(text);
    default:
        return new QLabel(text);
    }
}

void presentOverMany(benchmark::State &state) {
    QWidget window;
    auto *const grid = new QGridLayout(&window);
    grid->setContentsMargins({});
    grid->setSpacing(0);
    for (int index = 0; index < manyWidgets; ++index) {
        QWidget *const control = makeControl(index);
        // All of them are within the window, so that each is painted.
        control->setMinimumSize(1, 1);
        grid->addWidget(control, index / columns, index % columns);
    }
    timeFirstFrame(state, window, showSurvey);
}
BENCHMARK(presentOverMany)
    ->Iterations(presentations)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

/// Shows a modal dialog with the controls of the survey's first page as plain Qt widgets.
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
    DemoWindow window;
    timeFirstFrame(state, window, showDialog);
}
BENCHMARK(presentDialog)->Iterations(presentations)->UseManualTime()->Unit(benchmark::kMillisecond);

/// The least that any frame of the window's size costs.
void fillWindowOnce(benchmark::State &state) {
    QImage image(windowSize * qApp->devicePixelRatio(), QImage::Format_ARGB32_Premultiplied);
    for ([[maybe_unused]] auto iteration : state)
        QPainter(&image).fillRect(image.rect(), QColor(0, 0, 0, 153));
}
BENCHMARK(fillWindowOnce)->Unit(benchmark::kMillisecond);

} // namespace
