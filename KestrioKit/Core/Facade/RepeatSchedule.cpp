#include "KestrioKit/Core/Facade/RepeatSchedule.h"

#include <algorithm>
#include <array>
#include <utility>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

constexpr std::array<double, 4> delaySeconds{5, 10, 30, 60};

} // namespace

double startUpRepeatDelay(int failures) {
    constexpr int last = int(delaySeconds.size()) - 1;
    return delaySeconds.at(std::size_t(std::clamp(failures - 1, 0, last)));
}

RepeatSchedule::RepeatSchedule(const LibraryContext &context, Repeat repeat)
    : m_clock(context.clock),
      m_executor(context.executor),
      m_makeFlagsSource(context.makeFlagsSource),
      m_repeat(std::move(repeat)),
      m_queue(u"Kestrio Start-up"_s, context.executor) {}

void RepeatSchedule::begin(const QString &host) {
    m_queue.async([self = shared_from_this(), host] { self->watchNetwork(host); });
}

void RepeatSchedule::wait(double seconds) {
    m_queue.async([self = shared_from_this(), time = m_clock.now() + seconds] {
        self->cancel();
        self->schedule(time);
    });
}

void RepeatSchedule::end() {
    m_queue.async([self = shared_from_this()] {
        self->cancel();
        self->m_reachability.reset();
    });
}

void RepeatSchedule::watchNetwork(const QString &host) {
    const Reachability::Creation creation =
        Reachability::create(m_makeFlagsSource(host), m_executor, &m_queue);
    const auto *const monitor = std::get_if<std::shared_ptr<Reachability>>(&creation);
    // Without a monitor the delays still work.
    if (!monitor)
        return;
    m_reachability = *monitor;
    m_networkIsAway = false;
    m_reachability->setWhenUnreachable([weak = weak_from_this()](Reachability &) {
        if (const auto self = weak.lock())
            self->m_networkIsAway = true;
    });
    m_reachability->setWhenReachable([weak = weak_from_this()](Reachability &) {
        const auto self = weak.lock();
        // The first call only reports the current state of the network.
        if (self && std::exchange(self->m_networkIsAway, false))
            self->m_repeat(Occasion::networkIsBack);
    });
    // The monitor is stopped again if this fails.
    [[maybe_unused]] const auto error = m_reachability->startNotifier();
}

void RepeatSchedule::schedule(DispatchTime time) {
    m_scheduled = std::make_shared<DispatchWorkItem>([weak = weak_from_this()] {
        if (const auto self = weak.lock())
            self->m_repeat(Occasion::delayIsOver);
    });
    m_queue.asyncAfter(time, m_scheduled);
}

void RepeatSchedule::cancel() {
    if (const auto scheduled = std::exchange(m_scheduled, nullptr))
        scheduled->cancel();
}

} // namespace KestrioKit
