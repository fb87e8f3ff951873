#include "kpTables/bookkeeping/WatchedConnection.h"

#include <utility>

#include "bookkeeping/WatchedRecordset.h"
#include "kpTables/text/Message.h"

namespace kpTables::bookkeeping {

WatchedConnection::WatchedConnection(ConnectionPtr target, std::function<std::int64_t()> rowsAffected)
    : target_(std::move(target)), rowsAffected_(std::move(rowsAffected)) {}

template <class Send>
RecordsetPtr WatchedConnection::Report(const SentStatement& statement, Send send) {
    if (onSend) onSend(statement);
    const auto start = std::chrono::steady_clock::now();
    const auto end = [&](std::optional<std::int64_t> rows, const Error* error) {
        if (onEnd) onEnd(statement, {std::chrono::steady_clock::now() - start, rows, error});
    };
    try {
        RecordsetPtr recordset = KeepFailures(*failures_, statement.text, send);
        if (statement.op == StatementOp::Open) {
            end(std::nullopt, nullptr);
        } else {
            end(recordset ? recordset->RecordCount() : rowsAffected_(), nullptr);
        }
        return recordset;
    } catch (const Error& error) {
        end(std::nullopt, &error);
        throw;
    }
}

RecordsetPtr WatchedConnection::Execute(std::string_view text) {
    return Report({StatementOp::Execute, std::string(text), SourceKind::Text}, [&] { return target_->Execute(text); });
}

RecordsetPtr WatchedConnection::Execute(std::string_view text, const NamedValues& values) {
    return Report({StatementOp::Execute, std::string(text), SourceKind::Text},
                  [&] { return target_->Execute(text, values); });
}

RecordsetPtr WatchedConnection::Open(std::string_view source, SourceKind kind) {
    return Report({StatementOp::Open, std::string(source), kind}, [&]() -> RecordsetPtr {
        return std::make_shared<WatchedRecordset>(target_->Open(source, kind), std::string(source), failures_);
    });
}

int WatchedConnection::BeginTrans() {
    return level_ = KeepFailures(*failures_, "BeginTrans", [&] { return target_->BeginTrans(); });
}

void WatchedConnection::RequireOwnLevel() const {
    if (level_ > 0 && level_ <= kept_) {
        throw DatabaseError(static_cast<std::int32_t>(DatabaseErrorNumber::Failure),
                            Message("COMMIT and ROLLBACK end only a transaction that the same text has begun"));
    }
}

void WatchedConnection::CommitTrans() {
    RequireOwnLevel();
    if (onCommit) onCommit();
    KeepFailures(*failures_, "CommitTrans", [&] { target_->CommitTrans(); });
    --level_;
}

void WatchedConnection::RollbackTrans() {
    RequireOwnLevel();
    KeepFailures(*failures_, "RollbackTrans", [&] { target_->RollbackTrans(); });
    --level_;
}

}  // namespace kpTables::bookkeeping
