// Which columns of a FROM clause have one value once others have.
#pragma once

#include <cstddef>
#include <set>
#include <utility>
#include <vector>

#include "sql/Tree.h"
#include "sql/sqlite/Scope.h"

namespace kpTables::sql {

class Dependence {
public:
    /// scope holds the sources of from.
    Dependence(const Scope& scope, const std::vector<TablePtr>& from);

    /// Gives the column one value, and with it every column that follows from it.
    void Fix(const SourceColumn& column);
    bool IsFixed(const SourceColumn& column) const { return fixed_.count(&column) > 0; }

private:
    /// Sources of the scope, by number.
    struct SourceRange {
        std::size_t begin;
        std::size_t end;
    };

    std::size_t AddJoins(const TableExpression& table, std::size_t source);
    void AddEqualities(const Expression& condition, SourceRange joined);
    void AddEquality(const Expression& condition, SourceRange from, SourceRange to);
    bool IsIn(const SourceColumn& column, SourceRange range) const;
    const SourceColumn* OwnColumn(const Expression& expression) const;
    std::vector<const SourceColumn*> FollowingFrom(const SourceColumn& column) const;

    const Scope& scope_;
    std::vector<std::pair<const SourceColumn*, const SourceColumn*>> implied_;
    std::set<const SourceColumn*> fixed_;
};

}  // namespace kpTables::sql
