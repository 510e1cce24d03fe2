// Owning handles for an SQLite connection and its prepared statements. Every
// failure throws SqliteError with SQLite's message and what was being done.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

namespace refpage::sqlite {

/// What SQLite refused: its result code (SQLITE_INTERRUPT when a progress handler stopped it)
/// and, for a failed system call, that call's errno (else 0).
class SqliteError : public std::runtime_error {
public:
    SqliteError(std::string const& message, int code, int systemError = 0)
        : std::runtime_error(message), code_(code), systemError_(systemError) {}
    int code() const noexcept { return code_; }
    int systemError() const noexcept { return systemError_; }

private:
    int code_;
    int systemError_;
};

struct CloseDatabase {
    void operator()(sqlite3* db) const noexcept { sqlite3_close_v2(db); }
};
struct FinalizeStatement {
    void operator()(sqlite3_stmt* statement) const noexcept { sqlite3_finalize(statement); }
};

/// One open connection; closed with the handle.
class Database {
public:
    /// Opens `path` with `flags` (SQLITE_OPEN_*); ":memory:" is a private in-memory database.
    Database(std::string const& path, int flags);

    sqlite3* get() const noexcept { return db_.get(); }
    /// Runs statements that bind nothing and return nothing; a failure says `doing`, never the SQL.
    void execute(char const* sql, std::string_view doing = "running statements");
    /// Throws SqliteError "`doing`: <SQLite's message>" when `code` is not SQLITE_OK/ROW/DONE.
    void require(int code, std::string_view doing) const;

private:
    std::unique_ptr<sqlite3, CloseDatabase> db_;
};

/// One prepared statement; finalised with the handle. Binds are 1-based, columns 0-based.
class Statement {
public:
    Statement(Database& db, std::string_view sql);

    void bind(int index, std::string_view text);
    void bind(int index, std::int64_t value);
    void bind(int index, double value);
    /// True while a row is ready; false once done.
    bool step();
    /// Runs to completion and resets for the next binds.
    void run();
    void reset();

    std::string text(int column) const;
    std::int64_t integer(int column) const;
    double real(int column) const;

private:
    Database* db_;  ///< borrowed; outlives the statement
    std::unique_ptr<sqlite3_stmt, FinalizeStatement> statement_;
};

}  // namespace refpage::sqlite
