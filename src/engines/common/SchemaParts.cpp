#include "engines/common/SchemaParts.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "BookSchema.h"
#include "kpTables/text/Message.h"
#include "sql/Names.h"
#include "sql/parse/Parser.h"

namespace kpTables::engines {

namespace {

using TableDefinition = std::unique_ptr<const sql::CreateTableStatement>;

std::vector<TableDefinition> SchemaTables() {
    std::vector<TableDefinition> tables;
    for (const std::string_view text : schema::BookSchema()) {
        sql::StatementPtr statement = sql::parse::Parse(text);
        if (statement->kind != sql::StatementKind::CreateTable) continue;
        tables.emplace_back(static_cast<const sql::CreateTableStatement*>(statement.release()));
    }
    return tables;
}

bool Has(const sql::CatalogTable& table, const std::string& column) {
    if (sql::FindColumn(table, column)) return true;
    return std::any_of(std::begin(schema::kSqlServerNames), std::end(schema::kSqlServerNames),
                       [&](const schema::SqlServerName& name) {
                           return sql::SameName(name.table, table.name) && sql::SameName(name.name, column) &&
                                  sql::FindColumn(table, name.sqlServerName);
                       });
}

}  // namespace

std::vector<std::string> MissingParts(const Catalog& catalog) {
    std::vector<std::string> missing;
    for (const TableDefinition& wanted : SchemaTables()) {
        const sql::CatalogTable* table = catalog.Find(wanted->table);
        if (!table) {
            missing.push_back(Message("the table {1}", wanted->table));
            continue;
        }
        for (const auto& column : wanted->columns) {
            if (!Has(*table, column.name)) missing.push_back(Message("the column {1}.{2}", wanted->table, column.name));
        }
    }
    return missing;
}

std::string FormatComplaint(std::int64_t format, std::int64_t oldest) {
    if (format > schema::kFormat)
        return Message(
            "its format is {1}, and this version of the program knows formats up to {2}; open it with a newer version",
            format, schema::kFormat);
    if (format < oldest)
        return Message("its format is {1}, an earlier one than {2}; kpbook upgrade brings it up to date", format,
                       schema::kFormat);
    return {};
}

std::vector<std::string> InSchemaOrder(std::vector<std::string> tables) {
    auto next = tables.begin();
    for (const TableDefinition& wanted : SchemaTables()) {
        const auto found = std::find_if(next, tables.end(),
                                        [&](const std::string& name) { return sql::SameName(name, wanted->table); });
        if (found == tables.end()) continue;
        std::rotate(next, found, found + 1);
        ++next;
    }
    return tables;
}

}  // namespace kpTables::engines
