#pragma once

#include "KestrioKit/Facade/KestrioCore.h"
#include "KestrioKit/Platform/Storage.h"
#include "tests/support/OnlineFixture.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QThread>

namespace KestrioKit {

using namespace Qt::StringLiterals;

/// A facade in an environment "env" whose service gives visitor 1 with the token "t1".
class KestrioCoreTest : public OnlineFixture {
protected:
    static constexpr auto configLine = "GET /1/environments/env/config";
    static constexpr auto visitorLine = "POST /1/environments/env/visitors";
    static constexpr auto attachLine = "PUT /1/environments/env/visitors/1";
    static constexpr auto eventLine = "POST /events";

    KestrioCoreTest() {
        answer(visitorLine, {200, R"({"vid":1,"token":"t1"})"});
        answer(eventLine, {200, "null"});
    }

    /// Another process, on a machine that has none of the library's files.
    void startAfresh() {
        core.reset();
        finish();
        QDir(QFileInfo(identityUrl()).path()).removeRecursively();
        Storage::setUp();
        core = KestrioCore::make(context());
    }

    void configure() {
        core->configure(u"env"_s);
        finish();
    }

    KestrioCore::TrackHandler handler() {
        return [this](SurveyState state) {
            EXPECT_EQ(QThread::currentThread(), QCoreApplication::instance()->thread());
            states.append(state);
        };
    }

    /// What a handler is told of an event now; absent when it is not called.
    std::optional<SurveyState> track() {
        const qsizetype before = states.size();
        core->track(u"Event"_s, handler());
        finish();
        return states.size() == before ? std::nullopt : std::optional(states.last());
    }

    /// The names of the events that came in batches, in their order.
    QStringList batchedEvents() const {
        QStringList names;
        for (const QJsonObject &batch : bodies("POST /events/batch")) {
            for (const QJsonValue event : batch["events"_L1].toArray())
                names.append(event["event"_L1].toString());
        }
        return names;
    }

    static QString identityUrl() { return *Storage::localLibraryURL("VisitorData"_L1); }
    static QByteArray identity() {
        QFile file(identityUrl());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    static void setIdentity(const QByteArray &text) {
        QFile file(identityUrl());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }

    std::shared_ptr<KestrioCore> core = KestrioCore::make(context());
    QList<SurveyState> states;
};

} // namespace KestrioKit
