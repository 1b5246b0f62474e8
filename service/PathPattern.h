#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace SurveyService {

/// The paths of one resource, for example "/1/environments/*env/visitors/:vid".
///
/// `:name` stands for one segment that is a decimal 64-bit integer. `*name` (one at most) stands
/// for anything else, slashes and nothing at all included: an environment id or an attribute key
/// arrives whole, whether or not its slashes were percent-encoded.
class PathPattern {
public:
    /// What the names stood for, percent-decoded.
    using Captures = std::map<std::string, std::string, std::less<>>;

    explicit PathPattern(std::string_view pattern);

    /// Matches a path as it came over the wire, without its query.
    std::optional<Captures> match(std::string_view path) const;

private:
    std::vector<std::string> m_segments;
};

} // namespace SurveyService
