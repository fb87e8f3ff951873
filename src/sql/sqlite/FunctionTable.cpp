#include "sql/sqlite/FunctionTable.h"

#include <algorithm>
#include <iterator>

#include "sql/sqlite/Names.h"

namespace kpTables::sql {

namespace {

constexpr DialectFunction kFunctions[] = {
    {"asc", "t", 1, Type::Short, "kp_asc"},
    {"charindex", "ttn", 2, Type::Long, "kp_charindex"},
    {"chr", "n", 1, Type::Text, "kp_chr"},
    {"csng", "n", 1, Type::Double, "kp_to_single"},
    {"date", "", 0, Type::Date, "kp_date"},
    {"dateadd", "ind", 3, Type::Date, "kp_dateadd"},
    {"datediff", "iddnn", 3, Type::Long, "kp_datediff"},
    {"datepart", "idnn", 2, Type::Short, "kp_datepart"},
    {"dateserial", "nnn", 3, Type::Date, "kp_dateserial"},
    {"datevalue", "d", 1, Type::Date, "kp_datevalue"},
    {"day", "d", 1, Type::Short, "kp_day"},
    {"exp", "n", 1, Type::Double, "kp_exp"},
    {"getdate", "", 0, Type::Date, "kp_now"},
    {"hour", "d", 1, Type::Short, "kp_hour"},
    {"lcase", "t", 1, Type::Text, "kp_lcase"},
    {"instrrev", "ttnn", 2, Type::Long, "kp_instrrev"},
    {"left", "tn", 2, Type::Text, "kp_left"},
    {"len", "t", 1, Type::Long, "length"},
    {"log", "n", 1, Type::Double, "kp_log"},
    {"lower", "t", 1, Type::Text, "kp_lcase"},
    {"ltrim", "t", 1, Type::Text, "ltrim"},
    {"mid", "tnn", 2, Type::Text, "kp_mid"},
    {"minute", "d", 1, Type::Short, "kp_minute"},
    {"month", "d", 1, Type::Short, "kp_month"},
    {"now", "", 0, Type::Date, "kp_now"},
    {"replace", "ttt", 3, Type::Text, "kp_replace"},
    {"right", "tn", 2, Type::Text, "kp_right"},
    {"rtrim", "t", 1, Type::Text, "rtrim"},
    {"second", "d", 1, Type::Short, "kp_second"},
    {"sgn", "n", 1, Type::Short, "kp_sgn"},
    {"space", "n", 1, Type::Text, "kp_space"},
    {"sqr", "n", 1, Type::Double, "kp_sqr"},
    {"str", "n", 1, Type::Text, "kp_str"},
    {"strcomp", "ttn", 2, Type::Short, "kp_strcomp"},
    {"strreverse", "t", 1, Type::Text, "kp_strreverse"},
    {"substring", "tnn", 3, Type::Text, "kp_mid"},
    {"time", "", 0, Type::Date, "kp_time"},
    {"timeserial", "nnn", 3, Type::Date, "kp_timeserial"},
    {"timevalue", "d", 1, Type::Date, "kp_timevalue"},
    {"trim", "t", 1, Type::Text, "trim"},
    {"ucase", "t", 1, Type::Text, "kp_ucase"},
    {"upper", "t", 1, Type::Text, "kp_ucase"},
    {"val", "t", 1, Type::Double, "kp_val"},
    {"weekday", "dn", 1, Type::Short, "kp_weekday"},
    {"year", "d", 1, Type::Short, "kp_year"},
};

}  // namespace

const DialectFunction* FindDialectFunction(std::string_view name) {
    const auto found = std::find_if(std::begin(kFunctions), std::end(kFunctions),
                                    [&](const DialectFunction& f) { return SameName(f.name, name); });
    return found == std::end(kFunctions) ? nullptr : found;
}

}  // namespace kpTables::sql
