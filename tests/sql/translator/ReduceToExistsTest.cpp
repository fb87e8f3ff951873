// Distinct values of bills, for which their lines are asked no more than whether there are any.
#include <gtest/gtest.h>

#include <string>

#include "TestCatalog.h"
#include "TranslationText.h"
#include "sql/Translate.h"
#include "sql/parse/Parser.h"
#include "sql/print/sqlite/SqliteEngine.h"

namespace kpTables::sql::test {

namespace {

// The query of the pivot values.
std::string Pivots(const std::string& text, const std::vector<std::string_view>& leftOut = {}) {
    const TestCatalog catalog;
    const auto statement = parse::Parse(text);
    const auto rules = RulesBut(leftOut);
    return TranslatePivotQuery(static_cast<const TransformStatement&>(*statement), catalog,
                               print::sqlite::SqliteEngine(), rules)
        .text;
}

std::string AsWritten(const std::string& text) { return Pivots(text, {"reduction to EXISTS"}); }

std::string From(const std::string& shown) {
    return " From (Select " + shown +
           " From (出库目录 As Lst Inner Join 出库记录 As Rec On Lst.BillID=Rec.BillID) Left Join 项目设置 As Proj On "
           "Lst.pjID=Proj.项目ID) As B ";
}

}  // namespace

TEST(ReduceToExists, PivotValuesOfBillsWithLines) {
    const std::string transform = "TRANSFORM Sum(B.金额) Select B.pjID";
    const std::string pivot = "Group By B.pjID PIVOT B.月份";
    EXPECT_EQ(Pivots(transform + From("Lst.pjID, Proj.ClassCode, Lst.月份, Rec.金额") + pivot),
              AsWritten("TRANSFORM Count(*) Select B.pjID From (Select Lst.pjID, Lst.月份 From 出库目录 As Lst Where "
                        "Exists (Select BillID From 出库记录 As Rec Where Lst.BillID=Rec.BillID)) As B " +
                        pivot));
    const std::string direct = "TRANSFORM Sum(R.金额) Select L.pjID From ";
    const std::string ofMonths = " Group By L.pjID PIVOT L.月份";
    EXPECT_EQ(Pivots(direct + "出库目录 As L Inner Join 出库记录 As R On L.BillID=R.BillID" + ofMonths),
              AsWritten("TRANSFORM Count(*) Select L.pjID From 出库目录 As L Where Exists (Select BillID From 出库记录 "
                        "As R Where L.BillID=R.BillID)" +
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
    for (const auto& text : kept) EXPECT_EQ(Pivots(text), AsWritten(text)) << text;
}

}  // namespace kpTables::sql::test
