#pragma once

#include <QString>

class QStyle;
class QWidget;

namespace KestrioKit {

/// Protects `view` and its descendants from the host's style and style sheets. This includes the
/// style sheets of the application and of all ancestors, even if they are set later. A descendant
/// with a style sheet of its own also needs `ownStyle()`. Call it on the main thread.
void keepOwnLook(QWidget *view);

/// Returns the style of the survey's widgets, which does not depend on the host's style. The
/// application object owns it.
QStyle *ownStyle();

/// Returns style sheet declarations that undo what a host's style sheet can do to any widget.
QString undoingDeclarations();

} // namespace KestrioKit
