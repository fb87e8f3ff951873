#include "engines/common/EngineBook.h"

#include <algorithm>
#include <utility>

#include "BookSchema.h"
#include "engines/common/EditableRecordset.h"
#include "engines/common/NamedLiterals.h"
#include "engines/common/SchemaParts.h"
#include "engines/common/TableAppender.h"
#include "engines/common/TranslatedRows.h"

namespace kpTables::engines {

namespace {

class EngineBook : public Book {
public:
    EngineBook(std::string url, ExecutorPtr executor) : url_(std::move(url)), executor_(std::move(executor)) {}

    RecordsetPtr Execute(std::string_view text) override { return executor_->Execute(text); }
    RecordsetPtr Execute(std::string_view text, const NamedValues& values) override {
        return executor_->Execute(text, NamedLiteralsOf(values));
    }

    RecordsetPtr Open(std::string_view source, SourceKind kind) override {
        BoundQuery query = executor_->PrepareOpen(source, kind);
        if (!query.statement->writer) return executor_->Execute(source);
        return std::make_shared<EditableRecordset>(std::make_unique<TranslatedRows>(executor_, std::move(query)));
    }

    SqlDialect Dialect() const override {
        return executor_->TextDialect() == sql::Dialect::Jet ? SqlDialect::Jet : SqlDialect::SqlServer;
    }
    void Dialect(SqlDialect dialect) override {
        executor_->TextDialect(dialect == SqlDialect::Jet ? sql::Dialect::Jet : sql::Dialect::SqlServer);
    }

    int BeginTrans() override { return executor_->GetTransaction().Begin(); }
    void CommitTrans() override { executor_->GetTransaction().Commit(); }
    void RollbackTrans() override {
        executor_->GetTransaction().Rollback();
        executor_->GetDriver().GetCatalog().Forget();
    }

    const std::string& Url() const override { return url_; }

    std::vector<TableInfo> Tables() override {
        Catalog& catalog = executor_->GetDriver().GetCatalog();
        catalog.Refresh();
        std::vector<TableInfo> tables;
        for (const std::string& name : InSchemaOrder(catalog.TableNames())) tables.push_back(catalog.Describe(name));
        return tables;
    }

    std::vector<std::string> MissingParts() override {
        Driver& driver = executor_->GetDriver();
        if (driver.IsSchemaNoted()) return {};
        driver.GetCatalog().Refresh();
        auto missing = engines::MissingParts(driver.GetCatalog());
        if (missing.empty()) driver.NoteSchema();
        return missing;
    }

    std::unique_ptr<RowAppender> AppendTo(std::string_view table, const std::vector<std::string>& columns) override {
        return std::make_unique<TableAppender>(executor_, table, columns);
    }

    std::int64_t LastCounter(std::string_view table) override {
        const auto [name, counter] = CounterOf(table);
        return counter.empty() ? 0 : executor_->GetDriver().LastCounter(name, counter);
    }
    void AdvanceCounter(std::string_view table, std::int64_t last) override {
        const auto [name, counter] = CounterOf(table);
        if (!counter.empty()) executor_->GetDriver().AdvanceCounter(name, counter, last);
    }

    bool HasUser(const std::string& user) override { return executor_->GetDriver().HasUser(user); }
    void Grant(const BookUser& user) override { executor_->GetDriver().Grant(user); }
    bool Revoke(const std::string& user) override { return executor_->GetDriver().Revoke(user); }

    void FlushRows() override {
        executor_->GetTransaction().RaiseLoss();
        executor_->GetTransaction().CloseRows();
    }

    std::int64_t RecordsAffected() const override { return executor_->RecordsAffected(); }

    void BackUp(const std::string& path) override {
        executor_->GetTransaction().RequireNone();
        executor_->GetDriver().BackUp(path);
    }

    std::vector<std::string> IntegrityFaults() override { return executor_->GetDriver().IntegrityFaults(); }

private:
    struct Counter {
        std::string table;
        std::string column;  ///< "" when the table has none
    };
    /// Of a table, with the names as they are stored.
    Counter CounterOf(std::string_view table) const {
        Catalog& catalog = executor_->GetDriver().GetCatalog();
        catalog.Refresh();
        const sql::CatalogTable* found = catalog.Find(table);
        if (!found) return {};
        const auto counter = std::ranges::find(found->columns, true, &sql::CatalogColumn::counter);
        return {found->name, counter == found->columns.end() ? std::string() : counter->name};
    }

    std::string url_;
    ExecutorPtr executor_;
};

}  // namespace

BookPtr MakeBook(std::string url, ExecutorPtr executor) {
    return std::make_shared<EngineBook>(std::move(url), std::move(executor));
}

void CreateBookTables(Executor& executor) {
    for (const std::string_view statement : schema::BookSchema()) executor.Execute(statement);
}

}  // namespace kpTables::engines
