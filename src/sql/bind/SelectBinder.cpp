#include <algorithm>
#include <charconv>
#include <cmath>
#include <set>
#include <utility>

#include "kpTables/text/Message.h"
#include "sql/Names.h"
#include "sql/SqlError.h"
#include "sql/bind/Conversions.h"
#include "sql/bind/Dependencies.h"
#include "sql/bind/Grouping.h"
#include "sql/bind/QueryBinder.h"
#include "sql/bind/Walk.h"

namespace kpTables::sql::bind {

namespace {

constexpr const char* kNoAggregateInGroup = Translatable("cannot have an aggregate function in the GROUP BY clause");

bool IsNumberLiteral(const Expression& expression) {
    const auto* literal = sql::If<Literal>(&expression);
    return literal && literal->literal == LiteralKind::Integer;
}

/// The number of TOP ... PERCENT in millionths.
long long Percent(Context& context, const Literal& number) {
    constexpr long long kWhole = 100 * 1000000LL;
    context.Fix(number);
    double value = 0;
    const auto read = std::from_chars(number.text.data(), number.text.data() + number.text.size(), value);
    const auto millionths = static_cast<long long>(std::llround(value * 1e6));
    if (read.ec != std::errc() || millionths < 0 || millionths > kWhole)
        throw SqlError(ErrorKind::Syntax, Message("a number from 0 to 100 is expected before PERCENT"), number.offset);
    return millionths;
}

}  // namespace

SelectBinder::SelectBinder(Context& context, const SelectCore& core, const Scope* outer)
    : context_(context), core_(core), scope_(outer) {
    select_.distinct = core_.distinct;
    select_.comparesRows = core_.distinct;
    select_.from = BindFrom(context_, core_.from, scope_, outer);
    select_.grouped = !core_.groupBy.empty() || core_.having ||
                      std::any_of(core_.items.begin(), core_.items.end(),
                                  [](const SelectItem& item) { return HasAggregate(*item.expression); });
    BindWhere();
    BindGroups();
    BindItems();
    BindHaving();
    if (core_.distinctRow && !select_.grouped) MergeShownRows();
}

void SelectBinder::BindWhere() {
    if (!core_.where) return;
    TermPtr condition = BindCondition(*core_.where, {context_, scope_, kNoAggregateInWhere});
    if (!IsTrue(*condition)) select_.where = std::move(condition);
}

// A number stands for the select item at that position.
const Expression& SelectBinder::GroupExpression(const Expression& expression) {
    if (!IsNumberLiteral(expression)) return expression;
    const long long position = context_.WholeNumber(expression);
    if (position < 1 || position > static_cast<long long>(core_.items.size()))
        throw SqlError(ErrorKind::Syntax, Message("there is no select item {1}", position), expression.offset);
    return *core_.items[static_cast<std::size_t>(position) - 1].expression;
}

void SelectBinder::BindGroups() {
    for (const auto& written : core_.groupBy) {
        const Expression& expression = GroupExpression(*written);
        groups_.push_back(&expression);
        select_.groupBy.push_back(
            AsValue(context_, BindExpression(expression, {context_, scope_, kNoAggregateInGroup})));
    }
}

void SelectBinder::BindItems() {
    for (const auto& item : core_.items) {
        if (const auto* star = sql::If<Star>(item.expression.get()))
            AddStar(*star);
        else
            AddWritten(item);
    }
}

void SelectBinder::BindHaving() {
    if (!core_.having) return;
    CheckGrouped(context_, scope_, *core_.having, groups_);
    TermPtr condition = BindCondition(*core_.having, {context_, scope_});
    if (!IsTrue(*condition)) select_.having = std::move(condition);
}

TermPtr SelectBinder::BindItem(const Expression& expression, const TermPtr& aggregateFilter) {
    if (select_.grouped) CheckGrouped(context_, scope_, expression, groups_);
    return AsValue(context_, BindExpression(expression, ItemPlace(aggregateFilter)));
}

std::string SelectBinder::NameOf(const SelectItem& item) {
    if (!item.alias.empty()) return item.alias;
    if (const auto* column = sql::If<Column>(item.expression.get())) {
        const auto meaning = scope_.Lookup(*column);
        return meaning ? meaning.Column().name : column->name;
    }
    constexpr int kFirstNumber = 1000;
    return "Expr" + std::to_string(kFirstNumber + unnamed_++);
}

std::string SelectBinder::QualifierOf(const Term& item) const {
    const auto* column = scope_.Sources().size() > 1 ? If<ColumnTerm>(&item) : nullptr;
    return column ? column->source->name : std::string();
}

void SelectBinder::AddWritten(const SelectItem& item) {
    TermPtr term = BindItem(*item.expression);
    std::string name = NameOf(item);
    if (!item.alias.empty()) scope_.AddAlias(item.alias, term);
    std::string qualifier = item.alias.empty() ? QualifierOf(*term) : std::string();
    select_.items.push_back({std::move(term), std::move(name), !item.alias.empty(), {}, std::move(qualifier)});
    itemExpressions_.push_back(item.expression.get());
}

void SelectBinder::AddStar(const Star& star) {
    if (select_.grouped)
        throw SqlError(ErrorKind::Syntax, Message("cannot group on fields selected with '*'"), star.offset);
    if (scope_.Sources().empty()) throw SqlError(ErrorKind::Syntax, Message("'*' needs a FROM clause"), star.offset);
    if (!star.table.empty()) scope_.RequireSource(star.table, star.offset);
    for (const auto& source : scope_.Sources()) {
        if (!star.table.empty() && !SameName(source->name, star.table)) continue;
        for (std::size_t i = 0; i < source->columns.size(); ++i) {
            if (source->columns[i].computed) continue;
            TermPtr term = ColumnOf(source, i, star.offset);
            std::string qualifier = QualifierOf(*term);
            select_.items.push_back({std::move(term), source->columns[i].name, false, {}, std::move(qualifier)});
            itemExpressions_.push_back(nullptr);
        }
    }
}

std::optional<std::size_t> SelectBinder::PositionOf(const Expression& expression) {
    const auto& items = select_.items;
    if (IsNumberLiteral(expression)) {
        const long long position = context_.WholeNumber(expression);
        if (position >= 1 && position <= static_cast<long long>(items.size()))
            return static_cast<std::size_t>(position);
        throw SqlError(ErrorKind::Syntax, Message("there is no column {1} to order by", position), expression.offset);
    }
    const auto* column = sql::If<Column>(&expression);
    if (column && column->table.empty())
        for (std::size_t i = 0; i < items.size(); ++i)
            if (items[i].aliased && SameName(items[i].name, column->name)) return i + 1;
    const auto meaning = column ? scope_.Lookup(*column) : Scope::Meaning();
    const auto isMeant = [&](const Term& item) {
        const auto* shown = If<ColumnTerm>(&item);
        return meaning && shown && shown->source == meaning.source && shown->column == meaning.column;
    };
    for (std::size_t i = 0; i < itemExpressions_.size(); ++i) {
        const auto* item = itemExpressions_[i];
        if (item ? SameExpression(context_, scope_, *item, expression) : isMeant(*items[i].term)) return i + 1;
    }
    return std::nullopt;
}

OrderKey SelectBinder::BindOrderKey(const OrderItem& item) {
    const Expression& expression = *item.expression;
    const auto* column = sql::If<Column>(&expression);
    const bool perhapsAlias = column && column->table.empty();
    const bool byPosition = core_.distinct || perhapsAlias || IsNumberLiteral(expression);
    const auto position = byPosition ? PositionOf(expression) : std::nullopt;
    if (core_.distinct && !position)
        throw SqlError(ErrorKind::Syntax, Message("an ORDER BY key is not among the columns that DISTINCT selects"),
                       expression.offset);
    if (position) return {select_.items[*position - 1].term, item.descending, position};
    if ((!select_.grouped || mergesRows_) && HasAggregate(expression))
        throw SqlError(ErrorKind::Syntax,
                       Message("cannot have an aggregate function in the ORDER BY clause of single rows"),
                       expression.offset);
    if (select_.grouped && !mergesRows_) CheckOrdered(expression);
    return {AsValue(context_, BindExpression(expression, ItemPlace())), item.descending};
}

// Groups can be ordered by any column that their keys determine.
void SelectBinder::CheckOrdered(const Expression& expression) {
    Dependencies dependencies(select_);
    for (const TermPtr& key : select_.groupBy)
        if (const auto* column = dependencies.OwnColumn(*key)) dependencies.Fix(IdOf(*column));
    CheckGrouped(context_, scope_, expression, groups_, [&](const Scope::Meaning& meaning) {
        return dependencies.IsFixed({meaning.source.get(), meaning.column});
    });
}

void SelectBinder::BindOrder(const std::vector<OrderItem>& order) {
    for (const auto& item : order) select_.orderBy.push_back(BindOrderKey(item));
}

void SelectBinder::BindLimit(std::optional<RowLimit> offset) {
    if (!core_.top) {
        select_.limit = offset;
        return;
    }
    if (offset) throw SqlError(ErrorKind::Syntax, Message("a query has TOP or OFFSET, not both"), core_.top->offset);
    // Here it stands in a member of a union; the WITH TIES of a single SELECT was bound as a rank.
    if (core_.withTies)
        throw SqlError(ErrorKind::Syntax, Message("WITH TIES needs an ORDER BY, and no OFFSET"), core_.top->offset);
    RowLimit limit;
    if (core_.percent)
        limit.percent = Percent(context_, sql::As<Literal>(*core_.top));
    else
        limit.rows = context_.WholeNumber(*core_.top);
    select_.limit = limit;
}

// DISTINCTROW leaves one row for each combination of rows of the tables that are shown.
void SelectBinder::MergeShownRows() {
    std::set<const Source*> shown;
    for (const Output& item : select_.items)
        ForEachTerm(*item.term, [&](const Term& term) {
            if (const auto* column = If<ColumnTerm>(&term)) shown.insert(column->source.get());
        });
    Terms rows;
    for (const SourcePtr& source : scope_.Sources()) {
        if (shown.count(source.get()) == 0) {
            mergesRows_ = true;
        } else if (source->table) {
            rows.push_back(std::make_shared<RowIdTerm>(source));
        } else {
            throw SqlError(ErrorKind::Unsupported, Message("DISTINCTROW of a query in FROM is not supported"),
                           core_.from.front()->offset);
        }
    }
    if (!mergesRows_) return;
    select_.grouped = true;
    select_.groupBy = std::move(rows);
}

}  // namespace kpTables::sql::bind
