// Queries and their tables in their canonical spelling.
#include "sql/parse/TextWriter.h"

namespace kpTables::sql::parse {

namespace {

void WriteTable(std::string& out, const TableExpression& table) {
    if (table.kind == TableKind::Named) {
        const auto& named = static_cast<const NamedTable&>(table);
        WriteName(out, named.name);
        return WriteAlias(out, named.alias);
    }
    if (table.kind == TableKind::Derived) {
        const auto& derived = static_cast<const DerivedTable&>(table);
        WriteQueryInParentheses(out, *derived.query);
        return WriteAlias(out, derived.alias);
    }
    const auto& joined = static_cast<const JoinedTable&>(table);
    WriteTable(out, *joined.left);
    out += joined.join == JoinKind::Inner  ? " INNER JOIN "
           : joined.join == JoinKind::Left ? " LEFT JOIN "
                                           : " RIGHT JOIN ";
    const bool parentheses = joined.right->kind == TableKind::Join;
    if (parentheses) out += '(';
    WriteTable(out, *joined.right);
    if (parentheses) out += ')';
    out += " ON ";
    WriteExpression(out, *joined.on);
}

void WriteItems(std::string& out, const std::vector<SelectItem>& items) {
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (i > 0) out += ", ";
        WriteExpression(out, *items[i].expression);
        WriteAlias(out, items[i].alias);
    }
}

void WriteClause(std::string& out, std::string_view words, const ExpressionPtr& condition) {
    if (!condition) return;
    out += words;
    WriteExpression(out, *condition);
}

void WriteCore(std::string& out, const SelectCore& core) {
    out += core.distinct ? "SELECT DISTINCT " : "SELECT ";
    if (core.top) {
        out += "TOP ";
        WriteExpression(out, *core.top);
        out += ' ';
    }
    WriteItems(out, core.items);
    for (std::size_t i = 0; i < core.from.size(); ++i) {
        out += i == 0 ? " FROM " : ", ";
        WriteTable(out, *core.from[i]);
    }
    WriteClause(out, " WHERE ", core.where);
    if (!core.groupBy.empty()) {
        out += " GROUP BY ";
        WriteExpressions(out, core.groupBy);
    }
    WriteClause(out, " HAVING ", core.having);
}

}  // namespace

void WriteQuery(std::string& out, const Query& query) {
    for (std::size_t i = 0; i < query.members.size(); ++i) {
        const Query::Member& member = query.members[i];
        if (i > 0) out += member.all ? " UNION ALL " : " UNION ";
        if (member.core)
            WriteCore(out, *member.core);
        else
            WriteQueryInParentheses(out, *member.nested);
    }
    for (std::size_t i = 0; i < query.orderBy.size(); ++i) {
        out += i == 0 ? " ORDER BY " : ", ";
        WriteExpression(out, *query.orderBy[i].expression);
        if (query.orderBy[i].descending) out += " DESC";
    }
}

void WriteQueryInParentheses(std::string& out, const Query& query) {
    out += '(';
    WriteQuery(out, query);
    out += ')';
}

}  // namespace kpTables::sql::parse
