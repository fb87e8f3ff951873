// Errors that are the same on every engine.
#pragma once

#include <string_view>

#include "sql/SqlError.h"

namespace kpTables::engines {

/// Raises the front end's error for statement as a DatabaseError.
[[noreturn]] void RaiseRefusal(const sql::SqlError& refusal, std::string_view statement);

/// Raises the error of a recordset that no longer fits its table.
[[noreturn]] void RaiseColumnsChanged(std::string_view statement);

/// Raises the error of a change to a missing row; statement is the change.
[[noreturn]] void RaiseRowGone(std::string_view statement);

/// Raises the error of a change to a row that another program has changed since it was read.
[[noreturn]] void RaiseRowChanged(std::string_view statement);

}  // namespace kpTables::engines
