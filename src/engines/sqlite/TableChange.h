// Gives the tables of a book the definitions of a new one.
#pragma once

#include <string>
#include <vector>

#include "engines/sqlite/Database.h"
#include "sql/Translation.h"

namespace kpTables::engines::sqlite {

/// Makes what the book's tables and indexes lack, and makes anew those that are defined otherwise than in wanted, an
/// empty book. Rows keep their ids; columns, tables, indexes and triggers that only the book has stay. Runs inside the
/// caller's transaction. Answers a phrase for each change.
std::vector<std::string> ChangeTables(const Database& book, const Database& wanted);

/// Gives one column another definition and every row's value in it the new type. The table keeps its rows' ids, its
/// indexes and triggers, and the column its default unless the definition has one. Runs inside the caller's
/// transaction.
void ChangeColumn(const Database& book, const sql::ColumnChange& change);

}  // namespace kpTables::engines::sqlite
