#include "engines/common/Executor.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "engines/common/ClientOrder.h"
#include "engines/common/CrossTable.h"
#include "engines/common/Failure.h"
#include "engines/common/PivotValues.h"
#include "engines/common/TableSource.h"
#include "kpTables/MemoryRecordset.h"
#include "sql/Shape.h"
#include "sql/Translate.h"
#include "sql/parse/Parser.h"

namespace kpTables::engines {

namespace {

// The cache keeps Open's statements apart from Execute's: the same text gives different ones.
constexpr char kOpenedText = '\1';
constexpr char kOpenedTable = '\2';

bool ChangesSchema(sql::StatementKind kind) noexcept {
    switch (kind) {
        case sql::StatementKind::CreateTable:
        case sql::StatementKind::CreateIndex:
        case sql::StatementKind::DropTable:
        case sql::StatementKind::DropIndex:
        case sql::StatementKind::AddColumn:
        case sql::StatementKind::AlterColumn:
        case sql::StatementKind::DropColumn:
            return true;
        default:
            return false;
    }
}

/// In both, hidden columns follow the fields.
bool BeginsWith(const CachedStatement& statement, const CachedStatement& beginning) {
    const auto same = [](const FieldInfo& a, const FieldInfo& b) { return a.name == b.name && a.type == b.type; };
    const std::vector<FieldInfo>& fields = *statement.fields;
    const std::vector<FieldInfo>& first = *beginning.fields;
    return fields.size() >= first.size() &&
           std::equal(first.begin(), first.end() - beginning.hidden, fields.begin(), same);
}

/// Whether a name such as @@ROWCOUNT stands in the text; @@IDENTITY is none of them.
bool NamesState(std::string_view text) {
    for (std::size_t at = text.find('@'); at != text.npos; at = text.find('@', at + 1)) {
        const bool names = text.substr(at).starts_with("@@") && at + 2 < text.size();
        if (names && std::string_view("rRtTvV").find(text[at + 2]) != std::string_view::npos) return true;
    }
    return false;
}

}  // namespace

Executor::Executor(std::unique_ptr<Driver> driver) : driver_(std::move(driver)), catalog_(driver_->GetCatalog()) {}

RecordsetPtr Executor::Execute(std::string_view text, const sql::NamedLiterals& named) {
    GetTransaction().RaiseLoss();
    try {
        if (!NamesState(text)) return Run(text, named);
        return Run(text, WithState(named));
    } catch (const sql::SqlError& refusal) {
        RaiseRefusal(refusal, text);
    }
}

sql::NamedLiterals Executor::WithState(sql::NamedLiterals named) const {
    using sql::LiteralKind;
    named.push_back({"@ROWCOUNT", {LiteralKind::Integer, std::to_string(lastRows_)}});
    named.push_back({"@TRANCOUNT", {LiteralKind::Integer, std::to_string(GetTransaction().Level())}});
    named.push_back({"@VERSION", {LiteralKind::Text, "kpTables " KPTABLES_VERSION}});
    return named;
}

void Executor::RunSession(const sql::SessionStatement& statement) {
    switch (statement.action) {
        case sql::SessionStatement::Action::Nothing:
            return;
        case sql::SessionStatement::Action::Begin:
            GetTransaction().Begin();
            return;
        case sql::SessionStatement::Action::Commit:
            return GetTransaction().Commit();
        case sql::SessionStatement::Action::Rollback:
            GetTransaction().Rollback();
            catalog_.Forget();
    }
}

RecordsetPtr Executor::Run(std::string_view text, const sql::NamedLiterals& named) {
    std::vector<sql::LiteralValue> literals;
    std::string shape = sql::Shape(text, literals, named, dialect_);
    CachedStatementPtr statement = cache_.Find(shape, literals);
    if (!statement) {
        const sql::StatementPtr tree = sql::parse::Parse(text, named, dialect_);
        if (tree->kind == sql::StatementKind::Transform) {
            BoundQuery query{nullptr, std::string(text), std::move(literals), SourceKind::Text, dialect_};
            return RunTransform(static_cast<sql::TransformStatement&>(*tree), std::move(shape), std::move(query),
                                named);
        }
        if (tree->kind == sql::StatementKind::SelectInto) {
            RunSelectInto(static_cast<sql::SelectIntoStatement&>(*tree), text, literals);
            return nullptr;
        }
        if (tree->kind == sql::StatementKind::Session) {
            RunSession(static_cast<const sql::SessionStatement&>(*tree));
            return nullptr;
        }
        statement = Translate(*tree, std::move(shape), literals);
    }
    if (!statement->translation.columns.empty()) {
        return RunQuery({std::move(statement), std::string(text), std::move(literals), SourceKind::Text, dialect_},
                        named);
    }
    RunChange(*statement, text, literals);
    return nullptr;
}

RecordsetPtr Executor::RunQuery(const BoundQuery& query, const sql::NamedLiterals& named) {
    if (query.statement->cells) return RunCells(query, named);
    auto rows = Rows(query);
    if (query.statement->prepared->TakeSchemaChange()) {
        RefreshCatalog();
        const auto fresh = Translate(*sql::parse::Parse(query.text, named, query.dialect), {}, query.literals);
        rows = Rows(*fresh, query.text, query.literals);
    }
    return Answer(std::move(rows));
}

RecordsetPtr Executor::Answer(std::unique_ptr<recordset::RowStore> rows) {
    lastRows_ = static_cast<std::int64_t>(rows->Rows());
    return std::make_shared<MemoryRecordset>(std::move(rows), false, &driver_->Texts());
}

std::unique_ptr<recordset::RowStore> Executor::Rows(CachedStatement& statement, std::string_view text,
                                                    const std::vector<sql::LiteralValue>& literals) const {
    statement.prepared->Bind(statement.translation.parameters, literals, text);
    auto rows = statement.prepared->ReadRows(statement.read, text);
    PutInOrder(*rows, statement.translation.order, driver_->Texts(), driver_->GetLimits(), text);
    return rows;
}

void Executor::RunChange(CachedStatement& statement, std::string_view text,
                         const std::vector<sql::LiteralValue>& literals) {
    const sql::Translation& translation = statement.translation;
    std::int64_t changed = 0;
    const auto run = [&] {
        if (translation.columnChange) return driver_->ChangeColumn(*translation.columnChange);
        changed = statement.prepared->Run(text);
        for (const std::string& further : translation.further) driver_->Prepare(further)->Run(text);
    };
    if (statement.prepared) statement.prepared->Bind(translation.parameters, literals, text);
    if (translation.columnChange || !translation.further.empty()) {
        RunTogether(run);
    } else {
        GetTransaction().BeforeChange();
        run();
    }
    if (ChangesSchema(statement.translation.kind)) {
        RefreshCatalog();
        lastRows_ = 0;
    } else {
        recordsAffected_ = lastRows_ = changed;
    }
}

void Executor::RunTogether(const std::function<void()>& steps) {
    GetTransaction().BeforeChange();
    GetTransaction().Begin();
    try {
        steps();
    } catch (...) {
        GetTransaction().Rollback();
        catalog_.Forget();
        throw;
    }
    GetTransaction().Commit();
}

void Executor::RunSelectInto(sql::SelectIntoStatement& statement, std::string_view text,
                             const std::vector<sql::LiteralValue>& literals) {
    RefreshCatalog();
    const auto table = sql::NewTableOf(statement, catalog_);
    sql::InsertStatement insert;
    insert.table = statement.table;
    insert.offset = statement.offset;
    insert.dialect = statement.dialect;
    insert.with = std::move(statement.with);
    insert.query = std::move(statement.query);
    insert.fixedLiterals = statement.fixedLiterals;
    RunTogether([&] {
        PrepareTranslation(sql::Translate(*table, catalog_, driver_->Dialect()))->prepared->Run(text);
        RefreshCatalog();
        const CachedStatementPtr rows = PrepareTranslation(sql::Translate(insert, catalog_, driver_->Dialect()));
        rows->prepared->Bind(rows->translation.parameters, literals, text);
        recordsAffected_ = lastRows_ = rows->prepared->Run(text);
    });
}

RecordsetPtr Executor::RunTransform(sql::TransformStatement& statement, std::string shape, BoundQuery query,
                                    const sql::NamedLiterals& named) {
    RefreshCatalog();
    auto cells = sql::TranslateCells(statement, catalog_, driver_->Dialect());
    if (!cells) return RunTransformInSteps(statement, query.text, query.literals);
    query.statement = PrepareTranslation(std::move(cells->translation));
    query.statement->cells = std::move(cells->layout);
    cache_.Add(std::move(shape), query.literals, query.statement);
    return RunCells(query, named);
}

RecordsetPtr Executor::RunCells(const BoundQuery& query, const sql::NamedLiterals& named) {
    std::unique_ptr<recordset::RowStore> cells;
    try {
        cells = Rows(query);
    } catch (const DatabaseError& error) {
        // The limits are those of the rows, which are fewer.
        if (error.Number() != static_cast<std::int32_t>(DatabaseErrorNumber::ResultTooLarge)) throw;
    }
    if (query.statement->prepared->TakeSchemaChange()) {
        RefreshCatalog();
        return Run(query.text, named);
    }
    if (auto table = cells ? CrossTableOf(*cells, *query.statement->cells, query.text) : nullptr)
        return Answer(std::move(table));
    RefreshCatalog();
    const sql::StatementPtr tree = sql::parse::Parse(query.text, named, query.dialect);
    return RunTransformInSteps(static_cast<sql::TransformStatement&>(*tree), query.text, query.literals);
}

RecordsetPtr Executor::RunTransformInSteps(sql::TransformStatement& statement, std::string_view text,
                                           const std::vector<sql::LiteralValue>& literals) {
    std::vector<sql::LiteralValue> values;
    if (statement.values.empty()) {
        const CachedStatementPtr pivot =
            PrepareTranslation(sql::TranslatePivotQuery(statement, catalog_, driver_->Dialect()));
        values = PivotValues(*Rows(*pivot, text, literals));
    }
    const CachedStatementPtr table =
        PrepareTranslation(sql::Translate(statement, catalog_, driver_->Dialect(), values));
    return Answer(Rows(*table, text, literals));
}

BoundQuery Executor::PrepareOpen(std::string_view source, SourceKind kind) {
    GetTransaction().RaiseLoss();
    BoundQuery query{nullptr, std::string(source), {}, kind, dialect_};
    try {
        const bool table = kind == SourceKind::Table;
        std::string shape =
            table ? kOpenedTable + query.text : kOpenedText + sql::Shape(source, query.literals, {}, dialect_);
        // A table's rows may be added before any is read; a text that is opened is read, and ReadEditable checks then.
        if (table) RefreshCatalog();
        query.statement = cache_.Find(shape, query.literals);
        if (!query.statement) {
            if (!table) RefreshCatalog();
            query.statement = PrepareSource(source, kind, dialect_);
            cache_.Add(std::move(shape), query.literals, query.statement);
        }
        return query;
    } catch (const sql::SqlError& refusal) {
        RaiseRefusal(refusal, source);
    }
}

CachedStatementPtr Executor::PrepareSource(std::string_view source, SourceKind kind, sql::Dialect dialect) {
    std::optional<TableSource> table;
    sql::StatementPtr tree;
    if (kind == SourceKind::Table) {
        table = SourceOfTable(source, catalog_);
    } else {
        tree = sql::parse::Parse(source, {}, dialect);
        table = SourceOfSelect(tree, catalog_);
    }
    if (!table) return std::make_shared<CachedStatement>();
    CachedStatementPtr statement =
        PrepareTranslation(sql::Translate(*table->select, RowIdCatalog(catalog_, table->table), driver_->Dialect()),
                           catalog_.RowVersionName().empty() ? 1 : 2);
    statement->writer = driver_->MakeWriter(WrittenTableOf(*table, catalog_));
    return statement;
}

std::unique_ptr<recordset::RowStore> Executor::ReadEditable(BoundQuery& query) {
    try {
        auto rows = Rows(query);
        if (!query.statement->prepared->TakeSchemaChange()) return rows;
        RefreshCatalog();
        BoundQuery fresh{PrepareSource(query.text, query.kind, query.dialect), query.text, query.literals, query.kind,
                         query.dialect};
        const bool sameBegin = fresh.statement->writer && BeginsWith(*fresh.statement, *query.statement);
        if (!sameBegin) RaiseColumnsChanged(query.text);
        query = std::move(fresh);
        return Rows(query);
    } catch (const sql::SqlError& refusal) {
        RaiseRefusal(refusal, query.text);
    }
}

std::size_t Executor::CountEditable(BoundQuery& query, const std::vector<std::int64_t>& excluded) {
    const auto rows = ReadEditable(query);
    const int idColumn = rows->Columns() - query.statement->hidden;
    std::vector<std::int64_t> sorted = excluded;
    std::sort(sorted.begin(), sorted.end());
    std::size_t count = 0;
    for (std::size_t row = 0; row < rows->Rows(); ++row) {
        const std::int64_t id = rows->GetValue(row, idColumn).If<Currency>()->Scaled();
        count += !std::binary_search(sorted.begin(), sorted.end(), id);
    }
    return count;
}

CachedStatementPtr Executor::Translate(sql::Statement& tree, std::string shape,
                                       const std::vector<sql::LiteralValue>& literals) {
    RefreshCatalog();
    CachedStatementPtr statement = PrepareTranslation(sql::Translate(tree, catalog_, driver_->Dialect()));
    if (!ChangesSchema(tree.kind) && !shape.empty()) cache_.Add(std::move(shape), literals, statement);
    return statement;
}

CachedStatementPtr Executor::PrepareTranslation(sql::Translation translation, int hidden) const {
    auto statement = std::make_shared<CachedStatement>();
    if (!translation.columnChange) statement->prepared = driver_->Prepare(translation.text);
    if (translation.hasOneRow) statement->prepared->ExpectOneRow();
    std::vector<FieldInfo> fields;
    for (const sql::ResultColumn& column : translation.columns)
        fields.push_back({column.name, FieldType(column.type), column.qualifier});
    // As the scaled value of a Currency, the only type that holds 64 bits.
    std::fill(fields.end() - hidden, fields.end(), FieldInfo{"", VarType::Currency});
    statement->hidden = hidden;
    statement->fields = statement->read = recordset::ShareFields(fields);
    if (!translation.order.hidden.empty()) {
        for (const sql::Type type : translation.order.hidden) fields.push_back({"", FieldType(type)});
        statement->read = recordset::ShareFields(std::move(fields));
    }
    statement->translation = std::move(translation);
    return statement;
}

void Executor::RefreshCatalog() {
    if (catalog_.Refresh()) cache_.Clear();
}

}  // namespace kpTables::engines
