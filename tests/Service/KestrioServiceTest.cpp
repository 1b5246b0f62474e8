#include "KestrioKit/Service/KestrioService.h"
#include "tests/support/OnlineFixture.h"

#include <QThread>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

/// What a completion was called with.
struct Outcome {
    int calls = 0;
    std::optional<Survey> value = std::nullopt;
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
    KestrioServiceTest() {
        service->setErrorHandler([this](const Error &error) { handled.append(error.domain); });
        service->setEnvironmentId(u"env"_s);
    }

    std::shared_ptr<KestrioService> service = std::make_shared<KestrioService>(
        std::make_shared<KestrioServiceRequests>(clock), context());
    QStringList handled;
};

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
        {{200, QByteArray(100'000, '[')}, 200, false, decodingErrorDomain},
        {ServerAnswer::cut(200, 43), 200, false, transportErrorDomain},
        {ServerAnswer::cut(200, 0), 0, false, transportErrorDomain},
    };
    for (const auto &[given, status, hasValue, errorDomain] : cases) {
        SCOPED_TRACE(given.head().toStdString());
        handled.clear();
        answer("GET /1/environments/env/questions?surveyid=7&vid=0", given);
        Outcome outcome;
        service->fetchSurvey(7, outcome.taker());
        finish();
        EXPECT_EQ(outcome.calls, 1);
        EXPECT_EQ(outcome.value.has_value(), hasValue);
        EXPECT_EQ(outcome.status, status);
        EXPECT_EQ(outcome.error.domain, errorDomain);
        EXPECT_EQ(handled.contains(errorDomain), errorDomain == decodingErrorDomain);
        EXPECT_NE(outcome.thread, QThread::currentThread());
    }
}

TEST_F(KestrioServiceTest, RefusesEverythingWithinTheCallWhileDisabled) {
    const auto refusal = [this] {
        Outcome outcome;
        service->fetchSurvey(7, outcome.taker());
        EXPECT_EQ(outcome.calls, 1);
        return outcome.error;
    };
    service->setDisableNetworkAccess(true);
    EXPECT_EQ(refusal(), (DisabledError{DisabledError::local, {}}.toError()));
    const DisabledError imposed{DisabledError::environment, {}};
    service->setDisabledError(imposed);
    service->fetchConfig([](auto &&...) {}); // refused, too, which changes nothing
    service->setDisableNetworkAccess(false);
    EXPECT_EQ(refusal(), imposed.toError());
    EXPECT_EQ(lines(), QList<QByteArray>());
}

TEST_F(KestrioServiceTest, ReportsErrorsWithWhatItKnows) {
    service->recordError({{}, 0, u"broken"_s}, u"main()"_s, {{u"plan"_s, {u"gold"_s}}});
    finish();
    const QJsonObject report = bodies("POST /1/errors")[0];
    EXPECT_EQ(report["envId"_L1], u"env"_s);
    EXPECT_EQ(report["meta"_L1]["plan"_L1], u"gold"_s);
    EXPECT_EQ(report["err"_L1]["message"_L1], u"broken"_s);
    EXPECT_EQ(report["err"_L1]["stack"_L1], u"main()"_s);
    EXPECT_EQ(requests("POST /1/errors")[0].header("x-ks-error"), "kestrio-1700000000000-error");
}

} // namespace KestrioKit
