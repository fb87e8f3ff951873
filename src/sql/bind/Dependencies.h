// Functional dependencies: which columns of a SELECT's tables determine which others.
#pragma once

#include <set>
#include <utility>
#include <vector>

#include "sql/bind/Query.h"

namespace kpTables::sql::bind {

/// A column of a source.
using ColumnId = std::pair<const Source*, std::size_t>;

class Dependencies {
public:
    explicit Dependencies(const Select& select);

    /// Marks the column, and every column that depends on it, as having one value.
    void Fix(const ColumnId& column);
    bool IsFixed(const ColumnId& column) const { return fixed_.count(column) > 0; }
    /// Fixes every column of a row of the source.
    void FixRow(const Source& source);
    /// The column of one of the SELECT's own tables that the term is.
    const ColumnTerm* OwnColumn(const Term& term) const;

private:
    using Sources = std::set<const Source*>;

    Sources AddJoins(const Table& table);
    void AddQuery(const Source& source);
    void AddEqualities(const Term& condition, const Sources& joined);
    void AddEquality(const Term& condition, const Sources& from, const Sources& to);
    std::vector<ColumnId> DependentOn(const ColumnId& column) const;

    Sources sources_;
    std::vector<std::pair<ColumnId, ColumnId>> determined_;
    std::set<ColumnId> fixed_;
};

inline ColumnId IdOf(const ColumnTerm& column) { return {column.source.get(), column.column}; }

}  // namespace kpTables::sql::bind
