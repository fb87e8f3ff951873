#include <algorithm>
#include <utility>

#include "kpTables/text/Message.h"
#include "sql/bind/Conversions.h"
#include "sql/bind/Operators.h"

namespace kpTables::sql::bind {

namespace {

// What values are compared as.
enum class Domain { Number, Boolean, Money, Date, Text };

struct Seen {
    bool date = false;
    bool money = false;
    bool text = false;    // other than a literal
    bool number = false;  // other than Boolean
    bool boolean = false;
    bool textLiteral = false;  // which takes the type of the other side
    bool numberLiteral = false;
    bool numberTerm = false;  // a number other than a literal
};

Domain DomainOf(const Seen& seen, const Term& first) {
    if (seen.date) return Domain::Date;
    if (seen.text && (seen.number || seen.boolean)) RaiseMismatch(first, Message("a text is compared with a number"));
    if (seen.money) return Domain::Money;
    if (seen.number) return Domain::Number;
    if (seen.boolean) return Domain::Boolean;
    return seen.text || seen.textLiteral ? Domain::Text : Domain::Number;
}

void Look(Seen& seen, Type type, bool literal) {
    seen.date |= type == Type::Date;
    seen.money |= type == Type::Currency;
    seen.boolean |= type == Type::Boolean;
    seen.number |= IsNumeric(type) && type != Type::Boolean;
    (literal ? seen.textLiteral : seen.text) |= type == Type::Text;
    (literal ? seen.numberLiteral : seen.numberTerm) |= IsNumeric(type) && type != Type::Boolean;
}

// Currency is stored in ten-thousandths: the other side is converted to them, so that a Currency column's index serves.
TermPtr InMoney(Context& context, TermPtr term) {
    if (const auto* literal = If<LiteralTerm>(term)) return Bound(context, *literal, Binding::CurrencyBound);
    if (term->type != Type::Double) return Converted(context, std::move(term), Type::Currency);
    auto money = std::make_shared<Conversion>(std::move(term), Type::Currency);
    money->rounded = false;
    return money;
}

TermPtr InDomain(Context& context, TermPtr term, Domain domain) {
    switch (domain) {
        case Domain::Money:
            return InMoney(context, std::move(term));
        case Domain::Date:
            return Converted(context, std::move(term), Type::Date);
        case Domain::Text:
            return Converted(context, std::move(term), Type::Text);
        case Domain::Boolean:
            if (const auto* literal = If<LiteralTerm>(term)) return Bound(context, *literal, Binding::Boolean);
            return AsValue(context, std::move(term));
        case Domain::Number:
            break;
    }
    return AsNumber(context, std::move(term));
}

ComparisonOperator OperatorOf(BinaryOperator op) {
    switch (op) {
        case BinaryOperator::Equal:
            return ComparisonOperator::Equal;
        case BinaryOperator::NotEqual:
            return ComparisonOperator::NotEqual;
        case BinaryOperator::Less:
            return ComparisonOperator::Less;
        case BinaryOperator::LessEqual:
            return ComparisonOperator::LessEqual;
        case BinaryOperator::Greater:
            return ComparisonOperator::Greater;
        default:
            return ComparisonOperator::GreaterEqual;
    }
}

TermPtr RangeOf(const TermPtr& operand, const TermPtr& low, const TermPtr& high, bool negated) {
    return std::make_shared<BetweenTerm>(operand, low, high, negated);
}

// The bound that is the lower or the higher one of two literals when the statement runs.
TermPtr OneOf(const ParameterTerm& bound, int other, bool isHigher) {
    auto one = std::make_shared<ParameterTerm>(bound);
    one->pair = {other, isHigher};
    return one;
}

}  // namespace

void MakeComparable(Context& context, TermPtr& operand, std::vector<TermPtr*> values) {
    values.insert(values.begin(), &operand);
    Seen seen;
    for (const TermPtr* value : values) Look(seen, (*value)->type, (*value)->kind == TermKind::Literal);
    // On the server a flag is compared with 1 and 0.
    const bool flag = !context.IsJet() && seen.boolean && seen.numberLiteral && !seen.numberTerm && !seen.text;
    const Domain domain = flag ? Domain::Boolean : DomainOf(seen, *operand);
    for (TermPtr* value : values) *value = InDomain(context, std::move(*value), domain);
    // The collation is that of the side that is a column, preferably the left one.
    const bool collated =
        std::any_of(values.begin(), values.end(), [](const TermPtr* value) { return StoredColumn(**value); });
    if (!collated || values.size() > 2) operand = Collated(std::move(operand));
}

TermPtr BindComparison(Context& context, BinaryOperator op, TermPtr left, TermPtr right) {
    MakeComparable(context, left, {&right});
    return Compare(OperatorOf(op), std::move(left), std::move(right));
}

TermPtr BindBetween(Context& context, TermPtr operand, TermPtr low, TermPtr high, bool negated) {
    MakeComparable(context, operand, {&low, &high});
    if (!context.IsJet()) return RangeOf(operand, low, high, negated);
    const auto* first = If<ParameterTerm>(low);
    const auto* second = If<ParameterTerm>(high);
    if (first && second && !first->negative && !second->negative && first->ordinal >= 0 && second->ordinal >= 0)
        return RangeOf(operand, OneOf(*first, second->ordinal, false), OneOf(*second, first->ordinal, true), negated);
    return std::make_shared<Logic>(negated ? LogicOperator::And : LogicOperator::Or,
                                   Terms{RangeOf(operand, low, high, negated), RangeOf(operand, high, low, negated)});
}

TermPtr BindInList(Context& context, TermPtr operand, Terms items, bool negated) {
    std::vector<TermPtr*> values;
    for (TermPtr& item : items) values.push_back(&item);
    MakeComparable(context, operand, values);
    // One value compares as with =, except that only the operand's collation counts in a list.
    return std::make_shared<InListTerm>(Collated(std::move(operand)), std::move(items), negated);
}

TermPtr MembershipOperand(Context& context, TermPtr operand, Type column) {
    Seen seen;
    Look(seen, operand->type, operand->kind == TermKind::Literal);
    Look(seen, column, false);
    const Domain domain = DomainOf(seen, *operand);
    // The query stays as it is, so that it can use an index: only the operand is converted to the column's type.
    if (domain == Domain::Date) {
        if (column == Type::Text) RaiseMismatch(*operand, Message("a date is looked for among texts"));
        return Converted(context, std::move(operand), Type::Date);
    }
    if (column == Type::Currency) return InMoney(context, std::move(operand));
    if (domain == Domain::Text) return Collated(AsText(context, std::move(operand)));
    return AsNumber(context, std::move(operand));
}

}  // namespace kpTables::sql::bind
