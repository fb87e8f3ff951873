#include "engines/postgres/PostgresDriver.h"

#include <cstddef>
#include <cstdint>
#include <utility>

#include "engines/common/LiteralBinding.h"
#include "engines/postgres/BookLock.h"
#include "engines/postgres/BookUsers.h"
#include "engines/postgres/RowReader.h"
#include "engines/postgres/TableWriter.h"
#include "kpTables/Error.h"
#include "kpTables/text/Message.h"
#include "sql/print/postgres/PostgresEngine.h"

namespace kpTables::engines::postgres {

namespace {

using sql::print::postgres::QuotedName;

/// Of an array of whole numbers of four bytes, each of which stands behind its length.
std::string_view ElementAt(std::string_view array, std::size_t index) {
    constexpr std::size_t kHead = 20;
    constexpr std::size_t kNumber = sizeof(std::int32_t);
    return array.substr(kHead + index * 2 * kNumber + kNumber, kNumber);
}

/// A query or a change, prepared on the server.
class PreparedStatement final : public engines::Statement {
public:
    PreparedStatement(Database& database, const engines::Limits& limits, std::string_view text)
        : database_(database),
          limits_(limits),
          text_(text),
          name_(database.Guarded([&] { return database.Prepare(text, text); })),
          schemaChanges_(database.SchemaChanges()) {}
    ~PreparedStatement() override {
        database_.Forget(std::move(name_));
        if (!watching_.empty()) database_.Forget(std::move(watching_));
    }
    PreparedStatement(const PreparedStatement&) = delete;
    PreparedStatement& operator=(const PreparedStatement&) = delete;

    void Bind(const std::vector<sql::Parameter>& parameters, const std::vector<sql::LiteralValue>& literals,
              std::string_view shown) override {
        engines::BindLiterals(parameters_, parameters, literals, shown);
    }

    void ExpectOneRow() noexcept override { reading_ = Reading::AtOnce; }

    std::unique_ptr<recordset::RowStore> ReadRows(recordset::FieldsPtr fields, std::string_view shown) override {
        const bool watches = database_.TakeLookForOthers();
        return database_.Guarded([&] {
            const Query query = [&](const RowSink& sink) {
                if (watches) return ReadWatching(sink, shown);
                database_.ReadPrepared(name_, parameters_, shown, sink, reading_);
            };
            // The fields stay: on a connection that is made anew this runs a second time.
            return postgres::ReadRows(query, fields, shown, limits_);
        });
    }

    std::int64_t Run(std::string_view shown) override {
        return Changing(database_, [&] { return database_.RunPrepared(name_, parameters_, shown).AffectedRows(); });
    }

    bool TakeSchemaChange() noexcept override {
        const int before = std::exchange(schemaChanges_, database_.SchemaChanges());
        return before != schemaChanges_;
    }

private:
    /// Reads the rows together with who has changed the book last, as of one moment. Without rows it does not matter.
    void ReadWatching(const RowSink& sink, std::string_view shown) {
        if (watching_.empty()) {
            const std::string text =
                "SELECT kp_read.*, (SELECT ARRAY[xmax, CAST(pg_snapshot_xmin(pg_current_snapshot()) AS xid)] FROM "
                "kp_book) FROM (" +
                text_ + ") AS kp_read";
            watching_ = database_.Prepare(text, text);
        }
        bool isFirst = true;
        const RowSink watch = [&](const Result& rows, int row) {
            if (std::exchange(isFirst, false)) {
                const std::string_view numbers = rows.Value(row, rows.Columns() - 1);
                database_.others.Read(WholeOf<std::uint32_t>(ElementAt(numbers, 0)),
                                      WholeOf<std::uint32_t>(ElementAt(numbers, 1)));
            }
            sink(rows, row);
        };
        database_.ReadPrepared(watching_, parameters_, shown, watch, reading_);
    }

    Database& database_;
    const engines::Limits& limits_;
    std::string text_;
    std::string name_;
    std::string watching_;  ///< what ReadWatching runs; "" before the first time
    Reading reading_ = Reading::RowByRow;
    int schemaChanges_;
    Parameters parameters_;
};

/// A change of the schema, perhaps of several statements.
class SchemaStatement final : public engines::Statement {
public:
    SchemaStatement(Database& database, std::string_view text)
        : database_(database),
          text_(std::string(text) +
                "; UPDATE kp_book SET version = version + 1; SELECT pg_notify(current_schema(), '')") {}

    void Bind(const std::vector<sql::Parameter>& /*parameters*/, const std::vector<sql::LiteralValue>& /*literals*/,
              std::string_view /*shown*/) override {}
    std::unique_ptr<recordset::RowStore> ReadRows(recordset::FieldsPtr fields, std::string_view /*shown*/) override {
        return std::make_unique<recordset::RowStore>(std::move(fields));
    }
    std::int64_t Run(std::string_view shown) override {
        Changing(database_, [&] { database_.Run(text_, shown); });
        return 0;
    }
    bool TakeSchemaChange() noexcept override { return false; }

private:
    Database& database_;
    std::string text_;
};

/// An expression: the sequence of a table's identity column.
std::string SequenceOf(const std::string& table, const std::string& counter) {
    using sql::print::postgres::QuotedText;
    return "pg_get_serial_sequence(" + QuotedText(QuotedName(table)) + ", " + QuotedText(counter) + ")::regclass";
}

bool IsSchemaChange(std::string_view text) noexcept {
    return text.starts_with("CREATE ") || text.starts_with("DROP ") || text.starts_with("ALTER ");
}

}  // namespace

void ServerTransaction::RunWhole(std::string_view text) {
    database_.Interruptible(false);
    try {
        database_.Run(text);
    } catch (...) {
        database_.Interruptible(true);
        throw;
    }
    database_.Interruptible(true);
}

void ServerTransaction::Start(Use use) {
    if (use == Use::ReadOrWrite && readOnly_) {
        return database_.Repeated([&] { RunWhole("BEGIN ISOLATION LEVEL REPEATABLE READ READ ONLY"); });
    }
    BeginChange(database_);
}

void ServerTransaction::Save() {
    if (!readOnly_) return database_.Commit();
    database_.SendPending();
    database_.ForgetSavepoint();
    RunWhole("COMMIT");
}

void ServerTransaction::Undo() {
    database_.DropPending();
    database_.ForgetSavepoint();
    RunWhole("ROLLBACK");
}

void ServerTransaction::StartLevel() {
    // Of savepoints with one name, the innermost is meant.
    database_.DropSavepoint();
    RunWhole("SAVEPOINT kp_level");
}

void ServerTransaction::MergeLevel() {
    database_.DropSavepoint();
    RunWhole("RELEASE kp_level");
}

void ServerTransaction::UndoLevel() {
    database_.DropPending();
    database_.ForgetSavepoint();
    RunWhole("ROLLBACK TO kp_level; RELEASE kp_level");
}

void ServerTransaction::Abandon() noexcept {
    database_.ForgetSavepoint();
    RollBackQuietly(database_);
}

PostgresDriver::PostgresDriver(std::unique_ptr<Database> database, engines::Limits limits, bool readOnly)
    : database_(std::move(database)),
      limits_(std::move(limits)),
      catalog_(*database_),
      transaction_(*database_, readOnly) {}

std::unique_ptr<engines::Statement> PostgresDriver::Prepare(std::string_view text) {
    if (IsSchemaChange(text)) return std::make_unique<SchemaStatement>(*database_, text);
    return std::make_unique<PreparedStatement>(*database_, limits_, text);
}

std::shared_ptr<engines::RowWriter> PostgresDriver::MakeWriter(engines::WrittenTable table) {
    const sql::CatalogTable& known = *catalog_.Find(table.name);
    return std::make_shared<TableWriter>(*database_, std::move(table), known);
}

void PostgresDriver::ChangeColumn(const sql::ColumnChange& change) {
    const std::string kept = change.definition.find(" SET DEFAULT ") == std::string::npos
                                 ? catalog_.ConvertedDefault(change)
                                 : std::string();
    const std::string setsDefault =
        kept.empty() ? kept : ", ALTER COLUMN " + QuotedName(change.column) + " SET DEFAULT " + kept;
    SchemaStatement(*database_, "ALTER TABLE " + QuotedName(change.table) + " " + change.definition + " USING " +
                                    change.value + setsDefault)
        .Run({});
}

void PostgresDriver::BackUp(const std::string& /*path*/) {
    throw DatabaseError(
        static_cast<std::int32_t>(DatabaseErrorNumber::Failure),
        Message(
            "A server does not write its books as files; kpbook backup and kpbook copy make a book of the rows, and "
            "pg_dump one of the server's own"));
}

std::int64_t PostgresDriver::LastCounter(const std::string& table, const std::string& counter) {
    const std::string last = "SELECT COALESCE(pg_sequence_last_value(" + SequenceOf(table, counter) + "), 0)";
    return database_->Guarded([&] { return database_->Run(last); }).Integer(0, 0);
}

void PostgresDriver::AdvanceCounter(const std::string& table, const std::string& counter, std::int64_t last) {
    if (LastCounter(table, counter) >= last) return;
    const std::string set = "SELECT setval(" + SequenceOf(table, counter) + ", " + std::to_string(last) + ")";
    Changing(*database_, [&] { database_->Run(set); });
}

bool PostgresDriver::HasUser(const std::string& user) {
    return database_->Guarded([&] { return postgres::HasUser(*database_, user); });
}

void PostgresDriver::Grant(const BookUser& user) {
    Changing(*database_, [&] { GrantUser(*database_, user); });
}

bool PostgresDriver::Revoke(const std::string& user) {
    return Changing(*database_, [&] { return RevokeUser(*database_, user); });
}

bool PostgresDriver::IsSchemaNoted() {
    return database_->Guarded([&] { return database_->Run("SELECT whole = version FROM kp_book"); }).Value(0, 0) == "t";
}

void PostgresDriver::NoteSchema() noexcept {
    if (database_->InTransaction()) return;
    try {
        database_->Run("UPDATE kp_book SET whole = version");
    } catch (const DatabaseError&) {
        return;  // Somebody who may only read.
    }
}

const sql::print::Engine& PostgresDriver::Dialect() const noexcept {
    return sql::print::postgres::PostgresEngine(catalog_.HasExtension());
}

}  // namespace kpTables::engines::postgres
