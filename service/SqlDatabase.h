#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <sqlite3.h>
#include <stdexcept>
#include <string>
#include <string_view>

namespace SurveyService {

/// What SQLite complains of, in its own words.
class SqlError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// One statement with its values bound, and the row it stands on. Texts may hold zero bytes.
class SqlStatement {
public:
    template <typename... Values>
    SqlStatement(sqlite3 *database, std::string_view sql, const Values &...values)
        : SqlStatement(database, sql) {
        int index = 0;
        (bind(++index, values), ...);
    }
    SqlStatement(sqlite3 *database, std::string_view sql);

    /// Goes to the next row; false after the last.
    bool next();

    int columns() const;
    std::string_view columnName(int column) const;
    bool isNull(int column) const;
    bool isText(int column) const;
    std::int64_t integer(int column) const;
    std::string text(int column) const;
    std::optional<std::string> optionalText(int column) const;

private:
    void bind(int index, std::int64_t value);
    void bind(int index, std::string_view value);
    template <typename Value>
    void bind(int index, const std::optional<Value> &value) {
        if (value)
            bind(index, *value);
    }
    void check(int result) const;

    std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt *)> m_statement;
};

/// An open database file. To be used by one thread at a time.
class SqlDatabase {
public:
    /// Makes the file when it is missing. Throws SqlError when it is no database.
    explicit SqlDatabase(const std::string &file);

    template <typename... Values>
    SqlStatement query(std::string_view sql, const Values &...values) {
        return {m_connection.get(), sql, values...};
    }
    template <typename... Values>
    void run(std::string_view sql, const Values &...values) {
        query(sql, values...).next();
    }
    /// Several statements, separated by semicolons.
    void runScript(const char *sql);

private:
    std::unique_ptr<sqlite3, int (*)(sqlite3 *)> m_connection;
};

/// Begins a transaction, which is undone unless committed.
class SqlTransaction {
public:
    explicit SqlTransaction(SqlDatabase &database);
    ~SqlTransaction();
    SqlTransaction(const SqlTransaction &) = delete;
    SqlTransaction &operator=(const SqlTransaction &) = delete;

    void commit();

private:
    SqlDatabase *m_database;
};

} // namespace SurveyService
