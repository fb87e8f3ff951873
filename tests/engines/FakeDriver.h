// An engine without a database: one table in memory, and a journal of the calls to it.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engines/common/Driver.h"
#include "engines/common/Executor.h"

namespace kpTables::test {

/// What the driver's parts share.
struct FakeDatabase {
    /// Values of the fields k, n and x.
    using Row = std::vector<Variant>;

    std::map<std::int64_t, Row> rows;  ///< by row id
    std::int64_t nextRowId = 1;
    std::int64_t version = 1;
    bool open = false;                  ///< a transaction
    bool schemaChanged = false;         ///< reported by the next statement run
    std::optional<std::string> refuse;  ///< the next write ends the transaction and raises this
    std::vector<std::string> journal;

    std::string TakeJournal();
};

/// The table T: k COUNTER, n LONG DEFAULT 5, x TEXT(5).
class FakeDriver final : public engines::Driver {
public:
    explicit FakeDriver(FakeDatabase& database);
    ~FakeDriver() override;

    engines::Catalog& GetCatalog() noexcept override;
    engines::Transaction& GetTransaction() noexcept override;
    const engines::Limits& GetLimits() const noexcept override { return limits_; }
    const TextOrder& Texts() const noexcept override;
    std::unique_ptr<engines::Statement> Prepare(std::string_view text) override;
    std::shared_ptr<engines::RowWriter> MakeWriter(engines::WrittenTable table) override;
    void BackUp(const std::string& path) override;
    std::vector<std::string> IntegrityFaults() override { return {}; }
    const sql::print::Engine& Dialect() const noexcept override;

private:
    struct Parts;

    FakeDatabase& database_;
    engines::Limits limits_;
    std::unique_ptr<Parts> parts_;
};

/// A fake transaction, which logs its steps in the journal.
class FakeTransaction final : public engines::Transaction {
public:
    explicit FakeTransaction(FakeDatabase& database) noexcept : database_(database) {}

    bool refuseSave = false;

private:
    void Start(Use use) override;
    void Save() override;
    void Undo() override;
    void StartLevel() override { database_.journal.emplace_back("start level"); }
    void MergeLevel() override { database_.journal.emplace_back("merge level"); }
    void UndoLevel() override { database_.journal.emplace_back("undo level"); }
    void Abandon() noexcept override;
    bool IsOpen() const noexcept override { return database_.open; }

    FakeDatabase& database_;
};

/// A catalog of the table T alone.
class FakeCatalog final : public engines::Catalog {
public:
    explicit FakeCatalog(FakeDatabase& database) noexcept : database_(database) {}

    TableInfo Describe(std::string_view table) const override;
    std::vector<std::string> TableNames() const override { return {"T"}; }
    std::string RowIdColumn(std::string_view /*table*/) const override { return "k"; }
    std::string RowIdName(const sql::CatalogTable& /*table*/) const override { return "id"; }

private:
    std::optional<sql::CatalogTable> ReadTable(std::string_view name) const override;
    std::int64_t ReadVersion() override { return database_.version; }

    FakeDatabase& database_;
};

}  // namespace kpTables::test
