#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace SurveyService {

/// The surveys to hand out and the configuration to answer with, as read from a surveys file.
/// Never changes, so it may be read from any thread.
class SurveyCatalogue {
public:
    struct Entry {
        std::string event;
        std::string locale; ///< empty when the survey names none
        std::int64_t surveyId = 0;
        nlohmann::ordered_json survey;
    };

    /// Throws JsonError, naming the place, for text that is not a surveys file.
    explicit SurveyCatalogue(const std::string &text);

    /// The configuration answer as JSON.
    std::string configuration() const { return m_configuration.dump(); }

    /// The survey that the event triggers: of several the one in the first language of
    /// `acceptLanguage` that there is, else the first. Null when there is none.
    const Entry *findByEvent(std::string_view event, std::string_view acceptLanguage) const;
    /// Null when there is none.
    const Entry *findById(std::int64_t surveyId) const;

private:
    nlohmann::ordered_json m_configuration = nlohmann::ordered_json::object();
    std::vector<Entry> m_entries;
};

/// The survey as one visitor gets it, as JSON. `group` is the response group of this showing.
std::string surveyFor(const SurveyCatalogue::Entry &entry, std::int64_t visitorId,
                      const std::string &group);

} // namespace SurveyService
