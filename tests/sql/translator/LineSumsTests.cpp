// Lines that are added up before they are joined with their bills.
#include <gtest/gtest.h>

#include <string>

#include "TestCatalog.h"
#include "sql/Parser.h"
#include "sql/TextPrinter.h"
#include "sql/sqlite/LineSums.h"

namespace kpTables::sql::test {

namespace {

struct SumsCase {
    std::string text;
    std::string rewritten;
};

const TestCatalog kCatalog;

std::string Spelled(const std::string& text) { return Print(*Parse(text)); }

std::string AddedUp(const std::string& text) {
    const StatementPtr statement = Parse(text);
    AddUpLines(*statement, kCatalog);
    return Print(*statement);
}

std::string PassedOver(const std::string& text) {
    const StatementPtr statement = Parse(text);
    PassOverLines(static_cast<TransformStatement&>(*statement), kCatalog);
    return Print(*statement);
}

std::string From(const std::string& shown) {
    return " From (Select " + shown +
           " From (出库目录 As Lst Inner Join 出库记录 As Rec On Lst.BillID=Rec.BillID) Left Join 项目设置 As Proj On "
           "Lst.pjID=Proj.项目ID) As B ";
}

std::string FromSums(const std::string& shown, const std::string& sums) {
    return " From (Select " + shown + " From (出库目录 As Lst Inner Join (Select BillID, " + sums +
           " From 出库记录 Group By BillID) As Rec On Lst.BillID=Rec.BillID) Left Join 项目设置 As Proj On "
           "Lst.pjID=Proj.项目ID) As B ";
}

}  // namespace

TEST(LineSums, StandForTheLines) {
    const SumsCase cases[] = {
        {"Select L.pjID, Sum(R.数量) As q, Sum(R.金额) From 出库目录 As L Inner Join 出库记录 As R On "
         "L.BillID=R.BillID "
         "Group By L.pjID Having Sum(R.金额)>5 Order By Sum(R.数量)",
         "Select L.pjID, Sum(R.数量) As q, Sum(R.金额) From 出库目录 As L Inner Join (Select BillID, Sum(数量) As "
         "数量, "
         "Sum(金额) As 金额 From 出库记录 Group By BillID) As R On L.BillID=R.BillID Group By L.pjID Having "
         "Sum(R.金额)>5 Order By Sum(R.数量)"},
        // Without an alias, the join written the other way round.
        {"Select pjID, Sum(数量) From 出库记录 Inner Join 出库目录 On 出库记录.BillID=出库目录.BillID Group By pjID",
         "Select pjID, Sum(数量) From (Select BillID, Sum(数量) As 数量 From 出库记录 Group By BillID) As 出库记录 "
         "Inner "
         "Join 出库目录 On 出库记录.BillID=出库目录.BillID Group By pjID"},
        // Through a query, which shows no more of the lines than is read.
        {"Select B.pjID, Proj.ClassCode, Sum(B.q) As 合计" +
             From("Lst.pjID, Proj.ClassCode, Lst.月份, Rec.数量 As q, Rec.金额") + "Group By B.pjID, B.ClassCode",
         "Select B.pjID, Proj.ClassCode, Sum(B.q) As 合计" +
             FromSums("Lst.pjID, Proj.ClassCode, Lst.月份, Rec.数量 As q", "Sum(数量) As 数量") +
             "Group By B.pjID, B.ClassCode"},
        {"Select pjID, sum(case 月份 when 2 then B.数量 else 0 end) as 二, Sum(Case When 月份=1 Then B.金额 End)" +
             From("Lst.pjID, Lst.月份 As 月份, Rec.数量, Rec.金额") + "Group By pjID",
         "Select pjID, sum(case 月份 when 2 then B.数量 else 0 end) as 二, Sum(Case When 月份=1 Then B.金额 End)" +
             FromSums("Lst.pjID, Lst.月份 As 月份, Rec.数量, Rec.金额", "Sum(数量) As 数量, Sum(金额) As 金额") +
             "Group By pjID"},
        {"TRANSFORM Sum(B.金额) As 月合计 Select B.pjID, Sum(B.数量) As 合计" +
             From("Lst.pjID, Lst.月份, Rec.数量, Rec.单价, Rec.金额") + "Group By B.pjID PIVOT B.月份",
         "TRANSFORM Sum(B.金额) As 月合计 Select B.pjID, Sum(B.数量) As 合计" +
             FromSums("Lst.pjID, Lst.月份, Rec.数量, Rec.金额", "Sum(数量) As 数量, Sum(金额) As 金额") +
             "Group By B.pjID PIVOT B.月份"},
    };
    for (const auto& [text, rewritten] : cases) {
        EXPECT_EQ(AddedUp(text), Spelled(rewritten)) << text;
        EXPECT_NE(AddedUp(text), Spelled(text)) << text;
    }
}

TEST(LineSums, NotWhereTheLinesAreNeeded) {
    const std::string bills = " From 出库目录 As L Inner Join 出库记录 As R On L.BillID=R.BillID ";
    const std::string texts[] = {
        "Select L.pjID, Count(*)" + bills + "Group By L.pjID",
        "Select L.pjID, Avg(R.单价), Sum(R.数量)" + bills + "Group By L.pjID",
        "Select L.pjID, Max(R.单价)" + bills + "Group By L.pjID",
        "Select L.pjID, Sum(Distinct R.数量)" + bills + "Group By L.pjID",
        "Select L.pjID, Sum(R.数量*R.单价)" + bills + "Group By L.pjID",
        "Select L.pjID, Sum(R.数量+1)" + bills + "Group By L.pjID",
        "Select L.pjID, Sum()" + bills + "Group By L.pjID",
        "Select L.pjID, Sum(R.数量, R.金额)" + bills + "Group By L.pjID",
        // A sum of the bills counts each of their lines.
        "Select L.pjID, Sum(L.dpID)" + bills + "Group By L.pjID",
        "Select L.pjID, Sum(R.pdID)" + bills + "Group By L.pjID",
        "Select L.pjID, Sum(Case L.月份 When 1 Then R.数量 Else 1 End)" + bills + "Group By L.pjID",
        "Select L.pjID, Sum(Case L.月份 When 1 Then R.数量 Else '0' End)" + bills + "Group By L.pjID",
        "Select L.pjID, Sum(Case R.pdID When 1 Then R.数量 Else 0 End)" + bills + "Group By L.pjID",
        "Select R.pdID, Sum(R.数量)" + bills + "Group By R.pdID",
        "Select L.pjID, Sum(R.数量)" + bills + "Group By L.pjID, R.经手人",
        "Select L.pjID, Sum(R.数量)" + bills + "Group By L.pjID Having Count(*)>1",
        "Select L.pjID, Sum(R.数量)" + bills + "Group By L.pjID Order By Max(R.pdID)",
        "Select L.pjID, Sum(R.数量)" + bills + "Where R.pdID=1 Group By L.pjID",
        // Each bill's lines are added up as they are joined with it.
        "Select L.BillID, L.pjID, Sum(R.数量)" + bills + "Group By L.BillID, L.pjID",
        "Select B.BillID, Sum(B.q)" + From("Lst.BillID, Rec.数量 As q") + "Group By B.BillID",
        // Some of the bills are found by an index, and their lines too.
        "Select L.pjID, Sum(R.数量)" + bills + "Where L.月份=1 Group By L.pjID",
        "Select Sum(R.数量)" + bills,
        "Select L.pjID, (Select Sum(数量) From 出库记录 Where BillID=L.BillID) As s, Sum(R.数量)" + bills +
            "Group By L.pjID, L.BillID",
        "Select L.pjID, Sum(R.数量) From 出库目录 As L Left Join 出库记录 As R On L.BillID=R.BillID Group By L.pjID",
        "Select L.pjID, Sum(R.数量) From 出库目录 As L Inner Join 出库记录 As R On (L.BillID=R.BillID And R.pdID=1) "
        "Group By L.pjID",
        "Select L.pjID, Sum(R.数量) From 出库目录 As L Inner Join 出库记录 As R On L.dpID=R.pdID Group By L.pjID",
        "Select L.pjID, Sum(R.数量) From (出库目录 As L Inner Join 出库记录 As R On L.BillID=R.BillID) Left Join P On "
        "P.id=R.pdID Group By L.pjID",
        "Select B.pjID, Sum(B.q)" + From("Lst.pjID, Rec.数量*2 As q") + "Group By B.pjID",
        "Select B.pjID, Sum(B.q)" + From("Distinct Lst.pjID, Rec.数量 As q") + "Group By B.pjID",
        "Select B.pjID, Sum(B.q)" + From("TOP 5 Lst.pjID, Rec.数量 As q") + "Group By B.pjID",
        "Select B.pjID, Sum(B.数量)" + From("Lst.*, Rec.数量") + "Group By B.pjID",
        "TRANSFORM Sum(B.q) Select B.pjID" + From("Lst.pjID, Rec.数量 As q, Rec.pdID") + "Group By B.pjID PIVOT B.pdID",
        "TRANSFORM Count(B.q) Select B.pjID" + From("Lst.pjID, Rec.数量 As q, Lst.月份") +
            "Group By B.pjID PIVOT B.月份",
    };
    for (const auto& text : texts) EXPECT_EQ(AddedUp(text), Spelled(text)) << text;
}

TEST(LineSums, AnotherConstantIsAnotherStatement) {
    const StatementPtr statement = Parse(
        "Select L.pjID, Sum(Case L.月份 When 3 Then R.数量 Else 0 End) From 出库目录 As L Inner Join 出库记录 As R "
        "On L.BillID=R.BillID Group By L.pjID");
    AddUpLines(*statement, kCatalog);
    EXPECT_EQ(statement->fixedLiterals, std::vector<int>{1});
}

TEST(LineSums, PivotValuesOfBillsWithLines) {
    const std::string transform = "TRANSFORM Sum(B.金额) Select B.pjID";
    const std::string pivot = "Group By B.pjID PIVOT B.月份";
    EXPECT_EQ(PassedOver(transform + From("Lst.pjID, Proj.ClassCode, Lst.月份, Rec.金额") + pivot),
              Spelled(transform +
                      " From (Select Lst.pjID, Lst.月份 From 出库目录 As Lst Where Exists (Select BillID From 出库记录 "
                      "As Rec Where Lst.BillID=Rec.BillID)) As B " +
                      pivot));
    const std::string direct = "TRANSFORM Sum(R.金额) Select L.pjID From ";
    const std::string ofMonths = " Group By L.pjID PIVOT L.月份";
    EXPECT_EQ(PassedOver(direct + "出库目录 As L Inner Join 出库记录 As R On L.BillID=R.BillID" + ofMonths),
              Spelled(direct + "出库目录 As L Where Exists (Select BillID From 出库记录 As R Where L.BillID=R.BillID)" +
                      ofMonths));
    const std::string kept[] = {
        transform + From("Lst.pjID, Lst.月份, Rec.金额, Rec.pdID") + "Group By B.pjID PIVOT B.pdID",
        transform + From("Lst.pjID, Proj.ClassCode, Rec.金额") + "Group By B.pjID PIVOT B.ClassCode",
        transform + From("Lst.pjID, Lst.月份+1 As m, Rec.金额") + "Group By B.pjID PIVOT B.m",
        transform + From("Lst.pjID, Lst.月份, Rec.金额") + "Where B.月份>1 " + pivot,
        // A bill may fall away with its project or stand beside it.
        direct +
            "(出库目录 As L Inner Join 出库记录 As R On L.BillID=R.BillID) Inner Join 项目设置 As J On "
            "J.项目ID=L.pjID" +
            ofMonths,
        direct +
            "(出库目录 As L Inner Join 出库记录 As R On L.BillID=R.BillID) Right Join 项目设置 As J On "
            "J.项目ID=L.pjID" +
            ofMonths,
    };
    for (const auto& text : kept) EXPECT_EQ(PassedOver(text), Spelled(text)) << text;
}

}  // namespace kpTables::sql::test
