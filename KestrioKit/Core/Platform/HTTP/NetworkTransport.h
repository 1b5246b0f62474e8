#pragma once

#include "KestrioKit/Core/Platform/HTTP/URLSession.h"
#include "KestrioKit/Core/Platform/Threads/Executor.h"

#include <memory>

namespace KestrioKit {

/// Sends requests over HTTP/1.1 (RFC 9112) without cookies and cache, and over TLS for "https"
/// URLs. Errors are of `transportErrorDomain`. A complete response with a status of 200 or above is
/// not an error. No request is sent twice: if its connection closes early, the request fails.
///
/// Uses at most two network managers of Qt at a time, each with a thread and a few connections.
class NetworkTransport final : public URLTransport {
public:
    /// Requests are sent and completed on the thread of `executor`, which must be a Qt thread with
    /// an event loop. `executor` and `clock` must outlive this object. Requests that are in flight
    /// when the thread ends complete with an error once there is another thread.
    NetworkTransport(Executor &executor, const Clock &clock);
    /// Interrupts the requests in flight.
    ~NetworkTransport() override;

    void send(URLRequest request, Body body, URLCompletion completion) override;
    void cancelAll() override;

    /// The maximum duration of a request, in seconds. `URLRequest::timeout` only limits how long
    /// nothing arrives, which never happens if a server sends a byte now and then.
    static constexpr double answerLimit = 300;

private:
    class Manager;
    struct OutgoingRequest;
    struct State;

    std::shared_ptr<State> m_state;
};

} // namespace KestrioKit
