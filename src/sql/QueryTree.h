// The tables and queries of a statement's tree.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "sql/ExpressionTree.h"

namespace kpTables::sql {

// ---- Tables ----

enum class TableKind { Named, Derived, Join };

struct TableExpression {
    virtual ~TableExpression() = default;
    const TableKind kind;
    std::size_t offset;

protected:
    TableExpression(TableKind k, std::size_t at) : kind(k), offset(at) {}
};
using TablePtr = std::unique_ptr<TableExpression>;

struct NamedTable : TableExpression {
    static constexpr TableKind kKind = TableKind::Named;
    std::string name;
    std::string alias;  ///< "" when none
    NamedTable(std::string n, std::string a, std::size_t at = 0)
        : TableExpression(kKind, at), name(std::move(n)), alias(std::move(a)) {}
};

struct DerivedTable : TableExpression {
    static constexpr TableKind kKind = TableKind::Derived;
    std::unique_ptr<Query> query;
    std::string alias;
    DerivedTable(std::unique_ptr<Query> q, std::string a, std::size_t at = 0);
    ~DerivedTable() override;
};

enum class JoinKind { Inner, Left, Right, Full };

struct JoinedTable : TableExpression {
    static constexpr TableKind kKind = TableKind::Join;
    JoinKind join;
    TablePtr left;
    TablePtr right;
    ExpressionPtr on;
    JoinedTable(JoinKind j, TablePtr l, TablePtr r, ExpressionPtr condition, std::size_t at = 0)
        : TableExpression(kKind, at), join(j), left(std::move(l)), right(std::move(r)), on(std::move(condition)) {}
};

// ---- Queries ----

struct SelectItem {
    ExpressionPtr expression;
    std::string alias;  ///< "" when none
};

/// One SELECT.
struct SelectCore {
    bool distinct = false;
    bool distinctRow = false;  ///< of several tables: a row for each combination of the rows that are shown
    ExpressionPtr top;         ///< number literal, or null
    bool percent = false;      ///< TOP n PERCENT; else the number is whole
    bool withTies = false;     ///< TOP n WITH TIES: and the rows that are equal to the last one in the order
    std::vector<SelectItem> items;
    std::vector<TablePtr> from;  ///< separated by commas; empty for a SELECT without FROM
    ExpressionPtr where;
    std::vector<ExpressionPtr> groupBy;
    ExpressionPtr having;
};

/// How a member of a chain is joined to those before it.
enum class SetOperation { Union, UnionAll, Intersect, Except };

/// One member of a UNION chain and how it is joined to those before it. A member in parentheses, or with an ORDER BY
/// that does not end the statement, is a query of its own, as are members that INTERSECT joins before UNION does.
struct Query {
    struct Member {
        SetOperation operation = SetOperation::Union;  ///< unused for the first member
        std::unique_ptr<SelectCore> core;              ///< either a core ...
        std::unique_ptr<Query> nested;                 ///< ... or a query with its own order
    };
    std::vector<Member> members;  ///< at least one; joined from left to right
    std::vector<OrderItem> orderBy;
    ExpressionPtr skip;   ///< of OFFSET ... ROWS: whole-number literal, or null
    ExpressionPtr fetch;  ///< of FETCH NEXT ... ROWS ONLY, likewise
    std::size_t offset = 0;
};

/// A query with a name: WITH name (columns) AS (query).
struct CommonTable {
    std::string name;
    std::vector<std::string> columns;  ///< their names; empty: those of the query
    std::unique_ptr<Query> query;
    std::size_t offset = 0;
};

// Query is a complete type here, so nodes that own one can be made and destroyed.
inline InQuery::InQuery(bool no, ExpressionPtr e, std::unique_ptr<Query> q, std::size_t at)
    : Expression(kKind, at), negated(no), operand(std::move(e)), query(std::move(q)) {}
inline InQuery::~InQuery() = default;
inline Quantified::Quantified(BinaryOperator o, bool every, ExpressionPtr e, std::unique_ptr<Query> q, std::size_t at)
    : Expression(kKind, at), op(o), all(every), operand(std::move(e)), query(std::move(q)) {}
inline Quantified::~Quantified() = default;
inline Exists::Exists(std::unique_ptr<Query> q, std::size_t at) : Expression(kKind, at), query(std::move(q)) {}
inline Exists::~Exists() = default;
inline Subquery::Subquery(std::unique_ptr<Query> q, std::size_t at) : Expression(kKind, at), query(std::move(q)) {}
inline Subquery::~Subquery() = default;
inline DerivedTable::DerivedTable(std::unique_ptr<Query> q, std::string a, std::size_t at)
    : TableExpression(kKind, at), query(std::move(q)), alias(std::move(a)) {}
inline DerivedTable::~DerivedTable() = default;

}  // namespace kpTables::sql
