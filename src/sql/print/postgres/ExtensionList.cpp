#include <algorithm>

#include "sql/print/postgres/FunctionList.h"

namespace kpTables::sql::print::postgres {

namespace {

constexpr std::string_view kFiveNumbers =
    "double precision, double precision, double precision, double precision, double precision";

constexpr ExtensionFunction kCarried[] = {
    {"asc", "bpchar", "integer"},
    {"chr", "double precision", "bpchar"},
    {"date_of_style", "bpchar, double precision", "timestamp"},
    {"datediff", "bpchar, timestamp, timestamp", "integer"},
    {"datediff", "bpchar, timestamp, timestamp, double precision", "integer"},
    {"datediff", "bpchar, timestamp, timestamp, double precision, double precision", "integer"},
    {"datepart", "bpchar, timestamp", "integer"},
    {"datepart", "bpchar, timestamp, double precision", "integer"},
    {"datepart", "bpchar, timestamp, double precision, double precision", "integer"},
    {"format_as_currency", kFiveNumbers, "bpchar"},
    {"format_as_number", kFiveNumbers, "bpchar"},
    {"format_as_percent", kFiveNumbers, "bpchar"},
    {"format_date", "timestamp", "bpchar"},
    {"format_date", "timestamp, bpchar", "bpchar"},
    {"format_number", "double precision", "bpchar"},
    {"format_number", "double precision, bpchar", "bpchar"},
    {"format_text", "bpchar", "bpchar"},
    {"format_text", "bpchar, bpchar", "bpchar"},
    {"instr", "bpchar, bpchar", "integer"},
    {"instr", "double precision, bpchar, bpchar", "integer"},
    {"instr", "double precision, bpchar, bpchar, double precision", "integer"},
    {"instrrev", "bpchar, bpchar", "integer"},
    {"instrrev", "bpchar, bpchar, double precision", "integer"},
    {"instrrev", "bpchar, bpchar, double precision, double precision", "integer"},
    {"isdate", "bpchar", "boolean"},
    {"isdate_server", "bpchar", "boolean"},
    {"rnd", "", "double precision"},
    {"rnd", "double precision", "double precision"},
    {"server_date", "bpchar", "timestamp"},
    {"server_date", "double precision", "timestamp"},
    {"strcomp", "bpchar, bpchar", "integer"},
    {"strcomp", "bpchar, bpchar, double precision", "integer"},
    {"text_double", "double precision", "bpchar"},
    {"timeserial", "double precision, double precision, double precision", "timestamp"},
    {"timevalue", "timestamp", "timestamp"},
    {"to_byte", "double precision", "integer"},
    {"to_date", "bpchar", "timestamp"},
    {"try_boolean", "bpchar", "integer"},
    {"try_boolean", "double precision", "integer"},
    {"try_currency", "bpchar", "bigint"},
    {"try_currency", "double precision", "bigint"},
    {"try_date", "bpchar", "timestamp"},
    {"try_date", "double precision", "timestamp"},
    {"try_double", "bpchar", "double precision"},
    {"try_double", "double precision", "double precision"},
    {"try_long", "bpchar", "integer"},
    {"try_long", "double precision", "integer"},
    {"try_short", "bpchar", "integer"},
    {"try_short", "double precision", "integer"},
    {"weekday", "timestamp", "integer"},
    {"weekday", "timestamp, double precision", "integer"},
};

}  // namespace

std::span<const ExtensionFunction> ExtensionFunctions() noexcept { return kCarried; }

std::size_t CountArguments(std::string_view parameters) noexcept {
    return parameters.empty() ? 0 : static_cast<std::size_t>(std::ranges::count(parameters, ',')) + 1;
}

}  // namespace kpTables::sql::print::postgres
