#include "sql/sqlite/Scope.h"

#include <algorithm>

#include "sql/SqlError.h"
#include "sql/sqlite/Names.h"
#include "sql/sqlite/SqliteTranslator.h"

namespace kpTables::sql {

namespace {

std::string Written(const Column& column) {
    return column.table.empty() ? column.name : column.table + "." + column.name;
}

// The only one of the candidates, nullptr when there is none.
class Single {
public:
    explicit Single(const Column& column) : column_(column) {}
    void Offer(const SourceColumn* candidate) {
        if (!candidate) return;
        if (found_)
            throw SqlError(ErrorKind::Syntax,
                           "the name '" + Written(column_) + "' could refer to more than one table of the FROM clause",
                           column_.offset);
        found_ = candidate;
    }
    const SourceColumn* Found() const noexcept { return found_; }

private:
    const Column& column_;
    const SourceColumn* found_ = nullptr;
};

// Of two columns of one name in a query the first is meant.
const SourceColumn* ColumnOf(const Source& source, const std::string& name) {
    const auto found = std::find_if(source.columns.begin(), source.columns.end(),
                                    [&](const SourceColumn& c) { return SameName(c.name, name); });
    return found == source.columns.end() ? nullptr : &*found;
}

bool HasInside(const Source& source, const std::string& table) {
    return std::any_of(source.innerNames.begin(), source.innerNames.end(),
                       [&](const std::string& name) { return SameName(name, table); });
}

}  // namespace

void Scope::Add(Source source, std::size_t offset) {
    for (const auto& other : sources_)
        if (!source.name.empty() && SameName(other.name, source.name))
            throw SqlError(ErrorKind::Syntax, "the name '" + source.name + "' stands twice in the FROM clause", offset);
    sources_.push_back(std::move(source));
}

const Source& Scope::Find(const std::string& name, std::size_t offset) const {
    for (const auto& source : sources_)
        if (SameName(source.name, name)) return source;
    throw SqlError(ErrorKind::UnknownTable, "unknown table '" + name + "' in the select list", offset);
}

const SourceColumn* Scope::LookupHere(const Column& column) const {
    // A table that got a second name for one of its columns must not make the name of another table's column doubtful.
    const auto only = [&](bool computed) {
        Single single(column);
        for (const auto& source : sources_) {
            if (!column.table.empty() && !SameName(source.name, column.table)) continue;
            const auto* candidate = ColumnOf(source, column.name);
            if (candidate && candidate->computed == computed) single.Offer(candidate);
        }
        return single.Found();
    };
    const auto* stored = only(false);
    return stored ? stored : only(true);
}

const SourceColumn* Scope::LookupInside(const Column& column) const {
    Single single(column);
    for (const auto& source : sources_)
        if (HasInside(source, column.table)) single.Offer(ColumnOf(source, column.name));
    return single.Found();
}

const SourceColumn* Scope::Lookup(const Column& column) const {
    for (const Scope* scope = this; scope; scope = scope->outer_)
        if (const auto* found = scope->LookupHere(column)) return found;
    if (column.table.empty()) return nullptr;
    for (const Scope* scope = this; scope; scope = scope->outer_)
        if (const auto* found = scope->LookupInside(column)) return found;
    return nullptr;
}

const SourceColumn& Scope::Resolve(const Column& column) const {
    if (const auto* found = Lookup(column)) return *found;
    throw SqlError(ErrorKind::UnknownColumn, "unknown column '" + Written(column) + "'", column.offset);
}

bool Source::Has(const SourceColumn& column) const {
    return std::any_of(columns.begin(), columns.end(), [&](const SourceColumn& own) { return &own == &column; });
}

bool Scope::Owns(const SourceColumn& column) const {
    return std::any_of(sources_.begin(), sources_.end(), [&](const Source& source) { return source.Has(column); });
}

void Scope::AddAlias(std::string name, Term term) { aliases_.emplace_back(std::move(name), std::move(term)); }

const Term* Scope::FindAlias(const Column& column) const {
    if (!column.table.empty()) return nullptr;
    for (const auto& [name, term] : aliases_)
        if (SameName(name, column.name)) return &term;
    return nullptr;
}

std::vector<SourceColumn> ColumnsOf(const CatalogTable& table, const std::string& quoted) {
    std::vector<SourceColumn> columns;
    for (const auto& column : table.columns)
        columns.push_back({column.name, quoted + "." + QuoteForSqlite(column.name), column.type, true, column.computed,
                           column.counter});
    return columns;
}

Term ColumnTerm(const SourceColumn& column, std::size_t offset) {
    Term term;
    term.text = column.text;
    term.type = column.type;
    term.column = column.stored;
    term.offset = offset;
    return term;
}

}  // namespace kpTables::sql
