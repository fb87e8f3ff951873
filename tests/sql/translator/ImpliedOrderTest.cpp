// The order that rows come in where a text leaves it open.
#include <gtest/gtest.h>

#include <string>

#include "SqliteBook.h"
#include "TranslationText.h"

namespace kpTables::sql::test {

namespace {

struct OrderCase {
    const char* text;
    const char* order;  ///< how the translation ends
};

void Check(const std::vector<OrderCase>& cases) {
    for (const auto& [text, order] : cases) {
        const std::string without = TranslatedBut({"implied order"}, text).text;
        EXPECT_EQ(TranslatedWhole(text).text, without + order) << text;
    }
}

}  // namespace

TEST(ImpliedOrder, RowsOfATableComeByTheirIds) {
    Check({
        {"Select t From T", R"( ORDER BY "T".rowid)"},
        {"Select A.t From T As A Where A.l>5", R"( ORDER BY +"A".rowid)"},
        {"Select A.t, B.t From T As A, T As B", R"( ORDER BY "A".rowid, "B".rowid)"},
        {"Select R.单价 From 入库记录 As R Left Join T On R.单价=T.c", R"( ORDER BY "R".rowid, "T".rowid)"},
        // Each line has one bill.
        {"Select R.单价, L.月份 From 入库记录 As R Inner Join 入库目录 As L On R.BillID=L.BillID",
         R"( ORDER BY "R".rowid)"},
        {"Select R.单价, L.月份 From 入库目录 As L Inner Join 入库记录 As R On R.BillID=L.BillID",
         R"( ORDER BY "L".rowid, "R".rowid)"},
        // Of a join in parentheses only the columns can be named.
        {"Select D.dpID From 仓库设置 As D Left Join (入库目录 As L Inner Join 入库记录 As R On L.BillID=R.BillID) On "
         "D.dpID=L.dpID",
         R"( ORDER BY "D".rowid, "L"."BillID")"},
        {"Select Q.t, A.t From (Select t From T) As Q, T As A", ""},
    });
}

TEST(ImpliedOrder, GroupsComeByTheirKeys) {
    Check({
        {"Select l, Count(*) From T Group By l", R"( ORDER BY "T"."l")"},
        {"Select Count(*) From T Group By t, s+1", R"( ORDER BY "T"."t", "T"."s" + ?1)"},
        {"Select Count(*) From T Group By Trim(t)", R"( ORDER BY trim("T"."t") COLLATE KPTEXT)"},
        // A bill's keys are one.
        {"Select BillID, 月份, Count(*) From 入库目录 Group By BillID, 月份", R"( ORDER BY "入库目录"."BillID")"},
        {"Select Count(*), Max(d) From T", ""},
    });
    // What is looked up leaves the groups of one key in their order, which is SQLite's own.
    const std::string groups =
        "Select K.企业名称, Count(*) As n From 入库目录 As L Left Join 厂商资料 As K On "
        "L.ksID=K.KSID Group By L.ksID, ";
    Check({{(groups + "K.企业名称").c_str(), ""}});
    const std::string several = TranslatedWhole(groups + "L.月份, K.企业名称").text;
    EXPECT_TRUE(several.ends_with(R"( ORDER BY "query 1"."ksID", "query 1"."月份")")) << several;
}

TEST(ImpliedOrder, DistinctRowsAndUnionsComeByTheirColumns) {
    Check({
        {"Select Distinct t, Trim(t2), l From T", R"( ORDER BY "T"."t", 2 COLLATE KPTEXT, "T"."l")"},
        {"Select t, d From T Union Select t2, l From T", " ORDER BY 1, 2"},
        {"Select t From T Union All Select t2 From T Union Select t From T", " ORDER BY 1"},
        {"Select t From T Union All Select t2 From T", ""},
    });
}

TEST(ImpliedOrder, OnlyWhereItIsOpenAndSeen) {
    Check({
        {"Select t From T Order By l", ""},
        {"Select t From T Union Select t2 From T Order By t", ""},
        {"Select l From T Where t In (Select t2 From T)", R"( ORDER BY +"T".rowid)"},
        {"Select Q.t From (Select t From T) As Q", ""},
        {"Insert Into T (t) Select t2 From T", ""},
        {"Select 1", ""},
    });
    // The first rows of a query depend on its order.
    EXPECT_EQ(TranslatedWhole("Select Q.t From (Select Top 3 t From T) As Q").text,
              R"(SELECT "Q"."t" FROM (SELECT "T"."t" AS "t" FROM "T" ORDER BY "T".rowid LIMIT 3) AS "Q")");
}

TEST(ImpliedOrder, RowsOfABook) {
    SqliteBook book;
    book.RunPlain("CREATE INDEX byText ON \"T\" (\"t\")");
    for (const char* text : {"Insert Into T (id,t,l) Values (3,'a',1)", "Insert Into T (id,t,l) Values (1,'c',2)",
                             "Insert Into T (id,t,l) Values (2,'b',1)"})
        book.Run(text);
    EXPECT_EQ(book.Run("Select t From T Where t>='a'"), "c|\nb|\na|\n");
    EXPECT_EQ(book.Run("Select Top 2 t From T Where t>='a'"), "c|\nb|\n");
    EXPECT_EQ(book.Run("Select Distinct l From T"), "1|\n2|\n");
    EXPECT_NO_THROW(
        book.Prepare("Select D.dpID From 仓库设置 As D Left Join (入库目录 As L Inner Join 入库记录 As R On "
                     "L.BillID=R.BillID) On D.dpID=L.dpID"));
    EXPECT_EQ(book.Run("Select l,t,Count(*) From T Group By l,t"), "1|a|1|\n1|b|1|\n2|c|1|\n");
}

}  // namespace kpTables::sql::test
