#include "KestrioKit/Protocol/ResponseConfig.h"
#include "KestrioKit/Protocol/ResponseVisitors.h"

#include <gtest/gtest.h>

using namespace KestrioKit;
using namespace Qt::StringLiterals;

namespace {

ResponseConfig config(const QByteArray &json) {
    return std::get<ResponseConfig>(decodeJSON<ResponseConfig>(json));
}

} // namespace

TEST(ResponseConfig, needsNoKeys) {
    EXPECT_EQ(config(R"({"border":1,"theme":[],"volume":"loud","disabled":null})"),
              ResponseConfig{});
    EXPECT_EQ(config(R"({"border":"#fff","theme":"t","volume":0.5,"disabled":""})"),
              (ResponseConfig{u"#fff"_s, u"t"_s, 0.5F, u""_s}));
}

TEST(ResponseConfig, takesTheThemeColorFromTheBorder) {
    EXPECT_EQ(config(R"({"border":"#ff8800","theme":"#00ff00"})").themeColor(), 0xff8800);
    EXPECT_EQ(config(R"({"border":"red","theme":"#00ff00"})").themeColor(), Qt::black);
}

TEST(ResponseConfig, saysWhyTheLibraryIsDisabled) {
    const std::pair<QString, DisabledError> cases[] = {
        {u"version"_s, {DisabledError::version, {}}},
        {u"environment"_s, {DisabledError::environment, {}}},
        {u"Version"_s, {DisabledError::other, u"Version"_s}},
    };
    for (const auto &[text, error] : cases)
        EXPECT_EQ((ResponseConfig{{}, {}, {}, text}).checkDisabled(), error);
}

TEST(ColorFromHex, readsSixHexDigits) {
    const std::pair<QString, std::optional<QColor>> cases[] = {
        {u" #0a-0B G0c "_s, 0x0a0b0c},
        {u"FF880"_s, {}},
        {u"FF88000"_s, {}},
        {u"0xff880"_s, 0x0ff880},
        {u"١٢٣٤٥٦"_s, {}},
        // Punctuation between "9" and "A" is kept, and stops the number.
        {u":12345"_s, {}},
        {u"12:345"_s, 0x12},
    };
    for (const auto &[text, color] : cases)
        EXPECT_EQ(colorFromHex(text), color) << qPrintable(text);
}

TEST(ResponseVisitors, needsTheVisitorAlone) {
    const auto read = decodeJSON<ResponseVisitors>(R"({"vid":12,"token":5,"userId":null})");
    EXPECT_EQ(std::get<ResponseVisitors>(read), (ResponseVisitors{12, {}, {}}));
}
