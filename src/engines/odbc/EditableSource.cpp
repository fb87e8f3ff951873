#include "engines/odbc/EditableSource.h"

#include <algorithm>

#include "sql/Names.h"
#include "sql/SqlError.h"
#include "sql/parse/Parser.h"

namespace kpTables::engines::odbc {

namespace {

/// A column under its own name, or all columns.
bool IsPlainItem(const sql::SelectItem& item) {
    if (sql::If<sql::Star>(item.expression.get())) return true;
    const auto* column = sql::If<sql::Column>(item.expression.get());
    return column && (item.alias.empty() || sql::SameName(item.alias, column->name));
}

}  // namespace

std::optional<EditableSource> SourceOfText(std::string_view select, SqlDialect dialect) {
    try {
        const sql::StatementPtr statement =
            sql::parse::Parse(select, {}, dialect == SqlDialect::Jet ? sql::Dialect::Jet : sql::Dialect::SqlServer);
        if (statement->kind != sql::StatementKind::Select || !statement->with.empty()) return std::nullopt;
        const sql::Query& query = *static_cast<const sql::SelectStatement&>(*statement).query;
        if (query.members.size() != 1 || !query.members[0].core) return std::nullopt;
        const sql::SelectCore& core = *query.members[0].core;
        const bool plain = !core.distinct && core.groupBy.empty() && !core.having && core.from.size() == 1 &&
                           core.from[0]->kind == sql::TableKind::Named && std::ranges::all_of(core.items, IsPlainItem);
        if (!plain) return std::nullopt;
        const bool whole = !core.where && !core.top && !query.skip && !query.fetch;
        return EditableSource{static_cast<const sql::NamedTable&>(*core.from[0]).name, whole};
    } catch (const sql::SqlError&) {
        return std::nullopt;
    }
}

}  // namespace kpTables::engines::odbc
