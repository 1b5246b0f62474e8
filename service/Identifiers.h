#pragma once

#include <string>

namespace SurveyService {

/// Returns a random UUID (RFC 4122, version 4) in upper case.
std::string randomUuid();

} // namespace SurveyService
