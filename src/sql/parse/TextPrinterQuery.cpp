// Queries and their tables in their canonical spelling.
#include <array>

#include "sql/parse/TextWriter.h"

namespace kpTables::sql::parse {

namespace {

constexpr std::array<std::string_view, 4> kJoins = {" INNER JOIN ", " LEFT JOIN ", " RIGHT JOIN ", " FULL JOIN "};
constexpr std::array<std::string_view, 4> kSetOperations = {" UNION ", " UNION ALL ", " INTERSECT ", " EXCEPT "};

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
    out += kJoins[static_cast<std::size_t>(joined.join)];
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

void WriteCore(std::string& out, const SelectCore& core, const SelectIntoStatement* into) {
    out += core.distinct ? "SELECT DISTINCT " : core.distinctRow ? "SELECT DISTINCTROW " : "SELECT ";
    if (core.top) {
        out += "TOP ";
        WriteExpression(out, *core.top);
        out += core.percent ? " PERCENT " : core.withTies ? " WITH TIES " : " ";
    }
    WriteItems(out, core.items);
    if (into) {
        out += " INTO ";
        WriteName(out, into->table);
    }
    if (!core.from.empty()) {
        out += " FROM ";
        WriteTables(out, core.from);
    }
    WriteClause(out, " WHERE ", core.where);
    if (!core.groupBy.empty()) {
        out += " GROUP BY ";
        WriteExpressions(out, core.groupBy);
    }
    WriteClause(out, " HAVING ", core.having);
}

}  // namespace

void WriteTables(std::string& out, const std::vector<TablePtr>& tables) {
    for (const TablePtr& table : tables) {
        if (&table != &tables.front()) out += ", ";
        WriteTable(out, *table);
    }
}

void WriteOrder(std::string& out, const std::vector<OrderItem>& order) {
    for (std::size_t i = 0; i < order.size(); ++i) {
        out += i == 0 ? "ORDER BY " : ", ";
        WriteExpression(out, *order[i].expression);
        if (order[i].descending) out += " DESC";
    }
}

void WriteQuery(std::string& out, const Query& query, const SelectIntoStatement* into) {
    for (std::size_t i = 0; i < query.members.size(); ++i) {
        const Query::Member& member = query.members[i];
        if (i > 0) out += kSetOperations[static_cast<std::size_t>(member.operation)];
        if (member.core)
            WriteCore(out, *member.core, i == 0 ? into : nullptr);
        else
            WriteQueryInParentheses(out, *member.nested);
    }
    if (!query.orderBy.empty()) out += ' ';
    WriteOrder(out, query.orderBy);
    if (!query.skip) return;
    out += " OFFSET ";
    WriteExpression(out, *query.skip);
    out += " ROWS";
    if (!query.fetch) return;
    out += " FETCH NEXT ";
    WriteExpression(out, *query.fetch);
    out += " ROWS ONLY";
}

void WriteQueryInParentheses(std::string& out, const Query& query) {
    out += '(';
    WriteQuery(out, query);
    out += ')';
}

}  // namespace kpTables::sql::parse
