#pragma once

#include "KestrioKit/Core/Platform/Threads/Clock.h"
#include "KestrioKit/Core/Protocol/Metadata.h"

#include <QList>

namespace KestrioKit {

namespace Request {

/// An event that the host reported. Sent alone, it is a POST to "/1/visitors/VID/events", and the
/// service may respond with a survey:
///
///     {"event":"Cart Viewed","metadata":{"l":"en"},"delayed":false,"timestamp":1700000000}
struct TrackEvent {
    /// The event's name, as the host calls it.
    QString event;
    Metadata metadata;
    bool delayed = false;
    /// The time of the event, in whole seconds since 1970.
    quint64 timestamp = 0;

    friend bool operator==(const TrackEvent &, const TrackEvent &) = default;
};

/// Returns an event that is dated with the current time of `clock`.
TrackEvent makeTrackEvent(QString event, Metadata metadata, const Clock &clock);

/// Several events in the order in which they happened. Sent in one POST to
/// "/1/visitors/VID/events/batch"; the service returns no survey.
struct BatchTrackEvent {
    QList<TrackEvent> events;
    /// The time when the batch was built, in whole seconds since 1970.
    quint64 timestamp = 0;

    friend bool operator==(const BatchTrackEvent &, const BatchTrackEvent &) = default;
};

/// Returns a batch that is dated with the current time of `clock`.
BatchTrackEvent makeBatchTrackEvent(QList<TrackEvent> events, const Clock &clock);

} // namespace Request

template <>
inline constexpr auto keyTable<Request::TrackEvent> =
    std::tuple(required("event", &Request::TrackEvent::event),
               required("metadata", &Request::TrackEvent::metadata),
               required("delayed", &Request::TrackEvent::delayed),
               required("timestamp", &Request::TrackEvent::timestamp));

template <>
inline constexpr auto keyTable<Request::BatchTrackEvent> =
    std::tuple(required("events", &Request::BatchTrackEvent::events),
               required("timestamp", &Request::BatchTrackEvent::timestamp));

} // namespace KestrioKit
