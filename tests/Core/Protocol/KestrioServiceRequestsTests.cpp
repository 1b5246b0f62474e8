#include "KestrioKit/Core/Protocol/KestrioServiceRequests.h"
#include "tests/support/ManualClock.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace KestrioKit;
using namespace Qt::StringLiterals;

TEST(KestrioServiceRequestsTests, takesTheHostFromTheEnvironment) {
    const ManualClock clock;
    const struct {
        QByteArray environment, host, expected, given = {};
    } cases[] = {
        {{}, {}, "https://" KESTRIO_PRODUCTION_HOST "/"},
        {"production", "service.test", "https://" KESTRIO_PRODUCTION_HOST "/"},
        {"my-staging", {}, "https://" KESTRIO_STAGING_HOST "/"},
        {"localstaging", "service.test", "http://localhost:8080/"},
        {{}, "service.test", "https://service.test/"},
        {{}, "my.localhost", "http://my.localhost:8080/"},
        {{}, "::1", "https://[::1]/"},
        {{}, "localhost:3000", "http://localhost:3000/"},
        {{}, "service.test:65535", "https://service.test:65535/"},
        {{}, "[::1]:3000", "https://[::1]:3000/"},
        {{}, "[::1]", "https://[::1]/"},
        {{}, {}, "http://localhost:3000/", "localhost:3000"},
        {{}, "service.test", "https://service.test/", "given.test"},
        {"staging", {}, "https://" KESTRIO_STAGING_HOST "/", "given.test"},
        // No host names.
        {{}, "service.test/path", ""},
        {{}, "service.test:", ""},
        {{}, "service.test:0", ""},
        {{}, "service.test:65536", ""},
        {{}, "localhost:+80", ""},
        {{}, ":3000", ""},
        {{}, "user@service.test", ""},
        {{}, "", ""},
    };
    for (const auto &[environment, host, expected, given] : cases) {
        for (const auto &[name, value] :
             {std::pair("KESTRIO_ENVIRONMENT", environment), std::pair("KESTRIO_HOSTNAME", host)})
            value.isNull() ? qunsetenv(name) : qputenv(name, value);
        testing::internal::CaptureStdout();
        KestrioServiceRequests builder(clock);
        EXPECT_TRUE(builder.setHost(QString::fromLatin1(given)));
        const auto request = builder.newConfig();
        EXPECT_EQ(builder.newVisitors({}).has_value(), request.has_value());
        EXPECT_FALSE(builder.setHost(u"late.test"_s));
        const std::string printed = testing::internal::GetCapturedStdout();
        EXPECT_EQ(std::ranges::count(printed, '\n'), request ? 0 : 1);
        EXPECT_EQ(printed.find("KESTRIO_HOSTNAME") == std::string::npos, request.has_value());
        EXPECT_EQ(request ? request->url.resolved(QUrl(u"/"_s)).toEncoded() : QByteArray(),
                  expected)
            << host.constData();
    }
    qunsetenv("KESTRIO_HOSTNAME");
}

TEST(KestrioServiceRequestsTests, refusesStepsInAPathAndEscapesTheRest) {
    const ManualClock clock;
    KestrioServiceRequests requests(clock);
    requests.setVisitorIdentifier(42);
    for (const QString &text : {u"."_s, u".."_s, u"a/../b"_s, u"../"_s}) {
        requests.setEnvironment(text);
        EXPECT_FALSE(requests.newConfig() || requests.newSetAttribute({text, {}}));
    }
    requests.setEnvironment(u"a...%2e//[]{}|^<>"_s + QChar(0xd800) + QChar(0));
    EXPECT_EQ(requests.newConfig()->url.path(QUrl::FullyEncoded),
              u"/1/environments/a...%252e//%5B%5D%7B%7D%7C%5E%3C%3E%3F%00/config"_s);
}

TEST(KestrioServiceRequestsTests, reportsOfTheVisitorWhoHadTheSurveyWhoeverIsThereNow) {
    const ManualClock clock;
    const auto request = KestrioServiceRequests(clock).newSurveyHistory({{}, 7, {}, 8, {}, {}, {}});
    EXPECT_EQ(request->url.path(), u"/1/visitors/8/surveys/7/history"_s);
}
