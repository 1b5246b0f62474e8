#pragma once

#include "KestrioKit/Core/Platform/Threads/DispatchQueue.h"

#include <chrono>
#include <memory>

namespace KestrioKit {

/// Tells the host's developers how many records were dropped because too many waited: in one line,
/// printed whatever the log level, for all of a minute. Used on `queue` alone.
class DroppedRecords : public std::enable_shared_from_this<DroppedRecords> {
public:
    /// How long a burst may go on before it is told of.
    static constexpr std::chrono::seconds delay{1};
    /// There is at most one line in this time.
    static constexpr std::chrono::seconds interval{60};

    /// `clock` must outlive this object. Owned by shared pointers only.
    DroppedRecords(DispatchQueue queue, const Clock &clock, qsizetype queueLimit);

    void add(qsizetype count);
    /// Prints the line now, unless there is nothing to tell or it is too early for another.
    void print();

private:
    DispatchQueue m_queue;
    const Clock &m_clock;
    qsizetype m_queueLimit;
    qsizetype m_count = 0;
    DispatchTime m_earliest;
    bool m_waiting = false;
};

} // namespace KestrioKit
