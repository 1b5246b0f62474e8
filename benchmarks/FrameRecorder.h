#pragma once

#include <QApplication>

#include <chrono>
#include <vector>

/// An application that measures the cost of each frame: the time of all painting for one update of
/// a window.
class FrameRecorder final : public QApplication {
    Q_OBJECT

public:
    using Milliseconds = std::chrono::duration<double, std::milli>;

    using QApplication::QApplication;

    bool notify(QObject *receiver, QEvent *event) override;

    /// Returns the durations of the frames since the last call.
    std::vector<Milliseconds> takeFrames();

private:
    std::vector<Milliseconds> m_frames;
};
