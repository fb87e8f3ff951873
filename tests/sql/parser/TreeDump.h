// The tree spelled out node by node: what two trees must have in common to be equal. Places in the text and literals'
// numbers are left out.
#pragma once

#include <string>

#include "sql/Tree.h"

namespace kpTables::sql::parse {

std::string Dump(const Statement& statement);
std::string Dump(const Expression& expression);

}  // namespace kpTables::sql::parse
