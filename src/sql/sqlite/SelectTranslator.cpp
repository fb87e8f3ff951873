#include "sql/sqlite/SelectTranslator.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "sql/SqlError.h"
#include "sql/sqlite/Conversion.h"
#include "sql/sqlite/Dependence.h"
#include "sql/sqlite/Grouping.h"
#include "sql/sqlite/Likelihood.h"
#include "sql/sqlite/Names.h"
#include "sql/sqlite/SqliteTranslator.h"

namespace kpTables::sql {

namespace {

constexpr const char* kNoAggregateInWhere = "cannot have an aggregate function in the WHERE clause";
constexpr const char* kNoAggregateInGroup = "cannot have an aggregate function in the GROUP BY clause";
const std::string kGroupBy = " GROUP BY ";

// A key to group or to order by. A bill's date gives way to its columns, which an index may hold.
std::string KeyText(const Term& term, const std::string& direction) {
    if (!term.dateColumns) return CollatedTerm(term).text + direction;
    const auto& [year, month, day] = *term.dateColumns;
    return year + direction + ", " + month + direction + ", " + day + direction;
}

bool IsNumberLiteral(const Expression& expression) {
    const auto* literal = If<Literal>(&expression);
    return literal && literal->literal == LiteralKind::Integer;
}

}  // namespace

SelectTranslator::SelectTranslator(Session& session, const SelectCore& core, const Scope* outer)
    : session_(session), core_(core), scope_(outer) {
    from_ = TranslateFrom(session_, core_.from, scope_, outer);
    aggregated_ = std::any_of(core_.items.begin(), core_.items.end(),
                              [](const SelectItem& item) { return HasAggregate(*item.expression); }) ||
                  (core_.having && HasAggregate(*core_.having));
    TranslateWhere();
    TranslateGroups();
    TranslateItems();
    TranslateHaving();
}

bool SelectTranslator::Groups() const { return aggregated_ || !groups_.empty(); }

void SelectTranslator::TranslateWhere() {
    if (!core_.where) return;
    const Term condition = TranslateRowCondition(*core_.where, {session_, scope_, kNoAggregateInWhere});
    if (condition.truth != true) where_ = " WHERE " + condition.text;
}

// A number stands for the select item at that position.
const Expression& SelectTranslator::GroupExpression(const Expression& expression) {
    if (!IsNumberLiteral(expression)) return expression;
    const long long position = session_.WholeNumber(expression);
    if (position < 1 || position > static_cast<long long>(core_.items.size()))
        throw SqlError(ErrorKind::Syntax, "there is no select item " + std::to_string(position), expression.offset);
    return *core_.items[static_cast<std::size_t>(position) - 1].expression;
}

void SelectTranslator::TranslateGroups() {
    for (const auto& written : core_.groupBy) {
        const Expression& expression = GroupExpression(*written);
        groups_.push_back(&expression);
        const Term key = ValueTerm(session_, TranslateExpression(expression, {session_, scope_, kNoAggregateInGroup}));
        groupKeys_.push_back(KeyText(key, ""));
    }
    std::vector<std::size_t> sequence(groups_.size());
    std::iota(sequence.begin(), sequence.end(), 0);
    PrintGroups(sequence);
}

void SelectTranslator::GroupInAnyOrder() {
    std::vector<std::size_t> sequence(groups_.size());
    std::iota(sequence.begin(), sequence.end(), 0);
    const auto rank = [this](std::size_t i) {
        const auto* column = OwnColumn(groups_[i]);
        if (!column || !IsWhole(column->type)) return 2;
        return column->counter ? 0 : 1;
    };
    std::stable_sort(sequence.begin(), sequence.end(), [&](auto a, auto b) { return rank(a) < rank(b); });
    PrintGroups(sequence);
}

const SourceColumn* SelectTranslator::OwnColumn(const Expression* expression) const {
    const auto* column = If<Column>(expression);
    const auto* meant = column ? scope_.Lookup(*column) : nullptr;
    return meant && scope_.Owns(*meant) ? meant : nullptr;
}

bool SelectTranslator::IsInCondition(const SourceColumn& column) const {
    if (!core_.where) return false;
    std::vector<const Expression*> open{core_.where.get()};
    while (!open.empty()) {
        const Expression* e = open.back();
        open.pop_back();
        if (OwnColumn(e) == &column) return true;
        ForEachOperand(*e, [&](const Expression& operand) { open.push_back(&operand); });
    }
    return false;
}

// A key that has one value in a group of the keys before it, in the given sequence, makes no other groups and would
// make the sorting dearer. One that the condition names stays: an index that finds the rows by it may bring them group
// by group.
void SelectTranslator::PrintGroups(const std::vector<std::size_t>& sequence) {
    Dependence dependence(scope_, core_.from);
    std::vector<bool> needed(groups_.size(), true);
    for (const std::size_t i : sequence) {
        const auto* column = OwnColumn(groups_[i]);
        if (!column) continue;
        needed[i] = !dependence.IsFixed(*column) || IsInCondition(*column);
        dependence.Fix(*column);
    }
    groupBy_.clear();
    keys_.clear();
    for (std::size_t i = 0; i < groups_.size(); ++i) {
        if (!needed[i]) continue;
        groupBy_ += (groupBy_.empty() ? kGroupBy : ", ") + groupKeys_[i];
        keys_.push_back(groups_[i]);
    }
}

void SelectTranslator::GroupBySorting() { groupBy_.insert(kGroupBy.size(), "+"); }

std::vector<std::pair<std::size_t, std::size_t>> SelectTranslator::ImpliedItems() const {
    std::vector<std::pair<std::size_t, std::size_t>> implied;
    for (std::size_t one = 0; one < itemExpressions_.size(); ++one) {
        const auto* column = OwnColumn(itemExpressions_[one]);
        if (!column) continue;
        Dependence dependence(scope_, core_.from);
        dependence.Fix(*column);
        for (std::size_t other = 0; other < itemExpressions_.size(); ++other) {
            const auto* following = OwnColumn(itemExpressions_[other]);
            if (other != one && following && dependence.IsFixed(*following)) implied.emplace_back(one, other);
        }
    }
    return implied;
}

void SelectTranslator::TranslateItems() {
    for (const auto& item : core_.items) {
        if (const auto* star = If<Star>(item.expression.get()))
            AddStar(*star);
        else
            AddItem(item);
    }
}

void SelectTranslator::TranslateHaving() {
    if (!core_.having) return;
    if (Groups()) CheckGrouped(session_, scope_, *core_.having, groups_);
    const Term condition = TranslateCondition(*core_.having, {session_, scope_});
    if (condition.truth != true) having_ = " HAVING " + condition.text;
}

Term SelectTranslator::ItemTerm(const Expression& expression, const std::string& aggregateFilter) {
    if (Groups()) CheckGrouped(session_, scope_, expression, groups_);
    return SettledTerm(session_, TranslateExpression(expression, {session_, scope_, nullptr, aggregateFilter}));
}

std::string SelectTranslator::NameOf(const SelectItem& item) {
    if (!item.alias.empty()) return item.alias;
    if (const auto* column = If<Column>(item.expression.get())) {
        const auto* meant = scope_.Lookup(*column);
        return meant ? meant->name : column->name;
    }
    constexpr int kFirstNumber = 1000;
    return "Expr" + std::to_string(kFirstNumber + unnamed_++);
}

void SelectTranslator::AddItem(const SelectItem& item) {
    Term term = ItemTerm(*item.expression);
    std::string name = NameOf(item);
    if (!item.alias.empty()) scope_.AddAlias(item.alias, ValueTerm(session_, term));
    items_.push_back({std::move(term), std::move(name), !item.alias.empty()});
    itemExpressions_.push_back(item.expression.get());
}

void SelectTranslator::AddStar(const Star& star) {
    if (Groups()) throw SqlError(ErrorKind::Syntax, "cannot group on fields selected with '*'", star.offset);
    if (scope_.Sources().empty()) throw SqlError(ErrorKind::Syntax, "'*' needs a FROM clause", star.offset);
    if (!star.table.empty()) scope_.Find(star.table, star.offset);
    for (const auto& source : scope_.Sources()) {
        if (!star.table.empty() && !SameName(source.name, star.table)) continue;
        for (const auto& column : source.columns) {
            if (column.computed) continue;
            items_.push_back({ColumnTerm(column, star.offset), column.name, false});
            itemExpressions_.push_back(nullptr);
        }
    }
}

std::optional<std::size_t> SelectTranslator::PositionOf(const Expression& expression) {
    if (IsNumberLiteral(expression)) {
        const long long position = session_.WholeNumber(expression);
        if (position >= 1 && position <= static_cast<long long>(items_.size()))
            return static_cast<std::size_t>(position);
        throw SqlError(ErrorKind::Syntax, "there is no column " + std::to_string(position) + " to order by",
                       expression.offset);
    }
    const auto* column = If<Column>(&expression);
    if (column && column->table.empty())
        for (std::size_t i = 0; i < items_.size(); ++i)
            if (items_[i].aliased && SameName(items_[i].name, column->name)) return i + 1;
    const auto* meant = column ? scope_.Lookup(*column) : nullptr;
    for (std::size_t i = 0; i < items_.size(); ++i) {
        const auto* item = itemExpressions_[i];
        if (item ? SameExpression(session_, scope_, *item, expression) : meant && items_[i].term.text == meant->text)
            return i + 1;
    }
    return std::nullopt;
}

std::string SelectTranslator::OrderItemText(const OrderItem& item) {
    const std::string direction = item.descending ? " DESC" : "";
    const Expression& expression = *item.expression;
    const auto* column = If<Column>(&expression);
    const bool perhapsAlias = column && column->table.empty();
    const bool byPosition = core_.distinct || perhapsAlias || IsNumberLiteral(expression);
    const auto position = byPosition ? PositionOf(expression) : std::nullopt;
    if (core_.distinct && !position)
        throw SqlError(ErrorKind::Syntax, "an ORDER BY key is not among the columns that DISTINCT selects",
                       expression.offset);
    if (position) {
        const OutputItem& output = items_[*position - 1];
        if (output.term.column) return output.term.text + direction;
        if (output.term.dateColumns && !core_.distinct && !Groups()) return KeyText(output.term, direction);
        Term key = ConstantTerm(std::to_string(*position), output.term.type);
        return CollatedTerm(std::move(key)).text + direction;
    }
    if (!Groups() && HasAggregate(expression))
        throw SqlError(ErrorKind::Syntax, "cannot have an aggregate function in the ORDER BY clause of single rows",
                       expression.offset);
    Term key = ValueTerm(session_, ItemTerm(expression));
    return KeyText(key, direction);
}

std::string SelectTranslator::OrderText(const std::vector<OrderItem>& order) {
    std::string text;
    for (const auto& item : order) text += (text.empty() ? " ORDER BY " : ", ") + OrderItemText(item);
    return text;
}

std::string SelectTranslator::LimitText() {
    return core_.top ? " LIMIT " + std::to_string(session_.WholeNumber(*core_.top)) : std::string();
}

}  // namespace kpTables::sql
