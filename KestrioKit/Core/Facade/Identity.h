#pragma once

#include "KestrioKit/Core/Facade/LocalData.h"
#include "KestrioKit/Core/Platform/Threads/Atomic.h"
#include "KestrioKit/Core/Service/KestrioService.h"

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

namespace KestrioKit {

/// Who the visitor is: in memory, in the identity file, and with the network service. Thread-safe.
///
/// Requests that ask the service who the visitor is are numbered. Answers may overtake one another,
/// and may come when that visitor is long forgotten: such an answer counts for nothing.
class Identity {
public:
    /// Goes up from request to request.
    using RequestNumber = quint64;
    /// Makes the new record out of the one that holds until then.
    using Change = std::function<LocalData(const LocalData &known)>;

    /// `fileExecutor` writes and removes the file, and must outlive its blocks.
    Identity(std::shared_ptr<KestrioService> api, SerialExecutor &fileExecutor);
    Q_DISABLE_COPY_MOVE(Identity)

    /// The last identity that was read, saved or cleared; at first nothing is known.
    LocalData localData() const { return m_localData.value(); }
    /// Whether that user is the one who is attached. Texts that look the same are the same,
    /// however their characters are composed.
    bool isKnownUser(const QString &userIdentifier) const;

    /// Takes the identity from "KESTRIO_AUTH_TOKEN" and "KESTRIO_VISITOR_IDENTIFIER" where both are
    /// set, else from the file, and authorizes the service with it. Nothing when the variable is no
    /// number, or the file no record. Makes the answers to earlier requests count for nothing.
    void loadAuthorizationInfo();
    /// Forgets everything. Makes the answers to earlier requests count for nothing.
    void clearAuthorizationInfo();
    /// The same, but leaves the service as it is.
    void forget();
    /// Has the file removed.
    void removeFile();

    /// The number of a request that is about to be sent.
    RequestNumber beginRequest();
    /// Makes the answers to earlier requests count for nothing.
    void voidRequests();
    /// Says that the request was answered, or failed. False when that counts for nothing.
    bool settle(RequestNumber request);
    /// The same, and when it counts: authorizes the service with the changed record, has it written
    /// to the file, and returns it. A record without a token keeps the one that is known so far.
    std::optional<LocalData> saveAuthorizationInfo(RequestNumber request, const Change &change);

private:
    void forgetLocked();
    bool settleLocked(RequestNumber request);
    void voidEarlierRequests();
    void loadFromEnvironment();
    void loadFromFile();
    void changeFile(Block change);

    std::shared_ptr<KestrioService> m_api;
    SerialExecutor &m_fileExecutor;
    Atomic<LocalData> m_localData;
    /// Held while service, file and memory are brought in step, so that they stay so. Never while a
    /// disk is at work: the host's thread takes it, too.
    std::mutex m_lock;
    /// How many changes of the file are still to be made: meanwhile memory knows better. Shared
    /// with what makes them.
    std::shared_ptr<std::atomic<int>> m_changesWaiting = std::make_shared<std::atomic<int>>(0);
    RequestNumber m_lastRequest = 0;
    /// The highest of the requests whose answer has counted, or which were made void.
    RequestNumber m_lastSettled = 0;
};

} // namespace KestrioKit
