// The hooks for what engines spell differently. The printer knows the grammar that they share.
#pragma once

#include <optional>
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
    /// The engine's name of the function with this neutral name; "" when the engine has no such function.
    virtual std::string FunctionName(std::string_view function) const = 0;
    /// A call by that name. SqlError Unsupported when the engine has no such function.
    virtual Piece Called(const bind::CallTerm& call, const std::vector<Piece>& arguments) const;
    virtual std::string AggregateName(bind::AggregateFunction function) const = 0;
    virtual std::string_view ComparisonSign(bind::ComparisonOperator op) const;
    virtual Piece Constant(const bind::ConstantTerm& constant) const;

    // ---- Values ----
    /// A predicate as -1 or 0.
    virtual Piece PredicateValue(const Piece& predicate) const;
    /// A term where a condition stands; it may be a number, which holds unless it is 0.
    virtual Piece Condition(const bind::Term& term, Piece piece) const;
    /// A result column, which may be a predicate.
    virtual Piece Item(const bind::Term& term, Piece piece) const;
    /// The left operand of an operation whose result may need more bits than its operands.
    virtual Piece Widened(const bind::Arithmetic& operation, Piece left) const;
    virtual Piece Converted(Piece operand, const bind::Conversion& conversion) const = 0;
    virtual Piece Checked(Piece operand, Type type) const = 0;
    virtual Piece Collated(Piece text) const = 0;
    virtual Piece Concatenated(const bind::Concatenation& node, Piece left, Piece right) const = 0;
    /// call: "SUM(x) FILTER (WHERE y)", whose type may differ from the aggregate's.
    virtual Piece Aggregated(const bind::Aggregate& aggregate, Piece call) const = 0;
    /// Tells the engine's planner that most rows meet the condition.
    virtual Piece Likely(Piece condition) const;
    /// The most conditions of one kind that are not printed as a balanced tree.
    virtual std::size_t LongestChain() const = 0;

    // ---- Queries ----
    /// Whether a query may read columns that its grouping keys determine without being keys themselves.
    virtual bool ReadsDependentColumns() const;
    /// Whether rows that are equal in the order of ORDER BY stay in the order in which they were found.
    virtual bool KeepsTies() const;
    /// Whether the client puts the rows of a result in order that is ordered by texts.
    virtual bool LeavesTextOrder() const;
    /// Whether a TRANSFORM is read cell by cell and put together by the program: see TranslateCells.
    virtual bool ReadsCells() const;
    /// The name of the table's row id.
    virtual std::string RowIdName(const CatalogTable& table) const = 0;
    /// A row id to order by. filtered: a condition other than equalities excludes rows.
    virtual std::string RowIdKey(std::string rowId, bool filtered) const;
    virtual std::string_view JoinWord(bind::JoinMethod method) const;
    /// sorted: the groups are formed by sorting, even where an index would yield the rows in key order.
    virtual std::string GroupKey(std::string key, bool sorted) const;
    virtual std::string OrderKey(std::string key, bool descending) const;
    /// True when the engine yields the SELECT's implied order without an ORDER BY.
    virtual bool KeepsOrder(const bind::Select& select) const;
    /// rows: how many at most, nothing for all; skip: of the first ones.
    virtual std::string Limit(std::optional<long long> rows, long long skip) const;

    // ---- Tables ----
    /// The query of the book's tables: table_name and table_id; or of their columns: table_name, column_name, position,
    /// nullable (YES or NO), type and length as a server names them. Unless an engine has one, SqlError Unsupported.
    virtual std::string BookList(bind::BookList list) const;
    /// Lets the table's counter begin at 1 again. Unless an engine says how, SqlError Unsupported.
    virtual std::string CounterRestart(const CatalogTable& table) const;
    /// The definition of a column that ALTER COLUMN gives another type, as CREATE TABLE has it; likewise.
    virtual std::string ColumnDefinition(const bind::Definition& column, const std::string& defaultText) const;
    /// A column of CREATE TABLE and ADD COLUMN. defaultText: "" for none.
    virtual std::string ColumnText(const std::string& table, const bind::Definition& column,
                                   const std::string& defaultText) const = 0;
    /// What stands behind the columns of CREATE TABLE: ", PRIMARY KEY ...", "" for nothing.
    virtual std::string KeyText(const bind::SchemaChange& change) const = 0;
    /// What follows CREATE TABLE: further statements, each behind a semicolon.
    virtual std::string BehindTable(const std::string& table, const bind::SchemaChange& change) const;

    /// Names in parentheses.
    std::string NameList(const std::vector<std::string>& names) const;
};

/// The column of CREATE TABLE that holds the row id; null when none does.
const bind::Definition* RowIdHolder(const bind::SchemaChange& change);

}  // namespace kpTables::sql::print
