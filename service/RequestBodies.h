#pragma once

#include "service/JsonNode.h"
#include "service/RecordStore.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

// The bodies that clients send. Each function checks the whole body, throws JsonError where it is
// not as it must be, and gives back what the service acts on. Unknown keys are let through.
namespace SurveyService {

std::optional<std::string> readVisitorRequest(const JsonNode &body);

std::string readUserIdentifier(const JsonNode &body);

/// Gives the event's name.
std::string readEvent(const JsonNode &body);

void checkEventBatch(const JsonNode &body);

std::string readAttributeValue(const JsonNode &body);

std::map<std::string, std::string> readAttributes(const JsonNode &body);

/// Gives the keys to remove.
std::vector<std::string> readAttributeRemoval(const JsonNode &body);

/// A history record has to name the visitor's environment, and the visitor and the survey that its
/// path names.
void checkSurveyEvent(const JsonNode &body, const Visitor &visitor, std::int64_t surveyId);

/// Gives the response group.
std::string readSurveyResponse(const JsonNode &body);

void checkErrorReport(const JsonNode &body);

} // namespace SurveyService
