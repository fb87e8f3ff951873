// The pieces of the canonical spelling; each appends to the text.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "sql/Tree.h"
#include "sql/parse/Operators.h"

namespace kpTables::sql::parse {

/// In brackets when it would not parse as this name without them.
void WriteName(std::string& out, std::string_view name);
void WriteNames(std::string& out, const std::vector<std::string>& names);
/// " AS name", nothing for "".
void WriteAlias(std::string& out, std::string_view alias);

/// In parentheses when its precedence is lower than the context's.
void WriteExpression(std::string& out, const Expression& e, Precedence loosest = Precedence::Implication);
void WriteExpressions(std::string& out, const std::vector<ExpressionPtr>& list);
void WriteType(std::string& out, const TypeName& type);

/// into: the statement whose query it is, if its rows become a table.
void WriteQuery(std::string& out, const Query& query, const SelectIntoStatement* into = nullptr);
void WriteTables(std::string& out, const std::vector<TablePtr>& tables);
/// "ORDER BY ..."; nothing without keys.
void WriteOrder(std::string& out, const std::vector<OrderItem>& order);
void WriteQueryInParentheses(std::string& out, const Query& query);

}  // namespace kpTables::sql::parse
