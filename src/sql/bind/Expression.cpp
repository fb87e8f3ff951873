#include <functional>
#include <optional>
#include <utility>

#include "kpTables/text/Message.h"
#include "sql/Names.h"
#include "sql/SqlError.h"
#include "sql/bind/Cast.h"
#include "sql/bind/Conversions.h"
#include "sql/bind/Functions.h"
#include "sql/bind/Operators.h"
#include "sql/bind/QueryBinder.h"
#include "sql/bind/Scope.h"

namespace kpTables::sql::bind {

namespace {

TermPtr BindLiteral(const Literal& literal) {
    switch (literal.literal) {
        case LiteralKind::Null:
            return NullConstant(literal.offset);
        case LiteralKind::Boolean:
            return FlagConstant(SameName(literal.text, "True"), literal.offset);
        case LiteralKind::Integer:
            return std::make_shared<LiteralTerm>(literal, Type::Long);
        case LiteralKind::Decimal:
            return std::make_shared<LiteralTerm>(literal, Type::Double);
        case LiteralKind::Text:
            return std::make_shared<LiteralTerm>(literal, Type::Text);
        case LiteralKind::Date:
            break;
    }
    return std::make_shared<LiteralTerm>(literal, Type::Date);
}

TermPtr BindName(const Column& column, const Place& place) {
    // An item's name may stand for an aggregate, so it is allowed where an aggregate is.
    const bool names = !place.aggregateRefusal && !place.scope.Lookup(column);
    if (TermPtr alias = names ? place.scope.FindAlias(column) : nullptr) return alias;
    if (const auto flag = place.context.FlagOfWord(column); flag && !place.scope.Lookup(column))
        return FlagConstant(*flag, column.offset);
    if (column.table.empty() && SameName(column.name, "CURRENT_TIMESTAMP") && !place.scope.Lookup(column))
        return At(Call("now", {}, Type::Date), column.offset);
    return place.scope.Resolve(column);
}

TermPtr BindVariable(const Variable& variable) {
    if (SameName(variable.name, "IDENTITY")) return Call("last_counter", {}, Type::Long);
    throw SqlError(ErrorKind::Unsupported, Message("unknown variable '@@{1}'", variable.name), variable.offset);
}

TermPtr BindUnary(const Unary& unary, const Place& place) {
    TermPtr operand = BindExpression(*unary.operand, place);
    if (unary.op == UnaryOperator::Not) return BindNot(place.context, std::move(operand));
    if (unary.op == UnaryOperator::Minus) return BindNegation(place.context, std::move(operand));
    return operand;
}

bool IsComparison(BinaryOperator op) { return op >= BinaryOperator::Equal && op <= BinaryOperator::GreaterEqual; }

TermPtr Combined(Context& context, BinaryOperator op, TermPtr left, TermPtr right) {
    if (IsComparison(op)) return BindComparison(context, op, std::move(left), std::move(right));
    if (op > BinaryOperator::GreaterEqual) return BindLogic(context, op, std::move(left), std::move(right));
    return BindArithmetic(context, op, std::move(left), std::move(right));
}

// Operators are left-associative, so the tree of a long chain is deep on that side: a loop walks it.
TermPtr BindBinary(const Binary& top, const Place& place) {
    std::vector<const Binary*> chain;
    const Expression* first = &top;
    while (const auto* binary = sql::If<Binary>(first)) {
        chain.push_back(binary);
        first = binary->left.get();
    }
    TermPtr term = BindExpression(*first, place);
    while (!chain.empty()) {
        const BinaryOperator op = chain.back()->op;
        if (op != BinaryOperator::And && op != BinaryOperator::Or) {
            term = Combined(place.context, op, std::move(term), BindExpression(*chain.back()->right, place));
            chain.pop_back();
            continue;
        }
        Terms conditions;
        conditions.push_back(std::move(term));
        for (; !chain.empty() && chain.back()->op == op; chain.pop_back())
            conditions.push_back(BindExpression(*chain.back()->right, place));
        term = JoinConditions(place.context, op, std::move(conditions));
    }
    return term;
}

TermPtr BindLike(const Like& like, const Place& place) {
    TermPtr operand = AsText(place.context, BindExpression(*like.operand, place));
    TermPtr pattern = AsText(place.context, BindExpression(*like.pattern, place));
    Terms arguments{std::move(operand), std::move(pattern)};
    if (like.escape) arguments.push_back(AsText(place.context, BindExpression(*like.escape, place)));
    // The dialects write "any character but these" in different ways: [!a] and [^a].
    const std::string_view function = place.context.IsJet() ? "like" : "like_server";
    auto test = std::make_shared<CallTerm>(function, std::move(arguments), Type::Boolean);
    test->predicate = true;
    return like.negated ? BindNot(place.context, std::move(test)) : test;
}

TermPtr BindBetweenOf(const Between& between, const Place& place) {
    TermPtr operand = BindExpression(*between.operand, place);
    TermPtr low = BindExpression(*between.low, place);
    TermPtr high = BindExpression(*between.high, place);
    return BindBetween(place.context, std::move(operand), std::move(low), std::move(high), between.negated);
}

TermPtr BindList(const InList& list, const Place& place) {
    TermPtr operand = BindExpression(*list.operand, place);
    Terms items;
    for (const auto& item : list.items) items.push_back(BindExpression(*item, place));
    return BindInList(place.context, std::move(operand), std::move(items), list.negated);
}

// The query, which has one column.
QueryPtr ValueQuery(const sql::Query& query, const Place& place, std::size_t offset) {
    auto bound = std::make_shared<Query>(BindQuery(place.context, query, &place.scope, QueryUse::Value));
    if (bound->members.front().select.items.size() != 1)
        throw SqlError(ErrorKind::Syntax, Message("a query that stands for a value must have one column"), offset);
    return bound;
}

TermPtr BindMembership(const InQuery& in, const Place& place) {
    TermPtr operand = BindExpression(*in.operand, place);
    QueryPtr query = ValueQuery(*in.query, place, in.offset);
    operand = MembershipOperand(place.context, std::move(operand), query->Columns().front().type);
    return std::make_shared<InQueryTerm>(std::move(operand), std::move(query), in.negated);
}

// Whether the query has a row whose value meets a condition; the query is bound anew for each condition.
TermPtr AnyRow(const Quantified& test, const Place& place, const std::function<TermPtr(TermPtr)>& condition) {
    auto rows = std::make_shared<Query>(BindQuery(place.context, *test.query, &place.scope, QueryUse::Table));
    if (rows->members.front().select.items.size() != 1)
        throw SqlError(ErrorKind::Syntax, Message("a query that stands for a value must have one column"), test.offset);
    const SourcePtr source = SourceOf(std::move(rows));
    Select select;
    select.from.push_back(TableOf(source));
    TermPtr operand = BindExpression(*test.operand, place);
    TermPtr comparison = BindComparison(place.context, test.op, std::move(operand), ColumnOf(source, 0, test.offset));
    select.where = AsCondition(place.context, condition(std::move(comparison)));
    select.items.push_back({NumberConstant("1", Type::Long), "found"});
    auto query = std::make_shared<Query>(QueryOf(std::move(select), QueryUse::Existence));
    query->isCorrelated = true;
    return std::make_shared<ExistsTerm>(std::move(query));
}

// A single row may decide the result; if none does, it is unknown where any of the comparisons is.
TermPtr BindQuantified(const Quantified& test, const Place& place) {
    Context& context = place.context;
    const Context::Doubling doubling(context, test.offset);
    TermPtr decides = AnyRow(test, place, [&](TermPtr comparison) {
        return test.all ? BindNot(context, std::move(comparison)) : std::move(comparison);
    });
    TermPtr unknown = AnyRow(test, place, [&](TermPtr comparison) {
        return BindIsNull(context, AsValue(context, std::move(comparison)), false);
    });
    Terms conditions;
    conditions.push_back(std::move(decides));
    conditions.push_back(std::move(unknown));
    return BindChoice(
        context, nullptr, std::move(conditions),
        {FlagConstant(!test.all, test.offset), NullConstant(test.offset), FlagConstant(test.all, test.offset)});
}

TermPtr BindScalar(const Subquery& subquery, const Place& place) {
    QueryPtr query = ValueQuery(*subquery.query, place, subquery.offset);
    const Type type = query->Columns().front().type;
    auto term = std::make_shared<ScalarQuery>(std::move(query), type);
    term->offset = subquery.offset;
    return term;
}

TermPtr BindExists(const Exists& exists, const Place& place) {
    auto query = std::make_shared<Query>(BindQuery(place.context, *exists.query, &place.scope, QueryUse::Existence));
    auto term = std::make_shared<ExistsTerm>(std::move(query));
    term->offset = exists.offset;
    return term;
}

TermPtr BindCastOf(const Cast& cast, const Place& place) {
    TermPtr operand = BindExpression(*cast.operand, place);
    if (cast.tries) return BindTriedCast(place.context, std::move(operand), cast.type, cast.style.get());
    TermPtr style = cast.style ? AsNumber(place.context, BindExpression(*cast.style, place)) : nullptr;
    return BindCast(place.context, std::move(operand), cast.type, std::move(style));
}

TermPtr BindCase(const Case& node, const Place& place) {
    Terms conditions;
    Terms results;
    for (const auto& when : node.whens) {
        conditions.push_back(BindExpression(*when.condition, place));
        results.push_back(BindExpression(*when.result, place));
    }
    if (node.otherwise) results.push_back(BindExpression(*node.otherwise, place));
    TermPtr operand;
    if (node.operand) {
        operand = BindExpression(*node.operand, place);
        std::vector<TermPtr*> values;
        for (TermPtr& condition : conditions) values.push_back(&condition);
        MakeComparable(place.context, operand, values);
    } else {
        for (TermPtr& condition : conditions) condition = AsCondition(place.context, std::move(condition));
    }
    return BindChoice(place.context, std::move(operand), std::move(conditions), std::move(results));
}

}  // namespace

TermPtr BindExpression(const Expression& e, const Place& place) {
    switch (e.kind) {
        case ExpressionKind::Literal:
            return BindLiteral(sql::As<Literal>(e));
        case ExpressionKind::Column:
            return BindName(sql::As<Column>(e), place);
        case ExpressionKind::Star:
            throw SqlError(ErrorKind::Syntax, Message("'*' stands in the select list or in COUNT only"), e.offset);
        case ExpressionKind::Variable:
            return BindVariable(sql::As<Variable>(e));
        case ExpressionKind::Unary:
            return BindUnary(sql::As<Unary>(e), place);
        case ExpressionKind::Binary:
            return BindBinary(sql::As<Binary>(e), place);
        case ExpressionKind::Like:
            return BindLike(sql::As<Like>(e), place);
        case ExpressionKind::Between:
            return BindBetweenOf(sql::As<Between>(e), place);
        case ExpressionKind::InList:
            return BindList(sql::As<InList>(e), place);
        case ExpressionKind::InQuery:
            return BindMembership(sql::As<InQuery>(e), place);
        case ExpressionKind::Quantified:
            return BindQuantified(sql::As<Quantified>(e), place);
        case ExpressionKind::IsNull: {
            const auto& test = sql::As<IsNull>(e);
            return BindIsNull(place.context, BindExpression(*test.operand, place), test.negated);
        }
        case ExpressionKind::Exists:
            return BindExists(sql::As<Exists>(e), place);
        case ExpressionKind::Subquery:
            return BindScalar(sql::As<Subquery>(e), place);
        case ExpressionKind::Call:
            return BindCall(sql::As<sql::Call>(e), place);
        case ExpressionKind::Window:
            return BindWindow(sql::As<Window>(e), place);
        case ExpressionKind::Cast:
            return BindCastOf(sql::As<Cast>(e), place);
        case ExpressionKind::Case:
            return BindCase(sql::As<Case>(e), place);
    }
    throw SqlError(ErrorKind::Unsupported, Message("an expression of an unknown kind"), e.offset);
}

TermPtr BindCondition(const Expression& expression, const Place& place) {
    return AsCondition(place.context, BindExpression(expression, place));
}

}  // namespace kpTables::sql::bind
