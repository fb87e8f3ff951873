// Several SELECTs joined by UNION.
#pragma once

#include "sql/Tree.h"
#include "sql/sqlite/QueryTranslator.h"

namespace kpTables::sql {

/// A column's values are brought to one type in all members. Without an order of the whole, one that the members carry
/// on their columns becomes the whole's.
QueryText TranslateUnion(Session& session, const Query& query, const Scope* outer, QueryUse use);

}  // namespace kpTables::sql
