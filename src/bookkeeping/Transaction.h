// A transaction of the host's that ends with its block.
#pragma once

#include "kpTables/Connection.h"
#include "kpTables/Error.h"

namespace kpTables::bookkeeping {

/// Holds the book's write lock from its start, and rolls back unless it was committed.
class Transaction {
public:
    explicit Transaction(Connection& connection) : connection_(&connection) { connection.BeginTrans(); }
    ~Transaction() {
        if (!connection_) return;
        try {
            connection_->RollbackTrans();
        } catch (const Error&) {
            // The engine has rolled back by itself; the original error says why.
        }
    }
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    void Commit() {
        connection_->CommitTrans();
        connection_ = nullptr;
    }

private:
    Connection* connection_;
};

}  // namespace kpTables::bookkeeping
