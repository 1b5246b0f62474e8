#include "KestrioKit/Platform/Logging.h"

#include <gtest/gtest.h>

#include <array>

namespace KestrioKit {

using namespace Qt::StringLiterals;

TEST(LoggingTest, PrintsWhatIsAtLeastAsSevereAsTheLevelAskedFor) {
    constexpr std::array levels{LogLevel::fine, LogLevel::info, LogLevel::debug, LogLevel::error,
                                LogLevel::none};
    const QByteArray passing[] = {"fide", "ide", "de", "e", ""}; // by their first letters
    for (const LogLevel current : levels) {
        for (const LogLevel level : levels) {
            const char letter = char(QLatin1Char(rawValue(level).front()).toLatin1() | 0x20);
            EXPECT_EQ(passes(level, current), passing[int(current)].contains(letter))
                << int(level) << " at " << int(current);
        }
    }
}

TEST(LoggingTest, KnowsLevelsByTheirExactNames) {
    EXPECT_EQ(logLevel(u"FINE"_s), LogLevel::fine);
    EXPECT_EQ(logLevel(u"NONE"_s), LogLevel::none);
    for (const QString &name : {u"debug"_s, u""_s, u" INFO"_s, u"1"_s})
        EXPECT_EQ(logLevel(name), std::nullopt);
}

TEST(LoggingTest, PrintsItemsAsAListOfQuotedTextsAndPlainNumbers) {
    EXPECT_EQ(printedList({printedForm("a \"b\"\\\n"), printedForm(qint64(-7)),
                           printedForm(std::optional<QString>())}),
              uR"(["a \"b\"\\\n", -7, nil])"_s);
    EXPECT_EQ(printedList({}), u"[]"_s);
}

TEST(LoggingTest, IsSilentByDefaultButForATraceThatIsDroppedUnfinished) {
    bool evaluated = false;
    ::testing::internal::CaptureStdout();
    KSLog(LogLevel::error, "nothing");
    {
        LogTrace trace(LogLevel::error, {u"begun"_s});
        trace.log({}, [&] {
            evaluated = true;
            return QStringList();
        });
        trace.finish({u"done"_s});
    }
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
    EXPECT_FALSE(evaluated);
    ::testing::internal::CaptureStdout();
    { const LogTrace trace(LogLevel::error, {u"begun"_s}); }
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "Unfinished Trace:\n");
}

} // namespace KestrioKit
