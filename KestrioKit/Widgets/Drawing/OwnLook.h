#pragma once

#include <QString>

class QStyle;
class QWidget;

namespace KestrioKit {

/// Keeps the look that the host gives to its widgets away from `view` and from everything in it:
/// its style, and the style sheets of the application and of the windows around `view`, also when
/// they are set later. A widget in it that has a style sheet of its own needs `ownStyle()` too.
void keepOwnLook(QWidget *view);

/// The style of the survey's widgets, whatever the host's is. Lives as long as the application.
QStyle *ownStyle();

/// The declarations of a style sheet that undo what a host's style sheet can do to any widget.
QString undoingDeclarations();

} // namespace KestrioKit
