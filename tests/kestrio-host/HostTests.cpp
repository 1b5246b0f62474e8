#include "tests/support/Programs.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QTemporaryDir>

using namespace KestrioKit;
using namespace Qt::StringLiterals;

namespace {

// The survey of the sample's shop has 11 (nps), then, by the answer, 12 or 13 (open), and at last
// 14 (multiple choice).
const QByteArray visit = "configure shop\nwait-for visitor 60000\n";
const QByteArray askForSurvey = "ask \"Checkout Finished\"\nwait-for asked 60000\n";

/// The options that choose the kind of window.
const std::vector<QStringList> kinds{
    {},
#ifdef KESTRIO_QUICK
    {u"--quick"_s},
#endif
};

/// Runs scripts against a service with an empty database.
class Host : public ::testing::TestWithParam<QStringList> {
protected:
    void expectReports(const QByteArray &reports) {
        for (const QJsonValue report : QJsonDocument::fromJson('[' + reports + ']').array())
            EXPECT_EQ(host.nextReport(), report.toObject()) << host.output().toStdString();
    }
    void finish() {
        host.send("wait-for idle 60000");
        EXPECT_EQ(host.finish(), 0) << host.output().toStdString();
    }
    /// How often the service's records, their keys sorted, hold `text`; "#" stands for a number.
    qsizetype recorded(const QString &text) const {
        const QByteArray records = QJsonDocument(service.records()).toJson(QJsonDocument::Compact);
        const QString pattern = QRegularExpression::escape(text).replace(u"\\#"_s, u"[\\d.]+"_s);
        return QString::fromUtf8(records).count(QRegularExpression(pattern));
    }

    QTemporaryDir data;
    ServiceProgram service{data.filePath(u"records.sqlite"_s)};
    HostProgram host{data.path(), {}, {}, GetParam()};
};

INSTANTIATE_TEST_SUITE_P(Kinds, Host, ::testing::ValuesIn(kinds));

TEST_P(Host, deliversTheAnswersToTheSurveysThatAnEventBrings) {
    const QByteArray held = R"({"ask":"Checkout Finished","state":"surveyReady"})";
    // Idle is later than what was asked before there was a visitor.
    host.send("configure shop\nask \"Checkout Finished\"\nwait-for idle 60000\nsurvey\n"
              "answer [3, \"\", {\"2\": \"search\"}]\nsurvey");
    expectReports(held + R"(, {"survey":1,"questions":4},
        {"answered":[[11,3],[12,""],[14,{"2":"search"}]],"next":4}, {"survey":null})");
    host.send(askForSurvey + "answer [9]\n" + askForSurvey + "close\nsurvey\nvisitor");
    expectReports(held + R"(, {"answered":[[11,9]],"next":2}, )" + held +
                  R"(, {"survey":null}, {"visitor":1})");
    finish();
    EXPECT_EQ(recorded(u"\"action\""_s), 8);
    EXPECT_EQ(recorded(u"\"questionId\""_s), 4);
    EXPECT_EQ(recorded(u"{\"answeredAt\":#,\"questionId\":11,\"seenAt\":#,\"value\":3},"
                       "{\"questionId\":12,\"seenAt\":#},{\"answeredAt\":#,\"questionId\":14,"
                       "\"seenAt\":#,\"value\":{\"2\":\"search\"}}]"_s),
              1);
}

TEST_P(Host, callsEachOperationByItsCommandOrByItsSelector) {
    // What is in flight when the network is switched off is sent again later.
    host.send(visit +
              "email ada@example.com\nwait-for idle 60000\nnetwork off\ntrack Dropped\nnetwork on\n"
              "perform setVisitorAttributes: a 1 b 2\nperform removeVisitorAttributes: a b\n"
              "wait-for idle 60000\nperform setDisableNetworkAccess: true\ntrack Dropped\n"
              "perform setDisableNetworkAccess: false\nperform presentNothing\nperform setLocale:");
    for (const bool performed : {true, true, true, true, false, false})
        EXPECT_EQ(host.nextReport(), (QJsonObject{{u"performed"_s, performed}}));
    finish();
    for (const QString &body : {uR"({"a":"1","b":"2"})"_s, uR"({"delete":["a","b"]})"_s,
                                uR"({"value":"ada@example.com"})"_s})
        EXPECT_EQ(recorded(u"\"body\":"_s + body), 1) << qPrintable(body);
    EXPECT_EQ(recorded(u"\"event\":\"Dropped\""_s), 0);
}

TEST_P(Host, obeysWhatIsDoneAtItsWindow) {
    const QString picture = data.filePath(u"window.png"_s);
    host.send("window 1280 800\ntree\nfocus\nclick Environment\nkey Ctrl+A\n"
              "type shop \xf0\x9f\x98\x80\nkey Backspace\nkey Backspace\nkey Tab\nspeak\n"
              "key Shift+Tab\nfocus\nclick Configure\nwait-for visitor 60000\n"
              "press Voucher\nrelease\nkey Shift+Tab\nkey Space\nspeak\nfocus\nresize 390 844\n"
              "screenshot " +
              picture.toUtf8() + "\nperform presentSurveyFrom: window");
    expectReports(R"({"tree":null}, {"focus":"Coffee, whole beans"},
        {"spoken":["Coffee, whole beans, spinbox","Environment, editabletext, Environment",
        "Configure, button"]}, {"focus":"Environment"}, {"spoken":[
        "Environment, editabletext, Environment","Configure, button",
        "Voucher, editabletext, Voucher","Gift wrapping, checkbox, not checked","checked"]},
        {"focus":"Gift wrapping"}, {"performed":true})");
    QFile libraries(u"/proc/%1/maps"_s.arg(host.processId()));
    ASSERT_TRUE(libraries.open(QIODevice::ReadOnly));
    EXPECT_EQ(libraries.readAll().contains("libQt6Widgets"), GetParam().isEmpty());
    finish();
    EXPECT_EQ(QImage(picture).size(), QSize(390, 844));
}

// The corner of the window is the background of the survey, which closes it.
TEST_P(Host, showsTheSurveyThatAnOrderBrings) {
    host.send("window 1280 800\nclick Configure\nwait-for visitor 60000\nclick \"Place order\"\n"
              "wait-for shown 60000\nclick-at 0 0\nwait-for gone 60000\nfocus");
    expectReports(R"({"focus":"Place order"})");
    finish();
    EXPECT_EQ(recorded(u"{\"action\":\"closed\",\"eid\":\"demo-shop\""_s), 1);
}

TEST_P(Host, endsAtTheFirstLineThatFailsAndSaysWhich) {
    const std::pair<QByteArray, int> scripts[] = {
        {"# first\n\nno-such-command", 3},
        {"track \"b\\t\"", 1},
        {"network maybe", 1},
        {"appearance system\nappearance grey", 2},
        {"close", 1},
        {"wait-for sun 10", 1},
        {"wait 1\nwait-for visitor 20\nvisitor", 2},
        {"quit 256", 1},
        {"present", 1},
        {"window 0 5", 1},
        {"window 400 400\nclick Nothing", 2},
        {"window 400 400\nclick \"Place order\"", 2},
        {"window 400 400\nclick-at 400 1", 2},
        {"window 400 400\nrelease", 2},
        {"window 400 400\nkey Nothing", 2},
        {"window 400 400\nscreenshot /nowhere/window.png", 2},
        // More than is read at a time: the rest arrives while the click is handled.
        {"window 400 400\nclick-at 1 1" + QByteArray(5000, '\n') + "wait-for visitor 50", 5002},
        {visit + askForSurvey + "answer [9, \"\", {\"1\": \"friend\"}, 5]", 5},
        {visit + askForSurvey + "answer [true]", 5},
    };
    for (const auto &[script, line] : scripts) {
        HostProgram failing(data.path(), {}, {}, GetParam());
        failing.send(script + "\nquit 0");
        EXPECT_EQ(failing.finish(), 1) << script.toStdString();
        const QJsonObject last = failing.reports().value(failing.reports().size() - 1);
        EXPECT_EQ(last[u"line"_s], line) << script.toStdString();
        EXPECT_FALSE(last[u"error"_s].toString().isEmpty()) << script.toStdString();
    }
    EXPECT_EQ(recorded(u"\"history\":[]"_s), 1);
    EXPECT_EQ(recorded(u"\"responses\":[]"_s), 1);
}

class HostScript : public ::testing::TestWithParam<QStringList> {};
INSTANTIATE_TEST_SUITE_P(Kinds, HostScript, ::testing::ValuesIn(kinds));

TEST_P(HostScript, thatCannotBeReadIsRefusedInOneLine) {
    const Environment withoutDisplay{
        {u"DISPLAY"_s, {}}, {u"WAYLAND_DISPLAY"_s, {}}, {u"QT_QPA_PLATFORM"_s, {}}};
    for (const QStringList &arguments : {QStringList{u"order"_s},
                                         {u"--script"_s},
                                         {u"--script"_s, QDir::tempPath()},
                                         {u"--sript"_s},
                                         {u"extra"_s}}) {
        RunningProgram host(hostProgramFile(), GetParam() + arguments, withoutDisplay);
        EXPECT_EQ(host.waitForEnd(), 2) << qPrintable(arguments.join(u' '));
        EXPECT_TRUE(host.output().isEmpty());
        EXPECT_EQ(host.errors().count("kestrio-host: "), 1) << host.errors().toStdString();
    }
}

} // namespace
