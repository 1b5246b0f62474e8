#pragma once

#include <QByteArrayList>

#include <chrono>

namespace KestrioKit {

/// What one kind of bad day came to: a row of the table that `scripts/faults` makes.
///
///     FaultRow row("killed while it saves", 300s);
///     const int kills = FaultRow::times(200, 10);
///     ...
///     row.add(kills, "kills");
///     row.add(lost, "records lost");
class FaultRow {
public:
    FaultRow(QByteArray fault, std::chrono::seconds limit);
    /// Prints the row. Taking longer than the limit fails the test.
    ~FaultRow();
    Q_DISABLE_COPY_MOVE(FaultRow)

    void add(qint64 count, const QByteArray &what);

    /// How often to try: `full` when KESTRIO_FAULTS is "full" in the environment, else `brief`.
    static int times(int full, int brief);

private:
    const QByteArray m_fault;
    const std::chrono::seconds m_limit;
    const std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
    QByteArrayList m_counts;
};

} // namespace KestrioKit
