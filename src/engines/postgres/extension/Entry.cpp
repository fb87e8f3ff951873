// kptables.so: what the server calls. The server's errors jump over frames, so nothing here has a destructor, and the
// bodies have returned before an error is raised.
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <type_traits>

// The server's headers are C's; what they include of C++ has been included above.
extern "C" {
// clang-format off: the first one comes first
#include <postgres.h>
// clang-format on
#include <catalog/pg_type.h>
#include <fmgr.h>
#include <mb/pg_wchar.h>
#include <utils/builtins.h>
#include <utils/lsyscache.h>
#include <utils/timestamp.h>
}

#include "engines/postgres/extension/Body.h"

namespace kpTables::engines::postgres::extension {

namespace {

/// What a call site knows of the function that it calls.
struct Callee {
    const void* body;
    int count;
    Oid types[kMostCells];
    Oid result;
};
static_assert(std::is_trivially_destructible_v<Callee> && std::is_trivially_destructible_v<Outcome>);

constexpr std::int64_t kYear2000 = 36526;
constexpr double kSecondsOfDay = 86400;

/// All functions have one entry; which one is called, its name in the catalog says.
const Callee& CalleeOf(FunctionCallInfo call) {
    FmgrInfo* const site = call->flinfo;
    if (site->fn_extra) return *static_cast<const Callee*>(site->fn_extra);
    if (GetDatabaseEncoding() != PG_UTF8)
        ereport(ERROR, (errcode(ERRCODE_FEATURE_NOT_SUPPORTED), errmsg("kptables needs a database in UTF8")));
    auto* const callee = static_cast<Callee*>(MemoryContextAllocZero(site->fn_mcxt, sizeof(Callee)));
    const char* const name = get_func_name(site->fn_oid);
    Oid* types = nullptr;
    callee->result = get_func_signature(site->fn_oid, &types, &callee->count);
    callee->body = name && callee->count <= kMostCells ? FindBody(name, callee->count) : nullptr;
    if (!callee->body)
        ereport(ERROR, (errcode(ERRCODE_UNDEFINED_FUNCTION), errmsg("kptables has no function %s", name ? name : "")));
    for (int i = 0; i < callee->count; ++i) callee->types[i] = types[i];
    site->fn_extra = callee;
    return *callee;
}

/// A date's serial number: before day 0 the fraction still counts away from midnight.
double SerialOf(Timestamp timestamp) {
    if (TIMESTAMP_NOT_FINITE(timestamp))
        ereport(ERROR, (errcode(ERRCODE_DATETIME_VALUE_OUT_OF_RANGE), errmsg("timestamp out of range")));
    std::int64_t days = timestamp / USECS_PER_DAY;
    std::int64_t rest = timestamp % USECS_PER_DAY;
    if (rest < 0) {
        rest += USECS_PER_DAY;
        --days;
    }
    const auto day = static_cast<double>(days + kYear2000);
    const double time = static_cast<double>(rest) / static_cast<double>(USECS_PER_DAY);
    return day >= 0 ? day + time : day - time;
}

Timestamp TimestampOf(double serial) {
    const double day = std::trunc(serial);
    const auto seconds = static_cast<std::int64_t>(std::round(std::abs(serial - day) * kSecondsOfDay));
    return (static_cast<std::int64_t>(day) - kYear2000) * USECS_PER_DAY + seconds * USECS_PER_SEC;
}

Cell CellOf(Datum value, Oid type) {
    Cell cell;
    switch (type) {
        case INT4OID:
            cell.kind = Cell::Kind::Whole;
            cell.whole = DatumGetInt32(value);
            break;
        case INT8OID:
            cell.kind = Cell::Kind::Whole;
            cell.whole = DatumGetInt64(value);
            break;
        case FLOAT8OID:
            cell.kind = Cell::Kind::Real;
            cell.real = DatumGetFloat8(value);
            break;
        case TIMESTAMPOID:
            cell.kind = Cell::Kind::Date;
            cell.real = SerialOf(DatumGetTimestamp(value));
            break;
        case BPCHAROID: {
            const BpChar* const text = DatumGetBpCharPP(value);
            cell.kind = Cell::Kind::Text;
            cell.text = VARDATA_ANY(text);
            cell.size = VARSIZE_ANY_EXHDR(text);
            break;
        }
        default:
            elog(ERROR, "kptables takes no arguments of the type %u", type);
    }
    return cell;
}

std::int64_t WholeOf(const Cell& cell) {
    return cell.kind == Cell::Kind::Real ? static_cast<std::int64_t>(std::llrint(cell.real)) : cell.whole;
}

Datum DatumOf(const Cell& cell, Oid type) {
    switch (type) {
        case BOOLOID:
            return BoolGetDatum(WholeOf(cell) != 0);
        case INT4OID:
            return Int32GetDatum(static_cast<std::int32_t>(WholeOf(cell)));
        case INT8OID:
            return Int64GetDatum(WholeOf(cell));
        case FLOAT8OID:
            return Float8GetDatum(cell.kind == Cell::Kind::Whole ? static_cast<double>(cell.whole) : cell.real);
        case TIMESTAMPOID:
            if (cell.kind == Cell::Kind::Date) return TimestampGetDatum(TimestampOf(cell.real));
            break;
        case BPCHAROID:
            if (cell.kind != Cell::Kind::Text) break;
            // What the server cannot keep: a character of code 0.
            pg_verify_mbstr(PG_UTF8, cell.text, static_cast<int>(cell.size), false);
            return PointerGetDatum(cstring_to_text_with_len(cell.text, static_cast<int>(cell.size)));
        default:
            break;
    }
    elog(ERROR, "kptables has no result of the type %u", type);
}

/// The states that the program reads as its own errors.
int StateOf(int error) {
    constexpr int kInvalidCall = 5;
    constexpr int kOverflow = 6;
    constexpr int kDivisionByZero = 11;
    constexpr int kTypeMismatch = 13;
    switch (error) {
        case kInvalidCall:
            return MAKE_SQLSTATE('K', 'P', '0', '0', '5');
        case kOverflow:
            return MAKE_SQLSTATE('K', 'P', '0', '0', '6');
        case kDivisionByZero:
            return ERRCODE_DIVISION_BY_ZERO;
        case kTypeMismatch:
            return ERRCODE_INVALID_CHARACTER_VALUE_FOR_CAST;
        case kOutOfMemory:
            return ERRCODE_OUT_OF_MEMORY;
        default:
            return ERRCODE_INTERNAL_ERROR;
    }
}

}  // namespace

}  // namespace kpTables::engines::postgres::extension

#pragma GCC visibility push(default)
extern "C" {
PG_MODULE_MAGIC;
PG_FUNCTION_INFO_V1(kptables_call);
}
#pragma GCC visibility pop

extern "C" Datum kptables_call(PG_FUNCTION_ARGS) {
    using namespace kpTables::engines::postgres::extension;
    const Callee& callee = CalleeOf(fcinfo);
    Cell arguments[kMostCells];
    for (int i = 0; i < callee.count; ++i) {
        if (!PG_ARGISNULL(i)) arguments[i] = CellOf(PG_GETARG_DATUM(i), callee.types[i]);
    }
    Outcome outcome;
    CallBody(callee.body, arguments, callee.count, callee.result == TIMESTAMPOID, outcome);
    if (outcome.error != 0) ereport(ERROR, (errcode(StateOf(outcome.error)), errmsg_internal("%s", outcome.message)));
    if (outcome.value.kind == Cell::Kind::Null) PG_RETURN_NULL();
    return DatumOf(outcome.value, callee.result);
}
