#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace SurveyService {

/// Thrown for JSON that does not have the expected form. `what()` starts with the position, such as
/// `events[2].metadata.sw: must be an integer`.
class JsonError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// A value of a JSON document that knows its position in the document. It keeps the document alive.
/// Every reader throws JsonError if the value has another type.
class JsonNode {
public:
    /// Parses a whole document. Throws JsonError if it is malformed, or if arrays and objects are
    /// nested deeper than 100 levels: stored JSON must be readable by every parser.
    static JsonNode parse(const std::string &text);

    /// Returns the member of an object with that key. Throws JsonError if there is none.
    JsonNode operator[](const std::string &key) const;
    /// Returns the same member; absent if there is none. A null counts as a member.
    std::optional<JsonNode> find(const std::string &key) const;

    std::vector<JsonNode> elements() const;
    std::map<std::string, JsonNode> members() const;

    const std::string &text() const;
    bool boolean() const;
    double number() const;
    /// Returns a signed 64-bit integer. 5.0 counts as an integer, 5.5 does not.
    std::int64_t integer() const;
    /// Returns an unsigned 64-bit integer by the same rule.
    std::uint64_t unsignedInteger() const;

    /// Throws JsonError with the value's position and the complaint.
    [[noreturn]] void refuse(const std::string &complaint) const;

    const nlohmann::json &json() const { return *m_value; }

private:
    using Value = std::shared_ptr<const nlohmann::json>;

    JsonNode(Value value, std::string place);

    JsonNode child(const nlohmann::json &value, std::string place) const;
    std::string placeOf(const std::string &key) const;

    Value m_value;
    std::string m_place; ///< empty for the whole document
};

/// Returns whether the text is valid UTF-8.
bool isUtf8(const std::string &text);

/// Returns the value as JSON text. Invalid UTF-8 is replaced by replacement characters.
std::string dumpLeniently(const nlohmann::json &value);

} // namespace SurveyService
