#include "KestrioKit/Platform/Logging.h"

#include <gtest/gtest.h>

namespace KestrioKit {

using namespace Qt::StringLiterals;

TEST(LoggingTest, PrintsWhatIsAtLeastAsSevereAsTheLevelAskedFor) {
    using enum LogLevel;
    // By their first letters, at each level.
    const QLatin1StringView passing[] = {"FIDE"_L1, "IDE"_L1, "DE"_L1, "E"_L1, ""_L1};
    for (const LogLevel current : {fine, info, debug, error, none}) {
        for (const LogLevel level : {fine, info, debug, error, none})
            EXPECT_EQ(passes(level, current), passing[int(current)].contains(rawValue(level)[0]));
    }
    EXPECT_EQ(printedList({printedForm("a \"b\"\\\n"), printedForm(qint64(-7))}),
              uR"(["a \"b\"\\\n", -7])"_s);
}

} // namespace KestrioKit
