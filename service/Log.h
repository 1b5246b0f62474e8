#pragma once

#include <chrono>
#include <string>
#include <string_view>

namespace SurveyService {

/// Writes one line to standard error, "kestrio-service: " before it. From any thread.
void logMessage(std::string_view message);

/// Writes the line of one request, for example `GET /records 200 0.4 ms`. Control characters of
/// the target are written as \xNN: a request never forges or breaks a line. From any thread.
void logRequest(std::string_view method, std::string_view target, int status,
                std::chrono::steady_clock::duration duration);

} // namespace SurveyService
