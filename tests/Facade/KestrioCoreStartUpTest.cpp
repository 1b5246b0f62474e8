#include "tests/Facade/KestrioCoreTest.h"

#include <thread>

namespace KestrioKit {

using KestrioCoreStartUpTest = KestrioCoreTest;

TEST_F(KestrioCoreStartUpTest, FetchesTheConfigurationThenAVisitorAndThenReportsTheLaunch) {
    answer(configLine, {200, R"({"border":"#ff8800"})"});
    ::testing::internal::CaptureStdout();
    configure();
    configure(); // which is ignored
    EXPECT_EQ(::testing::internal::GetCapturedStdout(),
              "Kestrio - [Info]: Received visitor id: 1 - Auth Token? YES\n");
    EXPECT_EQ(lines(),
              QList<QByteArray>({configLine, visitorLine, "POST /1/visitors/1/events/batch"}));
    EXPECT_EQ(bodies(visitorLine)[0], QJsonObject());
    EXPECT_EQ(batchedEvents(), QStringList{u"iOS Launch"_s});
    EXPECT_EQ(server.requests().last().header("Authorization"), "Bearer t1");
    EXPECT_EQ(identity(), R"({"token":"t1","visitorIdentifier":1})");
    EXPECT_EQ(core->config().value().borderColorHex, u"#ff8800"_s);
}

TEST_F(KestrioCoreStartUpTest, RunsHeldCallsInTheirOrderOnceThereIsAVisitor) {
    network->hold(true);
    configure();
    for (const QString &name : {u"a"_s, u"b"_s, u"c"_s})
        core->track(name, {});
    core->setEmailAddress(u"a@b"_s);
    core->track(u"d"_s, handler());
    release(); // the configuration
    EXPECT_EQ(lines(), QList<QByteArray>({configLine, visitorLine}));
    network->hold(false);
    release(); // the visitor
    QStringList events = batchedEvents();
    events.removeOne(u"iOS Launch"_s);
    EXPECT_EQ(events, QStringList({u"a"_s, u"b"_s, u"c"_s}));
    EXPECT_EQ(bodies("PUT /1/visitors/1/attributes/!email")[0]["value"_L1], u"a@b"_s);
    EXPECT_EQ(states, QList{SurveyState::noSurvey});
}

TEST_F(KestrioCoreStartUpTest, LosesNoCallThatAnyThreadMakesWhileTheVisitorArrives) {
    constexpr int callers = 4;
    constexpr int callsEach = 50;
    std::vector<std::thread> threads;
    for (int caller = 0; caller < callers; ++caller) {
        threads.emplace_back([this] {
            core->configure(u"env"_s);
            for (int call = 0; call < callsEach; ++call)
                core->track(u"Event"_s, handler());
        });
    }
    EXPECT_TRUE(waitFor([this] { return states.size() == callers * callsEach; }));
    for (std::thread &caller : threads)
        caller.join();
    EXPECT_FALSE(states.contains(SurveyState::disabled));
    EXPECT_EQ(requests(configLine).size(), 1);
}

TEST_F(KestrioCoreStartUpTest, DropsWhatIsCalledBeforeItIsConfigured) {
    ::testing::internal::CaptureStdout();
    EXPECT_EQ(track(), SurveyState::disabled);
    core->logout();
    core->track(u" \t\n"_s, handler());
    core->setVisitorAttributes({});
    core->removeVisitorAttributes({});
    finish();
    const QString line = u"Kestrio - [Info]: Not configured. Please first call "
                         "Kestrio.shared.configure(withEnvironment:).\n"_s;
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), line.repeated(2).toStdString());
    EXPECT_EQ(states.size(), 1);
    EXPECT_EQ(lines(), QList<QByteArray>());
}

TEST_F(KestrioCoreStartUpTest, StaysOffWithoutAConfigurationAndStartsOverWithoutAVisitor) {
    const ServerAnswer broken = ServerAnswer::cut(200, 0);
    const ServerAnswer good{200, R"({"vid":1})"};
    const struct {
        ServerAnswer configuration;
        ServerAnswer visitor;
        std::optional<SurveyState> later;
        bool startsOver;
    } cases[] = {
        {broken, good, SurveyState::disabled, false},
        {{200, "[]"}, good, SurveyState::disabled, false},
        {{200, R"({"disabled":"why not"})"}, good, SurveyState::disabled, false},
        {{404}, good, std::nullopt, false},
        {{200}, broken, SurveyState::disabled, true},
        {{200}, {200, R"({"token":"t"})"}, SurveyState::disabled, true},
        {{200}, {503}, SurveyState::disabled, true},
    };
    for (const auto &[configuration, visitor, later, startsOver] : cases) {
        SCOPED_TRACE((configuration.head() + visitor.head()).toStdString());
        startAfresh();
        answer(configLine, configuration);
        answer(visitorLine, visitor);
        network->hold(true);
        configure();
        bool heldCallRan = false;
        core->track(u"Held"_s, [&heldCallRan](SurveyState) { heldCallRan = true; });
        network->hold(false);
        release();
        EXPECT_EQ(track(), later);
        EXPECT_FALSE(heldCallRan);
        answer(configLine, {});
        answer(visitorLine, good);
        configure();
        EXPECT_EQ(heldCallRan, startsOver);
        EXPECT_EQ(track(), startsOver ? SurveyState::noSurvey : later);
    }
}

TEST_F(KestrioCoreStartUpTest, TakesTheIdentityFromTheEnvironmentOrElseFromTheFile) {
    const QByteArray stored = R"({"token":"file","visitorIdentifier":7,"userIdentifier":"u"})";
    const QByteArray fromFile = "(7) and auth token (4 bytes) from file.";
    const struct {
        QMap<const char *, const char *> variables;
        QByteArray file;
        QByteArray loaded;
        std::optional<QByteArray> authorization;
        QString user = {};
    } cases[] = {
        {{}, stored, fromFile, "Bearer file", u"u"_s},
        {{{"KESTRIO_VISITOR_IDENTIFIER", "9"}}, stored, fromFile, "Bearer file", u"u"_s},
        {{}, R"({"visitorIdentifier":7})", "(7) and auth token (0 bytes) from file.", {}},
        {{}, R"({"token":"file"})", {}, {}},
        {{}, R"({"token":"file","visitorIdent)", {}, {}},
        {{{"KESTRIO_AUTH_TOKEN", "env"}, {"KESTRIO_VISITOR_IDENTIFIER", "-9"}},
         stored,
         "(-9) and auth token (3 bytes) from environment.",
         "Bearer env"},
        {{{"KESTRIO_AUTH_TOKEN", "env"}, {"KESTRIO_VISITOR_IDENTIFIER", "9a"}}, stored, {}, {}},
        {{{"KESTRIO_HARD_RESET", ""}}, stored, {}, {}},
    };
    for (const auto &[variables, file, loaded, authorization, user] : cases) {
        SCOPED_TRACE(file.toStdString() + loaded.toStdString());
        startAfresh();
        setIdentity(file);
        for (auto entry = variables.begin(); entry != variables.end(); ++entry)
            qputenv(entry.key(), entry.value());
        ::testing::internal::CaptureStdout();
        configure();
        const QByteArray printed(::testing::internal::GetCapturedStdout().c_str());
        for (auto entry = variables.begin(); entry != variables.end(); ++entry)
            qunsetenv(entry.key());
        const QByteArray line = "Kestrio - [Debug]: Loaded vid " + loaded + '\n';
        EXPECT_EQ(printed.startsWith(line), !loaded.isEmpty()) << printed.toStdString();
        EXPECT_EQ(requests(configLine).last().header("Authorization"), authorization);
        EXPECT_EQ(bodies(visitorLine).last()["userId"_L1].toString(), user);
        EXPECT_TRUE(identity().startsWith(R"({"token":"t1","visitorIdentifier":1)"));
    }
}

} // namespace KestrioKit
