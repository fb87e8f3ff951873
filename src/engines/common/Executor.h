// Runs the statements of one connection.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "engines/common/Driver.h"
#include "engines/common/Statement.h"
#include "engines/common/StatementCache.h"
#include "kpTables/Connection.h"
#include "recordset/RowStore.h"

namespace kpTables::engines {

/// Translates texts of both dialects to a driver's statements, caches these and runs them. Recordsets keep it alive.
class Executor {
public:
    explicit Executor(std::unique_ptr<Driver> driver);
    Executor(const Executor&) = delete;
    Executor& operator=(const Executor&) = delete;

    Driver& GetDriver() const noexcept { return *driver_; }
    Transaction& GetTransaction() const noexcept { return driver_->GetTransaction(); }
    std::int64_t RecordsAffected() const noexcept { return recordsAffected_; }
    std::size_t CachedStatements() const noexcept { return cache_.Size(); }

    sql::Dialect TextDialect() const noexcept { return dialect_; }
    /// Decides about the texts from now on; a recordset that is open keeps its own.
    void TextDialect(sql::Dialect dialect) noexcept { dialect_ = dialect; }

    /// Runs one statement of either dialect; null unless it is a query. named: the values of the names in the text.
    RecordsetPtr Execute(std::string_view text, const sql::NamedLiterals& named = {});
    /// The query behind an editable recordset, with a writer in its statement; without one, its rows cannot be edited.
    BoundQuery PrepareOpen(std::string_view source, SourceKind kind);
    /// Runs a query that PrepareOpen returned; the row ids follow the fields, and then perhaps the versions. When
    /// another program has changed the schema in between, the query is prepared again: it may have more fields, but an
    /// error is raised unless they begin as before.
    std::unique_ptr<recordset::RowStore> ReadEditable(BoundQuery& query);
    /// The number of its rows whose row ids are not in excluded.
    std::size_t CountEditable(BoundQuery& query, const std::vector<std::int64_t>& excluded);

private:
    /// The names that stand for the connection's state: @@ROWCOUNT, @@TRANCOUNT, @@VERSION.
    sql::NamedLiterals WithState(sql::NamedLiterals named) const;
    void RunSession(const sql::SessionStatement& statement);
    RecordsetPtr Run(std::string_view text, const sql::NamedLiterals& named);
    RecordsetPtr RunTransform(sql::TransformStatement& statement, std::string shape, BoundQuery query,
                              const sql::NamedLiterals& named);
    /// Puts a TRANSFORM's rows together from those of a query of its cells.
    RecordsetPtr RunCells(const BoundQuery& query, const sql::NamedLiterals& named);
    /// Asks for the pivot values first, and then for a column for each of them.
    RecordsetPtr RunTransformInSteps(sql::TransformStatement& statement, std::string_view text,
                                     const std::vector<sql::LiteralValue>& literals);
    /// Makes the table and adds the query's rows, or does nothing.
    void RunSelectInto(sql::SelectIntoStatement& statement, std::string_view text,
                       const std::vector<sql::LiteralValue>& literals);
    /// Runs steps in one transaction, or in a level of the host's: all or none.
    void RunTogether(const std::function<void()>& steps);
    RecordsetPtr RunQuery(const BoundQuery& query, const sql::NamedLiterals& named);
    RecordsetPtr Answer(std::unique_ptr<recordset::RowStore> rows);
    void RunChange(CachedStatement& statement, std::string_view text, const std::vector<sql::LiteralValue>& literals);
    std::unique_ptr<recordset::RowStore> Rows(CachedStatement& statement, std::string_view text,
                                              const std::vector<sql::LiteralValue>& literals) const;
    std::unique_ptr<recordset::RowStore> Rows(const BoundQuery& query) const {
        return Rows(*query.statement, query.text, query.literals);
    }

    /// Cached unless shape is empty.
    CachedStatementPtr Translate(sql::Statement& statement, std::string shape,
                                 const std::vector<sql::LiteralValue>& literals);
    CachedStatementPtr PrepareSource(std::string_view source, SourceKind kind, sql::Dialect dialect);
    /// hidden: how many of the translation's last columns tell rows apart.
    CachedStatementPtr PrepareTranslation(sql::Translation translation, int hidden = 0) const;
    void RefreshCatalog();

    std::unique_ptr<Driver> driver_;
    Catalog& catalog_;
    StatementCache cache_;
    sql::Dialect dialect_ = sql::Dialect::Jet;
    std::int64_t recordsAffected_ = 0;
    std::int64_t lastRows_ = 0;  ///< that the last statement returned or changed
};
using ExecutorPtr = std::shared_ptr<Executor>;

}  // namespace kpTables::engines
