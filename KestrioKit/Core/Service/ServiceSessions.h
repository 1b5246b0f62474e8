#pragma once

#include "KestrioKit/Core/Platform/HTTP/URLSession.h"
#include "KestrioKit/Core/Platform/Threads/Atomic.h"
#include "KestrioKit/Core/Protocol/UserAgent.h"

#include <memory>
#include <mutex>
#include <optional>

namespace KestrioKit {

/// Creates the sessions in which requests are sent, and holds what their headers are built from.
/// Thread-safe.
class ServiceSessions {
public:
    explicit ServiceSessions(std::shared_ptr<URLTransport> transport);
    Q_DISABLE_COPY_MOVE(ServiceSessions)

    /// The bearer token of the current visitor; absent by default.
    std::optional<QString> authorizationToken() const { return m_authorizationToken.value(); }
    void setAuthorizationToken(std::optional<QString> token) {
        m_authorizationToken.setValue(std::move(token));
    }
    /// Forgets the token, also within the session that was used last.
    void forgetToken();
    /// Sets the value of "Accept-Language"; absent for the user's preferred languages, the default.
    /// The change applies from the next call of `session()`. It does not change the anonymous
    /// session once that exists.
    void setLocale(std::optional<QString> locale);

    /// Returns the versions that are sent with every request. They are determined at the first
    /// call.
    const UserAgent &userAgent() const;

    /// Returns the session for `token`. Without a token, it sends no "Authorization" header. The
    /// last session is reused as long as neither the token nor the locale changes.
    std::shared_ptr<const URLSession> session(const std::optional<QString> &token);
    /// Returns the session that never sends an "Authorization" header. It is created at the first
    /// call.
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
    /// The session that `session()` returned last.
    Atomic<AuthorizedSession> m_session;
};

} // namespace KestrioKit
