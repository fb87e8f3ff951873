// The lists of a book's tables and columns, by the names that they have on a server and in Jet.
#pragma once

#include <string_view>

#include "sql/bind/Context.h"
#include "sql/bind/Query.h"

namespace kpTables::sql::bind {

/// sysobjects, sys.tables, INFORMATION_SCHEMA.TABLES, MSysObjects and the like as a query; null for any other name.
QueryPtr SystemTable(Context& context, std::string_view name);

/// OBJECT_ID('table'[, 'U']): the table's number in these lists; Null where there is none.
TermPtr ObjectId(Context& context, Terms arguments);

}  // namespace kpTables::sql::bind
