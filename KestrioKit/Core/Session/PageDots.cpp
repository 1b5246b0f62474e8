#include "KestrioKit/Core/Session/PageDots.h"

#include "KestrioKit/Core/Session/ScreenMetrics.h"

#include <algorithm>

namespace KestrioKit {

PageDots PageDots::within(int width, int pages, int currentPage) {
    const int shown = std::min(pages, width / screenMetrics.dotPitch);
    return {pages, std::clamp(currentPage - shown / 2, 0, pages - shown), shown};
}

bool PageDots::isEdge(int page) const {
    return (page == first && first > 0) || (page == first + shown - 1 && page < pages - 1);
}

} // namespace KestrioKit
