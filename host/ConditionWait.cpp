#include "host/ConditionWait.h"

#include <QCoreApplication>
#include <QPointer>

#include <utility>

using namespace std::chrono_literals;

namespace {

constexpr auto pollInterval = 5ms;

} // namespace

void ConditionWait::start(Condition condition, std::chrono::milliseconds limit, Answer finished) {
    auto *const wait = new ConditionWait(std::move(condition), limit, std::move(finished));
    wait->setParent(QCoreApplication::instance());
    wait->m_timer.start(0ms);
}

ConditionWait::ConditionWait(Condition condition, std::chrono::milliseconds limit, Answer finished)
    : m_condition(std::move(condition)), m_deadline(limit), m_finished(std::move(finished)) {
    connect(&m_timer, &QTimer::timeout, this, &ConditionWait::check);
}

void ConditionWait::check() {
    m_timer.start(pollInterval);
    if (!m_isAsking) {
        m_isAsking = true;
        m_condition([wait = QPointer(this)](bool holds) {
            if (wait)
                wait->answered(holds);
        });
    } else if (m_deadline.hasExpired()) {
        finish(false);
    }
}

void ConditionWait::answered(bool holds) {
    m_isAsking = false;
    if (m_finished && (holds || m_deadline.hasExpired()))
        finish(holds);
}

void ConditionWait::finish(bool holds) {
    m_timer.stop();
    deleteLater();
    std::exchange(m_finished, nullptr)(holds);
}
