#include "KestrioKit/Core/Protocol/ResponseConfig.h"
#include "KestrioKit/Core/Protocol/SessionHeaders.h"
#include "KestrioKit/Core/Protocol/SurveyResponse.h"

#include <gtest/gtest.h>

#include <QRegularExpression>

using namespace KestrioKit;
using namespace Qt::StringLiterals;

namespace {

template <typename Record>
Record read(const QByteArray &json) {
    return std::get<Record>(decodeJSON<Record>(json));
}

} // namespace

TEST(SurveyQuestionResponse, isReadAsItStands) {
    using Response = Request::SurveyQuestionResponse;
    EXPECT_EQ(read<Response>(R"({"questionId":7,"value":4,"seenAt":1500,"answeredAt":2500.5,
                          "questionType":"nps"})"),
              (Response{7, {4}, 1500, 2500.5, QuestionType{QuestionType::nps, {}}}));
    const Response untyped{7, {QString()}, 1, {}, {}};
    EXPECT_EQ(read<Response>(R"({"questionId":7,"seenAt":1})"), untyped);
    // Only an open question that was left empty is written without a value.
    EXPECT_EQ(encodeJSON(untyped), R"({"questionId":7,"seenAt":1000.0,"value":""})");
    for (const char *json : {R"({"value":4,"seenAt":1})", R"({"questionId":7,"value":4})"})
        EXPECT_TRUE(std::holds_alternative<DecodingError>(decodeJSON<Response>(json))) << json;
}

TEST(SessionHeaders, cannotBeBrokenByForeignText) {
    const QString hostile = u"a\r\nX-Evil: 1\n\u0000\u0085\u007f😀"_s;
    const auto headers = sessionHeaders({u"1"_s, u"1"_s, hostile, hostile}, hostile, {}, hostile);
    for (const HTTPHeader &header : headers)
        EXPECT_FALSE(QString::fromUtf8(header.value).contains(QRegularExpression(u"\\p{Cc}"_s)));
    EXPECT_EQ(headers.last().value, "Bearer aX-Evil: 1😀");
}

TEST(UserAgent, hidesTheVersionWithTheKillSwitch) {
    const DeviceFacts device{{}, {}, u"12"_s, u"x86_64"_s};
    EXPECT_NE(UserAgent::current(device).sdkVersion, u"0.0.1"_s);
    qputenv("KESTRIO_KILLSWITCH", "");
    const UserAgent hidden = UserAgent::current(device);
    qunsetenv("KESTRIO_KILLSWITCH");
    EXPECT_EQ(hidden, (UserAgent{u"0.0.1"_s, u"12"_s, u"Unknown"_s, u"x86_64"_s}));
}

TEST(ResponseConfig, needsNoKeys) {
    EXPECT_EQ(read<ResponseConfig>(R"({"border":1,"theme":[],"volume":"loud","disabled":null})"),
              ResponseConfig{});
    EXPECT_EQ(read<ResponseConfig>(R"({"border":"#fff","theme":"t","volume":0.5,"disabled":""})"),
              (ResponseConfig{u"#fff"_s, u"t"_s, 0.5F, u""_s}));
}

TEST(ResponseConfig, takesTheThemeColorFromSixHexDigitsOfTheBorder) {
    const std::pair<QString, std::optional<QColor>> cases[] = {
        {u" #0a-0B G0c "_s, QColor(0x0a0b0c)},
        {u"red"_s, std::nullopt},
        {u"FF88000"_s, std::nullopt},
        {u"0xff880"_s, QColor(0x0ff880)},
        {u"١٢٣٤٥٦"_s, std::nullopt},
        // Punctuation between "9" and "A" is kept, and stops the number.
        {u":12345"_s, std::nullopt},
        {u"12:345"_s, QColor(0x12)},
    };
    for (const auto &[border, color] : cases)
        EXPECT_EQ((ResponseConfig{border, u"#00ff00"_s, {}, {}}).themeColor(), color)
            << qPrintable(border);
    for (const QString &theme : {u"dark"_s, u"Dark"_s, u"light"_s})
        EXPECT_EQ((ResponseConfig{{}, theme, {}, {}}).isDark(), theme == u"dark"_s);
}
