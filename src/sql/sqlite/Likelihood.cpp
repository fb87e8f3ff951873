#include "sql/sqlite/Likelihood.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "sql/sqlite/Conversion.h"
#include "sql/sqlite/Logic.h"

namespace kpTables::sql {

namespace {

/// A comparison of a table's column with a literal.
struct ColumnTest {
    const Expression* expression;
    const Source* table;
    bool isEquality;
};

std::vector<const Expression*> Conjuncts(const Expression& condition) {
    std::vector<const Expression*> conjuncts;
    const Expression* e = &condition;
    const auto* both = If<Binary>(e);
    for (; both && both->op == BinaryOperator::And; both = If<Binary>(e)) {
        conjuncts.push_back(both->right.get());
        e = both->left.get();
    }
    conjuncts.push_back(e);
    std::reverse(conjuncts.begin(), conjuncts.end());
    return conjuncts;
}

const Source* TableOf(const Column& column, const Scope& scope) {
    const auto* meant = scope.Lookup(column);
    for (const Source& source : scope.Sources())
        if (meant && source.Has(*meant)) return &source;
    return nullptr;
}

std::vector<ColumnTest> ColumnTests(const std::vector<const Expression*>& conjuncts, const Scope& scope) {
    std::vector<ColumnTest> tests;
    for (const auto* e : conjuncts) {
        const auto* test = If<Binary>(e);
        if (!test || !If<Literal>(test->right.get())) continue;
        const bool isRange = test->op >= BinaryOperator::Less && test->op <= BinaryOperator::GreaterEqual;
        if (!isRange && test->op != BinaryOperator::Equal) continue;
        const auto* column = If<Column>(test->left.get());
        const Source* table = column ? TableOf(*column, scope) : nullptr;
        if (table) tests.push_back({e, table, !isRange});
    }
    return tests;
}

std::vector<const Expression*> WideRanges(const std::vector<ColumnTest>& tests) {
    std::vector<const Expression*> wide;
    for (const auto& range : tests) {
        if (range.isEquality) continue;
        bool here = false;
        bool elsewhere = false;
        for (const auto& test : tests)
            if (test.isEquality) (test.table == range.table ? here : elsewhere) = true;
        if (here && elsewhere) wide.push_back(range.expression);
    }
    return wide;
}

}  // namespace

Term TranslateRowCondition(const Expression& condition, const ExpressionContext& context) {
    const auto conjuncts = Conjuncts(condition);
    const auto wide = WideRanges(ColumnTests(conjuncts, context.scope));
    if (wide.empty()) return TranslateCondition(condition, context);
    std::vector<Term> terms;
    for (const auto* conjunct : conjuncts) {
        Term term = TranslateCondition(*conjunct, context);
        if (std::find(wide.begin(), wide.end(), conjunct) != wide.end()) {
            term.text = "likely(" + term.text + ")";
            term.precedence = Precedence::Primary;
        }
        terms.push_back(std::move(term));
    }
    return JoinedConditions(context.session, BinaryOperator::And, std::move(terms));
}

}  // namespace kpTables::sql
