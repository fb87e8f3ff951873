// A translation as short texts, for tables of cases.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "sql/Translation.h"
#include "sql/rewrite/Rules.h"

namespace kpTables::sql::test {

/// The translation of a text against the test catalog by the rules that keep what is written recognizable: all but
/// eager aggregation and implied order.
Translation Translated(std::string_view text, const std::vector<LiteralValue>& pivotValues = {});
/// Of a text in SQL Server's dialect.
Translation TranslatedForServer(std::string_view text);
/// By all rules.
Translation TranslatedWhole(std::string_view text, const std::vector<LiteralValue>& pivotValues = {});
/// By all rules but those of these names.
Translation TranslatedBut(const std::vector<std::string_view>& rules, std::string_view text,
                          const std::vector<LiteralValue>& pivotValues = {});
std::vector<rewrite::Rule> RulesBut(const std::vector<std::string_view>& names);

/// "0 Text, 1 Long": the literal and the binding of ?1, ?2, ...
std::string ParametersOf(const Translation& translation);
/// "BillID Long, 金额 Currency"
std::string ColumnsOf(const Translation& translation);
/// "0 3", in ascending order
std::string FixedOf(const Translation& translation);

std::string NameOf(Type type);

/// The text of one expression of a SELECT from T under its own name, without what stands around it.
std::string ExpressionText(const Translation& translation);
/// The text of the condition of a DELETE from T.
std::string ConditionText(const Translation& translation);

}  // namespace kpTables::sql::test
