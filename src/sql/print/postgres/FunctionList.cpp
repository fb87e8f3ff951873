#include "sql/print/postgres/FunctionList.h"

#include <string>

namespace kpTables::sql::print::postgres {

namespace {

constexpr std::string_view kVolatile = "STABLE";
constexpr std::string_view kRandom = "VOLATILE";

constexpr ServerFunction kFunctions[] = {
    // The text with its trailing blanks, which a cast to text would cut.
    {"_raw", "bpchar", "text", "pg_catalog.textin(pg_catalog.bpcharout($1))"},
    {"_lower", "bpchar", "text", "lower(kp._raw($1) COLLATE \"und-x-icu\")"},
    {"_text", "text", "kp.text", "CAST(CAST($1 AS bpchar) AS kp.text)"},
    {"_count", "double precision", "integer",
     "CASE WHEN $1 < 0 THEN kp._fail('KP005', 'Invalid procedure call or argument', $1::integer) ELSE $1::integer END"},
    // Halves go to the even neighbour.
    {"_even", "numeric", "numeric", "CASE WHEN abs($1 - trunc($1)) = 0.5 THEN 2 * round($1 / 2) ELSE round($1) END"},

    // The number whose digits are the fewest that stand for the double.
    {"_plain", "double precision", "numeric", "CAST(CAST($1 AS text) AS numeric)"},
    {"_decimal", "numeric, integer, integer", "bigint",
     "CASE WHEN abs(round($1, $3)) < power(10.0, $2 - $3) THEN CAST(round($1, $3) * 10000 AS bigint) ELSE "
     "kp._fail('22003', trim_scale($1) || ' has more than the ' || $2 - $3 || ' digits before the point that DECIMAL(' "
     "|| $2 || ',' || $3 || ') keeps', CAST(NULL AS bigint)) END"},
    {"abs", "double precision", "double precision", "abs($1)"},
    {"abs", "bigint", "bigint", "abs($1)"},
    {"asc", "bpchar", "integer",
     "CASE WHEN ascii(kp._raw($1)) BETWEEN 1 AND 127 THEN ascii(kp._raw($1)) ELSE kp._fail('KP005', 'Asc of ''' || "
     "kp._raw($1) || ''': a server without the extension kptables knows ASCII alone', CAST(NULL AS integer)) END"},
    {"atan", "double precision", "double precision", "atan($1)"},
    {"bit_and", "bigint, bigint", "bigint", "$1 & $2"},
    {"bit_imp", "bigint, bigint", "bigint", "~$1 | $2"},
    {"bit_xor", "bigint, bigint", "bigint", "$1 # $2"},
    {"newid", "", "kp.text", "kp._text(upper(CAST(gen_random_uuid() AS text)))", kRandom},
    // Visual Basic's generator, begun anew by the bits of a negative number.
    {"_restart", "bigint", "double precision",
     "(((($1 + ($1 >> 24)) & 16777215) * 1140671485 + 12820163) & 16777215) / 16777216.0::double precision"},
    {"rnd", "", "double precision", "random()", kRandom},
    {"rnd", "double precision", "double precision",
     "CASE WHEN $1 > 0 THEN random() WHEN $1 < 0 THEN kp._restart(CAST(CAST('x' || encode(float4send(CAST($1 AS real)), "
     "'hex') AS bit(32)) AS bigint)) ELSE kp._fail('KP005', 'Rnd(0): a server without the extension kptables keeps no last number', $1) END",
     kRandom},
    {"char", "bpchar, integer", "kp.text", "kp._text(rpad(kp._raw($1), $2))"},
    {"chr", "double precision", "kp.text",
     "CASE WHEN $1 BETWEEN 1 AND 127 THEN kp._text(chr(CAST($1 AS integer))) ELSE kp._text(kp._fail('KP005', 'Chr(' || $1 "
     "|| '): a server without the extension kptables knows ASCII alone', CAST(NULL AS text))) END"},
    {"cos", "double precision", "double precision", "cos($1)"},
    {"cur_fix", "bigint", "bigint", "$1 / 10000 * 10000"},
    {"cur_int", "bigint", "bigint", "CAST(floor($1 / 10000.0) AS bigint) * 10000"},
    {"cur_mul", "bigint, bigint", "bigint", "CAST(kp._even(CAST($1 AS numeric) * $2 / 10000) AS bigint)"},
    {"cur_round", "bigint, double precision", "bigint",
     "CASE WHEN $2 >= 4 THEN $1 ELSE CAST(kp._even($1 * power(10.0, $2::numeric - 4)) * power(10.0, 4 - $2::numeric) "
     "AS bigint) END"},
    {"cur_round_server", "bigint, double precision", "bigint",
     "CAST(round($1 * 0.0001, CAST($2 AS integer)) * 10000 AS bigint)"},
    {"cur_round_server", "bigint, double precision, double precision", "bigint",
     "CASE WHEN $3 = 0 THEN kp.cur_round_server($1, $2) ELSE CAST(trunc($1 * 0.0001, CAST($2 AS integer)) * 10000 AS "
     "bigint) END"},
    {"date", "", "timestamp", "CAST(current_date AS timestamp)", kVolatile},
    // Before day 0 the fraction still counts away from midnight.
    {"_serial", "timestamp", "double precision",
     "(CAST($1 AS date) - DATE '1899-12-30') + CASE WHEN $1 < TIMESTAMP '1899-12-30' THEN -1 ELSE 1 END * "
     "CAST(extract(epoch FROM CAST($1 AS time)) AS double precision) / 86400"},
    {"_of_serial", "double precision", "timestamp",
     "DATE '1899-12-30' + CAST(trunc($1) AS integer) + make_interval(secs => round(abs($1 - trunc($1)) * 86400))"},
    {"date_number", "timestamp", "double precision", "kp._serial($1)"},
    {"date_add", "timestamp, double precision", "timestamp", "kp._of_serial(kp._serial($1) + $2)"},
    {"date_diff", "timestamp, timestamp", "double precision", "kp._serial($1) - kp._serial($2)"},
    {"dateadd", "bpchar, double precision, timestamp", "timestamp",
     "CASE kp._lower($1) COLLATE \"C\" WHEN 'yyyy' THEN $3 + make_interval(years => round($2)::integer) WHEN 'q' THEN $3 + "
     "make_interval(months => 3 * round($2)::integer) WHEN 'm' THEN $3 + make_interval(months => round($2)::integer) WHEN "
     "'ww' THEN $3 + make_interval(weeks => round($2)::integer) WHEN 'h' THEN $3 + make_interval(hours => "
     "round($2)::integer) WHEN 'n' THEN $3 + make_interval(mins => round($2)::integer) WHEN 's' THEN $3 + "
     "make_interval(secs => round($2)) WHEN 'd' THEN $3 + make_interval(days => round($2)::integer) WHEN 'w' THEN $3 + "
     "make_interval(days => round($2)::integer) WHEN 'y' THEN $3 + make_interval(days => round($2)::integer) ELSE "
     "kp._fail('KP005', 'Invalid procedure call or argument: ' || $1, $3) END"},
    {"_seconds", "text, timestamp, timestamp", "numeric",
     "extract(epoch FROM date_trunc($1, $3) - date_trunc($1, $2))"},
    {"datediff", "bpchar, timestamp, timestamp", "integer",
     "CAST(CASE kp._lower($1) COLLATE \"C\" WHEN 'yyyy' THEN extract(year FROM $3) - extract(year FROM $2) WHEN 'q' THEN 4 "
     "* (extract(year FROM $3) - extract(year FROM $2)) + extract(quarter FROM $3) - extract(quarter FROM $2) WHEN 'm' "
     "THEN 12 * (extract(year FROM $3) - extract(year FROM $2)) + extract(month FROM $3) - extract(month FROM $2) WHEN 'd' "
     "THEN $3::date - $2::date WHEN 'y' THEN $3::date - $2::date WHEN 'w' THEN trunc(($3::date - $2::date) / 7.0) WHEN "
     "'ww' THEN (($3::date - extract(dow FROM $3)::integer) - ($2::date - extract(dow FROM $2)::integer)) / 7 WHEN 'h' "
     "THEN kp._seconds('hour', $2, $3) / 3600 WHEN 'n' THEN kp._seconds('minute', $2, $3) / 60 WHEN 's' THEN "
     "kp._seconds('second', $2, $3) ELSE kp._fail('KP005', 'Invalid procedure call or argument: ' || $1, CAST(NULL AS "
     "numeric)) END AS integer)"},
    {"datepart", "bpchar, timestamp", "integer",
     "CAST(CASE kp._lower($1) COLLATE \"C\" WHEN 'yyyy' THEN extract(year FROM $2) WHEN 'q' THEN extract(quarter FROM $2) "
     "WHEN 'm' THEN extract(month FROM $2) WHEN 'y' THEN extract(doy FROM $2) WHEN 'd' THEN extract(day FROM $2) WHEN 'w' "
     "THEN extract(dow FROM $2) + 1 WHEN 'ww' THEN div(extract(doy FROM $2) - 1 + extract(dow FROM date_trunc('year', "
     "$2)), 7) + 1 WHEN 'h' THEN extract(hour FROM $2) WHEN 'n' THEN extract(minute FROM $2) WHEN 's' THEN extract(second "
     "FROM $2) ELSE kp._fail('KP005', 'Invalid procedure call or argument: ' || $1, CAST(NULL AS numeric)) END AS "
     "integer)"},
    {"datename", "bpchar, timestamp", "kp.text",
     "kp._text(CASE kp._lower($1) COLLATE \"C\" WHEN 'm' THEN to_char($2, 'FMMonth') WHEN 'w' THEN to_char($2, 'FMDay') "
     "ELSE CAST(kp.datepart($1, $2) AS text) END)"},
    {"dateserial", "double precision, double precision, double precision", "timestamp",
     "make_date(CASE WHEN round($1) BETWEEN 0 AND 29 THEN 2000 WHEN round($1) BETWEEN 30 AND 99 THEN 1900 ELSE 0 END + "
     "round($1)::integer, 1, 1) + make_interval(months => round($2)::integer - 1, days => round($3)::integer - 1)"},
    {"datevalue", "timestamp", "timestamp", "date_trunc('day', $1)"},
    {"day", "timestamp", "integer", "CAST(extract(day FROM $1) AS integer)"},
    {"day_and_time", "timestamp", "double precision",
     "CAST(extract(day FROM $1) AS integer) + CAST(extract(epoch FROM CAST($1 AS time)) AS double precision) / 86400"},
    {"decimal_fit", "bigint, integer, integer", "bigint", "kp._decimal($1 * 0.0001, $2, $3)"},
    {"div", "double precision, double precision", "double precision", "$1 / $2"},
    {"eomonth", "timestamp", "timestamp", "date_trunc('month', $1) + INTERVAL '1 month - 1 day'"},
    {"eomonth", "timestamp, double precision", "timestamp",
     "date_trunc('month', $1) + make_interval(months => CAST($2 AS integer) + 1) - INTERVAL '1 day'"},
    {"exp", "double precision", "double precision", "exp($1)"},
    {"fit", "bpchar, integer, bpchar", "kp.text",
     "CASE WHEN char_length(kp._raw($1)) > $2 THEN kp._text(kp._fail('KP006', 'The field ''' || $3 || ''' is too small "
     "for a text of ' || char_length(kp._raw($1)) || ' characters: it takes ' || $2, kp._raw($1))) ELSE "
     "kp._text(kp._raw($1)) END"},
    {"fix", "double precision", "double precision", "trunc($1)"},
    {"hex", "double precision", "kp.text", "kp._text(upper(to_hex(CAST($1 AS integer))))"},
    {"hour", "timestamp", "integer", "CAST(extract(hour FROM $1) AS integer)"},
    {"idiv", "double precision, double precision", "bigint", "CAST(round($1) AS bigint) / CAST(round($2) AS bigint)"},
    {"instr", "bpchar, bpchar", "integer", "strpos(kp._lower($1) COLLATE \"C\", kp._lower($2) COLLATE \"C\")"},
    {"instr", "double precision, bpchar, bpchar", "integer",
     "CASE WHEN $1 IS NOT NULL AND $2 IS NOT NULL AND $3 IS NOT NULL THEN COALESCE(NULLIF(strpos(substr(kp._lower($2), "
     "kp._count($1)) COLLATE \"C\", kp._lower($3) COLLATE \"C\"), 0) + kp._count($1) - 1, 0) END"},
    {"charindex", "bpchar, bpchar", "integer",
     "CASE WHEN char_length(kp._raw($1)) = 0 AND $2 IS NOT NULL THEN 0 ELSE kp.\"instr\"($2, $1) END"},
    {"charindex", "bpchar, bpchar, double precision", "integer",
     "CASE WHEN $3 IS NULL OR $2 IS NULL OR $1 IS NULL THEN NULL WHEN char_length(kp._raw($1)) = 0 THEN 0 ELSE "
     "kp.\"instr\"(greatest($3, 1), $2, $1) END"},
    {"int", "double precision", "double precision", "floor($1)"},
    {"join", "bpchar, bpchar", "kp.text",
     "CASE WHEN $1 IS NOT NULL OR $2 IS NOT NULL THEN kp._text(COALESCE(kp._raw($1), '') || COALESCE(kp._raw($2), '')) "
     "END"},
    {"concat", "bpchar, bpchar", "kp.text", "kp._text(kp._raw($1) || kp._raw($2))"},
    {"lcase", "bpchar", "kp.text", "kp._text(lower(kp._raw($1) COLLATE \"und-x-icu\"))"},
    {"left", "bpchar, double precision", "kp.text", "kp._text(\"left\"(kp._raw($1), kp._count($2)))"},
    {"length", "bpchar", "integer", "char_length(kp._raw($1))"},
    // A pattern with classes becomes a regular expression, any other stays LIKE's.
    {"like", "bpchar, bpchar", "boolean",
     "CASE WHEN strpos((kp._raw($2) COLLATE \"C\"), '[') > 0 THEN kp._lower($1) COLLATE \"C\" ~ kp._pattern(kp._lower($2), "
     "'!^', '') ELSE kp._lower($1) COLLATE \"C\" LIKE replace(kp._lower($2) COLLATE \"C\", '\\', '\\\\') END"},
    {"like", "bpchar, bpchar, bpchar", "boolean",
     "CASE WHEN char_length(kp._raw($3)) = 1 THEN kp._lower($1) COLLATE \"C\" ~ kp._pattern(kp._lower($2), '!^', "
     "kp._lower($3)) ELSE kp._fail('KP005', 'the sign of ESCAPE is one character, not ' || kp._raw($3), CAST(NULL AS boolean)) END"},
    {"like_server", "bpchar, bpchar", "boolean", "kp._lower($1) COLLATE \"C\" ~ kp._pattern(kp._lower($2), '^', '')"},
    {"like_server", "bpchar, bpchar, bpchar", "boolean",
     "CASE WHEN char_length(kp._raw($3)) = 1 THEN kp._lower($1) COLLATE \"C\" ~ kp._pattern(kp._lower($2), '^', "
     "kp._lower($3)) ELSE kp._fail('KP005', 'the sign of ESCAPE is one character, not ' || kp._raw($3), CAST(NULL AS boolean)) END"},
    // From the first place from which the rest matches what stands behind the pattern's first %.
    {"_first_match", "text, text", "integer",
     "(SELECT min(at) FROM generate_series(1, char_length($1)) AS at WHERE substr($1, at) COLLATE \"C\" ~ "
     "kp._pattern(ltrim($2 COLLATE \"C\", '%'), '^', ''))"},
    {"patindex", "bpchar, bpchar", "integer",
     "CASE WHEN kp._raw($1) COLLATE \"C\" NOT LIKE '\\%%' THEN CAST(kp.like_server($2, $1) AS integer) WHEN $1 IS NOT NULL "
     "AND $2 IS NOT NULL THEN COALESCE(kp._first_match(kp._lower($2), kp._lower($1)), 0) END"},
    {"log", "double precision", "double precision", "ln($1)"},
    {"ltrim", "bpchar", "kp.text", "kp._text(ltrim((kp._raw($1) COLLATE \"C\"), ' '))"},
    {"mid", "bpchar, double precision", "kp.text", "kp._text(substr(kp._raw($1), kp._count($2)))"},
    {"mid", "bpchar, double precision, double precision", "kp.text",
     "kp._text(substr(kp._raw($1), kp._count($2), kp._count($3)))"},
    {"minute", "timestamp", "integer", "CAST(extract(minute FROM $1) AS integer)"},
    {"mod", "double precision, double precision", "bigint", "CAST(round($1) AS bigint) % CAST(round($2) AS bigint)"},
    {"month", "timestamp", "integer", "CAST(extract(month FROM $1) AS integer)"},
    {"nchar", "double precision", "kp.text",
     "CASE WHEN $1 BETWEEN 1 AND 55295 OR $1 BETWEEN 57344 AND 1114111 THEN kp._text(chr(CAST($1 AS integer))) ELSE "
     "kp._text(kp._fail('KP005', 'Invalid procedure call or argument: ' || $1, CAST($1 AS text))) END"},
    {"monthname", "double precision, double precision", "kp.text",
     "CASE WHEN round($1) BETWEEN 1 AND 12 THEN kp._text(to_char(make_date(2000, CAST($1 AS integer), 1), CASE WHEN $2 = 0 "
     "THEN 'FMMonth' WHEN $2 <> 0 THEN 'Mon' END)) ELSE kp._text(kp._fail('KP005', 'Invalid procedure call or argument: "
     "MonthName(' || $1 || ')', CAST(NULL AS text))) END"},
    {"monthname", "double precision", "kp.text", "kp.monthname($1, 0)"},
    {"oct", "double precision", "kp.text",
     "CASE WHEN $1 IS NOT NULL THEN kp._text(COALESCE(NULLIF(ltrim((SELECT string_agg(CAST((CAST(CAST($1 AS integer) AS "
     "bigint) & 4294967295) >> (3 * place) & 7 AS text), '' ORDER BY place DESC) FROM generate_series(0, 10) AS place), "
     "'0'), ''), '0')) END"},
    {"now", "", "timestamp", "CAST(localtimestamp(0) AS timestamp)", kVolatile},
    {"_partition", "bigint, bigint, bigint, bigint, integer", "kp.text",
     "kp._text(lpad(CASE WHEN $1 < $2 THEN '' WHEN $1 > $3 THEN CAST($3 + 1 AS text) ELSE CAST($2 + ($1 - $2) / $4 * $4 "
     "AS text) END, $5) || ':' || lpad(CASE WHEN $1 < $2 THEN CAST($2 - 1 AS text) WHEN $1 > $3 THEN '' ELSE "
     "CAST(least($2 + ($1 - $2) / $4 * $4 + $4 - 1, $3) AS text) END, $5))"},
    {"partition", "double precision, double precision, double precision, double precision", "kp.text",
     "CASE WHEN round($2) < 0 OR round($3) <= round($2) OR round($4) < 1 THEN kp._text(kp._fail('KP005', 'Invalid "
     "procedure call or argument: Partition(' || $1 || ')', CAST(NULL AS text))) ELSE kp._partition(CAST($1 AS bigint), CAST($2 AS bigint), "
     "CAST($3 AS bigint), CAST($4 AS bigint), greatest(length(CAST(CAST($2 AS bigint) - 1 AS text)), "
     "length(CAST(CAST($3 AS bigint) + 1 AS text)))) END"},
    {"pow", "double precision, double precision", "double precision", "power($1, $2)"},
    {"proper", "bpchar", "kp.text",
     "CASE WHEN $1 IS NOT NULL THEN kp._text(COALESCE((SELECT string_agg(upper(substr(word[1], 1, 1) COLLATE "
     "\"und-x-icu\") || substr(word[1], 2), '' ORDER BY n) FROM regexp_matches(lower(kp._raw($1) COLLATE \"und-x-icu\") "
     "COLLATE \"C\", '([^ \\t\\n\\r]+|[ \\t\\n\\r]+)', 'g') WITH ORDINALITY AS words(word, n)), '')) END"},
    {"_escaped", "text", "text", "regexp_replace($1 COLLATE \"C\", '([].^$*+?(){}|\\\\[])', '\\\\\\1', 'g')"},
    {"replace", "bpchar, bpchar, bpchar", "kp.text",
     "CASE WHEN char_length(kp._raw($2)) = 0 THEN kp._text(kp._raw($1)) ELSE kp._text(regexp_replace(kp._raw($1) COLLATE "
     "\"C\", kp._escaped(kp._raw($2)), replace(kp._raw($3) COLLATE \"C\", '\\', '\\\\'), 'gi')) END"},
    {"replicate", "bpchar, double precision", "kp.text",
     "CASE WHEN $2 >= 0 THEN kp._text(CASE WHEN octet_length(kp._raw($1)) * $2 > 1e7 THEN kp._fail('22003', 'the text "
     "would be too long: ' || $2 || ' times', CAST(NULL AS text)) ELSE repeat(kp._raw($1), CAST($2 AS integer)) END) END"},
    {"right", "bpchar, double precision", "kp.text", "kp._text(\"right\"(kp._raw($1), kp._count($2)))"},
    {"round", "double precision, double precision", "double precision",
     "CAST(kp._even(CAST($1 AS numeric) * power(10.0, CAST($2 AS numeric))) / power(10.0, CAST($2 AS numeric)) AS "
     "double precision)"},
    {"round_server", "double precision, double precision", "double precision",
     "CAST(round(kp._plain($1), CAST($2 AS integer)) AS double precision)"},
    {"round_server", "double precision, double precision, double precision", "double precision",
     "CASE WHEN $3 = 0 THEN kp.round_server($1, $2) ELSE CAST(trunc(kp._plain($1), CAST($2 AS integer)) AS double "
     "precision) END"},
    {"rtrim", "bpchar", "kp.text", "kp._text(rtrim((kp._raw($1) COLLATE \"C\"), ' '))"},
    {"second", "timestamp", "integer", "CAST(extract(second FROM $1) AS integer)"},
    {"sgn", "double precision", "integer", "CAST(sign($1) AS integer)"},
    {"sin", "double precision", "double precision", "sin($1)"},
    {"space", "double precision", "kp.text", "kp._text(repeat(' ', kp._count($1)))"},
    {"sqr", "double precision", "double precision", "sqrt($1)"},
    {"strcomp", "bpchar, bpchar", "integer", "CASE WHEN $1 < $2 THEN -1 WHEN $1 = $2 THEN 0 WHEN $1 > $2 THEN 1 END"},
    {"string", "double precision, bpchar", "kp.text", "kp._text(repeat(\"left\"(kp._raw($2), 1), kp._count($1)))"},
    {"strreverse", "bpchar", "kp.text", "kp._text(reverse(kp._raw($1)))"},
    {"stuff", "bpchar, double precision, double precision, bpchar", "kp.text",
     "CASE WHEN $2 >= 1 AND $3 >= 0 AND $2 <= char_length(kp._raw($1)) THEN kp._text(\"left\"(kp._raw($1), CAST($2 AS "
     "integer) - 1) || kp._raw($4) || substr(kp._raw($1), CAST(least($2 + $3, 1e9) AS integer))) END"},
    {"substring", "bpchar, double precision, double precision", "kp.text",
     "kp._text(substr(kp._raw($1), CAST($2 AS integer), kp._count($3)))"},
    // The digits behind the sign, which 0 keeps.
    {"_digits", "double precision, integer", "text",
     "CASE WHEN $1 < 0 THEN '-' ELSE '' END || round(abs(kp._plain($1)), $2)"},
    {"_str", "double precision, integer, integer", "text",
     "CASE WHEN length(kp._digits($1, 0)) > $2 THEN repeat('*', $2) ELSE lpad(kp._digits($1, least($3, 16, greatest(0, "
     "$2 - length(kp._digits($1, 0)) - 1))), $2) END"},
    {"str_server", "double precision, double precision, double precision", "kp.text",
     "kp._text(CASE WHEN $2 BETWEEN 1 AND 8000 AND $3 >= 0 THEN kp._str($1, CAST($2 AS integer), CAST(least($3, 16) AS "
     "integer)) ELSE kp._fail('KP005', 'Invalid procedure call or argument: Str(' || $1 || ', ' || $2 || ', ' || $3 || ')', CAST(NULL AS text)) END)"},
    {"tan", "double precision", "double precision", "tan($1)"},
    {"substr", "bpchar, integer, integer", "kp.text", "kp._text(substr(kp._raw($1), $2, $3))"},
    {"text_boolean", "integer", "kp.text", "kp._text(CASE WHEN $1 <> 0 THEN 'True' WHEN $1 = 0 THEN 'False' END)"},
    {"text_currency", "bigint", "kp.text", "kp._text(CAST(trim_scale($1 * 0.0001) AS text))"},
    {"text_date", "timestamp", "kp.text",
     "kp._text(concat_ws(' ', CASE WHEN CAST($1 AS date) <> DATE '1899-12-30' THEN to_char($1, 'FMYYYY-FMMM-FMDD') END, "
     "CASE WHEN CAST($1 AS time) <> TIME '0:00' OR CAST($1 AS date) = DATE '1899-12-30' THEN to_char($1, "
     "'FMHH24:MI:SS') END))"},
    {"text_double", "double precision", "kp.text", "kp._text(CAST(trim_scale(CAST($1 AS numeric)) AS text))"},
    {"str", "double precision", "kp.text",
     "kp._text(CASE WHEN $1 >= 0 THEN ' ' ELSE '' END || kp._raw(kp.text_double($1)))"},
    // Of Format's patterns those of amounts; half away from zero.
    {"_formatted", "numeric, text", "text",
     "CASE WHEN $2 COLLATE \"C\" ~ '^(#,##)?0(\\.0{1,15})?$' THEN to_char(round($1, greatest(0, length($2) - "
     "strpos($2 || '.', '.' COLLATE \"C\"))), CASE WHEN $2 COLLATE \"C\" LIKE '#%' THEN 'FM' || repeat('999,', 9) || '990' "
     "ELSE 'FM' || repeat('9', 29) || '0' END || COALESCE(substring($2 COLLATE \"C\" FROM '\\..*'), '')) ELSE "
     "kp._fail('KP005', 'Format with the pattern ''' || $2 || ''': a server without the extension kptables knows 0, 0.00, #,##0 and #,##0.00 alone', "
     "CAST(NULL AS text)) END"},
    {"format_number", "double precision", "kp.text", "kp._text(COALESCE(CAST(trim_scale(kp._plain($1)) AS text), ''))"},
    {"format_number", "double precision, bpchar", "kp.text",
     "kp._text(COALESCE(kp._formatted(kp._plain($1), kp._raw($2)), ''))"},
    {"to_boolean", "double precision", "integer", "-CAST($1 <> 0 AS integer)"},
    {"_is_number", "text", "boolean",
     "$1 COLLATE \"C\" ~ '^\\s*[-+]?(\\d[\\d,]*\\.?\\d*|\\.\\d+)([eEdD][-+]?\\d+)?\\s*$'"},
    {"isnumeric", "bpchar", "boolean", "COALESCE(kp._is_number(kp._raw($1)), FALSE)"},
    {"to_double", "bpchar", "double precision",
     "CASE WHEN kp._is_number(kp._raw($1)) THEN CAST(translate(btrim(kp._raw($1) COLLATE \"C\"), 'dD,', 'ee') AS double "
     "precision) ELSE kp._fail('22018', 'Type mismatch: ''' || kp._raw($1) || ''' is not a number', CAST(NULL AS double "
     "precision)) END"},
    {"to_decimal", "double precision, integer, integer", "bigint", "kp._decimal(kp._plain($1), $2, $3)"},
    {"to_decimal", "bpchar, integer, integer", "bigint", "kp._decimal(kp._plain(kp.to_double($1)), $2, $3)"},
    {"to_single", "double precision", "double precision", "CAST(CAST($1 AS real) AS double precision)"},
    {"to_single", "bpchar", "double precision", "kp.to_single(kp.to_double($1))"},
    {"val", "bpchar", "double precision",
     "CASE WHEN $1 IS NOT NULL THEN COALESCE(CAST(substring(kp._raw($1) COLLATE \"C\" FROM "
     "'^\\s*([-+]?(?:\\d+\\.?\\d*|\\.\\d+)(?:[eE][-+]?\\d+)?)') AS double precision), 0) END"},
    // y-m-d [h:m[:s]] of the forms in which a date is written.
    {"_date_text", "text", "text",
     "regexp_replace(regexp_replace(regexp_replace(regexp_replace(btrim($1 COLLATE \"C\"), '\\s*([-/.])\\s*', '\\1', 'g'), "
     "'^(\\d{4})(\\d\\d)(\\d\\d)(?!\\d)', '\\1-\\2-\\3'), '^(\\d{1,2})/(\\d{1,2})/(\\d{4})', '\\3-\\1-\\2'), "
     "'^(\\d+)年(\\d+)月(\\d+)日', '\\1-\\2-\\3')"},
    {"_is_date", "text", "boolean",
     "CASE WHEN $1 COLLATE \"C\" ~ '^\\d{1,4}[-/.](0?[1-9]|1[0-2])[-/.](0?[1-9]|[12]\\d|3[01])(\\s+([01]?\\d|2[0-3]):[0-5]\\d(:"
     "[0-5]\\d)?)?$' THEN CAST(substring($1 COLLATE \"C\" FROM '[-/.]\\d+[-/.](\\d+)') AS integer) <= extract(day FROM "
     "kp.ymd(CAST(substring($1 COLLATE \"C\" FROM '\\d+') AS integer), CAST(substring($1 COLLATE \"C\" FROM "
     "'[-/.](\\d+)[-/.]') AS integer), 1) + INTERVAL '1 month - 1 day') ELSE FALSE END"},
    {"isdate", "bpchar", "boolean", "COALESCE(kp._is_date(kp._date_text(kp._raw($1))), FALSE)"},
    {"_to_date", "text, text", "timestamp",
     "CASE WHEN $1 COLLATE \"C\" ~ '^\\d{1,4}[-/.]\\d{1,2}[-/.]\\d{1,2}(\\s+\\d{1,2}:\\d{2}(:\\d{2})?)?$' THEN "
     "kp.ymd(CAST(substring($1 COLLATE \"C\" FROM '\\d+') AS integer), CAST(substring($1 COLLATE \"C\" FROM "
     "'[-/.](\\d+)[-/.]') AS integer), CAST(substring($1 COLLATE \"C\" FROM '[-/.]\\d+[-/.](\\d+)') AS integer)) + "
     "CAST(COALESCE(substring($1 COLLATE \"C\" FROM '\\d+:[\\d:]+'), '0:00') AS time) ELSE kp._fail('22018', "
     "'Type mismatch: ''' || $2 || ''' is not a date', CAST(NULL AS timestamp)) END"},
    {"to_date", "bpchar", "timestamp", "kp._to_date(kp._date_text(kp._raw($1)), kp._raw($1))"},
    {"to_date", "double precision", "timestamp", "kp._of_serial($1)"},
    // As a host of the server writes it: a T before the time, parts of a second.
    {"_server_text", "text", "text",
     "kp._date_text(regexp_replace(regexp_replace(btrim($1 COLLATE \"C\"), '(:\\d+)\\.\\d+$', '\\1'), "
     "'^(\\d{4}-\\d\\d-\\d\\d)T', '\\1 '))"},
    {"isdate_server", "bpchar", "boolean", "COALESCE(kp._is_date(kp._server_text(kp._raw($1))), FALSE)"},
    {"server_date", "bpchar", "timestamp", "kp._to_date(kp._server_text(kp._raw($1)), kp._raw($1))"},
    {"server_date", "double precision", "timestamp", "kp._of_serial($1 + 2)"},
    // CONVERT's styles from 0; (1) and (2) are the day and the hour with a blank before one digit.
    {"_style", "integer", "text",
     "CASE WHEN $1 >= 0 AND ($1 % 100 < 22 AND $1 < 200 OR $1 < 26 OR $1 = 126) THEN replace((ARRAY['Mon \"(1)\" yyyy "
     "\"(2)\":MIAM', 'MM/DD/YY', 'YY.MM.DD', 'DD/MM/YY', 'DD.MM.YY', 'DD-MM-YY', 'DD Mon YY', 'Mon DD, YY', "
     "'HH24:MI:SS', 'Mon \"(1)\" yyyy \"(2)\":MI:SS\":000\"AM', 'MM-DD-YY', 'YY/MM/DD', 'YYMMDD', 'DD Mon yyyy "
     "HH24:MI:SS\":000\"', 'HH24:MI:SS\":000\"', NULL, NULL, NULL, NULL, NULL, 'yyyy-MM-DD HH24:MI:SS', 'yyyy-MM-DD "
     "HH24:MI:SS\".000\"', 'MM/DD/YY \"(2)\":MI:SS AM', 'yyyy-MM-DD', 'HH24:MI:SS', 'yyyy-MM-DD HH24:MI:SS\".000\"', "
     "'yyyy-MM-DD\"T\"HH24:MI:SS'])[$1 % 100 + 1], 'YY', CASE WHEN $1 >= 100 THEN 'yyyy' ELSE 'YY' END) END"},
    {"_known_style", "double precision", "text",
     "COALESCE(kp._style(CAST($1 AS integer)), kp._fail('KP005', $1 || ' is no style of a date', CAST(NULL AS text)))"},
    {"date_style", "timestamp, double precision", "kp.text",
     "kp._text(replace(replace(to_char($1, kp._known_style($2)), '(1)', lpad(to_char($1, 'FMDD'), 2)), '(2)', "
     "lpad(to_char($1, 'FMHH12'), 2)))"},
    // Of the three numbers at a text's beginning, the year first; two digits are a year from 1950 to 2049.
    {"_year_first", "text[]", "text",
     "CASE WHEN length($1[1]) = 2 THEN CASE WHEN $1[1] COLLATE \"C\" < '50' THEN '20' ELSE '19' END ELSE '' END || "
     "$1[1] || '-' || $1[2] || '-' || $1[3]"},
    {"_ordered", "text[], text", "text[]",
     "CASE WHEN $2 COLLATE \"C\" LIKE 'yy%' OR $2 COLLATE \"C\" LIKE 'YY%' THEN $1 WHEN $2 COLLATE \"C\" LIKE 'DD%' THEN "
     "ARRAY[$1[3], $1[2], $1[1]] ELSE ARRAY[$1[3], $1[1], $1[2]] END"},
    {"date_of_style", "bpchar, double precision", "timestamp",
     "kp._to_date(COALESCE(regexp_replace(kp._year_first(kp._ordered(regexp_match(kp._raw($1) COLLATE \"C\", "
     "'^ *(\\d+)[-/.](\\d+)[-/.](\\d+)'), kp._known_style($2))) || regexp_replace(kp._raw($1) COLLATE \"C\", '^ "
     "*\\d+[-/.]\\d+[-/.]\\d+', ''), '(:\\d+)\\.\\d+$', '\\1'), kp._server_text(kp._raw($1))), kp._raw($1))"},
    {"_date_part", "timestamp, text, text", "text",
     "CASE $2 COLLATE \"C\" WHEN 'yyyy' THEN to_char($1, 'YYYY') WHEN 'yy' THEN to_char($1, 'YY') WHEN 'm' THEN "
     "to_char($1, 'FMMM') WHEN 'mm' THEN to_char($1, 'MM') WHEN 'mmm' THEN to_char($1, 'Mon') WHEN 'mmmm' THEN "
     "to_char($1, 'FMMonth') WHEN 'd' THEN to_char($1, 'FMDD') WHEN 'dd' THEN to_char($1, 'DD') WHEN 'ddd' THEN "
     "to_char($1, 'Dy') WHEN 'dddd' THEN to_char($1, 'FMDay') WHEN 'h' THEN to_char($1, 'FMHH24') WHEN 'hh' THEN "
     "to_char($1, 'HH24') WHEN 'n' THEN to_char($1, 'FMMI') WHEN 'nn' THEN to_char($1, 'MI') WHEN 's' THEN to_char($1, "
     "'FMSS') WHEN 'ss' THEN to_char($1, 'SS') ELSE CASE WHEN $2 COLLATE \"C\" ~ '^[- /.:年月日时分秒]$' THEN $2 ELSE "
     "kp._fail('KP005', 'Format with the pattern ''' || $3 || ''': a server without the extension kptables knows y, m, d, h, n and s alone', $2) "
     "END END"},
    {"format_date", "timestamp", "kp.text", "kp._text(COALESCE(kp._raw(kp.text_date($1)), ''))"},
    // m behind the hour would be minutes.
    {"format_date", "timestamp, bpchar", "kp.text",
     "kp._text(CASE WHEN $1 IS NULL THEN '' ELSE COALESCE((SELECT string_agg(kp._date_part($1, CASE WHEN kp._lower($2) "
     "COLLATE \"C\" ~ 'h[^a-z]*m' THEN 'hm' ELSE part[1] END, kp._raw($2)), '' ORDER BY n) FROM "
     "regexp_matches(kp._lower($2) COLLATE \"C\", '(([a-z])\\2*|.)', 'g') WITH ORDINALITY AS parts(part, n)), '') END)"},
    {"format_text", "bpchar", "kp.text", "kp._text(COALESCE(kp._raw($1), ''))"},
    {"time", "", "timestamp", "TIMESTAMP '1899-12-30' + CAST(localtime(0) AS interval)", kVolatile},
    {"trim", "bpchar", "kp.text", "kp._text(btrim((kp._raw($1) COLLATE \"C\"), ' '))"},
    {"ucase", "bpchar", "kp.text", "kp._text(upper(kp._raw($1) COLLATE \"und-x-icu\"))"},
    {"unicode", "bpchar", "integer", "CASE WHEN char_length(kp._raw($1)) > 0 THEN ascii(kp._raw($1)) END"},
    {"weekday", "timestamp", "integer", "CAST(extract(dow FROM $1) AS integer) + 1"},
    // January 2nd, 2000, is a Sunday.
    {"weekdayname", "double precision, double precision, double precision", "kp.text",
     "CASE WHEN round($1) BETWEEN 1 AND 7 AND round($3) <= 7 THEN kp._text(to_char(DATE '2000-01-02' + (CAST($1 AS "
     "integer) + greatest(CAST($3 AS integer), 1) - 2) % 7, CASE WHEN $2 = 0 THEN 'FMDay' WHEN $2 <> 0 THEN 'Dy' END)) "
     "ELSE kp._text(kp._fail('KP005', 'Invalid procedure call or argument: WeekdayName(' || $1 || ', ' || $3 || ')', "
     "CAST(NULL AS text))) END"},
    {"weekdayname", "double precision, double precision", "kp.text", "kp.weekdayname($1, $2, 1)"},
    {"weekdayname", "double precision", "kp.text", "kp.weekdayname($1, 0, 1)"},
    {"year", "timestamp", "integer", "CAST(extract(year FROM $1) AS integer)"},
};

/// Without these a function above cannot be created.
constexpr std::string_view kBefore = R"sql(
CREATE SCHEMA IF NOT EXISTS kp;
DO $do$ BEGIN
    CREATE COLLATION kp.book (provider = icu, locale = 'zh-u-co-pinyin-ks-level2-kr-latn', deterministic = false);
    CREATE DOMAIN kp.text AS bpchar COLLATE kp.book;
    FOR n IN 1..255 LOOP EXECUTE format('CREATE DOMAIN kp.%I AS bpchar COLLATE kp.book', 'text(' || n || ')'); END LOOP;
    CREATE DOMAIN kp.currency AS bigint;
    CREATE DOMAIN kp.flag AS smallint;
    CREATE DOMAIN kp.date AS timestamp(0);
EXCEPTION WHEN duplicate_object THEN NULL;
END $do$;
DO $do$ BEGIN
    FOR p IN 1..38 LOOP FOR s IN 0..least(p, 4) LOOP
        EXECUTE format('CREATE DOMAIN kp.%I AS bigint', 'decimal(' || p || ',' || s || ')');
    END LOOP; END LOOP;
EXCEPTION WHEN duplicate_object THEN NULL;
END $do$;
CREATE OR REPLACE FUNCTION kp._fail(text, text, anyelement) RETURNS anyelement LANGUAGE plpgsql IMMUTABLE PARALLEL SAFE
AS $do$ BEGIN
    -- The text names what it complains of, which is Null when an argument is.
    IF $2 IS NULL THEN RETURN $3; END IF;
    RAISE EXCEPTION USING ERRCODE = $1, MESSAGE = $2;
END $do$;
CREATE OR REPLACE FUNCTION kp.ymd(integer, integer, integer) RETURNS timestamp LANGUAGE sql IMMUTABLE PARALLEL SAFE AS
$do$ SELECT make_timestamp($1 + CASE WHEN $1 BETWEEN 0 AND 29 THEN 2000 WHEN $1 BETWEEN 30 AND 99 THEN 1900 ELSE 0 END,
    $2, $3, 0, 0, 0) $do$;
-- Of a pattern, the signs that make a class one of what is outside it, and the character of ESCAPE or "". % and _ in
-- brackets stand for themselves.
CREATE OR REPLACE FUNCTION kp._class(text, text) RETURNS text LANGUAGE sql IMMUTABLE PARALLEL SAFE AS
$do$ SELECT CASE WHEN length($1) > 1 AND strpos($2 COLLATE "C", substr($1, 1, 1) COLLATE "C") > 0
    THEN '[^' || regexp_replace(substr($1, 2) COLLATE "C", '([\\^[])', '\\\1', 'g') || ']'
    ELSE '[' || regexp_replace($1 COLLATE "C", '([\\^[])', '\\\1', 'g') || ']' END $do$;
CREATE OR REPLACE FUNCTION kp._literal(text) RETURNS text LANGUAGE sql IMMUTABLE PARALLEL SAFE AS
$do$ SELECT regexp_replace($1 COLLATE "C", '([].^$*+?(){}|\\[])', '\\\1', 'g') $do$;
CREATE OR REPLACE FUNCTION kp._pattern(text, text, text) RETURNS text LANGUAGE sql IMMUTABLE PARALLEL SAFE AS
$do$ SELECT '^' || COALESCE(string_agg(CASE WHEN $3 COLLATE "C" <> '' AND length(p[1]) = 2 THEN kp._literal(substr(p[1], 2))
    WHEN p[1] LIKE '[%]' COLLATE "C" AND length(p[1]) > 2 THEN kp._class(substr(p[1], 2, length(p[1]) - 2), $2)
    WHEN p[1] COLLATE "C" = '%' THEN '.*' WHEN p[1] COLLATE "C" = '_' THEN '.' ELSE kp._literal(p[1])
    END, '' ORDER BY n), '') || '$'
    FROM regexp_matches($1 COLLATE "C", '(' || CASE WHEN $3 COLLATE "C" <> '' THEN kp._literal($3) || '.|' ELSE '' END ||
        '\[[^]]+\]|.)', 'g') WITH ORDINALITY AS parts(p, n) $do$;
-- Keeps a counter ahead of a value that a statement gave itself.
CREATE OR REPLACE FUNCTION kp.keep_counter() RETURNS trigger LANGUAGE plpgsql AS
$do$ DECLARE given bigint = (to_jsonb(NEW) ->> TG_ARGV[1])::bigint;
BEGIN
    -- The rows of a statement come here one after the other when all of them are written.
    IF given > COALESCE(pg_sequence_last_value(TG_ARGV[0]::regclass), 0) THEN
        PERFORM setval(TG_ARGV[0]::regclass, given);
    END IF;
    RETURN NULL;
END $do$;
CREATE OR REPLACE FUNCTION kp._last(anyelement, anyelement) RETURNS anyelement LANGUAGE sql IMMUTABLE PARALLEL SAFE AS
$do$ SELECT $2 $do$;
DO $do$ BEGIN
    CREATE AGGREGATE kp.last(anyelement) (SFUNC = kp._last, STYPE = anyelement);
EXCEPTION WHEN duplicate_function THEN NULL;
END $do$;
)sql";

/// Drops the functions of an earlier version that answer with another type, which CREATE OR REPLACE refuses to change.
std::string DropOtherResults() {
    std::string wanted;
    for (const ServerFunction& function : kFunctions) {
        wanted.append(wanted.empty() ? "('" : ",\n('").append(function.name).append("', '");
        wanted.append(function.parameters).append("', '").append(function.result).append("')");
    }
    return "DO $do$ DECLARE other text; BEGIN\n"
           "FOR other IN SELECT p.oid::regprocedure FROM pg_proc AS p JOIN (VALUES " +
           wanted +
           ") AS w(name, parameters, result) ON p.proname = w.name AND p.oid = to_regprocedure(format('kp.%I(%s)', w.name, "
           "w.parameters)) AND p.prorettype <> to_regtype(w.result)\n"
           "LOOP EXECUTE 'DROP FUNCTION ' || other; END LOOP;\nEND $do$;\n";
}

std::string MakeText() {
    std::string text(kBefore);
    text += DropOtherResults();
    for (const ServerFunction& function : kFunctions) {
        text.append("CREATE OR REPLACE FUNCTION kp.\"").append(function.name).append("\"(").append(function.parameters);
        text.append(") RETURNS ").append(function.result).append(" LANGUAGE sql ").append(function.qualities);
        text.append(" PARALLEL SAFE AS $do$ SELECT ").append(function.body).append(" $do$;\n");
    }
    text.append("COMMENT ON SCHEMA kp IS 'kpTables ").append(std::to_string(kSharedSchemaVersion)).append("'");
    return text;
}

}  // namespace

std::span<const ServerFunction> ServerFunctions() noexcept { return kFunctions; }

std::string_view SharedSchemaText() {
    static const std::string text = MakeText();
    return text;
}

}  // namespace kpTables::sql::print::postgres
