// How SQLite's result codes become this library's errors.
#pragma once

#include <string_view>

struct sqlite3;

namespace kpTables::engines::sqlite {

/// Raises the DatabaseError that a failed call stands for. statement is the text that the caller sent.
[[noreturn]] void RaiseFailure(sqlite3* database, int code, std::string_view statement);

/// True for OK, ROW and DONE.
bool Succeeded(int code) noexcept;

/// Every call of SQLite that returns a code goes through here: returns the code of a successful call, else raises.
inline int Check(sqlite3* database, int code, std::string_view statement = {}) {
    if (!Succeeded(code)) RaiseFailure(database, code, statement);
    return code;
}

/// The code with which a function of ours fails: SQLite's plain error combined with Visual Basic's number.
int FunctionFailureCode(int errorNumber) noexcept;

}  // namespace kpTables::engines::sqlite
