#pragma once

namespace SurveyService {

/// The text of surveys/sample.json, which is served when no surveys file is given.
extern const char *const sampleSurveys;

} // namespace SurveyService
