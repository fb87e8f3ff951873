// PostgreSQL as the engine of a book.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "engines/common/Driver.h"
#include "engines/common/Limits.h"
#include "engines/postgres/Database.h"
#include "engines/postgres/ServerCatalog.h"

namespace kpTables::engines::postgres {

/// The server's transaction. It ends by itself only with the connection.
class ServerTransaction final : public engines::Transaction {
public:
    ServerTransaction(Database& database, bool readOnly) noexcept : database_(database), readOnly_(readOnly) {}

    void SendRows() override { database_.SendPending(); }

private:
    void Start(Use use) override;
    void Save() override;
    void Undo() override;
    void StartLevel() override;
    void MergeLevel() override;
    void UndoLevel() override;
    void Abandon() noexcept override;
    void AcceptLoss() noexcept override { database_.AcceptLoss(); }
    bool IsOpen() const noexcept override { return database_.IsConnected() && database_.InTransaction(); }

    /// Not to be interrupted.
    void RunWhole(std::string_view text);

    Database& database_;
    bool readOnly_;
};

class PostgresDriver final : public engines::Driver {
public:
    PostgresDriver(std::unique_ptr<Database> database, engines::Limits limits, bool readOnly);

    Database& GetDatabase() const noexcept { return *database_; }
    engines::Catalog& GetCatalog() noexcept override { return catalog_; }
    engines::Transaction& GetTransaction() noexcept override { return transaction_; }
    const engines::Limits& GetLimits() const noexcept override { return limits_; }
    std::unique_ptr<engines::Statement> Prepare(std::string_view text) override;
    std::shared_ptr<engines::RowWriter> MakeWriter(engines::WrittenTable table) override;
    void ChangeColumn(const sql::ColumnChange& change) override;
    /// Always raises: a copy of the rows is made through two books, see bookkeeping/BookCopy.h.
    void BackUp(const std::string& path) override;
    /// Nothing: the server looks after its files itself.
    std::vector<std::string> IntegrityFaults() override { return {}; }

    std::int64_t LastCounter(const std::string& table, const std::string& counter) override;
    void AdvanceCounter(const std::string& table, const std::string& counter, std::int64_t last) override;
    bool HasUser(const std::string& user) override;
    void Grant(const BookUser& user) override;
    bool Revoke(const std::string& user) override;

    bool IsSchemaNoted() override;
    void NoteSchema() noexcept override;

    const sql::print::Engine& Dialect() const noexcept override;

private:
    std::unique_ptr<Database> database_;
    engines::Limits limits_;
    ServerCatalog catalog_;
    ServerTransaction transaction_;
};

}  // namespace kpTables::engines::postgres
