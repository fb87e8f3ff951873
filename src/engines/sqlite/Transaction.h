// Who began the connection's transaction, and who ends it.
#pragma once

#include <string_view>

#include "Database.h"

namespace kpTables::sqlite {

/// A connection has at most one transaction: the host's, or the one that open recordsets write in so that not every row
/// costs a write to the disk. The recordsets' one ends when one of them closes and before any other statement that
/// changes data; until then other programs wait.
class Transaction {
public:
    explicit Transaction(const Database& database) noexcept : database_(database) {}

    void Begin();
    void Commit();
    void Rollback();

    /// Begins the recordsets' transaction unless there is one already.
    void BeginForRows();
    /// Asked after a row could not be written: whether SQLite has taken back the rows before it too, as it does when
    /// the disk is full. Answers true once.
    bool TakeLossOfRows() noexcept;
    /// Called before any other statement that changes data: ends the recordsets' transaction, and refuses to go on when
    /// the host's has been lost.
    void BeforeChange();
    /// Makes what recordsets have written permanent; does nothing inside the host's transaction. When the disk refuses,
    /// it raises and the rows since BeginForRows are lost.
    void CommitRows();

private:
    enum class Owner { None, Host, Recordsets };

    /// SQLite ends a transaction by itself after some failures of the disk.
    bool StillOpen(Owner owner) const noexcept { return owner_ == owner && database_.InTransaction(); }
    void RequireHostTransactionAlive() const;

    const Database& database_;
    Owner owner_ = Owner::None;
};

}  // namespace kpTables::sqlite
