#include <fmt/format.h>

#include "Sqlite.hpp"

namespace refpage::sqlite {

Database::Database(std::string const& path, int flags) {
    sqlite3* raw = nullptr;
    int const code = sqlite3_open_v2(path.c_str(), &raw, flags | SQLITE_OPEN_EXRESCODE, nullptr);
    db_.reset(raw);  // owned even when opening failed, as SQLite requires
    if (code != SQLITE_OK)
        throw SqliteError(fmt::format("cannot open the database: {}", raw ? sqlite3_errmsg(raw) : sqlite3_errstr(code)),
                          code);
}

void Database::execute(char const* sql, std::string_view doing) {
    char* message = nullptr;
    int const code = sqlite3_exec(db_.get(), sql, nullptr, nullptr, &message);
    std::unique_ptr<char, decltype(&sqlite3_free)> const owned(message, &sqlite3_free);
    if (code != SQLITE_OK)
        throw SqliteError(fmt::format("{}: {}", doing, message ? message : sqlite3_errstr(code)), code,
                          sqlite3_system_errno(db_.get()));
}

void Database::require(int code, std::string_view doing) const {
    if (code != SQLITE_OK && code != SQLITE_ROW && code != SQLITE_DONE)
        throw SqliteError(fmt::format("{}: {}", doing, sqlite3_errmsg(db_.get())), code,
                          sqlite3_system_errno(db_.get()));
}

Statement::Statement(Database& db, std::string_view sql) : db_(&db) {
    sqlite3_stmt* raw = nullptr;
    db.require(sqlite3_prepare_v3(db.get(), sql.data(), static_cast<int>(sql.size()), SQLITE_PREPARE_PERSISTENT, &raw,
                                  nullptr),
               "preparing a statement");
    statement_.reset(raw);
}

void Statement::bind(int index, std::string_view text) {
    db_->require(sqlite3_bind_text(statement_.get(), index, text.data(), static_cast<int>(text.size()),
                                   SQLITE_TRANSIENT),
                 "binding a text");
}

void Statement::bind(int index, std::int64_t value) {
    db_->require(sqlite3_bind_int64(statement_.get(), index, value), "binding a number");
}

void Statement::bind(int index, double value) {
    db_->require(sqlite3_bind_double(statement_.get(), index, value), "binding a number");
}

bool Statement::step() {
    int const code = sqlite3_step(statement_.get());
    db_->require(code, "running a statement");
    return code == SQLITE_ROW;
}

void Statement::run() {
    while (step()) {
    }
    reset();
}

void Statement::reset() {
    sqlite3_reset(statement_.get());
}

std::string Statement::text(int column) const {
    auto const* bytes = reinterpret_cast<char const*>(sqlite3_column_text(statement_.get(), column));
    return bytes ? std::string(bytes, static_cast<std::size_t>(sqlite3_column_bytes(statement_.get(), column)))
                 : std::string();
}

std::int64_t Statement::integer(int column) const {
    return sqlite3_column_int64(statement_.get(), column);
}

double Statement::real(int column) const {
    return sqlite3_column_double(statement_.get(), column);
}

}  // namespace refpage::sqlite
