#pragma once

#include <QObject>

namespace KestrioKit {

/// Watches the on-screen keyboard (QInputMethod). It asks nothing of the keyboard while no window
/// of the application has the focus. For the main thread.
class KeyboardObserver final : public QObject {
    Q_OBJECT

public:
    KeyboardObserver();

    /// How much of a window of that height the keyboard covers at the bottom; 0 while it is hidden.
    static int coveredHeight(int windowHeight);

    /// Makes what is being composed a part of the text.
    static void commit();
    /// Hides the keyboard, if it is visible.
    static void hide();

Q_SIGNALS:
    /// The keyboard comes, goes or moves.
    void changed();
};

} // namespace KestrioKit
