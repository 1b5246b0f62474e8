#pragma once

#include "KestrioKit/Core/Queue/QueueableRequest.h"

#include <QList>

#include <cstddef>
#include <optional>
#include <string_view>
#include <tuple>
#include <type_traits>

namespace KestrioKit {

/// The content of the state file: the unsent records and their visitor.
struct PersistentQueue {
    /// The only version that is read. Files of other versions are ignored.
    static constexpr qint64 currentVersion = 3;

    qint64 version = currentVersion;
    std::optional<qint64> visitorIdentifier;
    std::optional<QString> visitorToken;
    QList<Request::TrackEvent> events;
    QList<Request::SurveyResponse> surveys;
    QList<Request::RecordError> errors;
    QList<Request::SurveyEvent> history;
    QList<Request::UpdateAttribute> attributes;

    /// Returns whether there is a record of any kind.
    bool hasMessages() const;
    /// Returns whether this and `other` together hold at most `limit` records of each kind.
    bool fitsBeside(const PersistentQueue &other, qsizetype limit) const;

    friend bool operator==(const PersistentQueue &, const PersistentQueue &) = default;
};

/// Whether a runner sends each record in its own request or several in one.
enum class Sending { oneByOne, inBatches };

/// A kind of record. Each kind has a runner, which sends its records, and a list in the state file,
/// which stores them.
template <typename Body>
struct RecordKind {
    /// The list's key in the state file. Its upper-case form is the runner's name in log lines.
    std::string_view key;
    /// The list that stores the records.
    QList<Body> PersistentQueue::*stored;
    Sending sending = Sending::oneByOne;
};

/// All kinds, in the order of the state file's keys.
inline constexpr std::tuple recordKinds{
    RecordKind<Request::TrackEvent>{"events", &PersistentQueue::events, Sending::inBatches},
    RecordKind<Request::SurveyResponse>{"surveys", &PersistentQueue::surveys},
    RecordKind<Request::RecordError>{"errors", &PersistentQueue::errors},
    RecordKind<Request::SurveyEvent>{"history", &PersistentQueue::history},
    RecordKind<Request::UpdateAttribute>{"attributes", &PersistentQueue::attributes},
};
/// The number of kinds, and thus of runners.
inline constexpr std::size_t recordKindCount = std::tuple_size_v<decltype(recordKinds)>;

/// Maps a body to the stored body whose runner sends it. This is the body itself, except for bulk
/// attribute changes, which have no list of their own.
template <typename Body>
struct SentWith {
    using Stored = Body;
};
template <>
struct SentWith<Request::UpdateAttributes> {
    using Stored = Request::UpdateAttribute;
};
template <>
struct SentWith<Request::RemoveAttributes> {
    using Stored = Request::UpdateAttribute;
};

/// Returns the index in `recordKinds` of the kind that sends this body.
template <typename Body, typename... Stored>
constexpr std::size_t recordKindIndex(const std::tuple<RecordKind<Stored>...> &) {
    constexpr bool isOfKind[]{std::is_same_v<typename SentWith<Body>::Stored, Stored>...};
    std::size_t index = 0;
    while (!isOfKind[index])
        ++index;
    return index;
}

template <>
inline constexpr auto keyTable<PersistentQueue> = std::tuple_cat(
    std::tuple(required("version", &PersistentQueue::version),
               optional("vid", &PersistentQueue::visitorIdentifier),
               optional("token", &PersistentQueue::visitorToken)),
    std::apply([](const auto &...kind) { return std::tuple(required(kind.key, kind.stored)...); },
               recordKinds));

} // namespace KestrioKit
