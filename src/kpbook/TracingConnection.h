// A connection that reports the statements sent through it.
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>

#include "kpTables/Connection.h"
#include "kpTables/Error.h"

namespace kpTables::kpbook {

enum class StatementOp { Execute, Open };

struct SentStatement {
    StatementOp op = StatementOp::Execute;
    std::string text;
    SourceKind kind = SourceKind::Text;
};

/// How a statement ended.
struct StatementEnd {
    std::chrono::steady_clock::duration elapsed{};
    std::optional<std::int64_t>
        rows;  ///< rows returned or changed; nothing for an editable recordset, which has fetched none
    const Error* error = nullptr;  ///< why it failed; null when it did not
};

/// Decorates a connection: reports every statement before it is sent and after it has ended, and keeps the last error
/// that the database raised, including errors of editable recordsets.
class TracingConnection : public Connection {
public:
    /// rowsAffected returns how many rows the last statement without a recordset changed.
    TracingConnection(ConnectionPtr target, std::function<std::int64_t()> rowsAffected);

    std::function<void(const SentStatement&)> onSend;
    std::function<void(const SentStatement&, const StatementEnd&)> onEnd;

    const std::optional<DatabaseError>& LastError() const noexcept { return *lastError_; }
    void ForgetLastError() noexcept { lastError_->reset(); }

    RecordsetPtr Execute(std::string_view text) override;
    RecordsetPtr Open(std::string_view source, SourceKind kind) override;
    void BeginTrans() override { target_->BeginTrans(); }
    void CommitTrans() override { target_->CommitTrans(); }
    void RollbackTrans() override { target_->RollbackTrans(); }

private:
    template <class Send>
    RecordsetPtr Report(const SentStatement& statement, Send send);

    ConnectionPtr target_;
    std::function<std::int64_t()> rowsAffected_;
    /// Shared with the recordsets, which may outlive the connection.
    std::shared_ptr<std::optional<DatabaseError>> lastError_ = std::make_shared<std::optional<DatabaseError>>();
};

}  // namespace kpTables::kpbook
