#pragma once

#include "KestrioKit/Core/Queue/QueueableRequest.h"

#include <QList>

#include <cstddef>
#include <optional>
#include <string_view>
#include <tuple>
#include <type_traits>

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

    bool hasMessages() const;
    /// Whether both together hold at most `limit` records of each kind.
    bool fitsBeside(const PersistentQueue &other, qsizetype limit) const;

    friend bool operator==(const PersistentQueue &, const PersistentQueue &) = default;
};

/// How a runner sends its records.
enum class Sending { oneByOne, inBatches };

/// One kind of record. A runner sends the records, and a list in the state file stores them.
template <typename Body>
struct RecordKind {
    /// The list's key. In capitals, it is the runner's name in log lines.
    std::string_view key;
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
inline constexpr std::size_t recordKindCount = std::tuple_size_v<decltype(recordKinds)>;

/// The stored body whose runner sends this one: itself, unless it is sent with another kind.
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

/// The index of the kind of this body in `recordKinds`.
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
