#include "sql/print/postgres/FunctionList.h"

#include <string>

namespace kpTables::sql::print::postgres {

namespace {

constexpr std::string_view kVolatile = "STABLE";

constexpr ServerFunction kFunctions[] = {
    // The text with its trailing blanks, which a cast to text would cut.
    {"_raw", "bpchar", "text", "pg_catalog.textin(pg_catalog.bpcharout($1))"},
    {"_lower", "bpchar", "text", "lower(kp._raw($1) COLLATE \"und-x-icu\")"},
    {"_text", "text", "kp.text", "CAST(CAST($1 AS bpchar) AS kp.text)"},
    {"_count", "double precision", "integer",
     "CASE WHEN $1 < 0 THEN kp._fail('KP005', 'Invalid procedure call or argument', $1::integer) ELSE $1::integer END"},
    // Halves go to the even neighbour.
    {"_even", "numeric", "numeric", "CASE WHEN abs($1 - trunc($1)) = 0.5 THEN 2 * round($1 / 2) ELSE round($1) END"},

    {"abs", "double precision", "double precision", "abs($1)"},
    {"abs", "bigint", "bigint", "abs($1)"},
    {"asc", "bpchar", "integer",
     "CASE WHEN ascii(kp._raw($1)) BETWEEN 1 AND 127 THEN ascii(kp._raw($1)) ELSE kp._fail('KP005', 'Asc of ''' || "
     "kp._raw($1) || ''': a server knows the codes of ASCII alone', CAST(NULL AS integer)) END"},
    {"char", "bpchar, integer", "kp.text", "kp._text(rpad(kp._raw($1), $2))"},
    {"chr", "double precision", "kp.text",
     "CASE WHEN $1 BETWEEN 1 AND 127 THEN kp._text(chr(CAST($1 AS integer))) ELSE kp._text(kp._fail('KP005', 'Chr(' || $1 "
     "|| '): a server knows the codes of ASCII alone', CAST(NULL AS text))) END"},
    {"cur_fix", "bigint", "bigint", "$1 / 10000 * 10000"},
    {"cur_int", "bigint", "bigint", "CAST(floor($1 / 10000.0) AS bigint) * 10000"},
    {"cur_mul", "bigint, bigint", "bigint", "CAST(kp._even(CAST($1 AS numeric) * $2 / 10000) AS bigint)"},
    {"cur_round", "bigint, double precision", "bigint",
     "CASE WHEN $2 >= 4 THEN $1 ELSE CAST(kp._even($1 * power(10.0, $2::numeric - 4)) * power(10.0, 4 - $2::numeric) "
     "AS bigint) END"},
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
    {"dateserial", "double precision, double precision, double precision", "timestamp",
     "make_date(CASE WHEN round($1) BETWEEN 0 AND 29 THEN 2000 WHEN round($1) BETWEEN 30 AND 99 THEN 1900 ELSE 0 END + "
     "round($1)::integer, 1, 1) + make_interval(months => round($2)::integer - 1, days => round($3)::integer - 1)"},
    {"datevalue", "timestamp", "timestamp", "date_trunc('day', $1)"},
    {"day", "timestamp", "integer", "CAST(extract(day FROM $1) AS integer)"},
    {"day_and_time", "timestamp", "double precision",
     "CAST(extract(day FROM $1) AS integer) + CAST(extract(epoch FROM CAST($1 AS time)) AS double precision) / 86400"},
    {"div", "double precision, double precision", "double precision", "$1 / $2"},
    {"exp", "double precision", "double precision", "exp($1)"},
    {"fit", "bpchar, integer, bpchar", "kp.text",
     "CASE WHEN char_length(kp._raw($1)) > $2 THEN kp._text(kp._fail('22003', 'The field ''' || $3 || ''' is too small "
     "for a text of ' || char_length(kp._raw($1)) || ' characters: it takes ' || $2, kp._raw($1))) ELSE "
     "kp._text(kp._raw($1)) END"},
    {"fix", "double precision", "double precision", "trunc($1)"},
    {"hour", "timestamp", "integer", "CAST(extract(hour FROM $1) AS integer)"},
    {"idiv", "double precision, double precision", "bigint", "CAST(round($1) AS bigint) / CAST(round($2) AS bigint)"},
    {"instr", "bpchar, bpchar", "integer", "strpos(kp._lower($1) COLLATE \"C\", kp._lower($2) COLLATE \"C\")"},
    {"instr", "double precision, bpchar, bpchar", "integer",
     "COALESCE(NULLIF(strpos(substr(kp._lower($2), kp._count($1)) COLLATE \"C\", kp._lower($3) COLLATE \"C\"), 0) + "
     "kp._count($1) - 1, 0)"},
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
     "CASE WHEN strpos((kp._raw($2) COLLATE \"C\"), '[') > 0 THEN kp._lower($1) COLLATE \"C\" ~ kp._pattern(kp._lower($2)) "
     "ELSE kp._lower($1) COLLATE \"C\" LIKE replace(kp._lower($2) COLLATE \"C\", '\\', '\\\\') END"},
    {"log", "double precision", "double precision", "ln($1)"},
    {"ltrim", "bpchar", "kp.text", "kp._text(ltrim((kp._raw($1) COLLATE \"C\"), ' '))"},
    {"mid", "bpchar, double precision", "kp.text", "kp._text(substr(kp._raw($1), kp._count($2)))"},
    {"mid", "bpchar, double precision, double precision", "kp.text",
     "kp._text(substr(kp._raw($1), kp._count($2), kp._count($3)))"},
    {"minute", "timestamp", "integer", "CAST(extract(minute FROM $1) AS integer)"},
    {"mod", "double precision, double precision", "bigint", "CAST(round($1) AS bigint) % CAST(round($2) AS bigint)"},
    {"month", "timestamp", "integer", "CAST(extract(month FROM $1) AS integer)"},
    {"now", "", "timestamp", "CAST(localtimestamp(0) AS timestamp)", kVolatile},
    {"pow", "double precision, double precision", "double precision", "power($1, $2)"},
    {"_escaped", "text", "text", "regexp_replace($1 COLLATE \"C\", '([].^$*+?(){}|\\\\[])', '\\\\\\1', 'g')"},
    {"replace", "bpchar, bpchar, bpchar", "kp.text",
     "CASE WHEN char_length(kp._raw($2)) = 0 THEN kp._text(kp._raw($1)) ELSE kp._text(regexp_replace(kp._raw($1) COLLATE "
     "\"C\", kp._escaped(kp._raw($2)), replace(kp._raw($3) COLLATE \"C\", '\\', '\\\\'), 'gi')) END"},
    {"right", "bpchar, double precision", "kp.text", "kp._text(\"right\"(kp._raw($1), kp._count($2)))"},
    {"round", "double precision, double precision", "double precision",
     "CAST(kp._even(CAST($1 AS numeric) * power(10.0, CAST($2 AS numeric))) / power(10.0, CAST($2 AS numeric)) AS "
     "double precision)"},
    {"rtrim", "bpchar", "kp.text", "kp._text(rtrim((kp._raw($1) COLLATE \"C\"), ' '))"},
    {"second", "timestamp", "integer", "CAST(extract(second FROM $1) AS integer)"},
    {"sgn", "double precision", "integer", "CAST(sign($1) AS integer)"},
    {"space", "double precision", "kp.text", "kp._text(repeat(' ', kp._count($1)))"},
    {"sqr", "double precision", "double precision", "sqrt($1)"},
    {"strcomp", "bpchar, bpchar", "integer", "CASE WHEN $1 < $2 THEN -1 WHEN $1 = $2 THEN 0 WHEN $1 > $2 THEN 1 END"},
    {"string", "double precision, bpchar", "kp.text", "kp._text(repeat(\"left\"(kp._raw($2), 1), kp._count($1)))"},
    {"strreverse", "bpchar", "kp.text", "kp._text(reverse(kp._raw($1)))"},
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
    {"to_boolean", "double precision", "integer", "-CAST($1 <> 0 AS integer)"},
    {"_is_number", "text", "boolean",
     "$1 COLLATE \"C\" ~ '^\\s*[-+]?(\\d[\\d,]*\\.?\\d*|\\.\\d+)([eEdD][-+]?\\d+)?\\s*$'"},
    {"isnumeric", "bpchar", "boolean", "COALESCE(kp._is_number(kp._raw($1)), FALSE)"},
    {"to_double", "bpchar", "double precision",
     "CASE WHEN kp._is_number(kp._raw($1)) THEN CAST(translate(btrim(kp._raw($1) COLLATE \"C\"), 'dD,', 'ee') AS double "
     "precision) ELSE kp._fail('22018', 'Type mismatch: ''' || kp._raw($1) || ''' is not a number', CAST(NULL AS double "
     "precision)) END"},
    {"val", "bpchar", "double precision",
     "COALESCE(CAST(substring(kp._raw($1) COLLATE \"C\" FROM '^\\s*([-+]?(?:\\d+\\.?\\d*|\\.\\d+)(?:[eE][-+]?\\d+)?)') AS "
     "double precision), 0)"},
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
    {"server_date", "bpchar", "timestamp", "kp.to_date($1)"},
    {"server_date", "double precision", "timestamp", "kp._of_serial($1 + 2)"},
    {"trim", "bpchar", "kp.text", "kp._text(btrim((kp._raw($1) COLLATE \"C\"), ' '))"},
    {"ucase", "bpchar", "kp.text", "kp._text(upper(kp._raw($1) COLLATE \"und-x-icu\"))"},
    {"weekday", "timestamp", "integer", "CAST(extract(dow FROM $1) AS integer) + 1"},
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
CREATE OR REPLACE FUNCTION kp._fail(text, text, anyelement) RETURNS anyelement LANGUAGE plpgsql IMMUTABLE PARALLEL SAFE
AS $do$ BEGIN RAISE EXCEPTION USING ERRCODE = $1, MESSAGE = $2; END $do$;
CREATE OR REPLACE FUNCTION kp.ymd(integer, integer, integer) RETURNS timestamp LANGUAGE sql IMMUTABLE PARALLEL SAFE AS
$do$ SELECT make_timestamp($1 + CASE WHEN $1 BETWEEN 0 AND 29 THEN 2000 WHEN $1 BETWEEN 30 AND 99 THEN 1900 ELSE 0 END,
    $2, $3, 0, 0, 0) $do$;
-- % and _ in brackets stand for themselves.
CREATE OR REPLACE FUNCTION kp._pattern(text) RETURNS text LANGUAGE sql IMMUTABLE PARALLEL SAFE AS
$do$ SELECT '^' || string_agg(CASE WHEN p[1] LIKE '[%]' COLLATE "C" AND length(p[1]) > 2
    THEN '[' || CASE WHEN p[1] ~ '^\[[!^]' THEN '^' ELSE '' END ||
         replace(replace(regexp_replace(substr(p[1], 2, length(p[1]) - 2), '^[!^]', ''), '\', '\\'), '[', '\[') || ']'
    WHEN p[1] = '%' THEN '.*' WHEN p[1] = '_' THEN '.' ELSE regexp_replace(p[1], '([].^$*+?(){}|\\[])', '\\\1', 'g')
    END, '' ORDER BY n) || '$'
    FROM regexp_matches($1 COLLATE "C", '(\[[!^]?[^]]+\]|.)', 'g') WITH ORDINALITY AS parts(p, n) $do$;
-- Keeps a counter ahead of a value that a statement gave itself.
CREATE OR REPLACE FUNCTION kp.keep_counter() RETURNS trigger LANGUAGE plpgsql AS
$do$ BEGIN PERFORM setval(TG_ARGV[0]::regclass, (to_jsonb(NEW) ->> TG_ARGV[1])::bigint); RETURN NULL; END $do$;
CREATE OR REPLACE FUNCTION kp._last(anyelement, anyelement) RETURNS anyelement LANGUAGE sql IMMUTABLE PARALLEL SAFE AS
$do$ SELECT $2 $do$;
DO $do$ BEGIN
    CREATE AGGREGATE kp.last(anyelement) (SFUNC = kp._last, STYPE = anyelement);
EXCEPTION WHEN duplicate_function THEN NULL;
END $do$;
)sql";

std::string MakeText() {
    std::string text(kBefore);
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
