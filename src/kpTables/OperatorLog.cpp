// The operator log: listing, pruning, and who has entries in it.
#include <limits>

#include "kpTables/CTables.h"
#include "kpTables/Convert.h"
#include "kpTables/Error.h"
#include "kpTables/Fill.h"
#include "kpTables/Trapped.h"
#include "kpTables/db/Access.h"

namespace kpTables {
namespace {

/// Two thirds; error 6 when the double of it is beyond 32 bits.
double TwoThirds(std::int32_t count) {
    const std::int64_t twice = std::int64_t{count} * 2;
    if (twice > std::numeric_limits<std::int32_t>::max() || twice < std::numeric_limits<std::int32_t>::min())
        Raise(ErrorNumber::Overflow);
    return static_cast<double>(twice) / 3;
}

}  // namespace

bool CTables::AllowDelOperator(std::int32_t Opr) {
    const auto entries = db::Query(cnn_, Fill("Select * From Log Where Operator='{operator}'", "operator"_gap(Opr)));
    return entries->RecordCount() == 0;
}

RecordsetPtr CTables::rsLog() { return db::Execute(cnn_, "Select * From Log Order by logDate DESC"); }

// Only the newest entry is looked at: whatever rMaxRecs says, all entries with a lower id go. A fraction after Top is
// refused by the database, and nothing is deleted then.
bool CTables::Delete_LogRecs(std::int32_t rMaxRecs) {
    return Done([&] {
        const auto newest = db::Query(
            cnn_, Fill("Select Top {count} * From Log Order by logDate DESC", "count"_gap(TwoThirds(rMaxRecs))));
        db::Execute(cnn_, Fill("Delete From Log Where logID<{newest}", "newest"_gap(newest->Fields("logID").Value())));
    });
}

}  // namespace kpTables
