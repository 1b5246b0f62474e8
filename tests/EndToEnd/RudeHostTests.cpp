#include "tests/EndToEnd/ScriptedService.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

using namespace KestrioKit;
using namespace Qt::StringLiterals;

TEST(RudeHost, mayCallAtAnyTimeAndLosesNothing) {
    RecordingServer server(servicePort);
    answerAsService(server);
    const QTemporaryDir data;
    for (const char *const scene : {"around", "no-loop", "exit"}) {
        RunningProgram host(
            QStringLiteral(KESTRIO_RUDE_HOST), {QString::fromLatin1(scene)},
            {{u"XDG_DATA_HOME"_s, data.path()}, {u"KESTRIO_ENVIRONMENT"_s, u"local"_s}});
        EXPECT_EQ(host.waitForEnd(), 0) << scene << '\n' << host.output().toStdString();
    }
    QFile state(data.filePath(u"rude-host/Kestrio/SubmissionQueue.json"_s));
    ASSERT_TRUE(state.open(QIODevice::ReadOnly));
    EXPECT_TRUE(state.readAll().contains("\"Unanswered\"")) << "what was tracked before exit()";
}
