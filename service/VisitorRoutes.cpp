#include "service/Authorization.h"
#include "service/RequestBodies.h"
#include "service/Routes.h"

namespace SurveyService {
namespace {

Answer visitorAnswer(const Visitor &visitor) {
    nlohmann::ordered_json body{{"vid", visitor.id}, {"token", visitor.token}};
    if (visitor.userId)
        body["userId"] = *visitor.userId;
    return {200, body.dump(), {}};
}

Answer registerVisitor(const Call &call, RecordStore &records) {
    const auto userId = readVisitorRequest(JsonNode::parse(call.body));
    // A client that still has its token keeps its visitor.
    return visitorAnswer(records.findOrAddVisitor(call.captured("env"), userId, bearerToken(call)));
}

Answer identifyVisitor(const Call &call, RecordStore &records) {
    const Visitor current = requireVisitor(call, records);
    const std::string userId = readUserIdentifier(JsonNode::parse(call.body));
    return visitorAnswer(records.findOrAddVisitor(current.environment, userId, current.token));
}

} // namespace

void addVisitorRoutes(Router &router, const SurveyCatalogue &surveys, RecordStore &records) {
    router.add("GET", "/1/environments/*env/config", [&surveys](const Call &) {
        return Answer{200, surveys.configuration(), {}};
    });
    router.add("POST", "/1/environments/*env/visitors",
               [&records](const Call &call) { return registerVisitor(call, records); });
    router.add("PUT", "/1/environments/*env/visitors/:vid",
               [&records](const Call &call) { return identifyVisitor(call, records); });
}

} // namespace SurveyService
