#include "engines/odbc/OdbcBook.h"

#include <memory>
#include <utility>

#include "engines/common/BookTexts.h"
#include "engines/common/EditableRecordset.h"
#include "engines/odbc/ConnectionText.h"
#include "engines/odbc/EditableSource.h"
#include "engines/odbc/NamedMarkers.h"
#include "engines/odbc/OpenConnection.h"
#include "engines/odbc/RowReader.h"
#include "engines/odbc/ServerRows.h"
#include "engines/odbc/StatementWord.h"
#include "engines/odbc/TableAppender.h"
#include "kpTables/Error.h"
#include "kpTables/MemoryRecordset.h"
#include "kpTables/text/Message.h"

namespace kpTables::engines::odbc {

namespace {

[[noreturn]] void RefuseOfBook(DatabaseErrorNumber number, const std::string& message, std::string_view text = {}) {
    throw DatabaseError(static_cast<std::int32_t>(number), message, std::string(text));
}

[[noreturn]] void RefuseUsers() {
    RefuseOfBook(DatabaseErrorNumber::NotPermitted,
                 Message("A server behind ODBC keeps its users itself: rights are given by its own means"));
}

class OdbcBook : public Book {
public:
    OdbcBook(std::string url, OpenConnectionPtr connection)
        : url_(std::move(url)), connection_(std::move(connection)) {}

    RecordsetPtr Execute(std::string_view text) override { return Run(text, {}, text); }
    RecordsetPtr Execute(std::string_view text, const NamedValues& values) override {
        Parameters parameters;
        const std::string marked = WithMarkers(text, values, parameters);
        return Run(marked, parameters, text);
    }
    RecordsetPtr Open(std::string_view source, SourceKind kind) override;

    SqlDialect Dialect() const override { return dialect_; }
    void Dialect(SqlDialect dialect) override { dialect_ = dialect; }

    int BeginTrans() override { return connection_->transaction.Begin(); }
    void CommitTrans() override { connection_->transaction.Commit(); }
    void RollbackTrans() override {
        connection_->transaction.Rollback();
        connection_->tables.Forget();
    }

    const std::string& Url() const override { return url_; }
    std::vector<TableInfo> Tables() override { return connection_->tables.All(); }
    std::vector<std::string> MissingParts() override { return connection_->tables.Missing(); }
    std::unique_ptr<RowAppender> AppendTo(std::string_view table, const std::vector<std::string>& columns) override {
        return std::make_unique<TableAppender>(connection_, table, columns);
    }
    /// The largest that a row has: drivers do not tell of rows that are gone.
    std::int64_t LastCounter(std::string_view table) override;
    void AdvanceCounter(std::string_view /*table*/, std::int64_t /*last*/) override {
        RefuseOfBook(DatabaseErrorNumber::Failure, Message("A server behind ODBC keeps its counters itself"));
    }
    bool HasUser(const std::string& /*user*/) override { RefuseUsers(); }
    void Grant(const BookUser& /*user*/) override { RefuseUsers(); }
    bool Revoke(const std::string& /*user*/) override { RefuseUsers(); }
    std::int64_t RecordsAffected() const override { return affected_; }
    void FlushRows() override {
        connection_->transaction.RaiseLoss();
        connection_->transaction.CommitRows();
    }
    void BackUp(const std::string& /*path*/) override {
        RefuseOfBook(DatabaseErrorNumber::Failure,
                     Message("A book behind ODBC is backed up by its server's own means, or as CSV: kpbook export BOOK "
                             "DIR"));
    }
    std::vector<std::string> IntegrityFaults() override { return {}; }

private:
    RecordsetPtr Run(std::string_view text, const Parameters& parameters, std::string_view shown);
    /// Nothing when the rows of the text, which is that of a table, can only be read.
    std::optional<EditableQuery> Editable(std::string text, const ServerTable& table, bool wholeTable);

    std::string url_;
    OpenConnectionPtr connection_;
    SqlDialect dialect_ = SqlDialect::Jet;
    std::int64_t affected_ = 0;
};

std::int64_t OdbcBook::LastCounter(std::string_view table) {
    const ServerTable* const found = connection_->tables.Find(table);
    const ServerColumn* const counter = found ? found->Counter() : nullptr;
    if (!counter) return 0;
    const std::string text = "SELECT MAX(" + connection_->session.Quoted(counter->name) + ") FROM " +
                             TableWriter(connection_->session, *found, {}).Name();
    Query query(connection_->session);
    query.ExecuteDirect(text, {}, text);
    return query.Fetch() ? query.Whole(0).value_or(0) : 0;
}

RecordsetPtr OdbcBook::Run(std::string_view text, const Parameters& parameters, std::string_view shown) {
    OpenConnection& connection = *connection_;
    connection.transaction.RaiseLoss();
    const StatementUse use = UseOf(text);
    if (use != StatementUse::Read) {
        if (connection.session.IsReadOnly())
            RefuseOfBook(DatabaseErrorNumber::NotPermitted,
                         Message("The book is open for reading only and cannot be changed"), shown);
        connection.transaction.BeforeChange();
        if (use == StatementUse::Other) connection.tables.Forget();
    }
    Query query(connection.session);
    query.ExecuteDirect(text, parameters, shown);
    // A text of a server's may run several statements; the first that has rows answers.
    while (query.Columns() == 0) {
        if (const std::int64_t rows = query.AffectedRows(); rows >= 0 && use == StatementUse::Change) affected_ = rows;
        if (!query.NextResult()) return nullptr;
    }
    auto rows = ReadRows(query, connection.session, FieldsOf(query), connection.limits, shown);
    return std::make_shared<MemoryRecordset>(std::move(rows), false, &engines::kBookTexts);
}

std::optional<EditableQuery> OdbcBook::Editable(std::string text, const ServerTable& table, bool wholeTable) {
    EditableQuery editable{std::move(text), std::make_unique<Query>(connection_->session)};
    editable.wholeTable = wholeTable;
    editable.query->Prepare(editable.text);
    if (editable.query->Columns() == 0) {
        editable.query->Execute({});
        editable.hasRun = true;
    }
    std::vector<ColumnDescription> columns;
    const int count = editable.query->Columns();
    for (int i = 0; i < count; ++i) {
        columns.push_back(editable.query->Describe(i));
        if (!table.Find(columns.back().name)) return std::nullopt;
    }
    editable.writer = std::make_unique<TableWriter>(connection_->session, table, columns);
    return editable;
}

RecordsetPtr OdbcBook::Open(std::string_view source, SourceKind kind) {
    connection_->transaction.RaiseLoss();
    EditableSource named{std::string(source), true};
    std::string text(source);
    if (kind == SourceKind::Text) {
        const auto found = SourceOfText(source, dialect_);
        if (!found) return Execute(source);
        named = *found;
    }
    const ServerTable* const table = connection_->tables.Find(named.table);
    if (kind == SourceKind::Table) {
        if (!table) RefuseOfBook(DatabaseErrorNumber::UnknownTable, Message("There is no table '{1}'", source), source);
        text = "SELECT * FROM " + TableWriter(connection_->session, *table, {}).Name();
    }
    auto editable = table ? Editable(text, *table, named.wholeTable) : std::nullopt;
    if (!editable) return Execute(text);
    return std::make_shared<engines::EditableRecordset>(
        std::make_unique<ServerRows>(connection_, std::move(*editable)));
}

}  // namespace

BookPtr OpenBehindDriver(const std::string& address, const std::string& url, const BookOptions& options) {
    return std::make_shared<OdbcBook>(
        url, std::make_shared<OpenConnection>(
                 ConnectionText(address),
                 SessionOptions{options.readOnly, options.busyTimeout, options.interrupted, options.password},
                 engines::LimitsOf(options)));
}

BookPtr CreateBehindDriver(const std::string& address, const std::string& /*url*/, const NewBookOptions& /*options*/) {
    ConnectionText(address);
    RefuseOfBook(DatabaseErrorNumber::Failure,
                 Message("A book behind ODBC is not made by this program: its tables are made by the server's own "
                         "means, and then it is opened"));
}

BookUpgrade UpgradeBehindDriver(const std::string& address, const std::string& /*url*/,
                                const UpgradeOptions& /*options*/) {
    ConnectionText(address);
    RefuseOfBook(DatabaseErrorNumber::Failure,
                 Message("A book behind ODBC is not upgraded by this program: what its tables lack is added by the "
                         "server's own means"));
}

}  // namespace kpTables::engines::odbc
