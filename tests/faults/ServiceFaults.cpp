#include "KestrioKit/Facade/KestrioCore.h"
#include "KestrioKit/Platform/NetworkTransport.h"
#include "KestrioKit/Platform/Storage.h"
#include "tests/faults/FaultRow.h"
#include "tests/support/OnlineFixture.h"

#include <QDir>
#include <QFile>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>
#include <QTemporaryDir>

#include <cstdlib>

namespace KestrioKit {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Manner = ServerAnswer::Manner;

namespace {

constexpr int megabyte = 1024 * 1024;
constexpr int manyMegabytes = 200;
constexpr auto goodVisitor = R"({"vid":1,"token":"t1"})";

/// The process's largest size since `forgetPeak()`, in megabytes.
int peak() {
    QFile status(u"/proc/self/status"_s);
    EXPECT_TRUE(status.open(QIODevice::ReadOnly));
    const QByteArray text = status.readAll();
    return text.mid(text.indexOf("VmHWM:") + 6).trimmed().split(' ').first().toInt() / 1024;
}
void forgetPeak() {
    QFile references(u"/proc/self/clear_refs"_s);
    EXPECT_TRUE(references.open(QIODevice::WriteOnly) && references.write("5") == 1);
}

/// A server at "https://localhost" with a certificate of its own, on the test's thread.
struct EncryptedServer {
    QSslServer server;
    /// All that came over connections that the client trusted.
    QByteArray received;

    EncryptedServer(const QString &certificateFile, const QString &keyFile) {
        QFile key(keyFile);
        EXPECT_TRUE(key.open(QIODevice::ReadOnly));
        QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
        configuration.setLocalCertificateChain(QSslCertificate::fromPath(certificateFile));
        configuration.setPrivateKey(QSslKey(&key, QSsl::Rsa));
        server.setSslConfiguration(configuration);
        QObject::connect(&server, &QTcpServer::pendingConnectionAvailable, &server, [this] {
            QTcpSocket *const socket = server.nextPendingConnection();
            QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
                received += socket->readAll();
                const ServerAnswer answer{200, "{}", {{"Connection", "close"}}};
                if (received.endsWith('}'))
                    socket->write(answer.head() + answer.body);
            });
        });
        server.listen(QHostAddress::LocalHost);
    }
    QUrl url() const { return QUrl(u"https://localhost:%1/"_s.arg(server.serverPort())); }
};

/// Makes an authority's certificate, others that it signed, and one that signed itself; all have
/// the one key "key". QProcess would share its memory with the child for a while: false reports of
/// races.
bool makeCertificates(const QString &folder) {
    const QString script =
        u"cd %1 && exec 2>log &&"
        "openssl req -x509 -newkey rsa:2048 -nodes -subj /CN=authority -keyout key -out authority "
        "&&"
        "openssl req -x509 -key key -subj /CN=localhost -out self-signed &&"
        "sign() { openssl req -new -key key -subj /CN=$2 |"
        " openssl x509 -req -CA authority -CAkey key -CAcreateserial -days $3 -out $1; } &&"
        "sign good localhost 2 && sign expired localhost -1 && sign misnamed elsewhere 2"_s;
    return std::system(qPrintable(script.arg(folder))) == 0;
}

} // namespace

/// A visitor in an environment "env", and what the library stores and sends of its records.
class ServiceFaults : public OnlineFixture {
protected:
    void SetUp() override {
        answer(visitorLine, {200, goodVisitor});
        route->setTimeout(1s);
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
    ServerAnswer flood{200, chunk};
    flood.bodies = manyMegabytes;
    ServerAnswer failingFlood = flood;
    failingFlood.status = 503;
    ServerAnswer untoldFlood = ServerAnswer::raw("HTTP/1.1 200 OK\r\n\r\n" + chunk);
    untoldFlood.bodies = manyMegabytes;
    const struct {
        const char *name;
        ServerAnswer answer;
        Verdict verdict;
    } cases[] = {
        {"500", {500}, kept},
        {"503", {503, "{}", {{"Retry-After", "86400"}}}, kept},
        {"599", {599}, kept},
        {"400", {400}, ended},
        {"401", {401, "", {{"WWW-Authenticate", "Basic"}}}, ended},
        {"407", {407, "", {{"Proxy-Authenticate", "Basic"}}}, ended},
        {"413", {413}, ended},
        {"429", {429, "{}", {{"Retry-After", "86400"}}}, ended},
        {"204", {204, ""}, ended},
        {"not final", {103, ""}, kept},
        {"no status", {0}, kept},
        {"not HTTP", ServerAnswer::raw("SSH-2.0-OpenSSH\r\n"), kept},
        {"noise", ServerAnswer::raw("\xff\x01\r\n\r\n\x16\x03"_ba + '\0'), kept},
        {"negative length", {200, "{}", {{"Content-Length", "-1"}}}, kept},
        {"wrong types", {200, R"({"vid":"x","questions":7,"surveyId":{}})"}, ended},
        {"deep", {200, QByteArray(megabyte, '[')}, ended},
        {"hanging", ServerAnswer::badly(Manner::hang), kept},
        {"redirected", ServerAnswer::redirect(307, there), kept},
        {"found", ServerAnswer::redirect(302, there), kept},
        {"flood", flood, ended},
        {"failing flood", failingFlood, kept},
        {"flood of no known length", untoldFlood, ended},
        {"bomb", {200, bomb, {{"Content-Encoding", "deflate"}}}, kept},
    };
    FaultRow row("answers that are none", 60s);
    int largest = 0;
    for (const auto &[name, given, verdict] : cases) {
        SCOPED_TRACE(name);
        const QString attribute = u"a%1"_s.arg(&given - &cases[0].answer);
        const QString event = u"e%1"_s.arg(&given - &cases[0].answer);
        const QByteArrayList lines{"PUT /" + attribute.toUtf8(), "POST /events/batch",
                                   "POST /events"};
        for (const QByteArray &line : lines)
            answer(line, given);
        forgetPeak();
        const int before = peak();
        int calls = 0;
        core->setVisitorAttribute(attribute, u"v"_s);
        core->track(event, {});
        core->track(u"Asked"_s, [&](SurveyState state) {
            ++calls;
            EXPECT_EQ(state, SurveyState::noSurvey);
        });
        finish();
        largest = std::max(largest, peak() - before);
        EXPECT_LT(peak() - before, manyMegabytes);
        EXPECT_EQ(calls, 1);
        for (const QString &record : {attribute, event}) {
            EXPECT_EQ(arrivals(record), 1);
            EXPECT_EQ(stores(record), verdict == kept);
        }
        for (const QByteArray &line : lines)
            answer(line, {});
        for (const double seconds : {5, 1000}) {
            advance(seconds);
            finish();
            for (const QString &record : {attribute, event}) {
                EXPECT_EQ(arrivals(record), verdict == kept ? 2 : 1);
                EXPECT_FALSE(stores(record));
            }
        }
    }
    EXPECT_EQ(elsewhere.connections(), 0);
    row.add(int(std::size(cases)), "answers");
    row.add(largest, "MB at most taken up");
}

TEST_F(ServiceFaults, CutAtAnyByteAnAnswerIsNone) {
    FaultRow row("answers cut at every byte", 60s);
    const ServerAnswer whole{200, goodVisitor};
    const int size = int(whole.head().size() + whole.body.size());
    constexpr int atOnce = 20; // fewer than may wait
    for (int cut = 0; cut < size; ++cut) {
        ServerAnswer part = whole;
        part.manner = Manner::cut;
        part.cutAfter = cut;
        for (const char *line : {configLine, visitorLine}) {
            answer(line, part);
            startAfresh();
            EXPECT_EQ(core->api()->visitorIdentifier(), std::nullopt) << line << ' ' << cut;
            answer(line, whole);
        }
        answer("PUT /a" + QByteArray::number(cut), part);
    }
    startAfresh();
    EXPECT_EQ(core->api()->visitorIdentifier(), 1);
    const auto name = [](int number) {
        return u"a%1"_s.arg(number);
    };
    for (int first = 0; first < size; first += atOnce) {
        const int last = std::min(first + atOnce, size);
        for (int number = first; number < last; ++number)
            core->setVisitorAttribute(name(number), u"v"_s);
        finish();
        for (int number = first; number < last; ++number) {
            EXPECT_TRUE(stores(name(number))) << number;
            answer("PUT /" + name(number).toUtf8(), {});
        }
        advance(5);
        finish();
        for (int number = first; number < last; ++number) {
            EXPECT_EQ(arrivals(name(number)), 2) << number;
            EXPECT_FALSE(stores(name(number))) << number;
        }
    }
    row.add(size, "bytes");
    row.add(2 * size, "starts");
    row.add(size, "records");
}

TEST_F(ServiceFaults, WithoutATrustedConnectionKeepTheRecordAndTheToken) {
    FaultRow row("connections that cannot be had", 60s);
    const QTemporaryDir folder;
    ASSERT_TRUE(makeCertificates(folder.path()));
    const QSslConfiguration before = QSslConfiguration::defaultConfiguration();
    QSslConfiguration trusting = before;
    trusting.addCaCertificates(folder.filePath(u"authority"_s));
    QSslConfiguration::setDefaultConfiguration(trusting);
    const auto file = [&](const QString &name) {
        return folder.filePath(name);
    };
    EncryptedServer good(file(u"good"_s), file(u"key"_s));
    EncryptedServer selfSigned(file(u"self-signed"_s), file(u"key"_s));
    EncryptedServer expired(file(u"expired"_s), file(u"key"_s));
    EncryptedServer misnamed(file(u"misnamed"_s), file(u"key"_s));
    RecordingServer slamming;
    slamming.setSlamming(true);
    const std::pair<QString, QUrl> cases[] = {
        {u"refused"_s, RecordingServer().url()}, {u"slammed"_s, slamming.url()},
        {u"self-signed"_s, selfSigned.url()},    {u"expired"_s, expired.url()},
        {u"misnamed"_s, misnamed.url()},
    };
    for (const auto &[name, url] : cases) {
        SCOPED_TRACE(qPrintable(name));
        route->setServer(url);
        core->setVisitorAttribute(name, u"v"_s);
        finish();
        EXPECT_TRUE(stores(name));
        route->setServer(good.url());
        for (const double seconds : {5, 1000}) {
            advance(seconds);
            finish();
            EXPECT_EQ(good.received.count("/attributes/" + name.toUtf8() + ' '), 1);
            EXPECT_FALSE(stores(name));
        }
    }
    EXPECT_TRUE(good.received.contains("Bearer t1"));
    EXPECT_EQ(selfSigned.received + expired.received + misnamed.received, "");
    QSslConfiguration::setDefaultConfiguration(before);
    row.add(int(std::size(cases)), "faults");
    row.add(int(std::size(cases)), "records");
}

// The time-out is of silence, which never comes.
TEST_F(ServiceFaults, ADripIsEndedAndHoldsUpItsOwnKindAlone) {
    FaultRow row("an answer that drips without end", 30s);
    ServerAnswer drip{200, "x"};
    drip.bodies = megabyte;
    drip.pause = 100ms;
    answer("PUT /dripped", drip);
    core->setVisitorAttribute(u"dripped"_s, u"v"_s);
    ASSERT_TRUE(waitFor([this] { return arrivals(u"dripped"_s) == 1; }));
    core->setVisitorAttribute(u"behind"_s, u"v"_s);
    core->track(u"beside"_s, {});
    EXPECT_TRUE(waitFor([this] { return arrivals(u"beside"_s) == 1; }));
    EXPECT_TRUE(waitFor([this] { return stores(u"dripped"_s) && stores(u"behind"_s); }));
    EXPECT_EQ(arrivals(u"behind"_s), 0);
    answer("PUT /dripped", {});
    for (const double seconds : {NetworkTransport::answerLimit, 5.0, 1000.0}) {
        advance(seconds);
        finish();
        EXPECT_EQ(arrivals(u"behind"_s), 1);
    }
    EXPECT_EQ(arrivals(u"dripped"_s), 2);
    EXPECT_FALSE(stores(u"dripped"_s));
    row.add(1, "drip ended after 300 s of the library's clock");
    row.add(3, "records");
}

} // namespace KestrioKit
