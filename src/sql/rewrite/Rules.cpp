#include "sql/rewrite/Rules.h"

namespace kpTables::sql::rewrite {

namespace {

constexpr Rule kRules[] = {
    {"bill dates", RecognizeBillDates},
    {"eager aggregation", AggregateEagerly},
    {"reduction to EXISTS", ReduceToExists},
    {"dependent keys", DropDependentKeys, true},
    {"join order", OrderJoins, false, false, true},
    {"implied order", ImplyOrder, false, false, true},
    {"order of ties", ImplyTies, false, true, true},
    {"selectivity hints", HintRanges},
    {"deferred look-up", DeferLookups},
    {"bill date keys", SplitBillDateKeys},
};

}  // namespace

std::span<const Rule> Rules() { return kRules; }

}  // namespace kpTables::sql::rewrite
