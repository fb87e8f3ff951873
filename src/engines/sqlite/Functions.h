// Registers the functions that translated texts call.
#pragma once

#include <span>
#include <string_view>

#include "sql/print/sqlite/FunctionList.h"

struct sqlite3;

namespace kpTables::engines::sqlite {

/// Registers every function that a translated text may call. Raises an error when one has no body.
void RegisterFunctions(sqlite3* database);

/// Raises an error that names the first of these functions without a body for its number of arguments.
void RequireBodies(std::span<const sql::print::sqlite::EngineFunction> listed);

/// First and Last, the standard deviations and the variances, of one argument each.
void RegisterAggregates(sqlite3* database);
bool IsAggregate(std::string_view name) noexcept;

}  // namespace kpTables::engines::sqlite
