#pragma once

#include "KestrioKit/Core/Platform/Threads/DispatchQueue.h"

#include <atomic>
#include <chrono>
#include <memory>

namespace KestrioKit {

/// Decides when records are saved that were appended, for hosts that do not want to lose them when
/// they are killed. Used on `queue` alone, unless it says otherwise.
class PromptSaves {
public:
    /// Records that are appended together are saved together.
    static constexpr std::chrono::milliseconds delay{50};
    /// At most one save is asked for in this time.
    static constexpr std::chrono::milliseconds interval{200};

    /// `clock` must outlive this object.
    PromptSaves(DispatchQueue queue, const Clock &clock);

    /// False at first. Thread-safe.
    bool enabled() const { return m_enabled; }
    void setEnabled(bool enabled) { m_enabled = enabled; }

    /// Has `save` run on the queue soon, unless one is waiting.
    void request(Block save);
    /// Says that everything is being saved now, whoever asked for it.
    void saved();

private:
    std::atomic<bool> m_enabled = false;
    DispatchQueue m_queue;
    const Clock &m_clock;
    /// Absent unless a save waits until `m_due`.
    std::shared_ptr<DispatchWorkItem> m_waiting;
    DispatchTime m_due;
    DispatchTime m_earliest;
};

} // namespace KestrioKit
