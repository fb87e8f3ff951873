// Refusals that are the same on every engine, as this library's errors.
#pragma once

#include <string_view>

#include "sql/SqlError.h"

namespace kpTables::engines {

/// Raises the front end's refusal of statement as a DatabaseError.
[[noreturn]] void RaiseRefusal(const sql::SqlError& refusal, std::string_view statement);

/// Raises the error of a recordset that no longer fits its table.
[[noreturn]] void RaiseColumnsChanged(std::string_view statement);

/// Raises the error of a change to a row that is not there; statement is the change.
[[noreturn]] void RaiseRowGone(std::string_view statement);

}  // namespace kpTables::engines
