#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace SurveyService {

/// A pattern for the paths of one resource, such as "/1/environments/*env/visitors/:vid".
///
/// `:name` matches one segment that is a decimal 64-bit integer. `*name` (at most one) matches any
/// text, including slashes and the empty text. So an environment id or an attribute key is captured
/// whole, whether or not its slashes are percent-encoded.
class PathPattern {
public:
    /// The matched texts by name, percent-decoded.
    using Captures = std::map<std::string, std::string, std::less<>>;

    explicit PathPattern(std::string_view pattern);

    /// Matches a path as it was sent, without its query. Absent if the path does not match.
    std::optional<Captures> match(std::string_view path) const;

private:
    std::vector<std::string> m_segments;
};

} // namespace SurveyService
