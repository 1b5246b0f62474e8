#include "KestrioKit/Platform/NetworkTransport.h"
#include "KestrioKit/Platform/Storage.h"
#include "tests/faults/FaultRow.h"
#include "tests/support/Programs.h"
#include "tests/support/RoutedTransport.h"
#include "tests/UI/SurveyScreenTest.h"

#include <QApplication>
#include <QDir>
#include <QJsonDocument>
#include <QtCore/private/qhooks_p.h>
#include <QTemporaryDir>
#include <QTemporaryFile>

#include <malloc.h>

#include <random>

namespace KestrioKit {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool sanitized = true;
#else
constexpr bool sanitized = false;
#endif

constexpr auto questions = R"([
    {"name":1,"type":"nps","props":{"message":"Recommend?"}},
    {"name":2,"type":"likert","props":{"message":"Easy?"}},
    {"name":3,"type":"multiplechoice","props":{"message":"Where from?","options":[
        {"id":1,"label":"Friend","value":"f"},{"id":2,"label":"Web","value":"w"}]}},
    {"name":4,"type":"multipleselect","props":{"message":"What?","options":[
        {"id":1,"label":"A","value":"a"},{"id":2,"label":"B","value":"b"}]}},
    {"name":5,"type":"open","props":{"message":"Anything else?"}}])";
constexpr int questionCount = 5;
const QByteArrayList locales{"en", "ar", "de", "ja"};

/// A service, in memory, that answers the event "en" with survey 1, and so on.
std::unique_ptr<ServiceProgram> surveyService(quint16 port) {
    QTemporaryFile file;
    EXPECT_TRUE(file.open());
    QByteArrayList surveys;
    for (const QByteArray &locale : locales)
        surveys.append(R"({"event":")" + locale + R"(","surveyId":)" +
                       QByteArray::number(surveys.size() + 1) + R"(,"locale":")" + locale +
                       R"(","questions":)" + questions + '}');
    file.write(R"({"surveys":[)" + surveys.join(',') + "]}");
    file.flush();
    return std::make_unique<ServiceProgram>(u":memory:"_s,
                                            QStringList{u"--surveys"_s, file.fileName()}, port);
}

/// Fonts, glyphs and pictures that Qt keeps.
constexpr qint64 bytesOfCaches = 512 * 1024;
/// And the picture of a window, or the room for it.
constexpr qint64 bytesOfPages = 4 * 1024 * 1024;

std::atomic<qint64> objects = 0;

/// What a process holds. Bytes are 0 where a sanitizer allocates, which keeps what is freed.
struct Holdings {
    qint64 heapBytes = 0;
    qint64 privateBytes = 0;
    qint64 objects = 0;
    qint64 widgets = 0;
    qint64 descriptors = 0;
    qint64 threads = 0;
};

qint64 entries(const QString &folder) {
    return QDir(folder).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size();
}

qint64 privateDirtyBytes() {
    QFile file(u"/proc/self/smaps_rollup"_s);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray all = file.readAll();
    const QByteArray label = "Private_Dirty:";
    const qsizetype start = all.indexOf(label) + label.size();
    return all.sliced(start, all.indexOf("kB", start) - start).trimmed().toLongLong() * 1024;
}

} // namespace

/// Surveys of a service that is a program of its own, so that nothing but the library's keeps
/// growing here.
class SurveyLoad : public SurveyScreenTest {
protected:
    void SetUp() override {
        QFile::remove(*Storage::localLibraryURL("VisitorData"_L1));
        const QUrl url(u"http://127.0.0.1:%1"_s.arg(service->port()));
        network = std::make_shared<HeldAnswers>(std::make_shared<RoutedTransport>(
            std::make_shared<NetworkTransport>(thread, clock), url));
        core = KestrioCore::make(context());
        core->configure(u"env"_s);
        finish();
        qtHookData[QHooks::AddQObject] =
            quintptr(static_cast<QHooks::AddQObjectCallback>([](QObject *) { ++objects; }));
        qtHookData[QHooks::RemoveQObject] =
            quintptr(static_cast<QHooks::RemoveQObjectCallback>([](QObject *) { --objects; }));
    }
    void TearDown() override {
        qtHookData[QHooks::AddQObject] = qtHookData[QHooks::RemoveQObject] = 0;
        SurveyScreenTest::TearDown();
    }

    Holdings holdings() {
        // The last survey goes when the event loop gets to it.
        EXPECT_TRUE(waitFor([] { return QApplication::allWidgets().size() == ownWidgets; }));
        finish();
        Holdings now{.objects = objects,
                     .widgets = QApplication::allWidgets().size(),
                     .descriptors = entries(u"/proc/self/fd"_s),
                     .threads = entries(u"/proc/self/task"_s)};
        if (sanitized)
            return now;
        const struct mallinfo2 heap = mallinfo2();
        // Without what the service has written, which is kept as well.
        now.heapBytes =
            qint64(heap.uordblks + heap.hblkhd) - service->program().errors().capacity();
        now.privateBytes = privateDirtyBytes() - service->program().errors().size();
        return now;
    }

    void ask(QWidget *from) {
        const QString event = QString::fromUtf8(locales[qsizetype(random() % locales.size())]);
        core->track(event, [this, from](SurveyState state) {
            if (state == SurveyState::surveyReady)
                core->presentSurvey(from);
        });
        finish();
        ASSERT_NE(survey(), nullptr);
    }

    void answer(int count) {
        static constexpr const char *lastClick[questionCount] = {
            "Option 9", "Option 4", "Multi-choice option: Web", "Multi-select submit button",
            "Open question button"};
        for (int question = 0; question < count; ++question) {
            if (question == 3)
                click(u"Multi-select option: A"_s);
            if (question == 4)
                type(u"Fine"_s);
            click(QString::fromUtf8(lastClick[question]));
        }
    }

    /// Presents one, answers some of it, and has it end in one way or another.
    void presentAndEnd(int number) {
        if (number % 7 == 0)
            return endWithItsWindow();
        // What presented it may go meanwhile.
        ask(std::make_unique<QWidget>(&window).get());
        if (number % thanksEvery == 0) {
            answer(questionCount);
            ASSERT_TRUE(waitFor([this] { return !survey(); }));
            return;
        }
        const auto way = random() % std::size(endings);
        // The page that thanks has nothing to press.
        answer(int(random() % (questionCount + (way < 2 ? 1 : 0))));
        endings[way]();
    }

    void endWithItsWindow() {
        auto host = std::make_unique<QWidget>();
        host->resize(window.size());
        host->show();
        ask(host.get());
        host.reset();
        window.activateWindow();
        finish();
    }

    /// Each takes a second of real time.
    static constexpr int thanksEvery = 100;
    /// The window, the field and the button.
    static constexpr int ownWidgets = 3;
    /// To the service, which come and go.
    static constexpr int idleConnections = 6;
    static constexpr int objectsPerConnection = 5;
    const std::function<void()> endings[5] = {
        [this] {
            window.hide();
            window.show();
            finish();
        },
        [this] { delete survey(); },
        [this] { click(u"Close button"_s); },
        [this] { key(Qt::Key_Escape); },
        [this] { click(QPoint(5, 5)); },
    };
    std::mt19937 random{std::random_device()()};
    const std::unique_ptr<ServiceProgram> service = surveyService(0);
};

TEST_F(SurveyLoad, LeavesNothingBehind) {
    FaultRow row("surveys presented and ended", 600s);
    const int surveys = FaultRow::times(10'000, 100);
    Holdings before;
    for (int number = 1 - FaultRow::times(500, 50); number <= surveys && !HasFailure(); ++number) {
        presentAndEnd(number);
        ASSERT_EQ(survey(), nullptr);
        if (number == 0)
            before = holdings();
    }
    const Holdings after = holdings();
    EXPECT_LE(after.objects, before.objects + idleConnections * objectsPerConnection);
    EXPECT_LE(after.widgets, before.widgets);
    EXPECT_LE(after.descriptors, before.descriptors + idleConnections);
    EXPECT_LE(after.threads, before.threads);
    EXPECT_LE(after.heapBytes - before.heapBytes, bytesOfCaches);
    EXPECT_LE(after.privateBytes - before.privateBytes, bytesOfPages);
    row.add(surveys, "surveys");
    row.add((after.heapBytes - before.heapBytes) / 1024, "KiB more allocated");
    row.add((after.privateBytes - before.privateBytes) / 1024, "KiB more private memory");
    row.add(after.objects - before.objects, "more objects");
    row.add(after.widgets - before.widgets, "more widgets");
    row.add(after.descriptors - before.descriptors, "more descriptors");
    row.add(after.threads - before.threads, "more threads");
}

TEST(ThreadFaults, EveryOperationIsCalledFromManyThreadsAtOnce) {
    FaultRow row("eight threads, every operation", 120s);
    const auto service = surveyService(servicePort);
    const int runs = FaultRow::times(6, 1);
    const int seconds = FaultRow::times(10, 3);
    qint64 calls = 0;
    qint64 shown = 0;
    for (int run = 0; run < runs; ++run) {
        const QString seed = QString::number(std::random_device()());
        SCOPED_TRACE(qPrintable(seed));
        const QTemporaryDir data;
        RunningProgram host(
            QStringLiteral(KESTRIO_BUSY_HOST), {QString::number(seconds), seed},
            {{u"XDG_DATA_HOME"_s, data.path()}, {u"KESTRIO_ENVIRONMENT"_s, u"local"_s}});
        // Its time, and some to begin and to end.
        EXPECT_EQ(host.waitForEnd((seconds + 8) * 1s), 0) << host.errors().toStdString();
        const QByteArray lastLine = host.errors().trimmed().split('\n').last();
        const QJsonObject counts = QJsonDocument::fromJson(lastLine).object();
        EXPECT_FALSE(counts.isEmpty()) << host.errors().toStdString();
        calls += counts["calls"_L1].toInteger();
        shown += counts["shown"_L1].toInteger();
    }
    EXPECT_GE(shown, runs);
    row.add(runs, "processes");
    row.add(calls, "calls");
    row.add(shown, "surveys shown");
}

} // namespace KestrioKit
