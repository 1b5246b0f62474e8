#include "KestrioKit/Protocol/SessionHeaders.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QRegularExpression>

using namespace KestrioKit;
using namespace Qt::StringLiterals;

namespace {

const UserAgent agent{u"1.2"_s, u"12"_s, u"3.4"_s, u"x86_64"_s};

} // namespace

TEST(AcceptLanguage, weighsLanguagesByAccumulatedSubtraction) {
    const std::pair<QStringList, QString> cases[] = {
        {{}, u""_s},
        {{u"en-GB"_s, u"fr"_s}, u"en-GB, fr;q=0.9"_s},
        {{u"a"_s, u"b"_s, u"c"_s, u"d"_s, u"e"_s, u"f"_s, u"g"_s},
         u"a, b;q=0.9, c;q=0.8, d;q=0.7000000000000001, e;q=0.6000000000000001"_s},
    };
    for (const auto &[languages, value] : cases)
        EXPECT_EQ(acceptLanguage(languages), value);
}

TEST(SessionHeaders, standInTheirOrder) {
    QList<HTTPHeader> expected{
        {"User-Agent", "Kestrio/iOS;Version=1.2;OSVersion=12;AppVersion=3.4"},
        {"Content-Type", "application/json"},
        {"kestrio-platform", "ios"},
        {"Accept-Language", "en, fr;q=0.9"},
        {"x-ks-sdk-version", "1.2"},
        {"x-ks-app-version", "3.4"},
        {"x-ks-device-type", "x86_64"},
        {"x-ks-os-version", "12"},
    };
    EXPECT_EQ(sessionHeaders(agent, {}, {u"en"_s, u"fr"_s}, {}), expected);

    expected[3].value = "sv-SE";
    expected.append(HTTPHeader{"Authorization", "Bearer t0k3n"});
    EXPECT_EQ(sessionHeaders(agent, u"sv-SE"_s, {u"en"_s}, u"t0k3n"_s), expected);
}

TEST(SessionHeaders, cannotBeBrokenByForeignText) {
    const QString hostile = u"a\r\nX-Evil: 1\n\u0000\u0085\u007f😀"_s;
    const UserAgent hostileAgent{u"1"_s, u"1"_s, hostile, hostile};
    for (const HTTPHeader &header : sessionHeaders(hostileAgent, hostile, {}, hostile))
        EXPECT_FALSE(QString::fromUtf8(header.value).contains(QRegularExpression(u"\\p{Cc}"_s)));
    EXPECT_EQ(sessionHeaders(agent, {}, {}, hostile).last().value, "Bearer aX-Evil: 1😀");
}

TEST(UserAgent, reportsTheVersions) {
    const DeviceFacts device{{}, {}, {}, u"12"_s, u"x86_64"_s};
    QCoreApplication::setApplicationVersion(u"3.4"_s);
    UserAgent current = UserAgent::current(device);
    EXPECT_EQ(current, (UserAgent{current.sdkVersion, u"12"_s, u"3.4"_s, u"x86_64"_s}));
    EXPECT_NE(current.sdkVersion, u"0.0.1"_s);

    QCoreApplication::setApplicationVersion({});
    qputenv("KESTRIO_KILLSWITCH", "");
    current = UserAgent::current(device);
    qunsetenv("KESTRIO_KILLSWITCH");
    EXPECT_EQ(current, (UserAgent{u"0.0.1"_s, u"12"_s, u"Unknown"_s, u"x86_64"_s}));
}
