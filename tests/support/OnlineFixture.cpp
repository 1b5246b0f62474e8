#include "tests/support/OnlineFixture.h"

#include "KestrioKit/Platform/NetworkTransport.h"

#include <QJsonDocument>

namespace KestrioKit {

namespace {

bool isLine(const RecordedRequest &request, const QByteArray &line) {
    const QList<QByteArray> parts = line.split(' ');
    return request.method == parts[0] && request.target.endsWith(parts[1]);
}

} // namespace

OnlineFixture::OnlineFixture()
    : route(std::make_shared<RoutedTransport>(std::make_shared<NetworkTransport>(thread, clock),
                                              server.url())),
      network(std::make_shared<HeldAnswers>(route)) {
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

void OnlineFixture::TearDown() {
    finish();
    while (network->held() > 0)
        network->take(0);
}

void OnlineFixture::answer(const QByteArray &line, ServerAnswer answer) {
    m_answers.mutate([&](auto &answers) { answers.insert(line, std::move(answer)); });
}

void OnlineFixture::finish() {
    do {
        ASSERT_TRUE(waitFor([this] { return network->tasksInFlight() == 0; }));
        settle();
    } while (network->tasksInFlight() != 0);
}

void OnlineFixture::release(qsizetype index) {
    ASSERT_TRUE(waitFor([&] { return network->held() > index; }));
    onLibraryThread(network->take(index));
    finish();
}

QList<QByteArray> OnlineFixture::lines() const {
    QList<QByteArray> lines;
    for (const RecordedRequest &request : server.requests())
        lines.append(request.method + ' ' + request.target);
    return lines;
}

QList<RecordedRequest> OnlineFixture::requests(const QByteArray &line) const {
    QList<RecordedRequest> requests = server.requests();
    requests.removeIf([&](const RecordedRequest &request) { return !isLine(request, line); });
    return requests;
}

QList<QJsonObject> OnlineFixture::bodies(const QByteArray &line) const {
    QList<QJsonObject> bodies;
    for (const RecordedRequest &request : requests(line))
        bodies.append(QJsonDocument::fromJson(request.body).object());
    return bodies;
}

} // namespace KestrioKit
