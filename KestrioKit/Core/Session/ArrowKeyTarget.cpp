#include "KestrioKit/Core/Session/ArrowKeyTarget.h"

#include <Qt>

#include <algorithm>

namespace KestrioKit {

qsizetype arrowKeyTarget(int key, qsizetype position, qsizetype count, bool isMirrored) {
    const qsizetype last = count - 1;
    const qsizetype next = std::min(position + 1, last);
    const qsizetype previous = std::max(position - 1, qsizetype(0));
    switch (key) {
    case Qt::Key_Home:
        return 0;
    case Qt::Key_End:
        return last;
    case Qt::Key_Up:
        return previous;
    case Qt::Key_Down:
        return next;
    case Qt::Key_Left:
        return isMirrored ? next : previous;
    case Qt::Key_Right:
        return isMirrored ? previous : next;
    default:
        return position;
    }
}

} // namespace KestrioKit
