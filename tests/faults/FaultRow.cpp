#include "tests/faults/FaultRow.h"

#include <gtest/gtest.h>

#include <cstdio>

namespace KestrioKit {

using namespace std::chrono;

FaultRow::FaultRow(QByteArray fault, seconds limit) : m_fault(std::move(fault)), m_limit(limit) {}

FaultRow::~FaultRow() {
    const auto taken = steady_clock::now() - m_start;
    EXPECT_LE(taken, m_limit) << "the time limit";
    std::printf("| %s | %s | %.1f s of %lld s |\n", m_fault.constData(),
                m_counts.join(", ").constData(), duration<double>(taken).count(),
                static_cast<long long>(m_limit.count()));
}

void FaultRow::add(qint64 count, const QByteArray &what) {
    m_counts.append(QByteArray::number(count) + ' ' + what);
}

int FaultRow::times(int full, int brief) {
    return qgetenv("KESTRIO_FAULTS") == "full" ? full : brief;
}

} // namespace KestrioKit
