#pragma once

#include "tests/support/Programs.h"
#include "tests/support/RecordingServer.h"

namespace KestrioKit {

/// The visitor that the scripted service knows.
inline constexpr int scriptedVisitor = 42;

/// Has a recording server answer as the survey service does: one visitor, and one survey, of two
/// questions, for every event that is not batched. It never answers an event "Unanswered".
void answerAsService(RecordingServer &server);

/// The requests to one path, in the order in which they came.
QList<RecordedRequest> requestsTo(const RecordingServer &server, const QByteArray &target);

} // namespace KestrioKit
