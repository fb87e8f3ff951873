#include "sql/rewrite/Rules.h"

namespace kpTables::sql::rewrite {

namespace {

constexpr Rule kRules[] = {
    {"flat groups", FlattenGroups, false, false, true},
    {"bill dates", RecognizeBillDates},
    {"eager aggregation", AggregateEagerly},
    {"reduction to EXISTS", ReduceToExists},
    {"dependent keys", DropDependentKeys, true},
    {"dependent keys, for now", DropDependentKeysForNow, false, false, true},
    {"join order", OrderJoins, false, false, false, true},
    {"implied order", ImplyOrder, false, false, false, true},
    {"order of ties", ImplyTies, false, true, false, true},
    {"selectivity hints", HintRanges},
    {"deferred look-up", DeferLookups},
    {"bill date keys", SplitBillDateKeys},
    {"keys that are read", GroupByWhatIsRead, false, false, true},
};

}  // namespace

std::span<const Rule> Rules() { return kRules; }

}  // namespace kpTables::sql::rewrite
