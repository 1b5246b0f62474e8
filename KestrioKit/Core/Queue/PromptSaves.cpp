#include "KestrioKit/Core/Queue/PromptSaves.h"

#include <algorithm>

namespace KestrioKit {

namespace {

DispatchTime later(DispatchTime time, std::chrono::milliseconds wait) {
    return {time.sinceReference + wait};
}

} // namespace

PromptSaves::PromptSaves(DispatchQueue queue, const Clock &clock)
    : m_queue(std::move(queue)), m_clock(clock) {}

void PromptSaves::request(Block save) {
    if (m_waiting)
        return;
    m_due = std::max(later(m_clock.now(), delay), m_earliest);
    m_waiting = std::make_shared<DispatchWorkItem>(std::move(save));
    m_queue.asyncAfter(m_due, m_waiting);
}

void PromptSaves::saved() {
    if (!m_waiting)
        return;
    if (m_clock.now() >= m_due)
        m_earliest = later(m_clock.now(), interval);
    m_waiting->cancel();
    m_waiting.reset();
}

} // namespace KestrioKit
