#include "service/RecordStore.h"

#include "service/Identifiers.h"
#include "service/JsonNode.h"

#include <nlohmann/json.hpp>

#include <utility>

namespace SurveyService {
namespace {

constexpr std::int64_t schemaVersion = 1;

constexpr auto schema = R"(
    CREATE TABLE IF NOT EXISTS records (
        "order" INTEGER PRIMARY KEY AUTOINCREMENT,
        arrivedAt TEXT NOT NULL DEFAULT (strftime('%Y-%m-%dT%H:%M:%fZ', 'now')),
        kind TEXT NOT NULL,
        vid INTEGER,
        surveyId INTEGER,
        name TEXT,
        body TEXT);
    CREATE INDEX IF NOT EXISTS showings ON records (name) WHERE kind = 'showing';
    CREATE TABLE IF NOT EXISTS visitors (
        "order" INTEGER NOT NULL REFERENCES records,
        vid INTEGER PRIMARY KEY AUTOINCREMENT,
        environment TEXT NOT NULL,
        userId TEXT,
        token TEXT NOT NULL UNIQUE,
        UNIQUE (environment, userId));
    CREATE TABLE IF NOT EXISTS attributes (
        "order" INTEGER NOT NULL REFERENCES records,
        vid INTEGER NOT NULL REFERENCES visitors,
        key TEXT NOT NULL,
        value TEXT NOT NULL,
        PRIMARY KEY (vid, key));
)";

/// The arrays of GET /records with their queries. Columns become keys. Tokens are not included.
constexpr std::pair<const char *, const char *> selections[] = {
    {"visitors", "v.vid, environment, userId FROM visitors v JOIN records USING (\"order\")"},
    {"showings", "vid, surveyId, name AS responseGroupUid FROM records WHERE kind = 'showing'"},
    {"events", "vid, kind, body FROM records WHERE kind IN ('single', 'batch')"},
    {"attributes", "a.vid, key, value FROM attributes a JOIN records USING (\"order\")"},
    {"attributeChanges", "vid, kind AS change, name AS key, body FROM records "
                         "WHERE kind IN ('set', 'setMany', 'remove')"},
    {"history", "vid, surveyId, body FROM records WHERE kind = 'history'"},
    {"responses", "vid, surveyId, body FROM records WHERE kind = 'response'"},
    {"errors", "name AS errorId, body FROM records WHERE kind = 'error'"},
};

Visitor readVisitor(const SqlStatement &row) {
    return {row.integer(0), row.text(1), row.text(2), row.optionalText(3)};
}

std::int64_t readInteger(const SqlStatement &row) {
    return row.integer(0);
}

std::string jsonValue(const SqlStatement &row, int column) {
    if (row.isNull(column))
        return "null";
    if (!row.isText(column))
        return std::to_string(row.integer(column));
    // A body is already JSON and is returned byte for byte. Anything else in the file, for example
    // written by another program, is returned as text.
    const std::string text = row.text(column);
    const bool isJson = row.columnName(column) == "body" && nlohmann::json::accept(text);
    return isJson ? text : dumpLeniently(text);
}

std::string jsonObject(const SqlStatement &row) {
    std::string object = "{";
    for (int column = 0; column < row.columns(); ++column) {
        object += column == 0 ? "\"" : ",\"";
        object.append(row.columnName(column)).append("\":").append(jsonValue(row, column));
    }
    return object + '}';
}

std::string jsonArray(SqlDatabase &database, const std::string &sql) {
    std::string array = "[";
    database.readAll(
        [&array](const SqlStatement &row) {
            array.append(array.size() == 1 ? "\n" : ",\n").append(jsonObject(row));
        },
        sql);
    return array + ']';
}

} // namespace

RecordStore::RecordStore(const std::string &file) : m_database(file) {
    // With a write-ahead log, a commit need not wait for the disk. A power failure loses only the
    // last changes before it.
    m_database.runScript("PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL");
    if (*m_database.readFirst(readInteger, "PRAGMA user_version") > schemaVersion)
        throw SqlError("made by a later version of this program");
    SqlTransaction transaction(m_database);
    m_database.runScript(schema);
    m_database.runScript(("PRAGMA user_version = " + std::to_string(schemaVersion)).c_str());
    transaction.commit();
}

Visitor RecordStore::findOrAddVisitor(const std::string &environment,
                                      const std::optional<std::string> &userId,
                                      const std::string &token) {
    const std::scoped_lock lock(m_mutex);
    SqlTransaction transaction(m_database);
    // The visitor is read within the transaction: another request may have assigned a user
    // meanwhile.
    auto current = findBearer(token);
    if (current && current->environment != environment)
        current.reset();
    auto visitor = userId ? findUser(environment, *userId) : current;
    if (!visitor && current && !current->userId) {
        m_database.run("UPDATE visitors SET userId = ? WHERE vid = ?", userId, current->id);
        visitor = current;
        visitor->userId = userId;
    }
    if (!visitor)
        visitor = addVisitor(environment, userId);
    transaction.commit();
    return *visitor;
}

std::optional<Visitor> RecordStore::findVisitor(const std::string &token) {
    const std::scoped_lock lock(m_mutex);
    return findBearer(token);
}

std::optional<Visitor> RecordStore::findBearer(const std::string &token) {
    return m_database.readFirst(
        readVisitor, "SELECT vid, environment, token, userId FROM visitors WHERE token = ?", token);
}

std::optional<Visitor> RecordStore::findUser(const std::string &environment,
                                             const std::string &userId) {
    return m_database.readFirst(readVisitor,
                                "SELECT vid, environment, token, userId FROM visitors "
                                "WHERE environment = ? AND userId = ?",
                                environment, userId);
}

Visitor RecordStore::addVisitor(const std::string &environment,
                                const std::optional<std::string> &userId) {
    const std::int64_t order = insert({RecordKind::visitor, {}, {}, {}, {}});
    return *m_database.readFirst(
        readVisitor,
        "INSERT INTO visitors (\"order\", environment, userId, token) VALUES (?, ?, ?, ?) "
        "RETURNING vid, environment, token, userId",
        order, environment, userId, randomUuid());
}

void RecordStore::add(const Record &record) {
    const std::scoped_lock lock(m_mutex);
    insert(record);
}

std::int64_t RecordStore::insert(const Record &record) {
    return *m_database.readFirst(
        readInteger,
        "INSERT INTO records (kind, vid, surveyId, name, body) VALUES (?, ?, ?, ?, ?) "
        "RETURNING \"order\"",
        record.kind, record.visitorId, record.surveyId, record.name, record.body);
}

void RecordStore::changeAttributes(const Record &record,
                                   const std::map<std::string, std::string> &values,
                                   const std::vector<std::string> &removedKeys) {
    const std::scoped_lock lock(m_mutex);
    SqlTransaction transaction(m_database);
    const std::int64_t order = insert(record);
    for (const auto &[key, value] : values)
        m_database.run("REPLACE INTO attributes (\"order\", vid, key, value) VALUES (?, ?, ?, ?)",
                       order, record.visitorId, key, value);
    for (const auto &key : removedKeys)
        m_database.run("DELETE FROM attributes WHERE vid = ? AND key = ?", record.visitorId, key);
    transaction.commit();
}

std::optional<std::int64_t> RecordStore::findShownSurvey(std::int64_t visitorId,
                                                         const std::string &group) {
    const std::scoped_lock lock(m_mutex);
    return m_database.readFirst(
        readInteger, "SELECT surveyId FROM records WHERE kind = 'showing' AND name = ? AND vid = ?",
        group, visitorId);
}

std::string RecordStore::allRecords() {
    const std::scoped_lock lock(m_mutex);
    std::string json;
    for (const auto &[name, selection] : selections) {
        const std::string sql =
            std::string("SELECT \"order\", arrivedAt, ") + selection + " ORDER BY \"order\"";
        json.append(json.empty() ? "{\"" : ",\n\"").append(name).append("\":");
        json.append(jsonArray(m_database, sql));
    }
    return json + "}\n";
}

} // namespace SurveyService
