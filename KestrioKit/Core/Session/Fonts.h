#pragma once

#include "KestrioKit/KestrioKitExport.h"

#include <QFont>

namespace KestrioKit {

/// The text styles of the survey screens: titles and everything else.
enum class TextStyle { title2, body };

/// Returns the font of a text style, in the family of the application's font. Title 2 is bold and
/// 22 device-independent pixels high, body is 17. Both grow in proportion if the application's font
/// is larger than 10 points.
KESTRIOKIT_EXPORT QFont preferredFont(TextStyle style);

} // namespace KestrioKit
