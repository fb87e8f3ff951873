// The statements that make the tables of a book, in Jet's DDL.
#pragma once

#include <string_view>
#include <vector>

namespace kpTables::schema {

/// The CREATE statements of every table and index of a book, one text each, in the order in which they are to be run.
std::vector<std::string_view> BookSchema();

}  // namespace kpTables::schema
