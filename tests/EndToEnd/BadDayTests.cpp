#include "tests/EndToEnd/ScriptedService.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using namespace KestrioKit;
using namespace Qt::StringLiterals;

namespace {

class BadDay : public ::testing::Test {
protected:
    BadDay() { answerAsService(server); }

    QString path(const QString &file) const {
        return data.filePath(u"kestrio-host/Kestrio/"_s + file);
    }
    void write(const QString &file, const QByteArray &content) const {
        QDir().mkpath(path({}));
        QFile out(path(file));
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(content);
    }
    QByteArray read(const QString &file) const {
        QFile in(path(file));
        return in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray();
    }
    /// A visit that must go well whatever lies in the library's folder.
    void visit() const {
        HostProgram host(data.path());
        host.send("configure env\nwait-for visitor 10000\ntrack Event\nwait-for idle 10000\n"
                  "visitor");
        EXPECT_EQ(host.nextReport()[u"visitor"_s], scriptedVisitor);
        EXPECT_EQ(host.finish(), 0) << host.program().output().toStdString();
    }

    QTemporaryDir data;
    RecordingServer server{servicePort};
};

TEST_F(BadDay, startsAfreshWithFilesThatCannotBeRead) {
    const QByteArray state = R"({"version":3,"vid":42,"token":"secret","events":[)";
    for (const QByteArray &content :
         {QByteArray(), QByteArray("{\"token\":\"sec"), state, QByteArray("not JSON"),
          QByteArray("[1,2]"), QByteArray(R"({"token":7,"visitorIdentifier":"x"})"),
          QByteArray(100000, '['), QByteArray(50 * 1024 * 1024, ' ')}) {
        write(u"VisitorData.json"_s, content);
        write(u"SubmissionQueue.json"_s, content);
        visit();
        EXPECT_TRUE(read(u"VisitorData.json"_s).contains("\"visitorIdentifier\":42"));
        EXPECT_TRUE(read(u"SubmissionQueue.json"_s).startsWith("{\"version\":3,\"vid\":42"));
    }
}

TEST_F(BadDay, takesNamesOfEveryKind) {
    const QByteArray odd = "\" /?#%41\\\"'\\\\ \\n\xF0\x9F\x98\x80;&=\"";
    HostProgram host(data.path());
    host.send("configure " + odd + "\nwait-for visitor 10000\ntrack " + odd + "\nattribute " + odd +
              ' ' + odd + "\nattribute \"\" \"\"\nuser " + odd + "\nattribute big " +
              QByteArray(1024 * 1024, 'x') + "\nwait-for idle 15000\nvisitor");
    EXPECT_EQ(host.nextReport()[u"visitor"_s], scriptedVisitor);
    EXPECT_EQ(host.finish(), 0);
    const QByteArray escaped = "%20/%3F%23%2541%22'%5C%20%0A%F0%9F%98%80;&=";
    EXPECT_EQ(requestsTo(server, "/1/environments/" + escaped + "/visitors").size(), 1);
    EXPECT_EQ(requestsTo(server, "/1/visitors/42/attributes/" + escaped).size(), 1);
    EXPECT_EQ(requestsTo(server, "/1/visitors/42/attributes/").size(), 1);
    const auto big = requestsTo(server, "/1/visitors/42/attributes/big");
    ASSERT_EQ(big.size(), 1);
    EXPECT_GT(big[0].body.size(), 1024 * 1024);
}

TEST_F(BadDay, survivesAHostThatCallsAtAnyTimeFromAnywhere) {
    for (const char *const scene : {"before", "after", "second", "worker", "no-loop", "exit"}) {
        RunningProgram host(
            QStringLiteral(KESTRIO_RUDE_HOST), {QString::fromLatin1(scene)},
            {{u"XDG_DATA_HOME"_s, data.path()}, {u"KESTRIO_ENVIRONMENT"_s, u"local"_s}});
        EXPECT_EQ(host.waitForEnd(), 0) << scene << '\n' << host.output().toStdString();
    }
    QFile state(data.filePath(u"rude-host/Kestrio/SubmissionQueue.json"_s));
    ASSERT_TRUE(state.open(QIODevice::ReadOnly));
    EXPECT_TRUE(state.readAll().contains("\"Unanswered\"")) << "what was tracked before exit()";
}

} // namespace
