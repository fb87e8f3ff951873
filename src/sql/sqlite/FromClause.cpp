#include "sql/sqlite/FromClause.h"

#include <map>
#include <utility>

#include "sql/sqlite/ExpressionTranslator.h"
#include "sql/sqlite/Names.h"
#include "sql/sqlite/QueryTranslator.h"
#include "sql/sqlite/SqliteTranslator.h"

namespace kpTables::sql {

namespace {

constexpr const char* kNoAggregate = "cannot have an aggregate function in a JOIN";
constexpr const char* kInnerJoin = " INNER JOIN ";
constexpr const char* kLeftJoin = " LEFT JOIN ";

class FromClause {
public:
    FromClause(Session& session, Scope& scope, const Scope* outer) : session_(session), scope_(scope), outer_(outer) {}

    void Declare(const TableExpression& table) {
        switch (table.kind) {
            case TableKind::Named:
                return DeclareTable(static_cast<const NamedTable&>(table));
            case TableKind::Derived:
                return DeclareQuery(static_cast<const DerivedTable&>(table));
            case TableKind::Join:
                break;
        }
        const auto& join = static_cast<const JoinedTable&>(table);
        Declare(*join.left);
        Declare(*join.right);
    }

    std::string Text(const TableExpression& table) const {
        if (table.kind == TableKind::Join) return Joined(static_cast<const JoinedTable&>(table));
        return texts_.at(&table);
    }

    // Of joins within one another: the innermost one's first table, and the tables that the others add to it.
    // firstSource is the number of the first source in the table.
    FromText Chain(const TableExpression& table, std::size_t firstSource) const {
        if (table.kind != TableKind::Join) return Beginning(table, firstSource);
        const auto& join = static_cast<const JoinedTable&>(table);
        const bool turned = IsTurned(join);
        const TableExpression& second = turned ? *join.left : *join.right;
        if (second.kind != TableKind::Named) return Beginning(table, firstSource);
        FromText chain = turned ? Chain(*join.right, firstSource + 1) : Chain(*join.left, firstSource);
        const std::size_t source = turned ? firstSource : firstSource + CountSources(*join.left);
        chain.joins.push_back(
            {Text(second), On(join), &scope_.Sources()[source], join.on.get(), join.join != JoinKind::Inner});
        return chain;
    }

private:
    void DeclareTable(const NamedTable& named) {
        const CatalogTable& table = session_.Table(named.name, named.offset);
        const bool aliased = !named.alias.empty();
        const std::string quoted = QuoteForSqlite(aliased ? named.alias : table.name);
        Source source;
        source.name = aliased ? named.alias : named.name;
        source.columns = ColumnsOf(table, quoted);
        scope_.Add(std::move(source), named.offset);
        texts_[&named] = aliased ? QuoteForSqlite(table.name) + " AS " + quoted : quoted;
    }

    void DeclareQuery(const DerivedTable& derived) {
        QueryText query = TranslateQuery(session_, *derived.query, outer_, QueryUse::Table);
        const std::string quoted = derived.alias.empty() ? session_.FreshName() : QuoteForSqlite(derived.alias);
        Source source;
        source.name = derived.alias;
        source.innerNames = std::move(query.tableNames);
        source.implied = std::move(query.implied);
        for (std::size_t i = 0; i < query.columns.size(); ++i)
            source.columns.push_back({query.columns[i].name, quoted + "." + QuoteForSqlite(query.names[i]),
                                      query.columns[i].type, false, false, false});
        scope_.Add(std::move(source), derived.offset);
        texts_[&derived] = "(" + query.text + ") AS " + quoted;
    }

    // A join on the right side needs parentheses, which SQLite may answer with a table made for it: where the join lets
    // its sides change places, the deeper one goes to the left.
    static bool IsTurned(const JoinedTable& join) {
        const bool deeper = join.right->kind == TableKind::Join && join.left->kind != TableKind::Join;
        return join.join == JoinKind::Right || (join.join == JoinKind::Inner && deeper);
    }

    std::string Joined(const JoinedTable& join) const {
        const bool turned = IsTurned(join);
        const TableExpression& first = turned ? *join.right : *join.left;
        const TableExpression& second = turned ? *join.left : *join.right;
        std::string text = Text(first);
        text += join.join == JoinKind::Inner ? kInnerJoin : kLeftJoin;
        text += second.kind == TableKind::Join ? "(" + Text(second) + ")" : Text(second);
        return text + " ON " + On(join);
    }

    std::string On(const JoinedTable& join) const {
        return TranslateCondition(*join.on, {session_, scope_, kNoAggregate}).text;
    }

    FromText Beginning(const TableExpression& table, std::size_t source) const {
        FromText beginning;
        const std::string text = Text(table);
        beginning.first = " FROM " + text;
        if (table.kind != TableKind::Named) return beginning;
        beginning.firstTable = text;
        beginning.firstSource = &scope_.Sources()[source];
        return beginning;
    }

    static std::size_t CountSources(const TableExpression& table) {
        if (table.kind != TableKind::Join) return 1;
        const auto& join = static_cast<const JoinedTable&>(table);
        return CountSources(*join.left) + CountSources(*join.right);
    }

    Session& session_;
    Scope& scope_;
    const Scope* outer_;
    std::map<const TableExpression*, std::string> texts_;
};

void CollectNames(const TableExpression& table, std::vector<std::string>& names) {
    if (table.kind == TableKind::Join) {
        const auto& join = static_cast<const JoinedTable&>(table);
        CollectNames(*join.left, names);
        CollectNames(*join.right, names);
    } else if (table.kind == TableKind::Named) {
        const auto& named = static_cast<const NamedTable&>(table);
        names.push_back(named.alias.empty() ? named.name : named.alias);
    } else {
        names.push_back(static_cast<const DerivedTable&>(table).alias);
    }
}

}  // namespace

std::string TableJoin::Text() const { return (optional ? kLeftJoin : kInnerJoin) + table + " ON " + on; }

std::string FromText::Text() const {
    std::string text = first;
    for (const TableJoin& join : joins) text += join.Text();
    return text;
}

FromText TranslateFrom(Session& session, const std::vector<TablePtr>& from, Scope& scope, const Scope* outer) {
    FromClause clause(session, scope, outer);
    for (const auto& table : from) clause.Declare(*table);
    if (from.size() == 1) return clause.Chain(*from.front(), 0);
    FromText result;
    for (const auto& table : from)
        result.first.append(result.first.empty() ? " FROM " : ", ").append(clause.Text(*table));
    return result;
}

std::vector<std::string> TableNames(const std::vector<TablePtr>& from) {
    std::vector<std::string> names;
    for (const auto& table : from) CollectNames(*table, names);
    return names;
}

}  // namespace kpTables::sql
