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

} // namespace KestrioKit
