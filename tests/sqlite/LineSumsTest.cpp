// Sums of lines by what their bills say, in both dialects.
#include <gtest/gtest.h>

#include <string>

#include "TestBook.h"
#include "corpus/Call.h"

namespace kpTables {
namespace {

using namespace test;

constexpr const char* kEntries[] = {
    "Insert Into 项目设置 (项目ID, ClassCode, 项目名称) Values (1, '01', '一号桥')",
    "Insert Into 项目设置 (项目ID, ClassCode, 项目名称) Values (2, '02', '二号桥')",
    "Insert Into 出库目录 (BillID, 月份, pjID) Values (10, 3, 1)",
    "Insert Into 出库目录 (BillID, 月份, pjID) Values (11, 1, 1)",
    "Insert Into 出库目录 (BillID, 月份, pjID) Values (12, 1, 7)",
    "Insert Into 出库目录 (BillID, 月份, pjID) Values (13, 1, Null)",
    "Insert Into 出库目录 (BillID, 月份, pjID) Values (14, 3, Null)",
    "Insert Into 出库目录 (BillID, 月份, pjID) Values (15, Null, 2)",
    // A bill without lines, the only one of its month, and a line without a bill.
    "Insert Into 出库目录 (BillID, 月份, pjID) Values (16, 5, 2)",
    "Insert Into 出库记录 (BillID, 数量, 金额) Values (99, 1000, 1000)",
    "Insert Into 出库记录 (BillID, 数量, 金额) Values (11, 1.5, 10.0001)",
    "Insert Into 出库记录 (BillID, 数量, 金额) Values (10, 2, 20)",
    "Insert Into 出库记录 (BillID, 数量, 金额) Values (11, 0.25, 0.0002)",
    "Insert Into 出库记录 (BillID, 数量, 金额) Values (10, 4, 40)",
    "Insert Into 出库记录 (BillID, 数量, 金额) Values (12, Null, Null)",
    "Insert Into 出库记录 (BillID, 数量, 金额) Values (13, 8, 422337203685477.5807)",
    "Insert Into 出库记录 (BillID, 数量, 金额) Values (13, Null, -400000000000000.0001)",
    "Insert Into 出库记录 (BillID, 数量, 金额) Values (14, 16, Null)",
    "Insert Into 出库记录 (BillID, 数量, 金额) Values (15, -3, -0.0001)",
};

const std::string kLines =
    " FROM (SELECT Lst.pjID, Proj.ClassCode,Proj.项目名称, Lst.月份, Rec.数量, Rec.除税金额, Rec.金额 FROM (出库目录 "
    "AS "
    "Lst INNER JOIN 出库记录 AS Rec ON Lst.BillID = Rec.BillID) LEFT JOIN 项目设置 As Proj ON Lst.pjID = Proj.项目ID) "
    "AS BILLLIST GROUP BY BILLLIST.pjID,BillLIST.ClassCode, BILLLIST.项目名称";

class LineSums : public testing::Test {
protected:
    LineSums() {
        for (const char* entry : kEntries) book_->Execute(entry);
    }
    std::string Rows(const std::string& text) { return RowsOf(*book_, text); }

    BookPtr book_ = NewBook();
};

TEST_F(LineSums, CrosstabOfProjectsAndMonths) {
    const std::string text = corpus::SentBy(R"(rs项目汇总表("金额"))").at(0);
    const RecordsetPtr rows = book_->Execute(text);
    std::string names;
    for (int i = 0; i < rows->FieldCount(); ++i) names.append(i ? "|" : "").append(rows->FieldAt(i).name);
    EXPECT_EQ(names, "pjID|ClassCode|项目名称|工程名称|项目编号|工程性质|合计|月合计|<>|1|3");
    EXPECT_EQ(RowsOf(*rows),
              "Null|Null|Null|Null|Null|Null|24|22337203685477.5806|Null|22337203685477.5806|Null / "
              "1|01|一号桥|Null|Null|Null|7.75|70.0003|Null|10.0003|60 / "
              "2|02|二号桥|Null|Null|Null|-3|-0.0001|-0.0001|Null|Null / "
              "7|Null|Null|Null|Null|Null|Null|Null|Null|Null|Null");
}

TEST_F(LineSums, ChoicesByMonth) {
    const auto months = [](int first, int second, const std::string& otherwise) {
        const auto sum = [&](int month) {
            return ",sum(case 月份 when " + std::to_string(month) + " then billlist.数量 else " + otherwise + " end)";
        };
        return "SELECT BILLLIST.pjID AS pjID" + sum(first) + sum(second) + ",Sum(BILLLIST.数量) As 合计" + kLines;
    };
    EXPECT_EQ(Rows(corpus::SentBy("rs项目汇总表()", true).at(0)),
              "Null|Null|Null|Null|Null|Null|8|0|16|0|0|0|0|0|0|0|0|0|24 / "
              "1|01|一号桥|Null|Null|Null|1.75|0|6|0|0|0|0|0|0|0|0|0|7.75 / "
              "2|02|二号桥|Null|Null|Null|0|0|0|0|0|0|0|0|0|0|0|0|-3 / "
              "7|Null|Null|Null|Null|Null|Null|0|0|0|0|0|0|0|0|0|0|0|Null");
    EXPECT_EQ(Rows(months(1, 3, "0")), "Null|8|16|24 / 1|1.75|6|7.75 / 2|0|0|-3 / 7|Null|0|Null");
    EXPECT_EQ(Rows(months(3, 5, "0")), "Null|16|0|24 / 1|6|0|7.75 / 2|0|0|-3 / 7|0|0|Null");
    // With another constant, every line counts for itself.
    EXPECT_EQ(Rows(months(1, 3, "1")), "Null|9|18|24 / 1|3.75|8|7.75 / 2|1|1|-3 / 7|Null|1|Null");
    EXPECT_EQ(Rows(months(1, 3, "0")), "Null|8|16|24 / 1|1.75|6|7.75 / 2|0|0|-3 / 7|Null|0|Null");
}

TEST_F(LineSums, OfBillsWithSeveralLines) {
    EXPECT_EQ(Rows("Select L.月份, Sum(R.数量), Sum(R.金额) From 出库目录 As L Inner Join 出库记录 As R On "
                   "L.BillID=R.BillID Group By L.月份 Having Sum(R.数量)>0 Order By Sum(R.数量) Desc"),
              "3|22|60 / 1|9.75|22337203685487.5809");
}

}  // namespace
}  // namespace kpTables
