// What engines say each in their own way. A printer's frame knows the grammar that they share.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "sql/bind/Query.h"
#include "sql/bind/Term.h"
#include "sql/print/Piece.h"

namespace kpTables::sql::print {

class Engine {
public:
    virtual ~Engine() = default;

    // ---- Spelling ----
    virtual std::string Name(std::string_view name) const;
    virtual std::string Text(std::string_view text) const;
    virtual std::string Parameter(int number, const bind::ParameterTerm& parameter) const = 0;
    /// What the engine calls a function that has this neutral name.
    virtual std::string FunctionName(std::string_view function) const = 0;
    virtual std::string AggregateName(bind::AggregateFunction function) const = 0;
    virtual std::string_view ComparisonSign(bind::ComparisonOperator op) const;

    // ---- Values ----
    /// A predicate as -1 or 0.
    virtual Piece PredicateValue(Piece predicate) const;
    virtual Piece Converted(Piece operand, const bind::Conversion& conversion) const = 0;
    virtual Piece Checked(Piece operand, Type type) const = 0;
    virtual Piece Collated(Piece text) const = 0;
    virtual Piece Concatenated(const bind::Concatenation& node, Piece left, Piece right) const = 0;
    /// call: "SUM(x) FILTER (WHERE y)", whose type may not be the aggregate's yet.
    virtual Piece Aggregated(const bind::Aggregate& aggregate, Piece call) const = 0;
    /// Tells the engine's planner that most rows meet the condition.
    virtual Piece Likely(Piece condition) const;
    /// Conditions of one kind that stand in a row before they are printed as a balanced tree.
    virtual std::size_t LongestChain() const = 0;

    // ---- Queries ----
    /// The name of what tells a row of the table from the others.
    virtual std::string RowIdName(const CatalogTable& table) const = 0;
    /// A row id to order by. filtered: a condition that is more than equalities leaves some of the rows.
    virtual std::string RowIdKey(std::string rowId, bool filtered) const;
    virtual std::string_view JoinWord(bind::JoinMethod method) const;
    /// sorted: the groups are to be made by sorting, even where an index would bring the rows in the key's order.
    virtual std::string GroupKey(std::string key, bool sorted) const;
    virtual std::string OrderKey(std::string key, bool descending) const;
    /// True when the engine brings the rows in the SELECT's order, which the statement leaves open, without being told.
    virtual bool KeepsOrder(const bind::Select& select) const;
    virtual std::string Limit(long long rows) const;

    // ---- Tables ----
    virtual std::string SchemaChange(const bind::SchemaChange& change,
                                     const std::vector<std::string>& defaults) const = 0;
};

}  // namespace kpTables::sql::print
