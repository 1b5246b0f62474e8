#pragma once

namespace SurveyService {

/// The text of surveys/sample.json. It is used if no surveys file is given.
extern const char *const sampleSurveys;

} // namespace SurveyService
