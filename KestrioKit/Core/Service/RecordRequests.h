#pragma once

#include "KestrioKit/Core/Protocol/KestrioServiceRequests.h"
#include "KestrioKit/Core/Queue/QueueableRequest.h"

#include <QList>

#include <optional>

namespace KestrioKit {

/// Returns the request that sends this body alone, or nothing if it cannot be built.
std::optional<URLRequest> createRequest(const QueueableRequest &request,
                                        const KestrioServiceRequests &builder);

/// Returns one request with all events of the list, in their order. Other bodies are left out.
/// Returns nothing if the list is empty, if its first body is not an event, or if the request
/// cannot be built.
std::optional<URLRequest> createBatchRequest(const QList<QueueableRequest> &requests,
                                             const KestrioServiceRequests &builder);

} // namespace KestrioKit
