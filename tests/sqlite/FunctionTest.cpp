// The functions that translated texts call, one expression a case.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <set>
#include <string>

#include "engines/sqlite/Collation.h"
#include "engines/sqlite/Database.h"
#include "engines/sqlite/functions/Function.h"
#include "kpTables/Error.h"
#include "sql/print/sqlite/FunctionList.h"

namespace kpTables::sqlite {
namespace {

Database OpenWithFunctions() {
    Database database(":memory:", SQLITE_OPEN_READWRITE);
    RegisterCollation(database.Get());
    RegisterFunctions(database.Get());
    return database;
}

TEST(Functions, EveryListedOneIsRegisteredWithItsArity) {
    const Database database = OpenWithFunctions();
    std::set<std::pair<std::string, int>> registered;
    PreparedStatement list =
        database.Prepare("SELECT name, narg FROM pragma_function_list WHERE name LIKE 'kp\\_%' ESCAPE '\\'");
    while (list.Step()) registered.emplace(std::string(list.Text(0)), static_cast<int>(list.Integer(1)));
    std::size_t expected = 0;
    for (const sql::print::sqlite::EngineFunction& function : sql::print::sqlite::EngineFunctions()) {
        for (int count = function.minimumArguments; count <= function.maximumArguments; ++count, ++expected) {
            EXPECT_TRUE(registered.contains({std::string(function.name), count})) << function.name << '/' << count;
        }
    }
    EXPECT_EQ(registered.size(), expected);
}

struct Answered {
    const char* expression;
    const char* expected;  ///< SQLite's text of the value; nullptr for Null
};

void PrintTo(const Answered& answered, std::ostream* out) { *out << answered.expression; }

class FunctionAnswers : public testing::TestWithParam<Answered> {};

TEST_P(FunctionAnswers, AsListed) {
    const auto [expression, expected] = GetParam();
    const Database database = OpenWithFunctions();
    PreparedStatement statement = database.Prepare(std::string("SELECT ") + expression);
    ASSERT_TRUE(statement.Step());
    if (expected) {
        EXPECT_EQ(statement.Text(0), expected);
    } else {
        EXPECT_TRUE(statement.IsNull(0)) << statement.Text(0);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Text, FunctionAnswers,
    testing::Values(Answered{"kp_left('水泥砂浆',2)", "水泥"}, Answered{"kp_left('ab',9)", "ab"},
                    Answered{"kp_left('ab',0)", ""}, Answered{"kp_left(NULL,2)", nullptr},
                    Answered{"kp_left(12345,2)", "12"}, Answered{"kp_right('水泥砂浆',2)", "砂浆"},
                    Answered{"kp_right('ab',9)", "ab"}, Answered{"kp_mid('abcdef',2,3)", "bcd"},
                    Answered{"kp_mid('abcdef',5)", "ef"}, Answered{"kp_mid('abc',9,1)", ""},
                    Answered{"kp_mid('水泥砂浆',3,1)", "砂"}, Answered{"kp_char(7,2)||'|'", "7 |"},
                    Answered{"kp_char('abc',2)", "ab"}, Answered{"kp_char(2004,4)", "2004"},
                    Answered{"kp_space(3)||'|'", "   |"}, Answered{"kp_fit('水泥',2,'名称')", "水泥"},
                    Answered{"kp_fit('',1,'名称')", ""}, Answered{"kp_fit(NULL,2,'名称')", nullptr},
                    Answered{"kp_join('水泥','砂浆')", "水泥砂浆"}, Answered{"kp_join(2004,NULL)", "2004"},
                    Answered{"kp_join(NULL,'b')", "b"}, Answered{"kp_join('',NULL)", ""},
                    Answered{"kp_join(NULL,NULL)", nullptr}, Answered{"kp_string(3,'张三')", "张张张"},
                    Answered{"kp_strreverse('a张')", "张a"}, Answered{"kp_strreverse('')", ""},
                    Answered{"kp_ucase('aé张')", "AÉ张"}, Answered{"kp_lcase('AÉ张')", "aé张"},
                    Answered{"kp_asc('A')", "65"},  // its code in code page 936 is 0xD5C5
                    Answered{"kp_asc('张')", "-10811"}, Answered{"kp_chr(65)", "A"}, Answered{"kp_chr(-10811)", "张"},
                    Answered{"kp_chr(54725)", "张"}));

INSTANTIATE_TEST_SUITE_P(
    Search, FunctionAnswers,
    testing::Values(Answered{"kp_instr('abcABC','B')", "2"}, Answered{"kp_instr(3,'abcABC','b')", "5"},
                    Answered{"kp_instr(1,'abcABC','B',0)", "5"}, Answered{"kp_instr('abc','x')", "0"},
                    Answered{"kp_instr('abc','')", "1"}, Answered{"kp_instr('','a')", "0"},
                    Answered{"kp_instr('水泥砂浆','砂')", "3"}, Answered{"kp_instr(9,'abc','a')", "0"},
                    Answered{"kp_instr('abc',NULL)", nullptr}, Answered{"kp_instrrev('abcabc','B')", "5"},
                    Answered{"kp_instrrev('abcabc','b',4)", "2"}, Answered{"kp_instrrev('abcabc','B',-1,0)", "0"},
                    Answered{"kp_instrrev('abc','')", "3"}, Answered{"kp_instrrev('abc','a',9)", "0"},
                    Answered{"kp_instrrev('砂浆砂','砂',2)", "1"}, Answered{"kp_instrrev('','a')", "0"},
                    Answered{"kp_replace('aAb张','a','水泥')", "水泥水泥b张"},
                    Answered{"kp_replace('aaa','aa','b')", "ba"}, Answered{"kp_replace('abc','','x')", "abc"},
                    Answered{"kp_replace('abc','B','')", "ac"}, Answered{"kp_replace('abc',NULL,'x')", nullptr},
                    Answered{"kp_strcomp('a','B')", "-1"}, Answered{"kp_strcomp('a','A ')", "0"},
                    Answered{"kp_strcomp('a','A',0)", "1"}, Answered{"kp_strcomp('中','啊')", "1"},
                    Answered{"kp_charindex('B','abc')", "2"}, Answered{"kp_charindex('b','abcb',3)", "4"},
                    Answered{"kp_charindex('','abc')", "0"}, Answered{"kp_like('水泥砂浆','水%')", "1"},
                    Answered{"kp_like('水泥砂浆','_泥%')", "1"}, Answered{"kp_like('ABC','a_c')", "1"},
                    Answered{"kp_like('ABC','a_')", "0"}, Answered{"kp_like('','%')", "1"},
                    Answered{"kp_like('','_')", "0"}, Answered{"kp_like('b1','[a-c]1')", "1"},
                    Answered{"kp_like('d1','[a-c]1')", "0"}, Answered{"kp_like('d1','[!a-c]1')", "1"},
                    Answered{"kp_like('d1','[^a-c]1')", "1"}, Answered{"kp_like('B1','[a-c]1')", "1"},
                    Answered{"kp_like('a%b','a[%]b')", "1"}, Answered{"kp_like('axb','a[%]b')", "0"},
                    Answered{"kp_like('a[b','a[b')", "1"}, Answered{"kp_like('xaxbxc','%a%b%c')", "1"},
                    Answered{"kp_like('xaxbx','%a%b%c')", "0"}, Answered{"kp_like('a','a%%')", "1"},
                    Answered{"kp_like(NULL,'a')", nullptr}));

INSTANTIATE_TEST_SUITE_P(
    Date, FunctionAnswers,
    testing::Values(
        Answered{"kp_year('2004-03-07')", "2004"}, Answered{"kp_month('2004-03-07')", "3"},
        Answered{"kp_day('2004-03-07')", "7"}, Answered{"kp_hour('2004-03-07 13:05:09')", "13"},
        Answered{"kp_minute('2004-03-07 13:05:09')", "5"}, Answered{"kp_second('2004-03-07 13:05:09')", "9"},
        Answered{"kp_year(38053)", "2004"},  // a number is a serial
        Answered{"kp_ymd(2004,3,7)", "2004-03-07"}, Answered{"kp_ymd(97,1,2)", "1997-01-02"},
        Answered{"kp_ymd(2004,NULL,7)", nullptr}, Answered{"kp_dateserial(2004,14,1)", "2005-02-01"},
        Answered{"kp_dateserial(2004,3,0)", "2004-02-29"}, Answered{"kp_date_add('2004-02-28',2)", "2004-03-01"},
        Answered{"kp_date_add('2004-02-28',0.5)", "2004-02-28 12:00:00"},
        Answered{"kp_date_diff('2004-03-01','2004-02-28')", "2.0"},
        Answered{"kp_date_diff('2004-03-01 12:00:00','2004-03-01')", "0.5"},
        Answered{"kp_date_number('1900-01-01')", "2.0"}, Answered{"kp_datevalue('2004-03-07 13:05:09')", "2004-03-07"},
        Answered{"kp_timevalue('2004-03-07 13:05:09')", "1899-12-30 13:05:09"},
        Answered{"kp_server_date('20040307')", "2004-03-07"}, Answered{"kp_server_date('2004-3 -7 ')", "2004-03-07"},
        Answered{"kp_server_date('2004 - 3 - 7 13:05')", "2004-03-07 13:05:00"},
        Answered{"kp_server_date(38051)", "2004-03-07"}, Answered{"kp_server_date('38051')", "2004-03-07"},
        Answered{"kp_timeserial(13,5,9)", "1899-12-30 13:05:09"},
        Answered{"kp_timeserial(0,90,0)", "1899-12-30 01:30:00"},
        Answered{"kp_timeserial(25,0,-1)", "1899-12-31 00:59:59"},
        Answered{"kp_dateadd('m',1,'2004-01-31')", "2004-02-29"},
        Answered{"kp_dateadd('yyyy',1,'2004-02-29')", "2005-02-28"},
        Answered{"kp_dateadd('q',-1,'2004-03-07')", "2003-12-07"},
        Answered{"kp_dateadd('ww',1,'2004-03-07')", "2004-03-14"},
        Answered{"kp_dateadd('H',-1,'2004-03-07')", "2004-03-06 23:00:00"},
        Answered{"kp_dateadd('s',60,'2004-03-07')", "2004-03-07 00:01:00"},
        Answered{"kp_datediff('yyyy','2003-12-31','2004-01-01')", "1"},
        Answered{"kp_datediff('m','2004-01-31','2004-03-01')", "2"},
        Answered{"kp_datediff('q','2003-12-31','2004-04-01')", "2"},
        Answered{"kp_datediff('d','2004-03-01','2004-02-28')", "-2"},
        Answered{"kp_datediff('w','2004-03-01','2004-03-15')", "2"},
        Answered{"kp_datediff('ww','2004-03-06','2004-03-07')", "1"},    // a Saturday and the Sunday after it
        Answered{"kp_datediff('ww','2004-03-06','2004-03-07',2)", "0"},  // weeks that begin on Monday
        Answered{"kp_datediff('h','2004-03-07 10:59:00','2004-03-07 11:01:00')", "1"},
        Answered{"kp_datediff('n','2004-03-07 10:59:59','2004-03-07 11:01:00')", "2"},
        Answered{"kp_datepart('q','2004-04-01')", "2"}, Answered{"kp_datepart('y','2004-12-31')", "366"},
        Answered{"kp_datepart('w','2004-03-07')", "1"}, Answered{"kp_datepart('ww','2004-01-04')", "2"},
        Answered{"kp_datepart('ww','2005-01-01',2,2)", "53"}, Answered{"kp_datepart('ww','2004-12-31',1,1)", "53"},
        Answered{"kp_datepart('ww','2003-12-29',2,2)", "1"}, Answered{"kp_datepart('ww','2005-01-02',2,3)", "52"},
        Answered{"kp_weekday('2004-03-07')", "1"}, Answered{"kp_weekday('2004-03-07',2)", "7"},
        Answered{"length(kp_date())", "10"}, Answered{"kp_now() >= kp_date()", "1"},
        Answered{"substr(kp_time(),1,10)", "1899-12-30"}));

INSTANTIATE_TEST_SUITE_P(
    Number, FunctionAnswers,
    testing::Values(Answered{"kp_cur_mul(12500,20000)", "25000"},  // 1.25 times 2
                    Answered{"kp_cur_mul(1,5000)", "0"},           // half of 0.0001 goes to the even side
                    Answered{"kp_cur_mul(3,5000)", "2"}, Answered{"kp_cur_fix(-12345)", "-10000"},
                    Answered{"kp_cur_int(-12345)", "-20000"}, Answered{"kp_cur_int(-20000)", "-20000"},
                    Answered{"kp_cur_int(12345)", "10000"}, Answered{"kp_cur_round(12350,2)", "12400"},
                    Answered{"kp_cur_round(12450,2)", "12400"}, Answered{"kp_cur_round(-12450,2)", "-12400"},
                    Answered{"kp_cur_round(-12451,2)", "-12500"}, Answered{"kp_cur_round(15000,0)", "20000"},
                    Answered{"kp_cur_round(25000,0)", "20000"}, Answered{"kp_cur_round(12345,4)", "12345"},
                    Answered{"kp_cur_round(12345,9)", "12345"}, Answered{"kp_div(7,2)", "3.5"},
                    Answered{"kp_div(NULL,0)", nullptr}, Answered{"kp_idiv(7.5,2)", "4"},
                    Answered{"kp_idiv(-7,2)", "-3"}, Answered{"kp_idiv(2.5,1)", "2"}, Answered{"kp_mod(-7,2)", "-1"},
                    Answered{"kp_mod(7.5,3)", "2"}, Answered{"kp_pow(2,10)", "1024.0"},
                    Answered{"kp_pow(-2,3)", "-8.0"}, Answered{"kp_fix(-1.5)", "-1.0"},
                    Answered{"kp_int(-1.5)", "-2.0"}, Answered{"kp_round(2.5,0)", "2.0"},
                    Answered{"kp_round(0.125,2)", "0.12"}, Answered{"kp_round(1e300,2)", "1.0e+300"},
                    Answered{"kp_sgn(-3.5)", "-1"}, Answered{"kp_sgn(0)", "0"}, Answered{"kp_sqr(9)", "3.0"},
                    Answered{"kp_exp(0)", "1.0"}, Answered{"kp_log(1)", "0.0"}));

INSTANTIATE_TEST_SUITE_P(
    Conversion, FunctionAnswers,
    testing::Values(
        Answered{"kp_to_long('12')", "12"}, Answered{"kp_to_long(2.5)", "2"}, Answered{"kp_to_long(3.5)", "4"},
        Answered{"kp_to_long(' 1,234 ')", "1234"}, Answered{"kp_to_long(2147483647.4)", "2147483647"},
        Answered{"kp_to_long(NULL)", nullptr}, Answered{"kp_to_short(-32768)", "-32768"},
        Answered{"kp_to_boolean(3)", "-1"}, Answered{"kp_to_boolean(0.0)", "0"},
        Answered{"kp_to_boolean('True')", "-1"}, Answered{"kp_to_boolean('0')", "0"},
        Answered{"kp_to_currency(0.03125)", "312"}, Answered{"kp_to_currency(0.09375)", "938"},
        Answered{"kp_to_currency('12.5')", "125000"}, Answered{"kp_to_currency(3)", "30000"},
        Answered{"kp_to_date('2004-3-7')", "2004-03-07"}, Answered{"kp_to_date(38053.5)", "2004-03-07 12:00:00"},
        Answered{"kp_to_date('2004年3月7日')", "2004-03-07"}, Answered{"kp_server_date(1994)", "1905-06-18"},
        Answered{"kp_server_date('2004-3-7')", "2004-03-07"}, Answered{"kp_to_double('1e3')", "1000.0"},
        Answered{"kp_to_single(0.1)", "0.100000001490116"}, Answered{"kp_text_boolean(-1)", "True"},
        Answered{"kp_text_boolean(0)", "False"}, Answered{"kp_text_currency(125000)", "12.5"},
        Answered{"kp_text_date('2004-03-07')", "2004-3-7"}, Answered{"kp_text_double(200.0/3)", "66.6666666666667"},
        Answered{"kp_text_double(5)", "5"}, Answered{"kp_text_double('x')", "x"},
        Answered{"kp_text_double(0.5)", "0.5"}, Answered{"kp_text_double(NULL)", nullptr}, Answered{"kp_str(5)", " 5"},
        Answered{"kp_str(-5)", "-5"}, Answered{"kp_str(0.5)", " .5"}, Answered{"kp_str(-0.5)", "-.5"},
        Answered{"kp_val('12abc')", "12.0"}, Answered{"kp_val(' 1 2.5x')", "12.5"}, Answered{"kp_val('-3')", "-3.0"},
        Answered{"kp_val('abc')", "0.0"}, Answered{"kp_val('')", "0.0"}, Answered{"kp_val('&HFF')", "255.0"},
        Answered{"kp_val('1e3')", "1000.0"}, Answered{"kp_val('.5')", "0.5"}, Answered{"kp_val('+7')", "7.0"},
        Answered{"kp_val('-')", "0.0"}, Answered{"kp_isdate('2004-3-7')", "1"}, Answered{"kp_isdate('x')", "0"},
        Answered{"kp_isdate(NULL)", "0"}, Answered{"kp_isnumeric('1,234')", "1"}, Answered{"kp_isnumeric('x')", "0"},
        Answered{"kp_isnumeric(5)", "1"}, Answered{"kp_isnumeric(NULL)", "0"}));

INSTANTIATE_TEST_SUITE_P(
    Format, FunctionAnswers,
    testing::Values(Answered{"kp_format_date('2004-03-07','yyyy-MM-dd')", "2004-03-07"},
                    Answered{"kp_format_date('2004-03-07')", "2004-3-7"}, Answered{"kp_format_date(NULL,'d')", ""},
                    Answered{"kp_format_number(1234.5,'#,##0.00')", "1,234.50"},
                    Answered{"kp_format_number(0.5,'0.00')", "0.50"}, Answered{"kp_format_number(0.5,'#.##')", ".5"},
                    Answered{"kp_format_number(2.675,'0.00')", "2.68"}, Answered{"kp_format_number(-2.5,'0')", "-3"},
                    Answered{"kp_format_number(7,'000')", "007"}, Answered{"kp_format_number(0.256,'0.0%')", "25.6%"},
                    Answered{"kp_format_number(-3,'0;(0)')", "(3)"}, Answered{"kp_format_number(0,'0;(0);无')", "无"},
                    Answered{"kp_format_number(3,'00月')", "03月"}, Answered{"kp_format_number(-0.001,'0.00')", "0.00"},
                    Answered{"kp_format_number(1234567,'#,##0')", "1,234,567"},
                    Answered{"kp_format_number(NULL,'0')", ""}, Answered{"kp_format_number(12.5)", "12.5"},
                    Answered{"kp_format_text(NULL)", ""}, Answered{"kp_format_number(NULL,'@;x')", ""}));

INSTANTIATE_TEST_SUITE_P(Aggregate, FunctionAnswers,
                         testing::Values(Answered{"kp_first(column1) FROM (VALUES (7),(8),(9))", "7"},
                                         Answered{"kp_last(column1) FROM (VALUES (7),(8),(9))", "9"},
                                         Answered{"kp_first(column1) FROM (VALUES (NULL),(8))", nullptr},
                                         Answered{"kp_last(column1) FROM (VALUES ('a'),('张'))", "张"},
                                         Answered{"kp_var(column1) FROM (VALUES (2),(4),(NULL),(9))", "13.0"},
                                         Answered{"kp_varp(column1) FROM (VALUES (2),(4),(9),(9))", "9.5"},
                                         Answered{"kp_stdev(column1) FROM (VALUES (1e9),(1e9+2),(1e9+4))", "2.0"},
                                         Answered{"kp_stdevp(column1) FROM (VALUES (7))", "0.0"},
                                         Answered{"kp_stdev(column1) FROM (VALUES (7),(NULL))", nullptr},
                                         Answered{"kp_varp(column1) FROM (VALUES (1)) WHERE 0", nullptr},
                                         Answered{"kp_first(column1) FROM (VALUES (1)) WHERE 0", nullptr}));

struct Failed {
    const char* expression;
    DatabaseErrorNumber number;
    const char* text;
};

void PrintTo(const Failed& failed, std::ostream* out) { *out << failed.expression; }

class FunctionFails : public testing::TestWithParam<Failed> {};

TEST_P(FunctionFails, WithNumberAndText) {
    const auto [expression, number, text] = GetParam();
    const Database database = OpenWithFunctions();
    PreparedStatement statement = database.Prepare(std::string("SELECT ") + expression);
    try {
        statement.Step("the host's text");
        FAIL() << "answered " << statement.Text(0);
    } catch (const DatabaseError& error) {
        EXPECT_EQ(error.Number(), static_cast<std::int32_t>(number)) << error.what();
        EXPECT_NE(error.Description().find(text), std::string::npos) << error.what();
        EXPECT_EQ(error.Statement(), "the host's text");
    }
}

using enum DatabaseErrorNumber;
INSTANTIATE_TEST_SUITE_P(
    Table, FunctionFails,
    testing::Values(
        Failed{"kp_div(1,0)", Failure, "Division by zero"}, Failed{"kp_idiv(1,0.4)", Failure, "Division by zero"},
        Failed{"kp_mod(1,0)", Failure, "Division by zero"}, Failed{"kp_div(1e308,1e-308)", Overflow, "Overflow"},
        Failed{"kp_idiv(-2147483648,-1)", Overflow, "Overflow"}, Failed{"kp_idiv(3e9,1)", Overflow, "Overflow"},
        Failed{"kp_to_long(2147483647.5)", Overflow, "Overflow"}, Failed{"kp_to_short(32768)", Overflow, "Overflow"},
        Failed{"kp_to_currency(1e15)", Overflow, "Overflow"},
        Failed{"kp_cur_mul(9000000000000000,9000000000000000)", Overflow, "Overflow"},
        Failed{"kp_cur_round(9223372036854775807,0)", Overflow, "Overflow"},
        Failed{"kp_cur_fit(9223372036854775807+1)", Overflow, "Overflow"},
        Failed{"kp_cur_int(-9223372036854775807-1)", Overflow, "Overflow"},
        Failed{"kp_to_long('abc')", TypeMismatch, "'abc' is no number"},
        Failed{"kp_to_date('2003-02-29')", TypeMismatch, "'2003-02-29' is no date"},
        Failed{"kp_server_date('20040230')", Overflow, "Overflow"},
        Failed{"kp_ymd(1997,2,30)", TypeMismatch, "1997-2-30"}, Failed{"kp_ymd(1997,13,1)", TypeMismatch, "1997-13-1"},
        Failed{"kp_sqr(-1)", Failure, "Invalid procedure call"}, Failed{"kp_log(0)", Failure, "Invalid procedure call"},
        Failed{"kp_pow(-1,0.5)", Failure, "Invalid procedure call"},
        Failed{"kp_left('a',-1)", Failure, "Invalid procedure call"},
        Failed{"kp_mid('a',0)", Failure, "Invalid procedure call"},
        Failed{"kp_format_number(1e308,'0%')", Overflow, "Overflow"},
        Failed{"kp_instrrev('a','a',0)", Failure, "Invalid procedure call"},
        Failed{"kp_asc('')", Failure, "Invalid procedure call"},
        Failed{"kp_dateadd('x',1,'2004-03-07')", Failure, "x is no interval"},
        Failed{"kp_dateadd('yyyy',9999,'2004-03-07')", Failure, "Invalid procedure call"},
        Failed{"kp_fit('水泥沙',2,'名称')", Overflow,
               "The field '名称' is too small for a text of 3 characters: it takes 2"},
        Failed{"kp_space(2000000000)", Overflow, "Overflow"}, Failed{"kp_exp(1000)", Overflow, "Overflow"}));

}  // namespace
}  // namespace kpTables::sqlite
