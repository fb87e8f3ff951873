// One SELECT, without the order and the limit that belong to the query around it.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "sql/Tree.h"
#include "sql/sqlite/ExpressionTranslator.h"
#include "sql/sqlite/FromClause.h"
#include "sql/sqlite/Scope.h"
#include "sql/sqlite/Session.h"
#include "sql/sqlite/Term.h"

namespace kpTables::sql {

/// A column that a SELECT answers with.
struct OutputItem {
    Term term;         ///< not a literal any more, but perhaps a predicate
    std::string name;  ///< the alias, the column's own name, or one made for it
    bool aliased = false;
};

class SelectTranslator {
public:
    SelectTranslator(Session& session, const SelectCore& core, const Scope* outer);
    SelectTranslator(const SelectTranslator&) = delete;
    SelectTranslator& operator=(const SelectTranslator&) = delete;

    std::vector<OutputItem>& Items() noexcept { return items_; }
    const Scope& Names() const noexcept { return scope_; }
    bool Distinct() const noexcept { return core_.distinct; }
    bool HasTop() const noexcept { return core_.top != nullptr; }

    /// A term that stands in the select list, for an item that the statement writes elsewhere.
    Term ItemTerm(const Expression& expression, const std::string& aggregateFilter = {});
    /// " ORDER BY ..." for an order of this SELECT alone.
    std::string OrderText(const std::vector<OrderItem>& order);
    /// The position, from 1, of the item that an order names by its number, its name or its expression.
    std::optional<std::size_t> PositionOf(const Expression& expression);
    /// " LIMIT n", or "".
    std::string LimitText();
    /// " FROM ... WHERE ... GROUP BY ... HAVING ...", as far as the SELECT has them.
    std::string Tail() const { return Tail(from_.Text()); }
    /// The same after another FROM.
    std::string Tail(const std::string& from) const { return from + where_ + groupBy_ + having_; }
    const FromText& From() const noexcept { return from_; }
    /// The keys that the text groups by, from which the others follow.
    const std::vector<const Expression*>& Keys() const noexcept { return keys_; }
    /// The groups need not come in the order of their keys, as something else orders them.
    void GroupInAnyOrder();
    /// The rows are sorted by the key, the only one, even where an index would bring them in its order.
    void GroupBySorting();
    /// Pairs of items, from 0, where the second has one value for each value of the first.
    std::vector<std::pair<std::size_t, std::size_t>> ImpliedItems() const;

private:
    void TranslateWhere();
    void TranslateGroups();
    void TranslateItems();
    void TranslateHaving();
    void AddItem(const SelectItem& item);
    void AddStar(const Star& star);
    std::string NameOf(const SelectItem& item);
    const Expression& GroupExpression(const Expression& expression);
    const SourceColumn* OwnColumn(const Expression* expression) const;
    bool IsInCondition(const SourceColumn& column) const;
    void PrintGroups(const std::vector<std::size_t>& sequence);
    bool Groups() const;
    std::string OrderItemText(const OrderItem& item);

    Session& session_;
    const SelectCore& core_;
    Scope scope_;
    FromText from_;
    std::string where_;
    std::string groupBy_;
    std::string having_;
    std::vector<const Expression*> groups_;
    std::vector<std::string> groupKeys_;  ///< beside groups_
    std::vector<const Expression*> keys_;
    bool aggregated_ = false;
    std::vector<OutputItem> items_;
    std::vector<const Expression*> itemExpressions_;  ///< beside items_; nullptr for a column of a star
    int unnamed_ = 0;
};

}  // namespace kpTables::sql
