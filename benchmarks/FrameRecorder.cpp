#include "benchmarks/FrameRecorder.h"

#include <utility>

bool FrameRecorder::notify(QObject *receiver, QEvent *event) {
    if (event->type() != QEvent::UpdateRequest)
        return QApplication::notify(receiver, event);
    const auto start = std::chrono::steady_clock::now();
    const bool result = QApplication::notify(receiver, event);
    m_frames.push_back(std::chrono::steady_clock::now() - start);
    return result;
}

std::vector<FrameRecorder::Milliseconds> FrameRecorder::takeFrames() {
    return std::exchange(m_frames, {});
}
