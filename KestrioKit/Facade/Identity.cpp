#include "KestrioKit/Facade/Identity.h"

#include "KestrioKit/Facade/FacadeLog.h"
#include "KestrioKit/Platform/Storage.h"

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView identityFilename("VisitorData");
// It is read on the host's thread; the identity of even a very long user is far smaller.
constexpr qint64 maximumIdentityFileSize = 4 * 1024 * 1024;
constexpr auto tokenVariable = "KESTRIO_AUTH_TOKEN";
constexpr auto visitorVariable = "KESTRIO_VISITOR_IDENTIFIER";

void logLoaded(qint64 visitorIdentifier, const std::optional<QString> &token, QStringView source) {
    logLine(u"Loaded vid (%1) and auth token (%2 bytes) from %3."_s.arg(visitorIdentifier)
                .arg(token ? token->size() : 0)
                .arg(source),
            LogCategory::debug);
}

} // namespace

Identity::Identity(std::shared_ptr<KestrioService> api, SerialExecutor &fileExecutor)
    : m_api(std::move(api)), m_fileExecutor(fileExecutor) {}

void Identity::loadAuthorizationInfo() {
    const std::lock_guard guard(m_lock);
    voidEarlierRequests();
    if (qEnvironmentVariableIsSet(tokenVariable) && qEnvironmentVariableIsSet(visitorVariable))
        loadFromEnvironment();
    else
        loadFromFile();
}

void Identity::loadFromEnvironment() {
    const QString token = qEnvironmentVariable(tokenVariable);
    bool isNumber = false;
    const qint64 visitorIdentifier = qEnvironmentVariable(visitorVariable).toLongLong(&isNumber);
    if (!isNumber)
        return;
    m_api->authorize(token, visitorIdentifier);
    logLoaded(visitorIdentifier, token, u"environment");
}

void Identity::loadFromFile() {
    const auto record = *m_changesWaiting > 0
                            ? m_localData.value()
                            : Storage::load<LocalData>(Storage::localLibraryURL(identityFilename),
                                                       maximumIdentityFileSize);
    if (!record)
        return;
    m_localData.setValue(*record);
    if (!record->visitorIdentifier)
        return;
    m_api->authorize(record->token, record->visitorIdentifier);
    logLoaded(*record->visitorIdentifier, record->token, u"file");
}

void Identity::clearAuthorizationInfo() {
    const std::lock_guard guard(m_lock);
    voidEarlierRequests();
    m_api->clearAuthorization();
    changeFile([] { Storage::remove(identityFilename); });
    m_localData.setValue({});
}

void Identity::changeFile(Block change) {
    ++*m_changesWaiting;
    m_fileExecutor.post([change = std::move(change), waiting = m_changesWaiting] {
        change();
        --*waiting;
    });
}

Identity::RequestNumber Identity::beginRequest() {
    const std::lock_guard guard(m_lock);
    return ++m_lastRequest;
}

bool Identity::settle(RequestNumber request) {
    const std::lock_guard guard(m_lock);
    return settleLocked(request);
}

std::optional<LocalData> Identity::saveAuthorizationInfo(RequestNumber request,
                                                         const Change &change) {
    const std::lock_guard guard(m_lock);
    if (!settleLocked(request))
        return std::nullopt;
    const LocalData record = change(m_localData.value());
    m_api->authorize(record.token, record.visitorIdentifier);
    changeFile([record] {
        Storage::store(std::optional(record), Storage::localLibraryURL(identityFilename));
    });
    m_localData.setValue(record);
    return record;
}

bool Identity::settleLocked(RequestNumber request) {
    if (request <= m_lastSettled)
        return false;
    m_lastSettled = request;
    return true;
}

void Identity::voidEarlierRequests() {
    m_lastSettled = m_lastRequest;
}

} // namespace KestrioKit
