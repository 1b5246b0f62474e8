#include "KestrioKit/Core/Service/ServiceSessions.h"

#include "KestrioKit/Core/Protocol/SessionHeaders.h"

namespace KestrioKit {

ServiceSessions::ServiceSessions(std::shared_ptr<URLTransport> transport)
    : m_transport(std::move(transport)) {}

// The session is dropped after the change, so that one created in between is dropped, too.
void ServiceSessions::setLocale(std::optional<QString> locale) {
    m_locale.setValue(std::move(locale));
    m_session.setValue({});
}

void ServiceSessions::forgetToken() {
    setAuthorizationToken({});
    m_session.setValue({});
}

const UserAgent &ServiceSessions::userAgent() const {
    std::call_once(m_userAgentOnce,
                   [this] { m_userAgent = UserAgent::current(DeviceFacts::current()); });
    return m_userAgent;
}

std::shared_ptr<const URLSession> ServiceSessions::session(const std::optional<QString> &token) {
    return m_session.mutate([&](AuthorizedSession &last) {
        if (!last.session || last.token != token)
            last = {token, makeSession(token)};
        return last.session;
    });
}

std::shared_ptr<const URLSession> ServiceSessions::anonymousSession() {
    return m_anonymousSession.mutate([this](auto &session) {
        if (!session)
            session = makeSession(std::nullopt);
        return session;
    });
}

std::shared_ptr<const URLSession>
ServiceSessions::makeSession(const std::optional<QString> &token) const {
    return std::make_shared<const URLSession>(
        m_transport, sessionHeaders(userAgent(), m_locale.value(), preferredLanguages(), token));
}

} // namespace KestrioKit
