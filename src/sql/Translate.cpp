#include "sql/Translate.h"

#include "sql/bind/StatementBinder.h"
#include "sql/bind/Walk.h"
#include "sql/print/Printer.h"

namespace kpTables::sql {

namespace {

Translation Finished(bind::BoundStatement statement, const print::Engine& engine,
                     std::span<const rewrite::Rule> rules) {
    for (const rewrite::Rule& rule : rules) {
        if (rule.readsDependentColumns && !engine.ReadsDependentColumns()) continue;
        if (rule.readsKeysOnly && engine.ReadsDependentColumns()) continue;
        if (rule.breaksTies && engine.KeepsTies()) continue;
        if (rule.leavesTextOrder && !engine.LeavesTextOrder()) continue;
        if (statement.staysAsWritten && !rule.keepsWritten) continue;
        rule.apply(statement);
    }
    Translation translation = print::Print(statement, engine);
    translation.hasOneRow = statement.query && bind::HasOneRowAtMost(*statement.query);
    return translation;
}

}  // namespace

Translation Translate(const Statement& statement, const Catalog& catalog, const print::Engine& engine,
                      const std::vector<LiteralValue>& pivotValues, std::span<const rewrite::Rule> rules) {
    return Finished(bind::BindStatement(statement, catalog, pivotValues), engine, rules);
}

std::unique_ptr<CreateTableStatement> NewTableOf(const SelectIntoStatement& statement, const Catalog& catalog) {
    return bind::NewTableOf(statement, catalog);
}

Translation TranslatePivotQuery(const TransformStatement& statement, const Catalog& catalog,
                                const print::Engine& engine, std::span<const rewrite::Rule> rules) {
    return Finished(bind::BindPivotQuery(statement, catalog), engine, rules);
}

std::optional<CellsTranslation> TranslateCells(const TransformStatement& statement, const Catalog& catalog,
                                               const print::Engine& engine, std::span<const rewrite::Rule> rules) {
    if (!engine.ReadsCells()) return std::nullopt;
    CellLayout layout;
    // What is left of the keys without those that depend on others orders the rows; the client can compare numbers.
    const auto probe = bind::BindCells(statement, catalog, layout);
    if (!probe || probe->staysAsWritten) return std::nullopt;
    auto keys = *probe;
    rewrite::FlattenGroups(keys);
    rewrite::DropDependentKeysForNow(keys);
    for (const bind::TermPtr& key : keys.query->members.front().select.groupBy)
        if (!bind::IsWhole(key->type)) return std::nullopt;
    auto cells = bind::BindCells(statement, catalog, layout);
    return CellsTranslation{Finished(std::move(*cells), engine, rules), std::move(layout)};
}

}  // namespace kpTables::sql
