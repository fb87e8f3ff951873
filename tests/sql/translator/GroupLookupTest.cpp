// Tables whose rows are looked up for the groups.
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "SqliteBook.h"
#include "TranslationText.h"

namespace kpTables::sql::test {

namespace {

struct LookupCase {
    std::string query;
    std::string text;
};

constexpr const char* kBills =
    " From (入库目录 As L Inner Join 入库记录 As R On L.BillID=R.BillID) Left Join 厂商资料 As K On L.ksID=K.KSID ";

}  // namespace

TEST(GroupLookup, AfterTheGrouping) {
    const LookupCase cases[] = {
        {"Select A.l, Sum(A.d) As s, B.t From T As A Left Join T As B On A.l=B.id Where A.s=1 Group By A.l, B.t",
         R"(SELECT "query 1"."l", "query 1"."s" AS "s", "B"."t" FROM (SELECT "A"."l" AS "l", SUM("A"."d") AS "s" )"
         R"(FROM "T" AS "A" WHERE "A"."s" = ?1 GROUP BY "A"."l") AS "query 1" )"
         R"(LEFT JOIN "T" AS "B" ON "B"."id" = "query 1"."l")"},
        // The key is not shown, and the join stands the other way round.
        {"Select K.企业名称, Count(*) As n From 厂商资料 As K Right Join 入库目录 As L On K.KSID=L.ksID Group By "
         "K.企业名称, L.ksID Having Count(*)>2 Order By K.企业名称 Desc, n",
         R"(SELECT "K"."企业名称", "query 1"."n" AS "n" FROM (SELECT COUNT(*) AS "n", "L"."ksID" AS "ksID" )"
         R"(FROM "入库目录" AS "L" GROUP BY "L"."ksID" HAVING COUNT(*) > ?1) AS "query 1" )"
         R"(LEFT JOIN "厂商资料" AS "K" ON "K"."KSID" = "query 1"."ksID" )"
         R"(ORDER BY "K"."企业名称" DESC, "query 1"."n")"},
        // Groups without a row of the table fall away, the others keep their order.
        {"Select TOP 3 Max(A.t) As m, B.t, A.l From T As A Inner Join T As B On B.id=A.l Group By A.l, B.t Order By 1",
         R"(SELECT "query 1"."m" AS "m", "B"."t", "query 1"."l" FROM (SELECT MAX("A"."t") AS "m", "A"."l" AS "l" )"
         R"(FROM "T" AS "A" GROUP BY "A"."l") AS "query 1" CROSS JOIN "T" AS "B" ON "B"."id" = "query 1"."l" )"
         R"(ORDER BY "query 1"."m" COLLATE KPTEXT LIMIT 3)"},
    };
    for (const auto& [query, text] : cases) EXPECT_EQ(Translated(query).text, text) << query;
}

TEST(GroupLookup, NotWhereTheGroupsNeedTheTable) {
    const std::string from = kBills;
    const std::string queries[] = {
        // The condition, an aggregate, a key or an order of its own reads the table.
        "Select L.ksID, K.企业名称" + from + "Where K.企业名称='A' Group By L.ksID, K.企业名称",
        "Select L.ksID, K.企业名称, Count(K.KSID)" + from + "Group By L.ksID, K.企业名称",
        "Select L.ksID, K.企业名称" + from + "Group By L.ksID, K.企业名称 Having K.企业名称>'A'",
        "Select L.ksID, K.企业名称" + from + "Group By K.KSID, L.ksID, K.企业名称",
        "Select L.ksID, K.企业名称" + from + "Group By K.企业名称, L.ksID",
        "Select L.ksID, K.企业名称 & 'x'" + from + "Group By L.ksID, K.企业名称 Order By L.ksID",
        "Select L.ksID, K.企业名称 As a, a & 'x' As b" + from + "Group By L.ksID, K.企业名称",
        "Select L.ksID, K.企业名称" + from + "Group By L.ksID, K.企业名称 Order By Len(K.企业名称)",
        // A join that the groups need reads it.
        "Select L.ksID, K.企业名称 From (入库目录 As L Inner Join 厂商资料 As K On L.ksID=K.KSID) Inner Join 入库记录 "
        "As "
        "R On (L.BillID=R.BillID And R.pdID>K.KSID) Group By L.ksID, K.企业名称",
        // A query may read the table too.
        "Select L.ksID, K.企业名称" + from +
            "Where L.BillID In (Select BillID From 出库目录 Where ksID=K.KSID) Group By L.ksID, K.企业名称",
        // Nothing of the table is shown.
        "Select L.ksID" + from + "Group By L.ksID, K.企业名称",
        // The key of the join makes no groups, and there are several bills in one.
        "Select L.pjID, K.企业名称" + from + "Group By L.pjID, K.企业名称",
        "Select L.pjID, K.企业名称" + from + "Group By L.pjID, L.ksID+0, K.企业名称",
        // The order is of something that is neither shown nor beside the groups.
        "Select L.ksID, K.企业名称, Count(*)" + from + "Group By L.ksID, K.企业名称 Order By Sum(R.数量)",
        "Select Distinct L.ksID, K.企业名称" + from + "Group By L.ksID, K.企业名称",
        // More than one row, or not always the same one.
        "Select A.l, B.t From T As A Left Join T As B On A.l=B.s Group By A.l, B.t",
        "Select A.l, B.s From T As A Left Join T As B On A.l=B.s Group By A.l, B.s",
        "Select A.l, B.t From T As A Left Join T As B On (A.l=B.id And A.s=1) Group By A.l, B.t",
        "Select A.l, B.t From T As A Left Join T As B On A.l<=B.id Group By A.l, B.t",
        "Select A.d, B.t From T As A Left Join T As B On A.d=B.id Group By A.d, B.t",
        "Select A.l, B.t From T As A, T As B Where A.l=B.id Group By A.l, B.t",
    };
    for (const auto& query : queries) {
        const std::string text = Translated(query).text;
        EXPECT_NE(text.find(" GROUP BY "), std::string::npos) << query;
        EXPECT_EQ(text.find("\"query 1\""), std::string::npos) << text;
    }
}

TEST(GroupLookup, SeveralTables) {
    const std::string lookup =
        R"( FROM (SELECT SUM("R"."数量") AS "q", "L"."BillID" AS "BillID" FROM "入库目录" AS "L" )"
        R"(LEFT JOIN "入库记录" AS "R" ON "L"."BillID" = "R"."BillID" )"
        R"(GROUP BY "L"."BillID", "R"."pdID") AS "query 1" )"
        R"(CROSS JOIN "入库目录" AS "L" ON "L"."BillID" = "query 1"."BillID" )"
        R"(LEFT JOIN "厂商资料" AS "K" ON "K"."KSID" = "L"."ksID" )"
        R"(LEFT JOIN "项目设置" AS "J" ON "J"."项目ID" = "L"."pjID")";
    const LookupCase cases[] = {
        // The first table's row is looked up too, for the others' keys and for what is shown of it. A table of which
        // nothing is shown stays where it is.
        {"Select L.单据编号, Sum(R.数量) As q, J.项目名称, K.企业名称 From 项目设置 As J Right Join (厂商资料 As K "
         "Right "
         "Join (入库目录 As L Left Join 入库记录 As R On L.BillID=R.BillID) On K.KSID=L.ksID) On J.项目ID=L.pjID Group "
         "By "
         "L.单据编号, L.BillID, R.pdID, J.项目名称, K.企业名称 Order By L.月份, L.单据编号",
         R"(SELECT "L"."单据编号", "query 1"."q" AS "q", "J"."项目名称", "K"."企业名称")" + lookup +
             R"( ORDER BY "L"."月份", "L"."单据编号")"},
        {"Select L.BillID, R.pdID, D.仓库名称 From (入库目录 As L Inner Join 仓库设置 As D On L.dpID=D.dpID) Left Join "
         "入库记录 As R On L.BillID=R.BillID Group By L.BillID, D.仓库名称, R.pdID",
         R"(SELECT "L"."BillID", "query 1"."pdID", "D"."仓库名称" FROM (SELECT "R"."pdID" AS "pdID", )"
         R"("L"."BillID" AS "BillID" FROM "入库目录" AS "L" LEFT JOIN "入库记录" AS "R" ON "L"."BillID" = "R"."BillID" )"
         R"(GROUP BY "L"."BillID", "R"."pdID") AS "query 1" )"
         R"(CROSS JOIN "入库目录" AS "L" ON "L"."BillID" = "query 1"."BillID" )"
         R"(CROSS JOIN "仓库设置" AS "D" ON "D"."dpID" = "L"."dpID")"},
        {"Select R.pdID, K.企业名称, Count(*) As n From ((入库记录 As R Inner Join 入库目录 As L On R.BillID=L.BillID) "
         "Left Join 厂商资料 As K On L.ksID=K.KSID) Left Join 项目设置 As J On J.项目ID=L.pjID Group By R.pdID, "
         "L.ksID, "
         "K.企业名称",
         R"(SELECT "query 1"."pdID", "K"."企业名称", "query 1"."n" AS "n" FROM (SELECT "R"."pdID" AS "pdID", )"
         R"(COUNT(*) AS "n", "L"."ksID" AS "ksID" FROM "入库记录" AS "R" )"
         R"(INNER JOIN "入库目录" AS "L" ON "R"."BillID" = "L"."BillID" )"
         R"(LEFT JOIN "项目设置" AS "J" ON "J"."项目ID" = "L"."pjID" GROUP BY "R"."pdID", "L"."ksID") AS "query 1" )"
         R"(LEFT JOIN "厂商资料" AS "K" ON "K"."KSID" = "query 1"."ksID")"},
    };
    for (const auto& [query, text] : cases) EXPECT_EQ(Translated(query).text, text) << query;
}

TEST(GroupLookup, AScatteredKeyIsSorted) {
    const std::string join =
        "From (入库目录 As L Inner Join 入库记录 As R On L.BillID=R.BillID) Left Join 项目设置 As J ";
    const std::pair<std::string, std::string> keys[] = {
        {"On J.项目ID=R.pdID Group By R.pdID, ", R"(GROUP BY +"R"."pdID")"},
        {"On J.项目ID=R.pdID Where L.月份=1 Group By R.pdID, ", R"(GROUP BY +"R"."pdID")"},
        // The rows are found by it, are joined by it, or stand in its order.
        {"On J.项目ID=R.pdID Where R.pdID>5 Group By R.pdID, ", R"(GROUP BY "R"."pdID")"},
        {"On J.项目ID=R.BillID Group By R.BillID, ", R"(GROUP BY "R"."BillID")"},
        {"On J.项目ID=L.BillID Group By L.BillID, ", R"(GROUP BY "L"."BillID")"},
        // An index may have both.
        {"On J.项目ID=R.pdID Group By R.pdID, L.月份, ", R"(GROUP BY "R"."pdID", "L"."月份")"},
    };
    for (const auto& [rest, key] : keys) {
        const std::string text = Translated("Select Sum(R.数量), J.项目名称 " + join + rest + "J.项目名称").text;
        EXPECT_NE(text.find(key + ") AS \"query 1\""), std::string::npos) << text;
    }
}

TEST(GroupLookup, TheRowsStayTheSame) {
    SqliteBook book;
    for (const char* text : {
             "Insert Into 厂商资料 (KSID,企业名称) Values (1,'Zed')",
             "Insert Into 厂商资料 (KSID,企业名称) Values (2,'Ace')",
             "Insert Into 厂商资料 (KSID,企业名称) Values (3,'zed')",
             "Insert Into 入库目录 (BillID,ksID) Values (10,2)",
             "Insert Into 入库目录 (BillID,ksID) Values (11,1)",
             "Insert Into 入库目录 (BillID,ksID) Values (12,3)",
             "Insert Into 入库目录 (BillID,ksID) Values (13,9)",
             "Insert Into 入库目录 (BillID) Values (14)",
             "Insert Into 入库目录 (BillID) Values (15)",
             "Insert Into 入库目录 (BillID,ksID) Values (16,3)",
         })
        book.Run(text);
    const std::string select = "Select L.ksID, K.企业名称, Count(*) As n From 入库目录 As L ";
    const std::string rest = " Join 厂商资料 As K On L.ksID=K.KSID Group By L.ksID, K.企业名称";
    EXPECT_EQ(book.Run(select + "Left" + rest), "||2|\n1|Zed|1|\n2|Ace|1|\n3|zed|2|\n9||1|\n");
    EXPECT_EQ(book.Run(select + "Inner" + rest), "1|Zed|1|\n2|Ace|1|\n3|zed|2|\n");
    EXPECT_EQ(book.Run(select + "Left" + rest + " Order By K.企业名称 Desc, n Desc"),
              "3|zed|2|\n1|Zed|1|\n2|Ace|1|\n||2|\n9||1|\n");
    // By the bill: one without lines, lines of two products, a partner that is unknown, a bill without one.
    for (const char* text : {
             "Insert Into 入库记录 (BillID,pdID,数量) Values (13,7,1)",
             "Insert Into 入库记录 (BillID,pdID,数量) Values (10,7,2)",
             "Insert Into 入库记录 (BillID,pdID,数量) Values (10,8,4)",
             "Insert Into 入库记录 (BillID,pdID,数量) Values (10,7,8)",
             "Insert Into 入库记录 (BillID,数量) Values (14,16)",
         })
        book.Run(text);
    const std::string bills =
        " Join (入库目录 As L Left Join 入库记录 As R On L.BillID=R.BillID) On K.KSID=L.ksID Group By L.ksID, "
        "L.BillID, "
        "R.pdID, K.企业名称 Order By L.ksID, L.BillID";
    const std::string shown = "Select L.BillID, K.企业名称, Sum(R.数量) As q From 厂商资料 As K ";
    EXPECT_EQ(book.Run(shown + "Right" + bills),
              "14||16.0|\n15|||\n11|Zed||\n10|Ace|10.0|\n10|Ace|4.0|\n12|zed||\n16|zed||\n13||1.0|\n");
    EXPECT_EQ(book.Run(shown + "Inner" + bills), "11|Zed||\n10|Ace|10.0|\n10|Ace|4.0|\n12|zed||\n16|zed||\n");
    EXPECT_EQ(book.Run("Select X.企业名称 From (" + select + "Inner" + rest + ") As X Where X.n>1"), "zed|\n");
}

}  // namespace kpTables::sql::test
