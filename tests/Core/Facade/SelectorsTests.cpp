#include "KestrioKit/Kestrio.h"
#include "tests/support/LibraryFixture.h"
#include "tests/support/Programs.h"
#include "tests/support/RecordingServer.h"

#include <QWidget>

using namespace KestrioKit;
using namespace Qt::StringLiterals;

using SelectorsTest = LibraryFixture;

TEST_F(SelectorsTest, CallTheOneKestrioIfTheirArgumentsFit) {
    RecordingServer server(servicePort);
    server.setScript([](auto &) { return ServerAnswer{200, R"({"vid":1,"questions":[]})"}; });
    qputenv("KESTRIO_ENVIRONMENT", "local");
    Kestrio &kestrio = Kestrio::shared();
    const auto handler = QVariant::fromValue<Kestrio::TrackHandler>([](SurveyState) {});
    const auto nobody = QVariant::fromValue<QWidget *>(nullptr);
    const QVariant nested = QVariantList{QVariantList{u"a"_s}};
    const struct {
        const char *selector;
        QVariantList arguments;
        std::optional<QVariant> result = std::nullopt;
        QByteArray lastLine = {};
    } cases[] = {
        {"shared", {}, QVariant::fromValue<QObject *>(&kestrio)},
        {"configureWithEnvironment:", {u"e"_s}, QVariant(), "POST /1/visitors/1/events/batch"},
        {"visitorIdentifier", {}, 1},
        {"setVisitorAttributeWithKey:value:",
         {u"k"_s, u"v"_s},
         QVariant(),
         "PUT /1/visitors/1/attributes/k"},
        {"setEmailAddress:", {u"a@b"_s}, QVariant(), "PUT /1/visitors/1/attributes/!email"},
        {"trackWithEventName:handler:", {u"n"_s, handler}, QVariant(), "POST /1/visitors/1/events"},
        {"setUserIdentifier:", {u"u"_s}, QVariant(), "PUT /1/environments/e/visitors/1"},
        {"logout", {}, QVariant(), "POST /1/visitors/1/events/batch"},
        {"setDisableNetworkAccess:", {true}, QVariant()},
        {"disableNetworkAccess", {}, true},
        {"logout", {u"now"_s}},
        {"setLocale:", {QVariant::fromValue(nullptr)}},
        {"setVisitorAttributes:", {QVariantMap{{u"k"_s, nested}}}},
        {"removeVisitorAttributes:", {nested}},
        {"trackWithEventName:handler:", {u"n"_s, u"handler"_s}},
        {"presentSurveyWithId:from:fetchCompletion:", {u"abc"_s, nobody, {}}},
        {"presentSurveyWithId:from:fetchCompletion:", {1.5, nobody, {}}},
        {"presentSurveyWithId:from:fetchCompletion:", {u"7"_s, nobody, {}}, QVariant()},
    };
    for (const auto &[selector, arguments, result, lastLine] : cases) {
        SCOPED_TRACE(selector);
        EXPECT_EQ(kestrio.perform(QString::fromLatin1(selector), arguments), result);
        EXPECT_TRUE(waitFor([&server, &lastLine] {
            const auto all = server.requests();
            return lastLine.isEmpty() ||
                   (!all.isEmpty() && lastLine == all.last().method + ' ' + all.last().target);
        }));
    }
}
