#include "KestrioKit/Core/Service/KestrioService.h"
#include "tests/support/OnlineFixture.h"

#include <QJsonArray>

namespace KestrioKit {

using namespace Qt::StringLiterals;

// Read once.
[[maybe_unused]] static const bool levelChosen = qputenv("KESTRIO_LOG_LEVEL", "INFO");

class KestrioServiceTest : public OnlineFixture {
protected:
    KestrioServiceTest() { service->setEnvironmentId(u"env"_s); }

    std::shared_ptr<KestrioService> service = std::make_shared<KestrioService>(
        std::make_shared<KestrioServiceRequests>(clock), context());
};

TEST_F(KestrioServiceTest, TracesNoTokenAndNothingOfWhatIsRecorded) {
    answer("POST /1/environments/env/visitors", {200, R"({"vid":1,"token":"secret\"secret"})"});
    testing::internal::CaptureStdout();
    service->fetchVisitorIdentifier(u"user"_s, KestrioService::Authorization::none, [](auto &&) {});
    service->authorize(u"secret"_s, 1);
    service->setVisitorAttribute(u"!email"_s, u"a@b"_s, {});
    finish();
    const QString printed = QString::fromStdString(testing::internal::GetCapturedStdout());
    EXPECT_EQ(requests("PUT /1/visitors/1/attributes/!email").size(), 1);
    for (const QString &shown : {u"user"_s, u"***"_s, u"attributes/!email"_s})
        EXPECT_TRUE(printed.contains(shown)) << qPrintable(printed);
    for (const QString &hidden : {u"secret"_s, u"a@b"_s})
        EXPECT_FALSE(printed.contains(hidden)) << qPrintable(printed);
}

TEST_F(KestrioServiceTest, TakesTheNearestQueueLimitUntilThereIsAQueue) {
    flagsSource->change({});
    service->setQueueLimit(0);
    service->authorize(u"t"_s, 5);
    service->setQueueLimit(10);
    for (const QString &name : {u"a"_s, u"b"_s})
        service->queueEvent(name);
    settle();
    flagsSource->change(ReachabilityFlag::reachable);
    finish();
    EXPECT_EQ(bodies("POST /1/visitors/5/events/batch")[0]["events"_L1].toArray().size(), 1);
}

TEST_F(KestrioServiceTest, SubmitsRecordsAsTheirVisitorIfTheyFitIntoOneRequest) {
    service->authorize(u"current"_s, 5);
    const auto submit = [this](qsizetype count, std::optional<qint64> visitor) {
        const Request::TrackEvent large{QString(600'000, u'x'), {}};
        return service->submit(QList<QueueableRequest>(count, large), {visitor, u"own"_s},
                               [](auto &&) {});
    };
    EXPECT_EQ(submit(1, {}), Submission::impossible);
    EXPECT_EQ(submit(2, 6), Submission::tooLarge);
    EXPECT_EQ(submit(1, 6), Submission::started);
    finish();
    EXPECT_EQ(lines(), QByteArrayList{"POST /1/visitors/6/events/batch"});
    EXPECT_EQ(server.requests()[0].header("Authorization"), "Bearer own");
}

TEST_F(KestrioServiceTest, IsIdleUnlessARequestIsInFlightOrARecordIsDue) {
    const auto isIdle = [this] {
        bool reported = false;
        waitForBlock([&](const Block &done) {
            service->reportIdle([&reported, done](bool idle) {
                reported = idle;
                done();
            });
        });
        return reported;
    };
    EXPECT_TRUE(isIdle());
    network->hold(true);
    service->fetchConfig([](auto &&) {});
    EXPECT_FALSE(isIdle());
    release();
    EXPECT_TRUE(isIdle());
    flagsSource->change({});
    service->queueEvent(u"waits for the network"_s);
    EXPECT_FALSE(isIdle());
}

TEST_F(KestrioServiceTest, ReportsErrorsWithWhatItKnows) {
    service->recordError({{}, 0, u"broken"_s}, u"main()"_s, {{u"plan"_s, {u"gold"_s}}});
    finish();
    const QJsonObject report = bodies("POST /1/errors")[0];
    EXPECT_EQ(report["envId"_L1], u"env"_s);
    EXPECT_EQ(report["meta"_L1]["plan"_L1], u"gold"_s);
    EXPECT_EQ(report["err"_L1],
              (QJsonObject{{u"message"_s, u"broken"_s}, {u"stack"_s, u"main()"_s}}));
    service->recordError({}, {});
    finish();
    const QList<RecordedRequest> sent = requests("POST /1/errors");
    EXPECT_NE(sent[0].header("x-ks-error"), sent[1].header("x-ks-error"));
}

} // namespace KestrioKit
