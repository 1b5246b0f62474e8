#include "KestrioKit/Platform/URLSession.h"

namespace KestrioKit {

URLSession::URLSession(std::shared_ptr<URLTransport> transport, QList<HTTPHeader> additionalHeaders)
    : m_transport(std::move(transport)), m_additionalHeaders(std::move(additionalHeaders)) {}

void URLSession::dataTask(URLRequest request, URLTransport::Body body,
                          URLCompletion completion) const {
    request.headers = m_additionalHeaders + request.headers;
    m_transport->send(std::move(request), body, std::move(completion));
}

} // namespace KestrioKit
