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

/// One request on its way to the handler of its route. Lives as long as the handler runs.
struct Call {
    const httplib::Request &http;
    const std::string &body;
    const PathPattern::Captures &captures;

    const std::string &captured(std::string_view name) const { return captures.find(name)->second; }
    /// For names that the pattern marks with a colon.
    std::int64_t capturedInteger(std::string_view name) const { return std::stoll(captured(name)); }
};

/// Finds the handler of a request and turns what it throws into an answer. Routes are added before
/// the first request; after that it is used from any thread.
class Router {
public:
    using Handler = std::function<Answer(const Call &)>;

    void add(std::string method, std::string_view pattern, Handler handler);

    /// HEAD is answered like GET.
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

/// {"error": reason} with that status.
Answer errorAnswer(int status, const std::string &reason);

} // namespace SurveyService
