#include "Session.h"

#include <sqlite3.h>

#include <algorithm>
#include <utility>

#include "Binder.h"
#include "Collation.h"
#include "Failure.h"
#include "Functions.h"
#include "PivotValues.h"
#include "RowReader.h"
#include "TableSource.h"
#include "TableWriter.h"
#include "kpTables/Error.h"
#include "kpTables/MemoryRecordset.h"
#include "sql/Parser.h"
#include "sql/sqlite/LineSums.h"
#include "sql/sqlite/Names.h"
#include "sql/sqlite/Session.h"
#include "sql/sqlite/SqliteTranslator.h"

namespace kpTables::sqlite {

namespace {

// What Open asks for is kept beside what Execute asks for: the same text gives other statements.
constexpr char kOpenedText = '\1';
constexpr char kOpenedTable = '\2';

bool ChangesSchema(sql::StatementKind kind) noexcept {
    switch (kind) {
        case sql::StatementKind::CreateTable:
        case sql::StatementKind::CreateIndex:
        case sql::StatementKind::DropTable:
        case sql::StatementKind::DropIndex:
        case sql::StatementKind::AddColumn:
            return true;
        default:
            return false;
    }
}

/// Forgets that the statement has been prepared again, and tells whether it had been: then another program has changed
/// the schema, and the translation may be of the old one.
bool TakeReprepared(const PreparedStatement& statement) noexcept {
    constexpr int kForget = 1;
    return sqlite3_stmt_status(statement.Get(), SQLITE_STMTSTATUS_REPREPARE, kForget) > 0;
}

/// Both have the row id behind their fields.
bool BeginsWith(const std::vector<FieldInfo>& fields, const std::vector<FieldInfo>& beginning) {
    const auto same = [](const FieldInfo& a, const FieldInfo& b) { return a.name == b.name && a.type == b.type; };
    return fields.size() >= beginning.size() &&
           std::equal(beginning.begin(), beginning.end() - 1, fields.begin(), same);
}

std::shared_ptr<TableWriter> MakeWriter(const Database& database, const BookCatalog& catalog,
                                        const TableSource& source) {
    const TableInfo info = catalog.Describe(source.table);
    const sql::CatalogTable& table = *catalog.Find(source.table);
    const std::string rowId = catalog.RowIdColumn(source.table);
    std::vector<TableWriter::Column> columns;
    std::optional<int> rowIdColumn;
    for (const std::string& name : source.columns) {
        TableWriter::Column column{name, Variant::Null(), sql::FindColumn(table, name)->length};
        for (const TableInfo::Column& known : info.columns) {
            if (sql::SameName(known.name, name)) column.defaultValue = known.defaultValue;
        }
        if (sql::SameName(name, rowId)) rowIdColumn = static_cast<int>(columns.size());
        columns.push_back(std::move(column));
    }
    return std::make_shared<TableWriter>(database, source.table, std::move(columns), rowIdColumn, source.wholeTable);
}

}  // namespace

Session::Session(Database database) : database_(std::move(database)), catalog_(database_), transaction_(database_) {
    RegisterCollation(database_.Get());
    RegisterFunctions(database_.Get());
}

RecordsetPtr Session::Execute(std::string_view text) {
    try {
        return Run(text);
    } catch (const sql::SqlError& refusal) {
        RaiseRefusal(refusal, text);
    }
}

RecordsetPtr Session::Run(std::string_view text) {
    std::vector<sql::LiteralValue> literals;
    std::string shape = sql::Shape(text, literals);
    CachedStatementPtr statement = cache_.Find(shape, literals);
    if (!statement) {
        const sql::StatementPtr tree = sql::Parse(text);
        if (tree->kind == sql::StatementKind::Transform) {
            return RunTransform(static_cast<sql::TransformStatement&>(*tree), text, literals);
        }
        statement = Translate(*tree, std::move(shape), literals);
    }
    if (!statement->translation.columns.empty()) {
        return RunQuery({std::move(statement), std::string(text), std::move(literals)});
    }
    RunChange(*statement, text, literals);
    return nullptr;
}

RecordsetPtr Session::RunQuery(const BoundQuery& query) {
    auto rows = Rows(*query.statement, query.text, query.literals);
    if (TakeReprepared(query.statement->prepared)) {
        RefreshCatalog();
        auto fresh = Translate(*sql::Parse(query.text), {}, query.literals);
        rows = Rows(*fresh, query.text, query.literals);
    }
    return std::make_shared<MemoryRecordset>(std::move(rows), false, &kBookTexts);
}

std::unique_ptr<db::RowStore> Session::Rows(CachedStatement& statement, std::string_view text,
                                            const std::vector<sql::LiteralValue>& literals) {
    BindLiterals(statement.prepared, statement.translation.parameters, literals, text);
    return ReadRows(statement.prepared, statement.fields, text);
}

void Session::RunChange(CachedStatement& statement, std::string_view text,
                        const std::vector<sql::LiteralValue>& literals) {
    BindLiterals(statement.prepared, statement.translation.parameters, literals, text);
    transaction_.BeforeChange();
    const ResetAtEnd reset(statement.prepared);
    statement.prepared.Step(text);
    if (ChangesSchema(statement.translation.kind)) {
        RefreshCatalog();
    } else {
        recordsAffected_ = database_.Changes();
    }
}

RecordsetPtr Session::RunTransform(sql::TransformStatement& statement, std::string_view text,
                                   const std::vector<sql::LiteralValue>& literals) {
    RefreshCatalog();
    std::vector<sql::LiteralValue> values;
    if (statement.values.empty()) {
        const sql::StatementPtr again = sql::Parse(text);
        auto& ofPivot = static_cast<sql::TransformStatement&>(*again);
        sql::PassOverLines(ofPivot, catalog_);
        const CachedStatementPtr pivot = PrepareTranslation(sql::PivotQuery(ofPivot, catalog_));
        values = PivotValues(*Rows(*pivot, text, literals));
    }
    sql::AddUpLines(statement, catalog_);
    const CachedStatementPtr table = PrepareTranslation(sql::TranslateForSqlite(statement, catalog_, values));
    return std::make_shared<MemoryRecordset>(Rows(*table, text, literals), false, &kBookTexts);
}

BoundQuery Session::PrepareOpen(std::string_view source, SourceKind kind) {
    BoundQuery query{nullptr, std::string(source), {}, kind};
    try {
        const bool table = kind == SourceKind::Table;
        std::string shape = table ? kOpenedTable + query.text : kOpenedText + sql::Shape(source, query.literals);
        // A table's rows may be added before any is read; whoever opens a text reads it, and ReadEditable looks then.
        if (table) RefreshCatalog();
        query.statement = cache_.Find(shape, query.literals);
        if (!query.statement) {
            if (!table) RefreshCatalog();
            query.statement = PrepareSource(source, kind);
            cache_.Add(std::move(shape), query.literals, query.statement);
        }
        return query;
    } catch (const sql::SqlError& refusal) {
        RaiseRefusal(refusal, source);
    }
}

CachedStatementPtr Session::PrepareSource(std::string_view source, SourceKind kind) {
    std::optional<TableSource> table;
    sql::StatementPtr tree;
    if (kind == SourceKind::Table) {
        table = SourceOfTable(source, catalog_);
    } else {
        tree = sql::Parse(source);
        table = SourceOfSelect(tree, catalog_);
    }
    if (!table) return std::make_shared<CachedStatement>();
    sql::Translation translation = sql::TranslateForSqlite(*table->select, RowIdCatalog(catalog_, table->table));
    CachedStatementPtr statement = PrepareTranslation(std::move(translation), true);
    statement->writer = MakeWriter(database_, catalog_, *table);
    return statement;
}

std::unique_ptr<db::RowStore> Session::RowsWithId(const BoundQuery& query) {
    PreparedStatement& prepared = query.statement->prepared;
    BindLiterals(prepared, query.statement->translation.parameters, query.literals, query.text);
    return ReadRows(prepared, query.statement->fields, query.text);
}

std::unique_ptr<db::RowStore> Session::ReadEditable(BoundQuery& query) {
    try {
        auto rows = RowsWithId(query);
        if (!TakeReprepared(query.statement->prepared)) return rows;
        RefreshCatalog();
        BoundQuery fresh{PrepareSource(query.text, query.kind), query.text, query.literals, query.kind};
        const bool sameBegin =
            fresh.statement->writer && BeginsWith(*fresh.statement->fields, *query.statement->fields);
        if (!sameBegin) RaiseColumnsChanged(query.text);
        query = std::move(fresh);
        return RowsWithId(query);
    } catch (const sql::SqlError& refusal) {
        RaiseRefusal(refusal, query.text);
    }
}

std::size_t Session::CountEditable(BoundQuery& query, const std::vector<std::int64_t>& excluded) {
    const auto rows = ReadEditable(query);
    const int idColumn = rows->Columns() - 1;
    std::vector<std::int64_t> sorted = excluded;
    std::sort(sorted.begin(), sorted.end());
    std::size_t count = 0;
    for (std::size_t row = 0; row < rows->Rows(); ++row) {
        const std::int64_t id = rows->GetValue(row, idColumn).If<Currency>()->Scaled();
        count += !std::binary_search(sorted.begin(), sorted.end(), id);
    }
    return count;
}

CachedStatementPtr Session::Translate(sql::Statement& tree, std::string shape,
                                      const std::vector<sql::LiteralValue>& literals) {
    RefreshCatalog();
    sql::AddUpLines(tree, catalog_);
    CachedStatementPtr statement = PrepareTranslation(sql::TranslateForSqlite(tree, catalog_));
    if (!ChangesSchema(tree.kind) && !shape.empty()) cache_.Add(std::move(shape), literals, statement);
    return statement;
}

CachedStatementPtr Session::PrepareTranslation(sql::Translation translation, bool withRowId) const {
    auto statement = std::make_shared<CachedStatement>();
    statement->prepared = database_.Prepare(translation.text);
    std::vector<FieldInfo> fields;
    for (const sql::ResultColumn& column : translation.columns) fields.push_back({column.name, FieldType(column.type)});
    // As the scaled value of a Currency, the only type that holds 64 bits.
    if (withRowId) fields.back() = {"", VarType::Currency};
    statement->fields = db::ShareFields(std::move(fields));
    statement->translation = std::move(translation);
    return statement;
}

void Session::RefreshCatalog() {
    if (catalog_.Refresh()) cache_.Clear();
}

}  // namespace kpTables::sqlite
