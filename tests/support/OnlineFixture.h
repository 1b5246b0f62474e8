#pragma once

#include "KestrioKit/Core/Platform/HTTP/NetworkTransport.h"
#include "KestrioKit/Core/Platform/Threads/Atomic.h"
#include "tests/support/LibraryFixture.h"
#include "tests/support/RecordingServer.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace KestrioKit {

/// Forwards every request to another transport, but replaces scheme, host and port of its URL by
/// those of the test's server. It can hold responses back. Thread-safe.
class TestTransport final : public URLTransport,
                            public std::enable_shared_from_this<TestTransport> {
public:
    TestTransport(std::shared_ptr<URLTransport> transport, QUrl server)
        : m_transport(std::move(transport)), m_server(std::move(server)) {}

    /// Sets the server that receives all further requests.
    void setServer(const QUrl &server) { m_server.setValue(server); }
    /// Sets the time-out of every further request.
    void setTimeout(std::chrono::seconds timeout) { m_timeout = timeout; }
    /// Sets whether responses that arrive from now on are held back.
    void hold(bool holding) { m_holding = holding; }
    /// The number of responses that are held back.
    qsizetype held() const { return m_held.value().size(); }
    /// Removes and returns the held response at `index`. Calling it delivers the response.
    Block take(qsizetype index) {
        return m_held.mutate([index](auto &held) { return held.takeAt(index); });
    }

    void send(URLRequest request, Body body, URLCompletion completion) override {
        const QUrl server = m_server.value();
        request.url.setScheme(server.scheme());
        request.url.setHost(server.host());
        request.url.setPort(server.port());
        request.timeout = m_timeout;
        ++m_tasksInFlight;
        m_transport->send(std::move(request), body,
                          [self = shared_from_this(),
                           completion = std::move(completion)](const URLResult &result) {
                              self->deliver(completion, result);
                              --self->m_tasksInFlight;
                          });
    }
    void cancelAll() override { m_transport->cancelAll(); }
    /// The number of requests whose response has been neither delivered nor held back.
    int tasksInFlight() const { return m_tasksInFlight; }

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
    std::atomic<int> m_tasksInFlight = 0;
    Atomic<QList<Block>> m_held;
};

/// A `LibraryFixture` with a network. Requests to any host reach `server`. Tests select requests by
/// a line such as "POST /1/errors": the method, and the target or its end.
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
    /// Waits until the library is idle and drops held responses, so that nothing uses objects of
    /// the library after their destruction.
    void TearDown() override {
        finish();
        while (network->held() > 0)
            network->take(0);
    }

    /// Returns a context whose requests reach `server`.
    LibraryContext context() { return LibraryFixture::context(network); }

    /// Sets the response to requests that match `line`. The default is 200 with "{}".
    void answer(const QByteArray &line, ServerAnswer answer) {
        m_answers.mutate([&](auto &answers) { answers.insert(line, std::move(answer)); });
    }
    /// Waits until no request is in flight and `settle()` has nothing left to wait for, also after
    /// the time has passed for which events wait to be sent together and changes to be saved
    /// together.
    void finish() {
        finishNow();
        advance(togetherFor);
        finishNow();
    }
    /// Delivers the held response at `index` and waits until its effects are complete.
    void release(qsizetype index = 0) {
        ASSERT_TRUE(waitFor([&] { return network->held() > index; }));
        thread.post(network->take(index));
        finish();
    }

    /// Returns method and whole target of every request, in the order of arrival.
    QByteArrayList lines() const {
        QByteArrayList lines;
        for (const RecordedRequest &request : server.requests())
            lines.append(request.method + ' ' + request.target);
        return lines;
    }
    /// Returns the requests that match `line`, in the order of arrival.
    QList<RecordedRequest> requests(const QByteArray &line) const {
        QList<RecordedRequest> requests = server.requests();
        requests.removeIf([&](const RecordedRequest &request) { return !isLine(request, line); });
        return requests;
    }
    /// Returns the bodies of these requests as JSON objects.
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
    static constexpr double togetherFor = 0.02;

    void finishNow() {
        do {
            ASSERT_TRUE(waitFor([this] { return network->tasksInFlight() == 0; }));
            settle();
        } while (network->tasksInFlight() != 0);
    }
    static bool isLine(const RecordedRequest &request, const QByteArray &line) {
        const QByteArrayList parts = line.split(' ');
        return request.method == parts[0] && request.target.endsWith(parts[1]);
    }
};

} // namespace KestrioKit
