#include "KestrioKit/Facade/Bootstrap.h"

#include "KestrioKit/Facade/FacadeLog.h"
#include "KestrioKit/Platform/Logging.h"

namespace KestrioKit {

using namespace Qt::StringLiterals;

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

Bootstrap::Bootstrap(Executor &executor, std::function<void(const QString &userId)> attachUser)
    : m_dQueue(u"Kestrio Bootstrap"_s, executor), m_attachUser(std::move(attachUser)) {}

Bootstrap::Action Bootstrap::readyState() const {
    switch (sequence()) {
    case Sequence::start:
        logLine(u"Not configured. Please first call Kestrio.shared.configure(withEnvironment:)."_s,
                LogCategory::info);
        return Action::skip;
    case Sequence::configured:
    case Sequence::getConfig:
        return Action::queue;
    case Sequence::visitorId:
    case Sequence::userId:
        return Action::doit;
    case Sequence::error:
        return Action::skip;
    }
    Q_UNREACHABLE();
}

bool Bootstrap::isConfigured() const {
    return sequence() >= Sequence::configured;
}

void Bootstrap::step(Sequence next) {
    const Sequence old = m_sequence.mutate([next](Sequence &current) {
        const Sequence before = current;
        if (next == Sequence::error || next > current)
            current = next;
        return before;
    });
    if (next == old)
        return;
    if (next == Sequence::visitorId) {
        if (const std::optional<QString> user = userId())
            m_attachUser(*user);
        else
            flush();
    } else if (next == Sequence::userId) {
        flush();
    }
}

void Bootstrap::enqueue(Block call) {
    m_dQueue.async(
        [self = shared_from_this(), call = std::move(call)] { self->m_callQueue.append(call); });
}

void Bootstrap::flush() {
    m_dQueue.async([self = shared_from_this()] { self->release(); });
}

void Bootstrap::release() {
    KSLog(LogLevel::fine, u"Bootstrap reached"_s, sequence(), readyState(),
          u"flushing %1 tasks"_s.arg(m_callQueue.size()));
    for (const Block &call : std::as_const(m_callQueue))
        DispatchQueue::main().async(call);
    m_callQueue.clear();
}

} // namespace KestrioKit
