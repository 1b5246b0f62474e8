#pragma once

#include <QFont>

namespace KestrioKit {

/// The roles that text plays on the survey screens.
enum class TextStyle { title2, body };

/// The font for texts of that style, of the application font's family.
/// Title 2 is 22 and Body 17 device-independent pixels while the application's font has 10 points
/// or less, and both grow with it above.
QFont preferredFont(TextStyle style);

/// Likewise, bold.
QFont preferredBoldFont(TextStyle style);

} // namespace KestrioKit
