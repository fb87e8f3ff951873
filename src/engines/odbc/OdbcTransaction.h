// The transaction of a connection behind ODBC.
#pragma once

#include "engines/common/Transaction.h"
#include "engines/odbc/Session.h"

namespace kpTables::engines::odbc {

class OdbcTransaction final : public engines::Transaction {
public:
    explicit OdbcTransaction(Session& session) noexcept : session_(session) {}

private:
    void Start(Use use) override;
    void Save() override { session_.Commit(); }
    void Undo() override { session_.Rollback(); }
    void StartLevel() override;
    void MergeLevel() override;
    void UndoLevel() override;
    void Abandon() noexcept override;
    bool IsOpen() const noexcept override { return session_.InTransaction(); }

    void RunForLevel(const char* text);

    Session& session_;
    int levels_ = 0;
};

}  // namespace kpTables::engines::odbc
