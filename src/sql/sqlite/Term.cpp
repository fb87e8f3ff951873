#include "sql/sqlite/Term.h"

#include <algorithm>
#include <utility>

#include "sql/sqlite/FunctionList.h"

namespace kpTables::sql {

namespace {

Precedence Tighter(Precedence precedence) {
    return precedence == Precedence::Primary ? precedence : static_cast<Precedence>(static_cast<int>(precedence) + 1);
}

// What became of a term by an operator: nothing of its own nature is left but its place.
Term Composed(Term part, Type type, Precedence precedence) {
    Term term;
    term.text = std::move(part.text);
    term.type = type;
    term.precedence = precedence;
    term.constant = part.constant;
    term.offset = part.offset;
    return term;
}

}  // namespace

Term ConstantTerm(std::string text, Type type, std::size_t offset) {
    Term term;
    term.text = std::move(text);
    term.type = type;
    term.constant = true;
    term.offset = offset;
    if (!term.text.empty() && term.text.front() == '-') term.precedence = Precedence::Unary;
    return term;
}

std::string Enclosed(const Term& term, Precedence atLeast) {
    return term.precedence < atLeast ? "(" + term.text + ")" : term.text;
}

Term OperatorTerm(Term left, std::string_view op, const Term& right, Precedence precedence, Type type) {
    if (left.precedence < precedence) left.text = "(" + left.text + ")";
    Term term = Composed(std::move(left), type, precedence);
    // Appended in place: a chain of a thousand operands is not copied a thousand times.
    term.text.append(" ").append(op).append(" ").append(Enclosed(right, Tighter(precedence)));
    term.constant = term.constant && right.constant;
    return term;
}

Term TestTerm(Term left, std::string_view op, const Term& right, Precedence precedence) {
    // Tests do not stand as operands of tests without parentheses.
    if (left.precedence <= Precedence::Relational) {
        left.text = "(" + left.text + ")";
        left.precedence = Precedence::Primary;
    }
    Term other = right;
    if (other.precedence <= Precedence::Relational) {
        other.text = "(" + other.text + ")";
        other.precedence = Precedence::Primary;
    }
    Term term = OperatorTerm(std::move(left), op, other, precedence, Type::Boolean);
    term.predicate = true;
    return term;
}

Term FunctionTerm(std::string_view name, const std::vector<Term>& arguments, Type type) {
    Term term;
    term.text.append(name).append("(");
    for (std::size_t i = 0; i < arguments.size(); ++i) term.text.append(i ? ", " : "").append(arguments[i].text);
    term.text.append(")");
    term.type = type;
    term.constant = std::all_of(arguments.begin(), arguments.end(), [](const Term& a) { return a.constant; });
    if (!arguments.empty()) term.offset = arguments.front().offset;
    return term;
}

Term CollatedTerm(Term term) {
    if (term.type != Type::Text || term.column || term.precedence == Precedence::Collation) return term;
    std::string text = Enclosed(term, Precedence::Collation).append(" COLLATE ").append(kTextCollation);
    term = Composed(std::move(term), Type::Text, Precedence::Collation);
    term.text = std::move(text);
    return term;
}

}  // namespace kpTables::sql
