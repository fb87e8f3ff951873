#include "sql/bind/Scope.h"

#include <algorithm>

#include "kpTables/text/Message.h"
#include "sql/Names.h"
#include "sql/SqlError.h"

namespace kpTables::sql::bind {

namespace {

std::string Written(const Column& column) {
    return column.table.empty() ? column.name : column.table + "." + column.name;
}

// The only candidate, nothing when there is none.
class Single {
public:
    explicit Single(const Column& column) : column_(column) {}
    void Offer(const SourcePtr& source, std::size_t position) {
        if (found_)
            throw SqlError(
                ErrorKind::Syntax,
                Message("the name '{1}' could refer to more than one table of the FROM clause", Written(column_)),
                column_.offset);
        found_ = {source, position};
    }
    const Scope::Meaning& Found() const noexcept { return found_; }

private:
    const Column& column_;
    Scope::Meaning found_;
};

// Where a query has two columns of one name, the first is taken.
std::optional<std::size_t> PositionOf(const Source& source, const std::string& name) {
    for (std::size_t i = 0; i < source.columns.size(); ++i)
        if (SameName(source.columns[i].name, name)) return i;
    return std::nullopt;
}

bool HasInside(const Source& source, const std::string& table) {
    return std::any_of(source.innerNames.begin(), source.innerNames.end(),
                       [&](const std::string& name) { return SameName(name, table); });
}

}  // namespace

void Scope::Add(SourcePtr source, std::size_t offset) {
    for (const auto& other : sources_)
        if (!source->name.empty() && SameName(other->name, source->name))
            throw SqlError(ErrorKind::Syntax, Message("the name '{1}' stands twice in the FROM clause", source->name),
                           offset);
    sources_.push_back(std::move(source));
}

void Scope::RequireSource(const std::string& name, std::size_t offset) const {
    for (const auto& source : sources_)
        if (SameName(source->name, name)) return;
    throw SqlError(ErrorKind::UnknownTable, Message("unknown table '{1}' in the select list", name), offset);
}

Scope::Meaning Scope::LookupHere(const Column& column) const {
    // A table's alias of one of its columns must not make the name of another table's column ambiguous.
    const auto only = [&](bool computed) {
        Single single(column);
        for (const auto& source : sources_) {
            if (!column.table.empty() && !SameName(source->name, column.table)) continue;
            const auto position = PositionOf(*source, column.name);
            if (position && source->columns[*position].computed == computed) single.Offer(source, *position);
        }
        return single.Found();
    };
    const auto stored = only(false);
    return stored ? stored : only(true);
}

Scope::Meaning Scope::LookupInside(const Column& column) const {
    Single single(column);
    for (const auto& source : sources_) {
        if (!HasInside(*source, column.table)) continue;
        if (const auto position = PositionOf(*source, column.name)) single.Offer(source, *position);
    }
    return single.Found();
}

Scope::Meaning Scope::Lookup(const Column& column) const {
    for (const Scope* scope = this; scope; scope = scope->outer_)
        if (auto found = scope->LookupHere(column)) return found;
    if (column.table.empty()) return {};
    for (const Scope* scope = this; scope; scope = scope->outer_)
        if (auto found = scope->LookupInside(column)) return found;
    return {};
}

TermPtr Scope::Resolve(const Column& column) const {
    if (const auto found = Lookup(column)) return ColumnOf(found.source, found.column, column.offset);
    throw SqlError(ErrorKind::UnknownColumn, Message("unknown column '{1}'", Written(column)), column.offset);
}

bool Scope::Owns(const Meaning& meaning) const {
    return std::find(sources_.begin(), sources_.end(), meaning.source) != sources_.end();
}

TermPtr Scope::FindAlias(const Column& column) const {
    if (!column.table.empty()) return nullptr;
    for (const auto& [name, term] : aliases_)
        if (SameName(name, column.name)) return term;
    return nullptr;
}

SourcePtr SourceOfTable(const CatalogTable& table, const std::string& written, const std::string& alias) {
    auto source = std::make_shared<Source>();
    source->name = alias.empty() ? written : alias;
    source->alias = alias;
    source->table = &table;
    for (const CatalogColumn& column : table.columns)
        source->columns.push_back({column.name, column.type, column.computed, column.counter});
    return source;
}

}  // namespace kpTables::sql::bind
