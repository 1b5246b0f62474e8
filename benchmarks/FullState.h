#pragma once

#include "KestrioKit/Core/Queue/PersistentQueue.h"

/// Returns a full state: `recordsOfAKind` records of each kind, which is the most that the state
/// file holds with that limit. The visitor is `visitorOfFullState`.
KestrioKit::PersistentQueue fullState(qint64 recordsOfAKind);
inline constexpr qint64 visitorOfFullState = 7;

/// The default and the largest limit of records per kind.
inline constexpr qint64 defaultLimit = 25;
inline constexpr qint64 largestLimit = 10'000;
