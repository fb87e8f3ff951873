#include "sql/sqlite/Dependence.h"

#include "sql/sqlite/Conversion.h"

namespace kpTables::sql {

namespace {

const Binary* AsBinary(const Expression& expression, BinaryOperator op) {
    const auto* binary = If<Binary>(&expression);
    return binary && binary->op == op ? binary : nullptr;
}

}  // namespace

Dependence::Dependence(const Scope& scope, const std::vector<TablePtr>& from) : scope_(scope) {
    std::size_t source = 0;
    for (const auto& table : from) source = AddJoins(*table, source);
    for (const Source& query : scope_.Sources())
        for (const auto& [one, other] : query.implied)
            implied_.emplace_back(&query.columns[one], &query.columns[other]);
}

// Answers the number of the first source after the table's.
std::size_t Dependence::AddJoins(const TableExpression& table, std::size_t source) {
    if (table.kind != TableKind::Join) return source + 1;
    const auto& join = static_cast<const JoinedTable&>(table);
    const std::size_t middle = AddJoins(*join.left, source);
    const std::size_t end = AddJoins(*join.right, middle);
    switch (join.join) {
        case JoinKind::Inner:
            AddEqualities(*join.on, {source, end});
            break;
        case JoinKind::Left:
            AddEquality(*join.on, {source, middle}, {middle, end});
            break;
        case JoinKind::Right:
            AddEquality(*join.on, {middle, end}, {source, middle});
            break;
    }
    return end;
}

void Dependence::AddEqualities(const Expression& condition, SourceRange joined) {
    std::vector<const Expression*> open{&condition};
    while (!open.empty()) {
        const Expression& next = *open.back();
        open.pop_back();
        if (const auto* both = AsBinary(next, BinaryOperator::And)) {
            open.push_back(both->left.get());
            open.push_back(both->right.get());
        } else {
            AddEquality(next, joined, joined);
        }
    }
}

// Where a join keeps a side's rows, the other side's column is equal or, for want of a match, Null, and that is known
// from the kept side alone as long as the equality is the join's whole condition.
void Dependence::AddEquality(const Expression& condition, SourceRange from, SourceRange to) {
    const auto* equality = AsBinary(condition, BinaryOperator::Equal);
    if (!equality) return;
    const SourceColumn* left = OwnColumn(*equality->left);
    const SourceColumn* right = OwnColumn(*equality->right);
    if (!left || !right || !IsWhole(left->type) || !IsWhole(right->type)) return;
    if (IsIn(*left, from) && IsIn(*right, to)) implied_.emplace_back(left, right);
    if (IsIn(*right, from) && IsIn(*left, to)) implied_.emplace_back(right, left);
}

bool Dependence::IsIn(const SourceColumn& column, SourceRange range) const {
    for (std::size_t i = range.begin; i < range.end; ++i)
        if (scope_.Sources()[i].Has(column)) return true;
    return false;
}

const SourceColumn* Dependence::OwnColumn(const Expression& expression) const {
    const auto* column = If<Column>(&expression);
    const auto* meant = column ? scope_.Lookup(*column) : nullptr;
    return meant && scope_.Owns(*meant) ? meant : nullptr;
}

// From a text follows nothing: texts that differ in case alone are equal.
std::vector<const SourceColumn*> Dependence::FollowingFrom(const SourceColumn& column) const {
    std::vector<const SourceColumn*> following;
    if (!IsWhole(column.type)) return following;
    for (const auto& [one, other] : implied_)
        if (one == &column) following.push_back(other);
    if (!column.counter) return following;
    for (const Source& source : scope_.Sources())
        if (source.Has(column))
            for (const SourceColumn& other : source.columns) following.push_back(&other);
    return following;
}

void Dependence::Fix(const SourceColumn& column) {
    std::vector<const SourceColumn*> open{&column};
    while (!open.empty()) {
        const SourceColumn* next = open.back();
        open.pop_back();
        if (!fixed_.insert(next).second) continue;
        for (const SourceColumn* following : FollowingFrom(*next)) open.push_back(following);
    }
}

}  // namespace kpTables::sql
