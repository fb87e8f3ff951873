// The parser's rules, by what they read. Each takes its tokens from the cursor and raises SqlError.
#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "sql/Tree.h"
#include "sql/parse/Operators.h"
#include "sql/parse/TokenCursor.h"

namespace kpTables::sql::parse {

/// An expression whose operators bind at least as tightly as the given level.
ExpressionPtr ParseExpression(TokenCursor& cursor, Precedence loosest = Precedence::Implication);
/// A constant, a column, a call, a case, a cast, or anything in parentheses.
ExpressionPtr ParsePrimary(TokenCursor& cursor);
/// "COLLATE name" behind a value or a type, where the name means the book's own order.
void SkipCollation(TokenCursor& cursor);
/// Whether it is one of Access's domain functions, DLookup and the like.
bool IsDomainFunction(std::string_view name);
/// DLookup("expression", "table", "condition") and the like: the query that it means.
ExpressionPtr ParseDomainFunction(TokenCursor& cursor);
/// A whole number for TOP and the like, or one with decimals.
ExpressionPtr ParseCount(TokenCursor& cursor, bool mayBeBroken, const char* what);
/// One or more, separated by commas.
std::vector<ExpressionPtr> ParseExpressions(TokenCursor& cursor);

std::unique_ptr<Query> ParseQuery(TokenCursor& cursor);
/// "(SELECT ...)"; the cursor is at the opening parenthesis.
std::unique_ptr<Query> ParseQueryInParentheses(TokenCursor& cursor);
SelectItem ParseSelectItem(TokenCursor& cursor);
/// A table with all that is joined to it.
TablePtr ParseTable(TokenCursor& cursor);
/// "AS name" or a bare name; "" when there is none.
std::string ParseAlias(TokenCursor& cursor);
/// A table's name, perhaps after the schema "dbo", which means nothing here.
std::string ParseTableName(TokenCursor& cursor);
/// "(VALUES (...), ...) AS name (columns)", at its parenthesis.
TablePtr ParseValuesTable(TokenCursor& cursor);
/// Takes "dbo." before a name.
void SkipSchema(TokenCursor& cursor);
/// The tables of FROM, separated by commas.
std::vector<TablePtr> ParseTables(TokenCursor& cursor);
/// "ORDER BY ..."; empty when there is none.
std::vector<OrderItem> ParseOrderBy(TokenCursor& cursor);
/// "OVER (...)" behind a call.
ExpressionPtr ParseWindow(TokenCursor& cursor, std::unique_ptr<Call> call);

enum class TypeUse { Column, Cast };
TypeName ParseTypeName(TokenCursor& cursor, TypeUse use);

StatementPtr ParseSelect(TokenCursor& cursor);
/// "WITH name AS (...), ..." and the statement behind it.
StatementPtr ParseWith(TokenCursor& cursor);
StatementPtr ParseTransform(TokenCursor& cursor);
StatementPtr ParseInsert(TokenCursor& cursor);
StatementPtr ParseUpdate(TokenCursor& cursor);
StatementPtr ParseDelete(TokenCursor& cursor);
StatementPtr ParseTruncate(TokenCursor& cursor);
StatementPtr ParseCreate(TokenCursor& cursor);
StatementPtr ParseDrop(TokenCursor& cursor);
StatementPtr ParseAlter(TokenCursor& cursor);
/// BEGIN TRANSACTION, COMMIT, ROLLBACK and SET of an option.
StatementPtr ParseSession(TokenCursor& cursor);

}  // namespace kpTables::sql::parse
