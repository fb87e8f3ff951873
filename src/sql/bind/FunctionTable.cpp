#include "sql/bind/FunctionTable.h"

#include <algorithm>
#include <iterator>

#include "sql/Names.h"

namespace kpTables::sql::bind {

namespace {

constexpr DialectFunction kDialectFunctions[] = {
    {"asc", "t", 1, Type::Short, "asc"},
    {"ascii", "t", 1, Type::Short, "asc"},
    {"ascw", "t", 1, Type::Long, "unicode"},
    {"atan", "n", 1, Type::Double, "atan"},
    {"atn", "n", 1, Type::Double, "atan"},
    {"char", "n", 1, Type::Text, "chr"},
    {"charindex", "ttn", 2, Type::Long, "charindex"},
    {"chr", "n", 1, Type::Text, "chr"},
    {"chrw", "n", 1, Type::Text, "nchar"},
    {"cos", "n", 1, Type::Double, "cos"},
    {"csng", "n", 1, Type::Double, "to_single"},
    {"date", "", 0, Type::Date, "date"},
    {"dateadd", "ind", 3, Type::Date, "dateadd"},
    {"datediff", "iddnn", 3, Type::Long, "datediff"},
    {"datefromparts", "nnn", 3, Type::Date, "ymd"},
    {"datename", "id", 2, Type::Text, "datename"},
    {"datepart", "idnn", 2, Type::Short, "datepart"},
    {"dateserial", "nnn", 3, Type::Date, "dateserial"},
    {"datevalue", "d", 1, Type::Date, "datevalue"},
    {"day", "d", 1, Type::Short, "day"},
    {"eomonth", "dn", 1, Type::Date, "eomonth"},
    {"exp", "n", 1, Type::Double, "exp"},
    {"getdate", "", 0, Type::Date, "now"},
    {"hex", "n", 1, Type::Text, "hex"},
    {"hour", "d", 1, Type::Short, "hour"},
    {"lcase", "t", 1, Type::Text, "lcase"},
    {"instrrev", "ttnn", 2, Type::Long, "instrrev"},
    {"left", "tn", 2, Type::Text, "left"},
    {"lower", "t", 1, Type::Text, "lcase"},
    {"ltrim", "t", 1, Type::Text, "ltrim"},
    {"mid", "tnn", 2, Type::Text, "mid"},
    {"minute", "d", 1, Type::Short, "minute"},
    {"month", "d", 1, Type::Short, "month"},
    {"monthname", "nn", 1, Type::Text, "monthname"},
    {"nchar", "n", 1, Type::Text, "nchar"},
    {"now", "", 0, Type::Date, "now"},
    {"oct", "n", 1, Type::Text, "oct"},
    {"partition", "nnnn", 4, Type::Text, "partition"},
    {"patindex", "tt", 2, Type::Long, "patindex"},
    {"replace", "ttt", 3, Type::Text, "replace"},
    {"replicate", "tn", 2, Type::Text, "replicate"},
    {"reverse", "t", 1, Type::Text, "strreverse"},
    {"right", "tn", 2, Type::Text, "right"},
    {"rtrim", "t", 1, Type::Text, "rtrim"},
    {"second", "d", 1, Type::Short, "second"},
    {"sgn", "n", 1, Type::Short, "sgn"},
    {"sign", "n", 1, Type::Short, "sgn"},
    {"sin", "n", 1, Type::Double, "sin"},
    {"space", "n", 1, Type::Text, "space"},
    {"sqr", "n", 1, Type::Double, "sqr"},
    {"sqrt", "n", 1, Type::Double, "sqr"},
    {"strcomp", "ttn", 2, Type::Short, "strcomp"},
    {"strreverse", "t", 1, Type::Text, "strreverse"},
    {"stuff", "tnnt", 4, Type::Text, "stuff"},
    {"substring", "tnn", 3, Type::Text, "substring"},
    {"sysdatetime", "", 0, Type::Date, "now"},
    {"tan", "n", 1, Type::Double, "tan"},
    {"time", "", 0, Type::Date, "time"},
    {"timeserial", "nnn", 3, Type::Date, "timeserial"},
    {"timevalue", "d", 1, Type::Date, "timevalue"},
    {"trim", "t", 1, Type::Text, "trim"},
    {"ucase", "t", 1, Type::Text, "ucase"},
    {"unicode", "t", 1, Type::Long, "unicode"},
    {"upper", "t", 1, Type::Text, "ucase"},
    {"val", "t", 1, Type::Double, "val"},
    {"weekday", "dn", 1, Type::Short, "weekday"},
    {"weekdayname", "nnn", 1, Type::Text, "weekdayname"},
    {"year", "d", 1, Type::Short, "year"},
};

}  // namespace

const DialectFunction* FindDialectFunction(std::string_view name) {
    const auto found = std::find_if(std::begin(kDialectFunctions), std::end(kDialectFunctions),
                                    [&](const DialectFunction& f) { return SameName(f.name, name); });
    return found == std::end(kDialectFunctions) ? nullptr : found;
}

}  // namespace kpTables::sql::bind
