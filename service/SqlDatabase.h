#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <sqlite3.h>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace SurveyService {

/// An error of SQLite, with SQLite's own message.
class SqlError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// A statement with its bound values and its current row. Texts may contain zero bytes.
class SqlStatement {
public:
    template <typename... Values>
    SqlStatement(sqlite3 *database, std::string_view sql, const Values &...values)
        : SqlStatement(database, sql) {
        int index = 0;
        (bind(++index, values), ...);
    }
    SqlStatement(sqlite3 *database, std::string_view sql);

    /// Moves to the next row. Returns false after the last one.
    bool next();

    /// The number of columns of the result. Columns are counted from 0.
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

/// An open database file. Use it on one thread at a time.
class SqlDatabase {
public:
    /// Creates the file if it does not exist. Throws SqlError if the file is not a database.
    explicit SqlDatabase(const std::string &file);

    /// Calls `read` for each row. The statement always runs to its end, even if INSERT ...
    /// RETURNING yields a single row: only there does the write-ahead log shrink and a failed
    /// commit show.
    template <typename Read, typename... Values>
    void readAll(Read read, std::string_view sql, const Values &...values) {
        SqlStatement statement(m_connection.get(), sql, values...);
        while (statement.next())
            read(std::as_const(statement));
    }
    /// Returns the result of `read` for the first row; absent if there is none.
    template <typename Read, typename... Values>
    auto readFirst(Read read, std::string_view sql, const Values &...values) {
        std::optional<std::invoke_result_t<Read, const SqlStatement &>> first;
        const auto keepFirst = [&](const SqlStatement &row) {
            if (!first)
                first = read(row);
        };
        readAll(keepFirst, sql, values...);
        return first;
    }
    /// Runs a statement and ignores its rows.
    template <typename... Values>
    void run(std::string_view sql, const Values &...values) {
        readAll([](const SqlStatement &) {}, sql, values...);
    }
    /// Runs several statements that are separated by semicolons.
    void runScript(const char *sql);

private:
    std::unique_ptr<sqlite3, int (*)(sqlite3 *)> m_connection;
};

/// Begins a transaction. The destructor rolls it back unless it was committed.
class SqlTransaction {
public:
    explicit SqlTransaction(SqlDatabase &database);
    ~SqlTransaction();
    SqlTransaction(const SqlTransaction &) = delete;
    SqlTransaction &operator=(const SqlTransaction &) = delete;

    /// Commits the transaction. Throws SqlError if that fails; the transaction is then rolled back.
    void commit();

private:
    SqlDatabase *m_database;
};

} // namespace SurveyService
