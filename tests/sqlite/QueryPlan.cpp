#include "QueryPlan.h"

#include <sqlite3.h>

namespace kpTables::test {

std::string PlanOf(const engines::sqlite::Database& database, std::string_view text) {
    engines::sqlite::PreparedStatement explain = database.Prepare("EXPLAIN QUERY PLAN " + std::string(text));
    constexpr int kDetail = 3;
    std::string plan;
    while (explain.Step()) plan.append(plan.empty() ? "" : "; ").append(explain.Text(kDetail));
    return plan;
}

std::string OtherPlans() {
    constexpr int kRelease = 1000;
    constexpr int kExpected = 3040;
    if (sqlite3_libversion_number() / kRelease == kExpected) return {};
    return std::string("The expected plans are those of SQLite 3.40; this is SQLite ") + sqlite3_libversion() + ".";
}

}  // namespace kpTables::test
