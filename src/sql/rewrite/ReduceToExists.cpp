#include <algorithm>
#include <utility>

#include "sql/rewrite/BillLines.h"
#include "sql/rewrite/BoundNames.h"
#include "sql/rewrite/Rules.h"

namespace kpTables::sql::rewrite {

namespace {

bool IsOfBills(const BillLines& lines, const TermPtr& item) {
    const Term& shown = item->kind == TermKind::Collation ? *item->operands.front() : *item;
    const auto* column = lines.Meaning(shown);
    return column && column->source == lines.Bills();
}

void AskForBills(const BillLines& lines, bool between) {
    Select& inner = lines.Inner();
    if (between)
        std::erase_if(inner.items, [&](const Output& item) {
            const auto* column = If<ColumnTerm>(item.term);
            return !column || column->source != lines.Bills();
        });
    Select exists;
    exists.items.push_back({ColumnOf(lines.Lines(), lines.Key()), lines.Lines()->columns[lines.Key()].name});
    exists.where = lines.Condition();
    exists.from.push_back(TableOf(lines.Lines()));
    auto query = std::make_shared<Query>(QueryOf(std::move(exists), QueryUse::Existence));
    query->isCorrelated = true;
    inner.from = {TableOf(lines.Bills())};
    inner.where = std::make_shared<bind::ExistsTerm>(std::move(query));
}

}  // namespace

void ReduceToExists(BoundStatement& statement) {
    if (!statement.query || statement.query->members.size() != 1) return;
    Select& select = statement.query->members.front().select;
    if (!select.distinct || select.grouped || select.limit || !select.orderBy.empty()) return;
    const BillLines lines(select);
    if (!lines.AreJoined() || !lines.AreKept()) return;
    const bool ofBills = std::all_of(select.items.begin(), select.items.end(),
                                     [&](const Output& item) { return IsOfBills(lines, item.term); });
    if (ofBills) AskForBills(lines, &lines.Inner() != &select);
}

}  // namespace kpTables::sql::rewrite
