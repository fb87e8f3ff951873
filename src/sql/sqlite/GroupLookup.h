// A table whose row follows from a grouping key: it is looked up once for each group, not for each row that is grouped,
// and its columns are not sorted with the rows.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "sql/Tree.h"
#include "sql/sqlite/SelectText.h"
#include "sql/sqlite/SelectTranslator.h"
#include "sql/sqlite/Session.h"

namespace kpTables::sql {

/// A SELECT with its order, as a join of its groups with the table that is looked up.
struct LookedUpSelect {
    SelectParts parts;
    std::string order;  ///< " ORDER BY ...", or ""
};

/// nullopt where the last table that the SELECT joins is none to be looked up, or is needed to make the groups.
std::optional<LookedUpSelect> LookUpByGroup(Session& session, SelectTranslator& translator, const SelectCore& core,
                                            const std::vector<OrderItem>& order);

}  // namespace kpTables::sql
