#pragma once

#include <optional>
#include <stdexcept>
#include <string>

namespace SurveyService {

/// The options of the command line.
struct Options {
    std::optional<std::string> host;        ///< if absent: 127.0.0.1 and ::1
    int port = 8080;                        ///< 0 picks a free port
    std::optional<std::string> surveysFile; ///< if absent: the built-in sample
    std::string databaseFile = "kestrio-service.sqlite";
    bool help = false;
};

/// Thrown for an invalid command line. `what()` gives the reason in one line.
class UsageError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Parses the arguments of `main`. Throws UsageError.
Options parseOptions(int argc, const char *const *argv);

/// The text of `--help`.
extern const char *const helpText;

} // namespace SurveyService
