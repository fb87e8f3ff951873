// A connection that reports the statements sent through it and remembers those that failed.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "kpTables/Connection.h"
#include "kpTables/Error.h"

namespace kpTables::bookkeeping {

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

/// A statement, or a step of the editable recordset that it opened, that the database refused.
struct FailedStatement {
    std::string text;
    DatabaseError error;
};
using FailedStatements = std::vector<FailedStatement>;

/// Decorates a connection: reports every statement before it is sent and after it has ended, and keeps what failed,
/// because most methods of CTables trap errors: only here does a host see that an answer is no answer.
class WatchedConnection : public Connection {
public:
    /// rowsAffected returns how many rows the last statement without a recordset changed.
    WatchedConnection(ConnectionPtr target, std::function<std::int64_t()> rowsAffected);

    std::function<void(const SentStatement&)> onSend;
    std::function<void(const SentStatement&, const StatementEnd&)> onEnd;
    /// Called before a commit, which fails with what it raises.
    std::function<void()> onCommit;

    /// What failed since the last ForgetFailures, in order.
    const FailedStatements& Failures() const noexcept { return *failures_; }
    /// The last of them; nullptr when there is none.
    const DatabaseError* LastError() const noexcept { return failures_->empty() ? nullptr : &failures_->back().error; }
    void ForgetFailures() noexcept { failures_->clear(); }

    RecordsetPtr Execute(std::string_view text) override;
    RecordsetPtr Execute(std::string_view text, const NamedValues& values) override;
    RecordsetPtr Open(std::string_view source, SourceKind kind) override;
    SqlDialect Dialect() const override { return target_->Dialect(); }
    void Dialect(SqlDialect dialect) override { target_->Dialect(dialect); }
    int BeginTrans() override;
    void CommitTrans() override;
    void RollbackTrans() override;

    /// Levels of transactions that are open.
    int Level() const noexcept { return level_; }
    /// CommitTrans and RollbackTrans fail where they would end one of that many outermost levels, which somebody else
    /// than the sender of a statement has begun.
    void KeepLevels(int levels) noexcept { kept_ = levels; }

private:
    template <class Send>
    RecordsetPtr Report(const SentStatement& statement, Send send);

    void RequireOwnLevel() const;

    ConnectionPtr target_;
    int level_ = 0;
    int kept_ = 0;
    std::function<std::int64_t()> rowsAffected_;
    /// Shared with the recordsets, which may outlive the connection.
    std::shared_ptr<FailedStatements> failures_ = std::make_shared<FailedStatements>();
};

}  // namespace kpTables::bookkeeping
