#include "sql/sqlite/LineSums.h"

#include <algorithm>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "sql/sqlite/Aggregates.h"
#include "sql/sqlite/Conversion.h"
#include "sql/sqlite/Grouping.h"
#include "sql/sqlite/JoinedTables.h"
#include "sql/sqlite/Names.h"

namespace kpTables::sql {

namespace {

SelectCore* OnlyCore(Query& query) {
    Query* inner = &query;
    while (inner->members.size() == 1 && inner->members.front().nested && inner->orderBy.empty())
        inner = inner->members.front().nested.get();
    return inner->members.size() == 1 ? inner->members.front().core.get() : nullptr;
}

bool IsPlain(const SelectCore& core) {
    return !core.distinct && !core.top && !core.where && core.groupBy.empty() && !core.having && core.from.size() == 1;
}

std::unique_ptr<Query> QueryOf(std::unique_ptr<SelectCore> core) {
    auto query = std::make_unique<Query>();
    query->members.emplace_back();
    query->members.front().core = std::move(core);
    return query;
}

/// The lines among joined tables with their bills: an inner join of a column with the bills' counter.
struct Lines {
    std::size_t table;
    const CatalogColumn* key;
    std::size_t bills;
    JoinedTable* join;
};

std::optional<Lines> LinesOf(const JoinedTables& tables, JoinedTable& join) {
    const auto* equality = If<Binary>(join.on.get());
    if (join.join != JoinKind::Inner || !equality || equality->op != BinaryOperator::Equal) return std::nullopt;
    const auto* left = If<Column>(equality->left.get());
    const auto* right = If<Column>(equality->right.get());
    if (!left || !right) return std::nullopt;
    if (join.left->kind != TableKind::Named || join.right->kind != TableKind::Named) return std::nullopt;
    auto bill = tables.Lookup(*left);
    auto line = tables.Lookup(*right);
    if (!bill || !line || bill->table == line->table) return std::nullopt;
    if (line->column->counter) std::swap(bill, line);
    if (!bill->column->counter || line->column->counter || !IsWhole(line->column->type)) return std::nullopt;
    return Lines{line->table, line->column, bill->table, &join};
}

/// One query, and what it reads of the lines. A query in its FROM may stand between it and the tables.
class Addition {
public:
    Addition(SelectCore& core, const Catalog& catalog) : core_(core) {
        if (core.where || core.from.size() != 1) return;
        TablePtr* from = &core.from.front();
        if ((*from)->kind == TableKind::Derived) {
            between_ = OnlyCore(*static_cast<DerivedTable&>(**from).query);
            if (!between_ || !IsPlain(*between_)) return;
            from = &between_->from.front();
        }
        tables_.emplace(*from, catalog);
        if (!tables_->AreKnown()) return;
        for (auto* join : tables_->Joins())
            if (!lines_) lines_ = LinesOf(*tables_, *join);
    }

    /// True when the tables are joined in such a way that sums of the lines can stand for them.
    bool Finds() const {
        if (!lines_) return false;
        for (const auto* join : tables_->Joins())
            if (join != lines_->join && !IsWithoutLines(*join->on)) return false;
        return !between_ || std::all_of(between_->items.begin(), between_->items.end(), [&](const SelectItem& item) {
            return (item.expression->kind == ExpressionKind::Column && tables_->Lookup(As<Column>(*item.expression))) ||
                   IsWithoutLines(*item.expression);
        });
    }

    /// Notes what an expression of the query reads; false when it needs the lines one by one.
    bool Reads(const Expression& expression) {
        std::vector<const Expression*> open{&expression};
        while (!open.empty()) {
            const Expression& e = *open.back();
            open.pop_back();
            const auto* call = If<Call>(&e);
            if (call && IsAggregate(call->name)) {
                if (!SameName(call->name, "sum") || call->distinct || call->arguments.size() != 1) return false;
                if (!IsSummable(*call->arguments.front())) return false;
                continue;
            }
            if (!IsPlainNode(e) || IsLineColumn(e)) return false;
            ForEachOperand(e, [&](const Expression& operand) { open.push_back(&operand); });
        }
        return true;
    }

    /// True for the column that tells one bill from another: with it among the keys, the groups are of single bills,
    /// whose lines the query adds up itself.
    bool IsBillKey(const Expression& expression) const {
        const auto* column = If<Column>(&expression);
        bool known = false;
        const auto meaning = column ? MeaningOf(*column, known) : std::nullopt;
        return meaning && meaning->table == lines_->bills && meaning->column->counter;
    }

    /// True for a column of bills all of which, as long as they have lines, are among the rows.
    bool IsOfKeptBills(const Expression& expression) const {
        const auto* column = If<Column>(&expression);
        if (!lines_ || !column || !IsKept(*lines_->join)) return false;
        bool known = false;
        const auto meaning = MeaningOf(*column, known);
        return meaning && meaning->table == lines_->bills;
    }

    /// Leaves the bills alone, with the condition that there are lines.
    void AskForBills() {
        auto lines = std::make_unique<SelectCore>();
        lines->items.push_back({std::make_unique<Column>("", lines_->key->name), ""});
        lines->where = std::move(lines_->join->on);
        lines->from.push_back(std::move(*tables_->Tables()[lines_->table].place));
        TablePtr bills = std::move(*tables_->Tables()[lines_->bills].place);
        if (between_)
            std::erase_if(between_->items, [&](const SelectItem& item) { return !IsColumnOfBills(*item.expression); });
        SelectCore& core = between_ ? *between_ : core_;
        core.from.clear();
        core.from.push_back(std::move(bills));
        core.where = std::make_unique<Exists>(QueryOf(std::move(lines)));
    }

    /// Puts the sums in the place of the lines.
    void Rewrite(Statement& statement) {
        const auto& [place, node, table] = tables_->Tables()[lines_->table];
        const std::string alias = node->alias.empty() ? node->name : node->alias;
        auto core = std::make_unique<SelectCore>();
        core->items.push_back({std::make_unique<Column>("", lines_->key->name), ""});
        for (const CatalogColumn* column : summed_) {
            std::vector<ExpressionPtr> argument;
            argument.push_back(std::make_unique<Column>("", column->name));
            core->items.push_back({std::make_unique<Call>("Sum", false, std::move(argument)), column->name});
        }
        core->groupBy.push_back(std::make_unique<Column>("", lines_->key->name));
        DropUnread();
        core->from.push_back(std::make_unique<NamedTable>(table->name, ""));
        *place = std::make_unique<DerivedTable>(QueryOf(std::move(core)), alias);
        statement.fixedLiterals.insert(statement.fixedLiterals.end(), zeros_.begin(), zeros_.end());
    }

private:
    // What the query's name means among the tables; nullptr for a value that the query between computes.
    std::optional<JoinedTables::Meaning> MeaningOf(const Column& column, bool& known) const {
        known = true;
        const Column* meant = &column;
        if (between_) {
            const SelectItem* item = ItemOf(column.name);
            known = item;
            meant = item ? If<Column>(item->expression.get()) : nullptr;
            if (!meant) return std::nullopt;
        }
        const auto meaning = tables_->Lookup(*meant);
        known = meaning.has_value();
        return meaning;
    }

    // Of two items of one name the first is meant.
    const SelectItem* ItemOf(const std::string& name) const {
        for (const SelectItem& item : between_->items) {
            const auto* column = If<Column>(item.expression.get());
            if (SameName(item.alias.empty() && column ? column->name : item.alias, name)) return &item;
        }
        return nullptr;
    }

    bool IsLine(const JoinedTables::Meaning& meaning) const { return meaning.table == lines_->table; }

    // A column of the lines, or a name that is none of these tables'.
    bool IsLineColumn(const Expression& e) const {
        const auto* column = If<Column>(&e);
        if (!column) return false;
        bool known = false;
        const auto meaning = MeaningOf(*column, known);
        return !known || (meaning && IsLine(*meaning));
    }

    static bool IsPlainNode(const Expression& e) {
        return !If<InQuery>(&e) && !If<Exists>(&e) && !If<Subquery>(&e) && !If<Star>(&e) && !If<Variable>(&e);
    }

    static bool AllOf(const Expression& expression, const std::function<bool(const Expression&)>& test) {
        std::vector<const Expression*> open{&expression};
        while (!open.empty()) {
            const Expression& e = *open.back();
            open.pop_back();
            if (!test(e)) return false;
            ForEachOperand(e, [&](const Expression& operand) { open.push_back(&operand); });
        }
        return true;
    }

    // Of an expression that stands where the tables do.
    bool IsWithoutLines(const Expression& expression) const {
        return AllOf(expression, [&](const Expression& e) {
            const auto* call = If<Call>(&e);
            if (!IsPlainNode(e) || (call && IsAggregate(call->name))) return false;
            const auto* column = If<Column>(&e);
            const auto meaning = column ? tables_->Lookup(*column) : std::nullopt;
            return !column || (meaning && !IsLine(*meaning));
        });
    }

    // A figure of a line, or that figure in some cases and nothing in the others: its sum over a bill's lines is the
    // same expression of the figure's sum.
    bool IsSummable(const Expression& e) {
        if (const auto* literal = If<Literal>(&e)) {
            if (literal->literal == LiteralKind::Null) return true;
            zeros_.push_back(literal->ordinal);
            return literal->literal == LiteralKind::Integer && literal->text == "0";
        }
        if (const auto* column = If<Column>(&e)) {
            bool known = false;
            const auto meaning = MeaningOf(*column, known);
            if (!meaning || !IsLine(*meaning)) return false;
            const Type type = meaning->column->type;
            if (type != Type::Double && type != Type::Currency) return false;
            if (std::find(summed_.begin(), summed_.end(), meaning->column) == summed_.end())
                summed_.push_back(meaning->column);
            return true;
        }
        const auto* choice = If<Case>(&e);
        if (!choice || (choice->operand && !ReadsNoLine(*choice->operand))) return false;
        return std::all_of(
                   choice->whens.begin(), choice->whens.end(),
                   [&](const Case::When& when) { return ReadsNoLine(*when.condition) && IsSummable(*when.result); }) &&
               (!choice->otherwise || IsSummable(*choice->otherwise));
    }

    bool ReadsNoLine(const Expression& expression) const {
        return AllOf(expression, [&](const Expression& e) { return IsPlainNode(e) && !IsLineColumn(e); });
    }

    // The query between shows only such columns of the lines as there are sums of.
    void DropUnread() {
        if (!between_) return;
        std::erase_if(between_->items, [&](const SelectItem& item) {
            const auto* column = If<Column>(item.expression.get());
            const auto meaning = column ? tables_->Lookup(*column) : std::nullopt;
            return meaning && IsLine(*meaning) &&
                   std::find(summed_.begin(), summed_.end(), meaning->column) == summed_.end();
        });
    }

    bool IsColumnOfBills(const Expression& e) const {
        const auto* column = If<Column>(&e);
        const auto meaning = column ? tables_->Lookup(*column) : std::nullopt;
        return meaning && meaning->table == lines_->bills;
    }

    // Every row of the join is among those of the joins around it.
    bool IsKept(const JoinedTable& join) const {
        const TableExpression* table = (between_ ? between_ : &core_)->from.front().get();
        while (table != &join) {
            if (table->kind != TableKind::Join) return false;
            const auto& around = static_cast<const JoinedTable&>(*table);
            if (around.join == JoinKind::Inner) return false;
            table = (around.join == JoinKind::Left ? around.left : around.right).get();
        }
        return true;
    }

    SelectCore& core_;
    SelectCore* between_ = nullptr;
    std::optional<JoinedTables> tables_;
    std::optional<Lines> lines_;
    std::vector<const CatalogColumn*> summed_;
    std::vector<int> zeros_;
};

bool ReadsQuery(Addition& addition, const SelectCore& core, const std::vector<OrderItem>& order) {
    const auto reads = [&](const ExpressionPtr& e) { return addition.Reads(*e); };
    const auto readsItem = [&](const auto& item) { return reads(item.expression); };
    const auto readsKey = [&](const ExpressionPtr& e) { return reads(e) && !addition.IsBillKey(*e); };
    return !core.groupBy.empty() && std::all_of(core.groupBy.begin(), core.groupBy.end(), readsKey) &&
           std::all_of(core.items.begin(), core.items.end(), readsItem) && (!core.having || reads(core.having)) &&
           std::all_of(order.begin(), order.end(), readsItem);
}

void AddUp(Statement& statement, Query& query, const Catalog& catalog, const TransformStatement* transform) {
    SelectCore* core = OnlyCore(query);
    if (!core) return;
    Addition addition(*core, catalog);
    if (!addition.Finds() || !ReadsQuery(addition, *core, query.orderBy)) return;
    if (transform && !(addition.Reads(*transform->aggregate.expression) && addition.Reads(*transform->pivot))) return;
    addition.Rewrite(statement);
}

}  // namespace

void AddUpLines(Statement& statement, const Catalog& catalog) {
    if (statement.kind == StatementKind::Select) {
        AddUp(statement, *static_cast<SelectStatement&>(statement).query, catalog, nullptr);
    } else if (statement.kind == StatementKind::Transform) {
        auto& transform = static_cast<TransformStatement&>(statement);
        AddUp(statement, *transform.query, catalog, &transform);
    }
}

void PassOverLines(TransformStatement& statement, const Catalog& catalog) {
    SelectCore* core = OnlyCore(*statement.query);
    if (!core) return;
    Addition addition(*core, catalog);
    if (addition.IsOfKeptBills(*statement.pivot)) addition.AskForBills();
}

}  // namespace kpTables::sql
