// The aggregates StDev, StDevP, Var and VarP.
#include <sqlite3.h>

#include <cmath>
#include <cstdint>

#include "../Failure.h"
#include "Function.h"

namespace kpTables::sqlite {

namespace {

/// The numbers so far. Squares of differences are added up as they come, so that large numbers that lie close together
/// keep their digits.
struct Seen {
    std::int64_t count;
    double mean;
    double squares;
};

struct Measure {
    const char* name;
    bool sample;
    bool root;
};

constexpr Measure kMeasures[] = {
    {"kp_stdev", true, true},
    {"kp_stdevp", false, true},
    {"kp_var", true, false},
    {"kp_varp", false, false},
};

Seen* SeenOf(sqlite3_context* context, bool make) noexcept {
    return static_cast<Seen*>(sqlite3_aggregate_context(context, make ? sizeof(Seen) : 0));
}

void Step(sqlite3_context* context, int, sqlite3_value** values) noexcept {
    if (sqlite3_value_type(values[0]) == SQLITE_NULL) return;
    Seen* seen = SeenOf(context, true);
    if (!seen) return sqlite3_result_error_nomem(context);
    const double number = sqlite3_value_double(values[0]);
    const double difference = number - seen->mean;
    seen->mean += difference / static_cast<double>(++seen->count);
    seen->squares += difference * (number - seen->mean);
}

void Finish(sqlite3_context* context) noexcept {
    const auto& measure = *static_cast<const Measure*>(sqlite3_user_data(context));
    const Seen* seen = SeenOf(context, false);
    const std::int64_t divisor = seen ? seen->count - (measure.sample ? 1 : 0) : 0;
    if (divisor < 1) return sqlite3_result_null(context);
    const double variance = seen->squares / static_cast<double>(divisor);
    sqlite3_result_double(context, measure.root ? std::sqrt(variance) : variance);
}

}  // namespace

void RegisterSpread(sqlite3* database) {
    constexpr int kFlags = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS;
    for (const Measure& measure : kMeasures) {
        // SQLite hands the pointer back as it is. NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast)
        auto* const handed = const_cast<Measure*>(&measure);
        Check(database,
              sqlite3_create_function_v2(database, measure.name, 1, kFlags, handed, nullptr, Step, Finish, nullptr));
    }
}

}  // namespace kpTables::sqlite
