#include "benchmarks/BenchHost.h"

#include <QBoxLayout>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QLabel>
#include <QNetworkReply>
#include <QPushButton>
#include <QTimer>

#include <chrono>
#include <cstdio>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Qt keeps the thread of a host name look-up for 30 seconds.
constexpr auto idleAfter = 35s;
constexpr auto watchedTime = 60s;

void report(const QJsonObject &figures) {
    std::puts(QJsonDocument(figures).toJson(QJsonDocument::Compact).constData());
    std::fflush(stdout);
}

double milliseconds(std::chrono::steady_clock::duration time) {
    return std::chrono::duration<double, std::milli>(time).count();
}

/// Returns KiB.
int privateDirtyMemory() {
    QFile file(u"/proc/self/smaps_rollup"_s);
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : file.readAll().split('\n')) {
        if (line.startsWith("Private_Dirty:"))
            return line.simplified().split(' ').at(1).toInt();
    }
    return 0;
}

QStringList threads() {
    return QDir(u"/proc/self/task"_s).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
}

/// Returns how often the threads of the process have slept, which is how often they woke up.
int wakeUps() {
    int sum = 0;
    for (const QString &thread : threads()) {
        QFile file(u"/proc/self/task/%1/status"_s.arg(thread));
        if (!file.open(QIODevice::ReadOnly))
            continue;
        for (const QByteArray &line : file.readAll().split('\n')) {
            if (line.startsWith("voluntary_ctxt_switches:"))
                sum += line.simplified().split(' ').at(1).toInt();
        }
    }
    return sum;
}

void reportWakeUps(QJsonObject figures) {
    QTimer::singleShot(watchedTime, qApp, [figures, before = wakeUps()]() mutable {
        figures[u"wakeUps"_s] = wakeUps() - before;
        report(figures);
        QCoreApplication::quit();
    });
}

} // namespace

BenchHost::BenchHost(int &argc, char **argv) : m_application(argc, argv) {
    auto *const layout = new QVBoxLayout(&m_window);
    layout->addWidget(new QLabel(u"Corner Shop"_s));
    layout->addWidget(new QPushButton(u"Place order"_s));
    m_window.show();
    if (detail() == "online"_L1)
        makeRequest();
}

QString BenchHost::mode() {
    return QCoreApplication::arguments().value(1);
}

QString BenchHost::detail() {
    return QCoreApplication::arguments().value(2);
}

void BenchHost::makeRequest() {
    m_manager.emplace();
    const QUrl url(u"http://localhost:8080/host"_s);
    QNetworkReply *const reply = m_manager->get(QNetworkRequest(url));
    QObject::connect(reply, &QNetworkReply::finished, reply, &QObject::deleteLater);
}

void BenchHost::reportTimeOf(const std::function<void()> &block) {
    const auto start = std::chrono::steady_clock::now();
    block();
    const auto end = std::chrono::steady_clock::now();
    report({{u"microseconds"_s, milliseconds(end - start) * 1000}});
    QTimer::singleShot(0, qApp, &QCoreApplication::quit);
}

void BenchHost::reportWhenIdle() {
    QTimer::singleShot(idleAfter, qApp, [] {
        const int memory = privateDirtyMemory();
        const QJsonObject figures{{u"KiB"_s, memory}, {u"threads"_s, threads().size()}};
        if (detail() == "minute"_L1)
            return reportWakeUps(figures);
        report(figures);
        QCoreApplication::quit();
    });
}

void BenchHost::quit() {
    report({{u"quitAt"_s, milliseconds(std::chrono::steady_clock::now().time_since_epoch())}});
    QCoreApplication::quit();
}

int BenchHost::run() {
    return QCoreApplication::exec();
}
