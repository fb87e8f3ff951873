// A connection that tells what is sent through it.
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
    std::optional<std::int64_t> rows;  ///< rows answered or changed; nothing for an editable recordset, not yet fetched
    const Error* error = nullptr;      ///< why it failed, when it did
};

/// Decorates a connection: every statement is reported before it is sent and after it has ended, and the last error
/// that a database raised is kept, also of the recordsets opened for editing.
class TracingConnection : public Connection {
public:
    /// rowsAffected tells what the last statement without a recordset changed.
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
