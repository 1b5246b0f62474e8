#pragma once

#include <gtest/gtest.h>

#include <QByteArrayList>
#include <QFile>
#include <QRegularExpression>

#include <chrono>
#include <limits>

namespace KestrioKit {

using namespace Qt::StringLiterals;

/// What one kind of bad day came to: a row of the table that `scripts/faults` makes.
class FaultRow {
public:
    FaultRow(QByteArray fault, std::chrono::seconds limit)
        : m_fault(std::move(fault)), m_limit(limit) {}
    /// Prints the row. Taking longer than the limit fails the test, but only in its full form, to
    /// which a machine is left.
    ~FaultRow() {
        const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - m_start;
        EXPECT_TRUE(!isFull() || taken <= m_limit) << "the time limit";
        std::printf("| %s | %s | %.1f s of %d s |\n", m_fault.constData(),
                    m_counts.join(", ").constData(), taken.count(), int(m_limit.count()));
    }
    Q_DISABLE_COPY_MOVE(FaultRow)

    /// How many there were of something. More than `most` fail the test.
    struct Count {
        qint64 count;
        QByteArray what;
        qint64 most = std::numeric_limits<qint64>::max();
    };
    void add(const QList<Count> &counts) {
        for (const auto &[count, what, most] : counts) {
            EXPECT_LE(count, most) << what.constData();
            m_counts.append(QByteArray::number(count) + ' ' + what);
        }
    }

    /// Whether KESTRIO_FAULTS is "full" in the environment.
    static bool isFull() { return qgetenv("KESTRIO_FAULTS") == "full"; }
    /// How often to try.
    static int times(int full, int brief) { return isFull() ? full : brief; }

private:
    const QByteArray m_fault;
    const std::chrono::seconds m_limit;
    const std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
    QByteArrayList m_counts;
};

/// The names "test-..." in the text, as often as they are there.
inline QStringList testNames(const QByteArray &text) {
    static const QRegularExpression name(u"test-[\\w-]+"_s);
    QStringList names;
    for (const QRegularExpressionMatch &match : name.globalMatch(QString::fromUtf8(text)))
        names.append(match.captured());
    return names;
}

/// A figure that the kernel tells of the process, such as "VmHWM:" in "status".
inline qint64 processKilobytes(const QString &file, const QByteArray &label) {
    QFile figures(u"/proc/self/"_s + file);
    EXPECT_TRUE(figures.open(QIODevice::ReadOnly));
    const QByteArray all = figures.readAll();
    return all.mid(all.indexOf(label) + label.size()).trimmed().split(' ')[0].toLongLong();
}

} // namespace KestrioKit
