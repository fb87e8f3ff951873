// Ranges that are marked as leaving most rows.
#include <gtest/gtest.h>

#include <string>

#include "TranslationText.h"

namespace kpTables::sql::test {

TEST(Likelihood, ARangeBesideAValueOfItsOwnTableAndOneOfAnother) {
    const std::string from = "Select R.单价 From 入库记录 As R Inner Join 入库目录 As L On R.BillID=L.BillID Where ";
    const std::string text =
        R"(SELECT "R"."单价" FROM "入库记录" AS "R" INNER JOIN "入库目录" AS "L" ON "R"."BillID" = "L"."BillID" WHERE )";
    struct Case {
        const char* condition;
        const char* text;
    };
    const Case cases[] = {
        {"L.月份<=6 And L.dpID=1 And R.pdID=5", R"(likely("L"."月份" <= ?1) AND "L"."dpID" = ?2 AND "R"."pdID" = ?3)"},
        {"True And R.pdID=5 And (L.dpID=1) And L.月份>6 And L.年份<2005",
         R"("R"."pdID" = ?1 AND "L"."dpID" = ?2 AND likely("L"."月份" > ?3) AND likely("L"."年份" < ?4))"},
        // No value of another table, none of its own, none at all.
        {"L.月份<=6 And L.dpID=1", R"("L"."月份" <= ?1 AND "L"."dpID" = ?2)"},
        {"L.月份<=6 And R.pdID=5", R"("L"."月份" <= ?1 AND "R"."pdID" = ?2)"},
        {"L.月份<=6 And L.dpID>1 And R.pdID<5", R"("L"."月份" <= ?1 AND "L"."dpID" > ?2 AND "R"."pdID" < ?3)"},
        // One of several cases, and a comparison of two columns.
        {"L.月份<=6 Or L.dpID=1 And R.pdID=5", R"("L"."月份" <= ?1 OR "L"."dpID" = ?2 AND "R"."pdID" = ?3)"},
        {"L.月份<=L.年份 And L.dpID=1 And R.pdID=5",
         R"("L"."月份" <= "L"."年份" AND "L"."dpID" = ?1 AND "R"."pdID" = ?2)"},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(Translated(from + each.condition).text, text + each.text) << each.condition;
    }
}

}  // namespace kpTables::sql::test
