// Who began the connection's transaction, and who ends it.
#pragma once

namespace kpTables::engines {

/// A connection has at most one transaction: the host's, or the one that open recordsets write in so that not every row
/// costs a write to the disk. The recordsets' one ends when one of them closes and before any other statement that
/// changes data; until then other programs wait.
class Transaction {
public:
    Transaction() = default;
    virtual ~Transaction() = default;
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    void Begin();
    void Commit();
    void Rollback();

    /// Begins the recordsets' transaction unless there is one already.
    void BeginForRows();
    /// Asked after a row could not be written: whether the database has taken back the rows before it too, as some do
    /// when the disk is full. Answers true once.
    bool TakeLossOfRows() noexcept;
    /// Called before any other statement that changes data: ends the recordsets' transaction, and refuses to go on when
    /// the host's has been lost.
    void BeforeChange();
    /// Makes what recordsets have written permanent; does nothing inside the host's transaction. When the database
    /// refuses, it raises and the rows since BeginForRows are lost.
    void CommitRows();
    /// Ends the recordsets' transaction; raises when the host has one.
    void RequireNone();

protected:
    /// A transaction to read or write in begins in a book that is open for reading only, too.
    enum class Use { ReadOrWrite, Write };

private:
    enum class Owner { None, Host, Recordsets };

    // The engine's part.
    virtual void Start(Use use) = 0;
    virtual void Save() = 0;
    virtual void Undo() = 0;
    /// Undo after a Save that failed, whether or not it can.
    virtual void Abandon() noexcept = 0;
    /// A database may end a transaction by itself after a failure.
    virtual bool IsOpen() const noexcept = 0;

    bool StillOpen(Owner owner) const noexcept { return owner_ == owner && IsOpen(); }
    void RequireHostTransactionAlive() const;

    Owner owner_ = Owner::None;
};

}  // namespace kpTables::engines
