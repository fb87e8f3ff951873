// Tables whose row follows from a grouping key: they are looked up once for each group, not for each row that is
// grouped, and their columns are not sorted with the rows.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "sql/Tree.h"
#include "sql/sqlite/SelectText.h"
#include "sql/sqlite/SelectTranslator.h"
#include "sql/sqlite/Session.h"

namespace kpTables::sql {

/// A SELECT with its order, as a join of its groups with the tables that are looked up.
struct LookedUpSelect {
    SelectParts parts;
    std::string order;  ///< " ORDER BY ...", or ""
};

/// nullopt where the SELECT joins no table to be looked up but those that are needed to make the groups.
std::optional<LookedUpSelect> LookUpByGroup(Session& session, SelectTranslator& translator, const SelectCore& core,
                                            const std::vector<OrderItem>& order);

}  // namespace kpTables::sql
