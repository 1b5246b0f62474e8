#pragma once

namespace KestrioKit {

/// The status codes that the library treats differently from the rest of their class (RFC 9110,
/// 15).
namespace HTTPStatus {

inline constexpr int noContent = 204;
inline constexpr int movedPermanently = 301;
inline constexpr int found = 302;
inline constexpr int seeOther = 303;
inline constexpr int notModified = 304;
inline constexpr int temporaryRedirect = 307;
inline constexpr int permanentRedirect = 308;
inline constexpr int requestTimeout = 408;
inline constexpr int tooManyRequests = 429;

} // namespace HTTPStatus

/// The class of a status code, which its first digit tells (RFC 9110, 15). The classes are in
/// the order of their codes.
enum class HTTPStatusClass {
    /// 1xx, or no status at all (0): this is not the final response.
    notFinal,
    /// 2xx.
    success,
    /// 3xx.
    redirection,
    /// 4xx: the request is refused, and would be refused again.
    clientError,
    /// 5xx: the server failed, possibly for a short time only.
    serverError,
    /// 600 and above. RFC 9110 does not define these codes.
    invalid,
};

/// Returns the class of a status code.
constexpr HTTPStatusClass statusClass(int statusCode) {
    constexpr int codesPerClass = 100;
    switch (statusCode / codesPerClass) {
    case 2:
        return HTTPStatusClass::success;
    case 3:
        return HTTPStatusClass::redirection;
    case 4:
        return HTTPStatusClass::clientError;
    case 5:
        return HTTPStatusClass::serverError;
    default:
        return statusCode < 2 * codesPerClass ? HTTPStatusClass::notFinal
                                              : HTTPStatusClass::invalid;
    }
}

} // namespace KestrioKit
