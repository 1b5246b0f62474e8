#include "KestrioKit/Core/Platform/Logging.h"

#include <gtest/gtest.h>

namespace KestrioKit {

using namespace Qt::StringLiterals;

TEST(LoggingTest, PrintsOneLineWhateverIsInIt) {
    testing::internal::CaptureStdout();
    printLine(u"a\r\n\t\u0000\u001b\u007f\u0085\u009f\u2028\u2029é\u00a0😀"_s);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "a\\r\\n\\t\\u0000\\u001b\\u007f\\u0085\\u009f\\u2028\\u2029é\u00a0😀\n");
}

TEST(LoggingTest, HandsLinesToTheHandlerAndPrintsThoseThatItCausesItself) {
    QStringList lines;
    setLogHandler([&lines](LogLevel level, const QString &line) {
        lines.append(rawValue(level) + u' ' + line);
        logLine(LogLevel::info, u"printed"_s);
    });
    testing::internal::CaptureStdout();
    logLine(LogLevel::error, u"a\nb"_s);
    { const LogTrace unfinished(LogLevel::info); }
    setLogHandler({});
    logLine(LogLevel::info, u"last"_s);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "printed\nprinted\nlast\n");
    EXPECT_EQ(lines, QStringList({u"ERROR a\\nb"_s, u"INFO Unfinished Trace:"_s}));
}

} // namespace KestrioKit
