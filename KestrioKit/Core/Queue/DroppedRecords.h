#pragma once

#include "KestrioKit/Core/Platform/Threads/DispatchQueue.h"

#include <chrono>
#include <memory>

namespace KestrioKit {

/// Logs how many records were dropped because too many waited. The line is for the developers of
/// the host application and is printed at every log level, at most once per minute. Only used on
/// `queue`.
class DroppedRecords : public std::enable_shared_from_this<DroppedRecords> {
public:
    /// How long drops are collected before the line is printed.
    static constexpr std::chrono::seconds delay{1};
    /// The minimum time between two lines.
    static constexpr std::chrono::seconds interval{60};

    /// `clock` must outlive this object. `queueLimit` appears in the line. The object must be owned
    /// by a shared pointer.
    DroppedRecords(DispatchQueue queue, const Clock &clock, qsizetype queueLimit);

    /// Counts dropped records and schedules the line.
    void add(qsizetype count);
    /// Prints the line now. Does nothing if no records were dropped or if `interval` has not
    /// passed.
    void print();

private:
    DispatchQueue m_queue;
    const Clock &m_clock;
    qsizetype m_queueLimit;
    qsizetype m_count = 0;
    /// The next line is not printed before this time.
    DispatchTime m_earliest;
    /// Whether a line is scheduled.
    bool m_waiting = false;
};

} // namespace KestrioKit
