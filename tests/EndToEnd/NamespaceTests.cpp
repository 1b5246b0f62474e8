#include "tests/support/Programs.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using namespace KestrioKit;
using namespace Qt::StringLiterals;

namespace {

const auto hostName = u"kestrio.localhost.test"_s;

/// Two hosts of the test's own, joined by one link: the service's, and the application's with a
/// default route over it.
class TwoHosts : public ::testing::Test {
protected:
    void SetUp() override {
        if (!ip({u"netns"_s, u"add"_s, service}) || !ip({u"netns"_s, u"add"_s, application}))
            GTEST_SKIP() << "network namespaces cannot be made here";
        QDir().mkpath(u"/etc/netns/"_s + application);
        QFile hosts(u"/etc/netns/%1/hosts"_s.arg(application));
        ASSERT_TRUE(hosts.open(QIODevice::WriteOnly));
        hosts.write("10.203.0.1 " + hostName.toUtf8() + '\n');
        hosts.close();
        for (const auto &arguments : QList<QStringList>{
                 {u"link"_s, u"add"_s, u"ks0"_s, u"netns"_s, service, u"type"_s, u"veth"_s,
                  u"peer"_s, u"name"_s, u"ks1"_s, u"netns"_s, application},
                 {u"-n"_s, service, u"addr"_s, u"add"_s, u"10.203.0.1/24"_s, u"dev"_s, u"ks0"_s},
                 {u"-n"_s, application, u"addr"_s, u"add"_s, u"10.203.0.2/24"_s, u"dev"_s,
                  u"ks1"_s},
                 {u"-n"_s, service, u"link"_s, u"set"_s, u"ks0"_s, u"up"_s},
                 {u"-n"_s, service, u"link"_s, u"set"_s, u"lo"_s, u"up"_s},
                 {u"-n"_s, application, u"link"_s, u"set"_s, u"ks1"_s, u"up"_s}})
            ASSERT_TRUE(ip(arguments)) << qPrintable(arguments.join(u' '));
        ASSERT_TRUE(setDefaultRoute(true));
        // The kernel takes a while to call a new link a running one.
        ASSERT_TRUE(waitFor([this] { return linkIsUp(); }));
    }

    void TearDown() override {
        ip({u"netns"_s, u"del"_s, service});
        ip({u"netns"_s, u"del"_s, application});
        QDir(u"/etc/netns/"_s + application).removeRecursively();
    }

    static bool ip(const QStringList &arguments) {
        return RunningProgram(u"ip"_s, arguments).waitForEnd() == 0;
    }
    bool linkIsUp() const {
        RunningProgram show(u"ip"_s, {u"-n"_s, application, u"link"_s, u"show"_s, u"ks1"_s});
        show.waitForEnd();
        return show.output().contains("state UP");
    }
    static QStringList in(const QString &where, const QStringList &command) {
        return QStringList{u"netns"_s, u"exec"_s, where} + command;
    }
    bool setDefaultRoute(bool there) const {
        return ip({u"-n"_s, application, u"route"_s, there ? u"add"_s : u"del"_s, u"default"_s,
                   u"via"_s, u"10.203.0.1"_s});
    }
    bool serviceHolds(const QByteArray &text) const {
        RunningProgram curl(u"ip"_s,
                            in(service, {u"curl"_s, u"-s"_s, u"http://127.0.0.1:8080/records"_s}));
        curl.waitForEnd();
        return curl.output().contains(text);
    }

    const QString id = QString::number(QCoreApplication::applicationPid());
    const QString service = u"ks-service-"_s + id;
    const QString application = u"ks-app-"_s + id;
    QTemporaryDir data;
};

TEST_F(TwoHosts, sendingPausesWithoutADefaultRouteAndGoesOnWithIt) {
    RunningProgram server(u"ip"_s, in(service, {serviceProgramFile(), u"--database"_s,
                                                data.filePath(u"records.sqlite"_s)}));
    ASSERT_TRUE(waitFor([&] { return server.errors().contains("listening"); }));
    RunningProgram host(u"ip"_s, in(application, {hostProgramFile(), u"--script"_s, u"-"_s}),
                        {{u"XDG_DATA_HOME"_s, data.path()},
                         {u"KESTRIO_ENVIRONMENT"_s, {}},
                         {u"KESTRIO_HOSTNAME"_s, hostName},
                         {u"KESTRIO_LOG_LEVEL"_s, u"INFO"_s}});
    const auto said = [&](const char *what, int times) {
        return waitFor([&, times] { return host.output().count(what) == times; });
    };
    host.write("configure env\nwait-for visitor 10000\nwait-for idle 10000\nvisitor\n");
    ASSERT_TRUE(said("{\"visitor\":1}", 1)) << host.output().toStdString();
    for (int round = 1; round <= 3; ++round) {
        const QByteArray event = "Round" + QByteArray::number(round);
        ASSERT_TRUE(setDefaultRoute(false));
        ASSERT_TRUE(said("Reachable = false", round)) << host.output().toStdString();
        // The service itself is on the same link, so only the library's own judgement stops it.
        host.write("track " + event + "\nwait 200\nvisitor\n");
        ASSERT_TRUE(said("{\"visitor\":1}", 2 * round));
        EXPECT_FALSE(serviceHolds(event)) << host.output().toStdString();
        ASSERT_TRUE(setDefaultRoute(true));
        host.write("wait-for idle 10000\nvisitor\n");
        ASSERT_TRUE(said("{\"visitor\":1}", 2 * round + 1)) << host.output().toStdString();
        EXPECT_TRUE(serviceHolds(event));
    }
    host.endInput();
    EXPECT_EQ(host.waitForEnd(), 0);
}

} // namespace
