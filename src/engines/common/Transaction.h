// The owner of a connection's transaction.
#pragma once

#include <exception>

#include "kpTables/Error.h"

namespace kpTables::engines {

/// The connection was lost while a transaction was saved: nobody knows whether it was.
class UncertainSave : public DatabaseError {
public:
    using DatabaseError::DatabaseError;
};

/// A connection has at most one transaction: the host's, or the one that open recordsets write in so that not every row
/// costs a disk write. The latter ends when a recordset closes and before any other statement that changes data; until
/// then other programs wait. The host's can have levels inside it.
class Transaction {
public:
    Transaction() = default;
    virtual ~Transaction() = default;
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    /// Begins the host's transaction or a level inside it; the level, 1 for the outermost.
    int Begin();
    /// Ends the innermost level.
    void Commit();
    void Rollback();

    /// Of the host's transaction, 0 when it has none.
    int Level() const noexcept { return level_; }

    /// Begins the recordsets' transaction unless there is one already.
    void BeginForRows();
    /// Called after a row could not be written: whether the database has rolled back the rows before it too, as some do
    /// when the disk is full. Returns true once.
    bool TakeLossOfRows() noexcept;
    /// Called before any other statement that changes data: ends the recordsets' transaction, and raises when the
    /// host's has been lost.
    void BeforeChange();
    /// Commits what recordsets have written; does nothing inside the host's transaction. When the database refuses, it
    /// raises and the rows since BeginForRows are lost.
    void CommitRows();
    /// Sends what writers have gathered; does nothing where each row is written at once. Raises the error of a row
    /// that the database refuses: those before it are written, those behind it not.
    virtual void SendRows() {}
    /// At the end of a recordset: SendRows, and CommitRows.
    void CloseRows();
    /// CloseRows for destructors: keeps the error for RaiseLoss.
    void CloseRowsQuietly() noexcept;
    /// Raises, once, the error that CloseRowsQuietly has kept.
    void RaiseLoss() {
        if (loss_) RaiseKeptLoss();
    }
    /// Ends the recordsets' transaction; raises when the host has one.
    void RequireNone();

protected:
    /// ReadOrWrite can also begin in a book that is open for reading only.
    enum class Use { ReadOrWrite, Write };

private:
    enum class Owner { None, Host, Recordsets };

    // The engine's part.
    virtual void Start(Use use) = 0;
    /// Raises an UncertainSave when the transaction is over and may have been saved.
    virtual void Save() = 0;
    virtual void Undo() = 0;
    /// Begins a level inside the open transaction.
    virtual void StartLevel() = 0;
    /// Merges the innermost level with the one around it.
    virtual void MergeLevel() = 0;
    virtual void UndoLevel() = 0;
    /// Undo after a failed Save, ignoring errors.
    virtual void Abandon() noexcept = 0;
    /// A database may end a transaction by itself after a failure.
    virtual bool IsOpen() const noexcept = 0;
    /// The owner of a transaction that has ended by itself knows it now.
    virtual void AcceptLoss() noexcept {}

    void RequireHostTransactionAlive() const;
    void EndLevel() noexcept;
    [[noreturn]] void RaiseKeptLoss();

    Owner owner_ = Owner::None;
    int level_ = 0;            ///< of the host's transaction
    bool mayBeSaved_ = false;  ///< the host's transaction is over: see UncertainSave
    std::exception_ptr loss_;
};

}  // namespace kpTables::engines
