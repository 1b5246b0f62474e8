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

/// Runs scripts against a service with an empty database.
class Host : public ::testing::Test {
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
    HostProgram host{data.path()};
};

TEST_F(Host, deliversTheAnswersToTheSurveysThatAnEventBrings) {
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

TEST_F(Host, callsEachOperationByItsCommandOrByItsSelector) {
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

// The corner of the window is the background of the survey, which closes it.
TEST_F(Host, obeysWhatIsDoneAtItsWindow) {
    const QString picture = data.filePath(u"window.png"_s);
    host.send("window 1280 800\ntree\nclick Environment\nkey Ctrl+A\ntype shop \xf0\x9f\x98\x80\n"
              "key Backspace\nkey Backspace\nkey Tab\nspeak\nkey Shift+Tab\nfocus\n"
              "click Configure\nwait-for visitor 60000\npress \"Place order\"\nrelease\n"
              "wait-for shown 60000\nclick-at 0 0\nwait-for gone 60000\nfocus\nresize 390 844\n"
              "screenshot " +
              picture.toUtf8() + "\nperform presentSurveyFrom: window");
    expectReports(R"({"tree":null}, {"spoken":["Coffee, whole beans, spinbox",
        "Environment, editabletext, Environment","Configure, button"]},
        {"focus":"Environment"}, {"focus":"Place order"}, {"performed":true})");
    finish();
    EXPECT_EQ(QImage(picture).size(), QSize(390, 844));
    EXPECT_EQ(recorded(u"{\"action\":\"closed\",\"eid\":\"shop\""_s), 1);
}

TEST_F(Host, endsAtTheFirstLineThatFailsAndSaysWhich) {
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
        HostProgram failing(data.path());
        failing.send(script + "\nquit 0");
        EXPECT_EQ(failing.finish(), 1) << script.toStdString();
        const QJsonObject last = failing.reports().value(failing.reports().size() - 1);
        EXPECT_EQ(last[u"line"_s], line) << script.toStdString();
        EXPECT_FALSE(last[u"error"_s].toString().isEmpty()) << script.toStdString();
    }
    EXPECT_EQ(recorded(u"\"history\":[]"_s), 1);
    EXPECT_EQ(recorded(u"\"responses\":[]"_s), 1);
}

TEST(HostScript, thatCannotBeReadIsRefusedInOneLine) {
    const Environment withoutDisplay{
        {u"DISPLAY"_s, {}}, {u"WAYLAND_DISPLAY"_s, {}}, {u"QT_QPA_PLATFORM"_s, {}}};
    for (const QStringList &arguments : {QStringList{u"order"_s},
                                         {u"--script"_s},
                                         {u"--script"_s, QDir::tempPath()},
                                         {u"--sript"_s},
                                         {u"extra"_s}}) {
        RunningProgram host(hostProgramFile(), arguments, withoutDisplay);
        EXPECT_EQ(host.waitForEnd(), 2) << qPrintable(arguments.join(u' '));
        EXPECT_TRUE(host.output().isEmpty());
        EXPECT_EQ(host.errors().count("kestrio-host: "), 1) << host.errors().toStdString();
    }
}

} // namespace
