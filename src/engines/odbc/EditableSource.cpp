#include "engines/odbc/EditableSource.h"

#include <algorithm>

#include "engines/common/TableSource.h"
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
        const auto found = OneTableSelectOf(*statement);
        if (!found || !std::ranges::all_of(found->core->items, IsPlainItem)) return std::nullopt;
        return EditableSource{found->table->name, found->whole};
    } catch (const sql::SqlError&) {
        return std::nullopt;
    }
}

}  // namespace kpTables::engines::odbc
