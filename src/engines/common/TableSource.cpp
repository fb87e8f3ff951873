#include "engines/common/TableSource.h"

#include <algorithm>
#include <utility>

#include "kpTables/text/Message.h"
#include "sql/Names.h"
#include "sql/SqlError.h"

namespace kpTables::engines {

namespace {

sql::SelectItem ColumnItem(std::string table, std::string name, std::size_t offset = 0) {
    sql::SelectItem item;
    item.expression = std::make_unique<sql::Column>(std::move(table), std::move(name), offset);
    return item;
}

/// The names of what tells a row apart.
std::vector<std::string> HiddenColumns(const sql::CatalogTable& table, const Catalog& catalog) {
    std::vector<std::string> names = {catalog.RowIdName(table)};
    if (std::string version = catalog.RowVersionName(); !version.empty()) names.push_back(std::move(version));
    return names;
}

/// The names of the stored columns, which a star stands for.
std::vector<std::string> StoredColumns(const sql::CatalogTable& table) {
    std::vector<std::string> names;
    for (const sql::CatalogColumn& column : table.columns) {
        if (!column.computed) names.push_back(column.name);
    }
    return names;
}

/// The names of the columns that the items list, stars expanded; nothing when an item is no stored column or a repeated
/// one.
std::optional<std::vector<std::string>> ListedColumns(const sql::SelectCore& core, const sql::CatalogTable& table) {
    std::vector<std::string> names;
    for (const sql::SelectItem& item : core.items) {
        if (const auto* column = sql::If<sql::Column>(item.expression.get())) {
            // A renamed column would be found by one name and written by another.
            if (!item.alias.empty() && !sql::SameName(item.alias, column->name)) return std::nullopt;
            const sql::CatalogColumn* known = sql::FindColumn(table, column->name);
            if (known && known->computed) return std::nullopt;
            names.push_back(column->name);
        } else if (sql::If<sql::Star>(item.expression.get())) {
            for (std::string& listed : StoredColumns(table)) names.push_back(std::move(listed));
        } else {
            return std::nullopt;
        }
    }
    for (std::size_t i = 0; i < names.size(); ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            if (sql::SameName(names[i], names[j])) return std::nullopt;
        }
    }
    return names;
}

/// The items with every star replaced by its columns, and the row id and the version at the end.
std::vector<sql::SelectItem> ItemsWithRowId(std::vector<sql::SelectItem> items, const sql::CatalogTable& table,
                                            const Catalog& catalog) {
    std::vector<sql::SelectItem> all;
    for (sql::SelectItem& item : items) {
        const auto* star = sql::If<sql::Star>(item.expression.get());
        if (!star) {
            all.push_back(std::move(item));
            continue;
        }
        for (std::string& column : StoredColumns(table)) {
            all.push_back(ColumnItem(star->table, std::move(column), star->offset));
        }
    }
    for (std::string& name : HiddenColumns(table, catalog)) all.push_back(ColumnItem("", std::move(name)));
    return all;
}

}  // namespace

std::optional<OneTableSelect> OneTableSelectOf(sql::Statement& statement) {
    if (statement.kind != sql::StatementKind::Select) return std::nullopt;
    const sql::Query& query = *static_cast<sql::SelectStatement&>(statement).query;
    if (query.members.size() != 1 || !query.members[0].core) return std::nullopt;
    sql::SelectCore& core = *query.members[0].core;
    const bool plain = !core.distinct && core.groupBy.empty() && !core.having && core.from.size() == 1;
    if (!plain || core.from[0]->kind != sql::TableKind::Named) return std::nullopt;
    const auto& table = static_cast<const sql::NamedTable&>(*core.from[0]);
    const auto isQuery = [&](const sql::CommonTable& common) { return sql::SameName(common.name, table.name); };
    if (std::ranges::any_of(statement.with, isQuery)) return std::nullopt;
    return OneTableSelect{&core, &table, !core.where && !core.top && !query.skip && !query.fetch};
}

TableSource SourceOfTable(std::string_view name, const Catalog& catalog) {
    const sql::CatalogTable* table = catalog.Find(name);
    if (!table) {
        throw sql::SqlError(sql::ErrorKind::UnknownTable, Message("There is no table '{1}'", name), 0);
    }
    TableSource source{table->name, StoredColumns(*table), true, nullptr};
    auto core = std::make_unique<sql::SelectCore>();
    core->items.push_back({std::make_unique<sql::Star>(""), ""});
    core->items = ItemsWithRowId(std::move(core->items), *table, catalog);
    core->from.push_back(std::make_unique<sql::NamedTable>(table->name, ""));
    auto select = std::make_unique<sql::SelectStatement>();
    select->query = std::make_unique<sql::Query>();
    select->query->members.emplace_back();
    select->query->members.back().core = std::move(core);
    source.select = std::move(select);
    return source;
}

std::optional<TableSource> SourceOfSelect(sql::StatementPtr& statement, const Catalog& catalog) {
    const auto select = OneTableSelectOf(*statement);
    if (!select) return std::nullopt;
    const sql::CatalogTable* table = catalog.Find(select->table->name);
    if (!table) return std::nullopt;
    auto columns = ListedColumns(*select->core, *table);
    if (!columns) return std::nullopt;
    select->core->items = ItemsWithRowId(std::move(select->core->items), *table, catalog);
    return TableSource{table->name, std::move(*columns), select->whole, std::move(statement)};
}

WrittenTable WrittenTableOf(const TableSource& source, const Catalog& catalog) {
    WrittenTable written{source.table, {}, std::nullopt, source.wholeTable};
    const TableInfo info = catalog.Describe(source.table);
    const sql::CatalogTable& table = *catalog.Find(source.table);
    const std::string rowId = catalog.RowIdColumn(source.table);
    for (const std::string& name : source.columns) {
        const sql::CatalogColumn& stored = *sql::FindColumn(table, name);
        WrittenTable::Column column{name, Variant::Null(), stored.length, stored.precision, stored.scale};
        for (const TableInfo::Column& known : info.columns) {
            if (sql::SameName(known.name, name)) column.defaultValue = known.defaultValue;
        }
        if (sql::SameName(name, rowId)) written.rowIdColumn = static_cast<int>(written.columns.size());
        written.columns.push_back(std::move(column));
    }
    return written;
}

RowIdCatalog::RowIdCatalog(const engines::Catalog& catalog, std::string_view table) : catalog_(catalog) {
    if (const sql::CatalogTable* found = catalog.Find(table)) table_ = *found;
    for (std::string& name : HiddenColumns(table_, catalog)) {
        sql::CatalogColumn hidden;
        hidden.name = std::move(name);
        table_.columns.push_back(std::move(hidden));
    }
}

const sql::CatalogTable* RowIdCatalog::Find(std::string_view table) const {
    return sql::SameName(table, table_.name) ? &table_ : catalog_.Find(table);
}

}  // namespace kpTables::engines
