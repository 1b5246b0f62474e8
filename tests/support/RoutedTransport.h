#pragma once

#include "KestrioKit/Platform/URLSession.h"

namespace KestrioKit {

/// Passes every request on to another transport, but to a server of the test's: scheme, host and
/// port of the request's URL are replaced by those of `server`.
class RoutedTransport final : public URLTransport {
public:
    RoutedTransport(std::shared_ptr<URLTransport> transport, QUrl server)
        : m_transport(std::move(transport)), m_server(std::move(server)) {}

    void send(URLRequest request, Body body, URLCompletion completion) override {
        request.url.setScheme(m_server.scheme());
        request.url.setHost(m_server.host());
        request.url.setPort(m_server.port());
        m_transport->send(std::move(request), body, std::move(completion));
    }

    int tasksInFlight() const override { return m_transport->tasksInFlight(); }

private:
    std::shared_ptr<URLTransport> m_transport;
    QUrl m_server;
};

} // namespace KestrioKit
