#include "service/Router.h"

#include <algorithm>

namespace SurveyService {
namespace {

void requireUtf8(const PathPattern::Captures &captures) {
    for (const auto &[name, text] : captures)
        if (!isUtf8(text))
            throw Refusal(400, "path: not UTF-8");
}

Answer methodNotAllowed(const std::string &allowed) {
    Answer answer = errorAnswer(405, "method: must be " + allowed);
    answer.headers.emplace_back("Allow", allowed);
    return answer;
}

} // namespace

Answer errorAnswer(int status, const std::string &reason) {
    // The reason may quote invalid UTF-8 that a client sent.
    return {status, dumpLeniently({{"error", reason}}), {}};
}

void Router::add(std::string method, std::string_view pattern, Handler handler) {
    m_routes.push_back({std::move(method), PathPattern(pattern), std::move(handler)});
}

Answer Router::answer(const httplib::Request &request, const std::string &body) const {
    try {
        return dispatch(request, body);
    } catch (const Refusal &refusal) {
        Answer answer = errorAnswer(refusal.status(), refusal.what());
        if (refusal.status() == 401)
            answer.headers.emplace_back("WWW-Authenticate", "Bearer");
        return answer;
    } catch (const JsonError &error) {
        return errorAnswer(400, error.what());
    } catch (const std::exception &error) {
        return errorAnswer(500, error.what());
    }
}

Answer Router::dispatch(const httplib::Request &request, const std::string &body) const {
    const std::string_view target = request.target;
    const std::string_view path = target.substr(0, target.find('?'));
    const std::string method = request.method == "HEAD" ? "GET" : request.method;
    std::string allowed;
    for (const Route &route : m_routes) {
        const auto captures = route.pattern.match(path);
        if (!captures)
            continue;
        if (route.method == method) {
            requireUtf8(*captures);
            return route.handler({request, body, *captures});
        }
        allowed += (allowed.empty() ? "" : ", ") + route.method;
    }
    if (!allowed.empty())
        return methodNotAllowed(allowed);
    throw Refusal(404, "path: unknown");
}

} // namespace SurveyService
