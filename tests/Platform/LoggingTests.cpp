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

TEST(LoggingTest, PrintsOneLineWhateverIsInIt) {
    testing::internal::CaptureStdout();
    printLine(u"a\r\n\t\u0000\u001b\u007f\u0085\u009f\u2028\u2029é\u00a0😀"_s);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "a\\r\\n\\t\\u0000\\u001b\\u007f\\u0085\\u009f\\u2028\\u2029é\u00a0😀\n");
}

TEST(LoggingTest, MasksTheTokenOfABody) {
    const std::pair<QByteArray, QString> cases[] = {
        {R"({"vid":1,"token":"a\"b\\","n":"c"})", u"{'vid':1,'token':'***','n':'c'}"_s},
        {"{\"token\" :\n\"" + QByteArray(5'000'000, 'a'), u"{'token':'***'"_s},
        {R"({"tokens":"a","token":null})", u"{'tokens':'a','token':null}"_s},
    };
    for (const auto &[body, printed] : cases)
        EXPECT_EQ(printedForm(body), u'"' + QString(printed).replace(u'\'', u"\\\""_s) + u'"');
}

} // namespace KestrioKit
