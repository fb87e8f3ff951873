#include "QueryPlan.h"

namespace kpTables::test {

std::string PlanOf(const sqlite::Database& database, std::string_view text) {
    sqlite::PreparedStatement explain = database.Prepare("EXPLAIN QUERY PLAN " + std::string(text));
    constexpr int kDetail = 3;
    std::string plan;
    while (explain.Step()) plan.append(plan.empty() ? "" : "; ").append(explain.Text(kDetail));
    return plan;
}

}  // namespace kpTables::test
