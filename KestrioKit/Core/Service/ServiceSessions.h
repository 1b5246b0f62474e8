#pragma once

#include "KestrioKit/Core/Platform/HTTP/URLSession.h"
#include "KestrioKit/Core/Platform/Threads/Atomic.h"
#include "KestrioKit/Core/Protocol/UserAgent.h"

#include <memory>
#include <mutex>
#include <optional>

namespace KestrioKit {

/// The sessions in which the service's requests are sent, and what their headers are made of.
/// Thread-safe.
class ServiceSessions {
public:
    explicit ServiceSessions(std::shared_ptr<URLTransport> transport);
    Q_DISABLE_COPY_MOVE(ServiceSessions)

    /// The current visitor's bearer token.
    std::optional<QString> authorizationToken() const { return m_authorizationToken.value(); }
    void setAuthorizationToken(std::optional<QString> token) {
        m_authorizationToken.setValue(std::move(token));
    }
    /// The value of "Accept-Language", by default the user's languages. A new one counts from the
    /// next use of `session()` on.
    void setLocale(std::optional<QString> locale);

    /// Gathered at the first call.
    const UserAgent &userAgent() const;

    /// The session that is authorized by `token`; without "Authorization" when there is none.
    std::shared_ptr<const URLSession> session(const std::optional<QString> &token);
    /// The session that never carries "Authorization". Made once, at the first call.
    std::shared_ptr<const URLSession> anonymousSession();

private:
    struct AuthorizedSession {
        std::optional<QString> token;
        std::shared_ptr<const URLSession> session;
    };

    std::shared_ptr<const URLSession> makeSession(const std::optional<QString> &token) const;

    std::shared_ptr<URLTransport> m_transport;
    Atomic<std::optional<QString>> m_authorizationToken;
    Atomic<std::optional<QString>> m_locale;
    mutable std::once_flag m_userAgentOnce;
    mutable UserAgent m_userAgent;
    Atomic<std::shared_ptr<const URLSession>> m_anonymousSession;
    /// The last one that was used.
    Atomic<AuthorizedSession> m_session;
};

} // namespace KestrioKit
