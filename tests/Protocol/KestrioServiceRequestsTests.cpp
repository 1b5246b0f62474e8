#include "KestrioKit/Protocol/KestrioServiceRequests.h"
#include "tests/support/ManualClock.h"

#include <gtest/gtest.h>

using namespace KestrioKit;
using namespace Qt::StringLiterals;

namespace {

// An absent value removes the variable.
void setVariable(const char *name, const std::optional<QByteArray> &value) {
    value ? qputenv(name, *value) : qunsetenv(name);
}

void setHostVariables(const std::optional<QByteArray> &environment,
                      const std::optional<QByteArray> &host) {
    setVariable("KESTRIO_ENVIRONMENT", environment);
    setVariable("KESTRIO_HOSTNAME", host);
}

class KestrioServiceRequestsTests : public ::testing::Test {
protected:
    void TearDown() override { setHostVariables({}, {}); }

    ManualClock clock;
    KestrioServiceRequests requests{clock};
};

// Method, path, query and body as they go over the wire.
QByteArray wire(const std::optional<URLRequest> &request) {
    const auto site = QUrl::RemoveScheme | QUrl::RemoveAuthority;
    return request->method + ' ' + request->url.toEncoded(site) + ' ' + request->body;
}

const Request::SurveyEvent seenByVisitor8{u"env"_s, 7, {}, 8, false, Request::SurveyEventType::seen,
                                          u"g"_s};

} // namespace

TEST_F(KestrioServiceRequestsTests, servesEveryEndpoint) {
    requests.setEnvironment(u"env"_s);
    requests.setVisitorIdentifier(42);
    clock.advance(0.9876);
    const std::pair<std::optional<URLRequest>, QByteArray> cases[] = {
        {requests.newConfig(), "GET /1/environments/env/config "},
        {requests.newVisitors({}), "POST /1/environments/env/visitors {}"},
        {requests.newVisitors(u"u"_s), R"(POST /1/environments/env/visitors {"userId":"u"})"},
        {requests.newTrackEvent({u"e"_s, {}, false, 1}),
         R"(POST /1/visitors/42/events {"event":"e","metadata":{},"delayed":false,"timestamp":1})"},
        {requests.newBatchTrackEvents({}),
         R"(POST /1/visitors/42/events/batch {"events":[],"timestamp":1700000000})"},
        {requests.newSetUserIdentifier(u"u"_s),
         R"(PUT /1/environments/env/visitors/42 {"userId":"u"})"},
        {requests.newFetchSurvey(7), "GET /1/environments/env/questions?surveyid=7&vid=0 "},
        {requests.newSetAttribute({u"!email"_s, u"v"_s}),
         R"(PUT /1/visitors/42/attributes/!email {"value":"v"})"},
        {requests.newSetAttributes({{{u"k"_s, u"v"_s}}}),
         R"(PUT /2/environments/env/visitors/42/attributes {"k":"v"})"},
        {requests.newRemoveAttributes({{u"k"_s}}),
         R"(DELETE /2/environments/env/visitors/42/attributes {"delete":["k"]})"},
        {requests.newSubmitResponse({{}, {}, u"g"_s}),
         "POST /2/environments/env/visitors/42/responses/submit "
         R"({"responses":[],"meta":{},"responseGroupUid":"g"})"},
        {requests.newSurveyHistory(seenByVisitor8),
         "POST /1/visitors/8/surveys/7/history " + encodeJSON(seenByVisitor8)},
        {requests.newRecordError({}),
         R"(POST /1/errors {"envId":"","userAgent":"","meta":{},"err":{"message":""}})"},
    };
    for (const auto &[request, expected] : cases)
        EXPECT_EQ(wire(request), expected);
    EXPECT_EQ(requests.newRecordError({})->headers,
              (QList<HTTPHeader>{{"x-ks-error", "kestrio-1700000000987-error"}}));
}

TEST_F(KestrioServiceRequestsTests, needsAVisitorForWhatBelongsToOne) {
    EXPECT_FALSE(requests.newTrackEvent({}) || requests.newBatchTrackEvents({}) ||
                 requests.newSetUserIdentifier({}) || requests.newSetAttribute({}) ||
                 requests.newSetAttributes({}) || requests.newRemoveAttributes({}) ||
                 requests.newSubmitResponse({}));
    EXPECT_TRUE(requests.newConfig() && requests.newVisitors({}) && requests.newFetchSurvey(1) &&
                requests.newSurveyHistory(seenByVisitor8) && requests.newRecordError({}));
}

TEST_F(KestrioServiceRequestsTests, takesTheHostFromTheEnvironment) {
    struct Case {
        std::optional<QByteArray> environment, host;
        QByteArray expected;
    };
    const Case cases[] = {
        {{}, {}, "https://" KESTRIO_PRODUCTION_HOST "/"},
        {"production", "service.test", "https://" KESTRIO_PRODUCTION_HOST "/"},
        {"", "service.test", "https://" KESTRIO_PRODUCTION_HOST "/"},
        {"my-staging", {}, "https://" KESTRIO_STAGING_HOST "/"},
        {"localstaging", "service.test", "http://localhost:8080/"},
        {{}, "service.test", "https://service.test/"},
        {{}, "my.localhost", "http://my.localhost:8080/"},
        {{}, "::1", "https://[::1]/"},
        // No host names.
        {{}, "localhost:3000", ""},
        {{}, "service.test/path", ""},
        {{}, "", ""},
    };
    for (const auto &[environment, host, expected] : cases) {
        setHostVariables(environment, host);
        const auto request = KestrioServiceRequests(clock).newConfig();
        EXPECT_EQ(request ? request->url.resolved(QUrl(u"/"_s)).toEncoded() : QByteArray(),
                  expected)
            << host.value_or("no host").constData();
    }
    const QString first = requests.host();
    setHostVariables("local", {});
    EXPECT_EQ(requests.host(), first);
}

TEST_F(KestrioServiceRequestsTests, escapesWhatAPathCannotHold) {
    const std::pair<QString, QByteArray> cases[] = {
        {u""_s, ""},
        {u"a b/c//"_s, "a%20b/c//"},
        {u"?q#f"_s, "%3Fq%23f"},
        {u"100%...%41%2F%2e"_s, "100%25...%2541%252F%252e"},
        {u"\"'[]{}|\\^`<>"_s, "%22'%5B%5D%7B%7D%7C%5C%5E%60%3C%3E"},
        {u"a-b.c_d~e!$&()*+,;=:@"_s, "a-b.c_d~e!$&()*+,;=:@"},
        {u"é😀"_s, "%C3%A9%F0%9F%98%80"},
        {u"\r\n\u0000"_s, "%0D%0A%00"},
        {QString(QChar(0xd800)), "%3F"},
        {QString(1 << 20, u'%'), QByteArray("%25").repeated(1 << 20)},
    };
    requests.setVisitorIdentifier(42);
    for (const auto &[text, escaped] : cases) {
        requests.setEnvironment(text);
        // Compared as truth values: a megabyte makes no readable failure.
        EXPECT_TRUE(wire(requests.newConfig()) == "GET /1/environments/" + escaped + "/config ")
            << escaped.left(50).constData();
        EXPECT_TRUE(wire(requests.newSetAttribute({text, {}})) ==
                    "PUT /1/visitors/42/attributes/" + escaped + R"( {"value":""})")
            << escaped.left(50).constData();
    }
    for (const QString &text : {u"."_s, u".."_s, u"a/../b"_s, u"../"_s}) {
        requests.setEnvironment(text);
        EXPECT_FALSE(requests.newConfig() || requests.newSetAttribute({text, {}}));
    }
}
