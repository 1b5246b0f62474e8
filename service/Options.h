#pragma once

#include <optional>
#include <stdexcept>
#include <string>

namespace SurveyService {

/// What the command line asks for.
struct Options {
    std::optional<std::string> host;        ///< absent: 127.0.0.1 and ::1
    int port = 8080;                        ///< 0 picks a free port
    std::optional<std::string> surveysFile; ///< absent: the built-in sample
    std::string databaseFile = "kestrio-service.sqlite";
    bool help = false;
};

/// A command line that cannot be understood; `what()` says why in one line.
class UsageError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Reads the arguments as given to `main`. Throws UsageError.
Options parseOptions(int argc, const char *const *argv);

extern const char *const helpText;

} // namespace SurveyService
