#include "sql/rewrite/BillLines.h"

#include <algorithm>
#include <functional>
#include <vector>

#include "sql/rewrite/BoundNames.h"

namespace kpTables::sql::rewrite {

namespace {

bool IsPlain(const Select& select) {
    return !select.distinct && !select.limit && !select.where && !select.grouped && !select.windowed &&
           select.from.size() == 1;
}

Select* OnlySelect(const Source& source) {
    // A query that WITH names may have other readers.
    if (!source.query || !source.common.empty() || source.query->members.size() != 1) return nullptr;
    return &source.query->members.front().select;
}

bool HasOnlyTables(const Table& table) {
    std::vector<SourcePtr> sources;
    bind::CollectSources(table, sources);
    return std::all_of(sources.begin(), sources.end(), [](const SourcePtr& source) { return source->table; });
}

bool HoldsQuery(const Term& term) {
    return term.kind == TermKind::InQuery || term.kind == TermKind::Exists || term.kind == TermKind::ScalarQuery;
}

}  // namespace

BillLines::BillLines(Select& select) : select_(select) {
    if (select.where || select.windowed || select.from.size() != 1) return;
    const TablePtr* from = &select.from.front();
    if ((*from)->source) {
        between_ = OnlySelect(*(*from)->source);
        if (!between_ || !IsPlain(*between_)) return;
        betweenSource_ = (*from)->source.get();
        from = &between_->from.front();
    }
    if (HasOnlyTables(**from)) FindJoin(*from);
}

// The innermost join first.
void BillLines::FindJoin(const TablePtr& table) {
    if (table->source) return;
    FindJoin(table->left);
    FindJoin(table->right);
    if (!join_ && IsJoinOfLines(*table)) join_ = table.get();
}

bool BillLines::IsJoinOfLines(const Table& table) {
    const auto* equality = If<Comparison>(table.on);
    if (table.method != JoinMethod::Inner || !equality || equality->op != ComparisonOperator::Equal) return false;
    if (!table.left->source || !table.right->source) return false;
    const auto* bill = If<ColumnTerm>(equality->operands[0]);
    const auto* line = If<ColumnTerm>(equality->operands[1]);
    if (!bill || !line || bill->source == line->source) return false;
    const auto isCounter = [](const ColumnTerm& column) { return column.source->columns[column.column].counter; };
    if (isCounter(*line)) std::swap(bill, line);
    if (!isCounter(*bill) || isCounter(*line) || !bind::IsWhole(line->type)) return false;
    const bool turned = table.left->source == line->source;
    lines_ = turned ? table.left->source : table.right->source;
    bills_ = turned ? table.right->source : table.left->source;
    key_ = line->column;
    return lines_ == line->source && bills_ == bill->source;
}

bool BillLines::AreReadByOthers() const {
    bool read = false;
    const std::function<void(const Table&)> visit = [&](const Table& table) {
        if (table.source) return;
        visit(*table.left);
        visit(*table.right);
        if (&table != join_) read = read || !ReadsNoLinesInside(*table.on);
    };
    visit(*Inner().from.front());
    if (between_)
        for (const Output& item : between_->items)
            read = read || (!If<ColumnTerm>(item.term) && !ReadsNoLinesInside(*item.term));
    return read;
}

bool BillLines::AreKept() const {
    const Table* table = Inner().from.front().get();
    while (table != join_) {
        if (table->source || table->method == JoinMethod::Inner) return false;
        table = (table->method == JoinMethod::Left ? table->left : table->right).get();
    }
    return true;
}

const ColumnTerm* BillLines::Meaning(const Term& term) const {
    const auto* column = If<ColumnTerm>(&term);
    if (!column || !between_) return column;
    if (column->source.get() != betweenSource_) return nullptr;
    const std::string& label = betweenSource_->columns[column->column].label;
    for (const Output& item : between_->items)
        if (item.label == label) return If<ColumnTerm>(item.term);
    return nullptr;
}

bool BillLines::MayReadLines(const Term& term) const {
    const auto* column = If<ColumnTerm>(&term);
    if (!column) return false;
    const auto* meaning = Meaning(term);
    // What the query between computes reads no lines: AreReadByOthers has checked.
    return meaning && meaning->source == lines_;
}

bool BillLines::ReadsNoLines(const Term& expression) const {
    return !AnyTerm(expression, [this](const Term& term) { return HoldsQuery(term) || MayReadLines(term); });
}

bool BillLines::ReadsNoLinesInside(const Term& expression) const {
    return !AnyTerm(expression, [this](const Term& term) {
        const auto* column = If<ColumnTerm>(&term);
        return HoldsQuery(term) || term.kind == TermKind::Aggregate || (column && column->source == lines_);
    });
}

}  // namespace kpTables::sql::rewrite
