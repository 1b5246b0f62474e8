#pragma once

#include "KestrioKit/Core/Queue/PersistentQueue.h"

/// As many records as the state file holds at most: so many of each kind. Their visitor is
/// number 7.
KestrioKit::PersistentQueue fullState(qint64 recordsOfAKind);
inline constexpr qint64 visitorOfFullState = 7;

/// How many records of a kind may wait by default, and at most.
inline constexpr qint64 defaultLimit = 25;
inline constexpr qint64 largestLimit = 10'000;
