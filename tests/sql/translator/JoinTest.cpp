#include "ExpressionCases.h"

namespace kpTables::sql::test {

TEST(Join, RightJoinsStartAtTheTableWhoseRowsAreKept) {
    CheckStatements({
        {"Select L.BillID From 厂商资料 As K Right Join 入库目录 As L On K.KSID=L.ksID",
         R"(SELECT "L"."BillID" FROM "入库目录" AS "L" LEFT JOIN "厂商资料" AS "K" ON "K"."KSID" = "L"."ksID")", "",
         "BillID Long"},
        {"SELECT Lst.BillID, dp.仓库名称, ks.企业名称, pj.项目名称 FROM 项目设置 AS pj RIGHT JOIN (仓库设置 AS dp "
         "RIGHT JOIN "
         "(厂商资料 AS ks RIGHT JOIN (入库目录 AS Lst LEFT JOIN 入库记录 AS Rec ON Lst.BillID = Rec.BillID) "
         "ON ks.KSID = Lst.ksID) ON dp.dpID = Lst.dpID) ON pj.项目ID = Lst.pjID",
         R"(SELECT "Lst"."BillID", "dp"."仓库名称", "ks"."企业名称", "pj"."项目名称" FROM "入库目录" AS "Lst" )"
         R"(LEFT JOIN "入库记录" AS "Rec" ON "Lst"."BillID" = "Rec"."BillID" )"
         R"(LEFT JOIN "厂商资料" AS "ks" ON "ks"."KSID" = "Lst"."ksID" )"
         R"(LEFT JOIN "仓库设置" AS "dp" ON "dp"."dpID" = "Lst"."dpID" )"
         R"(LEFT JOIN "项目设置" AS "pj" ON "pj"."项目ID" = "Lst"."pjID")",
         "", "BillID Long, 仓库名称 Text, 企业名称 Text, 项目名称 Text"},
    });
}

TEST(Join, StarsKeepTheOrderThatIsWritten) {
    CheckStatements({
        {"Select * From 项目设置 Right Join Header On 项目ID=Index",
         R"(SELECT "项目设置"."项目ID", "项目设置"."ClassCode", "项目设置"."项目名称", "Header"."Table", )"
         R"("Header"."Index", "Header"."Flag" FROM "Header" LEFT JOIN "项目设置" ON "项目设置"."项目ID" = "Header"."Index")",
         "", "项目ID Long, ClassCode Text, 项目名称 Text, Table Text, Index Long, Flag Text"},
    });
}

TEST(Join, DeeperSidesGoLeft) {
    CheckStatements({
        {"Select R.pdID From 仓库设置 As D Inner Join (厂商资料 As K Inner Join (入库目录 As L Inner Join 入库记录 As "
         "R "
         "On L.BillID=R.BillID) On K.KSID=L.ksID) On D.dpID=L.dpID",
         R"(SELECT "R"."pdID" FROM "入库目录" AS "L" INNER JOIN "入库记录" AS "R" ON "L"."BillID" = "R"."BillID" )"
         R"(INNER JOIN "厂商资料" AS "K" ON "K"."KSID" = "L"."ksID" )"
         R"(INNER JOIN "仓库设置" AS "D" ON "D"."dpID" = "L"."dpID")",
         "", "pdID Long"},
        {"Select D.dpID From 仓库设置 As D Left Join (入库目录 As L Inner Join 入库记录 As R On L.BillID=R.BillID) "
         "On D.dpID=L.dpID",
         R"(SELECT "D"."dpID" FROM "仓库设置" AS "D" LEFT JOIN ("入库目录" AS "L" INNER JOIN "入库记录" AS "R" )"
         R"(ON "L"."BillID" = "R"."BillID") ON "D"."dpID" = "L"."dpID")",
         "", "dpID Long"},
        {"Select rec.pdID FROM 出库记录 rec INNER JOIN  出库目录 lst ON rec.BillID = lst.BillID INNER JOIN  仓库设置 D "
         "ON "
         "lst.dpID = D.dpID",
         R"(SELECT "rec"."pdID" FROM "出库记录" AS "rec" INNER JOIN "出库目录" AS "lst" ON "rec"."BillID" = "lst"."BillID" )"
         R"(INNER JOIN "仓库设置" AS "D" ON "lst"."dpID" = "D"."dpID")",
         "", "pdID Long"},
    });
}

TEST(Join, ConditionsMayConvert) {
    CheckStatements({
        {"Select A.l From T As A Inner Join T As B On (A.c=B.l And A.t=B.t2)",
         R"(SELECT "A"."l" FROM "T" AS "A" INNER JOIN "T" AS "B" ON "A"."c" = "B"."l" * 10000 AND "A"."t" = "B"."t2")",
         "", "l Long"},
    });
}

}  // namespace kpTables::sql::test
