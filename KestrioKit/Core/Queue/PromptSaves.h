#pragma once

#include "KestrioKit/Core/Platform/Threads/DispatchQueue.h"

#include <atomic>
#include <chrono>
#include <memory>

namespace KestrioKit {

/// Schedules a save shortly after records are appended, for hosts that must not lose records when
/// they are killed. Only used on `queue`, except for `enabled()` and `setEnabled()`.
class PromptSaves {
public:
    /// How long a save waits, so that records appended together are saved together.
    static constexpr std::chrono::milliseconds delay{50};
    /// The minimum time between two requested saves.
    static constexpr std::chrono::milliseconds interval{200};

    /// `clock` must outlive this object.
    PromptSaves(DispatchQueue queue, const Clock &clock);

    /// Whether appended records are saved promptly. Default: false. Thread-safe.
    bool enabled() const { return m_enabled; }
    void setEnabled(bool enabled) { m_enabled = enabled; }

    /// Runs `save` on the queue after `delay`, or later if `interval` requires it. Does nothing if
    /// a save is already scheduled.
    void request(Block save);
    /// To be called at every save, whoever requested it. Cancels the scheduled save.
    void saved();

private:
    std::atomic<bool> m_enabled = false;
    DispatchQueue m_queue;
    const Clock &m_clock;
    /// The save scheduled for `m_due`, or null.
    std::shared_ptr<DispatchWorkItem> m_waiting;
    DispatchTime m_due;
    /// The next save does not run before this time.
    DispatchTime m_earliest;
};

} // namespace KestrioKit
