#include "tests/EndToEnd/ScriptedService.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

namespace KestrioKit {

using namespace Qt::StringLiterals;

/// Hosts that treat the library as none should, and the service that they use.
class RudeHostTest : public ::testing::Test {
protected:
    RudeHostTest() { answerAsService(server); }

    Environment environment() const {
        return {{u"XDG_DATA_HOME"_s, data.path()}, {u"KESTRIO_ENVIRONMENT"_s, u"local"_s}};
    }
    bool stores(const QByteArray &text) const {
        QFile state(data.filePath(u"rude-host/Kestrio/SubmissionQueue.json"_s));
        return state.open(QIODevice::ReadOnly) && state.readAll().contains(text);
    }

    const QString program = QStringLiteral(KESTRIO_RUDE_HOST);
    const QTemporaryDir data;
    RecordingServer server{servicePort};
};

TEST_F(RudeHostTest, MayCallAtAnyTimeAndLosesNothing) {
    QStringList scenes{u"around"_s, u"no-loop"_s, u"exit"_s, u"worker-exit"_s};
    // Another thread may hold a lock of a sanitizer's own during fork(2). It stays locked in the
    // child, which then hangs: the sanitizers do not support this.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    scenes.append(u"fork"_s);
#endif
    for (const QString &scene : std::as_const(scenes)) {
        SCOPED_TRACE(qPrintable(scene));
        RunningProgram host(program, {scene}, environment());
        EXPECT_EQ(host.waitForEnd(), 0) << host.output().toStdString();
        EXPECT_EQ(stores("\"Unanswered\""), scene.endsWith(u"exit"_s)) << "tracked before exit()";
        QFile::remove(data.filePath(u"rude-host/Kestrio/SubmissionQueue.json"_s));
    }
}

TEST_F(RudeHostTest, MayEndTheApplicationInFlightAndMakeAnotherElsewhere) {
    server.setScript([](auto &) { return ServerAnswer::badly(ServerAnswer::Manner::hang); });
    // Qt keeps its record of a thread that is the second one to have an application.
    Environment withoutLeakCheck = environment();
    withoutLeakCheck.insert(u"ASAN_OPTIONS"_s, u"detect_leaks=0"_s);
    RunningProgram host(program, {u"two-applications"_s}, withoutLeakCheck);
    ASSERT_TRUE(waitFor([this] { return !server.requests().isEmpty(); }));
    answerAsService(server);
    host.write("next\n");
    EXPECT_EQ(host.waitForEnd(), 0) << host.output().toStdString();
    EXPECT_EQ(server.requests()[0].target, server.requests()[1].target);
}

TEST_F(RudeHostTest, MayLoadTheLibraryOnAThreadThatEnds) {
    RunningProgram host(QStringLiteral(KESTRIO_RUDE_LOADER), {QStringLiteral(KESTRIO_RUDE_PLUGIN)},
                        environment());
    EXPECT_EQ(host.waitForEnd(), 0) << host.output().toStdString();
}

} // namespace KestrioKit
