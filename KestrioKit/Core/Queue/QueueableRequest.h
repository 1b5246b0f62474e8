#pragma once

#include "KestrioKit/Core/Protocol/KestrioServiceRequests.h"

#include <QList>

#include <optional>
#include <variant>

namespace KestrioKit {

/// A request that can be queued: one of the bodies that nobody waits for the answer of.
using QueueableRequest =
    std::variant<Request::TrackEvent, Request::SurveyResponse, Request::RecordError,
                 Request::SurveyEvent, Request::UpdateAttribute, Request::UpdateAttributes,
                 Request::RemoveAttributes>;

/// The request that sends this body alone; none when it cannot be built.
std::optional<URLRequest> createRequest(const QueueableRequest &request,
                                        const KestrioServiceRequests &builder);

/// One request for all events of the list, in their order; other bodies are left out. None when
/// the list is empty, begins with anything but an event, or the request cannot be built.
std::optional<URLRequest> createBatchRequest(const QList<QueueableRequest> &requests,
                                             const KestrioServiceRequests &builder);

} // namespace KestrioKit
