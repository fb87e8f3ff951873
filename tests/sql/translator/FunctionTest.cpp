#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "ExpressionCases.h"
#include "sql/print/sqlite/FunctionList.h"

namespace kpTables::sql::test {

using namespace print::sqlite;

TEST(Functions, Conversions) {
    CheckExpressions({
        {"CInt(d)", R"(kp_to_short("T"."d"))", Type::Short},
        {"CInt(c)", R"(kp_to_short("T"."c" / 10000.0))", Type::Short},
        {"CLng(t)", R"(kp_to_long("T"."t"))", Type::Long},
        {"CLng(l+l)", R"(kp_to_long("T"."l" + "T"."l"))", Type::Long},
        {"CDbl(l)", R"("T"."l")", Type::Double},
        {"CDbl(c)", R"("T"."c" / 10000.0)", Type::Double},
        {"CDbl(at)", R"(kp_date_number("T"."at"))", Type::Double},
        {"CDbl('1.5')", "?1", Type::Double, "0 Number"},
        {"CSng(d)", R"(kp_to_single("T"."d"))", Type::Double},
        {"CStr(l)", R"(CAST("T"."l" AS TEXT))", Type::Text},
        {"CStr(d)", R"(kp_text_double("T"."d"))", Type::Text},
        {"CCur(d)", R"(kp_to_currency("T"."d"))", Type::Currency},
        {"CCur(l)", R"("T"."l" * 10000)", Type::Currency},
        {"CCur(1.25)", "?1", Type::Currency, "0 Currency"},
        {"CBool(l)", R"(-("T"."l" <> 0))", Type::Boolean},
        {"CBool(t)", R"(kp_to_boolean("T"."t"))", Type::Boolean},
        {"CDate(d)", R"(kp_to_date("T"."d"))", Type::Date},
        {"CVar(c)", R"("T"."c")", Type::Currency},
        {"CAST(d AS int)", R"(kp_to_long(kp_fix("T"."d")))", Type::Long},
        {"CAST(c AS float)", R"("T"."c" / 10000.0)", Type::Double},
        {"CAST(t AS money)", R"(kp_to_currency("T"."t"))", Type::Currency},
        {"CAST(t AS DATETIME)", R"(kp_server_date("T"."t"))", Type::Date},
        {"CAST(at AS int)", R"(kp_to_long(kp_date_number("T"."at") - 2))", Type::Long},
        {"CAST(#2004-3-7# AS float)", "kp_date_number(?1) - 2", Type::Double, "0 Date"},
        {"CONVERT(int, t)", R"(kp_to_long("T"."t"))", Type::Long},
        {"CONVERT(varchar(10), l)", R"(substr(CAST("T"."l" AS TEXT), 1, 10))", Type::Text},
    });
}

TEST(Functions, Choices) {
    CheckExpressions({
        {"IIf(l>1, 'a', 'b')", R"(CASE WHEN "T"."l" > ?1 THEN ?2 ELSE ?3 END)", Type::Text, "0 Number, 1 Text, 2 Text"},
        {"IIf(b, c, 0)", R"(CASE WHEN "T"."b" THEN "T"."c" ELSE ?1 END)", Type::Currency, "0 Currency"},
        {"IIf(b, l, d)", R"(CASE WHEN "T"."b" THEN "T"."l" ELSE "T"."d" END)", Type::Double},
        {"IIf(b, at, Null)", R"(CASE WHEN "T"."b" THEN "T"."at" ELSE NULL END)", Type::Date},
        {"IIf(IsNull(l), '', l)", R"(CASE WHEN "T"."l" IS NULL THEN ?1 ELSE CAST("T"."l" AS TEXT) END)", Type::Text,
         "0 Text"},
        {"Nz(c)", R"(COALESCE("T"."c", 0))", Type::Currency},
        {"Nz(t)", R"(COALESCE("T"."t", ''))", Type::Text},
        {"Nz(c, 1)", R"(COALESCE("T"."c", ?1))", Type::Currency, "0 Currency"},
        {"ISNULL(d, 0)", R"(COALESCE("T"."d", ?1))", Type::Double, "0 Number"},
        {"COALESCE(t, t2, 'x')", R"(COALESCE("T"."t", "T"."t2", ?1))", Type::Text, "0 Text"},
        {"Choose(l, 'a', 'b')", R"(CASE kp_int("T"."l") WHEN 1 THEN ?1 WHEN 2 THEN ?2 END)", Type::Text,
         "0 Text, 1 Text"},
        {"Switch(l=1, 'a', True, 'b')", R"(CASE WHEN "T"."l" = ?1 THEN ?2 WHEN -1 THEN ?3 END)", Type::Text,
         "0 Number, 1 Text, 2 Text"},
        {"Case s When 1 Then c Else 0 End", R"(CASE "T"."s" WHEN ?1 THEN "T"."c" ELSE ?2 END)", Type::Currency,
         "0 Number, 1 Currency"},
        {"Case When l=1 Then 'x' When l=2 Then t End",
         R"(CASE WHEN "T"."l" = ?1 THEN ?3 WHEN "T"."l" = ?2 THEN "T"."t" END)", Type::Text,
         "0 Number, 2 Number, 1 Text"},
        {"Case c When 1.5 Then 1 End", R"(CASE "T"."c" WHEN ?1 THEN ?2 END)", Type::Long, "0 CurrencyBound, 1 Long"},
    });
}

TEST(Functions, Texts) {
    CheckExpressions({
        {"Len(t)", R"(length("T"."t"))", Type::Long},
        {"Len(l)", R"(length(CAST("T"."l" AS TEXT)))", Type::Long},
        {"Left(t, 2)", R"(kp_left("T"."t", ?1))", Type::Text, "0 Number"},
        {"Right(t, l)", R"(kp_right("T"."t", "T"."l"))", Type::Text},
        {"Mid(t, 2)", R"(kp_mid("T"."t", ?1))", Type::Text, "0 Number"},
        {"SUBSTRING(t, 2, 3)", R"(kp_substring("T"."t", ?1, ?2))", Type::Text, "0 Number, 1 Number"},
        {"Trim(t)", R"(trim("T"."t"))", Type::Text},
        {"LTrim(RTrim(t))", R"(ltrim(rtrim("T"."t")))", Type::Text},
        {"InStr(t, '-')", R"(kp_instr("T"."t", ?1))", Type::Long, "0 Text"},
        {"InStr(2, t, '-')", R"(kp_instr(?1, "T"."t", ?2))", Type::Long, "0 Number, 1 Text"},
        {"CHARINDEX('-', t)", R"(kp_charindex(?1, "T"."t"))", Type::Long, "0 Text"},
        {"UCase(t) & LCase(t2)", R"(kp_join(kp_ucase("T"."t"), kp_lcase("T"."t2")))", Type::Text},
        {"Replace(t, 'a', 'b')", R"(kp_replace("T"."t", ?1, ?2))", Type::Text, "0 Text, 1 Text"},
        {"Space(3)", "kp_space(?1)", Type::Text, "0 Number"},
        {"String(3, '*')", "kp_string(?1, ?2)", Type::Text, "0 Number, 1 Text"},
        {"String(3, 65)", "kp_string(?1, kp_chr(?2))", Type::Text, "0 Number, 1 Number"},
        {"InStrRev(t, '-', 5)", R"(kp_instrrev("T"."t", ?1, ?2))", Type::Long, "0 Text, 1 Number"},
        {"StrComp(t, t2)", R"(kp_strcomp("T"."t", "T"."t2"))", Type::Short},
        {"StrReverse(t)", R"(kp_strreverse("T"."t"))", Type::Text},
        {"Format(at, 'yyyy-mm-dd')", R"(kp_format_date("T"."at", ?1))", Type::Text, "0 Text"},
        {"Format(c, '0.00')", R"(kp_format_number("T"."c" / 10000.0, ?1))", Type::Text, "0 Text"},
        {"Format(t)", R"(kp_format_text("T"."t"))", Type::Text},
        {"Asc(t)", R"(kp_asc("T"."t"))", Type::Short},
        {"Chr(65)", "kp_chr(?1)", Type::Text, "0 Number"},
        {"Val(t)", R"(kp_val("T"."t"))", Type::Double},
        {"Str(c)", R"(kp_str("T"."c" / 10000.0))", Type::Text},
    });
}

TEST(Functions, Dates) {
    CheckExpressions({
        {"Year(at)", R"(kp_year("T"."at"))", Type::Short},
        {"Month('2004-3-7')", "kp_month(?1)", Type::Short, "0 Date"},
        {"Day(t)", R"(kp_day(kp_to_date("T"."t")))", Type::Short},
        {"Hour(at)+Minute(at)+Second(at)", R"(kp_hour("T"."at") + kp_minute("T"."at") + kp_second("T"."at"))",
         Type::Long},
        {"Weekday(at, 2)", R"(kp_weekday("T"."at", ?1))", Type::Short, "0 Number"},
        {"DateSerial(y, m+1, 0)", R"(kp_dateserial("T"."y", "T"."m" + ?1, ?2))", Type::Date, "0 Number, 1 Number"},
        {"DateAdd('m', 1, at)", R"(kp_dateadd(?1, ?2, "T"."at"))", Type::Date, "0 Text, 1 Number"},
        {"DATEADD(month, 1, at)", R"(kp_dateadd('m', ?1, "T"."at"))", Type::Date, "0 Number"},
        {"DateDiff('d', at, at2)", R"(kp_datediff(?1, "T"."at", "T"."at2"))", Type::Long, "0 Text"},
        {"DATEPART(yy, at)", R"(kp_datepart('yyyy', "T"."at"))", Type::Short},
        {"DateValue(at)", R"(kp_datevalue("T"."at"))", Type::Date},
        {"TimeSerial(l, 0, 0)", R"(kp_timeserial("T"."l", ?1, ?2))", Type::Date, "0 Number, 1 Number"},
        {"Now()", "kp_now()", Type::Date},
        {"GETDATE()", "kp_now()", Type::Date},
    });
}

TEST(Functions, Numbers) {
    CheckExpressions({
        {"Int(d)", R"(kp_int("T"."d"))", Type::Double},
        {"Int(l)", R"("T"."l")", Type::Long},
        {"Int(c)", R"(kp_cur_int("T"."c"))", Type::Currency},
        {"Int(at)", R"(kp_to_date(kp_int(kp_date_number("T"."at"))))", Type::Date},
        {"Fix(at)", R"(kp_to_date(kp_fix(kp_date_number("T"."at"))))", Type::Date},
        {"Fix(d)", R"(kp_fix("T"."d"))", Type::Double},
        {"Round(d)", R"(kp_round("T"."d", 0))", Type::Double},
        {"Round(c, 2)", R"(kp_cur_round("T"."c", ?1))", Type::Currency, "0 Number"},
        {"Round(l, 2)", R"("T"."l")", Type::Long},
        {"Abs(c)", R"(abs("T"."c"))", Type::Currency},
        {"Abs(b)", R"(abs("T"."b"))", Type::Short},
        {"Abs(-2)", "abs(-?1)", Type::Long, "0 Number"},
        {"Sgn(c)", R"(kp_sgn("T"."c" / 10000.0))", Type::Short},
        {"Sqr(d)", R"(kp_sqr("T"."d"))", Type::Double},
        {"Exp(Log(d))", R"(kp_exp(kp_log("T"."d")))", Type::Double},
    });
}

TEST(Functions, Tests) {
    CheckConditions({
        {"IsNull(t)", R"("T"."t" IS NULL)"},
        {"Not IsNull(t)", R"(NOT "T"."t" IS NULL)"},
        {"IsNumeric(t)", R"(kp_isnumeric("T"."t"))"},
        {"IsNumeric(c)", R"("T"."c" IS NOT NULL)"},
        {"IsDate(t)", R"(kp_isdate("T"."t"))"},
        {"IsDate(at)", R"("T"."at" IS NOT NULL)"},
    });
}

TEST(Functions, EveryOneThatTheEngineMustHaveIsListedOnce) {
    const auto functions = EngineFunctions();
    ASSERT_FALSE(functions.empty());
    for (std::size_t i = 0; i < functions.size(); ++i) {
        SCOPED_TRACE(functions[i].name);
        EXPECT_TRUE(functions[i].name.starts_with("kp_"));
        EXPECT_LE(functions[i].minimumArguments, functions[i].maximumArguments);
        EXPECT_FALSE(functions[i].meaning.empty());
        if (i > 0) {
            EXPECT_LT(functions[i - 1].name, functions[i].name);
        }
    }
}

TEST(Functions, TheServersDialect) {
    struct Row {
        const char* expression;
        const char* text;
        Type type;
    };
    const Row rows[] = {
        {"l / 2", R"(kp_idiv("T"."l", ?1))", Type::Long},
        {"d / 2", R"(kp_div("T"."d", ?1))", Type::Double},
        {"l & 3", R"(kp_bit_and("T"."l", ?1))", Type::Long},
        {"Len(t)", R"(length(rtrim("T"."t")))", Type::Long},
        {"IsDate(t)", R"(CASE WHEN kp_isdate_server("T"."t") THEN 1 ELSE 0 END)", Type::Long},
        {"Round(d, 1)", R"(kp_round_server("T"."d", ?1))", Type::Double},
        {"CAST(at AS varchar(10))", R"(substr(kp_date_style("T"."at", 0), 1, 10))", Type::Text},
        {"CONVERT(varchar(10), at, 120)", R"(substr(kp_date_style("T"."at", ?1), 1, 10))", Type::Text},
        {"CAST(at AS DATE)", R"(kp_datevalue("T"."at"))", Type::Date},
        {"CAST(b AS int)", R"(-"T"."b")", Type::Long},
        {"t Like '[!a]'", R"(-(kp_like_server("T"."t", ?1)))", Type::Boolean},
        {"l Between 1 And 2", R"(-("T"."l" BETWEEN ?1 AND ?2))", Type::Boolean},
    };
    for (const auto& [expression, text, type] : rows) {
        SCOPED_TRACE(expression);
        const auto translation = TranslatedForServer("Select " + std::string(expression) + " As x From T");
        const std::string whole = "SELECT " + std::string(text) + R"( AS "x" FROM "T")";
        EXPECT_EQ(translation.text.substr(0, whole.size()), whole);
        EXPECT_EQ(NameOf(translation.columns.at(0).type), NameOf(type));
    }
}

// A number that is drawn for all rows stands in a query of its own, which is run once.
TEST(Functions, RandomNumbers) {
    EXPECT_EQ(Translated("Select Top 2 l From T Order By Rnd(l)").text,
              R"(SELECT "T"."l" FROM "T" ORDER BY kp_rnd("T"."l") LIMIT 2)");
    EXPECT_EQ(Translated("Select l From T Where Rnd() < 0.5").text,
              R"(SELECT "T"."l" FROM "T" WHERE (SELECT kp_rnd()) < ?1)");
    EXPECT_EQ(TranslatedForServer("Select Top 2 l From T Order By NEWID()").text,
              R"(SELECT "T"."l" FROM "T" ORDER BY kp_newid() COLLATE KPTEXT LIMIT 2)");
}

TEST(Functions, EveryCallInATextIsListed) {
    const char* const texts[] = {
        "Select Asc(t), CHARINDEX('a',t), Chr(1), CSng(d), Date(), DateAdd('d',1,at), DateDiff('d',at,at2) From T",
        "Select DatePart('d',at), DateSerial(1,2,3), DateValue(at), Day(at), Exp(d), GETDATE(), Hour(at) From T",
        "Select LCase(t), Left(t,1), Log(d), Mid(t,1), Minute(at), Month(at), Now(), Right(t,1), Second(at) From T",
        "Select Sgn(d), Space(1), Sqr(d), Str(d), String(1,t), Time(), TimeValue(at), UCase(t), Val(t) From T",
        "Select Weekday(at), Year(at), CInt(d), CLng(d), CDbl(t), CCur(d), CBool(t), CDate(t), CStr(d), CStr(c) From T",
        "Select CStr(at), CStr(b), CDbl(at), Int(d), Fix(d), Round(d), Int(c), Fix(c), Round(c), InStr(t,'a') From T",
        "Select Format(at), Format(d), Format(t), IsDate(t), IsNumeric(t), t Like 'a', d/1, d\\1, d Mod 1, d^1 From T",
        "Select c*c2, at+1, at-at2, CAST(t AS DATETIME), CAST(l AS char(2)), CDATE(y & '-' & m & '-' & n) From T",
        "Select First(t), Last(t) From T Where CDATE(y & '-' & m & '-' & n)<Now()",
        "Select t & t2 From T",
        "Insert Into Q (pj2) Values ('a')",
        "Update T Set c=c+c2",
        "Select InStrRev(t,'a'), Replace(t,'a','b'), StrComp(t,t2), StrReverse(t), TimeSerial(1,2,3) From T",
        "Select StDev(d), StDevP(d), Var(d), VarP(d) From T",
        "Select l Xor 3, l Imp 3, Rnd(l), CByte(t), FormatNumber(d), FormatCurrency(d), FormatPercent(d) From T",
    };
    const char* const serverTexts[] = {
        "Select t Like 'a', 6 & l, Round(d, 1), Round(c, 1), Str(d, 5, 1), Stuff(t, 1, 1, 'a'), Replicate(t, 2) From T",
        "Select CAST(at AS varchar(20)), CONVERT(datetime, t, 103), DateName(mm, at), EOMonth(at), IsDate(t) From T",
        "Select CAST(c AS DECIMAL(9,2)), CAST(d AS DECIMAL(9,2)), Substring(t, 1, 1), Unicode(t), NChar(l) From T",
        "Select Sin(d), Cos(d), Tan(d), Atn(d), Partition(l, 0, 9, 3), StrConv(t, 3) From T",
        "Select NEWID(), TRY_CAST(t AS int), TRY_CAST(t AS smallint), TRY_CAST(t AS float), TRY_CAST(t AS money) From T",
        "Select TRY_CAST(t AS bit), TRY_CAST(t AS datetime) From T",
        "Select Hex(l), Oct(l), MonthName(l), WeekdayName(l), PatIndex('%a%', t) From T",
    };
    const auto functions = EngineFunctions();
    std::size_t calls = 0;
    std::vector<bool> called(functions.size());
    std::vector<std::string> translated;
    for (const char* text : texts) translated.push_back(Translated(text).text);
    for (const char* text : serverTexts) translated.push_back(TranslatedForServer(text).text);
    for (const std::string& printed : translated) {
        for (auto at = printed.find("kp_"); at != printed.npos; at = printed.find("kp_", at + 1), ++calls) {
            const std::string name = printed.substr(at, printed.find('(', at) - at);
            const auto found = std::find_if(functions.begin(), functions.end(),
                                            [&](const EngineFunction& f) { return f.name == name; });
            ASSERT_NE(found, functions.end()) << name;
            called[static_cast<std::size_t>(found - functions.begin())] = true;
        }
    }
    EXPECT_GT(calls, functions.size() - 1);
    for (std::size_t i = 0; i < functions.size(); ++i)
        EXPECT_TRUE(called[i]) << functions[i].name << " is never called";
}

}  // namespace kpTables::sql::test
