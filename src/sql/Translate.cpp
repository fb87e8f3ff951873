#include "sql/Translate.h"

#include "sql/bind/StatementBinder.h"
#include "sql/print/Printer.h"

namespace kpTables::sql {

namespace {

Translation Finished(bind::BoundStatement statement, const print::Engine& engine,
                     std::span<const rewrite::Rule> rules) {
    for (const rewrite::Rule& rule : rules) {
        if (rule.readsDependentColumns && !engine.ReadsDependentColumns()) continue;
        if (rule.readsKeysOnly && engine.ReadsDependentColumns()) continue;
        if (rule.breaksTies && engine.KeepsTies()) continue;
        if (statement.staysAsWritten && !rule.keepsWritten) continue;
        rule.apply(statement);
    }
    return print::Print(statement, engine);
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

}  // namespace kpTables::sql
