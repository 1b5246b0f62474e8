#pragma once

#include "KestrioKit/Core/Platform/HTTP/URLSession.h"
#include "KestrioKit/Core/Platform/Threads/Executor.h"

#include <memory>

namespace KestrioKit {

/// Carries requests over HTTP/1.1 (RFC 9112), encrypted where their URL is of "https", without
/// cookies or a cache. The errors' domain is `transportErrorDomain`; a whole answer with any status
/// from 200 on is none. Nothing is sent twice: what a closing connection cuts off fails.
///
/// There are two of Qt's network managers at most, each with a thread and a few connections.
class NetworkTransport final : public URLTransport {
public:
    /// Requests are sent and completed on the thread of `executor`, a Qt thread with an event loop.
    /// It must outlive this object, as must `clock`. What is out when that thread ends completes
    /// with an error once there is another one.
    NetworkTransport(Executor &executor, const Clock &clock);
    /// Cuts off what is still out.
    ~NetworkTransport() override;

    void send(URLRequest request, Body body, URLCompletion completion) override;
    int tasksInFlight() const override;

    /// How many seconds an answer may take in all. A request's time-out is one of silence, which a
    /// server that sends a byte now and then never reaches.
    static constexpr double answerLimit = 300;

private:
    class Manager;
    struct State;

    std::shared_ptr<State> m_state;
};

} // namespace KestrioKit
