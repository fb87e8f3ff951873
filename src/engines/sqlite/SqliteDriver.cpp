#include "engines/sqlite/SqliteDriver.h"

#include <sqlite3.h>

#include <utility>

#include "engines/common/LiteralBinding.h"
#include "engines/sqlite/BookFile.h"
#include "engines/sqlite/Collation.h"
#include "engines/sqlite/Functions.h"
#include "engines/sqlite/RowReader.h"
#include "engines/sqlite/SchemaNote.h"
#include "engines/sqlite/TableWriter.h"
#include "sql/print/sqlite/SqliteEngine.h"

namespace kpTables::engines::sqlite {

namespace {

class DatabaseStatement final : public engines::Statement {
public:
    DatabaseStatement(const Database& database, std::string_view text)
        : database_(database), statement_(database.Prepare(text)) {}

    void Bind(const std::vector<sql::Parameter>& parameters, const std::vector<sql::LiteralValue>& literals,
              std::string_view shown) override {
        engines::BindLiterals(statement_, parameters, literals, shown);
    }

    std::unique_ptr<recordset::RowStore> ReadRows(recordset::FieldsPtr fields, std::string_view shown) override {
        return sqlite::ReadRows(statement_, std::move(fields), shown);
    }

    std::int64_t Run(std::string_view shown) override {
        const ResetAtEnd reset(statement_);
        statement_.Step(shown);
        return database_.Changes();
    }

    /// SQLite prepares a statement again after a schema change.
    bool TakeSchemaChange() noexcept override {
        constexpr int kForget = 1;
        return sqlite3_stmt_status(statement_.Get(), SQLITE_STMTSTATUS_REPREPARE, kForget) > 0;
    }

private:
    const Database& database_;
    PreparedStatement statement_;
};

}  // namespace

void DatabaseTransaction::Start(Use use) {
    // The lock is taken at once: a transaction that reads first and writes later could not wait for another writer.
    database_.Run(use == Use::ReadOrWrite && database_.IsReadOnly() ? "BEGIN" : "BEGIN IMMEDIATE");
}

void DatabaseTransaction::Abandon() noexcept { sqlite3_exec(database_.Get(), "ROLLBACK", nullptr, nullptr, nullptr); }

SqliteDriver::SqliteDriver(Database database)
    : database_(std::move(database)), catalog_(database_), transaction_(database_) {
    RegisterCollation(database_.Get());
    RegisterFunctions(database_.Get());
}

const TextOrder& SqliteDriver::Texts() const noexcept { return kBookTexts; }

std::unique_ptr<engines::Statement> SqliteDriver::Prepare(std::string_view text) {
    return std::make_unique<DatabaseStatement>(database_, text);
}

std::shared_ptr<engines::RowWriter> SqliteDriver::MakeWriter(engines::WrittenTable table) {
    return std::make_shared<TableWriter>(database_, std::move(table));
}

void SqliteDriver::BackUp(const std::string& path) { CopyToNewFile(database_, path); }

bool SqliteDriver::IsSchemaNoted() {
    comparedSchema_ = SchemaVersion(database_);
    return ReadSchemaNote(database_) == comparedSchema_;
}

void SqliteDriver::NoteSchema() noexcept { TryWriteSchemaNote(database_, comparedSchema_); }

const sql::print::Engine& SqliteDriver::Dialect() const noexcept { return sql::print::sqlite::SqliteEngine(); }

}  // namespace kpTables::engines::sqlite
