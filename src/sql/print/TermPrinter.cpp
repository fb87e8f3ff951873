// Expressions.
#include <utility>

#include "sql/SqlError.h"
#include "sql/print/Printer.h"

namespace kpTables::sql::print {

namespace {

using bind::As;
using bind::TermKind;

std::string_view SignOf(bind::ArithmeticOperator op) {
    return op == bind::ArithmeticOperator::Add ? "+" : op == bind::ArithmeticOperator::Subtract ? "-" : "*";
}

Precedence PrecedenceOf(bind::ArithmeticOperator op) {
    return op == bind::ArithmeticOperator::Multiply ? Precedence::Multiplicative : Precedence::Additive;
}

Precedence PrecedenceOf(bind::ComparisonOperator op) {
    switch (op) {
        case bind::ComparisonOperator::Less:
        case bind::ComparisonOperator::LessEqual:
        case bind::ComparisonOperator::Greater:
        case bind::ComparisonOperator::GreaterEqual:
            return Precedence::Relational;
        default:
            return Precedence::Equality;
    }
}

// Engines limit the nesting of expressions, and a chain nests as deep as it is long: a long one is printed as a
// balanced tree.
Piece Chain(std::vector<Piece>& parts, std::size_t begin, std::size_t end, std::string_view word, Precedence precedence,
            std::size_t longest) {
    if (end - begin > longest) {
        const std::size_t middle = begin + (end - begin) / 2;
        Piece first = Chain(parts, begin, middle, word, precedence, longest);
        return Operation(std::move(first), word, Chain(parts, middle, end, word, precedence, longest), precedence);
    }
    Piece joined = std::move(parts[begin]);
    // Both operators are associative: an operand of the same kind needs no parentheses.
    for (std::size_t i = begin + 1; i < end; ++i)
        joined = Operation(std::move(joined), word, {Enclosed(std::move(parts[i]), precedence)}, precedence);
    return joined;
}

Piece Between(const bind::BetweenTerm& term, std::vector<Piece> parts) {
    Piece bounds = Operation(std::move(parts[1]), "AND", std::move(parts[2]), Precedence::Relational);
    bounds.precedence = Precedence::Primary;
    return Test(std::move(parts[0]), term.negated ? "NOT BETWEEN" : "BETWEEN", std::move(bounds), Precedence::Equality);
}

}  // namespace

Piece Printer::Term(const bind::Term& top) {
    // The first operands are visited in a loop: a chain of operators may be thousands deep there.
    std::vector<const bind::Term*> spine{&top};
    while (!spine.back()->operands.empty()) spine.push_back(spine.back()->operands.front().get());
    Piece piece;
    for (; !spine.empty(); spine.pop_back()) {
        const bind::Term& term = *spine.back();
        std::vector<Piece> parts;
        if (!term.operands.empty()) parts.push_back(std::exchange(piece, {}));
        for (std::size_t i = 1; i < term.operands.size(); ++i) parts.push_back(Term(*term.operands[i]));
        piece = Compose(term, std::move(parts));
    }
    return piece;
}

Piece Printer::Compose(const bind::Term& term, std::vector<Piece> parts) {
    switch (term.kind) {
        case TermKind::Parameter: {
            const auto& parameter = As<bind::ParameterTerm>(term);
            return {engine_.Parameter(parameters_.at(parameter.sequence), parameter)};
        }
        case TermKind::Constant:
            return engine_.Constant(As<bind::ConstantTerm>(term));
        case TermKind::Column:
            return Column(As<bind::ColumnTerm>(term));
        case TermKind::RowId: {
            const auto& source = *As<bind::RowIdTerm>(term).source;
            return {SourceName(source) + "." + engine_.RowIdName(*source.table)};
        }
        case TermKind::Arithmetic: {
            const auto& operation = As<bind::Arithmetic>(term);
            return Operation(engine_.Widened(operation, std::move(parts[0])), SignOf(operation.op), std::move(parts[1]),
                             PrecedenceOf(operation.op));
        }
        case TermKind::Concatenation:
            return engine_.Concatenated(As<bind::Concatenation>(term), std::move(parts[0]), std::move(parts[1]));
        case TermKind::Negation:
            return {"-" + Enclosed(std::move(parts[0]), Precedence::Primary), Precedence::Unary};
        case TermKind::Comparison:
            return Comparison(As<bind::Comparison>(term), std::move(parts));
        case TermKind::RowComparison:
            return RowComparison(As<bind::RowComparison>(term), parts);
        case TermKind::Between:
            return Between(As<bind::BetweenTerm>(term), std::move(parts));
        case TermKind::InList: {
            Piece operand = std::move(parts.front());
            parts.erase(parts.begin());
            return Membership(std::move(operand), As<bind::InListTerm>(term).negated, Function("", parts));
        }
        case TermKind::InQuery: {
            const auto& in = As<bind::InQueryTerm>(term);
            return Membership(std::move(parts[0]), in.negated, {QueryInParentheses(*in.query)});
        }
        case TermKind::Exists:
            return {"EXISTS " + QueryInParentheses(*As<bind::ExistsTerm>(term).query)};
        case TermKind::ScalarQuery:
            return {QueryInParentheses(*As<bind::ScalarQuery>(term).query)};
        case TermKind::Logic:
            return Logic(As<bind::Logic>(term), std::move(parts));
        case TermKind::Not:
            return {"NOT " + Enclosed(engine_.Condition(*term.operands[0], std::move(parts[0])), Precedence::Not),
                    Precedence::Not};
        case TermKind::Call:
            return Call(As<bind::CallTerm>(term), parts);
        case TermKind::Aggregate:
            return Aggregate(As<bind::Aggregate>(term), std::move(parts));
        case TermKind::Case:
            return Case(As<bind::CaseTerm>(term), std::move(parts));
        case TermKind::DateOfParts:
            return Function(engine_.FunctionName("ymd"), parts);
        case TermKind::Conversion:
            return engine_.Converted(std::move(parts[0]), As<bind::Conversion>(term));
        case TermKind::RangeCheck:
            return engine_.Checked(std::move(parts[0]), term.type);
        case TermKind::PredicateValue:
            return engine_.PredicateValue(parts[0]);
        case TermKind::Collation:
            return engine_.Collated(std::move(parts[0]));
        case TermKind::Likely:
            return engine_.Likely(std::move(parts[0]));
        case TermKind::Literal:
            break;  // none is left in a bound statement
    }
    return {};
}

Piece Printer::Call(const bind::CallTerm& call, const std::vector<Piece>& parts) const {
    const std::string name = engine_.FunctionName(call.name);
    if (!name.empty()) return Function(name, parts);
    throw SqlError(ErrorKind::Unsupported,
                   "the book's engine does not have the function '" + std::string(call.name) + "'", call.offset);
}

Piece Printer::Condition(const bind::Term& term) { return engine_.Condition(term, Term(term)); }

Piece Printer::Case(const bind::CaseTerm& term, std::vector<Piece> parts) const {
    Piece piece{"CASE"};
    std::size_t i = 0;
    if (term.hasOperand) piece.text.append(" ").append(parts[i++].text);
    for (; i + 1 < parts.size(); i += 2) {
        if (!term.hasOperand) parts[i] = engine_.Condition(*term.operands[i], std::move(parts[i]));
        piece.text.append(" WHEN ").append(parts[i].text).append(" THEN ").append(parts[i + 1].text);
    }
    if (term.hasElse) piece.text.append(" ELSE ").append(parts.back().text);
    piece.text.append(" END");
    return piece;
}

Piece Printer::Column(const bind::ColumnTerm& column) {
    const bind::Source& source = *column.source;
    const bind::SourceColumn& named = source.columns[column.column];
    return {SourceName(source) + "." + engine_.Name(source.table ? named.name : named.label)};
}

Piece Printer::Comparison(const bind::Comparison& term, std::vector<Piece> parts) const {
    return Test(std::move(parts[0]), engine_.ComparisonSign(term.op), std::move(parts[1]), PrecedenceOf(term.op));
}

Piece Printer::RowComparison(const bind::RowComparison& term, const std::vector<Piece>& parts) const {
    constexpr auto kParts = static_cast<std::ptrdiff_t>(bind::RowComparison::kParts);
    Piece left = Function("", {parts.begin(), parts.begin() + kParts});
    return Operation(std::move(left), engine_.ComparisonSign(term.op),
                     Function("", {parts.begin() + kParts, parts.end()}), Precedence::Relational);
}

Piece Printer::Logic(const bind::Logic& term, std::vector<Piece> parts) const {
    const bool conjunction = term.op == bind::LogicOperator::And;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        parts[i] = engine_.Condition(*term.operands[i], std::move(parts[i]));
        const auto* inner = bind::If<bind::Logic>(term.operands[i]);
        if (inner && inner->isUnit) parts[i] = {"(" + parts[i].text + ")"};
    }
    return Chain(parts, 0, parts.size(), conjunction ? "AND" : "OR", conjunction ? Precedence::And : Precedence::Or,
                 engine_.LongestChain());
}

Piece Printer::Aggregate(const bind::Aggregate& term, std::vector<Piece> parts) const {
    Piece argument = term.allRows ? Piece{"*"} : std::move(parts.front());
    if (term.distinct) argument.text.insert(0, "DISTINCT ");
    Piece call = Function(engine_.AggregateName(term.function), {std::move(argument)});
    if (term.filtered)
        call.text.append(" FILTER (WHERE ")
            .append(engine_.Condition(*term.Filter(), std::move(parts.back())).text)
            .append(")");
    return engine_.Aggregated(term, std::move(call));
}

Piece Printer::Membership(Piece operand, bool negated, Piece list) const {
    return Test(std::move(operand), negated ? "NOT IN" : "IN", std::move(list), Precedence::Equality);
}

Piece Printer::CollatedTerm(const bind::Term& term) { return Collated(term, Term(term)); }

Piece Printer::Collated(const bind::Term& term, Piece piece) const {
    const bool plain = term.type != Type::Text || bind::StoredColumn(term) || term.kind == TermKind::Collation;
    return plain ? piece : engine_.Collated(std::move(piece));
}

std::string Printer::SourceName(const bind::Source& source) {
    if (!source.alias.empty()) return engine_.Name(source.alias);
    if (source.table) return engine_.Name(source.table->name);
    std::string& name = names_[&source];
    // No statement can contain such a name.
    if (name.empty()) name = engine_.Name("query " + std::to_string(++unnamed_));
    return name;
}

}  // namespace kpTables::sql::print
