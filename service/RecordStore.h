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

/// A visitor of one environment. Whoever has the token is taken for the visitor.
struct Visitor {
    std::int64_t id = 0;
    std::string environment;
    std::string token;
    std::optional<std::string> userId;
};

namespace RecordKind {
inline constexpr std::string_view visitor = "visitor";
inline constexpr std::string_view showing = "showing"; ///< a survey was handed out
inline constexpr std::string_view singleEvent = "single";
inline constexpr std::string_view eventBatch = "batch";
inline constexpr std::string_view setAttribute = "set";
inline constexpr std::string_view setAttributes = "setMany";
inline constexpr std::string_view removeAttributes = "remove";
inline constexpr std::string_view history = "history";
inline constexpr std::string_view response = "response";
inline constexpr std::string_view error = "error";
} // namespace RecordKind

/// One thing that the service was told or did.
struct Record {
    std::string_view kind;
    std::optional<std::int64_t> visitorId;
    std::optional<std::int64_t> surveyId;
    /// A showing's response group, an attribute's key, an error's identifier.
    std::optional<std::string> name;
    std::optional<std::string> body; ///< JSON, kept as it came
};

/// Everything the service has been told, in a SQLite database. Records are numbered in the order
/// of their arrival, whatever their kind. From any thread. Throws SqlError.
class RecordStore {
public:
    explicit RecordStore(const std::string &file);

    /// The visitor of that user, if the environment knows the user; else the environment's visitor
    /// with that token, who becomes that user unless already another one; else a new visitor.
    Visitor findOrAddVisitor(const std::string &environment,
                             const std::optional<std::string> &userId, const std::string &token);
    std::optional<Visitor> findVisitor(const std::string &token);

    void add(const Record &record);

    /// Adds the record of a change and makes the change, both or neither.
    void changeAttributes(const Record &record, const std::map<std::string, std::string> &values,
                          const std::vector<std::string> &removedKeys);

    /// The survey that was shown to the visitor as that response group.
    std::optional<std::int64_t> findShownSurvey(std::int64_t visitorId, const std::string &group);

    /// All records as one JSON object: an array for each kind, in order.
    std::string allRecords();

private:
    /// Gives the record's order number.
    std::int64_t insert(const Record &record);
    std::optional<Visitor> findBearer(const std::string &token);
    std::optional<Visitor> findUser(const std::string &environment, const std::string &userId);
    Visitor addVisitor(const std::string &environment, const std::optional<std::string> &userId);

    std::mutex m_mutex;
    SqlDatabase m_database;
};

} // namespace SurveyService
