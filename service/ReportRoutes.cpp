#include "service/Authorization.h"
#include "service/RequestBodies.h"
#include "service/Routes.h"

namespace SurveyService {
namespace {

Answer recordHistory(const Call &call, RecordStore &records) {
    const Visitor visitor = requireVisitor(call, records);
    const std::int64_t surveyId = call.capturedInteger("survey");
    checkSurveyEvent(JsonNode::parse(call.body), visitor, surveyId);
    records.add({RecordKind::history, visitor.id, surveyId, {}, call.body});
    return {};
}

Answer submitResponse(const Call &call, RecordStore &records) {
    const Visitor visitor = requireVisitor(call, records);
    const std::string group = readSurveyResponse(JsonNode::parse(call.body));
    const auto surveyId = records.findShownSurvey(visitor.id, group);
    records.add({RecordKind::response, visitor.id, surveyId, {}, call.body});
    return {};
}

Answer recordError(const Call &call, RecordStore &records) {
    checkErrorReport(JsonNode::parse(call.body));
    std::optional<std::string> errorId;
    if (call.http.has_header("x-ks-error"))
        errorId = call.http.get_header_value("x-ks-error");
    if (errorId && !isUtf8(*errorId))
        throw Refusal(400, "x-ks-error: not UTF-8");
    records.add({RecordKind::error, {}, {}, errorId, call.body});
    return {};
}

} // namespace

void addReportRoutes(Router &router, RecordStore &records) {
    router.add("POST", "/1/visitors/:vid/surveys/:survey/history",
               [&records](const Call &call) { return recordHistory(call, records); });
    router.add("POST", "/2/environments/*env/visitors/:vid/responses/submit",
               [&records](const Call &call) { return submitResponse(call, records); });
    router.add("POST", "/1/errors",
               [&records](const Call &call) { return recordError(call, records); });
    router.add("GET", "/records", [&records](const Call &) {
        return Answer{200, records.allRecords(), {}};
    });
}

} // namespace SurveyService
