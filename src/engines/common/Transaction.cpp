#include "engines/common/Transaction.h"

#include "kpTables/Error.h"

namespace kpTables::engines {

namespace {

[[noreturn]] void RaiseMisuse(const char* text) {
    throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::Failure), text);
}

}  // namespace

void Transaction::Begin() {
    if (StillOpen(Owner::Host)) RaiseMisuse("A transaction is open already; transactions do not nest");
    RequireHostTransactionAlive();
    CommitRows();
    Start(Use::ReadOrWrite);
    owner_ = Owner::Host;
}

void Transaction::Commit() {
    if (owner_ != Owner::Host) RaiseMisuse("There is no transaction to commit");
    RequireHostTransactionAlive();
    // A commit that finds the book busy can be retried: the transaction stays open.
    Save();
    owner_ = Owner::None;
}

void Transaction::Rollback() {
    if (owner_ != Owner::Host) RaiseMisuse("There is no transaction to roll back");
    if (StillOpen(Owner::Host)) Undo();
    owner_ = Owner::None;
}

void Transaction::BeginForRows() {
    RequireHostTransactionAlive();
    if (IsOpen()) return;
    Start(Use::Write);
    owner_ = Owner::Recordsets;
}

bool Transaction::TakeLossOfRows() noexcept {
    const bool lost = owner_ == Owner::Recordsets && !IsOpen();
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
    if (!IsOpen()) {
        RaiseMisuse("Rows written through a recordset were lost when an earlier failure ended their transaction");
    }
    try {
        Save();
    } catch (const DatabaseError&) {
        // A commit that failed may leave the transaction open, which would hold the book's lock forever.
        if (IsOpen()) Abandon();
        throw;
    }
}

void Transaction::RequireNone() {
    if (owner_ == Owner::Host) RaiseMisuse("A transaction is open; commit it or roll it back first");
    CommitRows();
}

void Transaction::RequireHostTransactionAlive() const {
    if (owner_ == Owner::Host && !IsOpen()) {
        RaiseMisuse("The transaction was ended by an earlier failure and nothing of it was saved; roll it back first");
    }
}

}  // namespace kpTables::engines
