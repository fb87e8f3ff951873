#include "engines/sqlite/Database.h"

#include <sqlite3.h>

#include "engines/sqlite/Failure.h"

namespace kpTables::engines::sqlite {

PreparedStatement::PreparedStatement(sqlite3* database, std::string_view text) {
    sqlite3_stmt* statement = nullptr;
    Check(database,
          sqlite3_prepare_v3(database, text.data(), static_cast<int>(text.size()), SQLITE_PREPARE_PERSISTENT,
                             &statement, nullptr),
          text);
    handle_.reset(statement);
}

void PreparedStatement::Finalize::operator()(sqlite3_stmt* statement) const noexcept { sqlite3_finalize(statement); }

void PreparedStatement::CheckCall(int code) {
    if (!Succeeded(code)) RaiseFailure(sqlite3_db_handle(Get()), code, Text());
}

void PreparedStatement::BindNull(int parameter) { CheckCall(sqlite3_bind_null(Get(), parameter)); }

void PreparedStatement::BindInteger(int parameter, std::int64_t value) {
    CheckCall(sqlite3_bind_int64(Get(), parameter, value));
}

void PreparedStatement::BindReal(int parameter, double value) {
    CheckCall(sqlite3_bind_double(Get(), parameter, value));
}

void PreparedStatement::BindText(int parameter, std::string_view text) {
    // A null pointer would bind Null, and an empty view may hold one.
    const char* data = text.empty() ? "" : text.data();
    CheckCall(sqlite3_bind_text64(Get(), parameter, data, text.size(), SQLITE_STATIC, SQLITE_UTF8));
}

void PreparedStatement::BindTextCopy(int parameter, std::string_view text) {
    CheckCall(sqlite3_bind_text64(Get(), parameter, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8));
}

bool PreparedStatement::Step(std::string_view shown) {
    const int code = sqlite3_step(Get());
    if (code == SQLITE_ROW) return true;
    if (code == SQLITE_DONE) return false;
    // The error is read before the statement is reset, which clears it.
    try {
        RaiseFailure(sqlite3_db_handle(Get()), code, shown);
    } catch (...) {
        Reset();
        throw;
    }
}

void PreparedStatement::Reset() noexcept {
    // Returns the last step's code again, which Step has already raised.
    sqlite3_reset(Get());
}

void PreparedStatement::CountStepsAnew() noexcept {
    constexpr int kFromZero = 1;
    sqlite3_stmt_status(Get(), SQLITE_STMTSTATUS_VM_STEP, kFromZero);
}

std::int64_t PreparedStatement::Integer(int column) const noexcept { return sqlite3_column_int64(Get(), column); }

std::string_view PreparedStatement::Text(int column) const {
    if (IsNull(column)) return {};
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(Get(), column));
    // SQLite may have to copy the text.
    if (!text) RaiseFailure(sqlite3_db_handle(Get()), SQLITE_NOMEM, Text());
    return {text, static_cast<std::size_t>(sqlite3_column_bytes(Get(), column))};
}

bool PreparedStatement::IsNull(int column) const noexcept { return sqlite3_column_type(Get(), column) == SQLITE_NULL; }

std::string_view PreparedStatement::Text() const noexcept {
    const char* text = sqlite3_sql(Get());
    return text ? text : std::string_view();
}

Database::Database(const std::string& name, int flags) {
    sqlite3* database = nullptr;
    // A connection serves one thread at a time, so SQLite need not lock it in every call.
    flags |= SQLITE_OPEN_EXRESCODE | SQLITE_OPEN_NOMUTEX;
    const int code = sqlite3_open_v2(name.c_str(), &database, flags, nullptr);
    // Even a failed open yields a handle, which holds the message.
    handle_.reset(database);
    Check(database, code);
}

void Database::Closer::operator()(sqlite3* database) const noexcept { sqlite3_close_v2(database); }

void Database::Run(std::string_view text) const { Prepare(text).Run(); }

std::int64_t Database::IntegerOf(std::string_view text) const {
    PreparedStatement statement = Prepare(text);
    return statement.Step() ? statement.Integer(0) : 0;
}

bool Database::InTransaction() const noexcept { return sqlite3_get_autocommit(Get()) == 0; }
bool Database::IsReadOnly() const noexcept { return refusesChanges_ || sqlite3_db_readonly(Get(), "main") == 1; }

void Database::RefuseChanges() {
    Run("PRAGMA query_only = ON");
    refusesChanges_ = true;
}

std::int64_t Database::Changes() const noexcept { return sqlite3_changes64(Get()); }
std::int64_t Database::LastInsertRow() const noexcept { return sqlite3_last_insert_rowid(Get()); }

}  // namespace kpTables::engines::sqlite
