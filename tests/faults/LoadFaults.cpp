#include "KestrioKit/Core/Platform/Storage.h"
#include "tests/faults/FaultRow.h"
#include "tests/support/Programs.h"
#include "tests/Widgets/SurveyScreenTest.h"

#include <QApplication>
#include <QDir>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <malloc.h>

#include <random>

namespace KestrioKit {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Events that the service answers with a survey, and what answers all of that.
const std::pair<QString, QStringList> surveys[] = {
    {u"Checkout Finished"_s, {u"Option 3"_s, u"Open question button"_s}},
    {u"Search Used"_s,
     {u"Option 2"_s, u"Multi-select option: Too few results"_s, u"Multi-select submit button"_s,
      u"Open question button"_s, u"Multi-choice option: Every day"_s}},
};

qint64 entries(const char *folder) {
    const QDir entries(u"/proc/self/"_s + QLatin1StringView(folder));
    return entries.entryList(QDir::AllEntries | QDir::System).size();
}

} // namespace

/// Surveys of a service that is a program of its own, so that nothing but the library's keeps
/// growing here.
class SurveyLoad : public SurveyScreenTest {
protected:
    void SetUp() override {
        QFile::remove(*Storage::localLibraryURL("VisitorData"_L1));
        network->setServer(QUrl(u"http://127.0.0.1:%1"_s.arg(service.port())));
        core = KestrioCore::make(context());
        core->configure(u"env"_s);
        finish();
    }

    /// What the process holds; this much more of it is no leak.
    QList<FaultRow::Count> holdings() {
        // The last survey goes when the event loop gets to it.
        EXPECT_TRUE(waitFor([] { return QApplication::allWidgets().size() == ownWidgets; }));
        finish();
        constexpr int idleConnections = 6; // to the service, which come and go
        QList<FaultRow::Count> now{{QApplication::allWidgets().size(), "more widgets", 0},
                                   {entries("fd"), "more descriptors", idleConnections},
                                   {entries("task"), "more threads", 0}};
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__) // they keep what is freed
        // Without what the service has written, which is kept as well.
        const QByteArray &log = service.errors();
        const struct mallinfo2 heap = mallinfo2();
        const auto allocated = qint64(heap.uordblks + heap.hblkhd) - log.capacity();
        const auto dirty = processKilobytes(u"smaps_rollup"_s, "Private_Dirty:");
        // Qt keeps fonts and pictures.
        now.append({allocated / 1024, "more KiB allocated", 512});
        now.append({dirty - log.size() / 1024, "more KiB of private memory", 4096});
#endif
        return now;
    }

    /// Presents one, answers some of it, and has it end in one way or another.
    void presentAndEnd(int number) {
        const auto &[event, clicks] = surveys[random() % std::size(surveys)];
        const bool endsWithItsWindow = number % 7 == 0;
        auto host = std::make_unique<QWidget>(endsWithItsWindow ? nullptr : &window);
        if (endsWithItsWindow)
            host->show();
        core->track(event, [this, &host](SurveyState state) {
            if (state == SurveyState::surveyReady)
                core->presentSurvey(host.get());
        });
        finish();
        ASSERT_NE(survey(), nullptr);
        // What presented a survey may go meanwhile.
        host.reset();
        if (endsWithItsWindow)
            return window.activateWindow();
        const bool complete = number % thanksEvery == 0;
        const auto way = random() % std::size(endings);
        // The page that thanks has nothing to press.
        const qsizetype some = random() % unsigned(clicks.size() + (way < 2 ? 1 : 0));
        for (const QString &identifier : clicks.first(complete ? clicks.size() : some)) {
            key(Qt::Key_F);
            click(identifier);
        }
        if (complete)
            ASSERT_TRUE(waitFor([this] { return !survey(); }));
        else
            endings[way]();
        finish();
    }

    /// Each takes a second of real time.
    static constexpr int thanksEvery = 100;
    /// The window, the field and the button.
    static constexpr int ownWidgets = 3;
    const std::function<void()> endings[5] = {
        [this] {
            window.hide();
            letTheWaitPass();
            window.show();
        },
        [this] { delete survey(); },
        [this] { click(u"Close button"_s); },
        [this] { key(Qt::Key_Escape); },
        [this] { click(QPoint(5, 5)); },
    };
    std::mt19937 random{std::random_device()()};
    ServiceProgram service{u":memory:"_s, {}, 0};
};

TEST_F(SurveyLoad, LeavesNothingBehind) {
    FaultRow row("surveys presented and ended", 600s);
    const int count = FaultRow::times(10'000, 100);
    QList<FaultRow::Count> before;
    for (int number = 1 - FaultRow::times(500, 50); number <= count && !HasFailure(); ++number) {
        presentAndEnd(number);
        ASSERT_EQ(survey(), nullptr);
        if (number == 0)
            before = holdings();
    }
    QList<FaultRow::Count> growth = holdings();
    for (qsizetype index = 0; index < before.size(); ++index)
        growth[index].count -= before[index].count;
    row.add({{count, "surveys"}});
    row.add(growth);
}

TEST(ThreadFaults, EveryOperationIsCalledFromManyThreadsAtOnce) {
    FaultRow row("eight threads, every operation", 120s);
    const ServiceProgram service(u":memory:"_s);
    const int runs = FaultRow::times(6, 1);
    const int seconds = FaultRow::times(10, 3);
    qint64 calls = 0, shown = 0;
    for (int run = 0; run < runs; ++run) {
        const QString seed = QString::number(std::random_device()());
        SCOPED_TRACE(qPrintable(seed));
        const QTemporaryDir data;
        RunningProgram host(
            QStringLiteral(KESTRIO_BUSY_HOST), {QString::number(seconds), seed},
            {{u"XDG_DATA_HOME"_s, data.path()}, {u"KESTRIO_ENVIRONMENT"_s, u"local"_s}});
        EXPECT_EQ(host.waitForEnd(seconds * 1s + patience), 0) << host.errors().toStdString();
        const QByteArray lastLine = host.errors().trimmed().split('\n').last();
        const QJsonObject counts = QJsonDocument::fromJson(lastLine).object();
        calls += counts["calls"_L1].toInteger();
        shown += counts["shown"_L1].toInteger();
    }
    EXPECT_GE(shown, runs);
    row.add({{runs, "processes"}, {calls, "calls"}, {shown, "surveys shown"}});
}

} // namespace KestrioKit
