#pragma once

#include "KestrioKit/Platform/Atomic.h"
#include "KestrioKit/Platform/URLSession.h"

namespace KestrioKit {

/// Passes every request on to another transport, but to a server of the test's: scheme, host and
/// port of the request's URL are replaced by those of `server`. Thread-safe.
class RoutedTransport final : public URLTransport {
public:
    RoutedTransport(std::shared_ptr<URLTransport> transport, QUrl server)
        : m_transport(std::move(transport)), m_server(std::move(server)) {}

    void setServer(const QUrl &server) { m_server.setValue(server); }
    /// The time-out of every request from now on.
    void setTimeout(std::chrono::seconds timeout) { m_timeout.setValue(timeout); }

    void send(URLRequest request, Body body, URLCompletion completion) override {
        const QUrl server = m_server.value();
        request.url.setScheme(server.scheme());
        request.url.setHost(server.host());
        request.url.setPort(server.port());
        request.timeout = m_timeout.value();
        m_transport->send(std::move(request), body, std::move(completion));
    }

    int tasksInFlight() const override { return m_transport->tasksInFlight(); }

private:
    std::shared_ptr<URLTransport> m_transport;
    Atomic<QUrl> m_server;
    Atomic<std::chrono::seconds> m_timeout{URLRequest().timeout};
};

} // namespace KestrioKit
