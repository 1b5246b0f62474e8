#include "KestrioKit/Core/Protocol/TrackEvent.h"

#include <algorithm>

namespace KestrioKit::Request {

namespace {

quint64 wholeSecondsSince1970(const Clock &clock) {
    return quint64(std::max(clock.secondsSince1970(), 0.0));
}

} // namespace

TrackEvent makeTrackEvent(QString event, Metadata metadata, const Clock &clock) {
    return {.event = std::move(event),
            .metadata = std::move(metadata),
            .timestamp = wholeSecondsSince1970(clock)};
}

BatchTrackEvent makeBatchTrackEvent(QList<TrackEvent> events, const Clock &clock) {
    return {std::move(events), wholeSecondsSince1970(clock)};
}

} // namespace KestrioKit::Request
