#include "sql/rewrite/Rules.h"

namespace kpTables::sql::rewrite {

namespace {

constexpr Rule kRules[] = {
    {.name = "flat groups", .apply = FlattenGroups, .readsKeysOnly = true},
    {.name = "bill dates", .apply = RecognizeBillDates},
    {.name = "eager aggregation", .apply = AggregateEagerly},
    {.name = "reduction to EXISTS", .apply = ReduceToExists},
    {.name = "dependent keys", .apply = DropDependentKeys, .readsDependentColumns = true},
    {.name = "dependent keys, for now", .apply = DropDependentKeysForNow, .readsKeysOnly = true},
    {.name = "join order", .apply = OrderJoins, .keepsWritten = true},
    {.name = "implied order", .apply = ImplyOrder, .keepsWritten = true},
    {.name = "order of ties", .apply = ImplyTies, .breaksTies = true, .keepsWritten = true},
    {.name = "selectivity hints", .apply = HintRanges},
    {.name = "deferred look-up", .apply = DeferLookups},
    {.name = "bill date keys", .apply = SplitBillDateKeys},
    {.name = "keys that are read", .apply = GroupByWhatIsRead, .readsKeysOnly = true},
    {.name = "order of texts", .apply = LeaveTextOrder, .leavesTextOrder = true, .keepsWritten = true},
};

}  // namespace

std::span<const Rule> Rules() { return kRules; }

}  // namespace kpTables::sql::rewrite
