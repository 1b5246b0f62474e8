#include "KestrioKit/Service/KestrioService.h"
#include "tests/support/OnlineFixture.h"

#include <QJsonArray>
#include <QThread>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

/// What a completion was called with.
template <typename Value>
struct Outcome {
    int calls = 0;
    std::optional<Value> value = std::nullopt;
    int status = 0;
    Error error = {};
    QThread *thread = nullptr;

    auto taker() {
        return [this](const auto &newValue, const auto &response, const auto &newError) {
            *this = {calls + 1, newValue, response ? response->statusCode : 0,
                     newError.value_or(Error{}), QThread::currentThread()};
        };
    }
};

} // namespace

class KestrioServiceTest : public OnlineFixture {
protected:
    static constexpr auto fetchLine = "GET /1/environments/env/questions?surveyid=7&vid=0";

    KestrioServiceTest() {
        service->setErrorHandler([this](const Error &error) { handled.append(error.domain); });
        service->setEnvironmentId(u"env"_s);
    }

    Outcome<Survey> fetchSurvey(const ServerAnswer &given = {404}) {
        answer(fetchLine, given);
        Outcome<Survey> outcome;
        service->fetchSurvey(7, outcome.taker());
        finish();
        return outcome;
    }

    Outcome<ResponseConfig> fetchConfig(const ServerAnswer &given) {
        answer("GET /1/environments/env/config", given);
        Outcome<ResponseConfig> outcome;
        service->fetchConfig(outcome.taker());
        finish();
        return outcome;
    }

    std::shared_ptr<KestrioService> service = std::make_shared<KestrioService>(
        std::make_shared<KestrioServiceRequests>(clock), context());
    QStringList handled;
};

TEST_F(KestrioServiceTest, SendsTokenAndLocaleFromTheNextRequestOnAndNoTokenAnonymously) {
    const auto headers = [this](const QByteArray &line) {
        const RecordedRequest last = requests(line).last();
        return last.header("Authorization").value_or("-") + ' ' +
               last.header("Accept-Language").value_or("-");
    };
    fetchSurvey();
    const QByteArray before = headers(fetchLine);
    service->authorize(u"t1"_s, 5);
    service->setLocale(u"sv"_s);
    fetchSurvey();
    EXPECT_EQ(headers(fetchLine), "Bearer t1 sv");
    service->fetchVisitorIdentifier(u"u"_s, true, [](auto &&...) {});
    finish();
    EXPECT_EQ(headers("POST /1/environments/env/visitors"), "- sv");
    service->setLocale(std::nullopt);
    service->clearAuthorization();
    fetchSurvey();
    EXPECT_EQ(headers(fetchLine), before);
}

TEST_F(KestrioServiceTest, TakesAValueFromA2xxAnswerOnlyAndReportsOneThatDoesNotDecode) {
    const QByteArray survey = R"({"vid":1,"questions":[]})";
    const struct {
        ServerAnswer answer;
        int status;
        bool hasValue;
        QString errorDomain;
    } cases[] = {
        {{200, survey}, 200, true, {}},
        {{299, survey}, 299, true, {}},
        {{404, survey}, 404, false, {}},
        {{500, survey}, 500, false, {}},
        {{200, ""}, 200, false, decodingErrorDomain},
        {{200, QByteArray(100'000, '[')}, 200, false, decodingErrorDomain},
        {ServerAnswer::cut(200, 43), 200, false, transportErrorDomain},
        {ServerAnswer::cut(200, 0), 0, false, transportErrorDomain},
    };
    for (const auto &[given, status, hasValue, errorDomain] : cases) {
        SCOPED_TRACE(given.head().toStdString());
        handled.clear();
        const Outcome<Survey> outcome = fetchSurvey(given);
        EXPECT_EQ(outcome.calls, 1);
        EXPECT_EQ(outcome.value.has_value(), hasValue);
        EXPECT_EQ(outcome.status, status);
        EXPECT_EQ(outcome.error.domain, errorDomain);
        EXPECT_EQ(handled.contains(errorDomain), errorDomain == decodingErrorDomain);
        EXPECT_NE(outcome.thread, QThread::currentThread());
    }
}

TEST_F(KestrioServiceTest, IsDisabledByItsConfigurationOrByHavingNone) {
    using enum DisabledError::Kind;
    const struct {
        ServerAnswer answer;
        std::optional<DisabledError> disabledBy;
        QString errorDomain;
    } cases[] = {
        {{200}, {}, {}},
        {{404, R"({"disabled":"version"})"}, {}, {}},
        {{200, R"({"disabled":"version"})"}, {{version, {}}}, disabledErrorDomain},
        {{200, R"({"disabled":"environment"})"}, {{environment, {}}}, disabledErrorDomain},
        {{200, R"({"disabled":"Version"})"}, {{other, u"Version"_s}}, disabledErrorDomain},
        {{200, "[]"}, {{local, {}}}, decodingErrorDomain},
        {ServerAnswer::cut(200, 0), {{local, {}}}, transportErrorDomain},
    };
    for (const auto &[given, disabledBy, errorDomain] : cases) {
        SCOPED_TRACE(given.body.toStdString());
        service->setDisabledError(std::nullopt);
        const Outcome<ResponseConfig> outcome = fetchConfig(given);
        EXPECT_EQ(outcome.calls, 1);
        EXPECT_EQ(outcome.value.has_value(), given.status == 200 && errorDomain.isEmpty());
        EXPECT_EQ(outcome.error.domain, errorDomain);
        EXPECT_EQ(service->disabledError(), disabledBy);
    }
}

TEST_F(KestrioServiceTest, RefusesEverythingWithinTheCallWhileDisabled) {
    const auto refusal = [this] {
        Outcome<Survey> outcome;
        service->fetchSurvey(7, outcome.taker());
        service->sendSimpleRequest({}, [&outcome](const auto &, const auto &error) {
            EXPECT_EQ(error, outcome.error);
            ++outcome.calls;
        });
        EXPECT_EQ(outcome.calls, 2);
        return outcome.error;
    };
    service->setDisableNetworkAccess(true);
    EXPECT_EQ(refusal(), (DisabledError{DisabledError::local, {}}.toError()));
    const DisabledError imposed{DisabledError::environment, {}};
    service->setDisabledError(imposed);
    fetchConfig({}); // refused, too, which changes nothing
    EXPECT_EQ(refusal(), imposed.toError());
    service->setDisableNetworkAccess(false);
    EXPECT_EQ(refusal(), imposed.toError());
    EXPECT_EQ(lines(), QList<QByteArray>());
}

TEST_F(KestrioServiceTest, QueuesRecordsUnlessThereIsNoVisitorOrNoNetwork) {
    Outcome<Survey> lost;
    service->trackEvent(u"no visitor"_s, false, lost.taker());
    service->recordSurveyEvent(1, 2, u"g"_s, Request::SurveyEventType::seen);
    service->authorize(u"t"_s, 5);
    service->setDisableNetworkAccess(true);
    service->trackEvent(u"no network"_s, true, lost.taker());
    service->setDisableNetworkAccess(false);
    Outcome<Survey> tracked;
    service->trackEvent(u"Signed Up"_s, true, tracked.taker());
    finish();
    service->recordError({{}, 0, u"broken"_s}, u"main()"_s, {{u"plan"_s, {u"gold"_s}}});
    finish();
    EXPECT_EQ(lines(), QList<QByteArray>({"POST /1/visitors/5/events/batch", "POST /1/errors"}));
    EXPECT_EQ(lost.calls, 0);
    EXPECT_EQ(std::tuple(tracked.calls, tracked.status, tracked.thread),
              std::tuple(1, 200, QThread::currentThread()));
    const QJsonObject error = bodies("POST /1/errors")[0];
    EXPECT_EQ(error["envId"_L1], u"env"_s);
    EXPECT_EQ(error["vid"_L1], 5);
    EXPECT_EQ(error["meta"_L1]["plan"_L1], u"gold"_s);
    const QJsonObject details{{u"message"_s, u"broken"_s}, {u"stack"_s, u"main()"_s}};
    EXPECT_EQ(error["err"_L1].toObject(), details);
}

} // namespace KestrioKit
