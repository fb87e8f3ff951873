#include "sql/sqlite/Grouping.h"

#include <algorithm>
#include <string>

#include "sql/SqlError.h"
#include "sql/sqlite/Aggregates.h"
#include "sql/sqlite/Names.h"

namespace kpTables::sql {

namespace {

std::vector<const Expression*> OperandsOf(const Expression& e) {
    std::vector<const Expression*> operands;
    ForEachOperand(e, [&](const Expression& operand) { operands.push_back(&operand); });
    return operands;
}

// The two nodes themselves, their operands aside.
bool SameNode(Session& session, const Scope& scope, const Expression& a, const Expression& b) {
    if (a.kind != b.kind) return false;
    switch (a.kind) {
        case ExpressionKind::Literal: {
            const auto& x = As<Literal>(a);
            const auto& y = As<Literal>(b);
            if (x.literal != y.literal || x.text != y.text) return false;
            session.Fix(x);
            session.Fix(y);
            return true;
        }
        case ExpressionKind::Column: {
            const auto* x = scope.Lookup(As<Column>(a));
            return x && x == scope.Lookup(As<Column>(b));
        }
        case ExpressionKind::Unary:
            return As<Unary>(a).op == As<Unary>(b).op;
        case ExpressionKind::Binary:
            return As<Binary>(a).op == As<Binary>(b).op;
        case ExpressionKind::Like:
            return As<Like>(a).negated == As<Like>(b).negated;
        case ExpressionKind::Between:
            return As<Between>(a).negated == As<Between>(b).negated;
        case ExpressionKind::InList:
            return As<InList>(a).negated == As<InList>(b).negated;
        case ExpressionKind::IsNull:
            return As<IsNull>(a).negated == As<IsNull>(b).negated;
        case ExpressionKind::Call:
            return SameName(As<Call>(a).name, As<Call>(b).name) && As<Call>(a).distinct == As<Call>(b).distinct;
        case ExpressionKind::Cast: {
            const TypeName& x = As<Cast>(a).type;
            const TypeName& y = As<Cast>(b).type;
            return x.type == y.type && x.length == y.length && x.fixed == y.fixed && x.memo == y.memo;
        }
        case ExpressionKind::Case:
            return !As<Case>(a).operand == !As<Case>(b).operand && !As<Case>(a).otherwise == !As<Case>(b).otherwise;
        case ExpressionKind::Star:
        case ExpressionKind::Variable:
        case ExpressionKind::InQuery:
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
            return visit(*As<Unary>(e).operand);
        case ExpressionKind::Binary:
            visit(*As<Binary>(e).left);
            return visit(*As<Binary>(e).right);
        case ExpressionKind::Like:
            visit(*As<Like>(e).operand);
            return visit(*As<Like>(e).pattern);
        case ExpressionKind::Between:
            visit(*As<Between>(e).operand);
            visit(*As<Between>(e).low);
            return visit(*As<Between>(e).high);
        case ExpressionKind::InList:
            visit(*As<InList>(e).operand);
            for (const auto& item : As<InList>(e).items) visit(*item);
            return;
        case ExpressionKind::InQuery:
            return visit(*As<InQuery>(e).operand);
        case ExpressionKind::IsNull:
            return visit(*As<IsNull>(e).operand);
        case ExpressionKind::Call:
            for (const auto& argument : As<Call>(e).arguments) visit(*argument);
            return;
        case ExpressionKind::Cast:
            return visit(*As<Cast>(e).operand);
        case ExpressionKind::Case:
            if (As<Case>(e).operand) visit(*As<Case>(e).operand);
            for (const auto& when : As<Case>(e).whens) {
                visit(*when.condition);
                visit(*when.result);
            }
            if (As<Case>(e).otherwise) visit(*As<Case>(e).otherwise);
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
    // A work list in place of recursion: a chain of operators may be thousands deep.
    std::vector<const Expression*> open{&expression};
    while (!open.empty()) {
        const Expression* e = open.back();
        open.pop_back();
        if (const auto* call = If<Call>(e); call && IsAggregate(call->name)) return true;
        ForEachOperand(*e, [&](const Expression& operand) { open.push_back(&operand); });
    }
    return false;
}

bool SameExpression(Session& session, const Scope& scope, const Expression& a, const Expression& b) {
    std::vector<std::pair<const Expression*, const Expression*>> open{{&a, &b}};
    while (!open.empty()) {
        const auto [x, y] = open.back();
        open.pop_back();
        if (!SameNode(session, scope, *x, *y)) return false;
        const auto left = OperandsOf(*x);
        const auto right = OperandsOf(*y);
        if (left.size() != right.size()) return false;
        for (std::size_t i = 0; i < left.size(); ++i) open.emplace_back(left[i], right[i]);
    }
    return true;
}

void CheckGrouped(Session& session, const Scope& scope, const Expression& expression,
                  const std::vector<const Expression*>& groups) {
    std::vector<const Expression*> open{&expression};
    while (!open.empty()) {
        const Expression* e = open.back();
        open.pop_back();
        if (const auto* call = If<Call>(e); call && IsAggregate(call->name)) continue;
        const bool grouped = std::any_of(groups.begin(), groups.end(), [&](const Expression* group) {
            return SameExpression(session, scope, *e, *group);
        });
        if (grouped) continue;
        // A name of none of these tables is an earlier item's, which has been looked at, or an outer query's, which is
        // the same for every row here.
        const auto* column = If<Column>(e);
        const auto* meant = column ? scope.Lookup(*column) : nullptr;
        if (meant && scope.Owns(*meant))
            throw SqlError(ErrorKind::Syntax,
                           "the column '" + column->name + "' is neither grouped by nor part of an aggregate function",
                           e->offset);
        ForEachOperand(*e, [&](const Expression& operand) { open.push_back(&operand); });
    }
}

}  // namespace kpTables::sql
