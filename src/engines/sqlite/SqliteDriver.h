// SQLite as the engine of a book.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "engines/common/Driver.h"
#include "engines/common/Limits.h"
#include "engines/sqlite/BookCatalog.h"
#include "engines/sqlite/Database.h"

namespace kpTables::engines::sqlite {

/// A database's transaction. SQLite ends it by itself after some disk failures.
class DatabaseTransaction final : public engines::Transaction {
public:
    explicit DatabaseTransaction(const Database& database) noexcept : database_(database) {}

private:
    void Start(Use use) override;
    void Save() override;
    void Undo() override;
    void StartLevel() override;
    void MergeLevel() override;
    void UndoLevel() override;
    void Abandon() noexcept override;
    bool IsOpen() const noexcept override { return database_.InTransaction(); }

    const Database& database_;
    // Prepared when a transaction or a level begins, so that its end needs no memory.
    PreparedStatement begin_;
    PreparedStatement commit_;
    PreparedStatement rollback_;
    PreparedStatement savepoint_;
    PreparedStatement release_;
    PreparedStatement rollbackTo_;
};

class SqliteDriver final : public engines::Driver {
public:
    explicit SqliteDriver(Database database, engines::Limits limits = {});

    const Database& GetDatabase() const noexcept { return database_; }
    const engines::Limits& GetLimits() const noexcept override { return limits_; }
    engines::Catalog& GetCatalog() noexcept override { return catalog_; }
    engines::Transaction& GetTransaction() noexcept override { return transaction_; }
    std::unique_ptr<engines::Statement> Prepare(std::string_view text) override;
    std::shared_ptr<engines::RowWriter> MakeWriter(engines::WrittenTable table) override;
    void ChangeColumn(const sql::ColumnChange& change) override;
    void BackUp(const std::string& path) override;
    std::vector<std::string> IntegrityFaults() override;

    std::int64_t LastCounter(const std::string& table, const std::string& counter) override;
    void AdvanceCounter(const std::string& table, const std::string& counter, std::int64_t last) override;

    bool IsSchemaNoted() override;
    void NoteSchema() noexcept override;

    const sql::print::Engine& Dialect() const noexcept override;

private:
    Database database_;
    engines::Limits limits_;
    BookCatalog catalog_;
    DatabaseTransaction transaction_;
    std::int64_t comparedSchema_ = 0;  ///< its version when IsSchemaNoted was asked
};

}  // namespace kpTables::engines::sqlite
