#pragma once

#include "KestrioKit/Core/Platform/HTTP/URLRequest.h"
#include "KestrioKit/Core/Protocol/UserAgent.h"

#include <QList>
#include <QStringList>

#include <optional>

namespace KestrioKit {

/// Returns the value of "Accept-Language" (RFC 9110, 12.5.4) for the first five of the given
/// languages, such as "en-GB, fr;q=0.9". `preferredLanguages` is in the user's order of preference.
/// Returns an empty text if there are no languages.
QString acceptLanguage(const QStringList &preferredLanguages);

/// Returns the headers of every request of a session, in the order in which they are sent. If
/// `locale` is given, "Accept-Language" is this text instead of the preferred languages. `token` is
/// the bearer token; without it there is no "Authorization" header. Values are encoded in UTF-8.
/// Control characters are removed, so no value can inject another header.
QList<HTTPHeader> sessionHeaders(const UserAgent &userAgent, const std::optional<QString> &locale,
                                 const QStringList &preferredLanguages,
                                 const std::optional<QString> &token);

} // namespace KestrioKit
