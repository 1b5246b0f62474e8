#pragma once

#include "KestrioKit/Core/Platform/HTTP/URLRequest.h"
#include "KestrioKit/Core/Platform/Threads/Atomic.h"
#include "KestrioKit/Core/Protocol/Attributes.h"
#include "KestrioKit/Core/Protocol/RecordError.h"
#include "KestrioKit/Core/Protocol/SurveyEvent.h"
#include "KestrioKit/Core/Protocol/SurveyResponse.h"
#include "KestrioKit/Core/Protocol/TrackEvent.h"
#include "KestrioKit/Core/Protocol/Visitors.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>

namespace KestrioKit {

/// Builds every request that is sent to the service. Thread-safe.
///
/// The functions return no request if the service's host name is invalid. Requests that concern the
/// visitor are not built either while there is no visitor. Texts such as environment ids and
/// attribute keys become part of the path: they are percent-encoded where a path requires it (RFC
/// 3986), except that a "/" within a text separates segments. A path with a segment "." or ".."
/// yields no request.
class KestrioServiceRequests {
public:
    /// `clock` supplies the time of batches and the numbers of error reports. It must outlive this
    /// object.
    explicit KestrioServiceRequests(const Clock &clock) : m_clock(clock) {}
    Q_DISABLE_COPY_MOVE(KestrioServiceRequests)

    /// The id of the host's environment. Default: empty.
    QString environment() const { return m_environment.value(); }
    void setEnvironment(QString environment) { m_environment.setValue(std::move(environment)); }

    /// The service's id of the current visitor. Default: none.
    std::optional<qint64> visitorIdentifier() const { return m_visitorIdentifier.value(); }
    void setVisitorIdentifier(std::optional<qint64> identifier) {
        m_visitorIdentifier.setValue(identifier);
    }

    /// Returns a builder for another visitor. It copies the current environment and host; later
    /// changes of this object do not affect it.
    std::unique_ptr<const KestrioServiceRequests>
    forVisitor(std::optional<qint64> visitorIdentifier) const;

    /// Returns the service's host name without a port.
    ///
    /// The host is read from the process environment at the first use and does not change
    /// afterwards. "KESTRIO_ENVIRONMENT" takes precedence: a value that contains "local" selects
    /// localhost, one that contains "stag" the staging host, any other value the production host.
    /// Otherwise "KESTRIO_HOSTNAME" names the host, optionally with the port that requests use, as
    /// in "[::1]:3000". Otherwise the host is the one given to `setHost()`, and by default the
    /// production host. An invalid value is logged once, and no request is built.
    QString host() const;
    /// Names the host, with or without a port; empty for production. Returns false, and changes
    /// nothing, when the host has been taken already.
    bool setHost(const QString &host);

    /// The version of the service's interface. It is the first segment of most paths.
    static constexpr QLatin1StringView version{"1"};

    /// Fetches the configuration of the environment.
    std::optional<URLRequest> newConfig() const;
    /// Requests a visitor: the given user, or an anonymous visitor if `userIdentifier` is absent.
    std::optional<URLRequest> newVisitors(const std::optional<QString> &userIdentifier) const;
    /// Reports one event. The service may answer with a survey.
    std::optional<URLRequest> newTrackEvent(const Request::TrackEvent &event) const;
    /// Reports several events. The batch is dated with the current time.
    std::optional<URLRequest> newBatchTrackEvents(const QList<Request::TrackEvent> &events) const;
    /// Tells the service which user the current visitor is.
    std::optional<URLRequest> newSetUserIdentifier(const QString &userIdentifier) const;
    /// Fetches a survey by its id.
    std::optional<URLRequest> newFetchSurvey(qint64 surveyId) const;
    std::optional<URLRequest> newSetAttribute(const Request::UpdateAttribute &attribute) const;
    std::optional<URLRequest> newSetAttributes(const Request::UpdateAttributes &attributes) const;
    std::optional<URLRequest>
    newRemoveAttributes(const Request::RemoveAttributes &attributes) const;
    /// Submits the answers to one survey.
    std::optional<URLRequest> newSubmitResponse(const Request::SurveyResponseBody &response) const;
    /// Reports that a survey or a question was seen or closed. The request is sent for the visitor
    /// in `event`, whoever the current visitor is.
    std::optional<URLRequest> newSurveyHistory(const Request::SurveyEvent &event) const;
    /// Reports an error within the library. The header "x-ks-error" carries a number that increases
    /// with every report of the process.
    std::optional<URLRequest> newRecordError(const Request::RecordError &error) const;

private:
    /// Reads the host from the process environment once. Sets `m_host` and `m_baseUrl`.
    void findHost() const;
    std::optional<QUrl> url(const QString &path) const;
    std::optional<QUrl> versionedUrl(const QString &relativePath) const;
    std::optional<QUrl> environmentUrl(const QString &subPath) const;
    std::optional<QUrl> visitorUrl(const QString &subPath) const;
    /// Bulk operations always use version 2 of the interface, independently of `version`.
    std::optional<QUrl> bulkUrl(const QString &subPath) const;

    const Clock &m_clock;
    Atomic<QString> m_environment;
    Atomic<std::optional<qint64>> m_visitorIdentifier;
    Atomic<QString> m_givenHost;
    mutable std::atomic<bool> m_isHostTaken = false;
    mutable std::once_flag m_hostOnce;
    mutable QString m_host;
    /// The part of every URL before the path; absent if `m_host` is not a valid host.
    mutable std::optional<QUrl> m_baseUrl;
};

} // namespace KestrioKit
