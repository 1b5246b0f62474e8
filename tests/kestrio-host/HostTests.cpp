#include "tests/support/Programs.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <algorithm>

using namespace KestrioKit;
using namespace Qt::StringLiterals;

namespace {

QJsonValue json(const char *text) {
    const auto array = QJsonDocument::fromJson(QByteArray("[") + text + ']').array();
    return array.first();
}

/// The bodies of what came as `kind`, as they came.
QList<QJsonObject> bodies(const QJsonObject &records, const char *kind) {
    QList<QJsonObject> found;
    for (const QJsonValue record : records[QLatin1StringView(kind)].toArray())
        found.append(record[u"body"_s].toObject());
    return found;
}

/// Sorted, since requests may overtake each other.
QByteArrayList attributeChanges(const QJsonObject &records) {
    QByteArrayList changes;
    for (const QJsonObject &body : bodies(records, "attributeChanges"))
        changes.append(QJsonDocument(body).toJson(QJsonDocument::Compact));
    std::sort(changes.begin(), changes.end());
    return changes;
}

/// The names of the events that were queued.
QByteArrayList queuedEvents(const QJsonObject &records) {
    QByteArrayList names;
    for (const QJsonObject &body : bodies(records, "events")) {
        for (const QJsonValue event : body[u"events"_s].toArray())
            names.append(event[u"event"_s].toString().toUtf8());
    }
    return names;
}

/// "seen 11", "closed 11"; without a number for the survey as a whole. Sorted.
QStringList history(const QJsonObject &records) {
    QStringList lines;
    for (const QJsonObject &body : bodies(records, "history"))
        lines.append(body[u"action"_s].toString() + u' ' +
                     (body.contains(u"qid"_s) ? QString::number(body[u"qid"_s].toInt()) : u""_s));
    lines.sort();
    return lines;
}

class Host : public ::testing::Test {
protected:
    Host() { host.send("configure shop\nwait-for visitor 10000"); }

    /// Has a survey offered: on leaving a cart, 11 (nps), then, by the answer, 12 or 13 (open),
    /// and at last 14 (multiple choice).
    void holdSurvey() {
        host.send("ask \"Checkout Finished\"\nwait-for asked 10000");
        EXPECT_EQ(host.nextReport(), json(R"({"ask":"Checkout Finished","state":"surveyReady"})"));
    }

    QJsonObject finishedRecords() {
        host.send("wait-for idle 10000");
        EXPECT_EQ(host.finish(), 0) << host.program().output().toStdString();
        return service.records();
    }

    QTemporaryDir data;
    ServiceProgram service{data.filePath(u"records.sqlite"_s)};
    HostProgram host{data.path()};
};

TEST_F(Host, deliversTheAnswersToTheSurveyThatAnEventBrings) {
    host.send("survey");
    EXPECT_EQ(host.nextReport(), json(R"({"survey":null})"));
    holdSurvey();
    host.send("survey");
    EXPECT_EQ(host.nextReport(), json(R"({"survey":1,"questions":4})"));
    host.send(R"(answer [3, "", {"2": "search"}])");
    EXPECT_EQ(host.nextReport(),
              json(R"({"answered":[[11,3],[12,""],[14,{"2":"search"}]],"next":4})"));
    host.send("survey\nvisitor");
    EXPECT_EQ(host.nextReport(), json(R"({"survey":null})"));
    EXPECT_EQ(host.nextReport(), json(R"({"visitor":1})"));

    const QJsonObject records = finishedRecords();
    EXPECT_EQ(history(records),
              (QStringList{u"seen "_s, u"seen 11"_s, u"seen 12"_s, u"seen 14"_s}));
    ASSERT_EQ(bodies(records, "responses").size(), 1);
    const QJsonArray responses = bodies(records, "responses")[0][u"responses"_s].toArray();
    ASSERT_EQ(responses.size(), 3);
    EXPECT_EQ(responses[0][u"value"_s], 3);
    EXPECT_FALSE(responses[1].toObject().contains(u"value"_s));
    EXPECT_FALSE(responses[1].toObject().contains(u"answeredAt"_s));
    EXPECT_EQ(responses[2][u"value"_s], json(R"({"2":"search"})"));
    EXPECT_GE(responses[2][u"seenAt"_s].toDouble(), responses[0][u"answeredAt"_s].toDouble());
}

TEST_F(Host, reportsWhatWasAnsweredWhenASurveyIsLeftHalfway) {
    holdSurvey();
    host.send("answer [9]");
    EXPECT_EQ(host.nextReport(), json(R"({"answered":[[11,9]],"next":2})"));
    const QJsonObject records = finishedRecords();
    EXPECT_EQ(history(records), (QStringList{u"seen "_s, u"seen 11"_s, u"seen 13"_s}));
    EXPECT_EQ(bodies(records, "responses").size(), 1);
}

TEST_F(Host, reportsASurveyClosedWithoutAnAnswer) {
    holdSurvey();
    host.send("close\nsurvey");
    EXPECT_EQ(host.nextReport(), json(R"({"survey":null})"));
    const QJsonObject records = finishedRecords();
    EXPECT_EQ(history(records), QStringList{u"closed 11"_s});
    EXPECT_TRUE(bodies(records, "responses").isEmpty());
}

TEST_F(Host, reportsNothingWhenTheAnswersDoNotFitTheSurvey) {
    for (const char *const answers : {"[9, \"\", {\"1\": \"friend\"}, 5]", "[true]", "[1", "7"}) {
        HostProgram other(data.path());
        other.send("configure shop\nwait-for visitor 10000\nask \"Checkout Finished\"");
        other.send("wait-for asked 10000");
        other.nextReport();
        other.send(QByteArray("answer ") + answers);
        EXPECT_EQ(other.nextReport()[u"line"_s], 5) << answers;
        EXPECT_EQ(other.finish(), 1);
    }
    const QJsonObject records = finishedRecords();
    EXPECT_EQ(history(records), QStringList());
    EXPECT_TRUE(bodies(records, "responses").isEmpty());
}

TEST_F(Host, callsEachOperationByItsCommandAndByItsSelector) {
    host.send("attribute color \"dark red\"\nattributes plan pro seats 12\nremove plan\n"
              "email ada@example.com\ntrack Seen\nuser ada\nlocale fr\nwait-for idle 10000");
    host.send("perform setVisitorAttributeWithKey:value: size L\n"
              "perform setVisitorAttributes: a 1 b 2\nperform removeVisitorAttributes: a b\n"
              "perform trackWithEventName:handler: Performed\nwait-for idle 10000\n"
              "perform setDisableNetworkAccess: true\ntrack Dropped\n"
              "perform setDisableNetworkAccess: false\nnetwork off\ntrack Dropped\nnetwork on\n"
              "perform presentNothing\nperform setLocale:");
    for (const bool performed : {true, true, true, true, true, true, false, false})
        EXPECT_EQ(host.nextReport(), (QJsonObject{{u"performed"_s, performed}}));
    const QJsonObject records = finishedRecords();
    const QByteArrayList changes{R"({"a":"1","b":"2"})",   R"({"delete":["a","b"]})",
                                 R"({"delete":["plan"]})", R"({"plan":"pro","seats":"12"})",
                                 R"({"value":"L"})",       R"({"value":"ada@example.com"})",
                                 R"({"value":"dark red"})"};
    EXPECT_EQ(attributeChanges(records), changes)
        << attributeChanges(records).join(' ').toStdString();
    EXPECT_EQ(queuedEvents(records), (QByteArrayList{"iOS Launch", "Seen", "Performed"}));
    EXPECT_EQ(records[u"visitors"_s][0][u"userId"_s], u"ada"_s);
}

TEST_F(Host, isNotIdleBeforeTheCallsMadeWhileConfiguringAreThrough) {
    HostProgram early(data.filePath(u"early"_s));
    early.send(
        "configure shop\ntrack Held\nask \"Checkout Finished\"\nwait-for idle 10000\nsurvey");
    EXPECT_EQ(early.nextReport()[u"state"_s], u"surveyReady"_s);
    EXPECT_EQ(early.nextReport()[u"survey"_s], 1);
    EXPECT_TRUE(queuedEvents(service.records()).contains("Held"));
}

TEST_F(Host, savesWhatWaitsWhenACommandFails) {
    host.send("wait-for idle 10000\nvisitor");
    host.nextReport();
    EXPECT_EQ(service.stop(), 0);
    host.send("track Left\nno-such-command");
    EXPECT_EQ(host.finish(), 1);
    QFile state(data.filePath(u"kestrio-host/Kestrio/SubmissionQueue.json"_s));
    EXPECT_TRUE(state.open(QIODevice::ReadOnly));
    EXPECT_TRUE(state.readAll().contains("\"Left\""));
}

} // namespace
