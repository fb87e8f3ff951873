// Several SELECTs joined by UNION.
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "kpTables/text/Message.h"
#include "sql/Names.h"
#include "sql/SqlError.h"
#include "sql/bind/Conversions.h"
#include "sql/bind/QueryBinder.h"

namespace kpTables::sql::bind {

namespace {

// A key of an order by a column's position, from 1.
struct PositionKey {
    std::size_t position;
    bool descending;
    bool operator==(const PositionKey&) const = default;
};
using PositionKeys = std::vector<PositionKey>;

class UnionBinder {
public:
    UnionBinder(Context& context, const sql::Query& query, const Scope* outer)
        : context_(context), query_(query), outer_(outer) {}

    Query Bind(QueryUse use) {
        for (const auto& member : query_.members) members_.push_back(Bind(member));
        UnifyTypes();
        Query result;
        result.use = use;
        for (std::size_t i = 0; i < members_.size(); ++i) {
            if (use == QueryUse::Table) LabelItems(members_[i].items);
            result.members.push_back({query_.members[i].operation, std::move(members_[i])});
        }
        result.limit = BindOffset(context_, query_);
        if (use == QueryUse::Result || result.limit) result.orderBy = Order(result.members.front().select.items);
        return result;
    }

private:
    // A member with its own limit becomes a table, whose columns can be converted.
    Select Bind(const sql::Query::Member& member) {
        const SelectCore* core = PlainCore(member);
        Select select;
        if (core) {
            SelectBinder binder(context_, *core, outer_);
            if (members_.empty()) NoteWholeOrder(&binder, binder.Items());
            if (member.nested) NoteMemberOrder(binder, member.nested->orderBy);
            select = binder.Take();
        } else {
            select = SelectFrom(SourceOf(std::make_shared<Query>(TableOf(member))));
            if (members_.empty()) NoteWholeOrder(nullptr, select.items);
        }
        select.comparesRows = select.comparesRows || ComparesRows();
        return select;
    }

    static const SelectCore* PlainCore(const sql::Query::Member& member) {
        const SelectCore* core = member.core.get();
        const bool wraps = member.nested && member.nested->members.size() == 1 && !member.nested->skip;
        if (wraps) core = member.nested->members.front().core.get();
        return core && !core->top ? core : nullptr;
    }

    Query TableOf(const sql::Query::Member& member) {
        if (member.nested) return BindQuery(context_, *member.nested, outer_, QueryUse::Table);
        SelectBinder binder(context_, *member.core, outer_);
        binder.BindLimit();
        Query query = QueryOf(binder.Take(), QueryUse::Table);
        query.isCorrelated = outer_ != nullptr;
        return query;
    }

    bool ComparesRows() const {
        for (const auto& member : query_.members)
            if (&member != &query_.members.front() && member.operation != SetOperation::UnionAll) return true;
        return false;
    }

    // The order of the whole refers to the first member's columns.
    void NoteWholeOrder(SelectBinder* first, const std::vector<Output>& items) {
        for (const auto& item : query_.orderBy) {
            auto position = first ? first->PositionOf(*item.expression) : std::nullopt;
            const auto* column = sql::If<Column>(item.expression.get());
            for (std::size_t i = 0; i < items.size() && !position && column && column->table.empty(); ++i)
                if (SameName(items[i].name, column->name)) position = i + 1;
            if (!position)
                throw SqlError(ErrorKind::Syntax, Message("a union is ordered by its columns only"),
                               item.expression->offset);
            wholeOrder_.push_back({*position, item.descending});
        }
    }

    void NoteMemberOrder(SelectBinder& binder, const std::vector<OrderItem>& order) {
        if (order.empty()) return;
        PositionKeys keys;
        for (const auto& item : order) {
            const auto position = binder.PositionOf(*item.expression);
            if (position) keys.push_back({*position, item.descending});
        }
        const bool whole = keys.size() == order.size();
        const bool agrees = !memberOrder_ || *memberOrder_ == keys;
        memberOrder_ = whole && agrees ? keys : PositionKeys();
    }

    void UnifyTypes() {
        const std::size_t count = members_.front().items.size();
        for (const auto& member : members_)
            if (member.items.size() != count)
                throw SqlError(ErrorKind::Syntax, Message("the members of a union have different numbers of columns"),
                               query_.offset);
        for (std::size_t i = 0; i < count; ++i) {
            Type common = Type::Null;
            for (const auto& member : members_) common = CommonType(common, member.items[i].term->type);
            for (auto& member : members_) {
                TermPtr& term = member.items[i].term;
                // A column of Nulls has the type of the others.
                term = Retyped(Converted(context_, std::move(term), common), common);
            }
        }
    }

    std::vector<OrderKey> Order(const std::vector<Output>& items) const {
        const PositionKeys& keys = query_.orderBy.empty() && memberOrder_ ? *memberOrder_ : wholeOrder_;
        std::vector<OrderKey> order;
        for (const auto& [position, descending] : keys)
            order.push_back({items[position - 1].term, descending, position});
        return order;
    }

    Context& context_;
    const sql::Query& query_;
    const Scope* outer_;
    std::vector<Select> members_;
    PositionKeys wholeOrder_;
    std::optional<PositionKeys> memberOrder_;
};

}  // namespace

Query BindUnion(Context& context, const sql::Query& query, const Scope* outer, QueryUse use) {
    return UnionBinder(context, query, outer).Bind(use);
}

}  // namespace kpTables::sql::bind
