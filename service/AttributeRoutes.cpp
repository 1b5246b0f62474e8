#include "service/Authorization.h"
#include "service/RequestBodies.h"
#include "service/Routes.h"

namespace SurveyService {
namespace {

Answer setAttribute(const Call &call, RecordStore &records) {
    const Visitor visitor = requireVisitor(call, records);
    const std::string &key = call.captured("key");
    const std::string value = readAttributeValue(JsonNode::parse(call.body));
    records.changeAttributes({RecordKind::setAttribute, visitor.id, {}, key, call.body},
                             {{key, value}}, {});
    return {};
}

Answer setAttributes(const Call &call, RecordStore &records) {
    const Visitor visitor = requireVisitor(call, records);
    const auto values = readAttributes(JsonNode::parse(call.body));
    records.changeAttributes({RecordKind::setAttributes, visitor.id, {}, {}, call.body}, values,
                             {});
    return {};
}

Answer removeAttributes(const Call &call, RecordStore &records) {
    const Visitor visitor = requireVisitor(call, records);
    const auto keys = readAttributeRemoval(JsonNode::parse(call.body));
    records.changeAttributes({RecordKind::removeAttributes, visitor.id, {}, {}, call.body}, {},
                             keys);
    return {};
}

} // namespace

void addAttributeRoutes(Router &router, RecordStore &records) {
    constexpr auto bulkPath = "/2/environments/*env/visitors/:vid/attributes";
    router.add("PUT", "/1/visitors/:vid/attributes/*key",
               [&records](const Call &call) { return setAttribute(call, records); });
    router.add("PUT", bulkPath,
               [&records](const Call &call) { return setAttributes(call, records); });
    router.add("DELETE", bulkPath,
               [&records](const Call &call) { return removeAttributes(call, records); });
}

} // namespace SurveyService
