#pragma once

#include "KestrioKit/Core/Platform/HTTP/NetworkTransport.h"
#include "KestrioKit/Core/Platform/Threads/Atomic.h"
#include "tests/support/LibraryFixture.h"
#include "tests/support/RecordingServer.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace KestrioKit {

/// Passes every request on to another transport, but to a server of the test's: scheme, host and
/// port of the request's URL are replaced. Keeps the answers back while the test wants it.
/// Thread-safe.
class TestTransport final : public URLTransport,
                            public std::enable_shared_from_this<TestTransport> {
public:
    TestTransport(std::shared_ptr<URLTransport> transport, QUrl server)
        : m_transport(std::move(transport)), m_server(std::move(server)) {}

    void setServer(const QUrl &server) { m_server.setValue(server); }
    /// The time-out of every request from now on.
    void setTimeout(std::chrono::seconds timeout) { m_timeout = timeout; }
    /// Answers that come from now on are kept back, or not.
    void hold(bool holding) { m_holding = holding; }
    qsizetype held() const { return m_held.value().size(); }
    /// The answer kept back as number `index`; calling it delivers the answer.
    Block take(qsizetype index) {
        return m_held.mutate([index](auto &held) { return held.takeAt(index); });
    }

    void send(URLRequest request, Body body, URLCompletion completion) override {
        const QUrl server = m_server.value();
        request.url.setScheme(server.scheme());
        request.url.setHost(server.host());
        request.url.setPort(server.port());
        request.timeout = m_timeout;
        m_transport->send(std::move(request), body,
                          [self = shared_from_this(), completion = std::move(completion)](
                              const URLResult &result) { self->deliver(completion, result); });
    }
    int tasksInFlight() const override { return m_transport->tasksInFlight(); }

private:
    void deliver(const URLCompletion &completion, const URLResult &result) {
        if (!m_holding)
            return completion(result);
        m_held.mutate(
            [&](auto &held) { held.append([completion, result] { completion(result); }); });
    }

    std::shared_ptr<URLTransport> m_transport;
    Atomic<QUrl> m_server;
    std::atomic<std::chrono::seconds> m_timeout = URLRequest().timeout;
    std::atomic<bool> m_holding = false;
    Atomic<QList<Block>> m_held;
};

/// A `LibraryFixture` with a network: whichever host a request is for, it reaches `server`.
/// Requests go by the line "POST /1/errors": method and target, or the end of the target.
class OnlineFixture : public LibraryFixture {
private:
    Atomic<QMap<QByteArray, ServerAnswer>> m_answers;

protected:
    OnlineFixture() {
        server.setScript([this](const RecordedRequest &request) {
            return m_answers.mutate([&request](const auto &answers) {
                for (auto entry = answers.begin(); entry != answers.end(); ++entry) {
                    if (isLine(request, entry.key()))
                        return entry.value();
                }
                return ServerAnswer{};
            });
        });
    }
    /// Nothing of the library's is still running, or kept by an answer, when its objects go.
    void TearDown() override {
        finish();
        while (network->held() > 0)
            network->take(0);
    }

    LibraryContext context() { return LibraryFixture::context(network); }

    /// How such requests are answered from now on; by default with 200 and "{}".
    void answer(const QByteArray &line, ServerAnswer answer) {
        m_answers.mutate([&](auto &answers) { answers.insert(line, std::move(answer)); });
    }
    /// `settle()`, once the network has nothing on its way either.
    void finish() {
        do {
            ASSERT_TRUE(waitFor([this] { return network->tasksInFlight() == 0; }));
            settle();
        } while (network->tasksInFlight() != 0);
    }
    /// Delivers the answer that is kept back as number `index`, and waits for what comes of it.
    void release(qsizetype index = 0) {
        ASSERT_TRUE(waitFor([&] { return network->held() > index; }));
        thread.post(network->take(index));
        finish();
    }

    /// The whole lines of all requests that came, in their order.
    QByteArrayList lines() const {
        QByteArrayList lines;
        for (const RecordedRequest &request : server.requests())
            lines.append(request.method + ' ' + request.target);
        return lines;
    }
    QList<RecordedRequest> requests(const QByteArray &line) const {
        QList<RecordedRequest> requests = server.requests();
        requests.removeIf([&](const RecordedRequest &request) { return !isLine(request, line); });
        return requests;
    }
    QList<QJsonObject> bodies(const QByteArray &line) const {
        QList<QJsonObject> bodies;
        for (const RecordedRequest &request : requests(line))
            bodies.append(QJsonDocument::fromJson(request.body).object());
        return bodies;
    }

    RecordingServer server;
    std::shared_ptr<TestTransport> network = std::make_shared<TestTransport>(
        std::make_shared<NetworkTransport>(thread, clock), server.url());

private:
    static bool isLine(const RecordedRequest &request, const QByteArray &line) {
        const QByteArrayList parts = line.split(' ');
        return request.method == parts[0] && request.target.endsWith(parts[1]);
    }
};

} // namespace KestrioKit
