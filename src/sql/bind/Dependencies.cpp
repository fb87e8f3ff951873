#include "sql/bind/Dependencies.h"

namespace kpTables::sql::bind {

Dependencies::Dependencies(const Select& select) {
    for (const TablePtr& table : select.from) sources_.merge(AddJoins(*table));
}

Dependencies::Sources Dependencies::AddJoins(const Table& table) {
    if (table.source) {
        if (table.source->query) AddQuery(*table.source);
        return {table.source.get()};
    }
    const Sources left = AddJoins(*table.left);
    const Sources right = AddJoins(*table.right);
    Sources joined = left;
    joined.insert(right.begin(), right.end());
    switch (table.method) {
        case JoinMethod::Inner:
        case JoinMethod::Lookup:
            AddEqualities(*table.on, joined);
            break;
        case JoinMethod::Left:
            AddEquality(*table.on, left, right);
            break;
        case JoinMethod::Right:
            AddEquality(*table.on, right, left);
            break;
        case JoinMethod::Full:
            break;
    }
    return joined;
}

// Dependencies inside a query hold outside it.
void Dependencies::AddQuery(const Source& source) {
    if (source.query->members.size() != 1) return;
    const auto& select = source.query->members.front().select;
    const Dependencies inside(select);
    for (std::size_t one = 0; one < select.items.size(); ++one) {
        const auto* column = inside.OwnColumn(*select.items[one].term);
        if (!column) continue;
        Dependencies fixed = inside;
        fixed.Fix(IdOf(*column));
        for (std::size_t other = 0; other < select.items.size(); ++other) {
            const auto* dependent = inside.OwnColumn(*select.items[other].term);
            if (other != one && dependent && fixed.IsFixed(IdOf(*dependent)))
                determined_.push_back({{&source, one}, {&source, other}});
        }
    }
}

void Dependencies::AddEqualities(const Term& condition, const Sources& joined) {
    const auto* both = If<Logic>(&condition);
    if (!both || both->op != LogicOperator::And) return AddEquality(condition, joined, joined);
    for (const TermPtr& operand : both->operands) AddEqualities(*operand, joined);
}

// Where an outer join keeps a side's rows, the other side's column is equal or, without a match, Null, and the kept
// side alone determines which as long as the equality is the whole join condition.
void Dependencies::AddEquality(const Term& condition, const Sources& from, const Sources& to) {
    const auto* equality = If<Comparison>(&condition);
    if (!equality || equality->op != ComparisonOperator::Equal) return;
    const auto* left = If<ColumnTerm>(equality->operands[0]);
    const auto* right = If<ColumnTerm>(equality->operands[1]);
    if (!left || !right || !IsWhole(left->type) || !IsWhole(right->type)) return;
    const auto isIn = [](const ColumnTerm& column, const Sources& sources) {
        return sources.count(column.source.get()) > 0;
    };
    if (isIn(*left, from) && isIn(*right, to)) determined_.emplace_back(IdOf(*left), IdOf(*right));
    if (isIn(*right, from) && isIn(*left, to)) determined_.emplace_back(IdOf(*right), IdOf(*left));
}

const ColumnTerm* Dependencies::OwnColumn(const Term& term) const {
    const auto* column = If<ColumnTerm>(&term);
    return column && sources_.count(column->source.get()) > 0 ? column : nullptr;
}

// Text columns determine nothing: texts that differ only in case are equal.
std::vector<ColumnId> Dependencies::DependentOn(const ColumnId& column) const {
    std::vector<ColumnId> dependent;
    const auto& [source, position] = column;
    if (!IsWhole(source->columns[position].type)) return dependent;
    for (const auto& [one, other] : determined_)
        if (one == column) dependent.push_back(other);
    if (!source->columns[position].counter) return dependent;
    for (std::size_t i = 0; i < source->columns.size(); ++i) dependent.emplace_back(source, i);
    return dependent;
}

void Dependencies::FixRow(const Source& source) {
    for (std::size_t i = 0; i < source.columns.size(); ++i) Fix({&source, i});
}

void Dependencies::Fix(const ColumnId& column) {
    std::vector<ColumnId> open{column};
    while (!open.empty()) {
        const ColumnId next = open.back();
        open.pop_back();
        if (!fixed_.insert(next).second) continue;
        for (const ColumnId& dependent : DependentOn(next)) open.push_back(dependent);
    }
}

}  // namespace kpTables::sql::bind
