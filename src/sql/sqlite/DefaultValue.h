// The DEFAULT of a column definition.
#pragma once

#include <string>

#include "sql/Tree.h"
#include "sql/sqlite/Session.h"

namespace kpTables::sql {

/// The constant as the column stores it, or a call of Date() or Now(). SqlError TypeMismatch for a constant that the
/// type cannot hold, Unsupported for any other expression.
std::string DefaultText(Session& session, const Expression& value, Type type);

}  // namespace kpTables::sql
