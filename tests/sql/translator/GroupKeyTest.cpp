// Keys that make no other groups.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "SqliteBook.h"
#include "TranslationText.h"

namespace kpTables::sql::test {

namespace {

struct KeyCase {
    std::string query;  ///< after "Select Count(*) As n "
    std::string keys;   ///< from GROUP BY on
};

void CheckKeys(const std::vector<KeyCase>& cases) {
    for (const auto& [query, keys] : cases) {
        const std::string text = Translated("Select Count(*) As n " + query).text;
        const auto at = text.rfind(" GROUP BY ");
        ASSERT_NE(at, std::string::npos) << query;
        EXPECT_EQ(text.substr(at + 1), keys) << query;
    }
}

}  // namespace

TEST(GroupKey, FollowingFromACounter) {
    CheckKeys({
        {"From 入库目录 Group By BillID, 年份, 审核员", R"(GROUP BY "入库目录"."BillID")"},
        {"From 入库目录 Group By 年份, BillID, 审核员", R"(GROUP BY "入库目录"."年份", "入库目录"."BillID")"},
        {"From 入库目录 Group By 年份, BillID, 审核员 Order By 审核员",
         R"(GROUP BY "入库目录"."BillID" ORDER BY "入库目录"."审核员")"},
        {"From 入库目录 Group By BillID, 年份+月份",
         R"(GROUP BY "入库目录"."BillID", "入库目录"."年份" + "入库目录"."月份")"},
        {"From 入库目录 Group By ksID, dpID, ksID", R"(GROUP BY "入库目录"."ksID", "入库目录"."dpID")"},
        {"From 入库目录 As A, 入库目录 As B Group By A.BillID, B.年份", R"(GROUP BY "A"."BillID", "B"."年份")"},
    });
}

TEST(GroupKey, FollowingFromAJoin) {
    CheckKeys({
        {"From 入库记录 As R Inner Join 入库目录 As L On R.BillID=L.BillID Group By R.BillID, L.年份, R.pdID",
         R"(GROUP BY "R"."BillID", "R"."pdID")"},
        {"From T As A Inner Join T As B On (A.l=B.id And A.d=1) Group By A.l, B.t", R"(GROUP BY "A"."l")"},
        {"From 入库目录 As L Left Join 厂商资料 As K On L.ksID=K.KSID Group By L.ksID, K.企业名称",
         R"(GROUP BY "L"."ksID")"},
        {"From 厂商资料 As K Right Join 入库目录 As L On K.KSID=L.ksID Group By L.BillID, K.企业名称",
         R"(GROUP BY "L"."BillID")"},
        {"From 仓库设置 As dp Right Join (厂商资料 As ks Right Join (入库目录 As Lst Left Join 入库记录 As Rec On "
         "Lst.BillID=Rec.BillID) On ks.KSID=Lst.ksID) On dp.dpID=Lst.dpID Group By Lst.年份, Lst.BillID, Rec.pdID, "
         "dp.仓库名称, ks.企业名称 Order By Lst.年份",
         R"(GROUP BY "Lst"."BillID", "Rec"."pdID" ORDER BY "Lst"."年份")"},
        {"From (Select Lst.pjID, Proj.项目名称, Lst.月份 From 出库目录 As Lst Left Join 项目设置 As Proj On "
         "Lst.pjID=Proj.项目ID) As BILLLIST Group By BILLLIST.pjID, BILLLIST.项目名称, BILLLIST.月份",
         R"(GROUP BY "BILLLIST"."pjID", "BILLLIST"."月份")"},
    });
}

TEST(GroupKey, NamedByTheCondition) {
    CheckKeys({
        {"From 入库目录 Where CDATE(年份 & '-' & 月份 & '-' & 日子)>=#2004-3-1# Group By 年份, 月份, 单据编号, BillID "
         "Order By 单据编号",
         R"(GROUP BY "入库目录"."年份", "入库目录"."月份", "入库目录"."BillID" ORDER BY "入库目录"."单据编号")"},
        {"From 入库目录 As L Where (L.单据编号>='A' And L.单据编号<='B') And L.dpID In (1,2) Group By L.BillID, "
         "L.年份, "
         "L.单据编号, L.dpID",
         R"(GROUP BY "L"."BillID", "L"."单据编号", "L"."dpID")"},
        {"From 入库目录 As L Where L.BillID In (Select BillID From 入库记录 Where pdID=L.pjID) Group By L.BillID, "
         "L.pjID",
         R"(GROUP BY "L"."BillID")"},
    });
}

TEST(GroupKey, NotFollowing) {
    CheckKeys({
        // The partner's absence does not tell which partner is absent.
        {"From 入库目录 As L Left Join 厂商资料 As K On L.ksID=K.KSID Group By K.KSID, L.ksID",
         R"(GROUP BY "K"."KSID", "L"."ksID")"},
        // Whether there is a partner depends on more than the key.
        {"From 入库目录 As L Left Join 厂商资料 As K On L.ksID=K.KSID And L.dpID=L.pjID Group By L.ksID, K.企业名称",
         R"(GROUP BY "L"."ksID", "K"."企业名称")"},
        {"From T As A Left Join T As B On A.l=A.id Group By A.l, A.id", R"(GROUP BY "A"."l", "A"."id")"},
        {"From T As A Inner Join T As B On (A.l=B.id Or A.s=B.s) Group By A.l, B.id", R"(GROUP BY "A"."l", "B"."id")"},
        {"From T As A Inner Join T As B On A.l<=B.id Group By A.l, B.id", R"(GROUP BY "A"."l", "B"."id")"},
        // Texts and numbers that are equal may differ.
        {"From T As A Inner Join T As B On A.t=B.t2 Group By A.t, B.t2", R"(GROUP BY "A"."t", "B"."t2")"},
        {"From T As A Inner Join T As B On A.d=B.id Group By A.d, B.t", R"(GROUP BY "A"."d", "B"."t")"},
    });
}

TEST(GroupKey, TheGroupsStayTheSame) {
    SqliteBook book;
    for (const char* text : {
             "Insert Into 厂商资料 (KSID,企业名称) Values (1,'Ace')",
             "Insert Into 厂商资料 (KSID,企业名称) Values (2,'ace')",
             "Insert Into 入库目录 (BillID,年份,ksID,dpID) Values (10,2004,1,1)",
             "Insert Into 入库目录 (BillID,年份,ksID,dpID) Values (11,2004,2,1)",
             "Insert Into 入库目录 (BillID,年份,ksID,dpID) Values (12,2003,8,1)",
             "Insert Into 入库目录 (BillID,年份,ksID,dpID) Values (13,2003,9,1)",
             "Insert Into 入库目录 (BillID,年份,ksID,dpID) Values (14,2003,1,1)",
         })
        book.Run(text);
    const std::string from = " From 入库目录 As L Left Join 厂商资料 As K On L.ksID=K.KSID Group By ";
    EXPECT_EQ(book.Run("Select L.ksID, K.企业名称, Count(*)" + from + "L.ksID, K.企业名称"),
              "1|Ace|2|\n2|ace|1|\n8||1|\n9||1|\n");
    EXPECT_EQ(book.Run("Select K.KSID, K.企业名称, Count(*)" + from + "K.KSID, K.企业名称"),
              "||2|\n1|Ace|2|\n2|ace|1|\n");
    EXPECT_EQ(book.Run("Select L.年份, L.BillID, K.企业名称" + from +
                       "L.年份, L.BillID, K.企业名称 Order By L.年份, L.BillID"),
              "2003|12||\n2003|13||\n2003|14|Ace|\n2004|10|Ace|\n2004|11|ace|\n");
}

}  // namespace kpTables::sql::test
