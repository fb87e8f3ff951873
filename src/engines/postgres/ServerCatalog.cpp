#include "engines/postgres/ServerCatalog.h"

#include <memory>
#include <utility>

#include "engines/postgres/RowReader.h"
#include "sql/Names.h"
#include "sql/print/postgres/DeclaredType.h"
#include "sql/print/postgres/PostgresEngine.h"

namespace kpTables::engines::postgres {

namespace {

using sql::print::postgres::kHiddenRowId;
using sql::print::postgres::QuotedName;

// The engine's own tables begin with kp_.
constexpr std::string_view kTables =
    "SELECT relname FROM pg_class WHERE relnamespace = (SELECT oid FROM pg_namespace WHERE nspname = current_schema()) AND relkind = 'r' "
    "AND relname NOT LIKE 'kp\\_%'";

/// A row for each column of a table.
constexpr std::string_view kColumns =
    "SELECT attname, typname, attnotnull, attidentity <> '', attgenerated <> '', pg_get_expr(adbin, adrelid), "
    "EXISTS (SELECT FROM pg_index WHERE indrelid = attrelid AND indisprimary AND attnum = ANY (indkey)), "
    "EXISTS (SELECT FROM pg_trigger WHERE tgrelid = attrelid AND tgname = 'kp_counter') "
    "FROM pg_attribute JOIN pg_type ON pg_type.oid = atttypid "
    "LEFT JOIN pg_attrdef ON adrelid = attrelid AND adnum = attnum "
    "WHERE attrelid = (SELECT oid FROM pg_class WHERE relnamespace = (SELECT oid FROM pg_namespace WHERE nspname = current_schema()) AND relname = $1 AND "
    "relkind = 'r') AND attnum > 0 AND NOT attisdropped ORDER BY attnum";
enum ColumnsOfColumns { kName, kType, kNotNull, kIdentity, kGenerated, kDefault, kKey, kCounted };

bool Is(const Result& result, int row, int column) { return result.Value(row, column) == "t"; }

Result ColumnsOf(Database& database, std::string_view table) {
    Parameters parameters;
    parameters.BindText(1, table);
    return database.Guarded([&] { return database.Ask(kColumns, parameters); });
}

/// Of a computed column that is an alias: "source" or source, as the server writes the expression.
std::string SourceIn(std::string_view expression) {
    if (expression.size() > 1 && expression.front() == '"') expression = expression.substr(1, expression.size() - 2);
    return std::string(expression);
}

/// The values of expressions, in one row.
std::unique_ptr<recordset::RowStore> ValuesOf(Database& database, const std::string& expressions,
                                              std::vector<FieldInfo> fields) {
    const std::string text = "SELECT " + expressions;
    const auto shared = recordset::ShareFields(std::move(fields));
    return database.Guarded([&] {
        const std::string name = database.Prepare(text, text);
        auto row = ReadRows([&](const RowSink& sink) { database.ReadPrepared(name, Parameters(), text, sink); }, shared,
                            text, {});
        database.Forget(name);
        return row;
    });
}

}  // namespace

std::optional<sql::CatalogTable> ServerCatalog::ReadTable(std::string_view name) const {
    Parameters parameters;
    parameters.BindText(1, sql::print::postgres::ServerName(name));
    const std::string find = std::string(kTables) + " AND lower(relname COLLATE \"C\") = lower($1::text COLLATE \"C\")";
    const Result found = database_.Guarded([&] { return database_.Ask(find, parameters); });
    if (found.Rows() == 0) return std::nullopt;
    sql::CatalogTable table{std::string(found.Value(0, 0)), {}};
    const Result columns = ColumnsOf(database_, table.name);
    for (int row = 0; row < columns.Rows(); ++row) {
        const std::string column(columns.Value(row, kName));
        if (Is(columns, row, kIdentity)) table.rowId = column;
        if (column == kHiddenRowId) continue;
        table.columns.push_back(sql::print::postgres::ColumnOfDeclaredType(column, columns.Value(row, kType)));
        sql::CatalogColumn& known = table.columns.back();
        known.counter = Is(columns, row, kIdentity) && Is(columns, row, kCounted);
        known.computed = Is(columns, row, kGenerated);
        if (known.computed) known.source = SourceIn(columns.Value(row, kDefault));
    }
    return table;
}

TableInfo ServerCatalog::Describe(std::string_view name) const {
    TableInfo info;
    const sql::CatalogTable* table = Find(name);
    if (!table) return info;
    info.name = table->name;
    const Result columns = ColumnsOf(database_, info.name);
    std::string expressions;
    std::vector<FieldInfo> fields;
    std::vector<std::size_t> withDefault;
    for (int row = 0; row < columns.Rows(); ++row) {
        const sql::CatalogColumn* known = sql::FindColumn(*table, std::string(columns.Value(row, kName)));
        if (!known || known->computed) continue;
        TableInfo::Column column = engines::DescriptionOf(*known);
        column.key = Is(columns, row, kKey) || known->counter;
        if (!columns.IsNull(row, kDefault)) {
            expressions.append(expressions.empty() ? "" : ", ").append(columns.Value(row, kDefault));
            fields.push_back({"", column.type});
            withDefault.push_back(info.columns.size());
        }
        column.required = (column.key || Is(columns, row, kNotNull)) && !known->counter;
        info.columns.push_back(std::move(column));
    }
    if (withDefault.empty()) return info;
    const auto values = ValuesOf(database_, expressions, std::move(fields));
    for (std::size_t i = 0; i < withDefault.size(); ++i) {
        TableInfo::Column& column = info.columns[withDefault[i]];
        column.defaultValue = values->GetValue(0, static_cast<int>(i));
        column.required = column.required && column.defaultValue.IsNull();
    }
    return info;
}

std::string ServerCatalog::ConvertedDefault(const sql::ColumnChange& change) const {
    const Result columns = ColumnsOf(database_, sql::print::postgres::ServerName(change.table));
    for (int row = 0; row < columns.Rows(); ++row) {
        if (columns.Value(row, kName) != sql::print::postgres::ServerName(change.column)) continue;
        if (columns.IsNull(row, kDefault)) break;
        std::string value(columns.Value(row, kDefault));
        // The day or the time of entry is no constant.
        if (value.find("kp.date()") != std::string::npos || value.find("kp.now()") != std::string::npos) return value;
        const std::string text = "SELECT format('%L', " + change.value + ") FROM (SELECT " + value + " AS " +
                                 QuotedName(change.column) + ") AS " + QuotedName(change.table);
        return std::string(database_.Guarded([&] { return database_.Run(text); }).Value(0, 0));
    }
    return {};
}

std::string ServerCatalog::RowIdColumn(std::string_view table) const {
    const sql::CatalogTable* found = Find(table);
    return found && found->rowId != kHiddenRowId ? found->rowId : std::string();
}

std::vector<std::string> ServerCatalog::TableNames() const {
    std::vector<std::string> names;
    const std::string text = std::string(kTables) + " ORDER BY oid";
    const Result tables = database_.Guarded([&] { return database_.Ask(text, Parameters()); });
    for (int row = 0; row < tables.Rows(); ++row) names.emplace_back(tables.Value(row, 0));
    return names;
}

std::int64_t ServerCatalog::ReadVersion() {
    return database_.Guarded([&] { return database_.Run("SELECT version FROM kp_book"); }).Integer(0, 0);
}

}  // namespace kpTables::engines::postgres
