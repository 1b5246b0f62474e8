#pragma once

#include <QApplication>

#include <chrono>
#include <vector>

/// An application that measures what each frame costs: all that is painted for one update of a
/// window.
class FrameRecorder final : public QApplication {
    Q_OBJECT

public:
    using Milliseconds = std::chrono::duration<double, std::milli>;

    using QApplication::QApplication;

    bool notify(QObject *receiver, QEvent *event) override;

    /// The frames since the last call.
    std::vector<Milliseconds> takeFrames();

private:
    std::vector<Milliseconds> m_frames;
};
