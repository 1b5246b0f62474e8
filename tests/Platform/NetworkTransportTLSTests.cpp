#include "tests/Platform/NetworkTransportTest.h"

#include <QFile>
#include <QNetworkReply>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>
#include <QSslSocket>
#include <QTemporaryDir>

#include <cstdlib>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

/// A certificate for "localhost", signed by itself, and its key.
struct Identity {
    QSslCertificate certificate;
    QSslKey key;
};

Identity newIdentity() {
    const QTemporaryDir folder;
    const QString certificate = folder.filePath(u"certificate"_s);
    const QString key = folder.filePath(u"key"_s);
    const QString command = u"openssl req -x509 -newkey rsa:2048 -nodes -subj /CN=localhost "
                            "-out '%1' -keyout '%2' 2>/dev/null"_s;
    if (std::system(qPrintable(command.arg(certificate, key))) != 0)
        return {QSslCertificate(), QSslKey()};
    QFile certificateFile(certificate);
    QFile keyFile(key);
    certificateFile.open(QIODevice::ReadOnly);
    keyFile.open(QIODevice::ReadOnly);
    return {QSslCertificate(&certificateFile), QSslKey(&keyFile, QSsl::Rsa)};
}

/// Answers every request with 200 over TLS, on the test's thread.
class TLSServer final : public QSslServer {
public:
    explicit TLSServer(const Identity &identity) {
        QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
        configuration.setLocalCertificate(identity.certificate);
        configuration.setPrivateKey(identity.key);
        setSslConfiguration(configuration);
        connect(this, &QTcpServer::pendingConnectionAvailable, this, &TLSServer::serve);
        listen(QHostAddress::LocalHost);
    }

private:
    void serve() {
        QTcpSocket *const socket = nextPendingConnection();
        connect(socket, &QTcpSocket::readyRead, socket, [socket] {
            socket->readAll();
            socket->write(ServerAnswer().head() + ServerAnswer().body);
        });
    }
};

} // namespace

TEST_F(NetworkTransportTest, RecoversFromAFailedTLSHandshake) {
    const Identity identity = newIdentity();
    if (identity.certificate.isNull())
        GTEST_SKIP() << "no openssl to make a certificate with";
    TLSServer server(identity);
    const URLRequest sent = request(QUrl(u"https://localhost:%1/"_s.arg(server.serverPort())));

    for (int attempt = 0; attempt < 2; ++attempt) {
        const URLResult refused = resultOf(sent);
        ASSERT_TRUE(refused.error);
        EXPECT_EQ(refused.error->code, QNetworkReply::SslHandshakeFailedError);
        EXPECT_FALSE(refused.response);
    }
    const QSslConfiguration before = QSslConfiguration::defaultConfiguration();
    QSslConfiguration trusting = before;
    trusting.addCaCertificate(identity.certificate);
    QSslConfiguration::setDefaultConfiguration(trusting);
    const URLResult accepted = resultOf(sent);
    QSslConfiguration::setDefaultConfiguration(before);
    EXPECT_FALSE(accepted.error) << accepted.error->localizedDescription.toStdString();
    EXPECT_EQ(accepted.data, "{}");
}

} // namespace KestrioKit
