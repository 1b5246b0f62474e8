#pragma once

#include "KestrioKit/Core/Facade/KestrioCore.h"
#include "KestrioKit/Core/Platform/Storage.h"
#include "tests/support/OnlineFixture.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QThread>

namespace KestrioKit {

using namespace Qt::StringLiterals;

/// A facade in an environment "env" whose service gives visitor 1 with the token "t1".
class KestrioCoreTest : public OnlineFixture {
protected:
    static constexpr auto configLine = "GET /1/environments/env/config";
    static constexpr auto visitorLine = "POST /1/environments/env/visitors";
    static constexpr auto attachLine = "PUT /1/environments/env/visitors/1";

    void SetUp() override { startAfresh(); }

    /// Another process, on a machine that has none of the library's files but this identity.
    void startAfresh(const LocalData &identity = {}) {
        core.reset();
        finish();
        folder().removeRecursively();
        Storage::setUp();
        Storage::store(std::optional(identity), identityUrl());
        answer(visitorLine, {200, R"({"vid":1,"token":"t1"})"});
        answer("POST /events", {200, "null"});
        core = KestrioCore::make(context());
    }

    void configure() {
        core->configure(u"env"_s);
        finish();
    }

    void later(double seconds) {
        advance(seconds);
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
        states.clear();
        core->track(u"Event"_s, handler());
        finish();
        return states.isEmpty() ? std::nullopt : std::optional(states.last());
    }

    static QString identityUrl() { return *Storage::localLibraryURL("VisitorData"_L1); }
    static QDir folder() { return QFileInfo(identityUrl()).dir(); }
    static QStringList storedFiles() { return folder().entryList({u"*.json*"_s}, QDir::Files); }
    static QByteArray identity() {
        QFile file(identityUrl());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    std::shared_ptr<KestrioCore> core;
    QList<SurveyState> states;
};

} // namespace KestrioKit
