#pragma once

#include "KestrioKit/Core/Platform/HTTP/URLRequest.h"
#include "KestrioKit/Core/Protocol/UserAgent.h"

#include <QList>
#include <QStringList>

#include <optional>

namespace KestrioKit {

/// The "Accept-Language" (RFC 9110, 12.5.4) for languages in the user's order, the first five of
/// them: "en-GB, fr;q=0.9". Empty for no languages.
QString acceptLanguage(const QStringList &preferredLanguages);

/// The headers of every request of a session, in the order in which they are sent. `locale` takes
/// the place of the preferred languages; `token` is the bearer token of an authorized session.
/// Values are sent in UTF-8 without their control characters, so that none of them can begin a
/// header of its own.
QList<HTTPHeader> sessionHeaders(const UserAgent &userAgent, const std::optional<QString> &locale,
                                 const QStringList &preferredLanguages,
                                 const std::optional<QString> &token);

} // namespace KestrioKit
