#pragma once

#include "KestrioKit/Kestrio.h"

namespace KestrioKit {

/// Calls the operation with the given selector and returns its result, or a null variant if it has
/// none. Returns nothing, and calls nothing, if there is no such operation or the arguments do not
/// fit.
std::optional<QVariant> performSelector(Kestrio &kestrio, const QString &selector,
                                        const QVariantList &arguments);

} // namespace KestrioKit
