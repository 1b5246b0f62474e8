#include "KestrioKit/Core/Service/RecordRequests.h"

namespace KestrioKit {

namespace {

struct Builder {
    const KestrioServiceRequests &requests;

    auto operator()(const Request::TrackEvent &body) const { return requests.newTrackEvent(body); }
    auto operator()(const Request::SurveyResponse &body) const {
        return requests.newSubmitResponse(body.body);
    }
    auto operator()(const Request::RecordError &body) const {
        return requests.newRecordError(body);
    }
    auto operator()(const Request::SurveyEvent &body) const {
        return requests.newSurveyHistory(body);
    }
    auto operator()(const Request::UpdateAttribute &body) const {
        return requests.newSetAttribute(body);
    }
    auto operator()(const Request::UpdateAttributes &body) const {
        return requests.newSetAttributes(body);
    }
    auto operator()(const Request::RemoveAttributes &body) const {
        return requests.newRemoveAttributes(body);
    }
};

} // namespace

std::optional<URLRequest> createRequest(const QueueableRequest &request,
                                        const KestrioServiceRequests &builder) {
    return std::visit(Builder{builder}, request);
}

std::optional<URLRequest> createBatchRequest(const QList<QueueableRequest> &requests,
                                             const KestrioServiceRequests &builder) {
    if (requests.isEmpty() || !std::holds_alternative<Request::TrackEvent>(requests.first()))
        return std::nullopt;
    QList<Request::TrackEvent> events;
    for (const QueueableRequest &request : requests) {
        if (const auto *const event = std::get_if<Request::TrackEvent>(&request))
            events.append(*event);
    }
    return builder.newBatchTrackEvents(events);
}

} // namespace KestrioKit
