#include "KestrioKit/Core/Queue/SubmissionQueue.h"

namespace KestrioKit {

namespace {

template <typename Body>
void storeRecords(QList<Body> &bodies, const QueueRunner &runner) {
    QList<QueueableRequest> requests = runner.recordsToPersist();
    bodies.reserve(requests.size());
    for (QueueableRequest &request : requests) {
        if (Body *const body = std::get_if<Body>(&request))
            bodies.append(std::move(*body));
    }
}

template <typename Body>
void restoreRecords(const QList<Body> &bodies, QueueRunner &runner, const Clock &clock) {
    QList<QueueTask> tasks;
    tasks.reserve(bodies.size());
    for (const Body &body : bodies)
        tasks.append(makeQueueTask(body, clock));
    runner.take(tasks);
}

template <typename Runners, typename Visit>
void forEachKind(const Runners &runners, const Visit &visit) {
    std::apply([&, runner = runners.begin()](
                   const auto &...kind) mutable { (visit(kind, **runner++), ...); },
               recordKinds);
}

} // namespace

// Saving

void SubmissionQueue::save() {
    m_saveSchedule.recordsSent(savingBlock(AfterSave::search));
}

Block SubmissionQueue::savingBlock(AfterSave next) {
    return [weak = weak_from_this(), next] {
        if (const auto self = weak.lock())
            self->saveState(next);
    };
}

void SubmissionQueue::saveState(AfterSave next) {
    ++m_savesWaiting;
    m_queue.async([self = shared_from_this(), next,
                   task = ApplicationLifecycle::shared().beginBackgroundTask()] {
        // When several saves wait, the last one covers all of them.
        if (--self->m_savesWaiting > 0)
            return;
        self->m_saveSchedule.saved();
        if (self->m_isErased)
            return;
        self->m_storedState.store(self->currentState(), task);
        if (next == AfterSave::search)
            self->searchAfterSave();
    });
}

PersistentQueue SubmissionQueue::currentState() const {
    PersistentQueue state;
    state.visitorIdentifier = m_visitorIdentifier;
    state.visitorToken = m_visitorToken;
    forEachKind(m_runners, [&state](const auto &kind, const QueueRunner &runner) {
        storeRecords(state.*kind.stored, runner);
    });
    return state;
}

void SubmissionQueue::clear() {
    for (const auto &runner : m_runners)
        runner->clear();
    m_storedState.remove();
}

void SubmissionQueue::erase() {
    m_queue.async(
        [self = shared_from_this(), task = ApplicationLifecycle::shared().beginBackgroundTask()] {
            for (const auto &runner : self->m_runners)
                runner->clear();
            self->setIdentity({}, {});
            self->m_isErased = true;
            self->m_storedState.erase(task);
        });
}

// Restoring

void SubmissionQueue::loadState() {
    adopt(m_storedState.load(m_visitorIdentifier));
}

// The owner searches only after a save, so that an idle process does not wake up for it.
void SubmissionQueue::searchAfterSave() {
    if (m_searchesAfterSaves && m_clock.now() >= m_nextSearch)
        search();
}

void SubmissionQueue::searchLater() {
    m_queue.asyncAfter(m_nextSearch, std::make_shared<DispatchWorkItem>([weak = weak_from_this()] {
                           if (const auto self = weak.lock())
                               self->search();
                       }));
}

void SubmissionQueue::search() {
    m_nextSearch = DispatchTime::distantFuture();
    m_storedState.run(
        [weak = weak_from_this(), visitor = m_visitorIdentifier](StateFolder &folder) {
            const StateFolder::Found found = folder.search(visitor);
            if (const auto self = weak.lock())
                self->m_queue.async([self, found] { self->adopt(found); });
        });
}

void SubmissionQueue::adopt(const StateFolder::Found &found) {
    StateFolder::LeftFiles taken;
    bool isAll = true;
    for (const auto &[state, file] : found.states) {
        // The process's own file is always restored. Another process's file is left alone until it
        // fits without dropping records.
        const bool fits = !file || state.fitsBeside(currentState(), m_queueLimit);
        isAll = isAll && fits;
        if (!fits)
            continue;
        // Records of a visitor that is no longer the current one are discarded.
        if (!m_isErased && state.visitorIdentifier == m_visitorIdentifier)
            restore(state);
        if (file)
            taken.append(file);
    }
    if (!taken.isEmpty()) {
        // After an erasure there is nothing to store.
        if (!m_isErased)
            m_storedState.store(currentState());
        m_storedState.run([taken](StateFolder &folder) { folder.removeOnceStored(taken); });
    }
    m_nextSearch = m_clock.now() + double(searchInterval.count());
    m_searchesAfterSaves = found.owns && isAll;
    if (!m_searchesAfterSaves)
        searchLater();
}

void SubmissionQueue::restore(const PersistentQueue &state) {
    forEachKind(m_runners, [&](const auto &kind, QueueRunner &runner) {
        restoreRecords(state.*kind.stored, runner, m_clock);
    });
    if (state.hasMessages())
        flushAll();
}

} // namespace KestrioKit
