#include "tests/Core/Queue/QueueTest.h"

namespace KestrioKit {

class QueueRunnerTest : public QueueTest {
protected:
    void SetUp() override { make(); }

    const Error failure{u"test"_s, 1, u"The cable was cut"_s};
};

TEST_F(QueueRunnerTest, RetriesServerErrorsAndFailuresUpToFiveSends) {
    // The last one is final.
    const QList<std::pair<int, std::optional<Error>>> rows[] = {
        {{400, {}}},
        {{499, failure}},
        {{600, {}}},
        {{503, {}}, {503, {}}, {503, {}}, {503, {}}, {503, {}}},
        {{500, {}}, {599, {}}, {200, failure}, {0, failure}, {200, {}}},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(&row - rows);
        appendAttribute(u"a"_s);
        settle();
        for (qsizetype number = 0; number < row.size(); ++number) {
            if (number > 0) {
                EXPECT_EQ(file(), stateText({}, {"a"}));
                advance(QList<double>{5, 10, 30, 60}[number - 1] - 0.125);
                EXPECT_EQ(sender->out(), QStringList());
                advance(0.125);
            }
            ASSERT_EQ(sender->out(), QStringList(u"a"_s)) << number;
            clock.advance(3);
            answer(row[number].first, row[number].second);
        }
        advance(1000);
        EXPECT_EQ(sender->out(), QStringList());
        EXPECT_EQ(file(), stateText({}));
        const QString completion = u"a "_s + QString::number(row.last().first);
        EXPECT_EQ(std::exchange(completions, {}), QStringList(completion));
    }
}

TEST_F(QueueRunnerTest, FinishesWhatCannotBeSent) {
    queue->updateAuth(std::nullopt, std::nullopt);
    appendEvent(u"event"_s);
    appendAttribute(u"attribute"_s);
    settle();
    EXPECT_EQ(completions, (QStringList{u"event 0"_s, u"attribute 0"_s}));
    EXPECT_EQ(file(), stateText({}).replace(R"("vid":8,"token":"token",)", ""));
}

} // namespace KestrioKit
