#include "service/Authorization.h"
#include "service/Identifiers.h"
#include "service/RequestBodies.h"
#include "service/Routes.h"

#include <charconv>

namespace SurveyService {
namespace {

Answer show(const SurveyCatalogue::Entry &entry, const Visitor &visitor, RecordStore &records) {
    const std::string group = randomUuid();
    records.add({RecordKind::showing, visitor.id, entry.surveyId, group, {}});
    return {200, surveyFor(entry, visitor.id, group), {}};
}

Answer trackEvent(const Call &call, const SurveyCatalogue &surveys, RecordStore &records) {
    const Visitor visitor = requireVisitor(call, records);
    const std::string event = readEvent(JsonNode::parse(call.body));
    records.add({RecordKind::singleEvent, visitor.id, {}, {}, call.body});
    const auto *const entry =
        surveys.findByEvent(event, call.http.get_header_value("Accept-Language"));
    return entry ? show(*entry, visitor, records) : Answer{200, "null", {}};
}

Answer trackBatch(const Call &call, RecordStore &records) {
    const Visitor visitor = requireVisitor(call, records);
    checkEventBatch(JsonNode::parse(call.body));
    records.add({RecordKind::eventBatch, visitor.id, {}, {}, call.body});
    return {};
}

std::int64_t requestedSurvey(const Call &call) {
    const std::string text = call.http.get_param_value("surveyid");
    std::int64_t surveyId = 0;
    const auto *const end = text.data() + text.size();
    const auto [parsedTo, error] = std::from_chars(text.data(), end, surveyId);
    if (error != std::errc{} || parsedTo != end)
        throw Refusal(400, "surveyid: must be an integer");
    return surveyId;
}

Answer fetchSurvey(const Call &call, const SurveyCatalogue &surveys, RecordStore &records) {
    const Visitor visitor = requireVisitor(call, records);
    const auto *const entry = surveys.findById(requestedSurvey(call));
    if (!entry)
        throw Refusal(404, "surveyid: unknown");
    return show(*entry, visitor, records);
}

} // namespace

void addEventRoutes(Router &router, const SurveyCatalogue &surveys, RecordStore &records) {
    router.add("POST", "/1/visitors/:vid/events", [&surveys, &records](const Call &call) {
        return trackEvent(call, surveys, records);
    });
    router.add("POST", "/1/visitors/:vid/events/batch",
               [&records](const Call &call) { return trackBatch(call, records); });
    router.add("GET", "/1/environments/*env/questions", [&surveys, &records](const Call &call) {
        return fetchSurvey(call, surveys, records);
    });
}

} // namespace SurveyService
