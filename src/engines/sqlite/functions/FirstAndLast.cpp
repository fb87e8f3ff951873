// The aggregates First and Last.
#include <sqlite3.h>

#include "../Failure.h"
#include "Function.h"

namespace kpTables::sqlite {

namespace {

struct Kept {
    sqlite3_value* value;
};

Kept* KeptOf(sqlite3_context* context, bool make) noexcept {
    return static_cast<Kept*>(sqlite3_aggregate_context(context, make ? sizeof(Kept) : 0));
}

void Keep(sqlite3_context* context, Kept& kept, sqlite3_value* value) noexcept {
    sqlite3_value_free(kept.value);
    kept.value = sqlite3_value_dup(value);
    if (!kept.value) sqlite3_result_error_nomem(context);
}

void StepFirst(sqlite3_context* context, int, sqlite3_value** values) noexcept {
    Kept* kept = KeptOf(context, true);
    if (!kept) return sqlite3_result_error_nomem(context);
    if (!kept->value) Keep(context, *kept, values[0]);
}

void StepLast(sqlite3_context* context, int, sqlite3_value** values) noexcept {
    Kept* kept = KeptOf(context, true);
    if (!kept) return sqlite3_result_error_nomem(context);
    Keep(context, *kept, values[0]);
}

void Finish(sqlite3_context* context) noexcept {
    Kept* kept = KeptOf(context, false);
    if (!kept || !kept->value) return sqlite3_result_null(context);
    sqlite3_result_value(context, kept->value);
    sqlite3_value_free(kept->value);
}

}  // namespace

void RegisterFirstAndLast(sqlite3* database) {
    constexpr int kFlags = SQLITE_UTF8 | SQLITE_DETERMINISTIC | SQLITE_INNOCUOUS;
    Check(database,
          sqlite3_create_function_v2(database, "kp_first", 1, kFlags, nullptr, nullptr, StepFirst, Finish, nullptr));
    Check(database,
          sqlite3_create_function_v2(database, "kp_last", 1, kFlags, nullptr, nullptr, StepLast, Finish, nullptr));
}

}  // namespace kpTables::sqlite
