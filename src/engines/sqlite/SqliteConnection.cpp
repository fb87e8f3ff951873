#include <utility>

#include "BookFile.h"
#include "BookSchema.h"
#include "Session.h"
#include "TableAppender.h"
#include "TableRecordset.h"
#include "TextOrderVersion.h"
#include "kpTables/Sqlite.h"

namespace kpTables {

namespace {

using sqlite::BoundQuery;
using sqlite::Session;
using sqlite::SessionPtr;

class Book : public SqliteConnection {
public:
    Book(std::string path, SessionPtr session) : path_(std::move(path)), session_(std::move(session)) {}

    RecordsetPtr Execute(std::string_view text) override { return session_->Execute(text); }

    RecordsetPtr Open(std::string_view source, SourceKind kind) override {
        BoundQuery query = session_->PrepareOpen(source, kind);
        if (!query.statement->writer) return session_->Execute(source);
        return std::make_shared<sqlite::TableRecordset>(session_, std::move(query));
    }

    void BeginTrans() override { session_->GetTransaction().Begin(); }
    void CommitTrans() override { session_->GetTransaction().Commit(); }
    void RollbackTrans() override { session_->GetTransaction().Rollback(); }

    std::vector<TableInfo> Tables() override {
        sqlite::BookCatalog& catalog = session_->GetCatalog();
        catalog.Refresh();
        std::vector<TableInfo> tables;
        for (const std::string& name : catalog.TableNames()) tables.push_back(catalog.Describe(name));
        return tables;
    }

    std::unique_ptr<RowAppender> AppendTo(std::string_view table, const std::vector<std::string>& columns) override {
        return std::make_unique<sqlite::TableAppender>(session_, table, columns);
    }

    std::int64_t RecordsAffected() const override { return session_->RecordsAffected(); }
    const std::string& Path() const override { return path_; }

private:
    std::string path_;
    SessionPtr session_;
};

/// Takes the indexes on the columns along.
void TakeSqlServerNames(const sqlite::Database& database) {
    const auto quoted = [](std::string_view name) { return '"' + std::string(name) + '"'; };
    for (const auto& column : schema::kSqlServerNames) {
        database.Run("ALTER TABLE " + quoted(column.table) + " RENAME COLUMN " + quoted(column.name) + " TO " +
                     quoted(column.sqlServerName));
    }
}

/// Makes every table of the schema, or none.
void MakeTables(Session& session, HeaderDialect dialect) {
    session.GetTransaction().Begin();
    sqlite::MarkAsBook(session.GetDatabase());
    sqlite::RecordTextOrderVersion(session.GetDatabase());
    for (const std::string_view statement : schema::BookSchema()) session.Execute(statement);
    if (dialect == HeaderDialect::SqlServer) TakeSqlServerNames(session.GetDatabase());
    session.GetTransaction().Commit();
}

}  // namespace

std::shared_ptr<SqliteConnection> SqliteConnection::Open(const std::string& path, const SqliteOptions& options) {
    auto session = std::make_shared<Session>(sqlite::OpenBookFile(path, options));
    sqlite::BringIndexesUpToDate(session->GetDatabase(), path);
    return std::make_shared<Book>(path, std::move(session));
}

std::shared_ptr<SqliteConnection> SqliteConnection::Create(const std::string& path, const SqliteOptions& options,
                                                           HeaderDialect dialect) {
    sqlite::NewBookFile file(path);
    auto session = std::make_shared<Session>(sqlite::OpenNewFile(path, options));
    MakeTables(*session, dialect);
    sqlite::MakeDurable(session->GetDatabase());
    file.Keep();
    return std::make_shared<Book>(path, std::move(session));
}

std::shared_ptr<SqliteConnection> SqliteConnection::CreateInMemory(HeaderDialect dialect) {
    auto session = std::make_shared<Session>(sqlite::OpenMemory());
    MakeTables(*session, dialect);
    return std::make_shared<Book>(":memory:", std::move(session));
}

}  // namespace kpTables
