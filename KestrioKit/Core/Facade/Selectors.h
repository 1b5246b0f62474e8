#pragma once

#include "KestrioKit/Kestrio.h"

namespace KestrioKit {

/// Calls the operation of that selector. Nothing comes back, and nothing was called, when there is
/// no such operation or the arguments do not fit it; a null variant when it has no result.
std::optional<QVariant> performSelector(Kestrio &kestrio, const QString &selector,
                                        const QVariantList &arguments);

} // namespace KestrioKit
