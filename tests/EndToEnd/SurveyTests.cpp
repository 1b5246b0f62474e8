#include "tests/support/Programs.h"

#include <gtest/gtest.h>

#include <QJsonArray>
#include <QTemporaryDir>

using namespace KestrioKit;
using namespace Qt::StringLiterals;

TEST(SurveyOnScreen, DeliversWhatWasAnsweredWhenTheProgramIsLeft) {
    const QTemporaryDir data;
    const ServiceProgram service(data.filePath(u"records.sqlite"_s));
    const auto run = [&](const QByteArray &script) {
        HostProgram host(data.filePath(u"home"_s));
        host.send(script);
        EXPECT_EQ(host.finish(), 0) << host.output().constData();
        return service.records()["responses"_L1].toArray();
    };
    const QByteArray visit = "configure shop\nwait-for visitor 60000\nwindow 390 700\n"
                             "ask \"Search Used\"\nwait-for asked 60000\npresent\n"
                             "wait-for \"Option 5\" 60000\n";
    run(visit + "click \"Option 2\"\nwait-for \"Multi-select submit button\" 60000\nquit\n");
    const QJsonArray delivered =
        run("configure shop\nwait-for visitor 60000\nwait-for idle 60000\n");
    // What was being sent as the program ended may come twice.
    EXPECT_GT(delivered.size(), 0);
    for (const QJsonValue response : delivered) {
        const QJsonArray answers = response["body"_L1]["responses"_L1].toArray();
        EXPECT_EQ(answers.size(), 1);
        EXPECT_EQ(answers[0]["questionId"_L1], 31);
        EXPECT_EQ(answers[0]["value"_L1], 2);
    }
    EXPECT_EQ(run(visit + "key Escape\nwait-for gone 60000\nwait-for idle 60000\n"), delivered);
}
