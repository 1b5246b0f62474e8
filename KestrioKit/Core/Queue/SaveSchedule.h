#pragma once

#include "KestrioKit/Core/Platform/Threads/DispatchQueue.h"

#include <atomic>
#include <chrono>
#include <memory>

namespace KestrioKit {

/// Decides when the queue's records are saved, so that many changes share one save. Each save
/// makes the disk write, which takes longer than sending a record. Only used on `queue`, except for
/// `savesPromptly()` and `setSavesPromptly()`.
class SaveSchedule {
public:
    /// How long the first save waits for further records, and the minimum time between two saves,
    /// if records were appended.
    static constexpr std::chrono::milliseconds appendedDelay{50};
    static constexpr std::chrono::milliseconds appendedInterval{200};
    /// The same, if records were sent. A kill within this time sends them again.
    static constexpr std::chrono::milliseconds sentDelay{0};
    static constexpr std::chrono::milliseconds sentInterval{20};

    /// `clock` must outlive this object.
    SaveSchedule(DispatchQueue queue, const Clock &clock);

    /// Whether appended records are saved promptly, for hosts that must not lose records when they
    /// are killed. Default: false. Thread-safe.
    bool savesPromptly() const { return m_savesPromptly; }
    void setSavesPromptly(bool saves) { m_savesPromptly = saves; }

    /// Runs `save` after the delay, or later if the interval requires it. It runs before this
    /// function returns if it need not wait. Does nothing if an earlier save is scheduled.
    void recordsAppended(Block save) { request(m_appended, std::move(save)); }
    void recordsSent(Block save) { request(m_sent, std::move(save)); }
    /// To be called at every save, whoever requested it. Cancels the scheduled save.
    void saved();
    /// Whether a save is scheduled.
    bool isWaiting() const { return bool(m_waiting); }

private:
    struct Pace {
        std::chrono::milliseconds delay;
        std::chrono::milliseconds interval;
        /// The next save at this pace does not run before this time.
        DispatchTime earliest;
    };

    void request(Pace &pace, Block save);

    std::atomic<bool> m_savesPromptly = false;
    DispatchQueue m_queue;
    const Clock &m_clock;
    Pace m_appended{appendedDelay, appendedInterval, {}};
    Pace m_sent{sentDelay, sentInterval, {}};
    /// The scheduled save, or null, with its time and the pace that set it.
    std::shared_ptr<DispatchWorkItem> m_waiting;
    DispatchTime m_due;
    Pace *m_pace = nullptr;
};

} // namespace KestrioKit
