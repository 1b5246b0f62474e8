#include "KestrioKit/Core/Queue/SubmissionQueue.h"

#include "KestrioKit/Core/Platform/Logging.h"

#include <algorithm>

namespace KestrioKit {

using namespace Qt::StringLiterals;

std::shared_ptr<SubmissionQueue> SubmissionQueue::make(std::weak_ptr<SubmissionSender> api,
                                                       const LibraryContext &context,
                                                       qsizetype queueLimit) {
    std::shared_ptr<SubmissionQueue> queue(
        new SubmissionQueue(std::move(api), context, queueLimit));
    queue->start();
    return queue;
}

SubmissionQueue::SubmissionQueue(std::weak_ptr<SubmissionSender> api, const LibraryContext &context,
                                 qsizetype queueLimit)
    : m_clock(context.clock),
      m_makeFlagsSource(context.makeFlagsSource),
      m_executor(context.executor),
      m_api(std::move(api)),
      m_queue(u"KestrioSubmissionQueue"_s, context.executor),
      m_queueLimit(queueLimit),
      m_droppedRecords(std::make_shared<DroppedRecords>(m_queue, m_clock, queueLimit)),
      m_storedState(context.fileExecutor, queueLimit),
      m_saveSchedule(m_queue, context.clock),
      m_runners(makeRunners()) {}

SubmissionQueue::Runners SubmissionQueue::makeRunners() const {
    return std::apply(
        [this](const auto &...kind) { return Runners{makeRunner(kind.key, kind.sending)...}; },
        recordKinds);
}

std::shared_ptr<QueueRunner> SubmissionQueue::makeRunner(std::string_view key,
                                                         Sending sending) const {
    const QString name = QString::fromLatin1(key).toUpper();
    if (sending == Sending::inBatches)
        return std::make_shared<BatchRecordQueueRunner>(m_api, m_queue, m_clock, name,
                                                        m_queueLimit);
    return std::make_shared<SingleRecordQueueRunner>(m_api, m_queue, m_clock, name, m_queueLimit);
}

SubmissionQueue::~SubmissionQueue() {
    if (m_reachability)
        m_reachability->stopNotifier();
}

void SubmissionQueue::start() {
    for (const auto &runner : m_runners)
        runner->setDelegate(weak_from_this());
    configureReachability();
    if (const auto sender = m_api.lock())
        setIdentity(sender->visitorIdentifier(), sender->authorizationToken());
    // This must be the first block: stored records then precede new requests, and the initial
    // network state precedes later changes. It runs on the queue because reading a large file would
    // block the caller.
    m_queue.async([self = shared_from_this()] {
        self->enableRunners();
        self->loadState();
    });
    // Observing starts last: a save that precedes the first block would overwrite the stored state
    // with an empty one.
    observeApplication();
}

void SubmissionQueue::observeApplication() {
    using Event = ApplicationLifecycle::Event;
    ApplicationLifecycle &lifecycle = ApplicationLifecycle::shared();
    m_lastSaveObserver = lifecycle.observe(Event::lastSave, [weak = weak_from_this()] {
        if (const auto self = weak.lock()) {
            self->m_queue.async([dropped = self->m_droppedRecords] { dropped->print(); });
            self->saveState(AfterSave::rest);
        }
    });
    m_willResignActiveObserver =
        lifecycle.observe(Event::willResignActive, savingBlock(AfterSave::rest));
}

void SubmissionQueue::appendRequest(QueueTask task) {
    if (m_disableNetworkAccess)
        return;
    const std::shared_ptr<QueueRunner> &target = runner(task.request);
    if (m_saveSchedule.savesPromptly())
        appendAndSave(target, std::move(task));
    else
        target->append(std::move(task));
    if (!std::ranges::all_of(m_runners, &QueueRunner::enabled, &std::shared_ptr<QueueRunner>::get))
        resume();
}

// The save is requested in the block that appends, so that the caller posts only one block.
void SubmissionQueue::appendAndSave(const std::shared_ptr<QueueRunner> &target, QueueTask task) {
    m_queue.async([self = shared_from_this(), target, task = std::move(task)] {
        target->take({task});
        self->m_saveSchedule.recordsAppended(self->savingBlock(AfterSave::rest));
    });
}

void SubmissionQueue::appendRequest(QueueableRequest request) {
    appendRequest(makeQueueTask(std::move(request), m_clock));
}

const std::shared_ptr<QueueRunner> &SubmissionQueue::runner(const QueueableRequest &request) const {
    return std::visit(
        [this](const auto &body) -> auto & {
            using Body = std::decay_t<decltype(body)>;
            return m_runners[recordKindIndex<Body>(recordKinds)];
        },
        request);
}

// One block does both, so that no save and no send mixes two visitors.
void SubmissionQueue::updateAuth(std::optional<qint64> visitorIdentifier,
                                 std::optional<QString> token) {
    m_queue.async([self = shared_from_this(), visitorIdentifier, token = std::move(token)] {
        if (visitorIdentifier != self->m_visitorIdentifier)
            self->clear();
        self->setIdentity(visitorIdentifier, token);
        self->m_isErased = self->m_isErased && !visitorIdentifier;
    });
}

void SubmissionQueue::setIdentity(std::optional<qint64> visitorIdentifier,
                                  std::optional<QString> token) {
    m_visitorIdentifier = visitorIdentifier;
    m_visitorToken = std::move(token);
    for (const auto &runner : m_runners)
        runner->setIdentity(m_visitorIdentifier, m_visitorToken);
}

bool SubmissionQueue::isIdle() const {
    return !m_saveSchedule.isWaiting() &&
           std::ranges::all_of(m_runners, &QueueRunner::isIdle, &std::shared_ptr<QueueRunner>::get);
}

// Nothing notifies the queue when the service is enabled again, for example by a second
// configuration. Each new request therefore checks again.
void SubmissionQueue::resume() {
    m_queue.async([self = shared_from_this()] {
        self->enableRunners();
        self->flushAll();
    });
}

void SubmissionQueue::enableRunners() {
    const bool reachable =
        m_reachability && m_reachability->connection() != Reachability::Connection::unavailable;
    setAllEnabled(reachable && serviceEnabled());
}

void SubmissionQueue::configureReachability() {
    const auto sender = m_api.lock();
    if (!sender)
        return;
    const Reachability::Creation creation = Reachability::create(
        m_makeFlagsSource(sender->serviceHost()), m_executor, &DispatchQueue::main());
    if (const auto *const error = std::get_if<ReachabilityError>(&creation)) {
        report(*error);
        return;
    }
    m_reachability = std::get<std::shared_ptr<Reachability>>(creation);
    const auto onChange = [weak = weak_from_this()](void (SubmissionQueue::*change)()) {
        return [weak, change](Reachability &) {
            if (const auto self = weak.lock())
                (*self.*change)();
        };
    };
    m_reachability->setWhenReachable(onChange(&SubmissionQueue::networkReachable));
    m_reachability->setWhenUnreachable(onChange(&SubmissionQueue::networkUnreachable));
    if (const auto error = m_reachability->startNotifier())
        report(*error);
}

// Reported asynchronously, since the sender is still constructing this queue.
void SubmissionQueue::report(const ReachabilityError &error) {
    m_queue.async([api = m_api, error] {
        if (const auto sender = api.lock())
            sender->handleError(error.toError());
    });
}

void SubmissionQueue::networkReachable() {
    m_queue.async([self = shared_from_this()] {
        KSLog(LogLevel::info, "[SubmissionQueue] Reachable = true. Enabling queues");
        self->setAllEnabled(self->serviceEnabled());
        self->flushAll();
    });
}

void SubmissionQueue::networkUnreachable() {
    m_queue.async([self = shared_from_this()] {
        KSLog(LogLevel::info, "[SubmissionQueue] Reachable = false. Disabling queues");
        self->setAllEnabled(false);
    });
}

bool SubmissionQueue::serviceEnabled() const {
    const auto sender = m_api.lock();
    return sender && !sender->disabledError();
}

void SubmissionQueue::setAllEnabled(bool enabled) {
    for (const auto &runner : m_runners)
        runner->setEnabled(enabled);
}

void SubmissionQueue::flushAll() {
    for (const auto &runner : m_runners)
        runner->flush();
}

} // namespace KestrioKit
