#include "KestrioKit/Core/Facade/Identity.h"

#include "KestrioKit/Core/Facade/FacadeLog.h"

#include <algorithm>

namespace KestrioKit {

using namespace Qt::StringLiterals;

namespace {

constexpr QLatin1StringView identityFilename("VisitorData");
// The file is read on the host's thread. Even a very long user identifier needs far less.
constexpr qint64 maximumIdentityFileSize = 4 * 1024 * 1024;
constexpr auto tokenVariable = "KESTRIO_AUTH_TOKEN";
constexpr auto visitorVariable = "KESTRIO_VISITOR_IDENTIFIER";

void logLoaded(qint64 visitorIdentifier, const std::optional<QString> &token, QStringView source) {
    logLine(u"Loaded vid (%1) and auth token (%2 bytes) from %3."_s.arg(visitorIdentifier)
                .arg(token ? token->size() : 0)
                .arg(source),
            LogCategory::debug);
}

bool isDigit(QChar character) {
    return character >= u'0' && character <= u'9';
}

/// Returns the number if `text` consists of decimal digits after an optional sign.
std::optional<qint64> parseVisitor(const QString &text) {
    const bool isSigned = text.startsWith(u'+') || text.startsWith(u'-');
    if (!std::ranges::all_of(QStringView(text).sliced(isSigned ? 1 : 0), isDigit))
        return std::nullopt;
    bool fits = false;
    const qint64 number = text.toLongLong(&fits);
    return fits ? std::optional(number) : std::nullopt;
}

QString composed(const QString &text) {
    return text.normalized(QString::NormalizationForm_C);
}

} // namespace

Identity::Identity(std::shared_ptr<KestrioService> api, SerialExecutor &fileExecutor)
    : m_api(std::move(api)), m_file(fileExecutor, identityFilename, maximumIdentityFileSize) {}

bool Identity::isKnownUser(const QString &userIdentifier) const {
    const std::optional<QString> known = localData().userIdentifier;
    return known && composed(*known) == composed(userIdentifier);
}

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
    const std::optional<qint64> visitorIdentifier =
        parseVisitor(qEnvironmentVariable(visitorVariable));
    if (!visitorIdentifier)
        return;
    m_api->authorize(token, visitorIdentifier);
    logLoaded(*visitorIdentifier, token, u"environment");
}

void Identity::loadFromFile() {
    const auto record = m_file.isChanging() ? m_localData.value() : m_file.load();
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
    m_api->clearAuthorization();
    forgetLocked();
}

void Identity::forget() {
    const std::lock_guard guard(m_lock);
    forgetLocked();
}

void Identity::forgetLocked() {
    voidEarlierRequests();
    m_file.remove();
    m_localData.setValue({});
}

void Identity::eraseFile() {
    m_file.erase();
}

Identity::RequestNumber Identity::beginRequest() {
    const std::lock_guard guard(m_lock);
    return ++m_lastRequest;
}

void Identity::voidRequests() {
    const std::lock_guard guard(m_lock);
    voidEarlierRequests();
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
    const LocalData known = m_localData.value();
    LocalData record = change(known);
    // A token from the environment is known only to the service.
    if (!record.token)
        record.token = known.token ? known.token : m_api->authorizationToken();
    m_api->authorize(record.token, record.visitorIdentifier);
    m_file.store(record);
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
