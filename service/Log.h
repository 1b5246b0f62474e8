#pragma once

#include <chrono>
#include <string>
#include <string_view>

namespace SurveyService {

/// Writes one line to standard error, preceded by "kestrio-service: ". Thread-safe.
void logMessage(std::string_view message);

/// Writes the log line of one request, such as `GET /records 200 0.4 ms`. Control characters in the
/// target are written as \xNN, so no request can forge or break a line. Thread-safe.
void logRequest(std::string_view method, std::string_view target, int status,
                std::chrono::steady_clock::duration duration);

} // namespace SurveyService
