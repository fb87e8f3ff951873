// The values that a host gives for the names in a statement, as the front end takes them.
#pragma once

#include "kpTables/Connection.h"
#include "sql/Tree.h"

namespace kpTables::engines {

/// Raises error 13 for a value that is none of a database, 6 for a number that is not finite, and 5 for a name that
/// stands twice.
sql::NamedLiterals NamedLiteralsOf(const NamedValues& values);

}  // namespace kpTables::engines
