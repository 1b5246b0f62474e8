#include "KestrioKit/Core/Queue/SaveSchedule.h"

#include <algorithm>

namespace KestrioKit {

namespace {

DispatchTime later(DispatchTime time, std::chrono::milliseconds wait) {
    return {time.sinceReference + wait};
}

} // namespace

SaveSchedule::SaveSchedule(DispatchQueue queue, const Clock &clock)
    : m_queue(std::move(queue)), m_clock(clock) {}

void SaveSchedule::request(Pace &pace, Block save) {
    const DispatchTime now = m_clock.now();
    const DispatchTime due = std::max(later(now, pace.delay), pace.earliest);
    if (due <= now) {
        pace.earliest = later(now, pace.interval);
        return save();
    }
    if (m_waiting && m_due <= due)
        return;
    if (m_waiting)
        m_waiting->cancel();
    m_due = due;
    m_pace = &pace;
    m_waiting = std::make_shared<DispatchWorkItem>(std::move(save));
    m_queue.asyncAfter(m_due, m_waiting);
}

void SaveSchedule::saved() {
    if (!m_waiting)
        return;
    if (m_clock.now() >= m_due)
        m_pace->earliest = later(m_clock.now(), m_pace->interval);
    m_waiting->cancel();
    m_waiting.reset();
}

} // namespace KestrioKit
