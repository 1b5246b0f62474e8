#pragma once

#include <QObject>

#include <functional>

namespace KestrioKit {

/// Tells when the application's palette or font has changed. For the main thread.
class HostAppearance final : public QObject {
public:
    /// `changed` is called from the event loop, once for changes that follow each other directly.
    explicit HostAppearance(std::function<void()> changed);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    std::function<void()> m_changed;
    bool m_isScheduled = false;
};

} // namespace KestrioKit
