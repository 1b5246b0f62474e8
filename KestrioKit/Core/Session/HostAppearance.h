#pragma once

#include <QObject>

#include <functional>

namespace KestrioKit {

/// Reports changes of the application's palette and font. Must be used on the main thread.
class HostAppearance final : public QObject {
public:
    /// `changed` is called from the event loop, once for changes that follow each other directly.
    explicit HostAppearance(std::function<void()> changed);

    /// Watches the application object's events and blocks none of them.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    std::function<void()> m_changed;
    bool m_isScheduled = false;
};

} // namespace KestrioKit
