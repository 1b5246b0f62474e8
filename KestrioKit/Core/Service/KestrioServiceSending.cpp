#include "KestrioKit/Core/Service/KestrioService.h"

#include "KestrioKit/Core/Platform/HTTP/HTTPStatus.h"
#include "KestrioKit/Core/Platform/Logging.h"
#include "KestrioKit/Core/Service/RecordRequests.h"

#include <utility>
#include <variant>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

// The default limit of common web servers, in bytes. They refuse larger bodies, and refused records
// are not retried.
constexpr qsizetype largestBody = 1024 * 1024;

bool isSuccess(const std::optional<HTTPURLResponse> &response) {
    return response && statusClass(response->statusCode) == HTTPStatusClass::success;
}

} // namespace

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
    const auto inFlight = m_requestsInFlight;
    ++*inFlight;
    session.dataTask(
        request, body,
        [trace, isSimple, inFlight, completion = std::move(completion)](const URLResult &result) {
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
            --*inFlight;
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
void KestrioService::sendRequest(const URLRequest &request, Authorization authorization,
                                 Completion<Value> completion, AfterCut afterwards) {
    if (const std::optional<Error> error = refusalOfAnswered()) {
        completion(ServiceAnswer<Value>::failed(error));
        return;
    }
    const auto judge = [self = shared_from_this(), request, authorization,
                        completion = std::move(completion), afterwards](const URLResult &result) {
        if (result.cutOff && afterwards == AfterCut::sendAgain) {
            self->sendRequest<Value>(request, authorization, completion, afterwards);
            return;
        }
        // The answer may have been on its way when the requests were cancelled.
        completion(self->m_isWithdrawn ? ServiceAnswer<Value>::failed(self->refusal())
                                       : self->decodedAnswer<Value>(result));
    };
    const auto session = authorization == Authorization::none
                             ? m_sessions.anonymousSession()
                             : m_sessions.session(authorizationToken());
    perform(*session, request, u"[KestrioService] Sending request"_s, URLTransport::Body::keep,
            judge);
}

Submission KestrioService::submit(const QList<QueueableRequest> &records,
                                  const VisitorCredentials &visitor, SimpleCompletion completion) {
    const auto builder = m_networkRequests->forVisitor(visitor.visitorIdentifier);
    // Events are sent as a batch, even a single one.
    const bool isBatch =
        records.size() > 1 || std::holds_alternative<Request::TrackEvent>(records.first());
    const std::optional<URLRequest> request =
        isBatch ? createBatchRequest(records, *builder) : createRequest(records.first(), *builder);
    if (!request)
        return Submission::impossible;
    if (request->body.size() > largestBody && records.size() > 1)
        return Submission::tooLarge;
    sendSimpleRequest(*request, visitor.token, std::move(completion));
    return Submission::started;
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

// Requests that return data

void KestrioService::fetchConfig(const Completion<ResponseConfig> &completion) {
    if (const auto request = m_networkRequests->newConfig()) {
        sendRequest<ResponseConfig>(
            *request, Authorization::visitor,
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
                                            Authorization authorization,
                                            const Completion<ResponseVisitors> &completion) {
    if (const auto request = m_networkRequests->newVisitors(userIdentifier))
        sendRequest<ResponseVisitors>(*request, authorization, completion, AfterCut::sendAgain);
}

void KestrioService::setUserIdentifier(const QString &userIdentifier,
                                       const Completion<ResponseVisitors> &completion) {
    if (const auto request = m_networkRequests->newSetUserIdentifier(userIdentifier))
        sendRequest<ResponseVisitors>(*request, Authorization::visitor, completion,
                                      AfterCut::sendAgain);
}

void KestrioService::fetchSurvey(qint64 surveyId, const Completion<Survey> &completion) {
    if (const auto request = m_networkRequests->newFetchSurvey(surveyId))
        sendRequest<Survey>(*request, Authorization::visitor, completion);
}

void KestrioService::trackEvent(const QString &event, const Completion<Survey> &completion) {
    const auto request = m_networkRequests->newTrackEvent(trackedEvent(event));
    if (!request)
        return;
    // The service responds with null to an event that triggers no survey.
    sendRequest<std::optional<Survey>>(
        *request, Authorization::visitor,
        [completion](const ServiceAnswer<std::optional<Survey>> &answer) {
            completion({{answer.response, answer.error}, answer.value.value_or(std::nullopt)});
        });
}

} // namespace KestrioKit
