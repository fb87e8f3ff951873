// Expressions.
#include <functional>
#include <utility>

#include "sql/SqlError.h"
#include "sql/print/Printer.h"

namespace kpTables::sql::print {

namespace {

using bind::As;
using bind::TermKind;

std::string_view SignOf(bind::ArithmeticOperator op) {
    switch (op) {
        case bind::ArithmeticOperator::Add:
            return "+";
        case bind::ArithmeticOperator::Subtract:
            return "-";
        case bind::ArithmeticOperator::Multiply:
            return "*";
        case bind::ArithmeticOperator::Divide:
            break;
    }
    return "/";
}

Precedence PrecedenceOf(bind::ArithmeticOperator op) {
    const bool sum = op == bind::ArithmeticOperator::Add || op == bind::ArithmeticOperator::Subtract;
    return sum ? Precedence::Additive : Precedence::Multiplicative;
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

// How many searched cases are nested in the last or in the first result of a case, up to a limit.
bool IsNestedDeeply(const bind::Term& term, bool inLast) {
    constexpr int kDeep = 6;
    int depth = 0;
    for (const bind::Term* inner = &term; depth <= kDeep; ++depth) {
        const auto* each = bind::If<bind::CaseTerm>(inner);
        constexpr std::size_t kFirstResult = 1;
        const bool goesOn = each && !each->hasOperand && (inLast ? each->hasElse : each->operands.size() == 3);
        if (!goesOn) return false;
        inner = (inLast ? each->operands.back() : each->operands[kFirstResult]).get();
    }
    return true;
}

// What stands between CASE and END of a printed case.
std::string_view BodyOf(std::string_view text) {
    constexpr std::string_view kCase = "CASE";
    constexpr std::string_view kEnd = " END";
    return text.substr(kCase.size(), text.size() - kCase.size() - kEnd.size());
}

}  // namespace

Piece Printer::Term(const bind::Term& top) {
    // The first operands are visited in a loop: a chain of operators may be thousands deep there.
    std::vector<const bind::Term*> spine{&top};
    while (!spine.back()->operands.empty()) spine.push_back(spine.back()->operands.front().get());
    Piece piece;
    for (; !spine.empty(); spine.pop_back()) {
        if (const std::size_t links = LongChain(spine)) {
            piece = Joined(spine, links, std::move(piece));
            spine.resize(spine.size() - links + 1);
            continue;
        }
        const bind::Term& term = *spine.back();
        std::vector<Piece> parts;
        if (!term.operands.empty()) parts.push_back(std::exchange(piece, {}));
        for (std::size_t i = 1; i < term.operands.size(); ++i) parts.push_back(Term(*term.operands[i]));
        piece = Compose(term, std::move(parts));
    }
    return piece;
}

// The number of concatenations at the end of the spine that nest too deeply, 0 when they may nest as they are.
std::size_t Printer::LongChain(const std::vector<const bind::Term*>& spine) const {
    constexpr std::size_t kLongestCalls = 16;
    const auto* last = bind::If<bind::Concatenation>(spine.back());
    if (!last) return 0;
    const bool calls = last->nulls == bind::Concatenation::Nulls::Join;
    std::size_t links = 0;
    for (; links < spine.size(); ++links) {
        const auto* link = bind::If<bind::Concatenation>(spine[spine.size() - 1 - links]);
        if (!link || link->nulls != last->nulls) break;
    }
    return links > (calls ? kLongestCalls : engine_.LongestChain()) ? links : 0;
}

// Joining texts is associative, so a long chain is printed as a balanced tree.
Piece Printer::Joined(const std::vector<const bind::Term*>& spine, std::size_t links, Piece first) {
    const auto link = [&](std::size_t i) -> const bind::Concatenation& {
        return As<bind::Concatenation>(*spine[spine.size() - 1 - i]);
    };
    std::vector<Piece> leaves{std::move(first)};
    std::vector<bool> mayBeNull{link(0).leftMayBeNull};
    for (std::size_t i = 0; i < links; ++i) {
        leaves.push_back(Term(*link(i).operands[1]));
        mayBeNull.push_back(link(i).rightMayBeNull);
    }
    bind::Concatenation joint = link(0);
    const std::function<Piece(std::size_t, std::size_t)> balanced = [&](std::size_t begin, std::size_t end) -> Piece {
        if (end - begin == 1) return std::move(leaves[begin]);
        const std::size_t middle = begin + (end - begin) / 2;
        Piece left = balanced(begin, middle);
        Piece right = balanced(middle, end);
        // A text joined from several ones is never Null.
        joint.leftMayBeNull = middle - begin == 1 && mayBeNull[begin];
        joint.rightMayBeNull = end - middle == 1 && mayBeNull[middle];
        return engine_.Concatenated(joint, std::move(left), std::move(right));
    };
    return balanced(0, leaves.size());
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
            return engine_.Called(As<bind::CallTerm>(term), parts);
        case TermKind::Aggregate:
            return Aggregate(As<bind::Aggregate>(term), std::move(parts));
        case TermKind::Window:
            return Window(As<bind::WindowTerm>(term), std::move(parts));
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

Piece Printer::Condition(const bind::Term& term) { return engine_.Condition(term, Term(term)); }

// Engines limit the nesting: a case in the last result of a case continues it, and one in the first result does when
// the condition is turned around.
Piece Printer::Case(const bind::CaseTerm& term, std::vector<Piece> parts) const {
    if (!term.hasOperand) {
        for (std::size_t i = 0; i + 1 < parts.size(); i += 2)
            parts[i] = engine_.Condition(*term.operands[i], std::move(parts[i]));
    }
    if (IsNestedDeeply(term, false))
        return {"CASE WHEN (" + parts[0].text + ") IS NOT TRUE THEN " + parts[2].text +
                std::string(BodyOf(parts[1].text)) + " END"};
    Piece piece{"CASE"};
    std::size_t i = 0;
    if (term.hasOperand) piece.text.append(" ").append(parts[i++].text);
    for (; i + 1 < parts.size(); i += 2)
        piece.text.append(" WHEN ").append(parts[i].text).append(" THEN ").append(parts[i + 1].text);
    if (IsNestedDeeply(term, true))
        piece.text.append(BodyOf(parts.back().text));
    else if (term.hasElse)
        piece.text.append(" ELSE ").append(parts.back().text);
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

Piece Printer::Aggregate(const bind::Aggregate& term, std::vector<Piece> parts, const std::string& over) const {
    Piece argument = term.allRows ? Piece{"*"} : std::move(parts.front());
    if (term.distinct) argument.text.insert(0, "DISTINCT ");
    Piece call = Function(engine_.AggregateName(term.function), {std::move(argument)});
    if (term.filtered)
        call.text.append(" FILTER (WHERE ")
            .append(engine_.Condition(*term.Filter(), std::move(parts.back())).text)
            .append(")");
    call.text += over;
    return engine_.Aggregated(term, std::move(call));
}

Piece Printer::Window(const bind::WindowTerm& term, std::vector<Piece> parts) {
    Piece function = std::move(parts.front());
    const std::string over = WindowText(term, std::move(parts));
    const auto* aggregate = bind::If<bind::Aggregate>(term.operands.front());
    if (!aggregate) return {function.text + over};
    // The window belongs to the aggregate's call, inside of what the engine makes of it.
    std::vector<Piece> own;
    for (const bind::TermPtr& operand : aggregate->operands) own.push_back(Term(*operand));
    return Aggregate(*aggregate, std::move(own), over);
}

std::string Printer::WindowText(const bind::WindowTerm& term, std::vector<Piece> parts) const {
    std::string text = " OVER (";
    const std::size_t firstOrder = 1 + term.partitionKeys;
    for (std::size_t i = 1; i < parts.size(); ++i) {
        if (i == 1 && i < firstOrder) text += "PARTITION BY ";
        if (i == firstOrder) text += i > 1 ? " ORDER BY " : "ORDER BY ";
        if (i > 1 && i != firstOrder) text += ", ";
        text += i < firstOrder ? parts[i].text
                               : engine_.OrderKey(std::move(parts[i].text), term.descending[i - firstOrder]);
    }
    if (!term.frame) return text + ")";
    const auto bound = [](const FrameBound& each) -> std::string {
        using enum FrameBound::Kind;
        switch (each.kind) {
            case UnboundedPreceding:
                return "UNBOUNDED PRECEDING";
            case Preceding:
                return std::to_string(each.rows) + " PRECEDING";
            case CurrentRow:
                return "CURRENT ROW";
            case Following:
                return std::to_string(each.rows) + " FOLLOWING";
            case UnboundedFollowing:
                break;
        }
        return "UNBOUNDED FOLLOWING";
    };
    return text + (term.frame->byRows ? " ROWS BETWEEN " : " RANGE BETWEEN ") + bound(term.frame->first) + " AND " +
           bound(term.frame->last) + ")";
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
