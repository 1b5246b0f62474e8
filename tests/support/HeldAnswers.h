#pragma once

#include "KestrioKit/Platform/Atomic.h"
#include "KestrioKit/Platform/URLSession.h"

#include <atomic>

namespace KestrioKit {

/// Passes requests on to another transport, and keeps their answers back for as long as the test
/// wants. Thread-safe.
class HeldAnswers final : public URLTransport, public std::enable_shared_from_this<HeldAnswers> {
public:
    explicit HeldAnswers(std::shared_ptr<URLTransport> transport)
        : m_transport(std::move(transport)) {}

    /// Answers that come from now on are kept back, or not.
    void hold(bool holding) { m_holding = holding; }
    qsizetype held() const { return m_held.value().size(); }
    /// The answer kept back as number `index`; calling it delivers the answer.
    std::function<void()> take(qsizetype index) {
        return m_held.mutate([index](auto &held) { return held.takeAt(index); });
    }

    void send(URLRequest request, Body body, URLCompletion completion) override {
        m_transport->send(std::move(request), body,
                          [self = shared_from_this(), completion = std::move(completion)](
                              const URLResult &result) { self->deliver(completion, result); });
    }

    int tasksInFlight() const override { return m_transport->tasksInFlight(); }

private:
    void deliver(const URLCompletion &completion, const URLResult &result) {
        if (!m_holding)
            return completion(result);
        m_held.mutate(
            [&](auto &held) { held.append([completion, result] { completion(result); }); });
    }

    std::shared_ptr<URLTransport> m_transport;
    std::atomic<bool> m_holding = false;
    Atomic<QList<std::function<void()>>> m_held;
};

} // namespace KestrioKit
