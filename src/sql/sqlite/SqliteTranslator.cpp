#include "sql/sqlite/SqliteTranslator.h"

#include <utility>

#include "sql/sqlite/Crosstab.h"
#include "sql/sqlite/DataStatements.h"
#include "sql/sqlite/Definitions.h"
#include "sql/sqlite/QueryTranslator.h"
#include "sql/sqlite/Session.h"

namespace kpTables::sql {

namespace {

template <class Node>
const Node& AsStatement(const Statement& statement) {
    return static_cast<const Node&>(statement);
}

void Answer(Translation& translation, QueryText query) {
    translation.text = std::move(query.text);
    translation.columns = std::move(query.columns);
}

}  // namespace

Translation TranslateForSqlite(const Statement& statement, const Catalog& catalog,
                               const std::vector<LiteralValue>& pivotValues) {
    Translation translation;
    translation.kind = statement.kind;
    translation.fixedLiterals = statement.fixedLiterals;
    Session session(catalog, translation);
    std::string& text = translation.text;
    switch (statement.kind) {
        case StatementKind::Select: {
            const auto& select = AsStatement<SelectStatement>(statement);
            Answer(translation, TranslateQuery(session, *select.query, nullptr, QueryUse::Result));
            break;
        }
        case StatementKind::Transform:
            Answer(translation, TranslateCrosstab(session, AsStatement<TransformStatement>(statement), pivotValues));
            break;
        case StatementKind::Insert:
            text = TranslateInsert(session, AsStatement<InsertStatement>(statement));
            break;
        case StatementKind::Update:
            text = TranslateUpdate(session, AsStatement<UpdateStatement>(statement));
            break;
        case StatementKind::Delete:
            text = TranslateDelete(session, AsStatement<DeleteStatement>(statement));
            break;
        case StatementKind::CreateTable:
            text = TranslateCreateTable(session, AsStatement<CreateTableStatement>(statement));
            break;
        case StatementKind::CreateIndex:
            text = TranslateCreateIndex(session, AsStatement<CreateIndexStatement>(statement));
            break;
        case StatementKind::DropTable:
            text = TranslateDropTable(session, AsStatement<DropTableStatement>(statement));
            break;
        case StatementKind::DropIndex:
            text = TranslateDropIndex(session, AsStatement<DropIndexStatement>(statement));
            break;
        case StatementKind::AddColumn:
            text = TranslateAddColumn(session, AsStatement<AddColumnStatement>(statement));
            break;
    }
    return translation;
}

Translation PivotQuery(const TransformStatement& statement, const Catalog& catalog) {
    Translation translation;
    translation.fixedLiterals = statement.fixedLiterals;
    Session session(catalog, translation);
    Answer(translation, TranslatePivotValues(session, statement));
    return translation;
}

}  // namespace kpTables::sql
