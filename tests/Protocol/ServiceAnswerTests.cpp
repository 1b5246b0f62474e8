#include "KestrioKit/Platform/Logging.h"
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
    EXPECT_EQ(config("{}"), ResponseConfig{});
    EXPECT_EQ(config("{}").checkDisabled(), std::nullopt);
    EXPECT_EQ(config(R"({"border":1,"theme":[],"volume":"loud","disabled":null})"),
              ResponseConfig{});
    EXPECT_EQ(config(R"({"border":"#fff","theme":"t","volume":0.5,"disabled":""})"),
              (ResponseConfig{u"#fff"_s, u"t"_s, 0.5F, u""_s}));
}

TEST(ResponseConfig, takesTheThemeColorFromTheBorder) {
    const std::pair<QByteArray, QColor> cases[] = {
        {"{}", Qt::black},
        {R"({"border":"#ff8800","theme":"#00ff00"})", {0xff, 0x88, 0}},
        {R"({"border":"red","theme":"#00ff00"})", Qt::black},
    };
    for (const auto &[json, color] : cases)
        EXPECT_EQ(config(json).themeColor(), color) << json.constData();
}

TEST(ResponseConfig, saysWhyTheLibraryIsDisabled) {
    const std::pair<QByteArray, DisabledError> cases[] = {
        {"version", {DisabledError::version, {}}},
        {"environment", {DisabledError::environment, {}}},
        {"Version", {DisabledError::other, u"Version"_s}},
        {"", {DisabledError::other, u""_s}},
    };
    for (const auto &[text, error] : cases)
        EXPECT_EQ(config(R"({"disabled":")" + text + "\"}").checkDisabled(), error)
            << text.constData();
}

TEST(ColorFromHex, readsSixHexDigits) {
    const std::pair<QString, std::optional<QColor>> cases[] = {
        {u"#ff8800"_s, QColor(0xff, 0x88, 0)},
        {u" #0a-0B G0c "_s, QColor(0x0a, 0x0b, 0x0c)},
        {u"FF880"_s, {}},
        {u"FF88000"_s, {}},
        {u"0xff880"_s, QColor(0x0f, 0xf8, 0x80)},
        {u"١٢٣٤٥٦"_s, {}},
        // Punctuation between "9" and "A" is kept, and stops the number.
        {u":12345"_s, {}},
        {u"12:345"_s, QColor(0, 0, 0x12)},
        {u"12345@"_s, QColor(0x01, 0x23, 0x45)},
        {u"#ff8800;"_s, {}},
    };
    for (const auto &[text, color] : cases)
        EXPECT_EQ(colorFromHex(text), color) << qPrintable(text);
}

TEST(ResponseVisitors, needsTheVisitorAlone) {
    const std::pair<QByteArray, ResponseVisitors> cases[] = {
        {R"({"vid":12})", {12, {}, {}}},
        {R"({"vid":12,"token":"t","userId":"u"})", {12, u"t"_s, u"u"_s}},
        {R"({"vid":12,"token":5,"userId":null})", {12, {}, {}}},
    };
    for (const auto &[json, visitors] : cases)
        EXPECT_EQ(std::get<ResponseVisitors>(decodeJSON<ResponseVisitors>(json)), visitors);
    const auto missing = decodeJSON<ResponseVisitors>(R"({"token":"t"})");
    EXPECT_EQ(std::get<DecodingError>(missing).path, u"vid"_s);
}

TEST(DisabledError, canBeToldFromOtherErrors) {
    const DisabledError overdue{DisabledError::other, u"Payment \"overdue\""_s};
    EXPECT_TRUE(isDisabledError(overdue.toError()));
    EXPECT_TRUE(overdue.localizedDescription().contains(overdue.otherText));
    EXPECT_FALSE(isDisabledError(DecodingError().toError()));
    EXPECT_EQ(printedForm(overdue), uR"(other("Payment \"overdue\""))"_s);
    EXPECT_EQ(printedForm(std::optional(DisabledError{DisabledError::local, {}})), u"local"_s);
}
