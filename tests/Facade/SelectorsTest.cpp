#include "KestrioKit/Kestrio.h"
#include "tests/support/RecordingServer.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QStandardPaths>

using namespace KestrioKit;
using namespace Qt::StringLiterals;

// The one test of the one `Kestrio`, which finds the service as it would anywhere.
TEST(SelectorsTest, CallTheOneKestrioIfTheirArgumentsFit) {
    constexpr quint16 localPort = 8080;
    RecordingServer server(localPort);
    ASSERT_TRUE(server.isListening()) << "port 8080 is taken";
    server.setScript([](const RecordedRequest &request) {
        return ServerAnswer{200, request.target.contains("/visitors") ? R"({"vid":1})" : "{}"};
    });
    qputenv("KESTRIO_ENVIRONMENT", "local");
    QDir(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation)).removeRecursively();
    std::thread([] { Kestrio::shared(); }).join();
    Kestrio &kestrio = Kestrio::shared();
    EXPECT_EQ(kestrio.thread(), QCoreApplication::instance()->thread());

    int handled = 0;
    const auto handler =
        QVariant::fromValue<Kestrio::TrackHandler>([&handled](SurveyState) { ++handled; });
    const QVariant none = QVariant::fromValue(nullptr);
    const QVariant nested = QVariantList{QVariantList{u"a"_s}};
    const std::optional<QVariant> done = QVariant();
    const struct {
        const char *selector;
        QVariantList arguments;
        std::optional<QVariant> result = std::nullopt;
        QByteArray line = {};
    } cases[] = {
        {"shared", {}, QVariant::fromValue<QObject *>(&kestrio)},
        {"visitorIdentifier", {}, done},
        {"disableNetworkAccess", {}, false},
        {"configureWithEnvironment:", {u"e"_s}, done, "POST /1/visitors/1/events/batch"},
        {"visitorIdentifier", {}, 1},
        {"setLocale:", {u"sv"_s}, done},
        {"setEmailAddress:", {u"a@b"_s}, done, "PUT /1/visitors/1/attributes/!email"},
        {"setVisitorAttributeWithKey:value:", {u"k"_s, 5}, done, "PUT /1/visitors/1/attributes/k"},
        {"setVisitorAttributes:",
         {QVariantMap{{u"k"_s, u"v"_s}}},
         done,
         "PUT /2/environments/e/visitors/1/attributes"},
        {"removeVisitorAttributes:",
         {QStringList{u"k"_s}},
         done,
         "DELETE /2/environments/e/visitors/1/attributes"},
        {"trackWithEventName:handler:", {u"n"_s, handler}, done, "POST /1/visitors/1/events"},
        {"trackWithEventName:handler:", {u"n"_s, none}, done, "POST /1/visitors/1/events/batch"},
        {"setUserIdentifier:", {u"u"_s}, done, "PUT /1/environments/e/visitors/1"},
        {"setDisableNetworkAccess:", {true}, done},
        {"disableNetworkAccess", {}, true},
        {"setDisableNetworkAccess:", {false}, done},
        {"logout", {}, done, "POST /1/visitors/1/events/batch"},
        {"Logout", {}},
        {"track:", {u"n"_s}},
        {"logout", {u"now"_s}},
        {"setLocale:", {}},
        {"setLocale:", {none}},
        {"setLocale:", {nested}},
        {"setVisitorAttributes:", {u"k"_s}},
        {"setVisitorAttributes:", {QVariantMap{{u"k"_s, nested}}}},
        {"removeVisitorAttributes:", {nested}},
        {"trackWithEventName:handler:", {u"n"_s, u"handler"_s}},
    };
    for (const auto &[selector, arguments, result, line] : cases) {
        SCOPED_TRACE(selector);
        const qsizetype before = server.requests().size();
        EXPECT_EQ(kestrio.perform(QString::fromLatin1(selector), arguments), result);
        const auto hasCome = [&server, &line, before] {
            const QList<RecordedRequest> requests = server.requests().mid(before);
            return std::ranges::any_of(requests, [&line](const RecordedRequest &request) {
                return request.method + ' ' + request.target == line;
            });
        };
        EXPECT_TRUE(line.isEmpty() || waitFor(hasCome));
    }
    EXPECT_TRUE(waitFor([&handled] { return handled == 1; }));
}
