#include "KestrioKit/Queue/PersistentQueue.h"
#include "tests/fuzz/Fuzzing.h"

#include <algorithm>
#include <limits>

using namespace KestrioKit;
using namespace Qt::StringLiterals;

namespace {

double inMilliseconds(double seconds) {
    constexpr double largest = std::numeric_limits<double>::max();
    return std::clamp(seconds * 1000, -largest, largest);
}

/// The same, but for the times, which come back in milliseconds, and the types, which do not.
PersistentQueue asReadAgain(PersistentQueue queue) {
    for (Request::SurveyResponse &survey : queue.surveys) {
        for (Request::SurveyQuestionResponse &response : survey.body.responses) {
            response.seenAt = inMilliseconds(response.seenAt);
            if (response.answeredAt)
                response.answeredAt = inMilliseconds(*response.answeredAt);
            response.questionType.reset();
        }
    }
    return queue;
}

template <typename Body>
void requireRequests(const QList<Body> &bodies, const KestrioServiceRequests &builder) {
    for (const Body &body : bodies) {
        if (const auto request = createRequest(body, builder))
            requireWellFormed(*request);
    }
    const QList<QueueableRequest> requests(bodies.begin(), bodies.end());
    if (const auto batch = createBatchRequest(requests, builder))
        requireWellFormed(*batch);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const QByteArray text = inputText(data, size);
    const auto queue = decodedRecord<PersistentQueue>(text);
    if (!queue)
        return 0;
    requireSurvival(text, *queue, asReadAgain);
    // The answers among them are written otherwise than read.
    requireOrigin(text, encodeJSON(queue->events), "events");
    requireOrigin(text, encodeJSON(queue->errors), "errors");
    requireOrigin(text, encodeJSON(queue->history), "history");
    requireOrigin(text, encodeJSON(queue->attributes), "attributes");
    KestrioServiceRequests builder(Clock::system());
    builder.setEnvironment(u"environment"_s);
    builder.setVisitorIdentifier(queue->visitorIdentifier);
    requireRequests(queue->events, builder);
    requireRequests(queue->surveys, builder);
    requireRequests(queue->errors, builder);
    requireRequests(queue->history, builder);
    requireRequests(queue->attributes, builder);
    return 0;
}
