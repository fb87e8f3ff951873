#include "kpbook/TracingConnection.h"

#include "kpbook/TracingRecordset.h"

namespace kpTables::kpbook {

TracingConnection::TracingConnection(ConnectionPtr target, std::function<std::int64_t()> rowsAffected)
    : target_(std::move(target)), rowsAffected_(std::move(rowsAffected)) {}

template <class Send>
RecordsetPtr TracingConnection::Report(const SentStatement& statement, Send send) {
    if (onSend) onSend(statement);
    const auto start = std::chrono::steady_clock::now();
    const auto end = [&](std::optional<std::int64_t> rows, const Error* error) {
        if (onEnd) onEnd(statement, {std::chrono::steady_clock::now() - start, rows, error});
    };
    try {
        RecordsetPtr recordset = send();
        if (statement.op == StatementOp::Open) {
            end(std::nullopt, nullptr);
        } else {
            end(recordset ? recordset->RecordCount() : rowsAffected_(), nullptr);
        }
        return recordset;
    } catch (const DatabaseError& error) {
        lastError_->emplace(error);
        end(std::nullopt, &error);
        throw;
    } catch (const Error& error) {
        end(std::nullopt, &error);
        throw;
    }
}

RecordsetPtr TracingConnection::Execute(std::string_view text) {
    return Report({StatementOp::Execute, std::string(text), SourceKind::Text}, [&] { return target_->Execute(text); });
}

RecordsetPtr TracingConnection::Open(std::string_view source, SourceKind kind) {
    return Report({StatementOp::Open, std::string(source), kind}, [&]() -> RecordsetPtr {
        return std::make_shared<TracingRecordset>(target_->Open(source, kind), lastError_);
    });
}

}  // namespace kpTables::kpbook
