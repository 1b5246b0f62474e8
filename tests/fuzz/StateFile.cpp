#include "KestrioKit/Core/Queue/PersistentQueue.h"
#include "KestrioKit/Core/Service/RecordRequests.h"
#include "tests/fuzz/Fuzzing.h"

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

} // namespace

void tryInput(const QByteArray &text) {
    const auto queue = decodedRecord<PersistentQueue>(text);
    if (!queue)
        return;
    requireSurvival(text, *queue, asReadAgain);
    KestrioServiceRequests builder(Clock::system());
    builder.setEnvironment(u"environment"_s);
    builder.setVisitorIdentifier(queue->visitorIdentifier);
    const auto requireRequests = [&builder](const auto &bodies) {
        for (const auto &body : bodies) {
            if (const auto request = createRequest(body, builder))
                requireWellFormed(*request);
        }
        if (const auto batch = createBatchRequest({bodies.begin(), bodies.end()}, builder))
            requireWellFormed(*batch);
    };
    requireRequests(queue->events);
    requireRequests(queue->surveys);
    requireRequests(queue->errors);
    requireRequests(queue->history);
    requireRequests(queue->attributes);
}
