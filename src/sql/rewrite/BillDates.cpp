// A date that a statement builds from a year, a month and a day column.
#include <algorithm>
#include <array>
#include <optional>
#include <unordered_map>
#include <utility>

#include "sql/rewrite/BoundNames.h"
#include "sql/rewrite/Rules.h"

namespace kpTables::sql::rewrite {

namespace {

constexpr std::size_t kJoins = 4;

// The whole-number column whose text form the term is: as it is, converted, or cast to characters.
TermPtr PartOf(TermPtr term) {
    const auto* call = If<CallTerm>(term);
    if (call && (call->name == "char" || call->name == "substr")) term = call->operands.front();
    if (term->kind == TermKind::Conversion && term->type == Type::Text) term = term->operands.front();
    const bool whole = term->type == Type::Short || term->type == Type::Long;
    return whole && If<ColumnTerm>(term) ? term : nullptr;
}

const ParameterTerm* SeparatorOf(const Term& term) {
    const auto* literal = If<ParameterTerm>(&term);
    const bool separates = literal && literal->literal == LiteralKind::Text && literal->binding == Binding::Text &&
                           (literal->text == "-" || literal->text == "/");
    return separates ? literal : nullptr;
}

// The text that the term reads as a date, or null.
const Term* DateText(const Term& term) {
    const auto* call = If<CallTerm>(&term);
    const bool reads =
        (term.kind == TermKind::Conversion && term.type == Type::Date) || (call && call->name == "server_date");
    return reads ? term.operands.front().get() : nullptr;
}

class Recognizer {
public:
    explicit Recognizer(std::vector<int>& fixedLiterals) : fixedLiterals_(fixedLiterals) {}

    TermPtr operator()(const TermPtr& term) {
        switch (term->kind) {
            case TermKind::Conversion:
            case TermKind::Call:
                return Recognized(term);
            case TermKind::Comparison:
                return Compared(term, As<Comparison>(*term));
            case TermKind::Between:
                return Between(term, As<BetweenTerm>(*term));
            case TermKind::Not:
                return Negated(term);
            default:
                return term;
        }
    }

private:
    TermPtr Recognized(const TermPtr& term) {
        const Term* text = DateText(*term);
        if (!text) return term;
        // ((((y & '-') & m) & '-') & d): from the right, the operands are d, '-', m, '-' and the rest is y.
        std::array<TermPtr, kJoins + 1> operands;
        for (std::size_t i = kJoins; i > 0; --i) {
            const auto* join = If<Concatenation>(text);
            if (!join) return term;
            operands[i] = join->operands[1];
            operands[i - 1] = join->operands[0];
            text = operands[i - 1].get();
        }
        TermPtr year = PartOf(operands[0]);
        TermPtr month = PartOf(operands[2]);
        TermPtr day = PartOf(operands[4]);
        const auto* first = SeparatorOf(*operands[1]);
        const auto* second = SeparatorOf(*operands[3]);
        if (!year || !month || !day || !first || !second) return term;
        FixLiteral(fixedLiterals_, first->ordinal);
        FixLiteral(fixedLiterals_, second->ordinal);
        auto date = std::make_shared<DateOfParts>(std::move(year), std::move(month), std::move(day));
        date->offset = term->offset;
        return date;
    }

    // Only a constant can be split into parts once; anything else is compared as a date.
    static bool ComparesByColumns(const Term& bill, const Term& other) {
        return bill.kind == TermKind::DateOfParts && (other.kind == TermKind::DateOfParts || other.constant) &&
               other.type != Type::Null;
    }

    TermPtr Compared(const TermPtr& term, const Comparison& comparison) {
        const TermPtr& left = comparison.operands[0];
        const TermPtr& right = comparison.operands[1];
        if (comparison.op > ComparisonOperator::GreaterEqual) return term;
        if (ComparesByColumns(*left, *right)) return ByColumns(comparison.op, *left, right);
        if (ComparesByColumns(*right, *left)) return ByColumns(Mirrored(comparison.op), *right, left);
        return term;
    }

    TermPtr Between(const TermPtr& term, const BetweenTerm& between) {
        const auto& operands = between.operands;
        if (!ComparesByColumns(*operands[0], *operands[1]) || !ComparesByColumns(*operands[0], *operands[2]))
            return term;
        TermPtr low = ByColumns(ComparisonOperator::GreaterEqual, *operands[0], operands[1]);
        auto high = ByColumns(ComparisonOperator::LessEqual, *operands[0], operands[2]);
        high->isUnit = true;
        TermPtr both = std::make_shared<Logic>(LogicOperator::And, Terms{std::move(low), std::move(high)});
        return between.negated ? Negated(std::make_shared<NotTerm>(std::move(both))) : both;
    }

    // A comparison by columns may be false for a date with a Null part, where that of the dates is Null. A condition on
    // rows takes both alike, but for its opposite they differ: there, the Null is kept.
    TermPtr Negated(const TermPtr& term) const {
        return Changed(term, [this](const TermPtr& part) -> TermPtr {
            const auto found = byColumns_.find(part);
            if (found == byColumns_.end()) return part;
            Terms either{part};
            for (const TermPtr& column : found->second)
                either.push_back(Compare(ComparisonOperator::NotEqual, column, column));
            return std::make_shared<Logic>(LogicOperator::Or, std::move(either));
        });
    }

    // The year, month and day to compare a bill's date with. A time of day is the day's fraction: a bill's date has
    // none, so it is before any time of its day and equals no date that has one.
    static Terms PartsOf(const TermPtr& date) {
        if (date->kind == TermKind::DateOfParts) return date->operands;
        const auto* literal = If<ParameterTerm>(date);
        if (!literal || literal->binding != Binding::Date)
            return {Call("year", {date}, Type::Short), Call("month", {date}, Type::Short),
                    Call("day_and_time", {date}, Type::Double)};
        constexpr std::pair<Binding, Type> kParts[] = {
            {Binding::DateYear, Type::Short}, {Binding::DateMonth, Type::Short}, {Binding::DateDay, Type::Double}};
        Terms parts;
        for (const auto& [binding, type] : kParts) {
            auto part = std::make_shared<ParameterTerm>(*literal);
            part->binding = binding;
            part->type = type;
            part->sequence += static_cast<int>(parts.size());
            parts.push_back(std::move(part));
        }
        return parts;
    }

    std::shared_ptr<Logic> ByColumns(ComparisonOperator op, const Term& bill, const TermPtr& other) {
        const Terms& columns = bill.operands;
        Terms parts = PartsOf(other);
        Terms mayBeNull = columns;
        if (other->kind == TermKind::DateOfParts) mayBeNull.insert(mayBeNull.end(), parts.begin(), parts.end());
        auto condition = Conditions(op, columns, parts, mayBeNull);
        byColumns_.emplace(condition, std::move(mayBeNull));
        return condition;
    }

    static std::shared_ptr<Logic> Conditions(ComparisonOperator op, const Terms& columns, const Terms& parts,
                                             const Terms& mayBeNull) {
        Terms conditions;
        if (op == ComparisonOperator::Equal) {
            for (std::size_t i = 0; i < columns.size(); ++i) conditions.push_back(Compare(op, columns[i], parts[i]));
            return std::make_shared<Logic>(LogicOperator::And, std::move(conditions));
        }
        Terms rows = columns;
        rows.insert(rows.end(), parts.begin(), parts.end());
        conditions.push_back(std::make_shared<RowComparison>(op, std::move(rows)));
        // A date with a Null part is Null, but rows are compared by the first parts that differ, ignoring the rest.
        for (const auto& part : mayBeNull) conditions.push_back(Compare(ComparisonOperator::Equal, part, part));
        return std::make_shared<Logic>(LogicOperator::And, std::move(conditions));
    }

    std::vector<int>& fixedLiterals_;
    std::unordered_map<TermPtr, Terms> byColumns_;  // the parts that may be Null of each condition made
};

// Rows that meet the condition have a value in the column.
bool RefusesNull(const TermPtr& condition, const Term& column) {
    if (!condition) return false;
    const auto& operands = condition->operands;
    if (const auto* comparison = If<Comparison>(condition))
        return comparison->op <= ComparisonOperator::GreaterEqual &&
               (SameTerm(*operands[0], column) || SameTerm(*operands[1], column));
    const auto* logic = If<Logic>(condition);
    const bool holds = condition->kind == TermKind::Likely || (logic && logic->op == LogicOperator::And);
    return holds && std::any_of(operands.begin(), operands.end(),
                                [&](const TermPtr& part) { return RefusesNull(part, column); });
}

// Dates with a Null part are one Null: their columns would tell them apart.
bool MayBeSplit(const Term& key, const Select& select) {
    return key.kind == TermKind::DateOfParts &&
           std::all_of(key.operands.begin(), key.operands.end(),
                       [&](const TermPtr& part) { return RefusesNull(select.where, *part); });
}

void SplitKeys(Select& select) {
    std::vector<TermPtr> groups;
    for (TermPtr& key : select.groupBy) {
        if (MayBeSplit(*key, select))
            groups.insert(groups.end(), key->operands.begin(), key->operands.end());
        else
            groups.push_back(std::move(key));
    }
    select.groupBy = std::move(groups);
    std::vector<OrderKey> order;
    for (OrderKey& key : select.orderBy) {
        const bool shown = key.position && (select.distinct || select.grouped);
        if (!shown && MayBeSplit(*key.term, select))
            for (const TermPtr& part : key.term->operands) order.push_back({part, key.descending});
        else
            order.push_back(std::move(key));
    }
    select.orderBy = std::move(order);
}

}  // namespace

void RecognizeBillDates(BoundStatement& statement) {
    Recognizer recognize(statement.fixedLiterals);
    const auto changed = [&](const TermPtr& expression) {
        const bool reads = AnyTerm(*expression, [](const Term& term) { return DateText(term) != nullptr; });
        return reads ? Changed(expression, std::ref(recognize)) : expression;
    };
    ForEachQuery(statement, [&](Query& query) {
        for (Query::Member& member : query.members) ChangeExpressions(member.select, changed);
        for (OrderKey& key : query.orderBy) key.term = changed(key.term);
    });
    if (statement.insert)
        for (Terms& row : statement.insert->rows)
            for (TermPtr& value : row) value = changed(value);
    if (statement.update) {
        for (Update::Assignment& assignment : statement.update->assignments)
            assignment.value = changed(assignment.value);
        if (statement.update->where) statement.update->where = changed(statement.update->where);
    }
    if (statement.erase && statement.erase->where) statement.erase->where = changed(statement.erase->where);
}

void SplitBillDateKeys(BoundStatement& statement) {
    ForEachQuery(statement, [](Query& query) {
        for (Query::Member& member : query.members) SplitKeys(member.select);
    });
}

}  // namespace kpTables::sql::rewrite
