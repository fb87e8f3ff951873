// What the statements that change rows share.
#pragma once

#include <string>
#include <vector>

#include "kpTables/text/Message.h"
#include "sql/Catalog.h"
#include "sql/bind/Context.h"
#include "sql/bind/Query.h"

namespace kpTables::sql::bind {

inline constexpr const char* kNoAggregateInStatement =
    Translatable("cannot have an aggregate function in the statement");

/// The value as the column stores it; a text longer than the column is an error.
TermPtr ColumnValue(Context& context, TermPtr value, const CatalogColumn& column);

/// Whether a name is an alias of a column that the statement names as well, whose value is used then.
bool IsRepeated(const CatalogTable& table, const std::string& name, const std::vector<std::string>& names);

/// UPDATE and DELETE of a joined table: the rows are found by a query first, so that any join will do.
Update BindJoinedUpdate(Context& context, const UpdateStatement& statement);
Delete BindJoinedDelete(Context& context, const DeleteStatement& statement);

}  // namespace kpTables::sql::bind
