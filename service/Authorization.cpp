#include "service/Authorization.h"

#include <string_view>
#include <strings.h>

namespace SurveyService {

std::string bearerToken(const Call &call) {
    constexpr std::string_view scheme = "Bearer ";
    const std::string header = call.http.get_header_value("Authorization");
    // Scheme names are case-insensitive.
    if (::strncasecmp(header.c_str(), scheme.data(), scheme.size()) != 0)
        return {};
    return header.substr(scheme.size());
}

Visitor requireVisitor(const Call &call, RecordStore &records) {
    if (!call.http.has_header("Authorization"))
        throw Refusal(401, "Authorization: missing");
    const auto visitor = records.findVisitor(bearerToken(call));
    const auto isVisitor = [&call](std::string_view name, const std::string &value) {
        const auto captured = call.captures.find(name);
        return captured == call.captures.end() || captured->second == value;
    };
    if (!visitor || !isVisitor("vid", std::to_string(visitor->id)) ||
        !isVisitor("env", visitor->environment))
        throw Refusal(401, "Authorization: not the token of this visitor");
    return *visitor;
}

} // namespace SurveyService
