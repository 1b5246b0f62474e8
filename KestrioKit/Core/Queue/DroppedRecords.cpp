#include "KestrioKit/Core/Queue/DroppedRecords.h"

#include "KestrioKit/Core/Platform/Logging.h"

#include <algorithm>

namespace KestrioKit {

using namespace Qt::StringLiterals;

DroppedRecords::DroppedRecords(DispatchQueue queue, const Clock &clock, qsizetype queueLimit)
    : m_queue(std::move(queue)), m_clock(clock), m_queueLimit(queueLimit) {}

void DroppedRecords::add(qsizetype count) {
    m_count += count;
    if (m_count == 0 || std::exchange(m_waiting, true))
        return;
    m_queue.asyncAfter(std::max(m_clock.now() + double(delay.count()), m_earliest),
                       std::make_shared<DispatchWorkItem>([weak = weak_from_this()] {
                           if (const auto self = weak.lock()) {
                               self->m_waiting = false;
                               self->print();
                           }
                       }));
}

void DroppedRecords::print() {
    if (m_count == 0 || m_clock.now() < m_earliest)
        return;
    m_earliest = m_clock.now() + double(interval.count());
    logLine(LogLevel::error,
            u"[SubmissionQueue] Records dropped because more than %1 of a kind waited: %2"_s.arg(
                QString::number(m_queueLimit), QString::number(std::exchange(m_count, 0))));
}

} // namespace KestrioKit
