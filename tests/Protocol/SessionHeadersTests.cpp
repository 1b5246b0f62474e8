#include "KestrioKit/Protocol/SessionHeaders.h"

#include <gtest/gtest.h>

#include <QRegularExpression>

using namespace KestrioKit;
using namespace Qt::StringLiterals;

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
