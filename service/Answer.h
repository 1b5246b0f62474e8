#pragma once

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace SurveyService {

/// The response to one request. The body is JSON.
struct Answer {
    int status = 200;
    std::string body = "{}";
    std::vector<std::pair<std::string, std::string>> headers;
};

/// Thrown to refuse a request. The response has that status and the body {"error": what()}.
class Refusal : public std::runtime_error {
public:
    Refusal(int status, const std::string &reason) : std::runtime_error(reason), m_status(status) {}

    int status() const { return m_status; }

private:
    int m_status;
};

} // namespace SurveyService
