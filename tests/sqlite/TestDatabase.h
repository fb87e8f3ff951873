// A database of the embedded engine with the parts that a book hides.
#pragma once

#include <memory>
#include <utility>

#include "engines/common/Executor.h"
#include "engines/sqlite/SqliteDriver.h"

namespace kpTables::test {

class TestDatabase {
public:
    explicit TestDatabase(engines::sqlite::Database opened) {
        auto driver = std::make_unique<engines::sqlite::SqliteDriver>(std::move(opened));
        database_ = &driver->GetDatabase();
        executor_ = std::make_shared<engines::Executor>(std::move(driver));
    }

    const engines::ExecutorPtr& GetExecutor() const noexcept { return executor_; }
    const engines::sqlite::Database& GetDatabase() const noexcept { return *database_; }
    engines::Catalog& GetCatalog() const noexcept { return executor_->GetDriver().GetCatalog(); }
    engines::Transaction& GetTransaction() const noexcept { return executor_->GetTransaction(); }

    RecordsetPtr Execute(std::string_view text) const { return executor_->Execute(text); }
    engines::BoundQuery PrepareOpen(std::string_view source, SourceKind kind) const {
        return executor_->PrepareOpen(source, kind);
    }
    std::size_t CachedStatements() const noexcept { return executor_->CachedStatements(); }

private:
    const engines::sqlite::Database* database_;
    engines::ExecutorPtr executor_;
};

}  // namespace kpTables::test
