#include "sql/sqlite/UnionTranslator.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "sql/SqlError.h"
#include "sql/sqlite/Conversion.h"
#include "sql/sqlite/Names.h"
#include "sql/sqlite/SelectText.h"
#include "sql/sqlite/SelectTranslator.h"

namespace kpTables::sql {

namespace {

// A key of an order by a column's position, from 1.
struct OrderKey {
    std::size_t position;
    bool descending;
    bool operator==(const OrderKey&) const = default;
};
using OrderKeys = std::vector<OrderKey>;

class UnionTranslator {
public:
    UnionTranslator(Session& session, const Query& query, const Scope* outer)
        : session_(session), query_(query), outer_(outer) {}

    QueryText Translate(QueryUse use) {
        for (const auto& member : query_.members) members_.push_back(Translated(member));
        UnifyTypes();
        QueryText result;
        for (std::size_t i = 0; i < members_.size(); ++i) {
            QueryText text = PrintSelect(session_, members_[i], use == QueryUse::Table);
            if (i == 0)
                result = std::move(text);
            else
                result.text += (query_.members[i].all ? " UNION ALL " : " UNION ") + text.text;
        }
        if (use == QueryUse::Result) result.text += OrderText();
        return result;
    }

private:
    // SQLite orders and limits a whole union only: a member with a TOP becomes a table.
    SelectParts Translated(const Query::Member& member) {
        const SelectCore* core = PlainCore(member);
        SelectParts parts;
        if (core) {
            SelectTranslator translator(session_, *core, outer_);
            if (members_.empty()) NoteWholeOrder(&translator, translator.Items());
            if (member.nested) NoteMemberOrder(translator, member.nested->orderBy);
            parts = PartsOf(translator);
        } else {
            parts = SelectFromQuery(session_, TableOf(member));
            if (members_.empty()) NoteWholeOrder(nullptr, parts.items);
        }
        parts.comparesRows = parts.comparesRows || ComparesRows();
        return parts;
    }

    static const SelectCore* PlainCore(const Query::Member& member) {
        const SelectCore* core = member.core.get();
        if (member.nested && member.nested->members.size() == 1) core = member.nested->members.front().core.get();
        return core && !core->top ? core : nullptr;
    }

    QueryText TableOf(const Query::Member& member) {
        if (member.nested) return TranslateQuery(session_, *member.nested, outer_, QueryUse::Table);
        SelectTranslator translator(session_, *member.core, outer_);
        QueryText table = PrintSelect(session_, PartsOf(translator), true);
        table.text += translator.LimitText();
        return table;
    }

    bool ComparesRows() const {
        for (const auto& member : query_.members)
            if (&member != &query_.members.front() && !member.all) return true;
        return false;
    }

    // The order of the whole goes by the first member's columns.
    void NoteWholeOrder(SelectTranslator* first, const std::vector<OutputItem>& items) {
        for (const auto& item : query_.orderBy) {
            auto position = first ? first->PositionOf(*item.expression) : std::nullopt;
            const auto* column = If<Column>(item.expression.get());
            for (std::size_t i = 0; i < items.size() && !position && column && column->table.empty(); ++i)
                if (SameName(items[i].name, column->name)) position = i + 1;
            if (!position)
                throw SqlError(ErrorKind::Syntax, "a union is ordered by its columns only", item.expression->offset);
            wholeOrder_.push_back({*position, item.descending});
        }
    }

    void NoteMemberOrder(SelectTranslator& translator, const std::vector<OrderItem>& order) {
        if (order.empty()) return;
        OrderKeys keys;
        for (const auto& item : order) {
            const auto position = translator.PositionOf(*item.expression);
            if (position) keys.push_back({*position, item.descending});
        }
        const bool whole = keys.size() == order.size();
        const bool agrees = !memberOrder_ || *memberOrder_ == keys;
        memberOrder_ = whole && agrees ? keys : OrderKeys();
    }

    void UnifyTypes() {
        const std::size_t count = members_.front().items.size();
        for (const auto& member : members_)
            if (member.items.size() != count)
                throw SqlError(ErrorKind::Syntax, "the members of a union have different numbers of columns",
                               query_.offset);
        for (std::size_t i = 0; i < count; ++i) {
            Type common = Type::Null;
            for (const auto& member : members_) common = CommonType(common, member.items[i].term.type);
            for (auto& member : members_) {
                Term& term = member.items[i].term;
                term = ConvertedTerm(session_, std::move(term), common);
                // A column of Nulls has the type of the others.
                term.type = common;
            }
        }
    }

    std::string OrderText() const {
        const OrderKeys& keys = query_.orderBy.empty() && memberOrder_ ? *memberOrder_ : wholeOrder_;
        std::string text;
        for (const auto& [position, descending] : keys) {
            const Term& column = members_.front().items[position - 1].term;
            Term key = ConstantTerm(std::to_string(position), column.type);
            key.column = column.column;
            text += (text.empty() ? " ORDER BY " : ", ") + CollatedTerm(std::move(key)).text;
            if (descending) text += " DESC";
        }
        return text;
    }

    Session& session_;
    const Query& query_;
    const Scope* outer_;
    std::vector<SelectParts> members_;
    OrderKeys wholeOrder_;
    std::optional<OrderKeys> memberOrder_;
};

}  // namespace

QueryText TranslateUnion(Session& session, const Query& query, const Scope* outer, QueryUse use) {
    return UnionTranslator(session, query, outer).Translate(use);
}

}  // namespace kpTables::sql
