#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

#include "SqliteBook.h"

namespace kpTables::sql::test {

namespace {

class Execution : public ::testing::Test {
protected:
    Execution() {
        for (const char* text : {
                 "Insert Into 厂商资料 (KSID,企业名称) Values (1,'Ace')",
                 "Insert Into 厂商资料 (KSID,企业名称) Values (2,'Best ')",
                 "Insert Into 仓库设置 (dpID,仓库名称,结帐标志) Values (1,'north',0)",
                 "Insert Into 入库目录 (BillID,年份,月份,日子,ksID,dpID) Values (10,2004,3,7,1,1)",
                 "Insert Into 入库目录 (BillID,年份,月份,日子,ksID,dpID) Values (11,2004,10,1,2,1)",
                 "Insert Into 入库目录 (BillID,年份,月份,日子,ksID,dpID) Values (12,2005,1,31,9,9)",
                 "Insert Into 入库记录 (BillID,pdID,数量,金额,经手人) Values (10,5,2,1.25,'li')",
                 "Insert Into 入库记录 (BillID,pdID,数量,金额,经手人) Values (10,6,3,0.75,'LI ')",
                 "Insert Into 入库记录 (BillID,pdID,数量,金额,经手人) Values (11,5,4,10,'wang')",
             })
            book_.Run(text);
    }

    SqliteBook book_;
};

}  // namespace

TEST_F(Execution, CurrencyIsStoredInTenThousandths) {
    EXPECT_EQ(book_.RunPlain("SELECT \"金额\" FROM \"入库记录\" ORDER BY rowid"), "12500|\n7500|\n100000|\n");
    EXPECT_EQ(book_.Run("Select BillID From 入库记录 Where 金额>1.2 And 金额<2"), "10|\n");
    EXPECT_EQ(book_.Run("Select Sum(金额) From 入库记录"), "120000|\n");
    EXPECT_EQ(book_.Run("Select Avg(金额) From 入库记录 Where BillID=10"), "1.0|\n");
}

TEST_F(Execution, RightJoinsKeepEveryBill) {
    EXPECT_EQ(
        book_.Run("SELECT Lst.BillID, Sum(Rec.数量), dp.仓库名称, ks.企业名称 FROM 仓库设置 AS dp RIGHT JOIN (厂商资料 "
                  "AS ks RIGHT JOIN (入库目录 AS Lst LEFT JOIN 入库记录 AS Rec ON Lst.BillID = Rec.BillID) ON ks.KSID "
                  "= Lst.ksID) ON dp.dpID = Lst.dpID GROUP BY Lst.BillID, dp.仓库名称, ks.企业名称 Order by "
                  "Lst.BillID"),
        "10|5.0|north|Ace|\n11|4.0|north|Best |\n12||||\n");
}

TEST_F(Execution, LeftJoinOfAJoinInParentheses) {
    EXPECT_EQ(book_.Run("Select K.KSID, R.pdID From 厂商资料 As K Left Join (入库目录 As L Inner Join 入库记录 As R On "
                        "L.BillID=R.BillID) On K.KSID=L.ksID And R.pdID=5 Order By K.KSID"),
              "1|5|\n2|5|\n");
}

TEST_F(Execution, BillDatesCompareAsDates) {
    const std::string date = "CDATE(年份 & '-' & 月份 & '-' & 日子)";
    const std::string select = "Select BillID From 入库目录 Where ";
    EXPECT_EQ(book_.Run(select + date + ">=#2004-10-1# Order By BillID"), "11|\n12|\n");
    EXPECT_EQ(book_.Run(select + date + "<#2004-10-1#"), "10|\n");
    EXPECT_EQ(book_.Run(select + date + "=#2004-3-7#"), "10|\n");
    EXPECT_EQ(book_.Run(select + date + "<>#2004-3-7# Order By BillID"), "11|\n12|\n");
    EXPECT_EQ(book_.Run(select + "((" + date + ">=#2004-3-8#) And (" + date + "<=#2005-1-30#))"), "11|\n");
    EXPECT_EQ(book_.Run(select + date + ">#2000-1-1# Order By " + date + " DESC"), "12|\n11|\n10|\n");
}

TEST_F(Execution, ABillWithoutAMonthOrADayHasNoDate) {
    for (const char* values : {"(13,Null,3,7)", "(14,2004,Null,7)", "(15,2004,3,Null)"})
        book_.Run(std::string("Insert Into 入库目录 (BillID,年份,月份,日子) Values ") + values);
    const std::string joined = "CDATE(年份 & '-' & 月份 & '-' & 日子)";
    const std::string cast =
        "CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + '-' + CAST(日子 AS char(2)) AS DATETIME)";
    for (const std::string& date : {joined, cast}) {
        for (const char* range :
             {">=#2003-1-1#", "<#2006-1-1#", "<>#2003-1-1#", " Between #2003-1-1# And #2006-1-1#"}) {
            const std::string condition = date + range;
            EXPECT_EQ(book_.Run("Select BillID From 入库目录 Where " + condition + " Order By BillID"),
                      "10|\n11|\n12|\n")
                << condition;
        }
        for (const char* range : {"<#2003-1-1#", "=#2003-1-1#", " Between #2003-1-1# And #2003-12-31#"}) {
            const std::string opposite = "Not (" + date + range + " And BillID=BillID)";
            EXPECT_EQ(book_.Run("Select BillID From 入库目录 Where " + opposite + " Order By BillID"),
                      "10|\n11|\n12|\n")
                << opposite;
        }
        EXPECT_EQ(book_.Run("Select BillID From 入库目录 Where " + date + " Not Between #2004-4-1# And #2004-12-31#"),
                  "10|\n12|\n");
    }
}

TEST_F(Execution, AnIndexOnTheDateColumnsAnswers) {
    book_.Run("CREATE INDEX 日期 ON 入库目录 (年份, 月份, 日子)");
    const std::string date = "CDATE(年份 & '-' & 月份 & '-' & 日子)";
    for (const char* comparison : {">=#2004-3-7#", "=#2004-3-7#", "<'2004-3-7'"}) {
        const auto plan = book_.Plan("Select * From 入库目录 Where " + date + comparison);
        EXPECT_NE(plan.find("SEARCH 入库目录 USING INDEX 入库目录.日期"), std::string::npos) << plan;
    }
}

TEST_F(Execution, TextsCompareByTheCollation) {
    EXPECT_EQ(book_.Run("Select Distinct 经手人 From 入库记录 Order by 经手人"), "li|\nwang|\n");
    EXPECT_EQ(book_.Run("Select KSID From 厂商资料 Where 企业名称='BEST'"), "2|\n");
    EXPECT_EQ(book_.Run("Select Count(*) From 入库记录 Where 经手人 & ''='LI'"), "2|\n");
    EXPECT_EQ(book_.Run("Select Count(*) From 入库记录 Where Trim(经手人) In ('WANG','x')"), "1|\n");
    EXPECT_EQ(book_.Run("Select Count(*) From (Select 经手人 As 人 From 入库记录) As Q Where Q.人='LI'"), "2|\n");
    EXPECT_EQ(book_.Run("Select Trim(经手人) As 人, Sum(数量) From 入库记录 Group By Trim(经手人) Order By 人"),
              "li|5.0|\nwang|4.0|\n");
    EXPECT_EQ(book_.Run("Select 经手人 & 'x' From 入库记录 Union Select 'WANGX' From 厂商资料 Order By 1"),
              "LI x|\nlix|\nWANGX|\n");
}

TEST_F(Execution, UnionsAreOrderedByTheirMembersOrder) {
    EXPECT_EQ(
        book_.Run("(Select Distinct pdID As p From 入库记录 Order By pdID DESC) Union (Select KSID From 厂商资料 Order "
                  "By KSID DESC)"),
        "6|\n5|\n2|\n1|\n");
    EXPECT_EQ(book_.Run("(Select Top 1 pdID As p From 入库记录 Order By pdID DESC) Union All Select KSID From 厂商资料 "
                        "Order By p"),
              "1|\n2|\n6|\n");
}

TEST_F(Execution, Crosstab) {
    EXPECT_EQ(
        book_.Run("TRANSFORM Sum(R.金额) AS 月合计 SELECT R.pdID, Sum(R.数量) AS 合计 FROM 入库目录 AS L INNER JOIN "
                  "入库记录 AS R ON L.BillID=R.BillID GROUP BY R.pdID ORDER BY R.pdID PIVOT L.月份",
                  {{LiteralKind::Integer, "3"}, {LiteralKind::Integer, "10"}}),
        "5|6.0|112500|12500|100000|\n6|3.0|7500|7500||\n");
    EXPECT_EQ(
        book_.Run("TRANSFORM Count(*) SELECT pdID FROM 入库记录 GROUP BY pdID ORDER BY pdID PIVOT BillID IN (11, 10)"),
        "5|1|1|\n6||1|\n");
}

TEST_F(Execution, Values) {
    EXPECT_EQ(book_.Run("Select 年份 & '-' & 月份 & '-' & 日子, 审核员 & 'x' From 入库目录 Where BillID=10"),
              "2004-3-7|x|\n");
    EXPECT_EQ(book_.Run("Select BillID>10, Not (BillID>10), IIf(BillID>10,'a','b') From 入库目录 Where BillID<12"),
              "0|-1|b|\n-1|0|a|\n");
    EXPECT_EQ(book_.Run("Select Sum(Case 月份 When 3 Then 1 Else 0 End) From 入库目录"), "1.0|\n");
    EXPECT_EQ(book_.Run("Select Nz(Sum(数量),0) From 入库记录 Where BillID=99"), "0.0|\n");
}

TEST_F(Execution, Membership) {
    EXPECT_EQ(
        book_.Run(
            "Select Distinct pdID From 入库记录 Where pdID not in (Select pdID From 入库记录 Where BillID=11) And "
            "BillID In (Select BillId From 入库目录 Where 月份<=3)"),
        "6|\n");
    EXPECT_EQ(
        book_.Run("Select BillID From 入库目录 As L Where Exists (Select * From 入库记录 Where BillID=L.BillID And "
                  "数量>3)"),
        "11|\n");
}

TEST_F(Execution, Changes) {
    book_.Run("Update 入库记录 Set 金额=pdID, 数量=pdID Where BillID=10");
    EXPECT_EQ(book_.Run("Select 金额, 数量 From 入库记录 Where BillID=10 Order By pdID"), "50000|5.0|\n60000|6.0|\n");
    book_.Run("Update 仓库设置 Set 结帐标志=1");
    EXPECT_EQ(book_.Run("Select 结帐标志 From 仓库设置 Where 结帐标志"), "-1|\n");
    book_.Run("Insert Into Header (Index) Select KSID From 厂商资料");
    EXPECT_EQ(book_.Run("Select Index From Header Order By Index DESC"), "2|\n1|\n");
    book_.Run("Delete From Header Where Index<2");
    EXPECT_EQ(book_.Run("Select Count(*) From Header"), "1|\n");
}

TEST_F(Execution, ACounterCountsOn) {
    book_.Run("Insert Into 厂商资料 (企业名称) Values ('x')");
    EXPECT_EQ(book_.Run("Select @@IDENTITY"), "3|\n");
}

TEST_F(Execution, Definitions) {
    book_.Run(
        "CREATE TABLE N (a COUNTER PRIMARY KEY, b CURRENCY DEFAULT -0.5, c YESNO DEFAULT True, d TEXT(5) UNIQUE)");
    book_.RunPlain("INSERT INTO \"N\" (\"d\") VALUES ('x')");
    EXPECT_EQ(book_.RunPlain("SELECT * FROM \"N\""), "1|-5000|-1|x|\n");
    EXPECT_THROW(book_.RunPlain("INSERT INTO \"N\" (\"d\") VALUES ('X ')"), std::runtime_error);
    book_.Run("CREATE UNIQUE INDEX k ON Header (Table, Index)");
    book_.Run("DROP INDEX k ON Header");
    book_.Run("ALTER TABLE Header ADD COLUMN 宽 CURRENCY DEFAULT 1.5");
    EXPECT_EQ(book_.RunPlain("SELECT dflt_value FROM pragma_table_info('Header') WHERE name = '宽'"), "15000|\n");
    book_.Run("DROP TABLE Header");
    EXPECT_EQ(book_.RunPlain("SELECT COUNT(*) FROM sqlite_schema WHERE name = 'Header'"), "0|\n");
}

TEST_F(Execution, AChainOfFiveThousandConditions) {
    std::string text = "Select BillID From 入库目录 Where BillID=10";
    for (int i = 0; i < 5000; ++i) text += " Or 月份=" + std::to_string(i + 100);
    EXPECT_EQ(book_.Run(text), "10|\n");
    text = "Select BillID From 入库目录 Where BillID=10";
    for (int i = 0; i < 5000; ++i) text += " And 月份<>" + std::to_string(i + 100);
    EXPECT_EQ(book_.Run(text), "10|\n");
}

}  // namespace kpTables::sql::test
