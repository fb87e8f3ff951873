#include "engines/postgres/BookTables.h"

#include "BookSchema.h"
#include "engines/common/SchemaText.h"
#include "engines/postgres/SharedSchema.h"
#include "sql/print/postgres/PostgresEngine.h"

namespace kpTables::engines::postgres {

void MakeTables(Database& database, HeaderDialect header) {
    using sql::print::postgres::QuotedName;
    // In one message: the statements are about each other's tables alone, so no catalog is read between them.
    database.Run(engines::SchemaIn(sql::print::postgres::PostgresEngine()));
    if (header == HeaderDialect::SqlServer) {
        for (const auto& column : schema::kSqlServerNames) {
            database.Run("ALTER TABLE " + QuotedName(column.table) + " RENAME COLUMN " + QuotedName(column.name) +
                         " TO " + QuotedName(column.sqlServerName));
        }
    }
    database.Run("UPDATE kp_book SET version = version + 1");
}

std::string BookNoteText(std::int64_t format, const std::string& schema) {
    const std::string table = schema + "kp_book";
    return "CREATE TABLE " + table +
           " (format integer NOT NULL, version bigint NOT NULL, whole bigint, icu text); INSERT INTO " + table +
           " VALUES (" + std::to_string(format) + ", 1, NULL, " + std::string(kActualIcuVersion) + ")";
}

HeaderDialect DialectOf(Database& database) {
    using sql::print::postgres::QuotedText;
    std::string names;
    for (const auto& column : schema::kSqlServerNames) {
        names +=
            (names.empty() ? "(" : ", (") + QuotedText(column.table) + ", " + QuotedText(column.sqlServerName) + ")";
    }
    const Result found = database.Run(
        "SELECT count(*) FROM information_schema.columns WHERE table_schema = current_schema() AND (table_name, "
        "column_name) IN (" +
        names + ")");
    return found.Integer(0, 0) > 0 ? HeaderDialect::SqlServer : HeaderDialect::Jet;
}

}  // namespace kpTables::engines::postgres
