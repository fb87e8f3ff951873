// Bound statements: every table and column is resolved against the catalog.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "sql/Catalog.h"
#include "sql/Tree.h"
#include "sql/bind/Term.h"

namespace kpTables::sql::bind {

struct SourceColumn {
    std::string name;  ///< as statements refer to it
    Type type = Type::Unknown;
    bool computed = false;   ///< of a table: a star omits it, and a stored column of the same name takes precedence
    bool counter = false;    ///< of a table: its values are unique
    std::string label = {};  ///< of a query: its unique name in the printed query
};

/// A table or a query in FROM.
struct Source {
    std::string name;   ///< alias, or the table's name as written; "" for a query without one
    std::string alias;  ///< "" when none
    const CatalogTable* table = nullptr;
    std::shared_ptr<Query> query;  ///< when it is no table
    std::vector<SourceColumn> columns;
    /// Of a query: the names of the tables inside it. A qualifier that names one of them, and nothing outside, denotes
    /// this query.
    std::vector<std::string> innerNames;
    /// Of a query that the statement names in WITH: its name in the printed text.
    std::string common = {};
};
using SourcePtr = std::shared_ptr<Source>;

/// Lookup: an inner join of each row with the one that its key identifies; the order is kept.
enum class JoinMethod { Inner, Left, Right, Lookup, Full };

/// A source, or two tables joined.
struct Table {
    SourcePtr source;  ///< null for a join
    JoinMethod method = JoinMethod::Inner;
    std::shared_ptr<const Table> left;
    std::shared_ptr<const Table> right;
    TermPtr on;
};
using TablePtr = std::shared_ptr<const Table>;

/// A result column of a SELECT.
struct Output {
    TermPtr term;      ///< perhaps a predicate
    std::string name;  ///< the alias, the column's own name, or one made for it
    bool aliased = false;
    std::string label = {};      ///< see SourceColumn
    std::string qualifier = {};  ///< see ResultColumn
};

struct OrderKey {
    TermPtr term;
    bool descending = false;
    /// The position, from 1, of the item that the key refers to, if it does.
    std::optional<std::size_t> position = std::nullopt;
    bool isImplied = false;  ///< the statement leaves the order open
};

/// How many of the rows are shown.
struct RowLimit {
    std::optional<long long> rows = std::nullopt;  ///< how many; all rows when there is none
    long long skip = 0;                            ///< how many of the first rows are left out
    /// The share of the rows that is shown, in millionths of a percent, rounded up to whole rows; then rows and skip
    /// are not set.
    std::optional<long long> percent = std::nullopt;
};

struct Select {
    bool distinct = false;
    bool comparesRows = false;  ///< duplicate rows are removed, by DISTINCT or by a UNION around it
    bool grouped = false;       ///< by keys, or all rows into one
    /// The groups need not come in key order, as something else orders them.
    bool groupsInAnyOrder = false;
    /// The rows are sorted by the only key, even where an index would yield its order.
    bool sortsGroups = false;
    std::vector<TablePtr> from;  ///< separated by commas; empty for a SELECT without FROM
    TermPtr where;
    std::vector<TermPtr> groupBy;
    TermPtr having;
    std::vector<Output> items;
    std::vector<OrderKey> orderBy;
    std::optional<RowLimit> limit;
    bool windowed = false;  ///< an item or a key of the order is a window function
};

/// What a query is for; ORDER BY matters only to a result and with a limit.
enum class QueryUse {
    Result,     ///< the statement itself
    Table,      ///< in FROM: every column has a name of its own
    Value,      ///< in an expression
    Existence,  ///< of EXISTS
};

struct Query {
    struct Member {
        SetOperation operation = SetOperation::Union;  ///< unused for the first member
        Select select = {};
    };
    QueryUse use = QueryUse::Result;
    bool isCorrelated = false;      ///< it may refer to names of a query around it
    std::vector<Member> members;    ///< at least one; joined from left to right
    std::vector<OrderKey> orderBy;  ///< of a union: positions
    std::optional<RowLimit> limit;  ///< of a union
    ClientOrder clientOrder = {};   ///< of a result; the last items of a single SELECT may be hidden

    /// Whether a member's rows are compared with those of another one.
    bool ComparesRows() const;
    /// Without the hidden ones.
    std::vector<ResultColumn> Columns() const;
};
using QueryPtr = std::shared_ptr<Query>;

/// A source with a query's columns.
SourcePtr SourceOf(QueryPtr query);
/// All columns of the source.
Select SelectFrom(SourcePtr source);
/// Gives the items unique labels.
void LabelItems(std::vector<Output>& items);
/// The query of a single SELECT.
Query QueryOf(Select select, QueryUse use);
/// The sources of a table, in the order in which the statement writes them.
void CollectSources(const Table& table, std::vector<SourcePtr>& sources);
std::vector<SourcePtr> SourcesOf(const Select& select);
TablePtr TableOf(SourcePtr source);
TablePtr Joined(JoinMethod method, TablePtr left, TablePtr right, TermPtr on);

// ---- Statements ----

struct Insert {
    std::shared_ptr<const Source> target;
    std::vector<const CatalogColumn*> columns;
    std::vector<Terms> rows;  ///< of VALUES
    QueryPtr query;           ///< or the rows of a query; without either, a row of defaults
};

struct Update {
    struct Assignment {
        const CatalogColumn* column;
        TermPtr value;
    };
    std::shared_ptr<const Source> target;
    std::vector<Assignment> assignments;
    SourcePtr from = nullptr;  ///< a query with the new values, or null
    TermPtr where;
};

struct Delete {
    std::shared_ptr<const Source> target;
    TermPtr where;
    bool truncates = false;  ///< the counter starts anew
};

/// A column of CREATE TABLE and ADD COLUMN.
struct Definition {
    const ColumnDefinition* column;
    bool isSoleKey = false;  ///< it alone is the primary key
    bool notNull = false;
    TermPtr defaultValue = nullptr;  ///< a constant of the column's type or a call; null when none
    bool HoldsRowId() const { return column->type.counter || (isSoleKey && column->type.type == Type::Long); }
};

/// A CREATE, DROP or ALTER statement, checked against the catalog.
struct SchemaChange {
    const Statement* statement;
    const CatalogTable* table = nullptr;  ///< the one to change; null for a new one
    std::vector<Definition> columns = {};
    std::vector<std::string> primaryKey = {};
    std::vector<const CatalogColumn*> keys = {};  ///< of an index; the columns to drop or to change
    TermPtr changed = nullptr;                    ///< the value of a column whose type changes
};

/// A list of the book's tables or columns, for which each engine has a query of its own.
enum class BookList { Tables, Columns };

/// A query that the statement names in WITH.
struct CommonQuery {
    std::string name;  ///< in the printed text
    QueryPtr query;
    std::optional<BookList> list = std::nullopt;  ///< the engine's own query, whose columns are those of query
};

struct BoundStatement {
    StatementKind kind = StatementKind::Select;
    std::vector<int> fixedLiterals;  ///< see Translation
    std::vector<CommonQuery> with;
    bool staysAsWritten = false;   ///< random numbers or a full join: no rewrite for speed is sure to keep the rows
    std::shared_ptr<Query> query;  ///< of SELECT and TRANSFORM; else one of the following is set
    std::optional<Insert> insert;
    std::optional<Update> update;
    std::optional<Delete> erase;
    std::optional<SchemaChange> schema;
};

}  // namespace kpTables::sql::bind
