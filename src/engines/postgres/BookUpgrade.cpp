// Gives a book of an earlier format the tables, columns and indexes of a new one: these are made in a schema of their
// own beside it, and what the book lacks, or has otherwise, is taken from there.
#include <memory>
#include <utility>

#include "BookSchema.h"
#include "engines/common/Executor.h"
#include "engines/postgres/BookTables.h"
#include "engines/postgres/PostgresBook.h"
#include "engines/postgres/PostgresDriver.h"
#include "engines/postgres/ServerBook.h"
#include "engines/postgres/SharedSchema.h"
#include "kpTables/Error.h"
#include "kpTables/text/Message.h"
#include "sql/print/postgres/PostgresEngine.h"

namespace kpTables::engines::postgres {

namespace {

using sql::print::postgres::QuotedName;
using sql::print::postgres::QuotedText;

constexpr std::string_view kWanted = "kp_wanted";

class ServerUpgrade {
public:
    ServerUpgrade(Database& database, std::string book) : database_(database), book_(std::move(book)) {}

    /// Inside the open transaction; a phrase for each change.
    std::vector<std::string> Change(engines::Executor& executor) {
        MakeWanted(executor);
        AddTables();
        ChangeColumns();
        ChangeIndexes();
        database_.Run("DROP SCHEMA " + std::string(kWanted) + " CASCADE");
        return std::move(changes_);
    }

private:
    /// The tables of a new book. kp_book stays the book's own.
    void MakeWanted(engines::Executor& executor) {
        const HeaderDialect header = DialectOf(database_);
        const std::string wanted(kWanted);
        database_.Run("CREATE SCHEMA " + wanted + "; SET LOCAL search_path = " + wanted + ", " + QuotedName(book_));
        MakeTables(database_, header);
        database_.Run("SET LOCAL search_path = " + QuotedName(book_));
        executor.GetDriver().GetCatalog().Forget();
    }

    void AddTables() {
        const Result missing = database_.Run(
            "SELECT tablename FROM pg_tables WHERE schemaname = " + QuotedText(kWanted) +
            " EXCEPT SELECT tablename FROM pg_tables WHERE schemaname = " + QuotedText(book_) + " ORDER BY 1");
        for (int row = 0; row < missing.Rows(); ++row) {
            const std::string table(missing.Value(row, 0));
            database_.Run("ALTER TABLE " + std::string(kWanted) + "." + QuotedName(table) + " SET SCHEMA " +
                          QuotedName(book_));
            changes_.push_back(Message("made the table {1}", table));
        }
    }

    /// A query: the columns of a schema's tables. A text that the host has given more room keeps it.
    static std::string ColumnsOf(std::string_view schema) {
        return "(SELECT relname, attname, attnum, format_type(atttypid, atttypmod) AS type, CASE WHEN "
               "format_type(atttypid, atttypmod) = 'kp.text' THEN 1000000 ELSE substring(format_type(atttypid, atttypmod) "
               "FROM 'text\\((\\d+)')::integer END AS width, attnotnull, attidentity, "
               "attgenerated, pg_get_expr(adbin, adrelid) AS value FROM pg_class JOIN pg_namespace ON pg_namespace.oid = "
               "relnamespace JOIN pg_attribute ON attrelid = pg_class.oid LEFT JOIN pg_attrdef ON adrelid = attrelid AND "
               "adnum = attnum WHERE attnum > 0 AND NOT attisdropped AND relkind = 'r' AND nspname = " +
               QuotedText(schema) + ")";
    }

    void ChangeColumns() {
        enum { kTable, kColumn, kType, kNotNull, kIdentity, kGenerated, kValue, kMissing };
        const Result different = database_.Run(
            "SELECT relname, attname, CASE WHEN p.width > w.width THEN p.type ELSE w.type END, w.attnotnull, w.attidentity <> '', w.attgenerated <> '', w.value, p.type IS "
            "NULL FROM " +
            ColumnsOf(kWanted) + " AS w LEFT JOIN " + ColumnsOf(book_) +
            " AS p USING (relname, attname) WHERE (CASE WHEN p.width > w.width THEN w.type ELSE p.type END, p.attnotnull, p.value) IS DISTINCT "
            "FROM (w.type, w.attnotnull, w.value) ORDER BY relname, w.attnum");
        for (int row = 0; row < different.Rows(); ++row) {
            const auto is = [&](int column) { return different.Value(row, column) == "t"; };
            const std::string table(different.Value(row, kTable));
            const std::string column(different.Value(row, kColumn));
            const std::string type(different.Value(row, kType));
            const std::string value(different.Value(row, kValue));
            if (is(kIdentity) && is(kMissing))
                Refuse(Message("{1}.{2} numbers the rows and is missing; copy the book instead", table, column));
            std::string change = is(kMissing) ? "ADD COLUMN " + QuotedName(column) + " " + type : "";
            if (is(kMissing)) {
                if (is(kGenerated)) change += " GENERATED ALWAYS AS (" + value + ") STORED";
                if (!is(kGenerated) && !value.empty()) change += " DEFAULT " + value;
                if (is(kNotNull)) change += " NOT NULL";
                changes_.push_back(Message("added the column {1}.{2}", table, column));
            } else {
                change = AlteredColumn(QuotedName(column), type, value, is(kNotNull), is(kGenerated));
                changes_.push_back(Message("changed the columns of {1}: {2}", table, column));
            }
            database_.Run("ALTER TABLE " + QuotedName(table) + " " + change);
        }
    }

    /// The value of a generated column stays as it is.
    static std::string AlteredColumn(const std::string& name, const std::string& type, const std::string& value,
                                     bool notNull, bool generated) {
        const std::string alter = "ALTER COLUMN " + name;
        std::string change = alter + (notNull ? " SET" : " DROP") + " NOT NULL";
        if (generated) return change;
        change.insert(
            0, alter + " DROP DEFAULT, " + alter + " TYPE " + type + " USING CAST(" + name + " AS " + type + "), ");
        if (!value.empty()) change += ", " + alter + " SET DEFAULT " + value;
        return change;
    }

    /// A query: the indexes of a schema that are no key's, with their definitions as the book's.
    std::string IndexesOf(std::string_view schema) const {
        return "(SELECT relname, replace(pg_get_indexdef(pg_class.oid), format(' ON %I.', nspname), ' ON ' || " +
               QuotedText(QuotedName(book_)) +
               " || '.') AS text FROM pg_class JOIN pg_namespace ON pg_namespace.oid = relnamespace WHERE relkind = 'i' "
               "AND NOT EXISTS (SELECT FROM pg_constraint WHERE conindid = pg_class.oid) AND nspname = " +
               QuotedText(schema) + ")";
    }

    void ChangeIndexes() {
        const Result different =
            database_.Run("SELECT relname, w.text, p.text IS NULL FROM " + IndexesOf(kWanted) + " AS w LEFT JOIN " +
                          IndexesOf(book_) + " AS p USING (relname) WHERE p.text IS DISTINCT FROM w.text ORDER BY 1");
        for (int row = 0; row < different.Rows(); ++row) {
            const std::string index(different.Value(row, 0));
            const bool isMissing = different.Value(row, 2) == "t";
            if (!isMissing) database_.Run("DROP INDEX " + QuotedName(index));
            database_.Run(different.Value(row, 1));
            changes_.push_back(isMissing ? Message("made the index {1}", index)
                                         : Message("changed the index {1}", index));
        }
    }

    [[noreturn]] static void Refuse(const std::string& complaint) {
        throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::Failure), complaint);
    }

    Database& database_;
    std::string book_;
    std::vector<std::string> changes_;
};

/// In one transaction, which an exception leaves to be rolled back with the connection.
std::vector<std::string> ChangeBook(const engines::ExecutorPtr& executor, Database& database, const std::string& book,
                                    std::int64_t format) {
    executor->GetTransaction().Begin();
    const std::string version = "SELECT version FROM kp_book";
    const std::int64_t before = database.Run(version).Integer(0, 0);
    auto changes = ServerUpgrade(database, book).Change(*executor);
    if (format != schema::kFormat) changes.push_back(Message("noted the format {1}", schema::kFormat));
    if (changes.empty()) {
        executor->GetTransaction().Rollback();
        return changes;
    }
    database.Run("UPDATE kp_book SET format = " + std::to_string(schema::kFormat) +
                 ", version = " + std::to_string(before + 1) + ", whole = " + std::to_string(before + 1) +
                 "; SELECT pg_notify(current_schema(), '')");
    executor->GetTransaction().Commit();
    return changes;
}

}  // namespace

BookUpgrade UpgradeOnServer(const std::string& address, const std::string& url, const UpgradeOptions& options) {
    const ServerUrl parts = ParseServerUrl(address, url);
    auto connected = Connected(parts, url, {options.busyTimeout, {}, options.password});
    Database& database = *connected;
    BookUpgrade upgrade;
    const std::int64_t format = CheckedFormat(database, parts.book, url, 0);
    upgrade.fromFormat = static_cast<std::int32_t>(format);
    upgrade.toFormat = schema::kFormat;
    try {
        if (MakeSharedSchema(database))
            upgrade.changes.push_back(Message("brought the functions in the schema kp up to date"));
        const auto executor = std::make_shared<engines::Executor>(
            std::make_unique<PostgresDriver>(std::move(connected), engines::Limits(), false));
        for (std::string& change : ChangeBook(executor, database, parts.book, format))
            upgrade.changes.push_back(std::move(change));
        BringIndexesUpToDate(database, parts.book);
        return upgrade;
    } catch (const DatabaseError& error) {
        throw DatabaseError(error.Number(), Message("The book '{1}' cannot be upgraded: {2}", url,
                                                    Message("{1}; nothing was changed", error.Description())));
    }
}

}  // namespace kpTables::engines::postgres
