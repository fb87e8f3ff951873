// A transaction that ends with its block.
#pragma once

#include "kpTables/Connection.h"

namespace kpTables {

/// Begins a transaction, or a level inside the open one, and rolls it back at the block's end unless it was committed.
/// The connection must outlive it.
class Transaction {
public:
    explicit Transaction(Connection& connection) : connection_(&connection), level_(connection.BeginTrans()) {}
    ~Transaction() {
        if (!connection_) return;
        try {
            connection_->RollbackTrans();
        } catch (...) {
            // The error that ended the block says why; what is not committed is not saved.
        }
    }
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    /// 1 for the outermost.
    int Level() const noexcept { return level_; }
    /// See Connection::CommitTrans. When it raises, the transaction is still open.
    void Commit() {
        connection_->CommitTrans();
        connection_ = nullptr;
    }

private:
    Connection* connection_;
    int level_;
};

}  // namespace kpTables
