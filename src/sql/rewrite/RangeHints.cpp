#include <utility>
#include <vector>

#include "sql/rewrite/BoundNames.h"
#include "sql/rewrite/Rules.h"

namespace kpTables::sql::rewrite {

namespace {

/// A comparison of a table's column with a constant.
struct TestedColumn {
    const Source* table = nullptr;  ///< null when the condition is none
    bool isEquality = false;
};

TestedColumn TestOf(const Term& condition) {
    const auto* test = If<Comparison>(&condition);
    if (!test || test->op == ComparisonOperator::NotEqual || test->op > ComparisonOperator::GreaterEqual) return {};
    const auto* column = If<ColumnTerm>(test->operands[0]);
    const TermKind other = test->operands[1]->kind;
    if (!column || (other != TermKind::Parameter && other != TermKind::Constant)) return {};
    return {column->source.get(), test->op == ComparisonOperator::Equal};
}

bool IsWide(const TestedColumn& range, const std::vector<TestedColumn>& tests) {
    if (!range.table || range.isEquality) return false;
    bool here = false;
    bool elsewhere = false;
    for (const TestedColumn& test : tests)
        if (test.isEquality) (test.table == range.table ? here : elsewhere) = true;
    return here && elsewhere;
}

void Hint(Select& select) {
    const auto* both = If<Logic>(select.where);
    if (!both || both->op != LogicOperator::And) return;
    std::vector<TestedColumn> tests;
    for (const TermPtr& condition : both->operands) tests.push_back(TestOf(*condition));
    Terms conditions = both->operands;
    for (std::size_t i = 0; i < conditions.size(); ++i)
        if (IsWide(tests[i], tests)) conditions[i] = std::make_shared<Likely>(conditions[i]);
    select.where = WithOperands(*both, std::move(conditions));
}

}  // namespace

void HintRanges(BoundStatement& statement) {
    ForEachQuery(statement, [](Query& query) {
        for (Query::Member& member : query.members) Hint(member.select);
    });
}

}  // namespace kpTables::sql::rewrite
