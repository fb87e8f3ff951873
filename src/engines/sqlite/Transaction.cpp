#include "Transaction.h"

#include <sqlite3.h>

#include "kpTables/Error.h"

namespace kpTables::sqlite {

namespace {

// The lock is taken at once: a transaction that reads first and writes later could not wait for another writer.
constexpr std::string_view kBegin = "BEGIN IMMEDIATE";

[[noreturn]] void RaiseMisuse(const char* text) {
    throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::Failure), text);
}

}  // namespace

void Transaction::Begin() {
    if (StillOpen(Owner::Host)) RaiseMisuse("A transaction is open already; transactions do not nest");
    RequireHostTransactionAlive();
    CommitRows();
    database_.Run(database_.IsReadOnly() ? "BEGIN" : kBegin);
    owner_ = Owner::Host;
}

void Transaction::Commit() {
    if (owner_ != Owner::Host) RaiseMisuse("There is no transaction to commit");
    RequireHostTransactionAlive();
    // A commit that finds the book busy may be tried again: the transaction stays open.
    database_.Run("COMMIT");
    owner_ = Owner::None;
}

void Transaction::Rollback() {
    if (owner_ != Owner::Host) RaiseMisuse("There is no transaction to roll back");
    if (StillOpen(Owner::Host)) database_.Run("ROLLBACK");
    owner_ = Owner::None;
}

void Transaction::BeginForRows() {
    RequireHostTransactionAlive();
    if (database_.InTransaction()) return;
    database_.Run(kBegin);
    owner_ = Owner::Recordsets;
}

bool Transaction::TakeLossOfRows() noexcept {
    const bool lost = owner_ == Owner::Recordsets && !database_.InTransaction();
    if (lost) owner_ = Owner::None;
    return lost;
}

void Transaction::BeforeChange() {
    RequireHostTransactionAlive();
    CommitRows();
}

void Transaction::CommitRows() {
    if (owner_ != Owner::Recordsets) return;
    owner_ = Owner::None;
    if (!database_.InTransaction()) {
        RaiseMisuse("Rows written through a recordset were lost when an earlier failure ended their transaction");
    }
    try {
        database_.Run("COMMIT");
    } catch (const DatabaseError&) {
        // A commit that failed may leave the transaction open, and it would hold the book's lock for ever.
        if (database_.InTransaction()) sqlite3_exec(database_.Get(), "ROLLBACK", nullptr, nullptr, nullptr);
        throw;
    }
}

void Transaction::RequireHostTransactionAlive() const {
    if (owner_ == Owner::Host && !database_.InTransaction()) {
        RaiseMisuse("The transaction was ended by an earlier failure and nothing of it was saved; roll it back first");
    }
}

}  // namespace kpTables::sqlite
