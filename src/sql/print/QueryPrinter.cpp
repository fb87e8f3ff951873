// Queries. FROM is printed first, as it names the queries inside it.
#include <algorithm>
#include <array>
#include <utility>

#include "sql/bind/Walk.h"
#include "sql/print/Printer.h"

namespace kpTables::sql::print {

namespace {

bool IsOfEqualities(const bind::TermPtr& condition) {
    const auto isEquality = [](const bind::TermPtr& term) {
        const auto* test = bind::If<bind::Comparison>(term);
        return test && test->op == bind::ComparisonOperator::Equal;
    };
    const auto* both = bind::If<bind::Logic>(condition);
    if (!both || both->op != bind::LogicOperator::And) return !condition || isEquality(condition);
    return std::all_of(both->operands.begin(), both->operands.end(), isEquality);
}

bool IsOneGroupUnseen(const bind::Select& select) {
    return select.grouped && select.groupBy.empty() && !bind::ShowsAggregate(select);
}

constexpr std::array<std::string_view, 4> kSetOperations = {" UNION ", " UNION ALL ", " INTERSECT ", " EXCEPT "};

}  // namespace

std::string Printer::Query(const bind::Query& query) {
    const bool labelled = query.use == bind::QueryUse::Table;
    std::string text;
    for (const auto& member : query.members) {
        if (!text.empty()) text += kSetOperations[static_cast<std::size_t>(member.operation)];
        text += Select(member.select, labelled);
    }
    // Columns that are compared bring their collation along. Naming it again makes an engine misplace the last member's
    // GROUP BY.
    const bool isCollated = query.members.front().select.comparesRows;
    std::string separator = " ORDER BY ";
    for (const bind::OrderKey& key : query.orderBy) {
        text += separator;
        text += isCollated ? engine_.OrderKey(std::to_string(*key.position), key.descending) : Position(key);
        separator = ", ";
    }
    return text + Limit(query.limit, {});
}

std::string Printer::Limit(const std::optional<bind::RowLimit>& limit, const std::string& unordered) const {
    if (!limit) return {};
    if (!limit->percent) return engine_.Limit(limit->rows, limit->skip);
    constexpr long long kWhole = 100 * 1000000LL;
    return " LIMIT (SELECT (COUNT(*) * " + std::to_string(*limit->percent) + " + " + std::to_string(kWhole - 1) +
           ") / " + std::to_string(kWhole) + " FROM (" + unordered + ") AS " + engine_.Name("all rows") + ")";
}

std::string Printer::Select(const bind::Select& select, bool labelled) {
    std::string rest = From(select.from);
    rest += Clause(" WHERE ", select.where);
    rest += Groups(select);
    std::string text = (select.distinct ? "SELECT DISTINCT " : "SELECT ") + Items(select, labelled) + rest;
    text += Clause(" HAVING ", select.having);
    const std::string limit = Limit(select.limit, text);
    return text + Orders(select) + limit;
}

std::string Printer::From(const std::vector<bind::TablePtr>& from) {
    std::string text;
    for (const bind::TablePtr& table : from) text.append(text.empty() ? " FROM " : ", ").append(Table(*table));
    return text;
}

std::string Printer::Table(const bind::Table& table) {
    if (table.source) return SourceText(*table.source);
    std::string text = Table(*table.left);
    text += engine_.JoinWord(table.method);
    text += table.right->source ? Table(*table.right) : "(" + Table(*table.right) + ")";
    return text + " ON " + Condition(*table.on).text;
}

std::string Printer::SourceText(const bind::Source& source) {
    if (source.table && source.alias.empty()) return SourceName(source);
    const std::string text = source.table            ? engine_.Name(source.table->name)
                             : source.common.empty() ? QueryInParentheses(*source.query)
                                                     : engine_.Name(source.common);
    return text + " AS " + SourceName(source);
}

std::string Printer::Clause(std::string_view words, const bind::TermPtr& condition) {
    return condition ? std::string(words) + Condition(*condition).text : std::string();
}

std::string Printer::Groups(const bind::Select& select) {
    std::string text;
    for (const bind::TermPtr& key : select.groupBy)
        text.append(text.empty() ? " GROUP BY " : ", ")
            .append(engine_.GroupKey(CollatedTerm(*key).text, select.sortsGroups));
    return text;
}

std::string Printer::Items(const bind::Select& select, bool labelled) {
    std::string text;
    const bool oneGroup = IsOneGroupUnseen(select);
    for (const bind::Output& item : select.items) {
        std::string shown =
            engine_.Item(*item.term, select.comparesRows ? CollatedTerm(*item.term) : Term(*item.term)).text;
        // Some engines take HAVING only beside GROUP BY or an item with an aggregate; a HAVING that holds is not
        // printed.
        if (oneGroup && text.empty()) shown = "CASE WHEN COUNT(*) >= 0 THEN " + shown + " END";
        text.append(text.empty() ? "" : ", ").append(shown);
        if (labelled || item.aliased) text += " AS " + engine_.Name(labelled ? item.label : item.name);
    }
    return text;
}

std::string Printer::Orders(const bind::Select& select) {
    std::string text;
    const bool implied = std::all_of(select.orderBy.begin(), select.orderBy.end(),
                                     [](const bind::OrderKey& key) { return key.isImplied; });
    if (implied && engine_.KeepsOrder(select)) return text;
    for (const bind::OrderKey& key : select.orderBy) {
        const bool byPosition = key.position && !bind::StoredColumn(*key.term);
        text += text.empty() ? " ORDER BY " : ", ";
        if (byPosition) {
            text += Position(key);
            continue;
        }
        std::string printed = CollatedTerm(*key.term).text;
        if (key.term->kind == bind::TermKind::RowId)
            printed = engine_.RowIdKey(std::move(printed), !IsOfEqualities(select.where));
        text += engine_.OrderKey(std::move(printed), key.descending);
    }
    return text;
}

std::string Printer::Position(const bind::OrderKey& key) const {
    Piece number = Collated(*key.term, {std::to_string(*key.position)});
    return engine_.OrderKey(std::move(number.text), key.descending);
}

}  // namespace kpTables::sql::print
