#include "functions/FunctionTable.h"

#include <algorithm>
#include <iterator>

#include "functions/Bodies.h"

namespace kpTables::functions {

namespace {

constexpr bool kDeterministic = true;
constexpr bool kVolatile = false;
constexpr bool kTakesNull = true;
constexpr bool kNullForNull = false;

constexpr Function kFunctions[] = {
    {"kp_asc", 1, 1, kDeterministic, kNullForNull, Asc},
    {"kp_atan", 1, 1, kDeterministic, kNullForNull, ArcTangent},
    {"kp_bit_and", 2, 2, kDeterministic, kNullForNull, BitAnd},
    {"kp_bit_imp", 2, 2, kDeterministic, kNullForNull, BitImp},
    {"kp_bit_xor", 2, 2, kDeterministic, kNullForNull, BitXor},
    {"kp_char", 2, 2, kDeterministic, kNullForNull, Char},
    {"kp_charindex", 2, 3, kDeterministic, kNullForNull, CharIndex},
    {"kp_chr", 1, 1, kDeterministic, kNullForNull, Chr},
    {"kp_cos", 1, 1, kDeterministic, kNullForNull, Cosine},
    {"kp_cur_fit", 1, 1, kDeterministic, kNullForNull, CurrencyFit},
    {"kp_cur_fix", 1, 1, kDeterministic, kNullForNull, CurrencyFix},
    {"kp_cur_int", 1, 1, kDeterministic, kNullForNull, CurrencyInt},
    {"kp_cur_mul", 2, 2, kDeterministic, kNullForNull, CurrencyProduct},
    {"kp_cur_round", 2, 2, kDeterministic, kNullForNull, CurrencyRound},
    {"kp_cur_round_server", 2, 3, kDeterministic, kNullForNull, CurrencyRoundOnServer},
    {"kp_date", 0, 0, kVolatile, kNullForNull, Today},
    {"kp_date_add", 2, 2, kDeterministic, kNullForNull, AddDays},
    {"kp_date_diff", 2, 2, kDeterministic, kNullForNull, DaysBetween},
    {"kp_date_number", 1, 1, kDeterministic, kNullForNull, DateNumber},
    {"kp_date_of_style", 2, 2, kDeterministic, kNullForNull, StyledDate},
    {"kp_date_style", 2, 2, kDeterministic, kNullForNull, TextOfStyledDate},
    {"kp_dateadd", 3, 3, kDeterministic, kNullForNull, DateAdd},
    {"kp_datediff", 3, 5, kDeterministic, kNullForNull, DateDiff},
    {"kp_datename", 2, 2, kDeterministic, kNullForNull, DateName},
    {"kp_datepart", 2, 4, kDeterministic, kNullForNull, DatePart},
    {"kp_dateserial", 3, 3, kDeterministic, kNullForNull, DateSerial},
    {"kp_datevalue", 1, 1, kDeterministic, kNullForNull, DateValue},
    {"kp_day", 1, 1, kDeterministic, kNullForNull, Day},
    {"kp_day_and_time", 1, 1, kDeterministic, kNullForNull, DayAndTime},
    {"kp_decimal_fit", 3, 3, kDeterministic, kNullForNull, DecimalFit},
    {"kp_div", 2, 2, kDeterministic, kNullForNull, Divide},
    {"kp_eomonth", 1, 2, kDeterministic, kNullForNull, EndOfMonth},
    {"kp_exp", 1, 1, kDeterministic, kNullForNull, Exponential},
    {"kp_fit", 3, 3, kDeterministic, kNullForNull, Fit},
    {"kp_fix", 1, 1, kDeterministic, kNullForNull, Fix},
    {"kp_format_as_currency", 5, 5, kDeterministic, kNullForNull, FormatAsCurrency},
    {"kp_format_as_number", 5, 5, kDeterministic, kNullForNull, FormatAsNumber},
    {"kp_format_as_percent", 5, 5, kDeterministic, kNullForNull, FormatAsPercent},
    {"kp_format_date", 1, 2, kDeterministic, kTakesNull, FormatOfDate},
    {"kp_format_number", 1, 2, kDeterministic, kTakesNull, FormatOfNumber},
    {"kp_format_text", 1, 2, kDeterministic, kTakesNull, FormatOfText},
    {"kp_hex", 1, 1, kDeterministic, kNullForNull, Hex},
    {"kp_hour", 1, 1, kDeterministic, kNullForNull, Hour},
    {"kp_idiv", 2, 2, kDeterministic, kNullForNull, WholeQuotient},
    {"kp_instr", 2, 4, kDeterministic, kNullForNull, InStr},
    {"kp_instrrev", 2, 4, kDeterministic, kNullForNull, InStrRev},
    {"kp_int", 1, 1, kDeterministic, kNullForNull, Int},
    {"kp_isdate", 1, 1, kDeterministic, kTakesNull, IsDate},
    {"kp_isdate_server", 1, 1, kDeterministic, kTakesNull, IsServerDate},
    {"kp_isnumeric", 1, 1, kDeterministic, kTakesNull, IsNumeric},
    {"kp_join", 2, 2, kDeterministic, kTakesNull, Join},
    {"kp_lcase", 1, 1, kDeterministic, kNullForNull, Lower},
    {"kp_left", 2, 2, kDeterministic, kNullForNull, Left},
    {"kp_like", 2, 3, kDeterministic, kNullForNull, Like},
    {"kp_like_server", 2, 3, kDeterministic, kNullForNull, LikeOnServer},
    {"kp_log", 1, 1, kDeterministic, kNullForNull, Logarithm},
    {"kp_mid", 2, 3, kDeterministic, kNullForNull, Mid},
    {"kp_minute", 1, 1, kDeterministic, kNullForNull, Minute},
    {"kp_mod", 2, 2, kDeterministic, kNullForNull, Remainder},
    {"kp_month", 1, 1, kDeterministic, kNullForNull, Month},
    {"kp_monthname", 1, 2, kDeterministic, kNullForNull, MonthName},
    {"kp_nchar", 1, 1, kDeterministic, kNullForNull, NChar},
    {"kp_newid", 0, 0, kVolatile, kNullForNull, NewId},
    {"kp_now", 0, 0, kVolatile, kNullForNull, Now},
    {"kp_oct", 1, 1, kDeterministic, kNullForNull, Oct},
    {"kp_partition", 4, 4, kDeterministic, kNullForNull, Partition},
    {"kp_patindex", 2, 2, kDeterministic, kNullForNull, PatIndex},
    {"kp_pow", 2, 2, kDeterministic, kNullForNull, Power},
    {"kp_proper", 1, 1, kDeterministic, kNullForNull, Proper},
    {"kp_replace", 3, 3, kDeterministic, kNullForNull, Replace},
    {"kp_replicate", 2, 2, kDeterministic, kNullForNull, Replicate},
    {"kp_right", 2, 2, kDeterministic, kNullForNull, Right},
    {"kp_rnd", 0, 1, kVolatile, kNullForNull, Rnd},
    {"kp_round", 2, 2, kDeterministic, kNullForNull, Round},
    {"kp_round_server", 2, 3, kDeterministic, kNullForNull, RoundOnServer},
    {"kp_second", 1, 1, kDeterministic, kNullForNull, Second},
    {"kp_server_date", 1, 1, kDeterministic, kNullForNull, ToServerDate},
    {"kp_sgn", 1, 1, kDeterministic, kNullForNull, Sign},
    {"kp_sin", 1, 1, kDeterministic, kNullForNull, Sine},
    {"kp_space", 1, 1, kDeterministic, kNullForNull, Space},
    {"kp_sqr", 1, 1, kDeterministic, kNullForNull, SquareRoot},
    {"kp_str", 1, 1, kDeterministic, kNullForNull, Str},
    {"kp_str_server", 3, 3, kDeterministic, kNullForNull, StrOnServer},
    {"kp_strcomp", 2, 3, kDeterministic, kNullForNull, StrComp},
    {"kp_string", 2, 2, kDeterministic, kNullForNull, String},
    {"kp_strreverse", 1, 1, kDeterministic, kNullForNull, Reverse},
    {"kp_stuff", 4, 4, kDeterministic, kNullForNull, Stuff},
    {"kp_substring", 3, 3, kDeterministic, kNullForNull, Substring},
    {"kp_tan", 1, 1, kDeterministic, kNullForNull, Tangent},
    {"kp_text_boolean", 1, 1, kDeterministic, kNullForNull, TextOfBoolean},
    {"kp_text_currency", 1, 1, kDeterministic, kNullForNull, TextOfCurrency},
    {"kp_text_date", 1, 1, kDeterministic, kNullForNull, TextOfDate},
    {"kp_text_double", 1, 1, kDeterministic, kNullForNull, TextOfDouble},
    {"kp_time", 0, 0, kVolatile, kNullForNull, Time},
    {"kp_timeserial", 3, 3, kDeterministic, kNullForNull, TimeSerial},
    {"kp_timevalue", 1, 1, kDeterministic, kNullForNull, TimeValue},
    {"kp_to_boolean", 1, 1, kDeterministic, kNullForNull, ToBoolean},
    {"kp_to_byte", 1, 1, kDeterministic, kNullForNull, ToByte},
    {"kp_to_currency", 1, 1, kDeterministic, kNullForNull, ToCurrency},
    {"kp_to_date", 1, 1, kDeterministic, kNullForNull, ToDate},
    {"kp_to_decimal", 3, 3, kDeterministic, kNullForNull, ToDecimal},
    {"kp_to_double", 1, 1, kDeterministic, kNullForNull, ToDouble},
    {"kp_to_long", 1, 1, kDeterministic, kNullForNull, ToLong},
    {"kp_to_short", 1, 1, kDeterministic, kNullForNull, ToShort},
    {"kp_to_single", 1, 1, kDeterministic, kNullForNull, ToSingle},
    {"kp_try_boolean", 1, 1, kDeterministic, kNullForNull, TryBoolean},
    {"kp_try_currency", 1, 1, kDeterministic, kNullForNull, TryCurrency},
    {"kp_try_date", 1, 1, kDeterministic, kNullForNull, TryDate},
    {"kp_try_double", 1, 1, kDeterministic, kNullForNull, TryDouble},
    {"kp_try_long", 1, 1, kDeterministic, kNullForNull, TryLong},
    {"kp_try_short", 1, 1, kDeterministic, kNullForNull, TryShort},
    {"kp_ucase", 1, 1, kDeterministic, kNullForNull, Upper},
    {"kp_unicode", 1, 1, kDeterministic, kNullForNull, Unicode},
    {"kp_val", 1, 1, kDeterministic, kNullForNull, Val},
    {"kp_weekday", 1, 2, kDeterministic, kNullForNull, Weekday},
    {"kp_weekdayname", 1, 3, kDeterministic, kNullForNull, WeekdayName},
    {"kp_year", 1, 1, kDeterministic, kNullForNull, Year},
    {"kp_ymd", 3, 3, kDeterministic, kNullForNull, YearMonthDay},
};

static_assert(std::ranges::is_sorted(kFunctions, {}, &Function::name));

}  // namespace

std::span<const Function> AllFunctions() noexcept { return kFunctions; }

const Function* FindFunction(std::string_view name) noexcept {
    const auto* const found = std::ranges::lower_bound(kFunctions, name, {}, &Function::name);
    return found != std::end(kFunctions) && found->name == name ? found : nullptr;
}

}  // namespace kpTables::functions
