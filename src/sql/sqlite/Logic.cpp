#include "sql/sqlite/Logic.h"

#include <utility>

#include "sql/sqlite/Conversion.h"

namespace kpTables::sql {

namespace {

// On numbers these operators work bit by bit in Jet; a condition is all that is needed of them.
Term Condition(Session& session, Term term) {
    term = PredicateTerm(session, std::move(term));
    if (term.type != Type::Boolean && term.type != Type::Null && term.type != Type::Unknown)
        RaiseMismatch(term, "a condition is expected");
    return term;
}

Term Truth(bool value, std::size_t offset) {
    Term term = ConstantTerm(value ? "1" : "0", Type::Boolean, offset);
    term.predicate = true;
    term.truth = value;
    return term;
}

// SQLite limits how deep an expression nests, and a chain nests as deep as it is long: a long one is printed as a
// balanced tree.
Term Chain(std::vector<Term>& terms, std::size_t begin, std::size_t end, BinaryOperator op) {
    constexpr std::size_t kFlat = 100;
    const bool conjunction = op == BinaryOperator::And;
    const std::string_view word = conjunction ? "AND" : "OR";
    const Precedence precedence = conjunction ? Precedence::And : Precedence::Or;
    Term joined;
    if (end - begin <= kFlat) {
        joined = std::move(terms[begin]);
        // Both operators group as one likes: an operand of the same kind needs no parentheses.
        for (std::size_t i = begin + 1; i < end; ++i) {
            terms[i].text = Enclosed(terms[i], precedence);
            terms[i].precedence = Precedence::Primary;
            joined = OperatorTerm(std::move(joined), word, terms[i], precedence, Type::Boolean);
        }
    } else {
        const std::size_t middle = begin + (end - begin) / 2;
        joined = Chain(terms, begin, middle, op);
        const Term rest = Chain(terms, middle, end, op);
        joined = OperatorTerm(std::move(joined), word, rest, precedence, Type::Boolean);
    }
    joined.predicate = true;
    return joined;
}

}  // namespace

Term JoinedConditions(Session& session, BinaryOperator op, std::vector<Term> terms) {
    const bool neutral = op == BinaryOperator::And;
    const std::size_t offset = terms.front().offset;
    std::vector<Term> conditions;
    for (Term& term : terms) {
        Term condition = Condition(session, std::move(term));
        if (condition.truth != neutral) conditions.push_back(std::move(condition));
    }
    if (conditions.empty()) return Truth(neutral, offset);
    if (conditions.size() == 1) return std::move(conditions.front());
    return Chain(conditions, 0, conditions.size(), op);
}

Term LogicalTerm(Session& session, BinaryOperator op, Term left, Term right) {
    if (op == BinaryOperator::Imp)
        return JoinedConditions(session, BinaryOperator::Or, {NotTerm(session, std::move(left)), std::move(right)});
    left = ValueTerm(session, Condition(session, std::move(left)));
    right = ValueTerm(session, Condition(session, std::move(right)));
    return TestTerm(std::move(left), op == BinaryOperator::Xor ? "<>" : "=", right, Precedence::Equality);
}

Term NotTerm(Session& session, Term operand) {
    operand = Condition(session, std::move(operand));
    if (operand.truth) return Truth(!*operand.truth, operand.offset);
    Term term = ConstantTerm("NOT " + Enclosed(operand, Precedence::Not), Type::Boolean, operand.offset);
    term.precedence = Precedence::Not;
    term.predicate = true;
    term.constant = operand.constant;
    return term;
}

}  // namespace kpTables::sql
