#include "KestrioKit/Kestrio.h"
#include "tests/support/LibraryFixture.h"
#include "tests/support/Programs.h"
#include "tests/support/RecordingServer.h"

#include <QThread>

#include <thread>

using namespace KestrioKit;
using namespace Qt::StringLiterals;

/// The one `Kestrio`, with a service that answers every event with a survey.
class SignalsTest : public LibraryFixture {
protected:
    SignalsTest() {
        qputenv("KESTRIO_ENVIRONMENT", "local");
        kestrio.withdrawConsent();
        kestrio.setDisableNetworkAccess(false);
        settle();
        server.setScript([this](const RecordedRequest &request) {
            if (request.target.endsWith("/config"))
                return ServerAnswer{configStatus};
            return ServerAnswer{200, R"({"vid":1,"surveyId":7,"questions":[
                {"name":11,"type":"open","props":{"message":"m"}}]})"};
        });
        connect(&Kestrio::visitorIdentifierChanged,
                [this] { note(u"visitor "_s + text("visitorIdentifier")); });
        connect(&Kestrio::surveyHeldChanged, [this] { note(u"held "_s + text("surveyHeld")); });
        connect(&Kestrio::surveyShown, [this](qint64 id) { note(u"shown %1"_s.arg(id)); });
        connect(&Kestrio::questionAnswered,
                [this](qint64 id, int index) { note(u"answered %1 %2"_s.arg(id).arg(index)); });
        connect(&Kestrio::surveyEnded, [this](qint64 id, SurveySession::Outcome outcome) {
            note(u"ended %1 %2"_s.arg(id).arg(int(outcome)));
        });
        connect(&Kestrio::disabled, [this](Kestrio::DisabledReason reason) {
            note(u"disabled %1"_s.arg(int(reason)));
        });
        connect(&Kestrio::enabled, [this] { note(u"enabled"_s); });
        connect(&Kestrio::savesPromptlyChanged,
                [this] { note(u"saves "_s + text("savesPromptly")); });
    }
    ~SignalsTest() override { kestrio.withdrawConsent(); }
    template <typename Signal, typename Slot>
    void connect(Signal signal, Slot slot) {
        QObject::connect(&kestrio, signal, &context, slot, Qt::DirectConnection);
    }
    QString text(const char *property) const { return kestrio.property(property).toString(); }
    void note(const QString &signal) {
        EXPECT_EQ(QThread::currentThread(), context.thread());
        noted.append(signal);
    }
    /// Waits for these, which are all that were noted since the last call.
    void expect(const QStringList &expected) {
        EXPECT_TRUE(waitFor([&] { return noted.size() >= expected.size(); }));
        EXPECT_EQ(std::exchange(noted, {}), expected);
    }

    std::atomic<int> configStatus = 200;
    RecordingServer server{servicePort};
    Kestrio &kestrio = Kestrio::shared();
    QStringList noted;
    QObject context;
};

TEST_F(SignalsTest, TellHowASurveyGoesAlsoWhenItsSessionIsDestroyed) {
    kestrio.configure(u"e"_s);
    expect({u"visitor 1"_s});
    kestrio.track(u"Event"_s, &context, [this](SurveyState) { note(u"handler"_s); });
    expect({u"held true"_s, u"handler"_s});
    std::unique_ptr<SurveySession> session = kestrio.startSurvey();
    session->markSeen();
    session->answer(u"text"_s);
    session.reset();
    expect({u"shown 7"_s, u"answered 7 0"_s, u"ended 7 0"_s, u"held false"_s});
    session = kestrio.startDebugSurvey();
    kestrio.withdrawConsent();
    expect({u"ended 123 1"_s, u"visitor "_s});
}

TEST_F(SignalsTest, TellWhyTheLibraryIsDisabledAndWhenItIsNotAnyMore) {
    configStatus = 503;
    kestrio.configure(u"e"_s);
    expect({u"disabled 0"_s});
    kestrio.withdrawConsent();
    configStatus = 200;
    kestrio.configure(u"e"_s);
    expect({u"enabled"_s, u"visitor 1"_s});
    std::jthread([this] {
        kestrio.setSavesPromptly(true);
        kestrio.setSavesPromptly(true);
        kestrio.setSavesPromptly(false);
    }).join();
    expect({u"saves false"_s, u"saves false"_s});
}

TEST_F(SignalsTest, ComeWithoutTheHandlersOfAContextThatHasGone) {
    kestrio.configure(u"e"_s);
    expect({u"visitor 1"_s});
    auto gone = std::make_unique<QObject>();
    auto held = std::make_shared<int>();
    const std::weak_ptr<int> handlers = held;
    kestrio.track(u"Event"_s, gone.get(), [held](SurveyState) { ADD_FAILURE(); });
    kestrio.presentSurvey(7, nullptr, gone.get(), [held] { ADD_FAILURE(); });
    held.reset();
    gone.reset();
    EXPECT_TRUE(waitFor([&handlers] { return handlers.expired(); }));
    expect({u"held true"_s});
}
