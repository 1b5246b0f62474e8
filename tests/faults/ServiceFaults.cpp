#include "KestrioKit/Core/Facade/KestrioCore.h"
#include "KestrioKit/Core/Platform/HTTP/NetworkTransport.h"
#include "KestrioKit/Core/Platform/Storage.h"
#include "tests/faults/FaultRow.h"
#include "tests/support/OnlineFixture.h"
#include "tests/support/Programs.h"

#include <QDir>
#include <QFile>
#include <QSet>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>
#include <QTemporaryDir>

namespace KestrioKit {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Manner = ServerAnswer::Manner;

namespace {

constexpr int megabyte = 1024 * 1024;
constexpr int manyMegabytes = 200;
constexpr auto goodVisitor = R"({"vid":1,"token":"t1"})";

/// The process's largest size in megabytes, since `forgetPeak()`.
int peak() {
    return int(processKilobytes(u"status"_s, "VmHWM:") / 1024);
}
bool forgetPeak() {
    QFile references(u"/proc/self/clear_refs"_s);
    return references.open(QIODevice::WriteOnly) && references.write("5") == 1;
}

qsizetype threadsOfManagers() {
    const QDir tasks(u"/proc/self/task"_s);
    return std::ranges::count_if(tasks.entryList({u"[0-9]*"_s}), [&](const QString &task) {
        QFile name(tasks.filePath(task + u"/comm"_s));
        return name.open(QIODevice::ReadOnly) && name.readAll().startsWith("QNetworkAccess");
    });
}

/// A server at "https://localhost" with a certificate of its own, on the test's thread.
struct EncryptedServer : QSslServer {
    /// All that came over connections that the client trusted.
    QByteArray received;

    EncryptedServer(const QDir &folder, const QString &certificate) {
        QFile key(folder.filePath(u"key"_s));
        EXPECT_TRUE(key.open(QIODevice::ReadOnly));
        QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
        configuration.setLocalCertificateChain(
            QSslCertificate::fromPath(folder.filePath(certificate)));
        configuration.setPrivateKey(QSslKey(&key, QSsl::Rsa));
        setSslConfiguration(configuration);
        connect(this, &QTcpServer::pendingConnectionAvailable, this, [this] {
            QTcpSocket *const socket = nextPendingConnection();
            connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
                received += socket->readAll();
                const ServerAnswer answer{200, "{}", {{"Connection", "close"}}};
                if (received.endsWith('}'))
                    socket->write(answer.head() + answer.body);
            });
        });
        listen(QHostAddress::LocalHost);
    }
    QUrl url() const { return QUrl(u"https://localhost:%1/"_s.arg(serverPort())); }
};

/// An authority's certificate, others that it signed, and one that signed itself; all have the one
/// key "key".
constexpr auto makeCertificates = R"(exec 2>log &&
    openssl req -x509 -newkey rsa:2048 -nodes -subj /CN=authority -keyout key -out authority &&
    openssl req -x509 -key key -subj /CN=localhost -out self-signed &&
    sign() { openssl req -new -key key -subj /CN=$2 |
        openssl x509 -req -CA authority -CAkey key -CAcreateserial -days $3 -out $1; } &&
    sign good localhost 2 && sign expired localhost -1 && sign misnamed elsewhere 2)"_L1;

} // namespace

/// A visitor in an environment "env", and what the library stores and sends of its records.
class ServiceFaults : public OnlineFixture {
protected:
    void SetUp() override {
        answer(visitorLine, {200, goodVisitor});
        startAfresh();
    }

    /// Another process, on a machine that has none of the library's files.
    void startAfresh() {
        core.reset();
        finish();
        QDir(QFileInfo(*Storage::localLibraryURL("VisitorData"_L1)).path()).removeRecursively();
        Storage::setUp();
        core = KestrioCore::make(context());
        core->configure(u"env"_s);
        finish();
    }
    void advanceAndFinish(double seconds) {
        advance(seconds);
        finish();
    }

    static bool stores(const QString &name) {
        QFile file(*Storage::localLibraryURL("SubmissionQueue"_L1));
        return file.open(QIODevice::ReadOnly) && file.readAll().contains(name.toUtf8());
    }
    int arrivals(const QString &name) const {
        const QList<RecordedRequest> requests = server.requests();
        return int(std::ranges::count_if(requests, [text = name.toUtf8()](const auto &request) {
            return request.target.endsWith('/' + text) || request.body.contains('"' + text + '"');
        }));
    }
    /// That the service was sent the records so often, and whether they wait to be sent again.
    void expectSent(const QStringList &names, int times, bool kept = false) const {
        for (const QString &name : names) {
            EXPECT_EQ(arrivals(name), times) << qPrintable(name);
            EXPECT_EQ(stores(name), kept) << qPrintable(name);
        }
    }

    static constexpr auto configLine = "GET /1/environments/env/config";
    static constexpr auto visitorLine = "POST /1/environments/env/visitors";
    std::shared_ptr<KestrioCore> core;
};

TEST_F(ServiceFaults, KeepWhatMayYetBeDeliveredAndNothingElse) {
    enum Verdict { kept, ended };
    const QByteArray chunk(megabyte, 'x');
    const QByteArray bomb = qCompress(QByteArray(manyMegabytes * megabyte, 'x')).mid(4);
    RecordingServer elsewhere;
    const QByteArray there = elsewhere.url(u"/there"_s).toEncoded();
    const struct {
        const char *name;
        ServerAnswer answer;
        Verdict verdict;
        /// Only then is the time-out short: a busy machine is silent for a while, too.
        bool silent = false;
    } cases[] = {
        {"500", {500}, kept},
        {"503", {503, "{}", {{"Retry-After", "86400"}}}, kept},
        {"400", {400}, ended},
        {"401", {401, "", {{"WWW-Authenticate", "Basic"}}}, ended},
        {"429", {429, "{}", {{"Retry-After", "86400"}}}, ended},
        {"204", {204, ""}, ended},
        {"not final", {103, ""}, kept},
        {"no status", {0}, kept},
        {"not HTTP", ServerAnswer::raw("SSH-2.0-OpenSSH\r\n"), kept},
        {"noise", ServerAnswer::raw("\xff\x01\r\n\r\n\x16\x03"_ba + '\0'), kept},
        {"negative length", {200, "{}", {{"Content-Length", "-1"}}}, kept, true},
        {"wrong types", {200, R"({"vid":"x","questions":7,"surveyId":{}})"}, ended},
        {"deep", {200, QByteArray(megabyte, '[')}, ended},
        {"closed", ServerAnswer::cut(200, 0), kept},
        {"cut in its head", ServerAnswer::cut(200, 30), kept},
        {"cut in its body", ServerAnswer::cut(200, 43), kept},
        {"hanging", ServerAnswer::badly(Manner::hang), kept, true},
        {"redirected", ServerAnswer::redirect(307, there), kept},
        {"portal", ServerAnswer::redirect(302, there), kept},
        {"choices", {300}, kept},
        {"not modified", {304}, kept},
        {"600", {600}, kept},
        {"flood", {.body = chunk, .bodies = manyMegabytes}, ended},
        {"failing flood", {.status = 503, .body = chunk, .bodies = manyMegabytes}, kept},
        {"untold flood",
         {.body = "HTTP/1.1 200 OK\r\n\r\n" + chunk,
          .manner = Manner::raw,
          .bodies = manyMegabytes},
         ended},
        {"bomb", {200, bomb, {{"Content-Encoding", "deflate"}}}, kept},
    };
    FaultRow row("answers that are none", 60s);
    int largest = 0;
    for (const auto &[name, given, verdict, silent] : cases) {
        SCOPED_TRACE(name);
        const QString number = QString::number(&given - &cases[0].answer);
        const QStringList records{u'a' + number, u'e' + number};
        const QByteArrayList lines{"PUT /a" + number.toUtf8(), "POST /events/batch",
                                   "POST /events"};
        for (const QByteArray &line : lines)
            answer(line, given);
        network->setTimeout(silent ? 1s : URLRequest().timeout);
        ASSERT_TRUE(forgetPeak());
        const int before = peak();
        int calls = 0;
        core->setVisitorAttribute(records[0], u"v"_s);
        core->track(records[1], {});
        core->track(u"Asked"_s, [&](SurveyState state) {
            ++calls;
            EXPECT_EQ(state, SurveyState::noSurvey);
        });
        finish();
        largest = std::max(largest, peak() - before);
        EXPECT_EQ(calls, 1);
        expectSent(records, 1, verdict == kept);
        network->setTimeout(URLRequest().timeout);
        for (const QByteArray &line : lines)
            answer(line, {});
        for (const double seconds : {5, 1000}) {
            advanceAndFinish(seconds);
            expectSent(records, verdict == kept ? 2 : 1);
        }
    }
    EXPECT_TRUE(elsewhere.requests().isEmpty());
    row.add(
        {{int(std::size(cases)), "answers"}, {largest, "MB at most taken up", manyMegabytes - 1}});
}

TEST_F(ServiceFaults, CutAtAnyByteAnAnswerIsNone) {
    FaultRow row("answers cut at every byte", 60s);
    const ServerAnswer whole{200, goodVisitor};
    const int size = int(whole.head().size() + whole.body.size());
    ServerAnswer part{200, goodVisitor, {}, Manner::cut};
    for (; part.cutAfter < size; ++part.cutAfter) {
        for (const char *line : {configLine, visitorLine}) {
            answer(line, part);
            startAfresh();
            EXPECT_FALSE(core->api()->visitorIdentifier()) << line << ' ' << part.cutAfter;
            answer(line, whole);
        }
    }
    startAfresh();
    EXPECT_EQ(core->api()->visitorIdentifier(), 1);
    row.add({{size, "bytes"}, {2 * size, "starts"}});
}

TEST_F(ServiceFaults, WithoutATrustedConnectionKeepTheRecordAndTheToken) {
    FaultRow row("connections that cannot be had", 60s);
    const QTemporaryDir data;
    const QDir folder(data.path());
    ASSERT_TRUE(shell(data.path(), makeCertificates));
    QSslConfiguration trusting = QSslConfiguration::defaultConfiguration();
    trusting.addCaCertificates(folder.filePath(u"authority"_s));
    QSslConfiguration::setDefaultConfiguration(trusting);
    EncryptedServer good(folder, u"good"_s);
    const auto deliver = [&](const QString &name, const QUrl &bad) {
        SCOPED_TRACE(qPrintable(name));
        network->setServer(bad);
        core->setVisitorAttribute(name, u"v"_s);
        finish();
        EXPECT_TRUE(stores(name));
        network->setServer(good.url());
        for (const double seconds : {5, 1000}) {
            advanceAndFinish(seconds);
            EXPECT_EQ(good.received.count("/attributes/" + name.toUtf8() + ' '), 1);
            EXPECT_FALSE(stores(name));
        }
    };
    QTcpServer slamming;
    QObject::connect(&slamming, &QTcpServer::newConnection,
                     [&] { delete slamming.nextPendingConnection(); });
    slamming.listen(QHostAddress::LocalHost);
    deliver(u"slammed"_s, QUrl(u"http://127.0.0.1:%1"_s.arg(slamming.serverPort())));
    const QUrl nobody = RecordingServer().url();
    deliver(u"refused"_s, nobody);
    for (const QString &name : {u"self-signed"_s, u"expired"_s, u"misnamed"_s}) {
        EncryptedServer untrusted(folder, name);
        deliver(name, untrusted.url());
        EXPECT_EQ(untrusted.received, "");
    }
    EXPECT_TRUE(good.received.contains("Bearer t1"));
    row.add({{5, "faults"}, {5, "records"}});
}

TEST_F(ServiceFaults, WhichHangsClosesAndBabblesCostsTwoManagersAtMost) {
    FaultRow row("a service that hangs, closes and babbles", 240s);
    const ServerAnswer manners[] = {
        ServerAnswer::badly(Manner::hang), ServerAnswer::cut(200, 0), {103}};
    const int rounds = FaultRow::times(40, 6);
    qsizetype most = 0;
    QSet<int> ended;
    for (int number = 0; number < 3 * rounds; ++number) {
        const QString event = u"Asked %1"_s.arg(number);
        const bool hangs = number % 3 == 0;
        answer("POST /events", manners[number % 3]);
        network->setTimeout(hangs ? 1s : URLRequest().timeout);
        core->track(event, [&ended, number](SurveyState) { ended.insert(number); });
        ASSERT_TRUE(waitFor([&] { return arrivals(event) == 1; }));
        ASSERT_TRUE(waitFor([&] { return hangs || ended.contains(number); }));
        most = std::max(most, threadsOfManagers());
    }
    finish();
    EXPECT_EQ(ended.size(), 3 * rounds);
    row.add({{3 * rounds, "events"}, {most, "network managers at most", 2}});
}

// The time-out is of silence, which never comes.
TEST_F(ServiceFaults, ADripIsEndedAndHoldsUpItsOwnKindAlone) {
    FaultRow row("an answer that drips without end", 30s);
    answer("PUT /dripped", {.body = "x", .bodies = megabyte, .pause = 100ms});
    core->setVisitorAttribute(u"dripped"_s, u"v"_s);
    ASSERT_TRUE(waitFor([this] { return arrivals(u"dripped"_s) == 1; }));
    core->setVisitorAttribute(u"behind"_s, u"v"_s);
    core->track(u"beside"_s, {});
    EXPECT_TRUE(waitFor([this] {
        advance(0.02);
        return arrivals(u"beside"_s) == 1 && stores(u"dripped"_s) && stores(u"behind"_s);
    }));
    EXPECT_EQ(arrivals(u"behind"_s), 0);
    answer("PUT /dripped", {});
    for (const double seconds : {NetworkTransport::answerLimit, 5.0, 1000.0}) {
        advanceAndFinish(seconds);
        EXPECT_EQ(arrivals(u"behind"_s), 1);
    }
    expectSent({u"dripped"_s}, 2);
    row.add({{1, "drip ended after 300 s of the library's clock"}, {3, "records"}});
}

} // namespace KestrioKit
