#pragma once

#include "KestrioKit/Core/Queue/QueueableRequest.h"

#include <QList>

#include <optional>

namespace KestrioKit {

/// The content of the state file: what is still to be sent, and for which visitor.
struct PersistentQueue {
    static constexpr qint64 currentVersion = 3;

    qint64 version = currentVersion;
    std::optional<qint64> visitorIdentifier;
    std::optional<QString> visitorToken;
    QList<Request::TrackEvent> events;
    QList<Request::SurveyResponse> surveys;
    QList<Request::RecordError> errors;
    QList<Request::SurveyEvent> history;
    QList<Request::UpdateAttribute> attributes;

    bool hasMessages() const {
        return !events.isEmpty() || !surveys.isEmpty() || !errors.isEmpty() || !history.isEmpty() ||
               !attributes.isEmpty();
    }

    /// Whether both together hold at most `limit` records of each kind.
    bool fitsBeside(const PersistentQueue &other, qsizetype limit) const {
        return events.size() + other.events.size() <= limit &&
               surveys.size() + other.surveys.size() <= limit &&
               errors.size() + other.errors.size() <= limit &&
               history.size() + other.history.size() <= limit &&
               attributes.size() + other.attributes.size() <= limit;
    }

    friend bool operator==(const PersistentQueue &, const PersistentQueue &) = default;
};

template <>
inline constexpr auto keyTable<PersistentQueue> = std::tuple(
    required("version", &PersistentQueue::version),
    optional("vid", &PersistentQueue::visitorIdentifier),
    optional("token", &PersistentQueue::visitorToken), required("events", &PersistentQueue::events),
    required("surveys", &PersistentQueue::surveys), required("errors", &PersistentQueue::errors),
    required("history", &PersistentQueue::history),
    required("attributes", &PersistentQueue::attributes));

} // namespace KestrioKit
