#include "engines/common/Transaction.h"

#include <cstdint>
#include <string>
#include <utility>

#include "kpTables/text/Message.h"

namespace kpTables::engines {

namespace {

[[noreturn]] void RaiseMisuse(const std::string& text) {
    throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::Failure), text);
}

}  // namespace

int Transaction::Begin() {
    RaiseLoss();
    RequireHostTransactionAlive();
    if (owner_ == Owner::Host) {
        StartLevel();
        return ++level_;
    }
    CommitRows();
    Start(Use::ReadOrWrite);
    owner_ = Owner::Host;
    return level_ = 1;
}

void Transaction::Commit() {
    if (owner_ != Owner::Host) RaiseMisuse(Message("There is no transaction to commit"));
    RequireHostTransactionAlive();
    // A commit that finds the book busy can be retried: the transaction stays open.
    if (level_ > 1) {
        MergeLevel();
    } else {
        try {
            Save();
        } catch (const UncertainSave&) {
            mayBeSaved_ = true;
            throw;
        }
    }
    EndLevel();
}

void Transaction::Rollback() {
    if (owner_ != Owner::Host) RaiseMisuse(Message("There is no transaction to roll back"));
    try {
        if (IsOpen()) level_ > 1 ? UndoLevel() : Undo();
    } catch (...) {
        // A database that fails to roll back a level may end the whole transaction instead.
        if (IsOpen()) throw;
    }
    EndLevel();
}

void Transaction::EndLevel() noexcept {
    if (--level_ > 0) return;
    owner_ = Owner::None;
    mayBeSaved_ = false;
    AcceptLoss();
}

void Transaction::BeginForRows() {
    RaiseLoss();
    RequireHostTransactionAlive();
    if (IsOpen()) return;
    // Rows that were lost with their transaction are told.
    CommitRows();
    Start(Use::Write);
    owner_ = Owner::Recordsets;
}

bool Transaction::TakeLossOfRows() noexcept {
    const bool lost = owner_ == Owner::Recordsets && !IsOpen();
    if (lost) {
        owner_ = Owner::None;
        AcceptLoss();
    }
    return lost;
}

void Transaction::BeforeChange() {
    RaiseLoss();
    RequireHostTransactionAlive();
    CommitRows();
}

void Transaction::CommitRows() {
    if (owner_ != Owner::Recordsets) return;
    std::exception_ptr refused;
    try {
        SendRows();
    } catch (...) {
        // What was written before stays.
        refused = std::current_exception();
    }
    owner_ = Owner::None;
    if (!IsOpen()) {
        AcceptLoss();
        RaiseMisuse(
            Message("Rows written through a recordset were lost when an earlier failure ended their transaction"));
    }
    try {
        Save();
    } catch (...) {
        // A commit that failed may leave the transaction open, which would hold the book's lock forever.
        IsOpen() ? Abandon() : AcceptLoss();
        throw;
    }
    if (refused) std::rethrow_exception(refused);
}

void Transaction::CloseRows() {
    CommitRows();
    SendRows();
}

void Transaction::CloseRowsQuietly() noexcept {
    try {
        CloseRows();
    } catch (...) {
        loss_ = std::current_exception();
    }
}

void Transaction::RaiseKeptLoss() {
    auto number = static_cast<std::int32_t>(DatabaseErrorNumber::Failure);
    std::string why = Message("there is not enough memory");
    try {
        std::rethrow_exception(std::exchange(loss_, nullptr));
    } catch (const UncertainSave&) {
        throw;
    } catch (const DatabaseError& error) {
        number = error.Number();
        why = error.Description();
    } catch (...) {
        // Only memory can be short.
    }
    throw DatabaseError(number, Message("Rows written through a recordset were not saved: {1}", why));
}

void Transaction::RequireNone() {
    RaiseLoss();
    if (owner_ == Owner::Host) RaiseMisuse(Message("A transaction is open; commit it or roll it back first"));
    CommitRows();
}

void Transaction::RequireHostTransactionAlive() const {
    if (owner_ == Owner::Host && !IsOpen()) {
        if (mayBeSaved_) {
            RaiseMisuse(Message(
                "The connection to the server failed while the change was being saved, and it is not known whether it "
                "was: roll it back, and look whether it is in the book before you enter it again"));
        }
        RaiseMisuse(
            Message("The transaction was ended by an earlier failure and nothing of it was saved; roll it back first"));
    }
}

}  // namespace kpTables::engines
