#pragma once

#include "KestrioKit/Core/Platform/LibraryContext.h"
#include "KestrioKit/Core/Platform/StoredRecord.h"
#include "KestrioKit/Core/Platform/Threads/ApplicationLifecycle.h"
#include "KestrioKit/Core/Queue/BatchRecordQueueRunner.h"
#include "KestrioKit/Core/Queue/DroppedRecords.h"
#include "KestrioKit/Core/Queue/PersistentQueue.h"
#include "KestrioKit/Core/Queue/Reachability.h"
#include "KestrioKit/Core/Queue/SaveSchedule.h"
#include "KestrioKit/Core/Queue/SingleRecordQueueRunner.h"
#include "KestrioKit/Core/Queue/StateFolder.h"

#include <array>
#include <atomic>
#include <memory>

namespace KestrioKit {

/// Holds all unsent records: one runner per record kind and one state file.
///
/// The state file is written within 20 ms after each completed send, when the application becomes
/// inactive and when it ends. With `setSavesPromptly(true)` it is also written shortly after each
/// new request.
/// Bulk attribute changes are never stored. Several processes may share the folder: records that
/// one process leaves behind are sent by another process or at the next start-up.
///
/// Runners are paused while the network is unreachable. All operations may be called from any
/// thread and return immediately. The lists are only used on the library's thread.
class SubmissionQueue final : public QueueRunnerDelegate,
                              public std::enable_shared_from_this<SubmissionQueue> {
public:
    /// Returns the queue of the current visitor of `api`. It loads the records that the state file
    /// holds for this visitor. At most `queueLimit` records of each kind wait. The executors and
    /// the clock of `context` must outlive the queue.
    static std::shared_ptr<SubmissionQueue>
    make(std::weak_ptr<SubmissionSender> api, const LibraryContext &context,
         qsizetype queueLimit = QueueRunner::defaultQueueLimit);
    ~SubmissionQueue() override;
    Q_DISABLE_COPY_MOVE(SubmissionQueue)

    /// While true, new requests are dropped. Default: false.
    void setDisableNetworkAccess(bool disable) { m_disableNetworkAccess = disable; }

    /// While true, each appended request is saved shortly afterwards. Default: false. Switching
    /// this on does not save the requests that are already queued.
    void setSavesPromptly(bool saves) { m_saveSchedule.setSavesPromptly(saves); }

    /// Appends a task to the runner of its record kind. Ignored while network access is disabled.
    void appendRequest(QueueTask task);
    /// Appends a request without a completion.
    void appendRequest(QueueableRequest request);

    /// Sets the visitor and the token with which records are sent from now on. If the visitor
    /// changes, the queue and its file are emptied first.
    void updateAuth(std::optional<qint64> visitorIdentifier, std::optional<QString> token);

    /// Drops all records and removes everything that is stored. The end of the application waits
    /// for the removal. Nothing is stored again until `updateAuth()` sets a visitor.
    void erase();

    /// Enables the runners and sends the ready tasks. Pauses the runners instead if the network is
    /// unreachable or the service is disabled.
    void resume();

    /// Writes the state file in the background: immediately, or together with other changes if it
    /// was written a moment ago. The end of the application waits for the write. To be called on
    /// the library's thread.
    void save() override;
    /// Counts tasks that a runner dropped, for the log. Called on the library's thread.
    void tasksDropped(qsizetype count) override { m_droppedRecords->add(count); }

    /// The minimum time between two searches for records that other processes left behind.
    static constexpr std::chrono::seconds searchInterval{10};

    /// Returns whether no record is in flight, no task is ready, and no save is scheduled. To be
    /// called on the library's thread.
    bool isIdle() const;

private:
    using Runners = std::array<std::shared_ptr<QueueRunner>, recordKindCount>;

    SubmissionQueue(std::weak_ptr<SubmissionSender> api, const LibraryContext &context,
                    qsizetype queueLimit);

    Runners makeRunners() const;
    std::shared_ptr<QueueRunner> makeRunner(std::string_view key, Sending sending) const;

    /// Connects runners, network and application, and loads the stored records.
    void start();
    void observeApplication();
    void configureReachability();
    void report(const ReachabilityError &error);
    void networkReachable();
    void networkUnreachable();
    bool serviceEnabled() const;
    void setAllEnabled(bool enabled);
    void enableRunners();
    void flushAll();
    /// Appends the task and requests a prompt save in the same block.
    void appendAndSave(const std::shared_ptr<QueueRunner> &target, QueueTask task);
    /// Whether a save is followed by a search for records that other processes left behind. The
    /// last save of the application must not search: records taken over then would only be sent
    /// twice.
    enum class AfterSave { rest, search };
    void saveState(AfterSave next);
    /// Returns a block that saves the state if the queue still exists.
    Block savingBlock(AfterSave next);
    void loadState();
    /// Searches if `m_nextSearch` has passed. Used while this process owns the stored state.
    void searchAfterSave();
    /// Schedules the next search for `m_nextSearch`, whether or not anything is saved.
    void searchLater();
    void search();
    /// Takes over the records that were found, as far as they fit into the lists.
    void adopt(const StateFolder::Found &found);
    /// Appends the stored records to the runners.
    void restore(const PersistentQueue &state);
    /// Empties all runners and removes the file.
    void clear();
    void setIdentity(std::optional<qint64> visitorIdentifier, std::optional<QString> token);
    /// Returns the records to store.
    PersistentQueue currentState() const;
    /// Returns the runner that sends this request.
    const std::shared_ptr<QueueRunner> &runner(const QueueableRequest &request) const;

    const Clock &m_clock;
    ReachabilityFlagsSourceFactory m_makeFlagsSource;
    Executor &m_executor;
    std::weak_ptr<SubmissionSender> m_api;
    std::atomic<bool> m_disableNetworkAccess = false;
    DispatchQueue m_queue;
    const qsizetype m_queueLimit;
    std::shared_ptr<DroppedRecords> m_droppedRecords;
    StoredRecord<PersistentQueue, StateFolder> m_storedState;
    SaveSchedule m_saveSchedule;
    /// The number of saves that wait on the queue. Only the last one is carried out.
    std::atomic<int> m_savesWaiting = 0;
    /// `m_searchesAfterSaves`: whether the next search runs after a save instead of at a set time.
    /// `m_nextSearch`: the earliest time of that search. Both are only used on `m_queue`.
    bool m_searchesAfterSaves = false;
    DispatchTime m_nextSearch;
    /// Whether `erase()` was called last. Only used on `m_queue`.
    bool m_isErased = false;
    /// The visitor and the token of the queued records. Only used on `m_queue`.
    std::optional<qint64> m_visitorIdentifier;
    std::optional<QString> m_visitorToken;
    /// One runner for each entry of `recordKinds`, in the same order.
    const Runners m_runners;
    ApplicationLifecycle::Observation m_lastSaveObserver;
    ApplicationLifecycle::Observation m_willResignActiveObserver;
    std::shared_ptr<Reachability> m_reachability;
};

} // namespace KestrioKit
