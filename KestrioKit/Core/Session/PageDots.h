#pragma once

#include "KestrioKit/KestrioKitExport.h"

namespace KestrioKit {

/// The dots that stand for the pages of a survey. If there is no space for all, only those around
/// the current page are shown. Pages count from 0.
struct KESTRIOKIT_EXPORT PageDots {
    int pages;
    /// The page of the first dot.
    int first;
    /// The number of dots.
    int shown;

    /// Returns the dots that fit into `width`, in device-independent pixels.
    static PageDots within(int width, int pages, int currentPage);

    /// Returns whether the dot of `page` is an outermost one beyond which there are more pages.
    bool isEdge(int page) const;
};

} // namespace KestrioKit
