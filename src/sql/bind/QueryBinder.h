// Queries: SELECTs, unions of them, their tables and their order.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "sql/Tree.h"
#include "sql/bind/Context.h"
#include "sql/bind/Query.h"
#include "sql/bind/Scope.h"

namespace kpTables::sql::bind {

/// outer: the names visible besides those of the query's own tables, or nullptr.
Query BindQuery(Context& context, const sql::Query& query, const Scope* outer, QueryUse use);

/// The rows that OFFSET and FETCH leave; nothing without them.
std::optional<RowLimit> BindOffset(Context& context, const sql::Query& query);

/// Each column gets one type in all members. A union without an order takes over the one that its members have on their
/// columns.
Query BindUnion(Context& context, const sql::Query& query, const Scope* outer, QueryUse use);

/// Adds every table of the clause to the scope, in the order in which the statement writes them.
/// outer: the names visible to queries in the clause.
std::vector<TablePtr> BindFrom(Context& context, const std::vector<sql::TablePtr>& from, Scope& scope,
                               const Scope* outer);

/// One SELECT, without the order and the limit that belong to the query around it.
class SelectBinder {
public:
    SelectBinder(Context& context, const SelectCore& core, const Scope* outer);
    SelectBinder(const SelectBinder&) = delete;
    SelectBinder& operator=(const SelectBinder&) = delete;

    const Scope& Names() const noexcept { return scope_; }
    bool HasTop() const noexcept { return core_.top != nullptr; }
    const std::vector<Output>& Items() const noexcept { return select_.items; }

    /// A value for the select list that the statement writes elsewhere.
    TermPtr BindItem(const Expression& expression, const TermPtr& aggregateFilter = nullptr);
    void AddItem(Output item) { select_.items.push_back(std::move(item)); }
    void BindOrder(const std::vector<OrderItem>& order);
    /// The limit of the core, or the given one of the query around it.
    void BindLimit(std::optional<RowLimit> offset = std::nullopt);
    /// The groups need not come in key order: something else orders them.
    void GroupInAnyOrder() { select_.groupsInAnyOrder = true; }
    /// The position, from 1, of the item that an order refers to by number, name or expression.
    std::optional<std::size_t> PositionOf(const Expression& expression);
    Select Take() { return std::move(select_); }

private:
    void BindWhere();
    void BindGroups();
    void BindItems();
    void BindHaving();
    void MergeShownRows();
    Place ItemPlace(const TermPtr& aggregateFilter = nullptr) {
        return {context_, scope_, nullptr, aggregateFilter, &select_.windowed};
    }
    std::string QualifierOf(const Term& item) const;
    void AddWritten(const SelectItem& item);
    void AddStar(const Star& star);
    std::string NameOf(const SelectItem& item);
    const Expression& GroupExpression(const Expression& expression);
    OrderKey BindOrderKey(const OrderItem& item);
    void CheckOrdered(const Expression& expression);

    Context& context_;
    const SelectCore& core_;
    Scope scope_;
    Select select_;
    std::vector<const Expression*> groups_;
    std::vector<const Expression*> itemExpressions_;  ///< parallel to the items; nullptr for a column of a star
    int unnamed_ = 0;
    bool mergesRows_ = false;  ///< DISTINCTROW of some of the tables
};

}  // namespace kpTables::sql::bind
