// The tables that the names of a query can refer to.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "sql/Tree.h"
#include "sql/bind/Query.h"
#include "sql/bind/Term.h"

namespace kpTables::sql::bind {

class Scope {
public:
    explicit Scope(const Scope* outer) : outer_(outer) {}

    /// A column that a name denotes.
    struct Meaning {
        SourcePtr source;
        std::size_t column = 0;
        explicit operator bool() const { return source != nullptr; }
        bool operator==(const Meaning&) const = default;
        const SourceColumn& Column() const { return source->columns[column]; }
    };

    /// SqlError when another source has the name.
    void Add(SourcePtr source, std::size_t offset);
    /// In the order in which the statement writes them.
    const std::vector<SourcePtr>& Sources() const noexcept { return sources_; }
    /// SqlError when no source has the name of a qualified star.
    void RequireSource(const std::string& name, std::size_t offset) const;

    /// The column that a name denotes, here or in a query around this one. SqlError when it is unknown or ambiguous.
    TermPtr Resolve(const Column& column) const;
    /// As Resolve; nothing when the name is unknown.
    Meaning Lookup(const Column& column) const;

    /// True for a column of this scope's own tables, false for one of a query around it.
    bool Owns(const Meaning& meaning) const;

    /// A select item's name, visible to the items after it.
    void AddAlias(std::string name, TermPtr term) { aliases_.emplace_back(std::move(name), std::move(term)); }
    /// The item, or null.
    TermPtr FindAlias(const Column& column) const;

private:
    Meaning LookupHere(const Column& column) const;
    Meaning LookupInside(const Column& column) const;

    const Scope* outer_;
    std::vector<SourcePtr> sources_;
    std::vector<std::pair<std::string, TermPtr>> aliases_;
};

/// A table by the name that the statement gives it.
SourcePtr SourceOfTable(const CatalogTable& table, const std::string& written, const std::string& alias);

}  // namespace kpTables::sql::bind
