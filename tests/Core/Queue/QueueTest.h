#pragma once

#include "KestrioKit/Core/Platform/Storage.h"
#include "KestrioKit/Core/Queue/SubmissionQueue.h"
#include "tests/support/LibraryFixture.h"
#include "tests/support/ScriptedSender.h"

#include <QCoreApplication>
#include <QFile>
#include <QThread>

namespace KestrioKit {

using namespace Qt::StringLiterals;

/// A queue of visitor 8, its sends and its state file. `completions` holds what came of each
/// record, as its name and the status: "first 200".
class QueueTest : public LibraryFixture {
protected:
    void make(qsizetype limit = QueueRunner::defaultQueueLimit) {
        queue = SubmissionQueue::make(sender, context(), limit);
    }

    void append(const QString &name, QueueableRequest request) {
        queue->appendRequest(
            makeQueueTask(std::move(request), clock, [this, name](const SimpleAnswer &answer) {
                EXPECT_EQ(QThread::currentThread(), qApp->thread());
                const int status = answer.response ? answer.response->statusCode : 0;
                completions.append(name + u' ' + QString::number(status));
            }));
    }
    void appendEvent(const QString &name) { append(name, Request::TrackEvent{name, {}}); }
    void appendAttribute(const QString &key) {
        append(key, Request::UpdateAttribute{key, u"value"_s});
    }

    /// Answers the oldest send, and waits for what comes of it.
    void answer(int status, std::optional<Error> error = {}) {
        sender->answer(status, std::move(error));
        settle();
    }

    QByteArray file() const {
        QFile stored(fileName);
        return stored.open(QIODevice::ReadOnly) ? stored.readAll() : QByteArray("none");
    }
    void store(const QByteArray &text) {
        QFile stored(fileName);
        EXPECT_TRUE(stored.open(QIODevice::WriteOnly) && stored.write(text) == text.size());
    }
    /// The state file with these events and attributes.
    static QByteArray stateText(QByteArrayList events, QByteArrayList attributes = {}) {
        for (QByteArray &name : events)
            name = R"({"event":")" + name + R"(","metadata":{},"delayed":false,"timestamp":0})";
        for (QByteArray &key : attributes)
            key = R"({"key":")" + key + R"(","value":"value"})";
        return R"({"version":3,"vid":8,"token":"token","events":[)" + events.join(',') +
               R"(],"surveys":[],"errors":[],"history":[],"attributes":[)" + attributes.join(',') +
               "]}";
    }

    const QString fileName = *Storage::localLibraryURL("SubmissionQueue"_L1);
    std::shared_ptr<ScriptedSender> sender = std::make_shared<ScriptedSender>();
    std::shared_ptr<SubmissionQueue> queue;
    QStringList completions;
};

} // namespace KestrioKit
