#include "tests/support/Programs.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSet>
#include <QTemporaryDir>

using namespace KestrioKit;
using namespace Qt::StringLiterals;

namespace {

constexpr QByteArrayView surveys = R"({"configuration":{"border":"#336699"},"surveys":[
    {"event":"Done","surveyId":5,"locale":"en","questions":[
        {"name":1,"type":"nps","props":{"message":"Recommend?","routingOptions":[
            {"comparator":"gte","value":9,"target":2},
            {"comparator":"answered","value":0,"target":1}]}},
        {"name":2,"type":"open","props":{"message":"Why not?"}},
        {"name":3,"type":"likert","props":{"message":"Easy?"}},
        {"name":4,"type":"multiplechoice","props":{"message":"Where from?",
            "options":[{"id":1,"label":"Friend","value":"f"},{"id":2,"label":"Web","value":"w"}],
            "routingOptions":[{"comparator":"eq","value":"2","target":5}]}},
        {"name":5,"type":"open","props":{"message":"Which friend?"}},
        {"name":6,"type":"multipleselect","props":{"message":"What?",
            "options":[{"id":1,"label":"A","value":"a"},{"id":2,"label":"B","value":"b"},
                       {"id":3,"label":"C","value":"c"}]}},
        {"name":7,"type":"open","props":{"message":"Anything else?"}}]}]})";

constexpr auto expectedAnswers =
    R"([[1,9],[3,4],[4,{"2":"w"}],[6,{"1":true,"3":true}],[7,"Fine!"]])";

constexpr auto visit = R"(configure shop
wait-for visitor 10000
window 390 700
ask Done
wait-for asked 10000
present
wait-for "Option 10" 5000
)";

constexpr auto withMouse = R"(click "Option 9"
wait-for "Option 5" 5000
click "Option 4"
wait-for "Multi-choice option: Web" 5000
click "Multi-choice option: Web"
wait-for "Multi-select submit button" 5000
click "Multi-select option: A"
click "Multi-select option: B"
click "Multi-select option: C"
click "Multi-select option: B-selected"
click "Multi-select submit button"
wait-for "Open question button" 5000
click "Open question prompt"
type Fine!
click "Open question button"
wait-for gone 5000
wait-for idle 5000
)";

constexpr auto withKeyboard = R"(key End
key Left
key Space
wait-for "Option 5" 5000
key Right
key Right
key Right
key Return
wait-for "Multi-choice option: Web" 5000
key Down
key Space
wait-for "Multi-select submit button" 5000
key Space
key Down
key Tab
key Space
key Tab
key Return
wait-for "Open question button" 5000
type Fine!
key Tab
key Space
wait-for gone 5000
wait-for idle 5000
)";

class SurveyOnScreen : public ::testing::Test {
protected:
    void SetUp() override {
        QFile file(data.filePath(u"surveys.json"_s));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(surveys.toByteArray());
        file.close();
        service.emplace(data.filePath(u"records.sqlite"_s),
                        QStringList{u"--surveys"_s, file.fileName()});
        ASSERT_TRUE(service->isListening());
    }

    void run(const QByteArray &script) {
        HostProgram host(data.filePath(u"home"_s));
        host.send(script);
        EXPECT_EQ(host.finish(), 0) << host.program().output().constData();
    }

    QList<QByteArray> answers() const {
        QList<QByteArray> responses;
        for (const QJsonValue response : service->records()["responses"_L1].toArray()) {
            QJsonArray answers;
            for (const QJsonValue answer : response["body"_L1]["responses"_L1].toArray())
                answers.append(QJsonArray{answer["questionId"_L1], answer["value"_L1]});
            responses.append(QJsonDocument(answers).toJson(QJsonDocument::Compact));
        }
        return responses;
    }

    /// What was reported of the survey's pages. Two that are sent at once may change places.
    QStringList history() const {
        QStringList history;
        for (const QJsonValue entry : service->records()["history"_L1].toArray()) {
            const QJsonValue body = entry["body"_L1];
            history.append(
                u"%1 %2"_s.arg(body["action"_L1].toString()).arg(body["qid"_L1].toInt()));
        }
        history.sort();
        return history;
    }

    QTemporaryDir data;
    std::optional<ServiceProgram> service;
};

TEST_F(SurveyOnScreen, IsAnsweredAlikeWithTheMouseAndWithTheKeyboardAlone) {
    const QStringList seen{u"seen 0"_s, u"seen 1"_s, u"seen 3"_s,
                           u"seen 4"_s, u"seen 6"_s, u"seen 7"_s};
    run(QByteArray(visit) + withMouse);
    EXPECT_EQ(answers(), QList<QByteArray>{expectedAnswers});
    EXPECT_EQ(history(), seen);
    run(QByteArray(visit) + withKeyboard);
    EXPECT_EQ(answers(), QList<QByteArray>({expectedAnswers, expectedAnswers}));
    QStringList twice = seen + seen;
    twice.sort();
    EXPECT_EQ(history(), twice);
}

TEST_F(SurveyOnScreen, DeliversWhatWasAnsweredWhenTheProgramIsLeft) {
    run(QByteArray(visit) + "click \"Option 9\"\nwait-for \"Option 5\" 5000\nquit\n");
    run("configure shop\nwait-for visitor 10000\nwait-for idle 10000\n");
    const QList<QByteArray> delivered = answers();
    // What was being sent as the program ended may come twice.
    EXPECT_EQ(QSet<QByteArray>(delivered.begin(), delivered.end()), QSet<QByteArray>{"[[1,9]]"});
    run(QByteArray(visit) + "key Escape\nwait-for gone 5000\nwait-for idle 10000\n");
    EXPECT_EQ(answers().size(), delivered.size());
    EXPECT_TRUE(history().contains(u"closed 1"_s));
}

} // namespace
