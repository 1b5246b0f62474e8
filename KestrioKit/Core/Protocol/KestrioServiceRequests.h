#pragma once

#include "KestrioKit/Core/Platform/HTTP/URLRequest.h"
#include "KestrioKit/Core/Platform/Threads/Atomic.h"
#include "KestrioKit/Core/Protocol/Attributes.h"
#include "KestrioKit/Core/Protocol/RecordError.h"
#include "KestrioKit/Core/Protocol/SurveyEvent.h"
#include "KestrioKit/Core/Protocol/SurveyResponse.h"
#include "KestrioKit/Core/Protocol/TrackEvent.h"
#include "KestrioKit/Core/Protocol/Visitors.h"

#include <memory>
#include <mutex>
#include <optional>

namespace KestrioKit {

/// Builds every request that goes to the service. Thread-safe.
///
/// No request is returned when the host name makes no URL, nor, for what belongs to the visitor,
/// while there is none. Texts become parts of the path as they are: escaped where a path needs it
/// (RFC 3986), except that a "/" within one separates segments. No request is returned either when
/// "." or ".." comes to stand as a segment.
class KestrioServiceRequests {
public:
    /// `clock` dates batches and error reports; it must outlive this object.
    explicit KestrioServiceRequests(const Clock &clock) : m_clock(clock) {}
    Q_DISABLE_COPY_MOVE(KestrioServiceRequests)

    /// The host's environment id; empty at first.
    QString environment() const { return m_environment.value(); }
    void setEnvironment(QString environment) { m_environment.setValue(std::move(environment)); }

    /// The service's id of the current visitor; absent at first.
    std::optional<qint64> visitorIdentifier() const { return m_visitorIdentifier.value(); }
    void setVisitorIdentifier(std::optional<qint64> identifier) {
        m_visitorIdentifier.setValue(identifier);
    }

    /// The same for another visitor, who does not change: environment and host are those of now.
    std::unique_ptr<const KestrioServiceRequests>
    forVisitor(std::optional<qint64> visitorIdentifier) const;

    /// The service's host name, taken from the process environment at the first call:
    /// "KESTRIO_ENVIRONMENT" that contains "local" (localhost) or "stag" (staging), or does not
    /// (production); else "KESTRIO_HOSTNAME"; else production. The variable may name a port, as in
    /// "[::1]:3000". Requests then go to that port, and this is the host alone. A value that cannot
    /// be a host is logged once.
    QString host() const;

    /// The version of the service's interface: the first segment of most paths.
    static constexpr QLatin1StringView version{"1"};

    std::optional<URLRequest> newConfig() const;
    std::optional<URLRequest> newVisitors(const std::optional<QString> &userIdentifier) const;
    std::optional<URLRequest> newTrackEvent(const Request::TrackEvent &event) const;
    std::optional<URLRequest> newBatchTrackEvents(const QList<Request::TrackEvent> &events) const;
    std::optional<URLRequest> newSetUserIdentifier(const QString &userIdentifier) const;
    std::optional<URLRequest> newFetchSurvey(qint64 surveyId) const;
    std::optional<URLRequest> newSetAttribute(const Request::UpdateAttribute &attribute) const;
    std::optional<URLRequest> newSetAttributes(const Request::UpdateAttributes &attributes) const;
    std::optional<URLRequest>
    newRemoveAttributes(const Request::RemoveAttributes &attributes) const;
    std::optional<URLRequest> newSubmitResponse(const Request::SurveyResponseBody &response) const;
    /// On behalf of the event's own visitor, whoever is the current one.
    std::optional<URLRequest> newSurveyHistory(const Request::SurveyEvent &event) const;
    /// With a header "x-ks-error" that gives every report of the process an id, each greater than
    /// the one before.
    std::optional<URLRequest> newRecordError(const Request::RecordError &error) const;

private:
    void findHost() const;
    std::optional<QUrl> url(const QString &path) const;
    std::optional<QUrl> versionedUrl(const QString &relativePath) const;
    std::optional<QUrl> environmentUrl(const QString &subPath) const;
    std::optional<QUrl> visitorUrl(const QString &subPath) const;
    /// The bulk operations belong to version 2 of the interface, whatever `version` is.
    std::optional<QUrl> bulkUrl(const QString &subPath) const;

    const Clock &m_clock;
    Atomic<QString> m_environment;
    Atomic<std::optional<qint64>> m_visitorIdentifier;
    mutable std::once_flag m_hostOnce;
    mutable QString m_host;
    /// Without a path; absent when `m_host` makes none.
    mutable std::optional<QUrl> m_baseUrl;
};

} // namespace KestrioKit
