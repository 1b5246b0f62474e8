#include "tests/support/Programs.h"

#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>

using namespace KestrioKit;
using namespace Qt::StringLiterals;

namespace {

const QByteArray visit = R"(configure shop
wait-for visitor 60000
window 390 700
ask "Search Used"
wait-for asked 60000
present
wait-for "Option 5" 60000
)";

/// Three of the sample's questions about the search, each answered with the keyboard alone.
const QByteArray answerAll = R"(key Right
key Return
wait-for "Multi-select submit button" 60000
key Space
key Down
key Tab
key Space
key Tab
key Return
wait-for "Open question button" 60000
type Fine!
key Tab
key Space
wait-for "Multi-choice option: Every day" 60000
key Down
key Space
wait-for gone 60000
wait-for idle 60000
)";

class SurveyOnScreen : public ::testing::Test {
protected:
    void run(const QByteArray &script) {
        HostProgram host(data.filePath(u"home"_s));
        host.send(script);
        EXPECT_EQ(host.finish(), 0) << host.output().constData();
    }

    QByteArrayList answers() const {
        QByteArrayList responses;
        for (const QJsonValue response : service.records()["responses"_L1].toArray()) {
            QJsonArray answers;
            for (const QJsonValue answer : response["body"_L1]["responses"_L1].toArray())
                answers.append(QJsonArray{answer["questionId"_L1], answer["value"_L1]});
            responses.append(QJsonDocument(answers).toJson(QJsonDocument::Compact));
        }
        return responses;
    }

    QTemporaryDir data;
    ServiceProgram service{data.filePath(u"records.sqlite"_s)};
};

TEST_F(SurveyOnScreen, IsAnsweredWithTheKeyboardAlone) {
    run(visit + answerAll);
    const auto expected =
        R"([[31,2],[32,{"1":true,"3":true}],[33,"Fine!"],[34,{"2":"sometimes"}]])";
    EXPECT_EQ(answers(), QByteArrayList{expected});
}

TEST_F(SurveyOnScreen, DeliversWhatWasAnsweredWhenTheProgramIsLeft) {
    run(visit + "click \"Option 2\"\nwait-for \"Multi-select submit button\" 60000\nquit\n");
    run("configure shop\nwait-for visitor 60000\nwait-for idle 60000\n");
    const QByteArrayList delivered = answers();
    // What was being sent as the program ended may come twice.
    EXPECT_GT(delivered.size(), 0);
    EXPECT_EQ(delivered.count("[[31,2]]"), delivered.size());
    run(visit + "key Escape\nwait-for gone 60000\nwait-for idle 60000\n");
    EXPECT_EQ(answers(), delivered);
}

} // namespace
