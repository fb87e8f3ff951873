// Tables and columns that a host has added to a book, made in another one.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "kpTables/Book.h"

namespace kpTables::bookkeeping {

/// Names without regard to the case of ASCII letters; null when there is none.
const TableInfo* FindTable(const std::vector<TableInfo>& tables, std::string_view name);
const TableInfo::Column* FindColumn(const TableInfo& table, std::string_view name);

/// Adds the columns that to lacks; answers them, each as "T.C".
std::vector<std::string> TakeOwnColumns(const TableInfo& from, const TableInfo& to, Book& book);
/// Gives columns of both tables that have another type or length in from that one.
void TakeColumnTypes(const TableInfo& from, const TableInfo& to, Book& book);
/// Makes a table with its keys and defaults; answers the columns, each as "T.C", whose default is a time, which may be
/// that of the entry and is left out.
std::vector<std::string> MakeTable(const TableInfo& table, Book& book);

}  // namespace kpTables::bookkeeping
