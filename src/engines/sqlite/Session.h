// What a connection and the recordsets that it opened share.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "BookCatalog.h"
#include "Database.h"
#include "StatementCache.h"
#include "Transaction.h"
#include "kpTables/Connection.h"
#include "recordset/RowStore.h"

namespace kpTables::sqlite {

/// A statement with the text and the literals that it was asked for with.
struct BoundQuery {
    CachedStatementPtr statement;
    std::string text;
    std::vector<sql::LiteralValue> literals;
    SourceKind kind = SourceKind::Text;
};

/// An open database with its catalog, its prepared statements and its transaction. Recordsets keep it alive.
class Session {
public:
    explicit Session(Database database);
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    const Database& GetDatabase() const noexcept { return database_; }
    Transaction& GetTransaction() noexcept { return transaction_; }
    BookCatalog& GetCatalog() noexcept { return catalog_; }
    std::int64_t RecordsAffected() const noexcept { return recordsAffected_; }
    std::size_t CachedStatements() const noexcept { return cache_.Size(); }

    /// Runs one statement of either dialect; null unless it is a query.
    RecordsetPtr Execute(std::string_view text);
    /// The query behind an editable recordset, with a writer in its statement; without one, its rows cannot be edited.
    BoundQuery PrepareOpen(std::string_view source, SourceKind kind);
    /// Runs a query that PrepareOpen has answered; the row ids stand behind the fields. When another program has
    /// changed the schema in between, the query gets a statement of its new form: more fields, perhaps, but error
    /// unless they begin as before.
    std::unique_ptr<recordset::RowStore> ReadEditable(BoundQuery& query);
    /// How many rows it answers whose row ids are not among excluded.
    std::size_t CountEditable(BoundQuery& query, const std::vector<std::int64_t>& excluded);

private:
    RecordsetPtr Run(std::string_view text);
    RecordsetPtr RunTransform(sql::TransformStatement& statement, std::string_view text,
                              const std::vector<sql::LiteralValue>& literals);
    RecordsetPtr RunQuery(const BoundQuery& query);
    void RunChange(CachedStatement& statement, std::string_view text, const std::vector<sql::LiteralValue>& literals);
    static std::unique_ptr<recordset::RowStore> RowsWithId(const BoundQuery& query);
    std::unique_ptr<recordset::RowStore> Rows(CachedStatement& statement, std::string_view text,
                                              const std::vector<sql::LiteralValue>& literals);

    CachedStatementPtr Translate(sql::Statement& statement, std::string shape,
                                 const std::vector<sql::LiteralValue>& literals);
    CachedStatementPtr PrepareSource(std::string_view source, SourceKind kind);
    /// The last column of a translation with a row id is that.
    CachedStatementPtr PrepareTranslation(sql::Translation translation, bool withRowId = false) const;
    void RefreshCatalog();

    Database database_;
    BookCatalog catalog_;
    Transaction transaction_;
    StatementCache cache_;
    std::int64_t recordsAffected_ = 0;
};
using SessionPtr = std::shared_ptr<Session>;

}  // namespace kpTables::sqlite
