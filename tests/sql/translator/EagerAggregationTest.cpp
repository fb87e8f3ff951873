// Lines that are aggregated before they are joined with their bills.
#include <gtest/gtest.h>

#include <string>

#include "TranslationText.h"
#include "sql/SqlError.h"

namespace kpTables::sql::test {

namespace {

struct SumsCase {
    std::string text;
    std::string rewritten;
};

const std::vector<LiteralValue> kPivotedMonths = {{LiteralKind::Null, ""}, {LiteralKind::Integer, "3"}};

// What a text translates to as it is written.
Translation AsWritten(const std::string& text) { return TranslatedBut({"eager aggregation"}, text, kPivotedMonths); }

Translation Aggregated(const std::string& text) { return TranslatedWhole(text, kPivotedMonths); }

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

TEST(EagerAggregation, StandForTheLines) {
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
        {"Select B.pjID, Sum(B.数量)" + From("Lst.*, Rec.数量") + "Group By B.pjID",
         "Select B.pjID, Sum(B.数量)" + FromSums("Lst.*, Rec.数量", "Sum(数量) As 数量") + "Group By B.pjID"},
        {"TRANSFORM Sum(B.金额) As 月合计 Select B.pjID, Sum(B.数量) As 合计" +
             From("Lst.pjID, Lst.月份, Rec.数量, Rec.单价, Rec.金额") + "Group By B.pjID PIVOT B.月份",
         "TRANSFORM Sum(B.金额) As 月合计 Select B.pjID, Sum(B.数量) As 合计" +
             FromSums("Lst.pjID, Lst.月份, Rec.数量, Rec.金额", "Sum(数量) As 数量, Sum(金额) As 金额") +
             "Group By B.pjID PIVOT B.月份"},
    };
    for (const auto& [text, rewritten] : cases) {
        EXPECT_EQ(Aggregated(text).text, AsWritten(rewritten).text) << text;
        EXPECT_EQ(ParametersOf(Aggregated(text)), ParametersOf(AsWritten(text))) << text;
        EXPECT_EQ(ColumnsOf(Aggregated(text)), ColumnsOf(AsWritten(text))) << text;
        EXPECT_NE(Aggregated(text).text, AsWritten(text).text) << text;
    }
}

TEST(EagerAggregation, NotWhereTheLinesAreNeeded) {
    const std::string bills = " From 出库目录 As L Inner Join 出库记录 As R On L.BillID=R.BillID ";
    const std::string texts[] = {
        "Select L.pjID, Count(*)" + bills + "Group By L.pjID",
        "Select L.pjID, Avg(R.单价), Sum(R.数量)" + bills + "Group By L.pjID",
        "Select L.pjID, Max(R.单价)" + bills + "Group By L.pjID",
        "Select L.pjID, Sum(Distinct R.数量)" + bills + "Group By L.pjID",
        "Select L.pjID, Sum(R.数量*R.单价)" + bills + "Group By L.pjID",
        "Select L.pjID, Sum(R.数量+1)" + bills + "Group By L.pjID",
        // A sum of the bills counts each of their lines.
        "Select L.pjID, Sum(L.dpID)" + bills + "Group By L.pjID",
        "Select L.pjID, Sum(R.pdID)" + bills + "Group By L.pjID",
        "Select L.pjID, Sum(Case L.月份 When 1 Then R.数量 Else 1 End)" + bills + "Group By L.pjID",
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
        "TRANSFORM Sum(B.q) Select B.pjID" + From("Lst.pjID, Rec.数量 As q, Rec.pdID") + "Group By B.pjID PIVOT B.pdID",
        "TRANSFORM Count(B.q) Select B.pjID" + From("Lst.pjID, Rec.数量 As q, Lst.月份") +
            "Group By B.pjID PIVOT B.月份",
    };
    for (const auto& text : texts) EXPECT_EQ(Aggregated(text).text, AsWritten(text).text) << text;
}

TEST(EagerAggregation, SumsThatAreRefused) {
    const std::string bills = " From 出库目录 As L Inner Join 出库记录 As R On L.BillID=R.BillID Group By L.pjID";
    for (const char* sum : {"Sum()", "Sum(R.数量, R.金额)", "Sum(Case L.月份 When 1 Then R.数量 Else '0' End)"})
        EXPECT_THROW(Aggregated("Select L.pjID, " + std::string(sum) + bills), SqlError) << sum;
}

TEST(EagerAggregation, AnotherConstantIsAnotherStatement) {
    const auto translation = Aggregated(
        "Select L.pjID, Sum(Case L.月份 When 3 Then R.数量 Else 0 End) From 出库目录 As L Inner Join 出库记录 As R "
        "On L.BillID=R.BillID Group By L.pjID");
    EXPECT_EQ(FixedOf(translation), "1");
}

}  // namespace kpTables::sql::test
