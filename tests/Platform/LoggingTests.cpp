#include "KestrioKit/Platform/Logging.h"

#include <gtest/gtest.h>

namespace KestrioKit {

using namespace Qt::StringLiterals;

TEST(LoggingTest, PrintsWhatIsAtLeastAsSevereAsTheLevelAskedFor) {
    using enum LogLevel;
    const QByteArray passing[] = {"FIDE", "IDE", "DE", "E", ""}; // by their first letters
    for (const LogLevel current : {fine, info, debug, error, none}) {
        for (const LogLevel level : {fine, info, debug, error, none}) {
            const char letter = QLatin1Char(rawValue(level).front()).toLatin1();
            EXPECT_EQ(passes(level, current), passing[int(current)].contains(letter));
        }
    }
    EXPECT_EQ(printedList({printedForm("a \"b\"\\\n"), printedForm(qint64(-7))}),
              uR"(["a \"b\"\\\n", -7])"_s);
}

} // namespace KestrioKit
