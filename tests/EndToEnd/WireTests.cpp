#include "tests/EndToEnd/ScriptedService.h"

#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QSysInfo>
#include <QTemporaryDir>

using namespace KestrioKit;
using namespace Qt::StringLiterals;

namespace {

struct Expected {
    QByteArray method;
    QByteArray target;
    /// The whole body; "#" stands for a number, "@" for a time in milliseconds since 1970.
    QString body;
};

constexpr auto metadata = uR"({"sw":800,"sh":800,"l":"en"})";

QString event(const QString &name) {
    return u"{\"event\":\"%1\",\"metadata\":%2,\"delayed\":false,\"timestamp\":#}"_s.arg(
        name, QString::fromUtf16(metadata));
}

QString batch(const QString &name) {
    return u"{\"events\":["_s + event(name) + u"],\"timestamp\":#}"_s;
}

QString history(const QString &question, const QString &isNew, const QString &action) {
    return u"{\"eid\":\"env 1\",\"sid\":7,%1\"vid\":42,\"isNew\":%2,\"action\":\"%3\",\"responseGroupUid\":\"G\"}"_s
        .arg(question, isNew, action);
}

bool matches(const RecordedRequest &request, const Expected &expected) {
    QString pattern = QRegularExpression::escape(expected.body);
    pattern.replace(u"\\#"_s, u"\\d{10}"_s).replace(u"\\@"_s, u"1\\d{12}(\\.\\d+)?"_s);
    const QRegularExpression body(QRegularExpression::anchoredPattern(pattern));
    return request.method == expected.method && request.target == expected.target &&
           body.match(QString::fromUtf8(request.body)).hasMatch();
}

void expectSessionHeaders(const RecordedRequest &request) {
    const QByteArray os = QSysInfo::productVersion().toUtf8();
    const QByteArray version = "0.1.0";
    const QList<HTTPHeader> sessionHeaders{
        {"User-Agent",
         "Kestrio/iOS;Version=" + version + ";OSVersion=" + os + ";AppVersion=" + version},
        {"Content-Type", "application/json"},
        {"kestrio-platform", "ios"},
        {"Accept-Language", "en-GB, fr;q=0.9, de;q=0.8, it;q=0.7000000000000001, "
                            "es;q=0.6000000000000001"},
        {"x-ks-sdk-version", version},
        {"x-ks-app-version", version},
        {"x-ks-device-type", QSysInfo::currentCpuArchitecture().toUtf8()},
        {"x-ks-os-version", os}};
    QList<HTTPHeader> ours = request.headers;
    ours.removeIf([&](const HTTPHeader &header) {
        return std::ranges::count(sessionHeaders, header.name, &HTTPHeader::name) == 0;
    });
    EXPECT_EQ(ours, sessionHeaders);
    EXPECT_FALSE(request.header("Authorization"));
    EXPECT_FALSE(request.header("Cookie"));
}

} // namespace

TEST(Wire, carriesEveryOperationAsTheServiceExpectsIt) {
    const QTemporaryDir data;
    RecordingServer server(servicePort);
    answerAsService(server);
    HostProgram host(data.path(),
                     {{u"LANGUAGE"_s, u"en_GB:fr:de:it:es:pt:nl"_s}, {u"LC_ALL"_s, u"C.UTF-8"_s}});
    host.send("configure \"env 1\"\nwait-for visitor 60000\nwait-for idle 60000\ntrack Plain\n"
              "attribute \"a /?#%41\\\"'\\\\\\n\xF0\x9F\x98\x80;&=\" v\nattribute \"\" "
              "\"\"\nattributes k1 v1 k2 v2\nremove k1\nask \"Asked\"\t#now\r\n# none\n\n"
              "wait-for asked 60000\nanswer [9, \"\"]\nask Ag\"a\"in\nwait-for asked 60000\nclose\n"
              "user u1\nwait-for idle 60000\nlocale fr-CH\n"
              "perform trackWithEventName:handler: Localised\nwait-for idle 60000\nlocale \"\"\n"
              "track C:\\new#b\nwait-for idle 60000\nquit 7\ntrack Late");
    ASSERT_EQ(host.finish(), 7) << host.output().toStdString();

    const QString responses =
        u"{\"responses\":[{\"questionId\":1,\"seenAt\":@,\"answeredAt\":@,\"value\":9},"
        "{\"questionId\":2,\"seenAt\":@}],\"meta\":%1,\"responseGroupUid\":\"G\"}"_s.arg(
            QString::fromUtf16(metadata));
    const Expected table[] = {
        {"GET", "/1/environments/env%201/config", {}},
        {"POST", "/1/environments/env%201/visitors", u"{}"_s},
        {"POST", "/1/visitors/42/events/batch", batch(u"iOS Launch"_s)},
        {"POST", "/1/visitors/42/events/batch", batch(u"Plain"_s)},
        {"POST", "/1/visitors/42/events", event(u"Asked"_s)},
        {"POST", "/1/visitors/42/events", event(u"Again"_s)},
        {"PUT", "/1/visitors/42/attributes/a%20/%3F%23%2541%22'%5C%0A%F0%9F%98%80;&=",
         u"{\"value\":\"v\"}"_s},
        {"PUT", "/1/visitors/42/attributes/", u"{\"value\":\"\"}"_s},
        {"PUT", "/2/environments/env%201/visitors/42/attributes",
         u"{\"k1\":\"v1\",\"k2\":\"v2\"}"_s},
        {"DELETE", "/2/environments/env%201/visitors/42/attributes", u"{\"delete\":[\"k1\"]}"_s},
        {"POST", "/1/visitors/42/surveys/7/history", history({}, u"false"_s, u"seen"_s)},
        {"POST", "/1/visitors/42/surveys/7/history",
         history(u"\"qid\":1,"_s, u"true"_s, u"seen"_s)},
        {"POST", "/1/visitors/42/surveys/7/history",
         history(u"\"qid\":2,"_s, u"true"_s, u"seen"_s)},
        {"POST", "/1/visitors/42/surveys/7/history",
         history(u"\"qid\":1,"_s, u"false"_s, u"closed"_s)},
        {"POST", "/2/environments/env%201/visitors/42/responses/submit", responses},
        {"PUT", "/1/environments/env%201/visitors/42", u"{\"userId\":\"u1\"}"_s},
    };
    const QList<RecordedRequest> requests = server.requests();
    for (const Expected &expected : table) {
        SCOPED_TRACE((expected.method + ' ' + expected.target).toStdString());
        const auto isExpected = [&](const RecordedRequest &r) {
            return matches(r, expected);
        };
        EXPECT_EQ(std::ranges::count_if(requests, isExpected), 1) << qPrintable(expected.body);
    }
    // Two more events, after changes of locale.
    EXPECT_EQ(requests.size(), std::ssize(table) + 2);
    expectSessionHeaders(requests[0]);
    const QList<RecordedRequest> batches = requestsTo(server, "/1/visitors/42/events/batch");
    ASSERT_EQ(batches.size(), 4);
    EXPECT_EQ(batches[0].header("Authorization"), "Bearer secret");
    EXPECT_EQ(batches[2].header("Accept-Language"), "fr-CH");
    EXPECT_EQ(batches[3].header("Accept-Language"), "");
    EXPECT_TRUE(batches[3].body.contains(R"("C:\\new#b")"));
}

TEST(Burst, arrivesOnceAndAsAWholeAlsoAfterQuittingWithTheServiceAway) {
    const QTemporaryDir data;
    QStringList expected;
    for (int number = 1000; number < 2000; ++number)
        expected.append(u"e%1"_s.arg(number));
    const QByteArray burst = (u"track "_s + expected.join(u"\ntrack "_s)).toUtf8();
    std::optional<RecordingServer> server;
    const auto startHost = [&] {
        server.emplace(servicePort);
        answerAsService(*server);
        auto host = std::make_unique<HostProgram>(data.path());
        host->send("queue-limit 1000\n" + HostProgram::start + "visitor");
        EXPECT_EQ(host->nextReport()["visitor"_L1], 42);
        return host;
    };
    const auto expectBurst = [&](HostProgram &host) {
        host.send("wait-for idle 10000");
        EXPECT_EQ(host.finish(), 0);
        QStringList arrived;
        for (const RecordedRequest &request : requestsTo(*server, "/1/visitors/42/events/batch")) {
            const QJsonObject batch = QJsonDocument::fromJson(request.body).object();
            for (const QJsonValue event : batch["events"_L1].toArray())
                arrived.append(event["event"_L1].toString());
        }
        arrived.removeAll(u"iOS Launch"_s);
        arrived.sort();
        EXPECT_EQ(arrived, expected);
    };

    auto host = startHost();
    host->send(burst);
    expectBurst(*host);

    host = startHost();
    server.reset();
    host->send(burst);
    EXPECT_EQ(host->finish(), 0);
    host = startHost();
    expectBurst(*host);
}

TEST(SurveyOnScreen, DeliversWhatWasAnsweredWhenTheProgramIsLeft) {
    const QTemporaryDir data;
    const ServiceProgram service(data.filePath(u"records.sqlite"_s));
    const auto run = [&](const QByteArray &script) {
        HostProgram host(data.filePath(u"home"_s));
        host.send(script);
        EXPECT_EQ(host.finish(), 0) << host.output().constData();
        return service.records()["responses"_L1].toArray();
    };
    const QByteArray visit = "configure shop\nwait-for visitor 60000\nwindow 390 700\n"
                             "ask \"Search Used\"\nwait-for asked 60000\npresent\n"
                             "wait-for \"Option 5\" 60000\n";
    run(visit + "click \"Option 2\"\nwait-for \"Multi-select submit button\" 60000\nquit\n");
    const QJsonArray delivered =
        run("configure shop\nwait-for visitor 60000\nwait-for idle 60000\n");
    // What was being sent as the program ended may come twice.
    EXPECT_GT(delivered.size(), 0);
    for (const QJsonValue response : delivered) {
        const QJsonArray answers = response["body"_L1]["responses"_L1].toArray();
        EXPECT_EQ(answers.size(), 1);
        EXPECT_EQ(answers[0]["questionId"_L1], 31);
        EXPECT_EQ(answers[0]["value"_L1], 2);
    }
    EXPECT_EQ(run(visit + "key Escape\nwait-for gone 60000\nwait-for idle 60000\n"), delivered);
}
