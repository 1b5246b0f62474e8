#include "KestrioKit/Kestrio.h"
#include "tests/support/LibraryFixture.h"
#include "tests/support/Programs.h"
#include "tests/support/RecordingServer.h"

#include <QJSValue>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>

#include <thread>

using namespace KestrioKit;
using namespace Qt::StringLiterals;

/// QML over the one `Kestrio`, with a service that answers every event with a survey.
class QuickFacadeTest : public LibraryFixture {
protected:
    QuickFacadeTest() {
        qputenv("KESTRIO_ENVIRONMENT", "local");
        kestrio.withdrawConsent();
        kestrio.setDisableNetworkAccess(false);
        settle();
        server.setScript([](const RecordedRequest &) {
            return ServerAnswer{200, R"({"vid":1,"surveyId":7,"responseGroupUid":"G","questions":[
                {"name":11,"type":"open","props":{"message":"Why?"}}]})"};
        });
    }
    ~QuickFacadeTest() override {
        kestrio.withdrawConsent();
        kestrio.setAppearance(SurveyAppearance::light);
    }

    /// Returns an engine that passes its warnings to `warnings`, and knows `recorder`.
    std::unique_ptr<QQmlEngine> makeEngine() {
        auto made = std::make_unique<QQmlEngine>();
        made->setOutputWarningsToStandardError(false);
        made->rootContext()->setContextProperty(u"recorder"_s, &recorder);
        QObject::connect(made.get(), &QQmlEngine::warnings, &recorder,
                         [this](const QList<QQmlError> &list) {
                             for (const QQmlError &warning : list)
                                 warnings.append(warning.toString());
                         });
        return made;
    }
    /// Creates an object that tells `recorder` of signals, and returns what `script` returns in it.
    QVariant run(QQmlEngine &in, const QString &script) {
        QQmlComponent component(&in);
        component.setData(
            u"import QtQml; import KestrioKit; QtObject {"
            "property int appearance: Kestrio.appearance;"
            "function note(text) { recorder.objectName += text + ';' }"
            "property Connections connections: Connections { target: Kestrio;"
            "function onSurveyEnded(id, outcome) {"
            "note(id + (outcome === SurveySession.Finished ? ' finished' : ' closed'))"
            "} }"
            "property SurveySession session;"
            "function run() { %1 } }"_s.arg(script)
                .toUtf8(),
            {});
        EXPECT_TRUE(component.isReady()) << component.errorString().toStdString();
        QObject *const object = component.create();
        object->setParent(&in);
        QVariant result;
        QMetaObject::invokeMethod(object, "run", Q_RETURN_ARG(QVariant, result));
        return result;
    }
    QVariant run(const QString &script) { return run(*engine, script); }
    void configure() {
        kestrio.configure(u"e"_s);
        ASSERT_TRUE(waitFor([this] { return kestrio.visitorIdentifier().has_value(); }));
    }
    bool hasReceived(const QByteArray &text) const {
        const QList<RecordedRequest> requests = server.requests();
        return std::ranges::any_of(requests, [&text](const RecordedRequest &request) {
            return request.target.contains(text) || request.body.contains(text) ||
                   request.header("Accept-Language") == text;
        });
    }
    /// Waits until `recorder` has been told this since the last call.
    void expect(const QString &noted) {
        EXPECT_TRUE(waitFor([&] { return recorder.objectName() == noted; }))
            << recorder.objectName().toStdString();
        recorder.setObjectName({});
    }

    RecordingServer server{servicePort};
    Kestrio &kestrio = Kestrio::shared();
    QObject recorder;
    QStringList warnings;
    std::unique_ptr<QQmlEngine> engine = makeEngine();
};

TEST_F(QuickFacadeTest, OperationsReachTheService) {
    run(u"Kestrio.setServiceHost(''); Kestrio.setLocale('tlh'); Kestrio.setQueueLimit(50);"
        "Kestrio.configure('quick environment');"_s);
    EXPECT_TRUE(waitFor([this] { return kestrio.visitorIdentifier().has_value(); }));
    const std::pair<QString, QByteArray> rows[] = {
        {u""_s, "quick%20environment"},
        {u""_s, "tlh"},
        {u"Kestrio.track('Queued')"_s, "Queued"},
        {u"Kestrio.track('Asked', state => {})"_s, "Asked"},
        {u"Kestrio.track('Unasked', null)"_s, "Unasked"},
        {u"Kestrio.setEmailAddress('a@example.com')"_s, "a@example.com"},
        {u"Kestrio.setVisitorAttribute('one', 'single')"_s, "single"},
        {u"Kestrio.setVisitorAttributes({seats: 3, trial: true})"_s,
         R"("seats":"3","trial":"true")"},
        {u"Kestrio.removeVisitorAttributes(['former'])"_s, "former"},
        {u"Kestrio.presentSurvey(91, null, () => {})"_s, "surveyid=91"},
        {u"Kestrio.presentSurvey(92, null)"_s, "surveyid=92"},
        {u"Kestrio.startSurvey(93, session => {})"_s, "surveyid=93"},
        {u"Kestrio.perform('trackWithEventName:handler:', ['Performed', () => {}])"_s, "Performed"},
        {u"Kestrio.perform('removeVisitorAttributes:', [['bygone']])"_s, "bygone"},
        {u"Kestrio.setUserIdentifier('user-7')"_s, "user-7"},
    };
    for (const auto &[script, text] : rows) {
        run(script);
        EXPECT_TRUE(waitFor([&, &text = text] { return hasReceived(text); })) << text.data();
    }
    run(u"Kestrio.withdrawConsent()"_s);
    EXPECT_FALSE(kestrio.visitorIdentifier());
    EXPECT_EQ(warnings, QStringList());
}

TEST_F(QuickFacadeTest, ValuesHaveNames) {
    for (const QString &expression :
         {u"SurveyState.NoSurvey === 0 && SurveyState.Disabled === 2"_s,
          u"SurveyAppearance.Light === 0 && SurveyAppearance.Service === 3"_s,
          u"Kestrio.StartUpFailed === 0 && Kestrio.DisabledReason.Service === 3"_s,
          u"SurveySession.Closed === 1 && SurveyQuestion.Other === 0 && SurveyQuestion.Nps === 5"_s,
          u"Kestrio.visitorIdentifier === undefined && !Kestrio.surveyHeld"_s,
          u"Kestrio.perform('shared') === Kestrio && Kestrio.perform('none') === undefined"_s,
          u"Kestrio.perform('logout') === null && Kestrio.startSurvey() === null"_s})
        EXPECT_EQ(run(u"return "_s + expression), true) << expression.toStdString();
    EXPECT_EQ(warnings, QStringList());
}

TEST_F(QuickFacadeTest, SettingsAreTheSameInEveryEngine) {
    const std::unique_ptr<QQmlEngine> other = makeEngine();
    const QString binding = u"appearanceChanged.connect(() => note(appearance))"_s;
    run(*other, binding);
    run(u"Kestrio.appearance = SurveyAppearance.Dark; Kestrio.savesPromptly = true;"
        "Kestrio.retriesStartUp = false; Kestrio.disableNetworkAccess = true"_s);
    expect(u"1;"_s);
    EXPECT_EQ(kestrio.appearance(), SurveyAppearance::dark);
    EXPECT_EQ(run(*other, u"return Kestrio.savesPromptly && !Kestrio.retriesStartUp &&"
                          "Kestrio.disableNetworkAccess"_s),
              true);
    kestrio.setSavesPromptly(false);
    kestrio.setRetriesStartUp(true);
}

TEST_F(QuickFacadeTest, WrongArgumentsAreRefused) {
    const std::pair<QString, QString> rows[] = {
        {u"Kestrio.track('x', 5)"_s, u"TypeError: The callback is not a function."_s},
        {u"Kestrio.startSurvey(5, null)"_s, u"TypeError: The callback is not a function."_s},
        {u"Kestrio.presentSurvey(5, null, {})"_s, u"TypeError: The callback is not a function."_s},
        {u"Kestrio.setVisitorAttributes(['x'])"_s,
         u"TypeError: The attributes are not an object with texts."_s},
        {u"Kestrio.setVisitorAttributes({x: {}})"_s,
         u"TypeError: The attributes are not an object with texts."_s},
        {u"Kestrio.appearance = 77"_s, u"No value of SurveyAppearance: 77"_s}};
    for (const auto &[script, warning] : rows) {
        run(script);
        EXPECT_TRUE(warnings.join(u' ').contains(warning)) << warnings.join(u' ').toStdString();
        warnings.clear();
    }
}

TEST_F(QuickFacadeTest, ACallbackThatThrowsCausesAWarning) {
    run(u"Kestrio.track('x', state => { throw new Error('oops ' + state) })"_s);
    EXPECT_TRUE(waitFor([this] { return !warnings.isEmpty(); }));
    EXPECT_TRUE(warnings.first().endsWith(u"Error: oops 2"_s)) << warnings.first().toStdString();
}

TEST_F(QuickFacadeTest, CallbacksSurviveTheCollectionOfGarbageButNotTheirEngine) {
    configure();
    run(u"Kestrio.track('x', state => note('state ' + state)); gc()"_s);
    expect(u"state 1;"_s);
    run(u"Kestrio.track('x', () => note('late')); Kestrio.startSurvey(7, () => note('late'));"
        "Kestrio.presentSurvey(7, null, () => note('late'))"_s);
    engine.reset();
    std::unique_ptr<SurveySession> session;
    kestrio.startSurvey(7, [&session](auto started) { session = std::move(started); });
    EXPECT_TRUE(waitFor([&session] { return session != nullptr; }));
    expect({});
    EXPECT_FALSE(hasReceived("closed"));
}

TEST_F(QuickFacadeTest, ASessionIsAnsweredFromScript) {
    configure();
    run(u"Kestrio.startSurvey(7, session => {"
        "const question = session.currentQuestion;"
        "note([question.text, question.type === SurveyQuestion.Open, session.questions.length,"
        "      session.texts.position(1, 2), session.palette.card]);"
        "note([session.answer(5), session.answer('Because'), session.complete]);"
        "session.finish() })"_s);
    expect(u"Why?,true,1,1 of 2,#ffffff;false,true,true;7 finished;"_s);
    EXPECT_TRUE(waitFor([this] { return hasReceived("Because"); }));
}

TEST_F(QuickFacadeTest, ASessionEndsWhenNothingRefersToIt) {
    configure();
    const QString options = u"session.questions[2].options.map(option => option.label)"_s;
    run(u"session = Kestrio.startDebugSurvey(); note("_s + options +
        u"); gc(); note(session.answer(4)); session = null"_s);
    engine->collectGarbage();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    expect(u"Red,Green,Blue;true;123 closed;"_s);
    run(u"session = Kestrio.startDebugSurvey()"_s);
    const std::unique_ptr<QQmlEngine> other = makeEngine();
    run(*other, u""_s);
    engine.reset();
    expect(u"123 closed;"_s);
}

TEST_F(QuickFacadeTest, AnEngineOnAnotherThreadIsRefused) {
    static QString message;
    const QtMessageHandler previous = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext &, const QString &text) { message += text; });
    std::thread([] {
        QQmlEngine ofThread;
        QQmlComponent component(&ofThread);
        component.setData("import QtQml; import KestrioKit; QtObject { objectName: Kestrio }", {});
        delete component.create();
    }).join();
    qInstallMessageHandler(previous);
    EXPECT_TRUE(message.contains(u"Kestrio is for engines on the main thread."_s))
        << message.toStdString();
}
