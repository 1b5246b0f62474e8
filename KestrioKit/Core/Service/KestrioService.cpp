#include "KestrioKit/Core/Service/KestrioService.h"

#include "KestrioKit/Core/Platform/HTTP/HTTPStatus.h"
#include "KestrioKit/Core/Queue/StateFolder.h"

#include <utility>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

bool isSuccess(const std::optional<HTTPURLResponse> &response) {
    return response && statusClass(response->statusCode) == HTTPStatusClass::success;
}

} // namespace

KestrioService::KestrioService(std::shared_ptr<KestrioServiceRequests> builder,
                               const LibraryContext &context)
    : m_context(context), m_networkRequests(std::move(builder)), m_sessions(context.transport) {}

// Credentials and settings

std::optional<QString> KestrioService::authorizationToken() const {
    return m_sessions.authorizationToken();
}

std::optional<qint64> KestrioService::visitorIdentifier() const {
    return m_networkRequests->visitorIdentifier();
}

void KestrioService::authorize(const std::optional<QString> &token,
                               std::optional<qint64> visitorIdentifier) {
    const std::lock_guard guard(m_submissionQueueLock);
    // The queue comes first, so that a thread that sees the new visitor queues its records behind
    // this.
    if (m_submissionQueue)
        m_submissionQueue->updateAuth(visitorIdentifier, token);
    const bool isOther = visitorIdentifier != m_networkRequests->visitorIdentifier();
    m_sessions.setAuthorizationToken(token);
    m_networkRequests->setVisitorIdentifier(visitorIdentifier);
    if (!m_submissionQueue)
        makeSubmissionQueue();
    if (isOther && m_observer.visitorChanged)
        m_observer.visitorChanged();
}

void KestrioService::withdraw() {
    const std::lock_guard guard(m_submissionQueueLock);
    m_isWithdrawn = true;
    const bool isKnown = this->visitorIdentifier().has_value();
    m_sessions.forgetToken();
    m_networkRequests->setVisitorIdentifier({});
    m_networkRequests->setEnvironment({});
    m_context.transport->cancelAll();
    if (m_submissionQueue)
        m_submissionQueue->erase();
    if (isKnown && m_observer.visitorChanged)
        m_observer.visitorChanged();
}

void KestrioService::eraseStored() {
    const std::lock_guard guard(m_submissionQueueLock);
    // A queue has removed it, and holds its lock.
    if (!m_submissionQueue)
        StateFolder::eraseStored();
}

void KestrioService::setEnvironmentId(const QString &environmentId) {
    m_isWithdrawn = false;
    m_networkRequests->setEnvironment(environmentId);
}

void KestrioService::setLocale(const std::optional<QString> &locale) {
    m_sessions.setLocale(locale);
}

void KestrioService::setDisableNetworkAccess(bool disable) {
    const std::lock_guard guard(m_submissionQueueLock);
    m_disableNetworkAccess = disable;
    // A queue that is created later reads the flag itself. It is not created here: without a
    // visitor it would treat the stored records as another visitor's.
    if (m_submissionQueue)
        m_submissionQueue->setDisableNetworkAccess(disable);
}

void KestrioService::setSavesPromptly(bool saves) {
    const std::lock_guard guard(m_submissionQueueLock);
    m_savesPromptly = saves;
    if (m_submissionQueue)
        m_submissionQueue->setSavesPromptly(saves);
}

std::optional<DisabledError> KestrioService::disabledError() const {
    return m_disabledError.value();
}

void KestrioService::setDisabledError(const std::optional<DisabledError> &error) {
    const auto before =
        m_disabledError.mutate([&error](auto &known) { return std::exchange(known, error); });
    if (before != error && m_observer.disabledChanged)
        m_observer.disabledChanged(error);
    if (error)
        KSLog(LogLevel::debug, u"Kestrio SDK Disabled: "_s + printedForm(*error));
    else
        KSLog(LogLevel::debug, u"Kestrio SDK Enabled"_s);
}

void KestrioService::resumeSubmissions() {
    submissionQueue()->resume();
}

std::shared_ptr<SubmissionQueue> KestrioService::submissionQueue() {
    const std::lock_guard guard(m_submissionQueueLock);
    if (!m_submissionQueue)
        makeSubmissionQueue();
    return m_submissionQueue;
}

void KestrioService::makeSubmissionQueue() {
    m_submissionQueue = SubmissionQueue::make(weak_from_this(), m_context, m_queueLimit);
    m_submissionQueue->setDisableNetworkAccess(m_disableNetworkAccess);
    m_submissionQueue->setSavesPromptly(m_savesPromptly);
}

// Sending

std::optional<Error> KestrioService::refusal() const {
    if (const std::optional<DisabledError> disabled = disabledError())
        return disabled->toError();
    if (m_disableNetworkAccess || m_isWithdrawn)
        return DisabledError{DisabledError::local, {}}.toError();
    return std::nullopt;
}

std::optional<Error> KestrioService::refusalOfAnswered() const {
    const std::optional<DisabledError> disabled = disabledError();
    if (m_startsOver && !m_disableNetworkAccess && !m_isWithdrawn && disabled &&
        disabled->kind == DisabledError::local)
        return std::nullopt;
    return refusal();
}

void KestrioService::perform(const URLSession &session, const URLRequest &request,
                             const QString &title, URLTransport::Body body,
                             URLCompletion completion) const {
    const auto trace = std::make_shared<LogTrace>(
        LogLevel::info, QStringList{printedForm(title), printedForm(request.method.constData()),
                                    printedForm(request.url.toString())});
    // Simple requests are logged by method and URL only.
    const bool isSimple = body == URLTransport::Body::discard;
    if (!isSimple && !request.body.isEmpty())
        trace->log({}, [&] { return QStringList{printedForm(request.body)}; });
    session.dataTask(
        request, body,
        [trace, isSimple, completion = std::move(completion)](const URLResult &result) {
            if (!isSimple)
                trace->log({}, [&] {
                    const auto reason =
                        result.error ? result.error->localizedDescription : QString();
                    return QStringList{printedForm(result.data), printedForm(reason)};
                });
            std::optional<qint64> status;
            if (result.response)
                status = result.response->statusCode;
            trace->finish({printedForm("Response"), printedForm(status)});
            completion(result);
        });
}

template <typename Value>
ServiceAnswer<Value> KestrioService::decodedAnswer(const URLResult &result) {
    ServiceAnswer<Value> answer{{result.response, result.error}, std::nullopt};
    if (!result.data || result.error || !isSuccess(result.response))
        return answer;
    Decoded<Value> decoded = decodeJSON<Value>(*result.data);
    if (auto *const value = std::get_if<Value>(&decoded))
        answer.value = std::move(*value);
    else
        answer.error = reportDecodingError(std::get<DecodingError>(decoded));
    return answer;
}

template <typename Value>
void KestrioService::sendRequest(const URLRequest &request, bool anonymous,
                                 Completion<Value> completion, AfterCut afterwards) {
    if (const std::optional<Error> error = refusalOfAnswered()) {
        completion(ServiceAnswer<Value>::failed(error));
        return;
    }
    const auto judge = [self = shared_from_this(), request, anonymous,
                        completion = std::move(completion), afterwards](const URLResult &result) {
        if (result.cutOff && afterwards == AfterCut::sendAgain) {
            self->sendRequest<Value>(request, anonymous, completion, afterwards);
            return;
        }
        // The answer may have been on its way when the requests were cancelled.
        completion(self->m_isWithdrawn ? ServiceAnswer<Value>::failed(self->refusal())
                                       : self->decodedAnswer<Value>(result));
    };
    perform(anonymous ? *m_sessions.anonymousSession() : *m_sessions.session(authorizationToken()),
            request, u"[KestrioService] Sending request"_s, URLTransport::Body::keep, judge);
}

void KestrioService::sendSimpleRequest(const URLRequest &request,
                                       const std::optional<QString> &token,
                                       SimpleCompletion completion) {
    if (const std::optional<Error> error = refusal()) {
        completion({{}, error});
        return;
    }
    perform(*m_sessions.session(token), request, u"[KestrioService] Sending simple request"_s,
            URLTransport::Body::discard,
            [request, completion = std::move(completion)](const URLResult &result) {
                const std::optional<Error> error =
                    result.error || !result.response
                        ? result.error
                        : undecidedError(request, result.response->statusCode);
                completion({result.response, error});
            });
}

Error KestrioService::reportDecodingError(const DecodingError &error) {
    Error general = error.toError();
    if (m_startsOver)
        return general;
    const std::optional<DisabledError> disabled = disabledError();
    logLine(LogLevel::error, u"[KestrioService] Unreadable answer (disabled: %1): %2"_s.arg(
                                 printedForm(disabled), general.localizedDescription));
    handleError(general);
    return general;
}

void KestrioService::handleError(const Error &error) {
    if (m_errorHandler)
        m_errorHandler(error);
}

// Requests that return data

void KestrioService::fetchConfig(const Completion<ResponseConfig> &completion) {
    if (const auto request = m_networkRequests->newConfig()) {
        sendRequest<ResponseConfig>(
            *request, false,
            [self = shared_from_this(), completion](const ServiceAnswer<ResponseConfig> &answer) {
                self->checkDisabled(answer, completion);
            },
            AfterCut::sendAgain);
    }
}

void KestrioService::checkDisabled(ServiceAnswer<ResponseConfig> answer,
                                   const Completion<ResponseConfig> &completion) {
    // A reason that the service gave is kept, although it makes this very request fail.
    if (answer.error && !disabledError())
        setDisabledError(DisabledError{DisabledError::local, {}});
    const std::optional<DisabledError> disabled =
        answer.value ? answer.value->checkDisabled() : std::nullopt;
    if (disabled) {
        setDisabledError(disabled);
        logLine(LogLevel::error, u"Kestrio SDK disabled: "_s + disabled->localizedDescription());
        answer.value.reset();
        answer.error = disabled->toError();
    }
    completion(answer);
}

void KestrioService::fetchVisitorIdentifier(const std::optional<QString> &userIdentifier,
                                            bool anonymous,
                                            const Completion<ResponseVisitors> &completion) {
    if (const auto request = m_networkRequests->newVisitors(userIdentifier))
        sendRequest<ResponseVisitors>(*request, anonymous, completion, AfterCut::sendAgain);
}

void KestrioService::setUserIdentifier(const QString &userIdentifier,
                                       const Completion<ResponseVisitors> &completion) {
    if (const auto request = m_networkRequests->newSetUserIdentifier(userIdentifier))
        sendRequest<ResponseVisitors>(*request, false, completion, AfterCut::sendAgain);
}

void KestrioService::fetchSurvey(qint64 surveyId, const Completion<Survey> &completion) {
    if (const auto request = m_networkRequests->newFetchSurvey(surveyId))
        sendRequest<Survey>(*request, false, completion);
}

void KestrioService::trackEvent(const QString &event, bool batch,
                                const Completion<Survey> &completion) {
    const Request::TrackEvent body = Request::makeTrackEvent(
        event, Request::makeMetadata(DeviceFacts::current()), m_context.clock);
    if (batch) {
        append(makeQueueTask(body, m_context.clock, [completion](const SimpleAnswer &answer) {
            completion({{answer.response, answer.error}, std::nullopt});
        }));
        return;
    }
    const auto request = m_networkRequests->newTrackEvent(body);
    if (!request)
        return;
    // The service responds with null to an event that triggers no survey.
    sendRequest<std::optional<Survey>>(
        *request, false, [completion](const ServiceAnswer<std::optional<Survey>> &answer) {
            completion({{answer.response, answer.error}, answer.value.value_or(std::nullopt)});
        });
}

// Queued records

void KestrioService::setVisitorAttribute(const QString &key, const QString &value,
                                         const SimpleCompletion &completion) {
    append(makeQueueTask(Request::UpdateAttribute{key, value}, m_context.clock, completion));
}

void KestrioService::setVisitorAttributes(const QMap<QString, QString> &attributes,
                                          const SimpleCompletion &completion) {
    append(makeQueueTask(Request::UpdateAttributes{attributes}, m_context.clock, completion));
}

void KestrioService::removeVisitorAttributes(const QStringList &keys,
                                             const SimpleCompletion &completion) {
    append(makeQueueTask(Request::RemoveAttributes{keys}, m_context.clock, completion));
}

void KestrioService::recordSurveyEvent(qint64 surveyId, std::optional<qint64> questionId,
                                       const QString &responseGroupUid,
                                       Request::SurveyEventType event) {
    const std::optional<qint64> visitor = visitorIdentifier();
    if (!visitor)
        return;
    append(Request::SurveyEvent{.environmentId = m_networkRequests->environment(),
                                .surveyId = surveyId,
                                .questionId = questionId,
                                .visitorId = *visitor,
                                .isNew = questionId && event == Request::SurveyEventType::seen,
                                .action = event,
                                .responseGroupUid = responseGroupUid});
}

void KestrioService::submitSurveyResponse(qint64 surveyId, const QString &responseGroupUid,
                                          const QList<Request::SurveyQuestionResponse> &responses) {
    append(
        Request::SurveyResponse{.surveyId = surveyId,
                                .body = {.responses = responses,
                                         .metadata = Request::makeMetadata(DeviceFacts::current()),
                                         .responseGroupUid = responseGroupUid},
                                .completedAt = m_context.clock.secondsSince1970()});
}

void KestrioService::recordError(const Error &error, const Request::Metadata::Extra &extra) {
    recordError(error, std::nullopt, extra);
}

void KestrioService::recordError(const Error &error, const std::optional<QString> &stack,
                                 const Request::Metadata::Extra &extra) {
    append(Request::RecordError{.environmentId = m_networkRequests->environment(),
                                .visitorId = visitorIdentifier(),
                                .userAgent = m_sessions.userAgent().uaHeaderValue(),
                                .metadata =
                                    Request::makeMetadata(DeviceFacts::current(), {}, {}, extra),
                                .details = {error.localizedDescription, stack}});
}

void KestrioService::reportIdle(std::function<void(bool idle)> report) {
    std::shared_ptr<SubmissionQueue> queue;
    {
        // The queue is not created here, for the reason given in `setDisableNetworkAccess()`.
        const std::lock_guard guard(m_submissionQueueLock);
        queue = m_submissionQueue;
    }
    const auto judge = [transport = m_context.transport, report = std::move(report)](bool idle) {
        report(idle && transport->tasksInFlight() == 0);
    };
    if (queue)
        queue->reportIdle(judge);
    else
        m_context.executor.post([judge] { judge(true); });
}

} // namespace KestrioKit
