#pragma once

#include "KestrioKit/Core/Protocol/Attributes.h"
#include "KestrioKit/Core/Protocol/RecordError.h"
#include "KestrioKit/Core/Protocol/SurveyEvent.h"
#include "KestrioKit/Core/Protocol/SurveyResponse.h"
#include "KestrioKit/Core/Protocol/TrackEvent.h"

#include <variant>

namespace KestrioKit {

/// The body of a request that can be queued. The caller does not need the response's body.
using QueueableRequest =
    std::variant<Request::TrackEvent, Request::SurveyResponse, Request::RecordError,
                 Request::SurveyEvent, Request::UpdateAttribute, Request::UpdateAttributes,
                 Request::RemoveAttributes>;

} // namespace KestrioKit
