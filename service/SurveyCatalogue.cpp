#include "service/SurveyCatalogue.h"

#include "service/JsonNode.h"

#include <algorithm>
#include <set>

namespace SurveyService {
namespace {

// Question types and comparators are not checked, because clients must cope with unknown ones.
void checkQuestion(const JsonNode &question) {
    question["name"].integer();
    question["type"].text();
    const JsonNode details = question["props"];
    details["message"].text();
    if (const auto introduction = details.find("introText"))
        introduction->text();
    if (const auto labels = details.find("labels")) {
        (*labels)["left"].text();
        (*labels)["right"].text();
    }
    if (const auto options = details.find("options")) {
        for (const JsonNode &option : options->elements()) {
            option["label"].text();
            option["value"].text();
        }
    }
    if (const auto rules = details.find("routingOptions")) {
        for (const JsonNode &rule : rules->elements()) {
            rule["comparator"].text();
            rule["target"].integer();
            if (rule["value"].json().is_null())
                rule["value"].refuse("must not be null");
        }
    }
}

void checkSurvey(const JsonNode &survey) {
    survey["event"].text();
    survey["surveyId"].integer();
    if (const auto locale = survey.find("locale"))
        locale->text();
    for (const std::string key : {"unitId", "delay"})
        if (const auto number = survey.find(key))
            number->integer();
    for (const JsonNode &question : survey["questions"].elements())
        checkQuestion(question);
}

void checkConfiguration(const JsonNode &configuration) {
    for (const std::string key : {"border", "theme", "disabled"})
        if (const auto text = configuration.find(key))
            text->text();
    if (const auto volume = configuration.find("volume"))
        volume->number();
}

void checkCatalogue(const JsonNode &catalogue) {
    if (const auto configuration = catalogue.find("configuration"))
        checkConfiguration(*configuration);
    std::set<std::int64_t> surveyIds;
    for (const JsonNode &survey : catalogue["surveys"].elements()) {
        checkSurvey(survey);
        if (!surveyIds.insert(survey["surveyId"].integer()).second)
            survey["surveyId"].refuse("used twice");
    }
}

/// Returns "en" for "en-GB", "en_GB;q=0.9" and "EN".
std::string primaryLanguage(std::string_view tag) {
    tag.remove_prefix(std::min(tag.find_first_not_of(" \t"), tag.size()));
    std::string language(tag.substr(0, tag.find_first_of("-_; \t")));
    std::transform(language.begin(), language.end(), language.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return language;
}

} // namespace

SurveyCatalogue::SurveyCatalogue(const std::string &text) {
    checkCatalogue(JsonNode::parse(text));
    // Parsed again to keep the keys in the order of the file, in which they are sent.
    auto catalogue = nlohmann::ordered_json::parse(text);
    if (catalogue.contains("configuration"))
        m_configuration = std::move(catalogue["configuration"]);
    for (auto &survey : catalogue["surveys"])
        m_entries.push_back({survey["event"], survey.value("locale", std::string()),
                             survey["surveyId"], std::move(survey)});
}

const SurveyCatalogue::Entry *SurveyCatalogue::findByEvent(std::string_view event,
                                                           std::string_view acceptLanguage) const {
    std::vector<const Entry *> candidates;
    for (const Entry &entry : m_entries)
        if (entry.event == event)
            candidates.push_back(&entry);
    // Clients list languages in order of preference, so the weights are not needed.
    while (!acceptLanguage.empty()) {
        const auto comma = std::min(acceptLanguage.find(','), acceptLanguage.size());
        const std::string wanted = primaryLanguage(acceptLanguage.substr(0, comma));
        for (const Entry *candidate : candidates)
            if (primaryLanguage(candidate->locale) == wanted)
                return candidate;
        acceptLanguage.remove_prefix(std::min(comma + 1, acceptLanguage.size()));
    }
    return candidates.empty() ? nullptr : candidates.front();
}

const SurveyCatalogue::Entry *SurveyCatalogue::findById(std::int64_t surveyId) const {
    const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                    [=](const Entry &entry) { return entry.surveyId == surveyId; });
    return found == m_entries.end() ? nullptr : &*found;
}

std::string surveyFor(const SurveyCatalogue::Entry &entry, std::int64_t visitorId,
                      const std::string &group) {
    nlohmann::ordered_json answer = nlohmann::ordered_json::object();
    const auto copyIfPresent = [&](const char *key) {
        if (entry.survey.contains(key))
            answer[key] = entry.survey[key];
    };
    copyIfPresent("unitId");
    answer["vid"] = visitorId;
    copyIfPresent("questions");
    copyIfPresent("delay");
    copyIfPresent("surveyId");
    answer["responseGroupUid"] = group;
    copyIfPresent("locale");
    return answer.dump();
}

} // namespace SurveyService
