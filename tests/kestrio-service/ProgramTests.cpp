#include "tests/service/ServiceTest.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>

namespace {

class ProgramTests : public testing::Test {
protected:
    ProgramTests() {
        std::string pattern = testing::TempDir() + "kestrio-service-XXXXXX";
        m_folder = ::mkdtemp(pattern.data());
    }
    ~ProgramTests() override { std::filesystem::remove_all(m_folder); }

    std::string file(const std::string &name) const { return m_folder / name; }

    std::string write(const std::string &name, const std::string &text) const {
        std::ofstream(file(name)) << text;
        return file(name);
    }

private:
    std::filesystem::path m_folder;
};

int postVisitor(int port, const std::string &user) {
    httplib::Client client("localhost", port);
    const auto result = client.Post("/1/environments/demo/visitors",
                                    nlohmann::json{{"userId", user}}.dump(), "application/json");
    return result ? nlohmann::json::parse(result->body).at("vid").get<int>() : 0;
}

} // namespace

TEST_F(ProgramTests, WhatCannotStartSaysSoInOneLine) {
    ServiceProcess running({"--port", "0", "--database", ":memory:"});
    struct Case {
        std::vector<std::string> arguments;
        int exitCode;
        std::string complaint;
    };
    const std::string notJson = write("a.json", "{\"surveys\":[");
    const std::string notSurveys = write("b.json", R"({"surveys":[{"event":"e","surveyId":1,
        "questions":[{"name":1,"type":"nps","props":{"message":5}}]}]})");
    const std::string twice = write("c.json", R"({"surveys":[
        {"event":"e","surveyId":1,"questions":[]},{"event":"f","surveyId":1,"questions":[]}]})");
    const Case cases[] = {
        {{"--bogus"}, 2, "unknown option '--bogus'"},
        {{"--port"}, 2, "--port needs a value"},
        {{"--port", "65536"}, 2, "--port needs a number"},
        {{"--port", "80x"}, 2, "--port needs a number"},
        {{"--surveys", file("none")}, 1, "cannot read surveys file"},
        {{"--surveys", file("")}, 1, "cannot read surveys file"},
        {{"--surveys", notJson}, 1, "not JSON at byte 13"},
        {{"--surveys", notSurveys}, 1, "surveys[0].questions[0].props.message: must be text"},
        {{"--surveys", twice}, 1, "surveys[1].surveyId: used twice"},
        {{"--database", file("none/db")}, 1, "cannot use database"},
        {{"--database", notJson}, 1, "file is not a database"},
        {{"--database", ":memory:", "--port", std::to_string(running.port())},
         1,
         "cannot listen on port " + std::to_string(running.port()) + ": Address already in use"},
    };
    for (const Case &start : cases) {
        ServiceProcess process(start.arguments);
        const int signal = process.port() == 0 ? 0 : SIGTERM; // for one that did start
        EXPECT_EQ(process.end(signal), start.exitCode) << process.output();
        EXPECT_NE(process.output().find(start.complaint), std::string::npos) << process.output();
        EXPECT_EQ(std::count(process.output().begin(), process.output().end(), '\n'), 1);
    }
}

TEST_F(ProgramTests, SignalsEndItAtOnceThoughConnectionsAreIdle) {
    for (const int signal : {SIGINT, SIGTERM}) {
        ServiceProcess process({"--port", "0", "--database", file("signals")});
        httplib::Client idle("localhost", process.port());
        idle.set_keep_alive(true);
        EXPECT_EQ(idle.Get("/records")->status, 200);
        const auto before = std::chrono::steady_clock::now();
        EXPECT_EQ(process.end(signal), 0) << process.output();
        // Well below the minute for which idle connections are kept.
        EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(10));
        EXPECT_NE(process.output().find("\nGET /records 200 "), std::string::npos);
        EXPECT_FALSE(std::filesystem::exists(file("signals-wal"))) << "closed in order";
    }
}

TEST_F(ProgramTests, RecordsSurviveARestartAndACrash) {
    int order = 0;
    for (const int signal : {SIGTERM, SIGKILL, SIGTERM}) {
        ServiceProcess process({"--port", "0", "--database", file("kept")});
        EXPECT_EQ(postVisitor(process.port(), "user-7"), 1);
        EXPECT_EQ(postVisitor(process.port(), std::to_string(order)), order + 2);
        ++order;
        EXPECT_EQ(process.end(signal), signal == SIGTERM ? 0 : -1) << process.output();
    }
}

TEST_F(ProgramTests, SurveysFileSetsTheConfigurationAndTheSurveys) {
    const std::string surveys = write("surveys.json", R"({
        "configuration": {"disabled": "version", "border": "#ff8800"},
        "surveys": [{"event": "Started", "surveyId": 9, "questions": []}]})");
    ServiceProcess process({"--port", "0", "--database", ":memory:", "--surveys", surveys});
    httplib::Client client("localhost", process.port());
    EXPECT_EQ(client.Get("/1/environments/demo/config")->body,
              R"({"disabled":"version","border":"#ff8800"})");
    const auto visitor = nlohmann::json::parse(
        client.Post("/1/environments/demo/visitors", "{}", "application/json")->body);
    client.set_bearer_token_auth(std::string(visitor.at("token")));
    const auto survey =
        client.Post("/1/visitors/1/events", eventBody("Started"), "application/json");
    EXPECT_EQ(survey->body.substr(0, 44), R"({"vid":1,"questions":[],"surveyId":9,"respon)");
    EXPECT_EQ(process.end(SIGTERM), 0) << process.output();
}
