#include "service/JsonNode.h"

#include <cmath>

namespace SurveyService {
namespace {

constexpr int deepestNesting = 100;
constexpr double twoTo63 = 9223372036854775808.0;
constexpr double twoTo64 = 2 * twoTo63;

bool isWhole(const nlohmann::json &value, double least, double beyond) {
    if (!value.is_number_float())
        return false;
    const auto number = value.get<double>();
    return number >= least && number < beyond && number == std::floor(number);
}

} // namespace

JsonNode JsonNode::parse(const std::string &text) {
    const auto refuseDeepNesting = [](int depth, nlohmann::json::parse_event_t, nlohmann::json &) {
        if (depth > deepestNesting)
            throw JsonError("body: nested deeper than " + std::to_string(deepestNesting) +
                            " levels");
        return true;
    };
    // The parser would skip a byte order mark, but stored text must be JSON without it.
    if (text.starts_with("\xEF\xBB\xBF"))
        throw JsonError("body: begins with a byte order mark");
    try {
        auto document = nlohmann::json::parse(text, refuseDeepNesting);
        return {std::make_shared<const nlohmann::json>(std::move(document)), {}};
    } catch (const nlohmann::json::parse_error &error) {
        throw JsonError("body: not JSON at byte " + std::to_string(error.byte));
    } catch (const nlohmann::json::exception &) {
        throw JsonError("body: not JSON: a number is out of range");
    }
}

JsonNode::JsonNode(Value value, std::string place)
    : m_value(std::move(value)), m_place(std::move(place)) {}

JsonNode JsonNode::child(const nlohmann::json &value, std::string place) const {
    return {Value(m_value, &value), std::move(place)};
}

std::string JsonNode::placeOf(const std::string &key) const {
    return m_place.empty() ? key : m_place + '.' + key;
}

JsonNode JsonNode::operator[](const std::string &key) const {
    if (const auto found = find(key))
        return *found;
    throw JsonError(placeOf(key) + ": missing");
}

std::optional<JsonNode> JsonNode::find(const std::string &key) const {
    if (!m_value->is_object())
        refuse("must be an object");
    const auto found = m_value->find(key);
    if (found == m_value->end())
        return std::nullopt;
    return child(*found, placeOf(key));
}

std::vector<JsonNode> JsonNode::elements() const {
    if (!m_value->is_array())
        refuse("must be an array");
    std::vector<JsonNode> result;
    for (std::size_t i = 0; i < m_value->size(); ++i)
        result.push_back(child((*m_value)[i], m_place + '[' + std::to_string(i) + ']'));
    return result;
}

std::map<std::string, JsonNode> JsonNode::members() const {
    if (!m_value->is_object())
        refuse("must be an object");
    std::map<std::string, JsonNode> result;
    for (const auto &[key, value] : m_value->items())
        result.emplace(key, child(value, placeOf(key)));
    return result;
}

const std::string &JsonNode::text() const {
    if (!m_value->is_string())
        refuse("must be text");
    return m_value->get_ref<const std::string &>();
}

bool JsonNode::boolean() const {
    if (!m_value->is_boolean())
        refuse("must be true or false");
    return m_value->get<bool>();
}

double JsonNode::number() const {
    if (!m_value->is_number())
        refuse("must be a number");
    return m_value->get<double>();
}

std::int64_t JsonNode::integer() const {
    const bool fits = !m_value->is_number_unsigned() || m_value->get<std::uint64_t>() <= INT64_MAX;
    if ((m_value->is_number_integer() && fits) || isWhole(*m_value, -twoTo63, twoTo63))
        return m_value->get<std::int64_t>();
    refuse("must be a 64-bit integer");
}

std::uint64_t JsonNode::unsignedInteger() const {
    if (m_value->is_number_unsigned() || isWhole(*m_value, 0, twoTo64))
        return m_value->get<std::uint64_t>();
    refuse("must be an unsigned 64-bit integer");
}

void JsonNode::refuse(const std::string &complaint) const {
    throw JsonError((m_place.empty() ? "body" : m_place) + ": " + complaint);
}

bool isUtf8(const std::string &text) {
    try {
        static_cast<void>(nlohmann::json(text).dump());
        return true;
    } catch (const nlohmann::json::type_error &) {
        return false;
    }
}

std::string dumpLeniently(const nlohmann::json &value) {
    return value.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

} // namespace SurveyService
