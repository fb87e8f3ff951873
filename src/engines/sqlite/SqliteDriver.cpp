#include "engines/sqlite/SqliteDriver.h"

#include <sqlite3.h>

#include <utility>

#include "engines/common/LiteralBinding.h"
#include "engines/sqlite/BookCopy.h"
#include "engines/sqlite/Collation.h"
#include "engines/sqlite/Functions.h"
#include "engines/sqlite/RowReader.h"
#include "engines/sqlite/SchemaNote.h"
#include "engines/sqlite/TableChange.h"
#include "engines/sqlite/TableWriter.h"
#include "sql/print/sqlite/SqliteEngine.h"

namespace kpTables::engines::sqlite {

namespace {

class DatabaseStatement final : public engines::Statement {
public:
    DatabaseStatement(const Database& database, const engines::Limits& limits, std::string_view text)
        : database_(database), limits_(limits), statement_(database.Prepare(text)) {}

    void Bind(const std::vector<sql::Parameter>& parameters, const std::vector<sql::LiteralValue>& literals,
              std::string_view shown) override {
        engines::BindLiterals(statement_, parameters, literals, shown);
    }

    std::unique_ptr<recordset::RowStore> ReadRows(recordset::FieldsPtr fields, std::string_view shown) override {
        return sqlite::ReadRows(statement_, std::move(fields), shown, limits_);
    }

    std::int64_t Run(std::string_view shown) override {
        const ResetAtEnd reset(statement_);
        statement_.CountStepsAnew();
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
    const engines::Limits& limits_;
    PreparedStatement statement_;
};

/// What begins or ends a transaction is never interrupted.
void RunWhole(PreparedStatement& statement) {
    statement.CountStepsAnew();
    statement.Run();
}

/// The host's answer; a nonzero one ends the statement.
int AskHost(void* context) noexcept {
    const auto& driver = *static_cast<SqliteDriver*>(context);
    // After its last step, a change that is a transaction of its own is saved already, and must not seem to fail.
    if (sqlite3_txn_state(driver.GetDatabase().Get(), nullptr) == SQLITE_TXN_NONE) return 0;
    try {
        return driver.GetLimits().interrupted() ? 1 : 0;
    } catch (...) {
        return 1;
    }
}

}  // namespace

void DatabaseTransaction::Start(Use use) {
    // The lock is taken at once: a transaction that reads first and writes later could not wait for another writer.
    const char* const begin = use == Use::ReadOrWrite && database_.IsReadOnly() ? "BEGIN" : "BEGIN IMMEDIATE";
    if (!rollback_) rollback_ = database_.Prepare("ROLLBACK");
    if (!commit_) commit_ = database_.Prepare("COMMIT");
    if (!begin_ || begin_.Text() != begin) begin_ = database_.Prepare(begin);
    RunWhole(begin_);
}

void DatabaseTransaction::Save() { RunWhole(commit_); }
void DatabaseTransaction::Undo() { RunWhole(rollback_); }
void DatabaseTransaction::MergeLevel() { RunWhole(release_); }

void DatabaseTransaction::StartLevel() {
    // Of savepoints with one name, the innermost is meant.
    if (!savepoint_) savepoint_ = database_.Prepare("SAVEPOINT kp_level");
    if (!rollbackTo_) rollbackTo_ = database_.Prepare("ROLLBACK TO kp_level");
    if (!release_) release_ = database_.Prepare("RELEASE kp_level");
    RunWhole(savepoint_);
}

void DatabaseTransaction::UndoLevel() {
    RunWhole(rollbackTo_);
    RunWhole(release_);
}

void DatabaseTransaction::Abandon() noexcept {
    sqlite3_step(rollback_.Get());
    rollback_.Reset();
}

SqliteDriver::SqliteDriver(Database database, engines::Limits limits)
    : database_(std::move(database)), limits_(std::move(limits)), catalog_(database_), transaction_(database_) {
    constexpr int kStepsBetweenQuestions = 4000;
    if (limits_.interrupted) sqlite3_progress_handler(database_.Get(), kStepsBetweenQuestions, AskHost, this);
    RegisterCollation(database_.Get());
    RegisterFunctions(database_.Get());
}

std::unique_ptr<engines::Statement> SqliteDriver::Prepare(std::string_view text) {
    return std::make_unique<DatabaseStatement>(database_, limits_, text);
}

std::shared_ptr<engines::RowWriter> SqliteDriver::MakeWriter(engines::WrittenTable table) {
    return std::make_shared<TableWriter>(database_, std::move(table));
}

void SqliteDriver::ChangeColumn(const sql::ColumnChange& change) { sqlite::ChangeColumn(database_, change); }

void SqliteDriver::BackUp(const std::string& path) { CopyBook(database_, path); }

std::vector<std::string> SqliteDriver::IntegrityFaults() {
    std::vector<std::string> faults;
    PreparedStatement check = database_.Prepare("PRAGMA integrity_check");
    while (check.Step()) faults.emplace_back(check.Text(0));
    if (faults == std::vector<std::string>{"ok"}) faults.clear();
    return faults;
}

std::int64_t SqliteDriver::LastCounter(const std::string& table, const std::string& /*counter*/) {
    return database_.IntegerOf("SELECT seq FROM sqlite_sequence WHERE name = " + sql::print::sqlite::QuotedText(table));
}

void SqliteDriver::AdvanceCounter(const std::string& table, const std::string& counter, std::int64_t last) {
    if (LastCounter(table, counter) >= last) return;
    const std::string name = sql::print::sqlite::QuotedText(table);
    database_.Run("DELETE FROM sqlite_sequence WHERE name = " + name);
    database_.Run("INSERT INTO sqlite_sequence (name, seq) VALUES (" + name + ", " + std::to_string(last) + ")");
}

bool SqliteDriver::IsSchemaNoted() {
    comparedSchema_ = SchemaVersion(database_);
    return ReadSchemaNote(database_) == comparedSchema_;
}

void SqliteDriver::NoteSchema() noexcept { TryWriteSchemaNote(database_, comparedSchema_); }

const sql::print::Engine& SqliteDriver::Dialect() const noexcept { return sql::print::sqlite::SqliteEngine(); }

}  // namespace kpTables::engines::sqlite
