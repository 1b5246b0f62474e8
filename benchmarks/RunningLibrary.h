#pragma once

/// Starts the service and the library, if they do not run yet. Waits until calls are no longer
/// held. Returns false if the service or the visitor is missing.
bool libraryRuns();

/// Runs the event loop until the service has every event. Returns false if that takes too long.
bool waitUntilDelivered();
