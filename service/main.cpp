#include "service/HttpServer.h"
#include "service/Log.h"
#include "service/Options.h"
#include "service/Routes.h"
#include "service/SampleSurveys.h"

#include <csignal>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <pthread.h>
#include <thread>

namespace SurveyService {
namespace {

constexpr int cannotStart = 1;
constexpr int wrongUsage = 2;

std::string readSurveys(const std::string &file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream || std::filesystem::is_directory(file))
        throw std::runtime_error("cannot read surveys file '" + file + "'");
    return {std::istreambuf_iterator<char>(stream), {}};
}

SurveyCatalogue loadSurveys(const std::optional<std::string> &file) {
    if (!file)
        return SurveyCatalogue(sampleSurveys);
    try {
        return SurveyCatalogue(readSurveys(*file));
    } catch (const JsonError &error) {
        throw std::runtime_error("surveys file '" + *file + "': " + error.what());
    }
}

std::unique_ptr<RecordStore> openRecords(const std::string &file) {
    try {
        return std::make_unique<RecordStore>(file);
    } catch (const SqlError &error) {
        throw std::runtime_error("cannot use database '" + file + "': " + error.what());
    }
}

sigset_t endSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    return signals;
}

/// Serves until SIGINT or SIGTERM comes, which must be blocked in every thread.
void serveUntilSignal(HttpServer &server) {
    std::thread waiter([&server] {
        const sigset_t signals = endSignals();
        int signal = 0;
        sigwait(&signals, &signal);
        server.stop();
    });
    server.run();
    waiter.join();
}

void serve(const Options &options) {
    const SurveyCatalogue surveys = loadSurveys(options.surveysFile);
    const auto records = openRecords(options.databaseFile);
    Router router;
    addVisitorRoutes(router, surveys, *records);
    addEventRoutes(router, surveys, *records);
    addAttributeRoutes(router, *records);
    addReportRoutes(router, *records);

    HttpServer server([&router](const httplib::Request &request, const std::string &body) {
        return router.answer(request, body);
    });
    const int port = server.bind(options.port);
    logMessage("listening on http://localhost:" + std::to_string(port));
    serveUntilSignal(server);
}

int run(int argc, char **argv) {
    try {
        const Options options = parseOptions(argc, argv);
        if (options.help) {
            std::fputs(helpText, stdout);
            return 0;
        }
        const sigset_t signals = endSignals();
        pthread_sigmask(SIG_BLOCK, &signals, nullptr);
        serve(options);
        return 0;
    } catch (const UsageError &error) {
        logMessage(error.what());
        return wrongUsage;
    } catch (const std::exception &error) {
        logMessage(error.what());
        return cannotStart;
    }
}

} // namespace
} // namespace SurveyService

int main(int argc, char **argv) {
    return SurveyService::run(argc, argv);
}
