#include "KestrioKit/Queue/QueueTask.h"

#include "tests/support/ManualClock.h"

#include <gtest/gtest.h>

namespace KestrioKit {

using namespace Qt::StringLiterals;

TEST(KestrioRetryStrategyTest, DefaultBackoffIsDefinedForEveryCount) {
    const QList<double> seconds{0, 5, 10, 30, 60, 120, 300, 600, 600};
    for (qsizetype attempts = 0; attempts < seconds.size(); ++attempts)
        EXPECT_EQ(KestrioRetryStrategyDefaultBackoff(attempts), seconds[attempts]) << attempts;
    EXPECT_EQ(KestrioRetryStrategyDefaultBackoff(1000), 600);
}

TEST(QueueableRequestTest, BatchTakesTheEventsInOrderWhenItBeginsWithOne) {
    ManualClock clock;
    KestrioServiceRequests builder(clock);
    builder.setVisitorIdentifier(8);
    const QueueableRequest first = Request::TrackEvent{.event = u"first"_s, .metadata = {}};
    const QueueableRequest last = Request::TrackEvent{.event = u"last"_s, .metadata = {}};
    EXPECT_EQ(createBatchRequest({}, builder), std::nullopt);
    EXPECT_EQ(createBatchRequest({Request::UpdateAttribute{}, first}, builder), std::nullopt);

    const auto batch = createBatchRequest({first, Request::RecordError{}, last}, builder);
    ASSERT_TRUE(batch);
    EXPECT_EQ(batch->body,
              "{\"events\":["
              "{\"event\":\"first\",\"metadata\":{},\"delayed\":false,\"timestamp\":0},"
              "{\"event\":\"last\",\"metadata\":{},\"delayed\":false,\"timestamp\":0}],"
              "\"timestamp\":1700000000}");
    builder.setVisitorIdentifier(std::nullopt);
    EXPECT_EQ(createBatchRequest({first}, builder), std::nullopt);
}

} // namespace KestrioKit
