#pragma once

#include "KestrioKit/Core/Platform/LibraryContext.h"
#include "KestrioKit/Core/Platform/Logging.h"
#include "KestrioKit/Core/Protocol/ResponseConfig.h"
#include "KestrioKit/Core/Protocol/ResponseVisitors.h"
#include "KestrioKit/Core/Queue/SubmissionQueue.h"
#include "KestrioKit/Core/Service/ServiceSessions.h"
#include "KestrioKit/Core/Survey/Survey.h"

#include <algorithm>
#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

namespace KestrioKit {

/// The one object through which the library talks to the survey service: the visitor's
/// credentials, an authorized and an anonymous session, and whether the library is disabled.
///
/// Requests whose answer is waited for are sent at once; the rest goes through the submission
/// queue. Completions are called on the library's thread, or within the call while the library is
/// disabled. A request that cannot be built is not sent, and its completion is never called.
/// Thread-safe.
class KestrioService final : public SubmissionSender,
                             public std::enable_shared_from_this<KestrioService> {
public:
    /// Takes the answer's record, unless the status is other than 2xx or something failed.
    template <typename Value>
    using Completion = std::function<void(const std::optional<Value> &value,
                                          const std::optional<HTTPURLResponse> &response,
                                          const std::optional<Error> &error)>;
    using ErrorHandler = std::function<void(const Error &error)>;

    KestrioService(std::shared_ptr<KestrioServiceRequests> builder, const LibraryContext &context);
    Q_DISABLE_COPY_MOVE(KestrioService)

    /// Takes the errors that nobody waits for. To be set before the first request.
    void setErrorHandler(ErrorHandler handler) { m_errorHandler = std::move(handler); }

    std::optional<QString> authorizationToken() const override;
    std::optional<qint64> visitorIdentifier() const override;
    /// From now on everything is sent as that visitor, of queued records those that are queued
    /// after this call. Those before it stay the visitor's before, or go with him.
    void authorize(const std::optional<QString> &token, std::optional<qint64> visitorIdentifier);
    void clearAuthorization() { authorize(std::nullopt, std::nullopt); }

    void setEnvironmentId(const QString &environmentId);
    /// The value of "Accept-Language"; absent for the user's languages.
    void setLocale(const std::optional<QString> &locale);
    /// Stops all sending, and drops new records, while true; false at first.
    bool disableNetworkAccess() const { return m_disableNetworkAccess; }
    void setDisableNetworkAccess(bool disable);
    /// While true, what is queued is saved soon after; false at first.
    bool savesPromptly() const { return m_savesPromptly; }
    void setSavesPromptly(bool saves);

    /// How many records of a kind may wait to be sent, from 1 to `largestQueueLimit`; values
    /// outside become the nearest. Counts for a queue that is made later.
    void setQueueLimit(int limit) { m_queueLimit = std::clamp(limit, 1, largestQueueLimit); }
    static constexpr int largestQueueLimit = 10'000;

    std::optional<DisabledError> disabledError() const override;
    void setDisabledError(const std::optional<DisabledError> &error);
    /// While true, requests whose answer is waited for are sent although the library has disabled
    /// itself, and their unreadable answers are not reported; false at first.
    void setStartsOver(bool startsOver) { m_startsOver = startsOver; }
    /// Sends what is queued, or keeps it while the library is disabled: to be called after a
    /// change.
    void resumeSubmissions();

    void fetchConfig(const Completion<ResponseConfig> &completion);
    void fetchVisitorIdentifier(const std::optional<QString> &userIdentifier, bool anonymous,
                                const Completion<ResponseVisitors> &completion);
    void setUserIdentifier(const QString &userIdentifier,
                           const Completion<ResponseVisitors> &completion);
    /// With `batch` the event is queued and no survey comes back.
    void trackEvent(const QString &event, bool batch, const Completion<Survey> &completion);
    void fetchSurvey(qint64 surveyId, const Completion<Survey> &completion);

    // Queued; the completion is called on the main thread once the record is finished for good. It
    // is not called for one that is dropped unsent.
    void setVisitorAttribute(const QString &key, const QString &value,
                             const SimpleCompletion &completion);
    void setVisitorAttributes(const QMap<QString, QString> &attributes,
                              const SimpleCompletion &completion);
    void removeVisitorAttributes(const QStringList &keys, const SimpleCompletion &completion);
    /// Nothing while there is no visitor.
    void recordSurveyEvent(qint64 surveyId, std::optional<qint64> questionId,
                           const QString &responseGroupUid, Request::SurveyEventType event);
    void submitSurveyResponse(qint64 surveyId, const QString &responseGroupUid,
                              const QList<Request::SurveyQuestionResponse> &responses);
    void recordError(const Error &error, const Request::Metadata::Extra &extra);
    void recordError(const Error &error, const std::optional<QString> &stack,
                     const Request::Metadata::Extra &extra);

    const KestrioServiceRequests &networkRequests() const override { return *m_networkRequests; }
    void sendSimpleRequest(const URLRequest &request, const std::optional<QString> &token,
                           SimpleCompletion completion) override;
    void handleError(const Error &error) override;

    /// Calls `report` on the library's thread: whether nothing is being sent and nothing that is
    /// queued is due, be its runner paused or not.
    void reportIdle(std::function<void(bool idle)> report);

private:
    /// What becomes of a request that the end of the application object has cut off, when another
    /// one starts. Start-up goes on where it was.
    enum class AfterCut { fail, sendAgain };

    template <typename Value>
    void sendRequest(const URLRequest &request, bool anonymous, Completion<Value> completion,
                     AfterCut afterwards = AfterCut::fail);
    std::optional<Error> refusal() const;
    std::optional<Error> refusalOfAnswered() const;
    void perform(const URLSession &session, const URLRequest &request, const QString &title,
                 URLTransport::Body body, URLCompletion completion) const;
    Error reportDecodingError(const DecodingError &error);
    void checkDisabled(const std::optional<ResponseConfig> &config,
                       const std::optional<HTTPURLResponse> &response,
                       const std::optional<Error> &error,
                       const Completion<ResponseConfig> &completion);

    std::shared_ptr<SubmissionQueue> submissionQueue();
    /// With the lock held.
    void makeSubmissionQueue();

    LibraryContext m_context;
    ErrorHandler m_errorHandler;
    std::atomic<bool> m_disableNetworkAccess = false;
    std::atomic<int> m_queueLimit = int(QueueRunner::defaultQueueLimit);
    std::atomic<bool> m_startsOver = false;
    std::atomic<bool> m_savesPromptly = false;
    Atomic<std::optional<DisabledError>> m_disabledError;
    std::shared_ptr<KestrioServiceRequests> m_networkRequests;
    ServiceSessions m_sessions;
    std::mutex m_submissionQueueLock;
    std::shared_ptr<SubmissionQueue> m_submissionQueue;
};

} // namespace KestrioKit
