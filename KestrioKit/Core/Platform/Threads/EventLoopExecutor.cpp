#include "KestrioKit/Core/Platform/Threads/EventLoopExecutor.h"

#include <QBasicTimer>
#include <QCoreApplication>
#include <QEvent>
#include <QThread>
#include <QTimerEvent>

#include <algorithm>
#include <limits>

namespace KestrioKit {

class EventLoopExecutor::Receiver final : public QObject {
public:
    explicit Receiver(EventLoopExecutor &executor) : m_executor(executor) {}

protected:
    bool event(QEvent *event) override {
        if (event->type() != QEvent::User && event->type() != QEvent::Timer)
            return QObject::event(event);
        // The timer is armed before the blocks run, since a block may run a nested event loop.
        armTimer();
        m_executor.runBlocks();
        m_executor.runDueBlocks();
        armTimer();
        return true;
    }

private:
    void armTimer() {
        const std::optional<DispatchTime> deadline = m_executor.nextDeadline();
        if (!deadline)
            return m_timer.stop();
        const auto left = deadline->sinceReference - m_executor.m_clock.now().sinceReference;
        const qint64 milliseconds = std::chrono::ceil<std::chrono::milliseconds>(left).count();
        constexpr qint64 longest = std::numeric_limits<int>::max();
        m_timer.start(int(std::clamp<qint64>(milliseconds, 0, longest)), Qt::PreciseTimer, this);
    }

    EventLoopExecutor &m_executor;
    QBasicTimer m_timer;
};

EventLoopExecutor::EventLoopExecutor(const Clock &clock) : m_clock(clock) {}

EventLoopExecutor::~EventLoopExecutor() = default;

void EventLoopExecutor::attach(QThread *thread) {
    auto receiver = std::make_unique<Receiver>(*this);
    receiver->moveToThread(thread);
    // Runs on `thread` itself, where the receiver lives: a running timer must be stopped on its own
    // thread.
    QObject::connect(thread, &QThread::finished, receiver.get(), [this] { detach(); });
    const std::lock_guard guard(m_lock);
    m_receiver = std::move(receiver);
    m_wakePosted = false;
    wake();
}

void EventLoopExecutor::detach() {
    std::unique_ptr<Receiver> receiver;
    const std::lock_guard guard(m_lock);
    receiver = std::move(m_receiver);
}

void EventLoopExecutor::post(Block block) {
    const std::lock_guard guard(m_lock);
    m_blocks.push_back(std::move(block));
    wake();
}

void EventLoopExecutor::postAt(DispatchTime deadline, Block block) {
    const std::lock_guard guard(m_lock);
    m_timedBlocks.emplace(deadline, std::move(block));
    wake();
}

// Called with the lock held, so that the receiver cannot be destroyed meanwhile.
void EventLoopExecutor::wake() {
    if (!m_receiver || m_wakePosted)
        return;
    m_wakePosted = true;
    QCoreApplication::postEvent(m_receiver.get(), new QEvent(QEvent::User));
}

void EventLoopExecutor::runBlocks() {
    {
        const std::lock_guard guard(m_lock);
        m_wakePosted = false;
    }
    while (std::optional<Block> block = takeBlock())
        (*block)();
}

std::optional<Block> EventLoopExecutor::takeBlock() {
    const std::lock_guard guard(m_lock);
    if (m_blocks.empty())
        return std::nullopt;
    Block block = std::move(m_blocks.front());
    m_blocks.pop_front();
    // A block may run a nested event loop, such as a dialog of the host, which must run the
    // remaining blocks.
    if (!m_blocks.empty())
        wake();
    return block;
}

void EventLoopExecutor::runDueBlocks() {
    while (std::optional<Block> block = takeDueBlock())
        (*block)();
}

std::optional<Block> EventLoopExecutor::takeDueBlock() {
    const std::lock_guard guard(m_lock);
    const auto first = m_timedBlocks.begin();
    if (first == m_timedBlocks.end() || first->first > m_clock.now())
        return std::nullopt;
    return std::move(m_timedBlocks.extract(first).mapped());
}

std::optional<DispatchTime> EventLoopExecutor::nextDeadline() const {
    const std::lock_guard guard(m_lock);
    if (m_timedBlocks.empty())
        return std::nullopt;
    return m_timedBlocks.begin()->first;
}

} // namespace KestrioKit
