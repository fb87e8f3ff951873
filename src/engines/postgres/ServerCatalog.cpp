#include "engines/postgres/ServerCatalog.h"

#include <algorithm>
#include <utility>

#include "engines/postgres/RowReader.h"
#include "sql/Names.h"
#include "sql/print/postgres/DeclaredType.h"
#include "sql/print/postgres/FunctionList.h"
#include "sql/print/postgres/PostgresEngine.h"

namespace kpTables::engines::postgres {

namespace {

using sql::print::postgres::kHiddenRowId;
using sql::print::postgres::QuotedName;

/// A row for each column, table by table in order of creation.
constexpr std::string_view kColumns =
    "SELECT relname, attname, typname, attnotnull, attidentity <> '', attgenerated <> '', "
    "COALESCE(attnum = ANY (indkey), FALSE), pg_trigger.oid IS NOT NULL FROM own "
    "JOIN pg_attribute ON attrelid = id AND attnum > 0 AND NOT attisdropped "
    "JOIN pg_type ON pg_type.oid = atttypid "
    "LEFT JOIN pg_index ON indrelid = attrelid AND indisprimary "
    "LEFT JOIN pg_trigger ON tgrelid = attrelid AND tgname = 'kp_counter' ORDER BY id, attnum";
enum ColumnsOfColumns { kTable, kName, kType, kNotNull, kIdentity, kGenerated, kKey, kCounted };

/// Of one table, or of all for "". It waits where another program changes the definition of one of these.
constexpr std::string_view kExpressions =
    "SELECT relname, attname, pg_get_expr(adbin, adrelid) FROM own JOIN pg_attrdef ON adrelid = id "
    "JOIN pg_attribute ON attrelid = adrelid AND attnum = adnum "
    "WHERE CAST($1 AS text) = '' OR relname = CAST($1 AS text)";

/// The query's "own" are the book's tables, but for the engine's, whose names begin with kp_. They are found by what
/// depends on the schema: pg_class has no index by schema, and a server may have thousands of books.
std::string AmongOwnTables(std::string_view query) {
    return "WITH own AS MATERIALIZED (SELECT oid AS id, relname FROM pg_class WHERE oid = ANY (ARRAY(SELECT objid FROM "
           "pg_depend WHERE refclassid = CAST('pg_namespace' AS regclass) AND classid = CAST('pg_class' AS regclass) "
           "AND refobjid = (SELECT oid FROM pg_namespace WHERE nspname = current_schema()))) AND relkind = 'r' AND "
           "relname NOT LIKE 'kp\\_%') " +
           std::string(query);
}

bool Is(const Result& result, int row, int column) { return result.Value(row, column) == "t"; }

/// Of a computed column that is an alias: "source" or source, as the server writes the expression.
std::string SourceIn(std::string_view expression) {
    if (expression.size() > 1 && expression.front() == '"') expression = expression.substr(1, expression.size() - 2);
    return std::string(expression);
}

}  // namespace

void ServerCatalog::DropKept() {
    tables_.reset();
    defaults_.clear();
}

void ServerCatalog::ReadTables() const {
    const Result rows = database_.Guarded([&] { return database_.Ask(AmongOwnTables(kColumns), Parameters()); });
    std::vector<Table> tables;
    for (int row = 0; row < rows.Rows(); ++row) {
        if (tables.empty() || tables.back().name != rows.Value(row, kTable))
            tables.push_back({std::string(rows.Value(row, kTable)), {}, false});
        tables.back().columns.push_back({std::string(rows.Value(row, kName)),
                                         std::string(rows.Value(row, kType)),
                                         {},
                                         Is(rows, row, kNotNull),
                                         Is(rows, row, kIdentity),
                                         Is(rows, row, kGenerated),
                                         Is(rows, row, kKey),
                                         Is(rows, row, kCounted)});
    }
    tables_ = std::move(tables);
    defaults_.clear();
}

void ServerCatalog::ReadExpressions(const std::string& name) const {
    Parameters parameters;
    parameters.BindText(1, name);
    const Result rows = database_.Guarded([&] { return database_.Ask(AmongOwnTables(kExpressions), parameters); });
    for (int row = 0; row < rows.Rows(); ++row) {
        const auto table = std::ranges::find(*tables_, rows.Value(row, 0), &Table::name);
        if (table == tables_->end()) continue;
        const auto column = std::ranges::find(table->columns, rows.Value(row, 1), &Column::name);
        if (column != table->columns.end()) column->expression = rows.Value(row, 2);
    }
    for (Table& table : *tables_) table.hasExpressions = table.hasExpressions || name.empty() || table.name == name;
}

const ServerCatalog::Table* ServerCatalog::Kept(std::string_view name) const {
    const auto found =
        std::ranges::find_if(*tables_, [&](const Table& each) { return sql::SameName(each.name, name); });
    return found == tables_->end() ? nullptr : &*found;
}

std::optional<sql::CatalogTable> ServerCatalog::ReadTable(std::string_view name) const {
    const std::string wanted = sql::print::postgres::ServerName(name);
    // One that was made behind the program's back does not change the version.
    if (!tables_ || !Kept(wanted)) ReadTables();
    const Table* const found = Kept(wanted);
    if (!found) return std::nullopt;
    if (std::ranges::any_of(found->columns, &Column::computed) && !found->hasExpressions) ReadExpressions(found->name);
    sql::CatalogTable table{found->name, {}};
    for (const Column& column : found->columns) {
        if (column.identity) table.rowId = column.name;
        if (column.name == kHiddenRowId) continue;
        table.columns.push_back(sql::print::postgres::ColumnOfDeclaredType(column.name, column.type));
        sql::CatalogColumn& known = table.columns.back();
        known.counter = column.identity && column.counted;
        known.computed = column.computed;
        if (known.computed) known.source = SourceIn(column.expression);
    }
    return table;
}

TableInfo ServerCatalog::Describe(std::string_view name) const {
    TableInfo info;
    const sql::CatalogTable* const table = Find(name);
    if (!table) return info;
    info.name = table->name;
    if (!tables_ || !Kept(info.name)) ReadTables();
    const Table* const kept = Kept(info.name);
    if (!kept) return info;
    if (!kept->hasExpressions) ReadExpressions(kept->name);
    for (const Column& stored : kept->columns) {
        const sql::CatalogColumn* const known = sql::FindColumn(*table, stored.name);
        if (!known || known->computed) continue;
        TableInfo::Column column = engines::DescriptionOf(*known);
        column.key = stored.key || known->counter;
        if (HasDefault(stored)) column.defaultValue = DefaultOf(stored.expression, column.type);
        column.required = (column.key || stored.required) && !known->counter && column.defaultValue.IsNull();
        info.columns.push_back(std::move(column));
    }
    return info;
}

void ServerCatalog::ReadDefaults() const {
    std::vector<Default> fresh;
    for (const Table& table : *tables_) {
        for (const Column& column : table.columns) {
            // A sequence's next number is taken for its own table alone.
            if (!HasDefault(column) || column.expression.find("nextval(") != std::string::npos) continue;
            const VarType type =
                engines::FieldType(sql::print::postgres::ColumnOfDeclaredType(column.name, column.type).type);
            if (!KnownDefault(defaults_, column.expression, type) && !KnownDefault(fresh, column.expression, type))
                fresh.push_back({column.expression, type});
        }
    }
    WorkOut(fresh);
    defaults_.insert(defaults_.end(), fresh.begin(), fresh.end());
}

void ServerCatalog::WorkOut(std::vector<Default>& defaults) const {
    if (defaults.empty()) return;
    std::vector<FieldInfo> fields;
    std::string text;
    for (const Default& each : defaults) {
        text.append(text.empty() ? "SELECT " : ", ").append(each.expression);
        fields.push_back({"", each.type});
    }
    const auto shared = recordset::ShareFields(std::move(fields));
    const auto values = database_.Guarded([&] {
        const std::string name = database_.Prepare(text, text);
        auto row = ReadRows([&](const RowSink& sink) { database_.ReadPrepared(name, Parameters(), text, sink); },
                            shared, text, {});
        database_.Forget(name);
        return row;
    });
    for (std::size_t i = 0; i < defaults.size(); ++i) defaults[i].value = values->GetValue(0, static_cast<int>(i));
}

const ServerCatalog::Default* ServerCatalog::KnownDefault(const std::vector<Default>& among,
                                                          const std::string& expression, VarType type) {
    const auto found = std::ranges::find_if(
        among, [&](const Default& each) { return each.expression == expression && each.type == type; });
    return found == among.end() ? nullptr : &*found;
}

Variant ServerCatalog::DefaultOf(const std::string& expression, VarType type) const {
    if (!KnownDefault(defaults_, expression, type)) ReadDefaults();
    if (const Default* const known = KnownDefault(defaults_, expression, type)) return known->value;
    std::vector<Default> alone{{expression, type}};
    WorkOut(alone);
    return alone.front().value;
}

std::string ServerCatalog::ConvertedDefault(const sql::ColumnChange& change) const {
    if (!tables_) ReadTables();
    const Table* const table = Kept(sql::print::postgres::ServerName(change.table));
    if (!table) return {};
    if (!table->hasExpressions) ReadExpressions(table->name);
    const std::string name = sql::print::postgres::ServerName(change.column);
    const auto column = std::ranges::find(table->columns, name, &Column::name);
    if (column == table->columns.end() || column->expression.empty()) return {};
    const std::string& value = column->expression;
    // The day or the time of entry is no constant.
    if (value.find("kp.date()") != std::string::npos || value.find("kp.now()") != std::string::npos) return value;
    const std::string text = "SELECT format('%L', " + change.value + ") FROM (SELECT " + value + " AS " +
                             QuotedName(change.column) + ") AS " + QuotedName(change.table);
    return std::string(database_.Guarded([&] { return database_.Run(text); }).Value(0, 0));
}

std::string ServerCatalog::RowIdColumn(std::string_view table) const {
    const sql::CatalogTable* found = Find(table);
    return found && found->rowId != kHiddenRowId ? found->rowId : std::string();
}

std::vector<std::string> ServerCatalog::TableNames() const {
    ReadTables();
    // Who asks for all tables is going to describe them.
    ReadExpressions("");
    std::vector<std::string> names;
    for (const Table& table : *tables_) names.push_back(table.name);
    return names;
}

std::int64_t ServerCatalog::ReadVersion() {
    static const std::string kAsk = "SELECT version, (SELECT extversion FROM pg_extension WHERE extname = '" +
                                    std::string(sql::print::postgres::kExtension) + "') FROM kp_book";
    const Result answer = database_.Guarded([&] { return database_.Run(kAsk); });
    const bool has = answer.Integer(0, 1) >= sql::print::postgres::kExtensionVersion;
    // Texts that were translated before say otherwise.
    if (std::exchange(hasExtension_, has) != has) Forget();
    return answer.Integer(0, 0);
}

}  // namespace kpTables::engines::postgres
