#include "RawDatabase.h"

#include <sqlite3.h>

#include <stdexcept>

#include "engines/sqlite/Collation.h"

namespace kpTables::bench {

namespace {

void Check(int code, sqlite3* database) {
    if (code != SQLITE_OK && code != SQLITE_ROW && code != SQLITE_DONE) {
        throw std::runtime_error(database != nullptr ? sqlite3_errmsg(database) : sqlite3_errstr(code));
    }
}

}  // namespace

RawStatement::RawStatement(sqlite3* database, const std::string& text) {
    sqlite3_stmt* statement = nullptr;
    Check(sqlite3_prepare_v2(database, text.c_str(), -1, &statement, nullptr), database);
    handle_.reset(statement);
}

void RawStatement::Finalize::operator()(sqlite3_stmt* statement) const noexcept { sqlite3_finalize(statement); }

RawStatement& RawStatement::Bind(int parameter, std::int64_t value) {
    Check(sqlite3_bind_int64(Get(), parameter, value), sqlite3_db_handle(Get()));
    return *this;
}

RawStatement& RawStatement::Bind(int parameter, double value) {
    Check(sqlite3_bind_double(Get(), parameter, value), sqlite3_db_handle(Get()));
    return *this;
}

RawStatement& RawStatement::Bind(int parameter, std::string_view text) {
    Check(sqlite3_bind_text(Get(), parameter, text.data(), static_cast<int>(text.size()), SQLITE_STATIC),
          sqlite3_db_handle(Get()));
    return *this;
}

bool RawStatement::Step() {
    const int code = sqlite3_step(Get());
    Check(code, sqlite3_db_handle(Get()));
    return code == SQLITE_ROW;
}

void RawStatement::Run() {
    while (Step()) {
    }
    sqlite3_reset(Get());
}

RawDatabase::RawDatabase(const std::string& path) {
    sqlite3* database = nullptr;
    const int code = sqlite3_open_v2(path.c_str(), &database, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
    handle_.reset(database);
    Check(code, database);
    engines::sqlite::RegisterCollation(database);
}

void RawDatabase::Closer::operator()(sqlite3* database) const noexcept { sqlite3_close_v2(database); }

void RawDatabase::Run(const std::string& text) const { Prepare(text).Run(); }

void RawDatabase::SetLikeABook() const {
    Run("PRAGMA journal_mode = WAL");
    Run("PRAGMA synchronous = FULL");
    Run("PRAGMA cache_size = -16384");
}

}  // namespace kpTables::bench
