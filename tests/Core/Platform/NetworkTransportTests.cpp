#include "KestrioKit/Core/Platform/HTTP/NetworkTransport.h"
#include "KestrioKit/Core/Platform/Threads/Atomic.h"
#include "KestrioKit/Core/Platform/Threads/LibraryThread.h"
#include "tests/support/RecordingServer.h"

#include <gtest/gtest.h>

#include <QNetworkReply>

namespace KestrioKit {

using namespace Qt::StringLiterals;
using Body = URLTransport::Body;
using Manner = ServerAnswer::Manner;
using enum QNetworkReply::NetworkError;

namespace {

constexpr int none = -1;

void expectResult(const URLResult &result, int status, int errorCode, const QByteArray &data) {
    EXPECT_EQ(result.response ? result.response->statusCode : none, status);
    EXPECT_EQ(result.error ? result.error->code : none, errorCode);
    EXPECT_EQ(result.data, errorCode == none ? std::optional(data) : std::nullopt);
}

/// Sends requests from the library's thread and waits for their results.
class NetworkTransportTest : public ::testing::Test {
protected:
    static URLRequest request(const QUrl &url, const QByteArray &method = "POST",
                              const QByteArray &body = "{}") {
        return {method, url, {{"x-ks-split", "one\r\nx: two"}}, body, patience};
    }

    URLResult resultOf(const URLRequest &request, Body body = Body::keep) {
        const auto answer = std::make_shared<Atomic<std::optional<URLResult>>>();
        m_transport.send(request, body, [answer](const URLResult &result) {
            answer->mutate([&](auto &known) {
                EXPECT_FALSE(known) << "a second completion";
                known = result;
            });
        });
        EXPECT_TRUE(waitFor([&] { return answer->value().has_value(); })) << "no completion";
        return answer->value().value_or(URLResult());
    }

private:
    LibraryThread m_thread{Clock::system()};
    NetworkTransport m_transport{m_thread, Clock::system()};
};

} // namespace

TEST_F(NetworkTransportTest, SendsARequestOnceWhateverTheAnswer) {
    const QByteArray longest(URLTransport::maximumBodySize, 'x');
    const QByteArray tooLong = "HTTP/1.1 200 OK\r\n\r\n" + longest + 'x';
    const struct {
        const char *name;
        ServerAnswer answer;
        int status;
        int errorCode = none;
        int errorCodeWithoutBody = errorCode;
    } cases[] = {
        {"longest", {200, longest}, 200},
        {"too long", {200, longest + 'x'}, 200, OperationCanceledError, none},
        {"too long, untold", ServerAnswer::raw(tooLong), 200, OperationCanceledError, none},
        {"closed after it", ServerAnswer::badly(Manner::wholeThenClose), 200},
        {"unauthorised", {401, "why", {{"WWW-Authenticate", "NTLM"}}}, 401},
        {"redirected nowhere", {300, "why"}, 300},
        {"not modified", {304, "", {{"Content-Length", "2"}}}, 304},
        {"unknown", {600, "why"}, 600},
        {"closed at once", ServerAnswer::cut(200, 0), none, RemoteHostClosedError},
        {"cut in the body", ServerAnswer::cut(200, 43), 200, RemoteHostClosedError},
        {"not final", {103, ""}, 103, ProtocolFailure},
    };
    for (const auto &row : cases) {
        for (const QByteArray method : {"POST", "GET", "DELETE"}) {
            SCOPED_TRACE(row.name + (" " + method).toStdString());
            RecordingServer server;
            server.setScript([&row](const RecordedRequest &) { return row.answer; });
            const URLRequest sent = request(server.url(), method, method == "POST" ? "{}" : "");
            expectResult(resultOf(sent), row.status, row.errorCode,
                         row.errorCode == none ? row.answer.body : "");
            EXPECT_TRUE(row.answer.manner == Manner::whole ||
                        waitFor([&] { return server.openConnections() == 0; }));
            expectResult(resultOf(sent, Body::discard), row.status, row.errorCodeWithoutBody, "");
            ASSERT_EQ(server.requests().size(), 2) << "sent again";
            EXPECT_EQ(server.requests()[0].header("x-ks-split"), "one  x: two");
        }
    }
}

TEST_F(NetworkTransportTest, FollowsRedirectionsThatKeepTheRequestAsItIs) {
    const struct {
        const char *method;
        int status;
        QByteArray location;
        bool followed;
    } cases[] = {
        {"GET", 302, "there", true},  {"POST", 307, "/there", true},
        {"PUT", 308, "/there", true}, {"POST", 301, "/there", false},
        {"GET", 302, "//[", false},   {"POST", 307, "https://127.0.0.1/", false},
    };
    for (const auto &row : cases) {
        SCOPED_TRACE((row.method + QByteArray::number(row.status) + row.location).toStdString());
        RecordingServer server;
        server.setScript([&row](const RecordedRequest &request) {
            return request.target == "/there" ? ServerAnswer()
                                              : ServerAnswer::redirect(row.status, row.location);
        });
        expectResult(resultOf(request(server.url(u"/here"_s), row.method)),
                     row.followed ? 200 : row.status, none, row.followed ? "{}" : "");
        const QList<RecordedRequest> arrived = server.requests();
        ASSERT_EQ(arrived.size(), row.followed ? 2 : 1);
        EXPECT_EQ(arrived.last().method, row.method);
        EXPECT_EQ(arrived.last().body, "{}");
        EXPECT_EQ(arrived.last().target, row.followed ? "/there" : "/here");
    }
    RecordingServer circular;
    circular.setScript([](auto &) { return ServerAnswer::redirect(307, "/again"); });
    expectResult(resultOf(request(circular.url())), 307, TooManyRedirectsError, "");
}

} // namespace KestrioKit
