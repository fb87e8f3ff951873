// Prints a tree in a canonical spelling that parses to the same tree.
#pragma once

#include <string>

#include "sql/Tree.h"

namespace kpTables::sql::parse {

std::string Print(const Statement& statement);
std::string Print(const Query& query);
std::string Print(const Expression& expression);

}  // namespace kpTables::sql::parse
