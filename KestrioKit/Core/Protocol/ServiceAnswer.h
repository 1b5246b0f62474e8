#pragma once

#include "KestrioKit/Core/Platform/Error.h"
#include "KestrioKit/Core/Platform/HTTP/URLRequest.h"

#include <optional>
#include <utility>

namespace KestrioKit {

/// The outcome of a request whose response body is not needed.
struct SimpleAnswer {
    /// Absent if no response arrived.
    std::optional<HTTPURLResponse> response;
    /// Absent if the service answered and the answer is usable, whatever its status.
    std::optional<Error> error;
};

/// The outcome of a request that returns data.
template <typename Value>
struct ServiceAnswer : SimpleAnswer {
    /// The decoded response. Absent if there is an error or if the status is not 2xx.
    std::optional<Value> value;

    /// Returns the outcome of a request that is not sent or whose response is ignored.
    static ServiceAnswer failed(std::optional<Error> error) {
        return {{std::nullopt, std::move(error)}, std::nullopt};
    }
};

} // namespace KestrioKit
