#include "tests/EndToEnd/ScriptedService.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTemporaryDir>

using namespace KestrioKit;
using namespace Qt::StringLiterals;

namespace {

constexpr int calls = 50;
constexpr int kept = 25;

class Outage : public ::testing::Test {
protected:
    /// A visit during which the service goes away: `command` is given fifty times after that, with
    /// a number each, and the program is quit.
    void visitUntilTheServiceGoes(const QByteArray &command) {
        auto server = std::make_unique<RecordingServer>(servicePort);
        answerAsService(*server);
        HostProgram host(data.path());
        host.send("configure env\nwait-for visitor 10000\nwait-for idle 10000\nvisitor");
        ASSERT_EQ(host.nextReport()[u"visitor"_s], scriptedVisitor);
        server.reset();
        for (int number = 0; number < calls; ++number)
            host.send(QByteArray(command).replace('#', QByteArray::number(number)));
        ASSERT_EQ(host.finish(), 0);
    }

    /// The next visit, with the service back.
    void visitAgain(RecordingServer &server) {
        answerAsService(server);
        HostProgram host(data.path());
        host.send("configure env\nwait-for visitor 10000\nwait-for idle 10000");
        ASSERT_EQ(host.finish(), 0);
    }

    QJsonArray stored(QLatin1StringView kind) const {
        QFile file(data.filePath(u"kestrio-host/Kestrio/SubmissionQueue.json"_s));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return QJsonDocument::fromJson(file.readAll()).object()[kind].toArray();
    }

    QTemporaryDir data;
};

TEST_F(Outage, deliversStoredEventsInOneBatchOnce) {
    visitUntilTheServiceGoes("track Event#");
    const QJsonArray events = stored("events"_L1);
    ASSERT_EQ(events.size(), kept);

    RecordingServer server(servicePort);
    visitAgain(server);
    QList<QJsonArray> batches;
    for (const RecordedRequest &request : requestsTo(server, "/1/visitors/42/events/batch")) {
        const QJsonObject body = QJsonDocument::fromJson(request.body).object();
        batches.append(body[u"events"_s].toArray());
    }
    ASSERT_EQ(batches.size(), 2);
    EXPECT_EQ(batches[0], events);
    EXPECT_EQ(batches[1].size(), 1);
    EXPECT_EQ(batches[1][0][u"event"_s], u"iOS Launch"_s);
    EXPECT_TRUE(stored("events"_L1).isEmpty());
}

TEST_F(Outage, deliversStoredAttributesInOneRequestEachOnce) {
    visitUntilTheServiceGoes("attribute key# value");
    QStringList keys;
    for (const QJsonValue attribute : stored("attributes"_L1))
        keys.append(attribute[u"key"_s].toString());
    ASSERT_EQ(keys.size(), kept);

    RecordingServer server(servicePort);
    visitAgain(server);
    QStringList delivered;
    const QByteArray path = "/1/visitors/42/attributes/";
    for (const RecordedRequest &request : server.requests()) {
        if (request.target.startsWith(path))
            delivered.append(QString::fromUtf8(request.target.mid(path.size())));
    }
    // They are under way at the same time, so their order is the network's.
    keys.sort();
    delivered.sort();
    EXPECT_EQ(delivered, keys);
}

} // namespace
