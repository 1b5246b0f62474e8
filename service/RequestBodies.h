#pragma once

#include "service/JsonNode.h"
#include "service/RecordStore.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

// Readers of request bodies. Each function checks the whole body, throws JsonError if the body is
// invalid, and returns the part on which the service acts. Unknown keys are ignored.
namespace SurveyService {

/// Returns the id of the user; absent for an anonymous visitor.
std::optional<std::string> readVisitorRequest(const JsonNode &body);

/// Returns the id of the user, which is required.
std::string readUserIdentifier(const JsonNode &body);

/// Returns the name of the event.
std::string readEvent(const JsonNode &body);

/// Checks the events of a batch and the batch's time.
void checkEventBatch(const JsonNode &body);

/// Returns the value of the attribute.
std::string readAttributeValue(const JsonNode &body);

/// Returns the values by key.
std::map<std::string, std::string> readAttributes(const JsonNode &body);

/// Returns the keys to remove.
std::vector<std::string> readAttributeRemoval(const JsonNode &body);

/// Checks a history record. It must contain the visitor's environment, and the visitor and the
/// survey of the path.
void checkSurveyEvent(const JsonNode &body, const Visitor &visitor, std::int64_t surveyId);

/// Returns the response group.
std::string readSurveyResponse(const JsonNode &body);

/// Checks an error report.
void checkErrorReport(const JsonNode &body);

} // namespace SurveyService
