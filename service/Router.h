#pragma once

#include "service/Answer.h"
#include "service/JsonNode.h"
#include "service/PathPattern.h"

#include <cstdint>
#include <functional>
#include <httplib.h>
#include <string>
#include <string_view>
#include <vector>

namespace SurveyService {

/// A request for the handler of its route. The references are valid while the handler runs.
struct Call {
    const httplib::Request &http;
    const std::string &body;
    const PathPattern::Captures &captures;

    /// Returns the text that the pattern's name matched. The name must be in the pattern.
    const std::string &captured(std::string_view name) const { return captures.find(name)->second; }
    /// Returns the same as a number, for names that the pattern marks with a colon.
    std::int64_t capturedInteger(std::string_view name) const { return std::stoll(captured(name)); }
};

/// Passes requests to handlers and turns their exceptions into error responses. Add all routes
/// before the first request; after that, the router is thread-safe.
class Router {
public:
    using Handler = std::function<Answer(const Call &)>;

    void add(std::string method, std::string_view pattern, Handler handler);

    /// Returns the handler's response, or an error response. HEAD is treated like GET.
    Answer answer(const httplib::Request &request, const std::string &body) const;

private:
    struct Route {
        std::string method;
        PathPattern pattern;
        Handler handler;
    };

    Answer dispatch(const httplib::Request &request, const std::string &body) const;

    std::vector<Route> m_routes;
};

/// Returns a response of that status with the body {"error": reason}.
Answer errorAnswer(int status, const std::string &reason);

} // namespace SurveyService
