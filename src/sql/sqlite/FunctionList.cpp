#include "sql/sqlite/FunctionList.h"

namespace kpTables::sql {

namespace {

constexpr bool kDeterministic = true;
constexpr bool kVolatile = false;
constexpr bool kScalar = false;
constexpr bool kAggregate = true;

constexpr EngineFunction kFunctions[] = {
    {"kp_asc", 1, 1, kDeterministic, kScalar, "ANSI code of the text's first character, as Asc"},
    {"kp_char", 2, 2, kDeterministic, kScalar, "the text cut or padded with blanks to n characters"},
    {"kp_charindex", 2, 3, kDeterministic, kScalar,
     "(find, text[, start]): position from 1 without regard to case, 0 when it is not there"},
    {"kp_chr", 1, 1, kDeterministic, kScalar, "the character of an ANSI code, as Chr"},
    {"kp_cur_fit", 1, 1, kDeterministic, kScalar, "the Currency; a sum or a product that ran over is an overflow"},
    {"kp_cur_fix", 1, 1, kDeterministic, kScalar, "Currency cut to whole units toward 0"},
    {"kp_cur_int", 1, 1, kDeterministic, kScalar, "Currency cut to whole units downward"},
    {"kp_cur_mul", 2, 2, kDeterministic, kScalar, "product of two Currencies, half to even"},
    {"kp_cur_round", 2, 2, kDeterministic, kScalar, "Currency rounded half to even to n decimals"},
    {"kp_date", 0, 0, kVolatile, kScalar, "today's date"},
    {"kp_date_add", 2, 2, kDeterministic, kScalar, "(date, days): days may have a fraction"},
    {"kp_date_diff", 2, 2, kDeterministic, kScalar, "days from the second date to the first, with the fraction"},
    {"kp_date_number", 1, 1, kDeterministic, kScalar, "the date as a number of days, 1899-12-30 being 0"},
    {"kp_dateadd", 3, 3, kDeterministic, kScalar, "DateAdd(interval, n, date), intervals as Jet's"},
    {"kp_datediff", 3, 5, kDeterministic, kScalar, "DateDiff(interval, from, to[, first weekday[, first week]])"},
    {"kp_datepart", 2, 4, kDeterministic, kScalar, "DatePart(interval, date[, first weekday[, first week]])"},
    {"kp_dateserial", 3, 3, kDeterministic, kScalar, "DateSerial(year, month, day); month and day may run over"},
    {"kp_datevalue", 1, 1, kDeterministic, kScalar, "the date without its time"},
    {"kp_day", 1, 1, kDeterministic, kScalar, "day of the month"},
    {"kp_day_and_time", 1, 1, kDeterministic, kScalar, "day of the month, with the time of day as its fraction"},
    {"kp_div", 2, 2, kDeterministic, kScalar, "quotient of two doubles; division by zero is an error"},
    {"kp_exp", 1, 1, kDeterministic, kScalar, "e raised to x"},
    {"kp_first", 1, 1, kDeterministic, kAggregate, "value of the first row, Null included"},
    {"kp_fit", 3, 3, kDeterministic, kScalar, "(text, n, column): the text; more than n characters are an overflow"},
    {"kp_fix", 1, 1, kDeterministic, kScalar, "double cut to a whole number toward 0"},
    {"kp_format_date", 1, 2, kDeterministic, kScalar, "Format of a date; Null gives an empty text"},
    {"kp_format_number", 1, 2, kDeterministic, kScalar, "Format of a number; Null gives an empty text"},
    {"kp_format_text", 1, 2, kDeterministic, kScalar, "Format of a text; Null gives an empty text"},
    {"kp_hour", 1, 1, kDeterministic, kScalar, "hour, 0 to 23"},
    {"kp_idiv", 2, 2, kDeterministic, kScalar, "both sides rounded half to even, then the whole quotient"},
    {"kp_instr", 2, 4, kDeterministic, kScalar,
     "InStr([start,] text, find[, compare]): position from 1; without regard to case unless compare is 0"},
    {"kp_int", 1, 1, kDeterministic, kScalar, "double cut to a whole number downward"},
    {"kp_isdate", 1, 1, kDeterministic, kScalar, "1 when the text reads as a date, else 0; Null gives 0"},
    {"kp_isnumeric", 1, 1, kDeterministic, kScalar, "1 when the text reads as a number, else 0; Null gives 0"},
    {"kp_join", 2, 2, kDeterministic, kScalar, "both texts, Null as an empty text; Null when both are"},
    {"kp_last", 1, 1, kDeterministic, kAggregate, "value of the last row, Null included"},
    {"kp_lcase", 1, 1, kDeterministic, kScalar, "lower case"},
    {"kp_left", 2, 2, kDeterministic, kScalar, "the first n characters"},
    {"kp_like", 2, 2, kDeterministic, kScalar,
     "(text, pattern): 1 or 0; % any characters, _ one character, [a-z] and [!a-z] classes, without regard to case"},
    {"kp_log", 1, 1, kDeterministic, kScalar, "natural logarithm"},
    {"kp_mid", 2, 3, kDeterministic, kScalar, "Mid(text, start[, n]), start from 1"},
    {"kp_minute", 1, 1, kDeterministic, kScalar, "minute"},
    {"kp_mod", 2, 2, kDeterministic, kScalar, "both sides rounded half to even, then the remainder"},
    {"kp_month", 1, 1, kDeterministic, kScalar, "month, 1 to 12"},
    {"kp_now", 0, 0, kVolatile, kScalar, "today's date with the time"},
    {"kp_pow", 2, 2, kDeterministic, kScalar, "power of two doubles"},
    {"kp_right", 2, 2, kDeterministic, kScalar, "the last n characters"},
    {"kp_round", 2, 2, kDeterministic, kScalar, "double rounded half to even to n decimals"},
    {"kp_second", 1, 1, kDeterministic, kScalar, "second"},
    {"kp_server_date", 1, 1, kDeterministic, kScalar,
     "as kp_to_date, but a number counts days from 1900-01-01, as a cast on the server does"},
    {"kp_sgn", 1, 1, kDeterministic, kScalar, "-1, 0 or 1"},
    {"kp_space", 1, 1, kDeterministic, kScalar, "n blanks"},
    {"kp_sqr", 1, 1, kDeterministic, kScalar, "square root; a negative number is an error"},
    {"kp_str", 1, 1, kDeterministic, kScalar, "the number's text with a blank in the sign's place, as Str"},
    {"kp_string", 2, 2, kDeterministic, kScalar, "(n, text): the text's first character n times"},
    {"kp_text_boolean", 1, 1, kDeterministic, kScalar, "text form of a Boolean"},
    {"kp_text_currency", 1, 1, kDeterministic, kScalar, "text form of a Currency"},
    {"kp_text_date", 1, 1, kDeterministic, kScalar, "text form of a date"},
    {"kp_text_double", 1, 1, kDeterministic, kScalar, "text form of a double; a whole number and a text as they are"},
    {"kp_time", 0, 0, kVolatile, kScalar, "the time of day, on the zero date"},
    {"kp_timevalue", 1, 1, kDeterministic, kScalar, "the time without its date, on the zero date"},
    {"kp_to_boolean", 1, 1, kDeterministic, kScalar, "number or text to -1 or 0"},
    {"kp_to_currency", 1, 1, kDeterministic, kScalar, "number or text to Currency, half to even"},
    {"kp_to_date", 1, 1, kDeterministic, kScalar, "text or number of days since 1899-12-30 to a date"},
    {"kp_to_double", 1, 1, kDeterministic, kScalar, "number or text to a double"},
    {"kp_to_long", 1, 1, kDeterministic, kScalar, "number or text to a 32-bit whole number, half to even"},
    {"kp_to_short", 1, 1, kDeterministic, kScalar, "number or text to a 16-bit whole number, half to even"},
    {"kp_to_single", 1, 1, kDeterministic, kScalar, "number or text to single precision"},
    {"kp_ucase", 1, 1, kDeterministic, kScalar, "upper case"},
    {"kp_val", 1, 1, kDeterministic, kScalar, "the number at the text's start, 0 when there is none, as Val"},
    {"kp_weekday", 1, 2, kDeterministic, kScalar, "Weekday(date[, first weekday]), 1 to 7"},
    {"kp_year", 1, 1, kDeterministic, kScalar, "year"},
    {"kp_ymd", 3, 3, kDeterministic, kScalar, "the date of a year, month and day; no such day is a type mismatch"},
};

}  // namespace

std::span<const EngineFunction> EngineFunctions() noexcept { return kFunctions; }

}  // namespace kpTables::sql
