// Bound statements: what a statement means, with its tables and columns found in the catalog and nothing left to look
// up.
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
    std::string name;  ///< as the statement may call it
    Type type = Type::Unknown;
    bool computed = false;   ///< of a table: a star does not list it, and it gives way to another's stored column
    bool counter = false;    ///< of a table: no two of its rows have the same
    std::string label = {};  ///< of a query: what the printed query calls it, which no two of its columns share
};

/// A table or a query in FROM.
struct Source {
    std::string name;   ///< alias, or the table's name as written; "" for a query without one
    std::string alias;  ///< "" when none
    const CatalogTable* table = nullptr;
    std::shared_ptr<Query> query;  ///< when it is no table
    std::vector<SourceColumn> columns;
    /// Of a query: the names of the tables inside it. A qualifier that names one of them, and nothing outside, means
    /// this query's column of that name.
    std::vector<std::string> innerNames;
};
using SourcePtr = std::shared_ptr<Source>;

/// Lookup: an inner join of each row with the one that a key finds; the rows keep their order.
enum class JoinMethod { Inner, Left, Right, Lookup };

/// A source, or two tables joined.
struct Table {
    SourcePtr source;  ///< null for a join
    JoinMethod method = JoinMethod::Inner;
    std::shared_ptr<const Table> left;
    std::shared_ptr<const Table> right;
    TermPtr on;
};
using TablePtr = std::shared_ptr<const Table>;

/// A column that a SELECT answers with.
struct Output {
    TermPtr term;      ///< perhaps a predicate
    std::string name;  ///< the alias, the column's own name, or one made for it
    bool aliased = false;
    std::string label = {};  ///< see SourceColumn
};

struct OrderKey {
    TermPtr term;
    bool descending = false;
    /// The term is the item at that position, from 1, and is ordered by as such.
    std::optional<std::size_t> position = std::nullopt;
    bool isImplied = false;  ///< the statement leaves the order open
};

struct Select {
    bool distinct = false;
    bool comparesRows = false;  ///< equal rows are made one, by DISTINCT or by a UNION around it
    bool grouped = false;       ///< by keys, or all rows to one
    /// The groups need not come in the order of their keys, as something else orders them.
    bool groupsInAnyOrder = false;
    /// The rows are sorted by the only key, even where an index would bring them in its order.
    bool sortsGroups = false;
    std::vector<TablePtr> from;  ///< separated by commas; empty for a SELECT without FROM
    TermPtr where;
    std::vector<TermPtr> groupBy;
    TermPtr having;
    std::vector<Output> items;
    std::vector<OrderKey> orderBy;
    std::optional<long long> limit;
};

/// What a query is for; only a result, and the first rows of an order, need its ORDER BY.
enum class QueryUse {
    Result,     ///< the statement itself
    Table,      ///< in FROM: every column has a name of its own
    Value,      ///< in an expression
    Existence,  ///< of EXISTS
};

struct Query {
    struct Member {
        bool all = false;  ///< UNION ALL; without meaning for the first member
        Select select;
    };
    QueryUse use = QueryUse::Result;
    bool isCorrelated = false;      ///< names of a query around it may stand in it
    std::vector<Member> members;    ///< at least one; joined from left to right
    std::vector<OrderKey> orderBy;  ///< of a union: positions

    std::vector<ResultColumn> Columns() const;
};
using QueryPtr = std::shared_ptr<Query>;

/// A source that answers a query's columns.
SourcePtr SourceOf(QueryPtr query);
/// All columns of the source.
Select SelectFrom(SourcePtr source);
/// Names that no two of the items share, in the items' labels.
void LabelItems(std::vector<Output>& items);
/// A single SELECT's query.
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
    std::vector<TermPtr> values;  ///< of VALUES ...
    QueryPtr query;               ///< ... or the rows of a query
};

struct Update {
    struct Assignment {
        const CatalogColumn* column;
        TermPtr value;
    };
    std::shared_ptr<const Source> target;
    std::vector<Assignment> assignments;
    TermPtr where;
};

struct Delete {
    std::shared_ptr<const Source> target;
    TermPtr where;
};

/// A column of CREATE TABLE and ADD COLUMN.
struct Definition {
    const ColumnDefinition* column;
    bool isSoleKey = false;  ///< the only column of the primary key
    bool notNull = false;
    TermPtr defaultValue = nullptr;  ///< a constant of the column's type or a call; null when none
    bool HoldsRowId() const { return column->type.counter || (isSoleKey && column->type.type == Type::Long); }
};

/// Of CREATE, DROP and ALTER, checked against the catalog.
struct SchemaChange {
    const Statement* statement;
    const CatalogTable* table = nullptr;  ///< the one that is changed; null for a new one
    std::vector<Definition> columns = {};
    std::vector<std::string> primaryKey = {};
    std::vector<const CatalogColumn*> keys = {};  ///< of an index
};

struct BoundStatement {
    StatementKind kind = StatementKind::Select;
    std::vector<int> fixedLiterals;  ///< see Translation
    std::shared_ptr<Query> query;    ///< of SELECT and TRANSFORM; else one of the following is set
    std::optional<Insert> insert;
    std::optional<Update> update;
    std::optional<Delete> erase;
    std::optional<SchemaChange> schema;
};

}  // namespace kpTables::sql::bind
