#include "sql/sqlite/Comparison.h"

#include <utility>

#include "sql/sqlite/Conversion.h"

namespace kpTables::sql {

namespace {

// What values are compared as.
enum class Domain { Number, Boolean, Money, Date, Text };

struct Seen {
    bool date = false;
    bool money = false;
    bool text = false;    // other than a literal
    bool number = false;  // other than Boolean
    bool boolean = false;
    bool textLiteral = false;  // which reads as whatever stands on the other side
};

Seen Look(const std::vector<Term*>& terms) {
    Seen seen;
    for (const Term* term : terms) {
        const bool literal = term->literal != nullptr;
        seen.date |= term->type == Type::Date;
        seen.money |= term->type == Type::Currency;
        seen.boolean |= term->type == Type::Boolean;
        seen.number |= IsNumeric(term->type) && term->type != Type::Boolean;
        (literal ? seen.textLiteral : seen.text) |= term->type == Type::Text;
    }
    return seen;
}

Domain DomainOf(const std::vector<Term*>& terms) {
    const Seen seen = Look(terms);
    if (seen.date) return Domain::Date;
    if (seen.text && (seen.number || seen.boolean)) RaiseMismatch(*terms.front(), "a text is compared with a number");
    if (seen.money) return Domain::Money;
    if (seen.number) return Domain::Number;
    if (seen.boolean) return Domain::Boolean;
    return seen.text || seen.textLiteral ? Domain::Text : Domain::Number;
}

// Currency is stored in ten-thousandths: whatever it meets is brought to them, so that a column of it keeps its index.
Term InMoney(Session& session, Term term) {
    if (term.literal) return BoundTerm(session, term, Binding::CurrencyBound);
    if (term.type != Type::Double) return ConvertedTerm(session, std::move(term), Type::Currency);
    return OperatorTerm(std::move(term), "*", ConstantTerm("10000.0", Type::Double), Precedence::Multiplicative,
                        Type::Currency);
}

Term InDomain(Session& session, Term term, Domain domain) {
    switch (domain) {
        case Domain::Money:
            return InMoney(session, std::move(term));
        case Domain::Date:
            return ConvertedTerm(session, std::move(term), Type::Date);
        case Domain::Text:
            return ConvertedTerm(session, std::move(term), Type::Text);
        case Domain::Boolean:
            if (term.literal) return BoundTerm(session, term, Binding::Boolean);
            return ValueTerm(session, std::move(term));
        case Domain::Number:
            break;
    }
    return RealTerm(session, std::move(term));
}

struct ComparisonSpelling {
    std::string_view text;
    Precedence precedence;
};

ComparisonSpelling SpellingOf(BinaryOperator op) {
    switch (op) {
        case BinaryOperator::Equal:
            return {"=", Precedence::Equality};
        case BinaryOperator::NotEqual:
            return {"<>", Precedence::Equality};
        case BinaryOperator::Less:
            return {"<", Precedence::Relational};
        case BinaryOperator::LessEqual:
            return {"<=", Precedence::Relational};
        case BinaryOperator::Greater:
            return {">", Precedence::Relational};
        default:
            return {">=", Precedence::Relational};
    }
}

BinaryOperator Mirrored(BinaryOperator op) {
    switch (op) {
        case BinaryOperator::Less:
            return BinaryOperator::Greater;
        case BinaryOperator::LessEqual:
            return BinaryOperator::GreaterEqual;
        case BinaryOperator::Greater:
            return BinaryOperator::Less;
        case BinaryOperator::GreaterEqual:
            return BinaryOperator::LessEqual;
        default:
            return op;
    }
}

// The year, month and day to compare a bill's date with. A time of day stands as the day's fraction: a bill's date has
// none, so it lies before any time of its day and equals no date that has one.
DateColumns PartsOf(Session& session, const Term& term) {
    if (term.dateColumns) return *term.dateColumns;
    if (term.literal && !term.negative && !term.serverDate)
        return {session.Parameter(*term.literal, Binding::DateYear),
                session.Parameter(*term.literal, Binding::DateMonth),
                session.Parameter(*term.literal, Binding::DateDay)};
    const Term date = ConvertedTerm(session, term, Type::Date);
    return {FunctionTerm("kp_year", {date}, Type::Short).text, FunctionTerm("kp_month", {date}, Type::Short).text,
            FunctionTerm("kp_day_and_time", {date}, Type::Double).text};
}

// A date with a Null part is Null, but a row value is compared by the first parts that differ, without a look at the
// others.
std::string PartsKnown(const DateColumns& date) {
    std::string text;
    for (const std::string& part : {date.year, date.month, date.day})
        text.append(" AND ").append(part).append(" = ").append(part);
    return text;
}

Term BillDateComparison(Session& session, BinaryOperator op, const Term& bill, const Term& other) {
    const DateColumns& columns = *bill.dateColumns;
    const DateColumns parts = PartsOf(session, other);
    Term term = ConstantTerm({}, Type::Boolean, bill.offset);
    term.predicate = true;
    term.constant = false;
    if (op == BinaryOperator::Equal) {
        term.text = columns.year + " = " + parts.year + " AND " + columns.month + " = " + parts.month + " AND " +
                    columns.day + " = " + parts.day;
        term.precedence = Precedence::And;
        return term;
    }
    const auto spelling = SpellingOf(op);
    const auto row = [](const DateColumns& c) { return "(" + c.year + ", " + c.month + ", " + c.day + ")"; };
    term.text = row(columns).append(" ").append(spelling.text).append(" ").append(row(parts)) + PartsKnown(columns);
    if (other.dateColumns) term.text += PartsKnown(*other.dateColumns);
    term.precedence = Precedence::And;
    return term;
}

// Only a constant can be cut into parts once and for all; anything else is compared as a date.
bool ComparesByColumns(const Term& bill, const Term& other) {
    return bill.dateColumns && (other.dateColumns || other.literal || other.constant) && other.type != Type::Null;
}

}  // namespace

void MakeComparable(Session& session, Term& operand, std::vector<Term*> values) {
    values.insert(values.begin(), &operand);
    const Domain domain = DomainOf(values);
    for (Term* value : values) *value = InDomain(session, std::move(*value), domain);
    // SQLite takes the collation of the side that is a column, the left one first.
    bool collated = false;
    for (const Term* value : values) collated |= value->column;
    if (!collated || values.size() > 2) operand = CollatedTerm(std::move(operand));
}

Term ComparisonTerm(Session& session, BinaryOperator op, Term left, Term right) {
    if (ComparesByColumns(left, right)) return BillDateComparison(session, op, left, right);
    if (ComparesByColumns(right, left)) return BillDateComparison(session, Mirrored(op), right, left);
    MakeComparable(session, left, {&right});
    const auto spelling = SpellingOf(op);
    return TestTerm(std::move(left), spelling.text, right, spelling.precedence);
}

Term BetweenTerm(Session& session, Term operand, Term low, Term high, bool negated) {
    Term term;
    if (ComparesByColumns(operand, low) && ComparesByColumns(operand, high)) {
        term = BillDateComparison(session, BinaryOperator::GreaterEqual, operand, low);
        term =
            OperatorTerm(std::move(term), "AND", BillDateComparison(session, BinaryOperator::LessEqual, operand, high),
                         Precedence::And, Type::Boolean);
        term.predicate = true;
        if (!negated) return term;
        term.text = "NOT (" + term.text + ")";
        term.precedence = Precedence::Not;
        return term;
    }
    MakeComparable(session, operand, {&low, &high});
    Term bounds = OperatorTerm(std::move(low), "AND", high, Precedence::Relational, Type::Boolean);
    bounds.precedence = Precedence::Primary;
    return TestTerm(std::move(operand), negated ? "NOT BETWEEN" : "BETWEEN", bounds, Precedence::Equality);
}

Term InListTerm(Session& session, Term operand, std::vector<Term> items, bool negated) {
    std::vector<Term*> values;
    for (Term& item : items) values.push_back(&item);
    MakeComparable(session, operand, values);
    // One value compares with = to the same effect, but only the operand's collation counts in a list.
    operand = CollatedTerm(std::move(operand));
    const Term list = FunctionTerm("", items, Type::Unknown);
    return TestTerm(std::move(operand), negated ? "NOT IN" : "IN", list, Precedence::Equality);
}

Term MembershipOperand(Session& session, Term operand, Type column) {
    Term member;
    member.type = column;
    const Domain domain = DomainOf({&operand, &member});
    // The query stays as it is, so that an index answers it: only the operand can be brought to the column's type.
    if (domain == Domain::Date) {
        if (column == Type::Text) RaiseMismatch(operand, "a date is looked for among texts");
        return ConvertedTerm(session, std::move(operand), Type::Date);
    }
    if (column == Type::Currency) return InMoney(session, std::move(operand));
    if (domain == Domain::Text) return CollatedTerm(TextTerm(session, std::move(operand)));
    return RealTerm(session, std::move(operand));
}

}  // namespace kpTables::sql
