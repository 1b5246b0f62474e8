#include "service/PathPattern.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

namespace SurveyService {
namespace {

std::vector<std::string_view> split(std::string_view path) {
    std::vector<std::string_view> segments;
    for (;;) {
        const auto slash = path.find('/');
        segments.push_back(path.substr(0, slash));
        if (slash == std::string_view::npos)
            return segments;
        path.remove_prefix(slash + 1);
    }
}

/// Percent signs that do not encode a byte are kept.
std::string percentDecoded(std::string_view text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        unsigned char byte = 0;
        const std::string_view digits = text.substr(i + 1, 2);
        const auto *const end = digits.data() + digits.size();
        if (text[i] == '%' && digits.size() == 2 &&
            std::from_chars(digits.data(), end, byte, 16).ptr == end) {
            result += static_cast<char>(byte);
            i += digits.size();
        } else {
            result += text[i];
        }
    }
    return result;
}

bool isInteger(std::string_view text) {
    std::int64_t value = 0;
    const auto *const end = text.data() + text.size();
    const auto [parsedTo, error] = std::from_chars(text.data(), end, value);
    return error == std::errc{} && parsedTo == end;
}

bool matchSegment(const std::string &expected, std::string_view segment,
                  PathPattern::Captures &captures) {
    if (!expected.starts_with(':'))
        return segment == expected;
    captures.emplace(expected.substr(1), segment);
    return isInteger(segment);
}

} // namespace

PathPattern::PathPattern(std::string_view pattern) {
    for (const std::string_view segment : split(pattern))
        m_segments.emplace_back(segment);
}

std::optional<PathPattern::Captures> PathPattern::match(std::string_view path) const {
    const auto segments = split(path);
    const auto isWildcard = [](const std::string &segment) {
        return segment.starts_with('*');
    };
    const auto wildcard = std::find_if(m_segments.begin(), m_segments.end(), isWildcard);
    const bool hasWildcard = wildcard != m_segments.end();
    if (hasWildcard ? segments.size() < m_segments.size() : segments.size() != m_segments.size())
        return std::nullopt;

    Captures captures;
    const auto same = [&captures](const std::string &expected, std::string_view segment) {
        return matchSegment(expected, segment, captures);
    };
    if (!std::equal(m_segments.begin(), wildcard, segments.begin(), same))
        return std::nullopt;
    if (hasWildcard) {
        const auto first = segments.begin() + (wildcard - m_segments.begin());
        const auto last =
            segments.end() - (m_segments.end() - wildcard); // the last segment that it matches
        if (!std::equal(wildcard + 1, m_segments.end(), last + 1, same))
            return std::nullopt;
        const std::string_view whole(first->data(), last->data() + last->size());
        captures.emplace(wildcard->substr(1), percentDecoded(whole));
    }
    return captures;
}

} // namespace SurveyService
