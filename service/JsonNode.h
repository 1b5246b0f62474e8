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

/// JSON that is not what was expected; `what()` begins with the place, such as
/// `events[2].metadata.sw: must be an integer`.
class JsonError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// A value of a JSON document that knows its place in it; keeps the document alive. Every reader
/// throws JsonError when the value is of another type.
class JsonNode {
public:
    /// The whole document of that text. Throws JsonError, also when arrays and objects nest deeper
    /// than 100 levels: what is stored must be readable by everybody.
    static JsonNode parse(const std::string &text);

    /// The member of that key of an object. Throws when there is none.
    JsonNode operator[](const std::string &key) const;
    /// The same, absent when there is none. A null is there.
    std::optional<JsonNode> find(const std::string &key) const;

    std::vector<JsonNode> elements() const;
    std::map<std::string, JsonNode> members() const;

    const std::string &text() const;
    bool boolean() const;
    double number() const;
    /// A signed 64-bit integer; 5.0 is one, 5.5 is none.
    std::int64_t integer() const;
    /// An unsigned 64-bit integer, likewise.
    std::uint64_t unsignedInteger() const;

    [[noreturn]] void refuse(const std::string &complaint) const;

    const nlohmann::json &json() const { return *m_value; }

private:
    using Value = std::shared_ptr<const nlohmann::json>;

    JsonNode(Value value, std::string place);

    JsonNode child(const nlohmann::json &value, std::string place) const;
    std::string placeOf(const std::string &key) const;

    Value m_value;
    std::string m_place; ///< empty for the document
};

bool isUtf8(const std::string &text);

/// The value as JSON text, with replacement characters where its texts are not UTF-8.
std::string dumpLeniently(const nlohmann::json &value);

} // namespace SurveyService
