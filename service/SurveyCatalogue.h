#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace SurveyService {

/// The surveys and the configuration that the service sends, read from a surveys file. Immutable,
/// so it may be used on any thread.
class SurveyCatalogue {
public:
    struct Entry {
        std::string event;
        std::string locale; ///< empty if the survey has none
        std::int64_t surveyId = 0;
        nlohmann::ordered_json survey;
    };

    /// Parses a surveys file. Throws JsonError with the position of the first error.
    explicit SurveyCatalogue(const std::string &text);

    /// Returns the configuration as JSON.
    std::string configuration() const { return m_configuration.dump(); }

    /// Returns the survey that the event triggers; null if there is none. If several surveys have
    /// the same event, the first language of `acceptLanguage` for which there is one decides. If
    /// there is none in any of these languages, the first survey is returned.
    const Entry *findByEvent(std::string_view event, std::string_view acceptLanguage) const;
    /// Returns the survey with that id; null if there is none.
    const Entry *findById(std::int64_t surveyId) const;

private:
    nlohmann::ordered_json m_configuration = nlohmann::ordered_json::object();
    std::vector<Entry> m_entries;
};

/// Returns the survey as JSON, as it is sent to that visitor. `group` is the response group of this
/// showing.
std::string surveyFor(const SurveyCatalogue::Entry &entry, std::int64_t visitorId,
                      const std::string &group);

} // namespace SurveyService
