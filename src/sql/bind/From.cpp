// The tables of a query and how they are joined.
#include <array>
#include <map>
#include <utility>

#include "kpTables/text/Message.h"
#include "sql/SqlError.h"
#include "sql/bind/QueryBinder.h"
#include "sql/bind/SystemTables.h"

namespace kpTables::sql::bind {

namespace {

constexpr const char* kNoAggregateInJoin = Translatable("cannot have an aggregate function in a JOIN");

void CollectNames(const TableExpression& table, std::vector<std::string>& names) {
    if (table.kind == TableKind::Join) {
        const auto& join = static_cast<const JoinedTable&>(table);
        CollectNames(*join.left, names);
        CollectNames(*join.right, names);
    } else if (table.kind == TableKind::Named) {
        const auto& named = static_cast<const NamedTable&>(table);
        names.push_back(named.alias.empty() ? named.name : named.alias);
    } else {
        names.push_back(static_cast<const DerivedTable&>(table).alias);
    }
}

// The tables inside a query, as qualifiers name them.
void CollectNames(const sql::Query& query, std::vector<std::string>& names) {
    for (const auto& member : query.members) {
        if (member.nested)
            CollectNames(*member.nested, names);
        else
            for (const auto& table : member.core->from) CollectNames(*table, names);
    }
}

class FromBinder {
public:
    FromBinder(Context& context, Scope& scope, const Scope* outer) : context_(context), scope_(scope), outer_(outer) {}

    void Declare(const TableExpression& table) {
        switch (table.kind) {
            case TableKind::Named:
                return DeclareTable(static_cast<const NamedTable&>(table));
            case TableKind::Derived:
                return DeclareQuery(static_cast<const DerivedTable&>(table));
            case TableKind::Join:
                break;
        }
        const auto& join = static_cast<const JoinedTable&>(table);
        Declare(*join.left);
        Declare(*join.right);
    }

    TablePtr Bind(const TableExpression& table) const {
        if (table.kind != TableKind::Join) return TableOf(sources_.at(&table));
        const auto& join = static_cast<const JoinedTable&>(table);
        TablePtr left = Bind(*join.left);
        TablePtr right = Bind(*join.right);
        if (join.join == JoinKind::Full) context_.KeepAsWritten();
        constexpr std::array<JoinMethod, 4> kMethods = {JoinMethod::Inner, JoinMethod::Left, JoinMethod::Right,
                                                        JoinMethod::Full};
        return Joined(kMethods[static_cast<std::size_t>(join.join)], std::move(left), std::move(right),
                      BindCondition(*join.on, {context_, scope_, kNoAggregateInJoin}));
    }

private:
    void DeclareTable(const NamedTable& named) {
        if (const Context::Common* common = context_.FindCommon(named.name)) return DeclareCommon(named, *common);
        const bool own = context_.Tables().Find(named.name) != nullptr;
        if (QueryPtr system = own ? nullptr : SystemTable(context_, named.name)) {
            SourcePtr source = SourceOf(std::move(system));
            const std::string last = named.name.substr(named.name.find('.') + 1);
            source->name = source->alias = named.alias.empty() ? last : named.alias;
            return Add(named, std::move(source));
        }
        const CatalogTable& table = context_.Table(named.name, named.offset);
        Add(named, SourceOfTable(table, named.name, named.alias));
    }

    void DeclareCommon(const NamedTable& named, const Context::Common& common) {
        if (!common.query)
            throw SqlError(ErrorKind::Unsupported,
                           Message("a query of WITH that refers to itself ('{1}') is not supported", common.name),
                           named.offset);
        SourcePtr source = SourceOf(common.query);
        source->name = source->alias = named.alias.empty() ? named.name : named.alias;
        source->common = common.label;
        for (std::size_t i = 0; i < common.columns.size(); ++i) source->columns[i].name = common.columns[i];
        Add(named, std::move(source));
    }

    void DeclareQuery(const DerivedTable& derived) {
        SourcePtr source =
            SourceOf(std::make_shared<Query>(BindQuery(context_, *derived.query, outer_, QueryUse::Table)));
        source->name = derived.alias;
        source->alias = derived.alias;
        CollectNames(*derived.query, source->innerNames);
        Add(derived, std::move(source));
    }

    void Add(const TableExpression& table, SourcePtr source) {
        scope_.Add(source, table.offset);
        sources_[&table] = std::move(source);
    }

    Context& context_;
    Scope& scope_;
    const Scope* outer_;
    std::map<const TableExpression*, SourcePtr> sources_;
};

}  // namespace

std::vector<TablePtr> BindFrom(Context& context, const std::vector<sql::TablePtr>& from, Scope& scope,
                               const Scope* outer) {
    FromBinder binder(context, scope, outer);
    for (const auto& table : from) binder.Declare(*table);
    std::vector<TablePtr> tables;
    for (const auto& table : from) tables.push_back(binder.Bind(*table));
    return tables;
}

}  // namespace kpTables::sql::bind
