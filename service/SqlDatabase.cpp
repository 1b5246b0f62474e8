#include "service/SqlDatabase.h"

#include <chrono>

namespace SurveyService {
namespace {

/// How long to wait while another program uses the file.
constexpr std::chrono::milliseconds busyTimeout{2000};

sqlite3 *openDatabase(const std::string &file) {
    sqlite3 *connection = nullptr;
    const int result = sqlite3_open(file.c_str(), &connection);
    if (result == SQLITE_OK)
        return connection;
    sqlite3_close(connection);
    throw SqlError(sqlite3_errstr(result));
}

} // namespace

SqlStatement::SqlStatement(sqlite3 *database, std::string_view sql)
    : m_statement(nullptr, sqlite3_finalize) {
    sqlite3_stmt *statement = nullptr;
    const int result =
        sqlite3_prepare_v2(database, sql.data(), static_cast<int>(sql.size()), &statement, nullptr);
    m_statement.reset(statement);
    if (result != SQLITE_OK)
        throw SqlError(sqlite3_errmsg(database));
}

void SqlStatement::bind(int index, std::int64_t value) {
    check(sqlite3_bind_int64(m_statement.get(), index, value));
}

void SqlStatement::bind(int index, std::string_view value) {
    check(sqlite3_bind_text64(m_statement.get(), index, value.data(), value.size(),
                              SQLITE_TRANSIENT, SQLITE_UTF8));
}

bool SqlStatement::next() {
    const int result = sqlite3_step(m_statement.get());
    if (result != SQLITE_ROW && result != SQLITE_DONE)
        check(result);
    return result == SQLITE_ROW;
}

int SqlStatement::columns() const {
    return sqlite3_column_count(m_statement.get());
}

std::string_view SqlStatement::columnName(int column) const {
    return sqlite3_column_name(m_statement.get(), column);
}

bool SqlStatement::isNull(int column) const {
    return sqlite3_column_type(m_statement.get(), column) == SQLITE_NULL;
}

bool SqlStatement::isText(int column) const {
    return sqlite3_column_type(m_statement.get(), column) == SQLITE_TEXT;
}

std::int64_t SqlStatement::integer(int column) const {
    return sqlite3_column_int64(m_statement.get(), column);
}

std::string SqlStatement::text(int column) const {
    const auto *const data = sqlite3_column_text(m_statement.get(), column);
    const auto size = static_cast<std::size_t>(sqlite3_column_bytes(m_statement.get(), column));
    return {reinterpret_cast<const char *>(data), size};
}

std::optional<std::string> SqlStatement::optionalText(int column) const {
    if (isNull(column))
        return std::nullopt;
    return text(column);
}

void SqlStatement::check(int result) const {
    if (result != SQLITE_OK)
        throw SqlError(sqlite3_errmsg(sqlite3_db_handle(m_statement.get())));
}

SqlDatabase::SqlDatabase(const std::string &file)
    : m_connection(openDatabase(file), sqlite3_close) {
    sqlite3_busy_timeout(m_connection.get(), static_cast<int>(busyTimeout.count()));
}

void SqlDatabase::runScript(const char *sql) {
    if (sqlite3_exec(m_connection.get(), sql, nullptr, nullptr, nullptr) != SQLITE_OK)
        throw SqlError(sqlite3_errmsg(m_connection.get()));
}

SqlTransaction::SqlTransaction(SqlDatabase &database) : m_database(&database) {
    database.runScript("BEGIN IMMEDIATE");
}

SqlTransaction::~SqlTransaction() {
    if (!m_database)
        return;
    try {
        m_database->runScript("ROLLBACK");
    } catch (const SqlError &) {
        // SQLite may already have rolled back the transaction, for example if the disk is full.
    }
}

void SqlTransaction::commit() {
    m_database->runScript("COMMIT");
    m_database = nullptr;
}

} // namespace SurveyService
