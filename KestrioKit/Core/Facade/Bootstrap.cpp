#include "KestrioKit/Core/Facade/Bootstrap.h"

#include "KestrioKit/Core/Facade/FacadeLog.h"
#include "KestrioKit/Core/Platform/Logging.h"

#include <algorithm>
#include <utility>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

bool isUnderWay(Bootstrap::Sequence sequence) {
    return sequence == Bootstrap::Sequence::configured ||
           sequence == Bootstrap::Sequence::getConfig;
}

} // namespace

QString printedForm(Bootstrap::Sequence sequence) {
    switch (sequence) {
    case Bootstrap::Sequence::error:
        return u"error"_s;
    case Bootstrap::Sequence::start:
        return u"start"_s;
    case Bootstrap::Sequence::configured:
        return u"configured"_s;
    case Bootstrap::Sequence::getConfig:
        return u"getConfig"_s;
    case Bootstrap::Sequence::visitorId:
        return u"visitorId"_s;
    case Bootstrap::Sequence::userId:
        return u"userId"_s;
    }
    Q_UNREACHABLE();
}

QString printedForm(Bootstrap::Action action) {
    switch (action) {
    case Bootstrap::Action::doit:
        return u"doit"_s;
    case Bootstrap::Action::queue:
        return u"queue"_s;
    case Bootstrap::Action::skip:
        return u"skip"_s;
    }
    Q_UNREACHABLE();
}

Bootstrap::Bootstrap(Executor &executor) : m_dQueue(u"Kestrio Bootstrap"_s, executor) {}

Bootstrap::Action Bootstrap::action() const {
    switch (sequence()) {
    case Sequence::start:
    case Sequence::error:
        return Action::skip;
    case Sequence::configured:
    case Sequence::getConfig:
        return Action::queue;
    case Sequence::visitorId:
    case Sequence::userId:
        return Action::doit;
    }
    Q_UNREACHABLE();
}

Bootstrap::Action Bootstrap::readyState() const {
    if (sequence() == Sequence::start)
        logLine(u"Not configured. Please first call Kestrio.shared.configure(withEnvironment:)."_s,
                LogCategory::info);
    return action();
}

bool Bootstrap::isConfigured() const {
    return sequence() >= Sequence::configured;
}

bool Bootstrap::setUserId(const QString &userId) {
    return m_state.mutate([&userId](State &state) {
        if (!isUnderWay(state.sequence))
            return false;
        state.userId = userId;
        return true;
    });
}

void Bootstrap::replaceUserId(const std::optional<QString> &userId) {
    m_state.mutate([&userId](State &state) { state.userId = userId; });
}

bool Bootstrap::step(Sequence next) {
    return m_state.mutate([next](State &state) {
        const Sequence old = std::exchange(
            state.sequence, next == Sequence::error ? next : std::max(state.sequence, next));
        return state.sequence != old;
    });
}

void Bootstrap::startOver() {
    m_state.mutate([](State &state) { state.sequence = Sequence::configured; });
}

void Bootstrap::reset() {
    m_state.setValue({});
    holdAgain();
    dropHeld();
}

void Bootstrap::enqueue(HeldCall call) {
    m_dQueue.async([self = shared_from_this(), call = std::move(call)] {
        self->m_callQueue.append(call);
        self->dropSurplus();
        // The caller may have checked the state just before the held calls were released.
        if (self->m_isReleased && !isUnderWay(self->sequence()))
            self->release();
    });
}

void Bootstrap::flush() {
    m_dQueue.async([self = shared_from_this()] { self->release(); });
}

void Bootstrap::flushHeld() {
    m_dQueue.async([self = shared_from_this()] {
        if (self->m_callQueue.isEmpty())
            self->m_isReleased = true;
        else
            self->release();
    });
}

void Bootstrap::holdAgain() {
    m_dQueue.async([self = shared_from_this()] { self->m_isReleased = false; });
}

void Bootstrap::recordHeld() {
    m_dQueue.async([self = shared_from_this()] { self->record(); });
}

void Bootstrap::dropHeld() {
    m_dQueue.async([self = shared_from_this()] {
        for (const HeldCall &held : std::exchange(self->m_callQueue, {})) {
            if (held.dropped)
                held.dropped();
        }
    });
}

void Bootstrap::recordHeldNow() {
    m_dQueue.sync([this] { record(); });
}

bool Bootstrap::holdsRecords() {
    bool holds = false;
    m_dQueue.sync([this, &holds] {
        holds = std::ranges::any_of(m_callQueue.first(callsOfThisVisitor()), &HeldCall::hasRecord);
    });
    return holds;
}

qsizetype Bootstrap::callsOfThisVisitor() const {
    return std::ranges::find(m_callQueue, HeldCall::Kind::logout, &HeldCall::kind) -
           m_callQueue.begin();
}

void Bootstrap::record() {
    const qsizetype count = callsOfThisVisitor();
    QList<HeldCall> rest;
    for (const HeldCall &held : m_callQueue.first(count)) {
        if (held.hasRecord())
            held.record();
        else
            rest.append(held);
    }
    m_callQueue = rest + m_callQueue.sliced(count);
}

void Bootstrap::dropSurplus() {
    if (std::ranges::count_if(m_callQueue, &HeldCall::hasRecord) <= recordLimit)
        return;
    const auto oldest = std::ranges::find(m_callQueue, HeldCall::Kind::event, &HeldCall::kind);
    m_callQueue.erase(oldest != m_callQueue.end()
                          ? oldest
                          : std::ranges::find_if(m_callQueue, &HeldCall::hasRecord));
}

void Bootstrap::release() {
    KSLog(LogLevel::fine, u"Bootstrap reached"_s, sequence(), readyState(),
          u"flushing %1 tasks"_s.arg(m_callQueue.size()));
    for (const HeldCall &held : std::as_const(m_callQueue))
        DispatchQueue::main().async(held.call);
    m_callQueue.clear();
    m_isReleased = true;
}

} // namespace KestrioKit
