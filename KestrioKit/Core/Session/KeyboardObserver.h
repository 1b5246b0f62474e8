#pragma once

#include "KestrioKit/KestrioKitExport.h"

#include <QObject>

namespace KestrioKit {

/// Watches the on-screen keyboard through `QInputMethod`. It does not access the keyboard while no
/// window of the application has the focus. Use it on the main thread only.
class KESTRIOKIT_EXPORT KeyboardObserver final : public QObject {
    Q_OBJECT

public:
    KeyboardObserver();

    /// Returns how much the keyboard covers at the bottom of a window of the given height, in
    /// device-independent pixels. Returns 0 while the keyboard is hidden.
    static int coveredHeight(int windowHeight);

    /// Commits text that is still being composed to the focused field.
    static void commit();
    /// Hides the keyboard if it is visible.
    static void hide();

Q_SIGNALS:
    /// Emitted when the keyboard appears, disappears or moves.
    void changed();
};

} // namespace KestrioKit
