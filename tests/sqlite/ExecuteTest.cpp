// A host's own statements.
#include <gtest/gtest.h>

#include "TestBook.h"
#include "kpTables/Convert.h"

namespace kpTables {
namespace {

using namespace test;

class Execute : public testing::Test {
protected:
    std::string Value(std::string_view text) { return ValueOf(*book, text); }
    std::string Rows(std::string_view text) { return RowsOf(*book, text); }
    void Run(std::string_view text) { EXPECT_FALSE(book->Execute(text)) << text; }

    BookPtr book = NewBook();
};

TEST_F(Execute, StoresEveryTypeAndGivesItBack) {
    Run("CREATE TABLE T (k COUNTER PRIMARY KEY, b YESNO, s SHORT, l LONG, d DOUBLE, c CURRENCY, t DATETIME, x "
        "TEXT(20), "
        "m MEMO)");
    Run("Insert Into T (b, s, l, d, c, t, x, m) Values (True, -32768, 2147483647, 0.1, 12.5, #1997-1-2#, '张三', "
        "'备注')");
    const RecordsetPtr rows = book->Execute("Select * From T");
    ASSERT_EQ(rows->RecordCount(), 1);
    const VarType types[] = {VarType::Long,     VarType::Boolean, VarType::Integer, VarType::Long,  VarType::Double,
                             VarType::Currency, VarType::Date,    VarType::String,  VarType::String};
    for (int i = 0; i < rows->FieldCount(); ++i) {
        EXPECT_EQ(rows->FieldAt(i).type, types[i]) << i;
        EXPECT_EQ(rows->GetValue(i).Type(), types[i]) << i;
    }
    EXPECT_EQ(RowsOf(*rows), "1|True|-32768|2147483647|0.1|12.5|1997-1-2|张三|备注");
}

TEST_F(Execute, DatesAreReadInEveryForm) {
    for (const char* date :
         {"#1997-1-2#", "'1997-01-02'", "'1997-1-2'", "#1/2/1997#", "'1997/1/2'", "'1997年1月2日'"}) {
        Run(std::string("Insert Into 仓库设置 (仓库名称, 结帐日期) Values ('x', ").append(date).append(")"));
    }
    EXPECT_EQ(Value("Select Count(*) From 仓库设置 Where 结帐日期=#1997-01-02#"), "6");
    EXPECT_EQ(Value("Select Count(*) From 仓库设置 Where 结帐日期='1997-1-2'"), "6");
    EXPECT_EQ(Value("Select Count(*) From 仓库设置 Where 结帐日期<#1997-1-2 00:00:01#"), "6");
    Run("Update 仓库设置 Set 结帐日期=#1997-1-2 13:05:09#");
    EXPECT_EQ(Value("Select 结帐日期 From 仓库设置"), "1997-1-2 13:05:09");
}

TEST_F(Execute, FlagsTakeBothDialects) {
    Run("Insert Into 仓库设置 (仓库名称, 结帐标志) Values ('a', True)");
    Run("Insert Into 仓库设置 (仓库名称, 结帐标志) Values ('b', 1)");
    Run("Insert Into 仓库设置 (仓库名称, 结帐标志) Values ('c', False)");
    Run("Insert Into 仓库设置 (仓库名称) Values ('d')");
    EXPECT_EQ(Rows("Select 仓库名称, 结帐标志 From 仓库设置 Order By dpID"), "a|True / b|True / c|False / d|False");
    EXPECT_EQ(Rows("Select 仓库名称 From 仓库设置 Where 结帐标志=True Order By 仓库名称"), "a / b");
    EXPECT_EQ(Rows("Select 仓库名称 From 仓库设置 Where Not 结帐标志 Order By 仓库名称"), "c / d");
}

TEST_F(Execute, TheLastMemberOfAUnionKeepsItsGroups) {
    Run("Insert Into 入库记录 (pdID, dpID, 经手人) Values (1, 1, 'b')");
    Run("Insert Into 入库记录 (pdID, dpID, 经手人) Values (1, 2, 'A')");
    Run("Insert Into 入库记录 (pdID, dpID, 经手人) Values (2, 3, 'C')");
    Run("Insert Into 入库记录 (pdID, dpID, 经手人) Values (3, 4, 'd')");
    const std::string members =
        "Select Trim(仓库名称) As x From 仓库设置 Union Select Min(经手人) From 入库记录 Group By pdID";
    EXPECT_EQ(Rows(members), "A / C / d");
    EXPECT_EQ(Rows(members + " Having Max(dpID)<4"), "A / C");
    EXPECT_EQ(Rows(members + " Order By x Desc"), "d / C / A");
    EXPECT_EQ(Rows("Select Trim(仓库名称) As x From 仓库设置 Union Select Max(经手人) From 入库记录 Having Count(*)>4"),
              "");
    EXPECT_EQ(Rows("Select Trim(仓库名称) As x From 仓库设置 Union Select 'z' From 入库记录 Having Count(*)=4"), "z");
    // All members compare in the order of texts, whichever comes first.
    Run("Insert Into 仓库设置 (仓库名称) Values ('a  ')");
    Run("Insert Into 仓库设置 (仓库名称) Values ('B')");
    EXPECT_EQ(Value("Select Count(*) From (" + members + ") As u"), "4");
}

TEST_F(Execute, HavingAloneMakesAllRowsOneGroup) {
    const std::string select = "Select 'x' As a, 7 As b From 入库记录 Having ";
    EXPECT_EQ(Rows(select + "Count(*)=0"), "x|7");
    EXPECT_EQ(Rows(select + "Count(*)>0"), "");
    Run("Insert Into 入库记录 (pdID) Values (1)");
    Run("Insert Into 入库记录 (pdID) Values (2)");
    EXPECT_EQ(Rows(select + "Count(*)=2"), "x|7");
    EXPECT_EQ(Rows(select + "Max(pdID)>2"), "");
    EXPECT_EQ(Rows(select + "True"), "x|7");
    EXPECT_EQ(Rows("Select 'x' Having 1=1"), "x");
    EXPECT_EQ(Rows("Select 'x' Having 1=2"), "");
    EXPECT_EQ(Rows("Select 'x' From 入库记录 Having Count(*)=2 Union Select 'y' From 入库记录 Having Count(*)=3"), "x");
    EXPECT_EQ(Value("Select Count(*) From 入库记录 Where Exists (Select 1 From 入库记录 Having Count(*)>2)"), "0");
    EXPECT_EQ(Value("Select Count(*) From 入库记录 Where Exists (Select 1 From 入库记录 Having Count(*)>1)"), "2");
}

TEST_F(Execute, KeysWithLiteralsAreReadAgain) {
    for (const char* name : {"a1", "b1", "a2"})
        Run(std::string("Insert Into 仓库设置 (仓库名称) Values ('").append(name).append("')"));
    const std::string from = ", Count(*) As n From 仓库设置 Group By ";
    EXPECT_EQ(Rows("Select dpID Mod 2 As m" + from + "dpID Mod 2"), "0|1 / 1|2");
    EXPECT_EQ(Rows("Select (dpID Mod 2)+10 As m" + from + "dpID Mod 2 Having dpID Mod 2>=0 Order By dpID Mod 2 Desc"),
              "11|2 / 10|1");
    EXPECT_EQ(Rows("Select Left(仓库名称,1) As m" + from + "Left(仓库名称,1)"), "a|2 / b|1");
    EXPECT_EQ(Rows("Select Left(仓库名称,1) & '-' & dpID As m" + from + "Left(仓库名称,1) & '-' & dpID"),
              "a-1|1 / a-3|1 / b-2|1");
    EXPECT_EQ(Rows("Select IIf(dpID>1,'x','y') As m" + from + "IIf(dpID>1,'x','y')"), "x|2 / y|1");
    EXPECT_EQ(Rows("Select Case When dpID>1 Then 1 Else 2 End As m" + from +
                   "Case When dpID>1 Then 1 Else 2 End Order By Case When dpID>1 Then 1 Else 2 End Desc"),
              "2|1 / 1|2");
    EXPECT_EQ(
        Rows("Select Left(仓库名称,1) As m From 仓库设置 Group By Left(仓库名称,1) Union Select Right(仓库名称,1) "
             "From 仓库设置 Group By Right(仓库名称,1)"),
        "1 / 2 / a / b");
    EXPECT_EQ(Rows("Select dpID Mod 2 As m" + from + "dpID Mod 2 Having Max(dpID Mod 2)<1"), "0|1");
    // The same statement with other literals in other places.
    const auto where = [&](const std::string& key, const std::string& first) {
        return Rows("Select Left(仓库名称,1) As m, Max(Left(仓库名称," + key +
                    ")) As x From 仓库设置 Where Left(仓库名称," + key + ")='" + first + "' Group By Left(仓库名称,1)");
    };
    EXPECT_EQ(where("1", "a"), "a|a");
    EXPECT_EQ(where("2", "a2"), "a|a2");
}

TEST_F(Execute, TextOrdersAndComparesAsABookHasIt) {
    for (const char* name : {"张三", "李四", "abc", "Abd", "阿大", "10", "2"}) {
        Run(std::string("Insert Into 仓库设置 (仓库名称) Values ('").append(name).append("')"));
    }
    EXPECT_EQ(Rows("Select 仓库名称 From 仓库设置 Order By 仓库名称"), "10 / 2 / abc / Abd / 阿大 / 李四 / 张三");
    EXPECT_EQ(Rows("Select 仓库名称 From 仓库设置 Order By 仓库名称 Desc"), "张三 / 李四 / 阿大 / Abd / abc / 2 / 10");
    EXPECT_EQ(Value("Select Count(*) From 仓库设置 Where 仓库名称='ABC  '"), "1");
    EXPECT_EQ(Value("Select Count(*) From 仓库设置 Where 仓库名称 Like 'AB%'"), "2");
    EXPECT_EQ(Value("Select Count(*) From 仓库设置 Where 仓库名称>='阿' And 仓库名称<'张'"), "2");
    Run("Insert Into 仓库设置 (仓库名称) Values ('ABC ')");
    EXPECT_EQ(Value("Select Count(*) From (Select Distinct 仓库名称 From 仓库设置) As d"), "7");
    EXPECT_EQ(Value("Select Count(*) From 仓库设置 Group By 仓库名称 Having Count(*)>1"), "2");
}

TEST_F(Execute, CurrencySumsAreExactAtTheLimits) {
    Run("Insert Into 入库记录 (BillID, pdID, 除税金额) Values (1, 1, 922337203685477.5807)");
    Run("Insert Into 入库记录 (BillID, pdID, 除税金额) Values (1, 2, '-922337203685477.5808')");
    EXPECT_EQ(Rows("Select 除税金额 From 入库记录 Order By pdID"), "922337203685477.5807 / -922337203685477.5808");
    EXPECT_EQ(Value("Select Sum(除税金额) From 入库记录"), "-0.0001");
    for (int i = 0; i < 10; ++i) Run("Insert Into 入库记录 (BillID, pdID, 除税金额) Values (2, 3, 0.1)");
    EXPECT_EQ(Value("Select Sum(除税金额) From 入库记录 Where BillID=2"), "1");
    Run("Insert Into 入库记录 (BillID, pdID, 除税金额) Values (1, 4, 0.0002)");
    const auto error = Refused([&] { book->Execute("Select Sum(除税金额) From 入库记录 Where BillID=1 And pdID<>2"); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Number(), Code(DatabaseErrorNumber::Overflow)) << error->what();
    EXPECT_EQ(
        Refused([&] { book->Execute("Insert Into 入库记录 (除税金额) Values (922337203685477.5808)"); })->Number(),
        Code(DatabaseErrorNumber::Overflow));
}

TEST_F(Execute, ADoubleThatIsTooLargeOverflows) {
    for (int product : {1, 2}) Run("Insert Into 入库记录 (pdID, 数量) Values (" + std::to_string(product) + ", 1e308)");
    EXPECT_EQ(Value("Select Max(数量) From 入库记录"), "1E+308");
    for (const char* select : {"Select Sum(数量) From 入库记录", "Select -Sum(数量) From 入库记录",
                               "Select pdID, 数量 * 10 From 入库记录"}) {
        const auto error = Refused([&] { book->Execute(select); });
        ASSERT_TRUE(error) << select;
        EXPECT_EQ(error->Number(), Code(DatabaseErrorNumber::Overflow)) << select;
    }
}

TEST_F(Execute, TheServersFormsOfADateAreRead) {
    Run("Insert Into 入库目录 (年份, 月份, 日子, 录入日期) Values (2004, 3, 7, '20040307')");
    struct Case {
        const char* select;
        const char* expected;
    };
    constexpr Case kCases[] = {
        {"Select 录入日期 From 入库目录", "2004-3-7"},
        {"Select CAST('20040307' AS DATETIME)", "2004-3-7"},
        {"Select CAST('2004-12-31' AS DATETIME)", "2004-12-31"},
        {"Select CAST('2004-3 -7 ' AS DATETIME)", "2004-3-7"},
        {"Select CAST('2004-' + CAST(月份 AS char(2)) + '-' + CAST(日子 AS char(2)) AS DATETIME) From 入库目录",
         "2004-3-7"},
        {"Select Count(*) From 入库目录 Where 录入日期='20040307'", "1"},
        {"Select Count(*) From 入库目录 Where CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + '-' + "
         "CAST(日子 AS char(2)) AS DATETIME)<='20040307'",
         "1"},
        {"Select CAST(录入日期 AS int) From 入库目录", "38051"},
        {"Select CAST(CAST(38051 AS DATETIME) AS int)", "38051"},
    };
    for (const auto& [select, expected] : kCases) EXPECT_EQ(Value(select), expected) << select;
}

TEST_F(Execute, WhatRunsOverIsNotStored) {
    Run("Insert Into 商品设置 (商品名称, 默认单价) Values ('甲', 1E308)");
    Run("Insert Into 入库记录 (BillID, pdID, 金额, 税额) Values (2147483647, 1, 922337203685477.5807, 1)");
    const char* const statements[] = {
        "Update 入库记录 Set 金额=金额+税额",
        "Update 入库记录 Set 金额=金额*2",
        "Update 入库记录 Set 金额=-金额-金额",
        "Update 入库记录 Set 金额=BillID*BillID",
        "Insert Into 入库记录 (金额) Select 金额+1 From 入库记录",
        "Update 商品设置 Set 默认单价=默认单价*10",
        "Update 商品设置 Set 默认单价=默认单价+默认单价",
        "Select 默认单价*10 From 商品设置",
    };
    for (const char* statement : statements) {
        const auto error = Refused([&] { book->Execute(statement); });
        ASSERT_TRUE(error) << statement;
        EXPECT_EQ(error->Number(), Code(DatabaseErrorNumber::Overflow)) << statement;
    }
    EXPECT_EQ(Rows("Select 金额 From 入库记录"), "922337203685477.5807");
    EXPECT_EQ(Value("Select 默认单价 From 商品设置"), "1E+308");
}

TEST_F(Execute, TheSmallestAmountIsALiteral) {
    struct Case {
        const char* select;
        const char* expected;
    };
    constexpr Case kCases[] = {
        {"Select 除税金额 From 入库记录 Where pdID=1", "-922337203685477.5808"},
        {"Select 金额 From 入库记录 Where pdID=1", "-922337203685477.5807"},
        {"Select CCur(-922337203685477.5808) From 入库记录 Where pdID=1", "-922337203685477.5808"},
        {"Select pdID From 入库记录 Where 除税金额=-922337203685477.5808", "1"},
        {"Select pdID From 入库记录 Where 除税金额=-922337203685477.5807", "2"},
        {"Select pdID From 入库记录 Where 除税金额=922337203685477.5807", "3"},
        {"Select Count(*) From 入库记录 Where 除税金额>=922337203685477.5808", "0"},
        {"Select Count(*) From 入库记录 Where 除税金额<-922337203685477.5808", "0"},
        {"Select Count(*) From 入库记录 Where 除税金额<922337203685477.5808", "3"},
        {"Select pdID From 入库记录 Where 除税金额 Between -922337203685477.5807 And -1", "2"},
        {"Select pdID From 入库记录 Where 除税金额 In (-922337203685477.5808, 7)", "1"},
    };
    Run("Insert Into 入库记录 (pdID, 除税金额) Values (1, -922337203685477.5808)");
    Run("Insert Into 入库记录 (pdID, 除税金额) Values (2, -1)");
    Run("Update 入库记录 Set 除税金额=-922337203685477.5807 Where pdID=2");
    Run("Update 入库记录 Set 金额=-922337203685477.5807");
    Run("Insert Into 入库记录 (pdID, 除税金额) Values (3, 922337203685477.5807)");
    for (const auto& [select, expected] : kCases) EXPECT_EQ(Value(select), expected) << select;
    Run("Create Table 限额 (ID LONG, 最低 CURRENCY DEFAULT -922337203685477.5808)");
    Run("Insert Into 限额 (ID) Values (1)");
    EXPECT_EQ(Value("Select 最低 From 限额"), "-922337203685477.5808");
    for (const char* amount : {"-922337203685477.5809", "922337203685477.5808"}) {
        const auto error = Refused([&] { Run(std::string("Update 入库记录 Set 金额=").append(amount)); });
        ASSERT_TRUE(error) << amount;
        EXPECT_EQ(error->Number(), Code(DatabaseErrorNumber::Overflow)) << amount;
        EXPECT_NE(error->Description().find(std::string(": ") + amount + " is too large"), std::string::npos)
            << error->Description();
    }
}

TEST_F(Execute, JoinsAndGroups) {
    Run("Insert Into 仓库设置 (仓库名称) Values ('中心仓库')");
    Run("Insert Into 仓库设置 (仓库名称) Values ('北仓')");
    Run("Insert Into 入库目录 (BillID, dpID, 年份, 月份, 日子) Values (1, 1, 1997, 1, 2)");
    Run("Insert Into 入库目录 (BillID, dpID, 年份, 月份, 日子) Values (2, 1, 1997, 1, 31)");
    Run("Insert Into 入库记录 (BillID, pdID, 数量, 除税单价, 除税金额) Values (1, 7, 2, 1.5, 3)");
    Run("Insert Into 入库记录 (BillID, pdID, 数量, 除税单价, 除税金额) Values (2, 7, 3, 2.5, 7.5)");
    EXPECT_EQ(
        Rows("Select dp.仓库名称, Count(Rec.pdID) As n, Sum(Rec.除税金额) As 金额 From (仓库设置 dp Left Join 入库目录 "
             "Lst On dp.dpID=Lst.dpID) Left Join 入库记录 Rec On Lst.BillID=Rec.BillID Group By dp.仓库名称 Order By "
             "dp.仓库名称"),
        "北仓|0|Null / 中心仓库|2|10.5");
    EXPECT_EQ(
        Rows("Select pdID,Avg(除税单价) As 单价,Sum(数量) As 数量,Sum(除税金额) As 金额 From 入库记录 Where BillID in "
             "(Select BillID From 入库目录 Where dpID=1 And 月份=1) Group by pdID"),
        "7|2|5|10.5");
    const RecordsetPtr rows =
        book->Execute("Select Sum(除税金额) As a, Avg(除税单价) As b, Count(*) As c From 入库记录");
    EXPECT_EQ(rows->Fields("a").Type(), VarType::Currency);
    EXPECT_EQ(rows->Fields("b").Type(), VarType::Double);
    EXPECT_EQ(rows->Fields("c").Type(), VarType::Long);
}

TEST_F(Execute, RecordsetsAreCompleteAndReadOnly) {
    Run("Insert Into 仓库设置 (仓库名称) Values ('甲')");
    Run("Insert Into 仓库设置 (仓库名称) Values ('乙')");
    const RecordsetPtr first = book->Execute("Select * From 仓库设置 Where dpID>0");
    const RecordsetPtr second = book->Execute("Select * From 仓库设置 Where dpID>1");
    Run("Delete From 仓库设置");
    EXPECT_EQ(first->RecordCount(), 2);
    EXPECT_EQ(second->RecordCount(), 1);
    first->Find("仓库名称='乙'");
    EXPECT_EQ(Text(first->Fields("dpID").Value()), "2");
    EXPECT_EQ(NumberOf([&] { first->Fields("dpID").SetValue(5); }), Code(ErrorNumber::NotUpdatable));
    EXPECT_EQ(NumberOf([&] { first->AddNew(); }), Code(ErrorNumber::NotUpdatable));
}

TEST_F(Execute, CountsWhatAChangeTouched) {
    for (int i = 0; i < 5; ++i) Run("Insert Into 仓库设置 (仓库名称) Values ('甲')");
    EXPECT_EQ(book->RecordsAffected(), 1);
    Run("Update 仓库设置 Set 结帐标志=True Where dpID<=3");
    EXPECT_EQ(book->RecordsAffected(), 3);
    book->Execute("Select * From 仓库设置");
    EXPECT_EQ(book->RecordsAffected(), 3);
    Run("Delete From 仓库设置 Where dpID>100");
    EXPECT_EQ(book->RecordsAffected(), 0);
    Run("Delete From 仓库设置");
    EXPECT_EQ(book->RecordsAffected(), 5);
}

struct Refusal {
    const char* text;
    DatabaseErrorNumber number;
    std::size_t position;
};

void PrintTo(const Refusal& refusal, std::ostream* out) { *out << refusal.text; }

class ExecuteRefuses : public testing::TestWithParam<Refusal> {};

TEST_P(ExecuteRefuses, WithNumberStatementAndPosition) {
    const auto book = NewBook();
    book->Execute("Insert Into 仓库设置 (仓库名称) Values ('甲')");
    const auto error = Refused([&] { book->Execute(GetParam().text); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Number(), Code(GetParam().number)) << error->what();
    EXPECT_EQ(error->Statement(), GetParam().text);
    ASSERT_TRUE(error->Position());
    EXPECT_EQ(*error->Position(), GetParam().position) << error->what();
    EXPECT_NE(error->Description().find("line 1, column "), std::string::npos) << error->what();
    EXPECT_EQ(RowsOf(*book, "Select * From 仓库设置"), "1|甲|Null|False");
}

using enum DatabaseErrorNumber;
// A Chinese character takes three bytes.
INSTANTIATE_TEST_SUITE_P(Table, ExecuteRefuses,
                         testing::Values(Refusal{"", Syntax, 0}, Refusal{"Selec * From 仓库设置", Syntax, 0},
                                         Refusal{"Select * Fro 仓库设置", Syntax, 9},
                                         Refusal{"Select * From", Syntax, 13},
                                         Refusal{"Delete From 仓库设置; Delete From 仓库设置", Syntax, 26},
                                         Refusal{"Select 1; Select 2", Syntax, 10},
                                         Refusal{"Update 仓库设置 Set 仓库名称='O'Brien'", Syntax, 45},
                                         Refusal{"Delete From 仓库设置 Where 仓库名称='甲' And", Syntax, 53},
                                         Refusal{"Select * From 没有", UnknownTable, 14},
                                         Refusal{"Delete From 没有", UnknownTable, 12},
                                         Refusal{"Select 没有 From 仓库设置", UnknownColumn, 7},
                                         Refusal{"Update 仓库设置 Set 没有=1", UnknownColumn, 24},
                                         Refusal{"Update 仓库设置 Set 结帐日期='1997-2-30'", TypeMismatch, 37},
                                         Refusal{"Update 仓库设置 Set 结帐日期='没有'", TypeMismatch, 37},
                                         Refusal{"Insert Into 入库目录 (月份) Values ('三')", TypeMismatch, 42},
                                         Refusal{"Insert Into 入库目录 (月份) Values (32768)", Overflow, 42},
                                         Refusal{"Insert Into 入库目录 (ksID) Values (2147483648)", Overflow, 40},
                                         Refusal{"Insert Into 入库目录 (ksID) Values ('2147483648')", Overflow, 40},
                                         Refusal{"Insert Into 入库记录 (除税金额) Values ('abc')", TypeMismatch, 48},
                                         Refusal{"Insert Into 入库记录 (数量) Values ('1.2.3')", TypeMismatch, 42}));

TEST_F(Execute, AQuoteInsideAValueChangesNothing) {
    Run("Insert Into 仓库设置 (仓库名称) Values ('甲')");
    EXPECT_EQ(NumberOf([&] { book->Execute("Update 仓库设置 Set 仓库名称='it's'"); }), Code(Syntax));
    EXPECT_EQ(NumberOf([&] { book->Execute("Update 仓库设置 Set 仓库名称='a' Or '1'='1' Where dpID='x' 'y'"); }),
              Code(Syntax));
    EXPECT_EQ(Rows("Select 仓库名称 From 仓库设置"), "甲");
    Run("Update 仓库设置 Set 仓库名称='it''s'");
    EXPECT_EQ(Rows("Select 仓库名称 From 仓库设置"), "it's");
}

TEST_F(Execute, AStatementThatFailsMidwayChangesNothing) {
    for (int i = 1; i <= 3; ++i) {
        Run("Insert Into 入库记录 (BillID, pdID, 数量, 除税单价) Values (1, " + std::to_string(i) + ", " +
            std::to_string(3 - i) + ", 1)");
    }
    const auto error = Refused([&] { book->Execute("Update 入库记录 Set 除税单价=6/数量"); });
    ASSERT_TRUE(error);
    EXPECT_NE(error->Description().find("Division by zero"), std::string::npos);
    EXPECT_EQ(Rows("Select 除税单价 From 入库记录"), "1 / 1 / 1");
    EXPECT_TRUE(Refused([&] { book->Execute("Insert Into 仓库设置 (dpID) Select 5 From 入库记录"); }));
    EXPECT_EQ(Value("Select Count(*) From 仓库设置"), "0");
}

TEST_F(Execute, ConstraintsAreNamed) {
    Run("Insert Into 仓库设置 (dpID, 仓库名称) Values (7, '甲')");
    const auto duplicate = Refused([&] { book->Execute("Insert Into 仓库设置 (dpID) Values (7)"); });
    ASSERT_TRUE(duplicate);
    EXPECT_EQ(duplicate->Number(), Code(ConstraintViolated));
    EXPECT_NE(duplicate->Description().find("dpID"), std::string::npos) << duplicate->what();
    Run("CREATE TABLE T (a LONG NOT NULL, b TEXT(5))");
    const auto missing = Refused([&] { book->Execute("Insert Into T (b) Values ('x')"); });
    ASSERT_TRUE(missing);
    EXPECT_EQ(missing->Number(), Code(ConstraintViolated));
    EXPECT_NE(missing->Description().find("must not be Null"), std::string::npos) << missing->what();
}

TEST_F(Execute, IdsAtTheLimits) {
    Run("Insert Into 入库目录 (BillID, ksID) Values (2147483647, -2147483648)");
    EXPECT_EQ(Rows("Select BillID, ksID From 入库目录 Where BillID=2147483647"), "2147483647|-2147483648");
    EXPECT_EQ(Value("Select Count(*) From 入库目录 Where BillID=2147483648"), "0");
    EXPECT_EQ(Value("Select Count(*) From 入库目录 Where BillID<99999999999999999999"), "1");
    const RecordsetPtr rows = book->Execute("Select BillID+1 As n From 入库目录");
    EXPECT_EQ(rows->GetValue(0).Type(), VarType::Double);
    EXPECT_EQ(Text(rows->GetValue(0)), "2147483648");
}

TEST_F(Execute, MonthsAreStoredAsTheyAre) {
    for (const char* month : {"0", "13", "-1"}) {
        Run(std::string("Insert Into 入库目录 (年份, 月份, 日子) Values (1997, ").append(month).append(", 1)"));
    }
    EXPECT_EQ(Rows("Select 月份 From 入库目录 Order By 月份"), "-1 / 0 / 13");
    const auto error =
        Refused([&] { book->Execute("Select CDATE(年份 & '-' & 月份 & '-' & 日子) As 日期 From 入库目录"); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->Number(), Code(TypeMismatch)) << error->what();
}

TEST_F(Execute, BillDatesCompareInBothDialects) {
    for (const char* date : {"1997, 1, 2", "1997, 1, 31", "1997, 2, 1", "1997, 11, 5"}) {
        Run(std::string("Insert Into 入库目录 (年份, 月份, 日子) Values (").append(date).append(")"));
    }
    EXPECT_EQ(
        Rows(
            "Select 月份, 日子 From 入库目录 Where CDATE(年份 & '-' & 月份 & '-' & 日子)>=#1997-1-31# And CDATE(年份 & "
            "'-' & 月份 & '-' & 日子)<=#1997-2-1#"),
        "1|31 / 2|1");
    EXPECT_EQ(
        Rows("Select 月份, 日子 From 入库目录 Where CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + '-' + "
             "CAST(日子 AS char(2)) AS DATETIME)>=CAST('1997-2-1' AS DATETIME)"),
        "2|1 / 11|5");
}

TEST_F(Execute, BillsWithoutADayShareTheDateNull) {
    Run("Insert Into 入库目录 (BillID, 年份, 月份, 日子) Values (1, 2004, 3, 7)");
    Run("Insert Into 入库目录 (BillID, 年份, 月份) Values (2, 2004, 4)");
    Run("Insert Into 入库目录 (BillID, 年份, 日子) Values (3, 2003, 31)");
    const std::string date = "CDATE(年份 & '-' & 月份 & '-' & 日子)";
    EXPECT_EQ(Rows("Select BillID From 入库目录 Order By " + date + ", BillID Desc"), "3 / 2 / 1");
    EXPECT_EQ(Rows("Select BillID From 入库目录 Order By " + date + " Desc, BillID"), "1 / 2 / 3");
    EXPECT_EQ(Rows("Select " + date + ", Count(*) From 入库目录 Group By " + date), "Null|2 / 2004-3-7|1");
}

TEST_F(Execute, BillDatesLieBeforeTheTimesOfTheirDay) {
    Run("Insert Into 入库目录 (年份, 月份, 日子) Values (2003, 9, 5)");
    const std::string jet = "CDATE(年份 & '-' & 月份 & '-' & 日子)";
    const std::string server =
        "CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + '-' + CAST(日子 AS char(2)) AS DATETIME)";
    const std::pair<const char*, const char*> operators[] = {{"<", "1"}, {"<=", "1"}, {"<>", "1"},
                                                             {"=", "0"}, {">", "0"},  {">=", "0"}};
    for (const std::string& date : {jet, server}) {
        for (const char* time : {"#2003-9-5 12:30:00#", "'2003-9-5 12:30:00'", "CDate('2003-9-5 0:00:01')"}) {
            for (const auto& [op, count] : operators) {
                const std::string text = "Select Count(*) From 入库目录 Where " + date + op + time;
                EXPECT_EQ(Rows(text), count) << text;
            }
        }
    }
    EXPECT_EQ(Rows("Select Count(*) From 入库目录 Where " + jet + "=#2003-9-5 0:00:00#"), "1");
}

TEST_F(Execute, UnknownTypesAreToldByTheFirstValue) {
    Run("CREATE TABLE T (a LONG)");
    const RecordsetPtr rows = book->Execute("Select Null As n From T");
    EXPECT_EQ(rows->FieldAt(0).type, VarType::Empty);
    EXPECT_EQ(rows->RecordCount(), 0);
    EXPECT_EQ(book->Execute("Select Null As n")->GetValue(0).Type(), VarType::Null);
}

TEST_F(Execute, CrossTabs) {
    for (const char* line : {"7, 1, 2.5", "7, 2, 3", "8, 2, 4", "8, 10, 1", "7, 2, 1"}) {
        Run(std::string("Insert Into 仓库余额表 (pdID, 月份, 本期入库数量) Values (").append(line).append(")"));
    }
    const RecordsetPtr rows =
        book->Execute("TRANSFORM Sum(本期入库数量) SELECT pdID FROM 仓库余额表 GROUP BY pdID ORDER BY pdID PIVOT 月份");
    ASSERT_EQ(rows->FieldCount(), 4);
    EXPECT_EQ(rows->FieldAt(1).name, "1");
    EXPECT_EQ(rows->FieldAt(2).name, "2");
    EXPECT_EQ(rows->FieldAt(3).name, "10");
    EXPECT_EQ(RowsOf(*rows), "7|2.5|4|Null / 8|Null|4|1");
    Run("Insert Into 仓库余额表 (pdID, 月份, 本期入库数量) Values (8, 3, 9)");
    EXPECT_EQ(Rows("TRANSFORM Sum(本期入库数量) SELECT pdID FROM 仓库余额表 GROUP BY pdID ORDER BY pdID PIVOT 月份"),
              "7|2.5|4|Null|Null / 8|Null|4|9|1");
    EXPECT_EQ(
        Rows("TRANSFORM Sum(本期入库数量) SELECT pdID FROM 仓库余额表 WHERE pdID=8 GROUP BY pdID PIVOT 月份 IN (2, 5)"),
        "8|4|Null");
}

TEST_F(Execute, CrossTabsOfTextAndNull) {
    for (const char* line : {"1, '乙'", "2, '甲'", "3, Null", "4, 'it''s'"}) {
        Run(std::string("Insert Into 雇员资料 (ClassCode, 姓名) Values (").append(line).append(")"));
    }
    const RecordsetPtr rows = book->Execute("TRANSFORM Count(*) SELECT 1 AS n FROM 雇员资料 PIVOT 姓名");
    std::string names;
    for (int i = 1; i < rows->FieldCount(); ++i) names += rows->FieldAt(i).name + ",";
    EXPECT_EQ(names, "<>,it's,甲,乙,");
}

TEST_F(Execute, TheSchemaMayChange) {
    Run("CREATE TABLE T (a LONG)");
    Run("Insert Into T (a) Values (1)");
    EXPECT_EQ(Rows("Select * From T"), "1");
    Run("ALTER TABLE T ADD COLUMN b TEXT(10)");
    EXPECT_EQ(Rows("Select * From T"), "1|Null");
    Run("CREATE INDEX i ON T (a)");
    Run("DROP INDEX i ON T");
    Run("DROP TABLE T");
    EXPECT_EQ(NumberOf([&] { book->Execute("Select * From T"); }), Code(UnknownTable));
}

TEST(ExecuteOnAFile, SeesAnotherProgramsNewSchema) {
    const TemporaryDirectory directory;
    const auto book = CreateBook(directory.Book("book"));
    book->Execute("CREATE TABLE T (a LONG)");
    book->Execute("Insert Into T (a) Values (1)");
    EXPECT_EQ(RowsOf(*book, "Select * From T"), "1");
    const auto other = OpenBook(directory.Book("book"));
    other->Execute("ALTER TABLE T ADD COLUMN b CURRENCY");
    other->Execute("Update T Set b=1.5");
    EXPECT_EQ(RowsOf(*book, "Select * From T"), "1|1.5");
    EXPECT_EQ(RowsOf(*book, "Select b From T"), "1.5");
    other->Execute("DROP TABLE T");
    EXPECT_EQ(NumberOf([&] { book->Execute("Select * From T"); }), Code(UnknownTable));
    EXPECT_EQ(NumberOf([&] { book->Execute("Delete From T"); }), Code(UnknownTable));
}

}  // namespace
}  // namespace kpTables
