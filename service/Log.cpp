#include "service/Log.h"

#include <cstdio>

namespace SurveyService {
namespace {

std::string withoutControls(std::string_view text) {
    constexpr std::string_view hexDigits = "0123456789abcdef";
    std::string result;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0x20 && byte != 0x7f)
            result += c;
        else
            result.append("\\x").append({hexDigits[byte >> 4], hexDigits[byte & 0xf]});
    }
    return result;
}

// Each line is one call, so that the stream's own lock keeps lines of different threads apart.
void writeLine(std::string line) {
    line += '\n';
    std::fwrite(line.data(), 1, line.size(), stderr);
}

} // namespace

void logMessage(std::string_view message) {
    writeLine("kestrio-service: " + std::string(message));
}

void logRequest(std::string_view method, std::string_view target, int status,
                std::chrono::steady_clock::duration duration) {
    const std::chrono::duration<double, std::milli> milliseconds = duration;
    char tail[64];
    std::snprintf(tail, sizeof tail, " %d %.1f ms", status, milliseconds.count());
    // A request line that could not be parsed has neither a method nor a target.
    const auto name = [](std::string_view text) {
        return text.empty() ? std::string("-") : withoutControls(text);
    };
    writeLine(name(method) + ' ' + name(target) + tail);
}

} // namespace SurveyService
