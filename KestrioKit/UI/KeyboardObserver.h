#pragma once

#include <QObject>

namespace KestrioKit {

/// Watches the on-screen keyboard (QInputMethod). For the main thread.
class KeyboardObserver final : public QObject {
    Q_OBJECT

public:
    KeyboardObserver();

    /// How much of a window of that height the keyboard covers at the bottom; 0 while it is hidden.
    static int coveredHeight(int windowHeight);

Q_SIGNALS:
    /// The keyboard comes, goes or moves.
    void changed();
};

} // namespace KestrioKit
