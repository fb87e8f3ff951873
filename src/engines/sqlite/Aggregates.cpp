// First, Last, StDev, StDevP, Var and VarP.
#include <sqlite3.h>

#include <algorithm>
#include <cmath>
#include <iterator>

#include "engines/sqlite/Failure.h"
#include "engines/sqlite/Functions.h"
#include "functions/Spread.h"

namespace kpTables::engines::sqlite {

namespace {

/// SQLite's memory for a group: all zero at first, and null when none was allocated.
template <class State>
State* StateOf(sqlite3_context* context, bool make) noexcept {
    return static_cast<State*>(sqlite3_aggregate_context(context, make ? sizeof(State) : 0));
}

struct Kept {
    sqlite3_value* value;
};

void Keep(sqlite3_context* context, Kept& kept, sqlite3_value* value) noexcept {
    sqlite3_value_free(kept.value);
    kept.value = sqlite3_value_dup(value);
    if (!kept.value) sqlite3_result_error_nomem(context);
}

void StepFirst(sqlite3_context* context, int, sqlite3_value** values) noexcept {
    Kept* kept = StateOf<Kept>(context, true);
    if (!kept) return sqlite3_result_error_nomem(context);
    if (!kept->value) Keep(context, *kept, values[0]);
}

void StepLast(sqlite3_context* context, int, sqlite3_value** values) noexcept {
    Kept* kept = StateOf<Kept>(context, true);
    if (!kept) return sqlite3_result_error_nomem(context);
    Keep(context, *kept, values[0]);
}

void FinishKept(sqlite3_context* context) noexcept {
    Kept* kept = StateOf<Kept>(context, false);
    if (!kept || !kept->value) return sqlite3_result_null(context);
    sqlite3_result_value(context, kept->value);
    sqlite3_value_free(kept->value);
}

void StepSpread(sqlite3_context* context, int, sqlite3_value** values) noexcept {
    if (sqlite3_value_type(values[0]) == SQLITE_NULL) return;
    auto* spread = StateOf<functions::Spread>(context, true);
    if (!spread) return sqlite3_result_error_nomem(context);
    spread->Add(sqlite3_value_double(values[0]));
}

template <bool kSample, bool kRoot>
void FinishSpread(sqlite3_context* context) noexcept {
    const auto* spread = StateOf<functions::Spread>(context, false);
    const auto variance = spread ? spread->Variance(kSample) : std::nullopt;
    if (!variance) return sqlite3_result_null(context);
    sqlite3_result_double(context, kRoot ? std::sqrt(*variance) : *variance);
}

struct Aggregate {
    const char* name;
    void (*step)(sqlite3_context* context, int count, sqlite3_value** values) noexcept;
    void (*finish)(sqlite3_context* context) noexcept;
};

constexpr bool kOfSample = true;
constexpr bool kOfPopulation = false;
constexpr bool kAsRoot = true;
constexpr bool kAsSquare = false;

constexpr Aggregate kAggregates[] = {
    {"kp_first", StepFirst, FinishKept},
    {"kp_last", StepLast, FinishKept},
    {"kp_stdev", StepSpread, FinishSpread<kOfSample, kAsRoot>},
    {"kp_stdevp", StepSpread, FinishSpread<kOfPopulation, kAsRoot>},
    {"kp_var", StepSpread, FinishSpread<kOfSample, kAsSquare>},
    {"kp_varp", StepSpread, FinishSpread<kOfPopulation, kAsSquare>},
};

}  // namespace

void RegisterAggregates(sqlite3* database) {
    constexpr int kFlags = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS;
    for (const Aggregate& aggregate : kAggregates) {
        Check(database, sqlite3_create_function_v2(database, aggregate.name, 1, kFlags, nullptr, nullptr,
                                                   aggregate.step, aggregate.finish, nullptr));
    }
}

bool IsAggregate(std::string_view name) noexcept {
    return std::ranges::any_of(kAggregates, [name](const Aggregate& aggregate) { return aggregate.name == name; });
}

}  // namespace kpTables::engines::sqlite
