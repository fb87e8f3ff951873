#include "sql/bind/Grouping.h"

#include <algorithm>
#include <string>

#include "kpTables/text/Message.h"
#include "sql/Names.h"
#include "sql/SqlError.h"
#include "sql/bind/Functions.h"

namespace kpTables::sql::bind {

namespace {

std::vector<const Expression*> OperandsOf(const Expression& e) {
    std::vector<const Expression*> operands;
    ForEachOperand(e, [&](const Expression& operand) { operands.push_back(&operand); });
    return operands;
}

// The two nodes themselves, without their operands.
bool SameNode(Context& context, const Scope& scope, const Expression& a, const Expression& b) {
    if (a.kind != b.kind) return false;
    switch (a.kind) {
        case ExpressionKind::Literal: {
            const auto& x = sql::As<Literal>(a);
            const auto& y = sql::As<Literal>(b);
            if (x.literal != y.literal || x.text != y.text) return false;
            context.Fix(x);
            context.Fix(y);
            return true;
        }
        case ExpressionKind::Column: {
            const auto meaning = scope.Lookup(sql::As<Column>(a));
            return meaning && meaning == scope.Lookup(sql::As<Column>(b));
        }
        case ExpressionKind::Unary:
            return sql::As<Unary>(a).op == sql::As<Unary>(b).op;
        case ExpressionKind::Binary:
            return sql::As<Binary>(a).op == sql::As<Binary>(b).op;
        case ExpressionKind::Like:
            return sql::As<Like>(a).negated == sql::As<Like>(b).negated &&
                   !sql::As<Like>(a).escape == !sql::As<Like>(b).escape;
        case ExpressionKind::Between:
            return sql::As<Between>(a).negated == sql::As<Between>(b).negated;
        case ExpressionKind::InList:
            return sql::As<InList>(a).negated == sql::As<InList>(b).negated;
        case ExpressionKind::IsNull:
            return sql::As<IsNull>(a).negated == sql::As<IsNull>(b).negated;
        case ExpressionKind::Call:
            return SameName(sql::As<sql::Call>(a).name, sql::As<sql::Call>(b).name) &&
                   sql::As<sql::Call>(a).distinct == sql::As<sql::Call>(b).distinct;
        case ExpressionKind::Cast: {
            const TypeName& x = sql::As<Cast>(a).type;
            const TypeName& y = sql::As<Cast>(b).type;
            return x == y && !sql::As<Cast>(a).style == !sql::As<Cast>(b).style &&
                   sql::As<Cast>(a).tries == sql::As<Cast>(b).tries;
        }
        case ExpressionKind::Case:
            return !sql::As<Case>(a).operand == !sql::As<Case>(b).operand &&
                   !sql::As<Case>(a).otherwise == !sql::As<Case>(b).otherwise;
        case ExpressionKind::Star:
        case ExpressionKind::Variable:
        case ExpressionKind::Window:
        case ExpressionKind::InQuery:
        case ExpressionKind::Quantified:
        case ExpressionKind::Exists:
        case ExpressionKind::Subquery:
            break;
    }
    return false;
}

}  // namespace

void ForEachOperand(const Expression& e, const std::function<void(const Expression&)>& visit) {
    switch (e.kind) {
        case ExpressionKind::Unary:
            return visit(*sql::As<Unary>(e).operand);
        case ExpressionKind::Binary:
            visit(*sql::As<Binary>(e).left);
            return visit(*sql::As<Binary>(e).right);
        case ExpressionKind::Like:
            visit(*sql::As<Like>(e).operand);
            visit(*sql::As<Like>(e).pattern);
            if (sql::As<Like>(e).escape) visit(*sql::As<Like>(e).escape);
            return;
        case ExpressionKind::Between:
            visit(*sql::As<Between>(e).operand);
            visit(*sql::As<Between>(e).low);
            return visit(*sql::As<Between>(e).high);
        case ExpressionKind::InList:
            visit(*sql::As<InList>(e).operand);
            for (const auto& item : sql::As<InList>(e).items) visit(*item);
            return;
        case ExpressionKind::InQuery:
            return visit(*sql::As<InQuery>(e).operand);
        case ExpressionKind::Quantified:
            return visit(*sql::As<Quantified>(e).operand);
        case ExpressionKind::IsNull:
            return visit(*sql::As<IsNull>(e).operand);
        case ExpressionKind::Call:
            for (const auto& argument : sql::As<sql::Call>(e).arguments) visit(*argument);
            return;
        case ExpressionKind::Window: {
            // The call itself is no aggregate of the groups.
            const auto& window = sql::As<Window>(e);
            for (const auto& argument : window.call->arguments) visit(*argument);
            for (const auto& key : window.partitionBy) visit(*key);
            for (const auto& key : window.orderBy) visit(*key.expression);
            return;
        }
        case ExpressionKind::Cast:
            visit(*sql::As<Cast>(e).operand);
            if (sql::As<Cast>(e).style) visit(*sql::As<Cast>(e).style);
            return;
        case ExpressionKind::Case:
            if (sql::As<Case>(e).operand) visit(*sql::As<Case>(e).operand);
            for (const auto& when : sql::As<Case>(e).whens) {
                visit(*when.condition);
                visit(*when.result);
            }
            if (sql::As<Case>(e).otherwise) visit(*sql::As<Case>(e).otherwise);
            return;
        case ExpressionKind::Literal:
        case ExpressionKind::Column:
        case ExpressionKind::Star:
        case ExpressionKind::Variable:
        case ExpressionKind::Exists:
        case ExpressionKind::Subquery:
            return;
    }
}

bool HasAggregate(const Expression& expression) {
    // A work list instead of recursion: a chain of operators may be thousands deep.
    std::vector<const Expression*> open{&expression};
    while (!open.empty()) {
        const Expression* e = open.back();
        open.pop_back();
        if (const auto* call = sql::If<sql::Call>(e); call && IsAggregate(call->name)) return true;
        ForEachOperand(*e, [&](const Expression& operand) { open.push_back(&operand); });
    }
    return false;
}

bool SameExpression(Context& context, const Scope& scope, const Expression& a, const Expression& b) {
    std::vector<std::pair<const Expression*, const Expression*>> open{{&a, &b}};
    while (!open.empty()) {
        const auto [x, y] = open.back();
        open.pop_back();
        if (!SameNode(context, scope, *x, *y)) return false;
        const auto left = OperandsOf(*x);
        const auto right = OperandsOf(*y);
        if (left.size() != right.size()) return false;
        for (std::size_t i = 0; i < left.size(); ++i) open.emplace_back(left[i], right[i]);
    }
    return true;
}

void CheckGrouped(Context& context, const Scope& scope, const Expression& expression,
                  const std::vector<const Expression*>& groups,
                  const std::function<bool(const Scope::Meaning&)>& isDetermined) {
    std::vector<const Expression*> open{&expression};
    while (!open.empty()) {
        const Expression* e = open.back();
        open.pop_back();
        if (const auto* call = sql::If<sql::Call>(e); call && IsAggregate(call->name)) continue;
        const bool grouped = std::any_of(groups.begin(), groups.end(), [&](const Expression* group) {
            return SameExpression(context, scope, *e, *group);
        });
        if (grouped) continue;
        // A name of none of these tables is an earlier item's, which has been checked, or an outer query's, which is
        // the same for every row here.
        if (const auto* column = sql::If<Column>(e)) {
            const auto meaning = scope.Lookup(*column);
            if (meaning && scope.Owns(meaning) && !(isDetermined && isDetermined(meaning)))
                throw SqlError(
                    ErrorKind::Syntax,
                    Message("the column '{1}' is neither grouped by nor part of an aggregate function", column->name),
                    e->offset);
        }
        ForEachOperand(*e, [&](const Expression& operand) { open.push_back(&operand); });
    }
}

}  // namespace kpTables::sql::bind
