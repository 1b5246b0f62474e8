#pragma once

#include "service/SqlDatabase.h"

#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace SurveyService {

/// A visitor of one environment. Whoever presents the token is treated as this visitor.
struct Visitor {
    std::int64_t id = 0;
    std::string environment;
    std::string token;
    std::optional<std::string> userId;
};

namespace RecordKind {
inline constexpr std::string_view visitor = "visitor";
inline constexpr std::string_view showing = "showing"; ///< a survey was sent to a visitor
inline constexpr std::string_view singleEvent = "single";
inline constexpr std::string_view eventBatch = "batch";
inline constexpr std::string_view setAttribute = "set";
inline constexpr std::string_view setAttributes = "setMany";
inline constexpr std::string_view removeAttributes = "remove";
inline constexpr std::string_view history = "history";
inline constexpr std::string_view response = "response";
inline constexpr std::string_view error = "error";
} // namespace RecordKind

/// A record of something that the service was told or did.
struct Record {
    std::string_view kind;
    std::optional<std::int64_t> visitorId;
    std::optional<std::int64_t> surveyId;
    /// The response group of a showing, the key of an attribute or the identifier of an error.
    std::optional<std::string> name;
    std::optional<std::string> body; ///< JSON, stored as received
};

/// Stores everything that the service is told in a SQLite database. Records of all kinds are
/// numbered in the order of arrival. Thread-safe. Every function may throw SqlError.
class RecordStore {
public:
    explicit RecordStore(const std::string &file);

    /// Returns the user's visitor if the environment knows the user. Otherwise returns the
    /// environment's visitor with that token, which becomes this user's visitor. If that visitor
    /// already belongs to another user, or if no visitor has the token, adds a new visitor. Without
    /// `userId`, the token alone decides.
    Visitor findOrAddVisitor(const std::string &environment,
                             const std::optional<std::string> &userId, const std::string &token);
    /// Returns the visitor with that token; absent if there is none.
    std::optional<Visitor> findVisitor(const std::string &token);

    /// Adds a record.
    void add(const Record &record);

    /// Adds the record and changes the visitor's attributes in one transaction.
    void changeAttributes(const Record &record, const std::map<std::string, std::string> &values,
                          const std::vector<std::string> &removedKeys);

    /// Returns the survey that was sent to the visitor with that response group; absent if there is
    /// none.
    std::optional<std::int64_t> findShownSurvey(std::int64_t visitorId, const std::string &group);

    /// Returns all records as one JSON object, which has an ordered array for each kind.
    std::string allRecords();

private:
    /// Returns the record's order number.
    std::int64_t insert(const Record &record);
    std::optional<Visitor> findBearer(const std::string &token);
    std::optional<Visitor> findUser(const std::string &environment, const std::string &userId);
    Visitor addVisitor(const std::string &environment, const std::optional<std::string> &userId);

    std::mutex m_mutex;
    SqlDatabase m_database;
};

} // namespace SurveyService
