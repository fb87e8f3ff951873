#include "sql/sqlite/ExpressionTranslator.h"

#include <utility>
#include <vector>

#include "sql/SqlError.h"
#include "sql/sqlite/Arithmetic.h"
#include "sql/sqlite/BillDate.h"
#include "sql/sqlite/Cast.h"
#include "sql/sqlite/Comparison.h"
#include "sql/sqlite/Conversion.h"
#include "sql/sqlite/Functions.h"
#include "sql/sqlite/Logic.h"
#include "sql/sqlite/Names.h"
#include "sql/sqlite/QueryTranslator.h"

namespace kpTables::sql {

namespace {

Term LiteralTerm(const Literal& literal) {
    Term term;
    term.constant = true;
    term.offset = literal.offset;
    switch (literal.literal) {
        case LiteralKind::Null:
            return ConstantTerm("NULL", Type::Null, literal.offset);
        case LiteralKind::Boolean: {
            const bool value = SameName(literal.text, "True");
            term = ConstantTerm(value ? "-1" : "0", Type::Boolean, literal.offset);
            term.truth = value;
            return term;
        }
        case LiteralKind::Integer:
            term.type = Type::Long;
            break;
        case LiteralKind::Decimal:
            term.type = Type::Double;
            break;
        case LiteralKind::Text:
            term.type = Type::Text;
            break;
        case LiteralKind::Date:
            term.type = Type::Date;
            break;
    }
    term.literal = &literal;
    return term;
}

Term NameTerm(const Column& column, const ExpressionContext& context) {
    // An item's name may stand for an aggregate, so it stands where an aggregate may.
    const bool names = !context.aggregateRefusal && !context.scope.Lookup(column);
    if (const auto* alias = names ? context.scope.FindAlias(column) : nullptr) return *alias;
    return ColumnTerm(context.scope.Resolve(column), column.offset);
}

Term VariableTerm(const Variable& variable) {
    if (SameName(variable.name, "IDENTITY")) return FunctionTerm("last_insert_rowid", {}, Type::Long);
    throw SqlError(ErrorKind::Unsupported, "unknown variable '@@" + variable.name + "'", variable.offset);
}

Term UnaryTerm(const Unary& unary, const ExpressionContext& context) {
    Term operand = TranslateExpression(*unary.operand, context);
    if (unary.op == UnaryOperator::Not) return NotTerm(context.session, std::move(operand));
    if (unary.op == UnaryOperator::Minus) return NegatedTerm(context.session, std::move(operand));
    return operand;
}

bool IsComparison(BinaryOperator op) { return op >= BinaryOperator::Equal && op <= BinaryOperator::GreaterEqual; }

Term Combined(Session& session, BinaryOperator op, Term left, Term right) {
    if (IsComparison(op)) return ComparisonTerm(session, op, std::move(left), std::move(right));
    if (op > BinaryOperator::GreaterEqual) return LogicalTerm(session, op, std::move(left), std::move(right));
    return ArithmeticTerm(session, op, std::move(left), std::move(right));
}

// Operators group to the left, so the tree of a long chain is deep on that side: it is walked, not recursed into.
Term BinaryTerm(const Binary& top, const ExpressionContext& context) {
    std::vector<const Binary*> chain;
    const Expression* first = &top;
    while (const auto* binary = If<Binary>(first)) {
        chain.push_back(binary);
        first = binary->left.get();
    }
    Term term = TranslateExpression(*first, context);
    while (!chain.empty()) {
        const BinaryOperator op = chain.back()->op;
        if (op != BinaryOperator::And && op != BinaryOperator::Or) {
            term = Combined(context.session, op, std::move(term), TranslateExpression(*chain.back()->right, context));
            chain.pop_back();
            continue;
        }
        std::vector<Term> conditions;
        conditions.push_back(std::move(term));
        for (; !chain.empty() && chain.back()->op == op; chain.pop_back())
            conditions.push_back(TranslateExpression(*chain.back()->right, context));
        term = JoinedConditions(context.session, op, std::move(conditions));
    }
    return term;
}

Term Negated(Session& session, bool negated, Term test) { return negated ? NotTerm(session, std::move(test)) : test; }

Term LikeTerm(const Like& like, const ExpressionContext& context) {
    Term operand = TextTerm(context.session, TranslateExpression(*like.operand, context));
    Term test = FunctionTerm(
        "kp_like", {operand, TextTerm(context.session, TranslateExpression(*like.pattern, context))}, Type::Boolean);
    test.predicate = true;
    return Negated(context.session, like.negated, std::move(test));
}

Term IsNullTerm(const IsNull& test, const ExpressionContext& context) {
    return TestTerm(ValueTerm(context.session, TranslateExpression(*test.operand, context)),
                    test.negated ? "IS NOT" : "IS", ConstantTerm("NULL", Type::Null), Precedence::Equality);
}

Term ListTerm(const InList& list, const ExpressionContext& context) {
    Term operand = TranslateExpression(*list.operand, context);
    std::vector<Term> items;
    for (const auto& item : list.items) items.push_back(TranslateExpression(*item, context));
    return InListTerm(context.session, std::move(operand), std::move(items), list.negated);
}

// The query's text in parentheses, and its only column's type.
Term QueryTerm(const Query& query, const ExpressionContext& context, std::size_t offset) {
    const QueryText text = TranslateQuery(context.session, query, &context.scope, QueryUse::Value);
    if (text.columns.size() != 1)
        throw SqlError(ErrorKind::Syntax, "a query that stands for a value must have one column", offset);
    Term term;
    term.text = "(" + text.text + ")";
    term.type = text.columns.front().type;
    term.offset = offset;
    return term;
}

Term MembershipTerm(const InQuery& in, const ExpressionContext& context) {
    Term operand = TranslateExpression(*in.operand, context);
    const Term query = QueryTerm(*in.query, context, in.offset);
    operand = MembershipOperand(context.session, std::move(operand), query.type);
    return TestTerm(std::move(operand), in.negated ? "NOT IN" : "IN", query, Precedence::Equality);
}

Term ExistsTerm(const Exists& exists, const ExpressionContext& context) {
    const QueryText text = TranslateQuery(context.session, *exists.query, &context.scope, QueryUse::Existence);
    Term term;
    term.text = "EXISTS (" + text.text + ")";
    term.type = Type::Boolean;
    term.predicate = true;
    term.offset = exists.offset;
    return term;
}

Term CaseTerm(const Case& node, const ExpressionContext& context) {
    Session& session = context.session;
    std::vector<Term> conditions;
    std::vector<Term> results;
    for (const auto& when : node.whens) {
        conditions.push_back(TranslateExpression(*when.condition, context));
        results.push_back(TranslateExpression(*when.result, context));
    }
    if (node.otherwise) results.push_back(TranslateExpression(*node.otherwise, context));
    Term operand;
    if (node.operand) {
        operand = TranslateExpression(*node.operand, context);
        std::vector<Term*> values;
        for (Term& condition : conditions) values.push_back(&condition);
        MakeComparable(session, operand, values);
    } else {
        for (Term& condition : conditions) condition = PredicateTerm(session, std::move(condition));
    }
    return ChoiceTerm(session, operand, std::move(conditions), std::move(results));
}

// The bill date as a value, which remembers its columns; nothing when the expression is none.
std::optional<Term> BillDateTerm(const Expression& expression, const ExpressionContext& context) {
    const auto date = MatchBillDate(expression);
    if (!date) return std::nullopt;
    std::vector<Term> parts;
    for (const Column* column : {date->year, date->month, date->day}) {
        parts.push_back(ColumnTerm(context.scope.Resolve(*column), column->offset));
        if (parts.back().type != Type::Short && parts.back().type != Type::Long) return std::nullopt;
    }
    context.session.Fix(*date->firstSeparator);
    context.session.Fix(*date->secondSeparator);
    Term term = FunctionTerm("kp_ymd", parts, Type::Date);
    term.offset = expression.offset;
    term.dateColumns = std::make_shared<DateColumns>(DateColumns{parts[0].text, parts[1].text, parts[2].text});
    return term;
}

Term BetweenOf(const Between& between, const ExpressionContext& context) {
    Term operand = TranslateExpression(*between.operand, context);
    Term low = TranslateExpression(*between.low, context);
    return BetweenTerm(context.session, std::move(operand), std::move(low), TranslateExpression(*between.high, context),
                       between.negated);
}

}  // namespace

Term TranslateExpression(const Expression& e, const ExpressionContext& context) {
    switch (e.kind) {
        case ExpressionKind::Literal:
            return LiteralTerm(As<Literal>(e));
        case ExpressionKind::Column:
            return NameTerm(As<Column>(e), context);
        case ExpressionKind::Star:
            throw SqlError(ErrorKind::Syntax, "'*' stands in the select list or in COUNT only", e.offset);
        case ExpressionKind::Variable:
            return VariableTerm(As<Variable>(e));
        case ExpressionKind::Unary:
            return UnaryTerm(As<Unary>(e), context);
        case ExpressionKind::Binary:
            return BinaryTerm(As<Binary>(e), context);
        case ExpressionKind::Like:
            return LikeTerm(As<Like>(e), context);
        case ExpressionKind::Between:
            return BetweenOf(As<Between>(e), context);
        case ExpressionKind::InList:
            return ListTerm(As<InList>(e), context);
        case ExpressionKind::InQuery:
            return MembershipTerm(As<InQuery>(e), context);
        case ExpressionKind::IsNull:
            return IsNullTerm(As<IsNull>(e), context);
        case ExpressionKind::Exists:
            return ExistsTerm(As<Exists>(e), context);
        case ExpressionKind::Subquery:
            return QueryTerm(*As<Subquery>(e).query, context, e.offset);
        case ExpressionKind::Call:
            if (auto date = BillDateTerm(e, context)) return *date;
            return CallTerm(As<Call>(e), context);
        case ExpressionKind::Cast:
            if (auto date = BillDateTerm(e, context)) return *date;
            return CastTerm(context.session, TranslateExpression(*As<Cast>(e).operand, context), As<Cast>(e).type);
        case ExpressionKind::Case:
            return CaseTerm(As<Case>(e), context);
    }
    throw SqlError(ErrorKind::Unsupported, "an expression of an unknown kind", e.offset);
}

Term TranslateCondition(const Expression& expression, const ExpressionContext& context) {
    return PredicateTerm(context.session, TranslateExpression(expression, context));
}

}  // namespace kpTables::sql
