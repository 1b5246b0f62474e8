#pragma once

#include "KestrioKit/Core/Facade/LocalData.h"
#include "KestrioKit/Core/Platform/StoredRecord.h"
#include "KestrioKit/Core/Platform/Threads/Atomic.h"
#include "KestrioKit/Core/Service/KestrioService.h"

#include <functional>
#include <memory>
#include <mutex>
#include <optional>

namespace KestrioKit {

/// Keeps the visitor's identity in memory, in the identity file, and in the network service, and
/// keeps the three consistent. Thread-safe.
///
/// Requests for the visitor are numbered, because their responses may arrive in any order, even
/// after the visitor was forgotten. An outdated response is ignored.
class Identity {
public:
    /// The number of a request. Later requests have higher numbers.
    using RequestNumber = quint64;
    /// Returns the new record, made from the current one.
    using Change = std::function<LocalData(const LocalData &known)>;

    /// `fileExecutor` writes and removes the file. It must outlive its blocks.
    Identity(std::shared_ptr<KestrioService> api, SerialExecutor &fileExecutor);
    Q_DISABLE_COPY_MOVE(Identity)

    /// Returns the last identity that was read, saved or cleared. It is empty at first.
    LocalData localData() const { return m_localData.value(); }
    /// Returns whether that user is attached to the visitor. Compares the texts in Unicode's
    /// composed form, so texts that look the same are equal.
    bool isKnownUser(const QString &userIdentifier) const;

    /// Loads the identity and authorizes the service with it. Reads "KESTRIO_AUTH_TOKEN" and
    /// "KESTRIO_VISITOR_IDENTIFIER" if both are set, and the file otherwise. Does nothing if the
    /// variable is not a number or the file is not a valid record. Voids earlier requests.
    void loadAuthorizationInfo();
    /// Forgets the identity in memory, in the file and in the service. Voids earlier requests.
    void clearAuthorizationInfo();
    /// Like `clearAuthorizationInfo()`, but does not change the service.
    void forget();
    /// Removes the file and what interrupted writes left of it, asynchronously.
    void eraseFile();

    /// Returns the number for a request that is about to be sent.
    RequestNumber beginRequest();
    /// Voids earlier requests: their responses are ignored.
    void voidRequests();
    /// Notes that the request has completed. Returns false if its response is outdated.
    bool settle(RequestNumber request);
    /// Like `settle()`. If the response is not outdated, authorizes the service with the changed
    /// record, writes it to the file asynchronously, and returns it. A record without a token keeps
    /// the known token.
    std::optional<LocalData> saveAuthorizationInfo(RequestNumber request, const Change &change);

private:
    void forgetLocked();
    bool settleLocked(RequestNumber request);
    void voidEarlierRequests();
    void loadFromEnvironment();
    void loadFromFile();

    std::shared_ptr<KestrioService> m_api;
    StoredRecord<LocalData> m_file;
    Atomic<LocalData> m_localData;
    /// Held while service, file and memory are updated together. Never held during disk access,
    /// because the host's thread takes it, too.
    std::mutex m_lock;
    RequestNumber m_lastRequest = 0;
    /// The highest number of a request that was settled or voided.
    RequestNumber m_lastSettled = 0;
};

} // namespace KestrioKit
