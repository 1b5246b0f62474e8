#include "tests/support/Programs.h"

#include <gtest/gtest.h>
#include <httplib.h>

#include <QFileInfo>
#include <QJsonDocument>
#include <QTcpServer>
#include <QTemporaryDir>

#include <csignal>
#include <set>
#include <sqlite3.h>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

using namespace KestrioKit;
using namespace Qt::StringLiterals;

namespace {

constexpr std::size_t mebibyte = std::size_t{1024} * 1024;

// The paths of the first visitor.
constexpr auto visitors = "/1/environments/demo/visitors";
constexpr auto visitor = "/1/environments/demo/visitors/1";
constexpr auto survey5 = "/1/environments/demo/questions?surveyid=5&vid=0";
constexpr auto events = "/1/visitors/1/events";
constexpr auto batch = "/1/visitors/1/events/batch";
constexpr auto attribute = "/1/visitors/1/attributes/plan";
constexpr auto attributes = "/2/environments/demo/visitors/1/attributes";
constexpr auto history = "/1/visitors/1/surveys/7/history";
constexpr auto submit = "/2/environments/demo/visitors/1/responses/submit";
constexpr auto errors = "/1/errors";

const std::string error = R"({"envId":"e","userAgent":"u","meta":{},"err":{"message":"m"}})";

struct Exchange {
    std::string method;
    std::string path;
    std::string token;
    std::string body;
    int status = 200;
    std::string answer = {}; ///< how it begins, or the reason of a refusal
    std::string record = {}; ///< a part of what GET /records answers afterwards
    httplib::Headers headers = {};
};

std::string eventBody(const std::string &name) {
    return R"({ "metadata":{"z":"text","sw":1,"m":{"a":true}}, "event":")" + name +
           R"(","delayed":false,"timestamp":1.0})";
}

std::string member(const httplib::Response &response, const QString &key) {
    const auto json = QJsonDocument::fromJson(QByteArray::fromStdString(response.body));
    return json[key].toVariant().toString().toStdString();
}

/// A client that waits for as long as the machine takes.
struct Client : httplib::Client {
    Client(const std::string &host, int port) : httplib::Client(host, port) {
        set_connection_timeout(patience);
        set_read_timeout(patience);
    }
};

/// A service with an empty database, in which two visitors register.
class Service : public ::testing::Test {
protected:
    Service() {
        client.set_keep_alive(true);
        client.set_tcp_nodelay(true);
        client.set_url_encode(false);
        mine = member(send({"POST", visitors, {}, "{}"}), u"token"_s);
        others = member(send({"POST", "/1/environments/b/visitors", {}, "{}"}), u"token"_s);
    }

    httplib::Response send(const Exchange &exchange) {
        httplib::Request request;
        request.method = exchange.method;
        request.path = exchange.path;
        request.body = exchange.body;
        request.headers = exchange.headers;
        if (!exchange.token.empty())
            request.set_header("Authorization", "Bearer " + exchange.token);
        const httplib::Result result = client.send(request);
        EXPECT_TRUE(result) << httplib::to_string(result.error());
        return result ? *result : httplib::Response();
    }
    std::string records() { return send({"GET", "/records", {}, {}}).body; }

    void check(const Exchange &exchange) {
        SCOPED_TRACE(exchange.method + ' ' + exchange.path + ' ' + exchange.body.substr(0, 150));
        const httplib::Response response = send(exchange);
        EXPECT_EQ(response.status, exchange.status);
        const std::string refusal = exchange.status == 200 ? "" : R"({"error":")";
        EXPECT_EQ(response.body.find(refusal + exchange.answer), 0) << response.body;
        EXPECT_NE(records().find(exchange.record), std::string::npos) << records();
    }

    QTemporaryDir folder;
    QString database = folder.filePath(u"records"_s);
    ServiceProgram service{database, {}, 0};
    Client client{"localhost", service.port()};
    std::string mine;
    std::string others;
};

TEST_F(Service, keepsAndAnswersWhatEachPathTakes) {
    const std::string plain = eventBody("Unknown");
    const std::string two = R"({"events":[)" + plain + ',' + plain + R"(],"timestamp":1})";
    const std::string checkout = eventBody("Checkout Finished");
    const std::string seen =
        R"({"eid":"demo","sid":7,"vid":1,"isNew":true,"action":"seen","responseGroupUid":"G"})";
    const auto shown = send({"POST", events, mine, eventBody("Plan Cancelled")});
    const std::string response = R"({"responses":[],"meta":{},"responseGroupUid":")" +
                                 member(shown, u"responseGroupUid"_s) + "\"}";
    const httplib::Headers inFrench{{"Accept-Language", "de, FR_x;q=0.9"}};
    const httplib::Headers errorId{{"x-ks-error", "5"}};
    const std::vector<Exchange> exchanges{
        {"GET", "/1/environments/demo/config", {}, {}, 200, R"({"border":"#3B5BDB","theme":)"},
        // A user is found again, in the same environment only.
        {"POST", visitors, {}, R"({"userId":"a"})", 200, R"({"vid":3,"token":")"},
        {"POST", visitors, {}, R"({"userId":"a"})", 200, R"({"vid":3,)", R"(,"userId":"a"})"},
        {"POST", "/1/environments/b/visitors", {}, R"({"userId":"a"})", 200, R"({"vid":4,)"},
        // Whoever bears a token stays the same visitor, and one visitor is one user.
        {"POST", visitors, mine, "{}", 200, R"({"vid":1,"token":")" + mine + "\"}"},
        {"PUT", visitor, mine, R"({"userId":"b"})", 200, R"({"vid":1,)", R"(,"userId":"b"})"},
        {"PUT", visitor, mine, R"({"userId":"a"})", 200, R"({"vid":3,)"},
        {"POST", events, mine, plain, 200, "null", R"("kind":"single","body":)" + plain},
        {"POST", batch, mine, two, 200, "{}", R"("kind":"batch","body":)" + two},
        {"POST", events, mine, checkout, 200, "{", R"("vid":1,"surveyId":2,)", inFrench},
        {"GET", survey5, mine, {}, 200, R"({"unitId":40,"vid":1,)", R"("vid":1,"surveyId":5,)"},
        {"PUT", attribute, mine, R"({"value":"x"})", 200, "{}", R"("key":"plan","value":"x")"},
        {"PUT", attributes, mine, R"({"plan":"y"})", 200, "{}", R"("key":"plan","value":"y")"},
        {"PUT", "/1/visitors/2/attributes/plan", others, R"({"value":"z"})"},
        {"DELETE", attributes, mine, R"({"delete":["plan"]})", 200, "{}", R"("plan","value":"z")"},
        {"POST", history, mine, seen, 200, "{}", R"("vid":1,"surveyId":7,"body":)" + seen},
        // A response belongs to the survey that this visitor was shown.
        {"POST", submit, mine, response, 200, "{}", R"("vid":1,"surveyId":4,"body":)" + response},
        {"POST", "/2/environments/b/visitors/2/responses/submit", others, response, 200, "{}",
         R"("vid":2,"surveyId":null,"body":)" + response},
        {"POST", errors, {}, error, 200, "{}", R"("errorId":"5","body":)" + error, errorId},
    };
    for (const Exchange &exchange : exchanges)
        check(exchange);
    EXPECT_EQ(records().find(R"("key":"plan","value":"y")"), std::string::npos) << "removed";
}

TEST_F(Service, takesKeysAndEnvironmentsOfEveryKind) {
    const std::pair<std::string, std::string> names[] = {
        {"", ""},
        {"a%20b+c", "a b+c"},
        {"a%2Fb%3Fc/visitors/7//", "a/b?c/visitors/7//"},
        {"100%25%zz%u1", "100%%zz%u1"},
        {"%F0%9F%98%80%0A%22", "\U0001F600\\n\\\""},
    };
    for (const auto &[encoded, name] : names) {
        const auto added = send({"POST", "/1/environments/" + encoded + "/visitors", {}, "{}"});
        const std::string path = "/visitors/" + member(added, u"vid"_s) + "/attributes";
        const std::string token = member(added, u"token"_s);
        check({"PUT", "/2/environments/" + encoded + path, token, "{}", 200, "{}",
               R"("environment":")" + name + '"'});
        check({"PUT", "/1" + path + '/' + encoded, token, R"({"value":"v"})", 200, "{}",
               R"("key":")" + name + R"(","value":"v")"});
    }
    check({"PUT", "/1/visitors/1/attributes/%FF", mine, "{}", 400, "path: not UTF-8"});
}

TEST_F(Service, refusesWhatIsWrongByItsPlaceAndKeepsNothingOfIt) {
    const std::string before = records();
    const std::string brackets = std::string(100'000, '[') + std::string(100'000, ']');
    const std::vector<Exchange> exchanges{
        {"GET", "/a\x1b[31m", {}, {}, 404, "path: unknown"},
        {"GET", errors, {}, "{}", 405, "method: must be POST"},
        {"PATCH", attributes, {}, "{}", 405, "method: must be PUT, DELETE"},
        {"GET", "/1/environments/demo/questions?surveyid=9", mine, {}, 404, "surveyid: unknown"},
        {"POST", visitors, {}, std::string(mebibyte, ' '), 400, "body: not JSON at byte"},
        {"POST", visitors, {}, std::string(mebibyte + 1, ' '), 413, "body: more than 1 MiB"},
        {"POST", visitors, {}, brackets, 400, "body: nested deeper"},
        {"POST", visitors, {}, "{\"userId\":\"\xFF\"}", 400, "body: not JSON at byte 12"},
        {"PUT", visitor, mine, "{}", 400, "userId: missing"},
        {"POST", events, mine, R"({"metadata":{"sw":1.5}})", 400, "metadata.sw: must be"},
        {"POST", batch, mine, R"({"events":[{"event":1}]})", 400, "events[0].metadata: missing"},
        {"PUT", attribute, mine, R"({"value":1})", 400, "value: must be text"},
        {"PUT", attributes, mine, R"({"a":"1","b":2})", 400, "b: must be text"},
        {"DELETE", attributes, mine, R"({"delete":["a",2]})", 400, "delete[1]: must be text"},
        {"POST", history, mine, R"({"eid":"b"})", 400, "eid: must be the environment"},
        {"POST", history, mine, R"({"eid":"demo","sid":8})", 400, "sid: must be the survey"},
        {"POST", history, mine, R"({"eid":"demo","sid":7,"vid":2})", 400, "vid: must be the visit"},
        {"POST", submit, mine, R"({"responses":[{}]})", 400, "responses[0].questionId: missing"},
        {"POST", errors, {}, R"({"envId":""})", 400, "userAgent: missing"},
        {"POST", errors, {}, error, 400, "x-ks-error: not UTF-8", {}, {{"x-ks-error", "\xFF"}}},
    };
    for (const Exchange &exchange : exchanges) {
        check(exchange);
        if (exchange.token != mine)
            continue;
        for (const std::string &token : {std::string(), std::string("wrong"), others})
            check({exchange.method, exchange.path, token, exchange.body, 401, "Authorization: "});
    }
    EXPECT_EQ(records(), before);
    EXPECT_EQ(service.stop(), 0);
    EXPECT_TRUE(service.errors().contains("GET /a\\x1b[31m 404 "));
}

TEST_F(Service, showsWhatOtherProgramsWroteIntoItsFile) {
    sqlite3 *file = nullptr;
    sqlite3_open(qPrintable(database), &file);
    const auto insert = "INSERT INTO records (kind, name, body) "
                        "VALUES ('error', CAST(x'FF' AS TEXT), '{')";
    EXPECT_EQ(sqlite3_exec(file, insert, nullptr, nullptr, nullptr), SQLITE_OK);
    sqlite3_close(file);
    check({"GET", "/records", {}, {}, 200, "{", "\"errorId\":\"\uFFFD\",\"body\":\"{\""});
}

TEST_F(Service, makesAVisitorOneUserThoughSeveralComeTogether) {
    constexpr std::size_t users = 4;
    for (int round = 0; round < 150 && !HasFailure(); ++round) {
        const auto added = send({"POST", visitors, {}, "{}"});
        const std::string path = visitors + ('/' + member(added, u"vid"_s));
        const httplib::Headers token{{"Authorization", "Bearer " + member(added, u"token"_s)}};
        std::string found[users];
        {
            std::vector<std::jthread> threads;
            for (std::size_t user = 0; user < users; ++user)
                threads.emplace_back([&, user] {
                    const std::string body = R"({"userId":")" + std::to_string(round) + '-' +
                                             std::to_string(user) + "\"}";
                    Client own("localhost", service.port());
                    if (const auto result = own.Put(path, token, body, "application/json"))
                        found[user] = member(*result, u"vid"_s);
                });
        }
        EXPECT_EQ(std::set(std::begin(found), std::end(found)).size(), users);
    }
}

// SQLite appends some 30 KB for each of these events, and starts anew after about 4 MB.
TEST_F(Service, keepsTheLogOfItsDatabaseSmall) {
    const std::string large = eventBody(std::string(20'000, 'x'));
    for (int event = 0; event < 300; ++event)
        ASSERT_EQ(send({"POST", events, mine, large}).status, 200);
    EXPECT_LT(QFileInfo(database + u"-wal"_s).size(), 8 * mebibyte);
}

TEST(ServiceStart, listensWhereItIsToldTo) {
    const auto answersAt = [](const ServiceProgram &service, const char *address) {
        return bool(Client(address, service.port()).Get("/records"));
    };
    const ServiceProgram usual(u":memory:"_s, {}, 0);
    EXPECT_TRUE(answersAt(usual, "127.0.0.1"));
    EXPECT_EQ(answersAt(usual, "::1"), QTcpServer().listen(QHostAddress::LocalHostIPv6));
    EXPECT_FALSE(answersAt(usual, "127.0.0.2"));
    const ServiceProgram elsewhere(u":memory:"_s, {u"--host"_s, u"127.0.0.2"_s}, 0);
    EXPECT_TRUE(answersAt(elsewhere, "127.0.0.2"));
    EXPECT_FALSE(answersAt(elsewhere, "127.0.0.1"));
}

TEST(ServiceStart, thatFailsSaysWhyInOneLine) {
    const ServiceProgram running(u":memory:"_s, {}, 0);
    const QTemporaryDir folder;
    const std::tuple<QString, QString, int, QByteArray> starts[] = {
        {u"--bogus"_s, {}, 2, "unknown option '--bogus'"},
        {u"--port"_s, u"65536"_s, 2, "--port needs a number"},
        {u"--host"_s, u"localhost"_s, 2, "--host needs an IP address"},
        {u"--host"_s, u"192.0.2.1"_s, 1, "Cannot assign requested address"},
        {u"--port"_s, QString::number(running.port()), 1, "Address already in use"},
        {u"--surveys"_s, folder.path(), 1, "cannot read surveys file"},
        {u"--database"_s, folder.path(), 1, "cannot use database"},
    };
    for (const auto &[option, value, exitCode, complaint] : starts) {
        RunningProgram program(serviceProgramFile(),
                               {u"--database"_s, u":memory:"_s, option, value});
        EXPECT_EQ(program.waitForEnd(), exitCode) << complaint.toStdString();
        EXPECT_TRUE(program.errors().contains(complaint)) << program.errors().toStdString();
        EXPECT_EQ(program.errors().count('\n'), 1) << program.errors().toStdString();
    }
}

TEST(ServiceStart, findsTheRecordsOfBeforeHoweverTheServiceEnded) {
    const QTemporaryDir folder;
    const QString database = folder.filePath(u"records"_s);
    for (const int signal : {SIGTERM, SIGKILL, SIGINT}) {
        ServiceProgram service(database, {}, 0);
        // A connection that stays open does not hold up the end.
        Client client("localhost", service.port());
        client.set_keep_alive(true);
        const auto user = client.Post(visitors, R"({"userId":"u"})", "application/json");
        ASSERT_TRUE(user);
        EXPECT_EQ(user->body.substr(0, 9), R"({"vid":1,)");
        service.signal(signal);
        const bool killed = signal == SIGKILL;
        EXPECT_EQ(service.waitForEnd(), killed ? std::nullopt : std::optional(0));
        EXPECT_EQ(QFile::exists(database + u"-wal"_s), killed);
    }
}

} // namespace
