#pragma once

#include "KestrioKit/Core/Platform/LibraryContext.h"
#include "KestrioKit/Core/Platform/Logging.h"
#include "KestrioKit/Core/Protocol/KestrioServiceRequests.h"
#include "KestrioKit/Core/Protocol/ResponseConfig.h"
#include "KestrioKit/Core/Protocol/ResponseVisitors.h"
#include "KestrioKit/Core/Protocol/ServiceAnswer.h"
#include "KestrioKit/Core/Queue/SubmissionQueue.h"
#include "KestrioKit/Core/Queue/SubmissionSender.h"
#include "KestrioKit/Core/Service/ServiceSessions.h"
#include "KestrioKit/Core/Survey/Survey.h"

#include <algorithm>
#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

namespace KestrioKit {

/// The connection to the survey service. It holds the visitor's credentials, an authorized and an
/// anonymous session, and whether the library is disabled. Thread-safe.
///
/// Requests that return data are sent immediately. Their completions are called on the library's
/// thread; while the library is disabled, they are called with an error before the operation
/// returns. If such a request cannot be built, for example because there is no visitor, nothing is
/// sent and the completion is never called. All other records go through the submission queue,
/// which stores and retries them.
class KestrioService final : public SubmissionSender,
                             public std::enable_shared_from_this<KestrioService> {
public:
    template <typename Value>
    using Completion = std::function<void(const ServiceAnswer<Value> &answer)>;
    /// Selects the visitor whose token a request carries.
    enum class Authorization {
        /// The current visitor's, if there is one.
        visitor,
        none,
    };
    using ErrorHandler = std::function<void(const Error &error)>;
    /// Told what changes. Called on any thread, while locks are held: it must not call back.
    struct Observer {
        Block visitorChanged;
        std::function<void(const std::optional<DisabledError> &error)> disabledChanged;
    };

    /// `builder` builds the requests of the current visitor. What `context` refers to must outlive
    /// this object.
    KestrioService(std::shared_ptr<KestrioServiceRequests> builder, const LibraryContext &context);
    Q_DISABLE_COPY_MOVE(KestrioService)

    /// Sets the handler for errors that no caller waits for. Set it before the first request.
    void setErrorHandler(ErrorHandler handler) { m_errorHandler = std::move(handler); }

    /// To be set before the first request.
    void setObserver(Observer observer) { m_observer = std::move(observer); }

    /// Returns the current visitor's bearer token; absent if there is none.
    std::optional<QString> authorizationToken() const override;
    /// Returns the service's id of the current visitor; absent if there is none.
    std::optional<qint64> visitorIdentifier() const override;
    /// Sets the visitor and the token of all further requests. Records that are queued after this
    /// call belong to the new visitor. Records that were queued before remain with the previous
    /// visitor, or are dropped with that visitor.
    void authorize(const std::optional<QString> &token, std::optional<qint64> visitorIdentifier);
    /// Removes the visitor and the token.
    void clearAuthorization() { authorize(std::nullopt, std::nullopt); }

    /// Sets the id of the host's environment, which is part of most URLs.
    void setEnvironmentId(const QString &environmentId);
    /// Sets the service's host, see `KestrioServiceRequests::setHost()`.
    bool setServiceHost(const QString &host) { return m_networkRequests->setHost(host); }

    /// Forgets the visitor and the environment, drops what is queued, in memory and on disk, and
    /// cancels the requests in flight. Nothing is sent or queued until an environment is set.
    void withdraw();
    bool isWithdrawn() const { return m_isWithdrawn; }
    /// Removes what is stored when no queue has been made yet. Works on the calling thread.
    void eraseStored();
    /// Sets the value of "Accept-Language"; absent for the user's preferred languages, the default.
    void setLocale(const std::optional<QString> &locale);
    /// Whether network access is disabled. If so, the library sends nothing and drops new records.
    /// Default: false.
    bool disableNetworkAccess() const { return m_disableNetworkAccess; }
    void setDisableNetworkAccess(bool disable);
    /// Whether queued records are saved soon after they are queued. Default: false.
    bool savesPromptly() const { return m_savesPromptly; }
    void setSavesPromptly(bool saves);

    /// Sets how many records of each kind may wait to be sent. The value is clamped to the range
    /// from 1 to `largestQueueLimit`. It applies only if the queue does not exist yet.
    void setQueueLimit(int limit) { m_queueLimit = std::clamp(limit, 1, largestQueueLimit); }
    static constexpr int largestQueueLimit = 10'000;

    /// Returns why the library is disabled; absent while it is enabled.
    std::optional<DisabledError> disabledError() const override;
    void setDisabledError(const std::optional<DisabledError> &error);
    /// Sets whether start-up is being repeated. Meanwhile, requests that return data are sent
    /// although the library has disabled itself, and responses that cannot be decoded are not
    /// reported. Default: false.
    void setStartsOver(bool startsOver) { m_startsOver = startsOver; }
    /// Applies a change of `disabledError()` to the queue: records are sent, or held while the
    /// library is disabled. Call it after each such change.
    void resumeSubmissions();

    /// Fetches the configuration of the environment. A configuration that names a reason disables
    /// the library. So does an error, for example of the connection: the library then disables
    /// itself with the error `local`, unless it is already disabled. The request is sent again if
    /// the end of the application object interrupted it.
    void fetchConfig(const Completion<ResponseConfig> &completion);
    /// Requests a visitor for the given user, or one without a user if `userIdentifier` is absent.
    void fetchVisitorIdentifier(const std::optional<QString> &userIdentifier,
                                Authorization authorization,
                                const Completion<ResponseVisitors> &completion);
    /// Tells the service which user the current visitor is. The service may return another visitor.
    void setUserIdentifier(const QString &userIdentifier,
                           const Completion<ResponseVisitors> &completion);
    /// Reports an event with the current time. The service may return a survey.
    void trackEvent(const QString &event, const Completion<Survey> &completion);
    /// Fetches a survey by its id.
    void fetchSurvey(qint64 surveyId, const Completion<Survey> &completion);

    // The following operations queue a record. The completion is called on the main thread when the
    // record is delivered, refused, given up or impossible to build. It is not called for a record
    // that is dropped unsent.

    /// Queues an event with the current time. The service returns no survey for it.
    void queueEvent(const QString &event);
    void setVisitorAttribute(const QString &key, const QString &value,
                             const SimpleCompletion &completion);
    void setVisitorAttributes(const QMap<QString, QString> &attributes,
                              const SimpleCompletion &completion);
    void removeVisitorAttributes(const QStringList &keys, const SimpleCompletion &completion);
    /// Queues a report that a survey or a question was seen or closed. Does nothing while there is
    /// no visitor.
    void recordSurveyEvent(qint64 surveyId, std::optional<qint64> questionId,
                           const QString &responseGroupUid, Request::SurveyEventType event);
    /// Queues the answers to a survey, dated with the current time.
    void submitSurveyResponse(qint64 surveyId, const QString &responseGroupUid,
                              const QList<Request::SurveyQuestionResponse> &responses);
    /// Queues a report of an error within the library. `extra` is added to the report's metadata,
    /// `stack` is the call stack if the caller has one.
    void recordError(const Error &error, const Request::Metadata::Extra &extra);
    void recordError(const Error &error, const std::optional<QString> &stack,
                     const Request::Metadata::Extra &extra);

    /// Returns the builder of the current visitor's requests. It lives as long as this object.
    const KestrioServiceRequests &networkRequests() const { return *m_networkRequests; }
    QString serviceHost() const override { return m_networkRequests->host(); }
    /// Sends records of the queue. Several events that take more than 1 MiB together are
    /// `tooLarge`.
    Submission submit(const QList<QueueableRequest> &records, const VisitorCredentials &visitor,
                      SimpleCompletion completion) override;
    /// Passes an error to the error handler, if one is set.
    void handleError(const Error &error) override;

    /// Calls `report` on the library's thread, after the work that waits there now. `idle` is true
    /// if no request is in flight, no queued record is due, whether or not the queue is paused, and
    /// no save is scheduled.
    void reportIdle(std::function<void(bool idle)> report);

private:
    /// What to do with a request that the end of the application object interrupted, once another
    /// application object exists. Requests of start-up are sent again.
    enum class AfterCut { fail, sendAgain };

    template <typename Value>
    void sendRequest(const URLRequest &request, Authorization authorization,
                     Completion<Value> completion, AfterCut afterwards = AfterCut::fail);
    /// Sends a request with the given token and discards the response's body. The completion gets
    /// an error if the request failed, or if the status leaves open whether the service accepts the
    /// record.
    void sendSimpleRequest(const URLRequest &request, const std::optional<QString> &token,
                           SimpleCompletion completion);
    /// Returns the answer that `result` stands for. Reports a response that cannot be decoded.
    template <typename Value>
    ServiceAnswer<Value> decodedAnswer(const URLResult &result);
    /// Returns why requests fail at the moment; absent while they may be sent.
    std::optional<Error> refusal() const;
    /// The same for requests that return data. While start-up is repeated, they are allowed
    /// although the library has disabled itself.
    std::optional<Error> refusalOfAnswered() const;
    void perform(const URLSession &session, const URLRequest &request, const QString &title,
                 URLTransport::Body body, URLCompletion completion) const;
    /// Logs and reports a response that could not be decoded, except while start-up is repeated.
    /// Returns the error in its general form.
    Error reportDecodingError(const DecodingError &error);
    /// Disables the library if the configuration says so or could not be fetched, then calls
    /// `completion`.
    void checkDisabled(ServiceAnswer<ResponseConfig> answer,
                       const Completion<ResponseConfig> &completion);

    /// Returns the record of an event that happens now.
    Request::TrackEvent trackedEvent(const QString &event) const;
    /// Returns the queue, which is created at the first call.
    std::shared_ptr<SubmissionQueue> submissionQueue();
    /// Queues the record, unless the host has withdrawn the visitor's consent.
    template <typename Record>
    void append(Record record) {
        if (!m_isWithdrawn)
            submissionQueue()->appendRequest(std::move(record));
    }
    /// Called with `m_submissionQueueLock` held.
    void makeSubmissionQueue();

    LibraryContext m_context;
    ErrorHandler m_errorHandler;
    Observer m_observer;
    std::atomic<bool> m_disableNetworkAccess = false;
    std::atomic<int> m_queueLimit = int(QueueRunner::defaultQueueLimit);
    std::atomic<bool> m_isWithdrawn = false;
    std::atomic<bool> m_startsOver = false;
    std::atomic<bool> m_savesPromptly = false;
    Atomic<std::optional<DisabledError>> m_disabledError;
    std::shared_ptr<KestrioServiceRequests> m_networkRequests;
    ServiceSessions m_sessions;
    /// The number of requests in flight. A request counts until its completion has returned. Shared
    /// with the completions, which may outlive this object.
    std::shared_ptr<std::atomic<int>> m_requestsInFlight = std::make_shared<std::atomic<int>>(0);
    /// Guards `m_submissionQueue`.
    std::mutex m_submissionQueueLock;
    std::shared_ptr<SubmissionQueue> m_submissionQueue;
};

} // namespace KestrioKit
