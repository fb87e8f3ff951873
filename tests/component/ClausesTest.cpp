// Optional clauses of statements.
#include "kpTables/Clauses.h"

#include <gtest/gtest.h>

#include "support/Failure.h"
#include "support/ScriptedRecordset.h"

namespace kpTables::test {
namespace {

Date Day(const char* iso) { return *Date::ParseIso(iso); }

TEST(DateClause, BothDialects) {
    struct Case {
        Variant first, last;
        const char* server;
        const char* jet;
    };
    const Case cases[] = {
        {"", "", "", ""},
        {Variant(), Variant(), "", ""},
        {Variant::Null(), Variant::Null(), "", ""},
        {Variant::Missing(), Variant::Missing(), "", ""},
        {Day("2004-03-07"), "",
         " And CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + '-' + CAST(日子 AS char(2)) AS "
         "DATETIME)>=CAST('2004-3-7' AS DATETIME) ",
         " And (CDATE(年份 & '-' & 月份 & '-' & 日子)>=#2004-3-7#) "},
        {"", Day("2004-12-31"),
         " And CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + '-' + CAST(日子 AS char(2)) AS "
         "DATETIME)<=CAST('2004-12-31' AS DATETIME)",
         " And (CDATE(年份 & '-' & 月份 & '-' & 日子)<=#2004-12-31#)"},
        {"2004-03-07", "2004-10-01",
         " And (CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + '-' + CAST(日子 AS char(2)) AS "
         "DATETIME)>=CAST('2004-3-7' AS DATETIME) And CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + '-' + "
         "CAST(日子 AS char(2)) AS DATETIME)<=CAST('2004-10-1' AS DATETIME))",
         " And ((CDATE(年份 & '-' & 月份 & '-' & 日子)>=#2004-3-7#) And (CDATE(年份 & '-' & 月份 & '-' & "
         "日子)<=#2004-10-1#))"},
        // the same day at both ends
        {Day("1997-05-09"), Day("1997-05-09"),
         " And (CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + '-' + CAST(日子 AS char(2)) AS "
         "DATETIME)>=CAST('1997-5-9' AS DATETIME) And CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + '-' + "
         "CAST(日子 AS char(2)) AS DATETIME)<=CAST('1997-5-9' AS DATETIME))",
         " And ((CDATE(年份 & '-' & 月份 & '-' & 日子)>=#1997-5-9#) And (CDATE(年份 & '-' & 月份 & '-' & "
         "日子)<=#1997-5-9#))"},
        // a time of day is left out, a number is a serial, Null counts as not given
        {Day("2004-03-07T23:59:59"), Variant::Null(),
         " And CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + '-' + CAST(日子 AS char(2)) AS "
         "DATETIME)>=CAST('2004-3-7' AS DATETIME) ",
         " And (CDATE(年份 & '-' & 月份 & '-' & 日子)>=#2004-3-7#) "},
        {Variant(), 38053,
         " And CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + '-' + CAST(日子 AS char(2)) AS "
         "DATETIME)<=CAST('2004-3-7' AS DATETIME)",
         " And (CDATE(年份 & '-' & 月份 & '-' & 日子)<=#2004-3-7#)"},
        {"2004年3月7日", "",
         " And CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + '-' + CAST(日子 AS char(2)) AS "
         "DATETIME)>=CAST('2004-3-7' AS DATETIME) ",
         " And (CDATE(年份 & '-' & 月份 & '-' & 日子)>=#2004-3-7#) "},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(Shown(each.first) + " to " + Shown(each.last));
        EXPECT_EQ(Get_DateSql(each.first, each.last, true), each.server);
        EXPECT_EQ(Get_DateSql(each.first, each.last, false), each.jet);
    }
}

TEST(DateClause, WhatIsNoDateIsATypeMismatch) {
    for (const bool isSQL : {false, true}) {
        EXPECT_EQ(FailureOf([&] { Get_DateSql("abc", "", isSQL); }), 13);
        EXPECT_EQ(FailureOf([&] { Get_DateSql("", "2004-02-30", isSQL); }), 13);
        EXPECT_EQ(FailureOf([&] { Get_DateSql(Day("2004-03-07"), " ", isSQL); }), 13);
    }
}

TEST(NumberClause, EveryCase) {
    struct Case {
        Variant first, last;
        const char* clause;
    };
    const Case cases[] = {
        {"", "", ""},
        {Variant(), Variant(), ""},
        {Variant::Null(), Variant::Null(), ""},
        {Variant::Missing(), Variant::Missing(), ""},
        {"A01", "", " And Lst.单据编号>='A01' "},
        {"", "A99", " And Lst.单据编号<='A99' "},
        {"A01", "A99", " And (Lst.单据编号>='A01' And Lst.单据编号<='A99') "},
        {"入-1", Variant::Null(), " And Lst.单据编号>='入-1' "},
        {Variant(), "出-9", " And Lst.单据编号<='出-9' "},
        {" ", "", " And Lst.单据编号>=' ' "},      // a blank is not the empty text
        {"O'X", "", " And Lst.单据编号>='O'X' "},  // nothing is escaped
        {7, 12, " And (Lst.单据编号>='7' And Lst.单据编号<='12') "},
        {0, "", " And Lst.单据编号>='0' "},
    };
    for (const Case& each : cases)
        EXPECT_EQ(Get_NoSql(each.first, each.last), each.clause) << Shown(each.first) << " to " << Shown(each.last);
}

TEST(Conditions, IdClauseOnlyAboveZero) {
    EXPECT_EQ(IdClause(" And dpID={id}", 1), " And dpID=1");
    EXPECT_EQ(IdClause(" And dpID={id}", 2147483647), " And dpID=2147483647");
    EXPECT_EQ(IdClause(" And dpID={id}", 0), "");
    EXPECT_EQ(IdClause(" And dpID={id}", -1), "");
    EXPECT_EQ(IdClause(" And dpID={id}", -2147483647 - 1), "");
}

TEST(Conditions, TextClauseOnlyForAText) {
    EXPECT_EQ(TextClause(" And 类型='{text}'", "采购"), " And 类型='采购'");
    EXPECT_EQ(TextClause(" And 类型='{text}'", " "), " And 类型=' '");
    EXPECT_EQ(TextClause(" And 类型='{text}'", "O'X"), " And 类型='O'X'");  // nothing is escaped
    EXPECT_EQ(TextClause(" And 类型='{text}'", ""), "");
}

TEST(Conditions, TrimmedTextClauseOnlyForMoreThanBlanks) {
    EXPECT_EQ(TrimmedTextClause(" And 类型='{text}'", " 采购 "), " And 类型=' 采购 '");
    EXPECT_EQ(TrimmedTextClause(" And 类型='{text}'", "  "), "");
    EXPECT_EQ(TrimmedTextClause(" And 类型='{text}'", ""), "");
}

TEST(Conditions, SumBounds) {
    struct Case {
        Variant min, max;
        const char* condition;
    };
    const Case cases[] = {
        {0, 0, ""},
        {{}, {}, ""},
        {"0", 0.0, ""},
        {5, 0, "Sum(a)>=5"},
        {5, {}, "Sum(a)>=5"},
        {0, 50, "Sum(a)<=50"},
        {{}, 50, "Sum(a)<=50"},
        {5, 50, "(Sum(a)>=5 And Sum(a)<=50)"},
        {50, 5, "(Sum(a)>=50 And Sum(a)<=5)"},
        {-0.5, Currency::FromScaled(1), "(Sum(a)>=-0.5 And Sum(a)<=0.0001)"},
        {"5", " 50 ", "(Sum(a)>=5 And Sum(a)<= 50 )"},
        {Variant::Null(), 50, ""},
        {5, Variant::Null(), ""},
        {Variant::Null(), Variant::Null(), ""},
    };
    for (const Case& each : cases)
        EXPECT_EQ(SumBounds("Sum(a)", each.min, each.max), each.condition)
            << Shown(each.min) << " to " << Shown(each.max);
}

TEST(Conditions, BoundsThatAreNoNumberAreATypeMismatch) {
    EXPECT_EQ(FailureOf([] { SumBounds("Sum(a)", "abc", 0); }), 13);
    EXPECT_EQ(FailureOf([] { SumBounds("Sum(a)", 0, ""); }), 13);
    EXPECT_EQ(FailureOf([] { SumBounds("Sum(a)", Variant::Null(), "abc"); }), 13);
}

TEST(Conditions, BillDateFollowsTheDialect) {
    EXPECT_EQ(BillDate(false), "CDATE(年份 & '-' & 月份 & '-' & 日子)");
    EXPECT_EQ(BillDate(true),
              "CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + '-' + CAST(日子 AS char(2)) AS DATETIME)");
}

TEST(Conditions, WhereClauseCutsTheLeadingAnd) {
    EXPECT_EQ(WhereClause(" Where {conditions}", " And a=1 And b=2"), " Where  a=1 And b=2");
    EXPECT_EQ(WhereClause("Where {conditions}", " And a=1"), "Where  a=1");
    EXPECT_EQ(WhereClause(" Where (({conditions}))", " And a=1"), " Where (( a=1))");
    EXPECT_EQ(WhereClause(" Where {conditions}", ""), "");
    EXPECT_EQ(WhereClause(" Where {conditions}", "a=1"), "a=1");
}

}  // namespace
}  // namespace kpTables::test
