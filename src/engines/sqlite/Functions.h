// The functions that translated texts call, made known to a connection.
#pragma once

#include <span>
#include <string_view>

#include "sql/print/sqlite/FunctionList.h"

struct sqlite3;

namespace kpTables::sqlite {

/// Registers every function that a translated text may call. Raises an error when one of them has no body.
void RegisterFunctions(sqlite3* database);

/// Raises an error that names the first of these functions that no body answers, with that number of arguments.
void RequireBodies(std::span<const sql::print::sqlite::EngineFunction> listed);

/// First and Last, the standard deviations and the variances, of one argument each.
void RegisterAggregates(sqlite3* database);
bool IsAggregate(std::string_view name) noexcept;

}  // namespace kpTables::sqlite
