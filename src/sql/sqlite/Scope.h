// The tables that the names of a query may mean.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "sql/Catalog.h"
#include "sql/sqlite/Term.h"

namespace kpTables::sql {

/// A column of a table or of a query in FROM.
struct SourceColumn {
    std::string name;
    std::string text;  ///< quoted, with its table
    Type type = Type::Unknown;
    bool stored = false;    ///< of a table, not of a query
    bool computed = false;  ///< of a table: a star does not list it, and it gives way to another's stored column
    bool counter = false;   ///< of a table: no two of its rows have the same
};

/// A table or a query in FROM.
struct Source {
    std::string name;  ///< alias, or the table's name when it has none
    std::vector<SourceColumn> columns;
    /// Of a query: the names of the tables inside it. A qualifier that names one of them, and nothing outside, means
    /// this query's column of that name.
    std::vector<std::string> innerNames;
    /// Of a query: the second column has one value for each value of the first.
    std::vector<std::pair<std::size_t, std::size_t>> implied;

    bool Has(const SourceColumn& column) const;
};

class Scope {
public:
    explicit Scope(const Scope* outer) : outer_(outer) {}

    /// SqlError when another source has the name.
    void Add(Source source, std::size_t offset);
    /// In the order in which the statement writes them.
    const std::vector<Source>& Sources() const noexcept { return sources_; }
    /// The source that a qualified star means; SqlError when there is none.
    const Source& Find(const std::string& name, std::size_t offset) const;

    /// The column that a name means, here or in a query around this one. SqlError when it is unknown or could be two.
    const SourceColumn& Resolve(const Column& column) const;
    /// As Resolve, nullptr when the name is unknown.
    const SourceColumn* Lookup(const Column& column) const;

    /// True for a column of this scope's own tables, false for one of a query around it.
    bool Owns(const SourceColumn& column) const;

    /// A select item's name, which the items after it may use.
    void AddAlias(std::string name, Term term);
    const Term* FindAlias(const Column& column) const;

private:
    const SourceColumn* LookupHere(const Column& column) const;
    const SourceColumn* LookupInside(const Column& column) const;

    const Scope* outer_;
    std::vector<Source> sources_;
    std::vector<std::pair<std::string, Term>> aliases_;
};

/// The columns of a table that stands in a statement under that quoted name.
std::vector<SourceColumn> ColumnsOf(const CatalogTable& table, const std::string& quoted);

/// The column as a term.
Term ColumnTerm(const SourceColumn& column, std::size_t offset);

}  // namespace kpTables::sql
