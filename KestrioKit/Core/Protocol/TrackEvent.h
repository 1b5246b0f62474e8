#pragma once

#include "KestrioKit/Core/Platform/Threads/Clock.h"
#include "KestrioKit/Core/Protocol/Metadata.h"

#include <QList>

namespace KestrioKit {

namespace Request {

/// One event that the host reported.
struct TrackEvent {
    /// The host's name for it.
    QString event;
    Metadata metadata;
    bool delayed = false;
    /// When it happened, in whole seconds since 1970.
    quint64 timestamp = 0;

    friend bool operator==(const TrackEvent &, const TrackEvent &) = default;
};

/// An event that happens now.
TrackEvent makeTrackEvent(QString event, Metadata metadata, const Clock &clock);

/// Several events in the order in which they happened.
struct BatchTrackEvent {
    QList<TrackEvent> events;
    /// When the batch was made, in whole seconds since 1970.
    quint64 timestamp = 0;

    friend bool operator==(const BatchTrackEvent &, const BatchTrackEvent &) = default;
};

/// A batch that is made now.
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
