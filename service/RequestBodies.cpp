#include "service/RequestBodies.h"

#include <algorithm>

namespace SurveyService {
namespace {

void checkOptionalText(const JsonNode &parent, const std::string &key) {
    if (const auto node = parent.find(key))
        node->text();
}

void checkOptionalInteger(const JsonNode &parent, const std::string &key) {
    if (const auto node = parent.find(key))
        node->integer();
}

/// Checks for the four forms of a free value: an integer, a text, a map to texts, a map to
/// Booleans.
void checkFreeValue(const JsonNode &node) {
    if (node.json().is_string())
        return;
    if (node.json().is_number()) {
        node.integer();
        return;
    }
    const auto all = [&node](auto isOfType) {
        return std::all_of(node.json().begin(), node.json().end(), isOfType);
    };
    const bool isMap =
        node.json().is_object() && (all([](const auto &value) { return value.is_string(); }) ||
                                    all([](const auto &value) { return value.is_boolean(); }));
    if (!isMap)
        node.refuse("must be an integer, a text, a map of texts or a map of Booleans");
}

void checkMetadata(const JsonNode &metadata) {
    for (const auto &[key, node] : metadata.members()) {
        if (key == "sw" || key == "sh")
            node.integer();
        else if (key == "pg" || key == "l")
            node.text();
        else
            checkFreeValue(node);
    }
}

void checkAnswer(const JsonNode &answer) {
    answer["questionId"].integer();
    answer["seenAt"].number();
    if (const auto answeredAt = answer.find("answeredAt"))
        answeredAt->number();
    // The answer to an open question that was left empty has no value.
    if (const auto value = answer.find("value"))
        checkFreeValue(*value);
}

} // namespace

std::optional<std::string> readVisitorRequest(const JsonNode &body) {
    if (const auto userId = body.find("userId"))
        return userId->text();
    return std::nullopt;
}

std::string readUserIdentifier(const JsonNode &body) {
    return body["userId"].text();
}

std::string readEvent(const JsonNode &body) {
    checkMetadata(body["metadata"]);
    body["delayed"].boolean();
    body["timestamp"].unsignedInteger();
    return body["event"].text();
}

void checkEventBatch(const JsonNode &body) {
    for (const JsonNode &event : body["events"].elements())
        readEvent(event);
    body["timestamp"].unsignedInteger();
}

std::string readAttributeValue(const JsonNode &body) {
    return body["value"].text();
}

std::map<std::string, std::string> readAttributes(const JsonNode &body) {
    std::map<std::string, std::string> attributes;
    for (const auto &[key, value] : body.members())
        attributes.emplace(key, value.text());
    return attributes;
}

std::vector<std::string> readAttributeRemoval(const JsonNode &body) {
    std::vector<std::string> keys;
    for (const JsonNode &key : body["delete"].elements())
        keys.push_back(key.text());
    return keys;
}

void checkSurveyEvent(const JsonNode &body, const Visitor &visitor, std::int64_t surveyId) {
    if (body["eid"].text() != visitor.environment)
        body["eid"].refuse("must be the environment of the visitor");
    if (body["sid"].integer() != surveyId)
        body["sid"].refuse("must be the survey of the path");
    checkOptionalInteger(body, "qid");
    if (body["vid"].integer() != visitor.id)
        body["vid"].refuse("must be the visitor of the path");
    body["isNew"].boolean();
    const std::string &action = body["action"].text();
    if (action != "seen" && action != "closed")
        body["action"].refuse("must be \"seen\" or \"closed\"");
    body["responseGroupUid"].text();
}

std::string readSurveyResponse(const JsonNode &body) {
    for (const JsonNode &answer : body["responses"].elements())
        checkAnswer(answer);
    checkMetadata(body["meta"]);
    return body["responseGroupUid"].text();
}

void checkErrorReport(const JsonNode &body) {
    body["envId"].text();
    checkOptionalInteger(body, "vid");
    body["userAgent"].text();
    checkMetadata(body["meta"]);
    body["err"]["message"].text();
    checkOptionalText(body["err"], "stack");
}

} // namespace SurveyService
