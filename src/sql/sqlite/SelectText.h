// A translated SELECT whose columns may still be converted, and its text.
#pragma once

#include <string>
#include <vector>

#include "sql/sqlite/QueryTranslator.h"
#include "sql/sqlite/SelectTranslator.h"

namespace kpTables::sql {

struct SelectParts {
    bool distinct = false;
    bool comparesRows = false;  ///< equal rows are made one, by DISTINCT or by a UNION around it
    std::vector<OutputItem> items;
    std::string tail;  ///< everything after the select list
};

SelectParts PartsOf(SelectTranslator& translator);

/// The text with the columns' names and types. named: every column is called by a name of its own.
QueryText PrintSelect(Session& session, const SelectParts& parts, bool named);

/// All columns of a query in parentheses, for what SQLite takes from a table only.
SelectParts SelectFromQuery(Session& session, const QueryText& query);

}  // namespace kpTables::sql
