#pragma once

#include "KestrioKit/Core/Platform/LibraryContext.h"
#include "KestrioKit/Core/Platform/Threads/ApplicationLifecycle.h"
#include "KestrioKit/Core/Queue/BatchRecordQueueRunner.h"
#include "KestrioKit/Core/Queue/DroppedRecords.h"
#include "KestrioKit/Core/Queue/PersistentQueue.h"
#include "KestrioKit/Core/Queue/PromptSaves.h"
#include "KestrioKit/Core/Queue/Reachability.h"
#include "KestrioKit/Core/Queue/SingleRecordQueueRunner.h"
#include "KestrioKit/Core/Queue/StateFile.h"

#include <array>
#include <atomic>
#include <functional>
#include <memory>

namespace KestrioKit {

/// Everything that is still to be sent, in five runners and one state file.
///
/// The file holds what the runners did at the last save: after each finished send, when the
/// application stops being active, when it ends, and soon after each request where the host wants
/// that. Bulk changes of attributes are not in it. Several processes may use one folder: records
/// that one leaves are sent by another, or by the next.
///
/// Runners are paused while the network cannot be reached. All operations may be called from any
/// thread and return at once; lists are touched on the library's thread alone.
class SubmissionQueue final : public QueueRunnerDelegate,
                              public std::enable_shared_from_this<SubmissionQueue> {
public:
    /// The queue of `api`'s present visitor, with what the state file still holds for it. No more
    /// than `queueLimit` records of a kind wait.
    static std::shared_ptr<SubmissionQueue>
    make(std::weak_ptr<SubmissionSender> api, const LibraryContext &context,
         qsizetype queueLimit = QueueRunner::defaultQueueLimit);
    ~SubmissionQueue() override;
    Q_DISABLE_COPY_MOVE(SubmissionQueue)

    /// While true, new requests are dropped; false at first.
    void setDisableNetworkAccess(bool disable) { m_disableNetworkAccess = disable; }

    /// While true, what is appended is saved soon after; false at first. What is queued already is
    /// not saved for it.
    void setSavesPromptly(bool saves) { m_promptSaves.setEnabled(saves); }

    /// Queues a task for the runner of its kind.
    void appendRequest(QueueTask task);
    /// Queues a body whose outcome nobody waits for.
    void appendRequest(QueueableRequest request);

    /// Says whose records these are from now on, and as whom they are sent. Another visitor empties
    /// the queue and its file.
    void updateAuth(std::optional<qint64> visitorIdentifier, std::optional<QString> token);

    /// Sends what is ready, or pauses while there is no network or the service is disabled.
    void resume();

    /// Has the state file written, which the end of the application waits for.
    void save() override;
    void tasksDropped(qsizetype count) override { m_droppedRecords->add(count); }

    /// How long after a search for what other processes have left the next one may come.
    static constexpr std::chrono::seconds searchInterval{10};

    /// Calls `report` on the library's thread: whether nothing is being sent and nothing is ready.
    void reportIdle(std::function<void(bool idle)> report);

private:
    using Runners = std::array<std::shared_ptr<QueueRunner>, recordKindCount>;

    SubmissionQueue(std::weak_ptr<SubmissionSender> api, const LibraryContext &context,
                    qsizetype queueLimit);

    Runners makeRunners() const;

    void start();
    void observeApplication();
    void configureReachability();
    void report(const ReachabilityError &error);
    void networkReachable();
    void networkUnreachable();
    bool serviceEnabled() const;
    void enableAll(bool enabled);
    void enableRunners();
    void flushAll();
    void appendAndSave(const std::shared_ptr<QueueRunner> &target, QueueTask task);
    /// Whether a save is followed by a search for what other processes have left. At the end of the
    /// application nothing is taken over: it would only be sent twice.
    enum class AfterSave { rest, search };
    void saveState(AfterSave next);
    void loadState();
    void searchAfterSave();
    void searchLater();
    void search();
    void adopt(const StateFolder::Found &found);
    void restore(const PersistentQueue &state);
    void clear();
    void setIdentity(std::optional<qint64> visitorIdentifier, std::optional<QString> token);
    PersistentQueue currentState() const;
    const std::shared_ptr<QueueRunner> &runner(const QueueableRequest &request) const;

    const Clock &m_clock;
    ReachabilityFlagsSourceFactory m_makeFlagsSource;
    Executor &m_executor;
    std::weak_ptr<SubmissionSender> m_api;
    std::atomic<bool> m_disableNetworkAccess = false;
    DispatchQueue m_queue;
    const qsizetype m_queueLimit;
    std::shared_ptr<DroppedRecords> m_droppedRecords;
    StateFile m_stateFile;
    PromptSaves m_promptSaves;
    std::atomic<int> m_savesWaiting = 0;
    /// Whether searches wait for a save, and when the next one may be; used on the queue alone.
    bool m_searchesAfterSaves = false;
    DispatchTime m_nextSearch;
    /// Of the records that are queued; used on the queue alone.
    std::optional<qint64> m_visitorIdentifier;
    std::optional<QString> m_visitorToken;
    /// One for each of `recordKinds`.
    const Runners m_runners;
    ApplicationLifecycle::Observation m_lastSaveObserver;
    ApplicationLifecycle::Observation m_willResignActiveObserver;
    std::shared_ptr<Reachability> m_reachability;
};

} // namespace KestrioKit
