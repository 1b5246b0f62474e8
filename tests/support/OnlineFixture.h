#pragma once

#include "tests/support/HeldAnswers.h"
#include "tests/support/LibraryFixture.h"
#include "tests/support/RecordingServer.h"
#include "tests/support/RoutedTransport.h"

#include <QJsonObject>

namespace KestrioKit {

/// A `LibraryFixture` with a network: whichever host a request is for, it reaches `server`.
/// Requests go by the line "POST /1/errors": method and target, or the end of the target.
class OnlineFixture : public LibraryFixture {
private:
    Atomic<QMap<QByteArray, ServerAnswer>> m_answers;

protected:
    OnlineFixture();
    /// Nothing of the library's is still running, or kept by an answer, when its objects go.
    void TearDown() override;

    LibraryContext context() { return LibraryFixture::context(network); }

    /// How such requests are answered from now on; by default with 200 and "{}".
    void answer(const QByteArray &line, ServerAnswer answer);
    /// `settle()`, once the network has nothing on its way either.
    void finish();
    /// Delivers the answer that is kept back as number `index`, and waits for what comes of it.
    void release(qsizetype index = 0);

    /// The whole lines of all requests that came, in their order.
    QList<QByteArray> lines() const;
    QList<RecordedRequest> requests(const QByteArray &line) const;
    QList<QJsonObject> bodies(const QByteArray &line) const;

    RecordingServer server;
    std::shared_ptr<RoutedTransport> route;
    std::shared_ptr<HeldAnswers> network;
};

} // namespace KestrioKit
