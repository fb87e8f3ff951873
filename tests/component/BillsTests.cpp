// Bills: statements, results and failures.
#include <gtest/gtest.h>

#include "StatementCase.h"
#include "support/Failure.h"

namespace kpTables::test {
namespace {

TEST(BillStatements, LineListings) {
    const StatementCase cases[] = {
        {"inbound, all",
         [](CTables& t) { t.rs入库记录(0, 0); },
         {Executed(
             "SELECT Lst.BillID As BillID, Lst.*, Rec.*, Dp.仓库名称, Ks.企业名称 FROM ((入库记录 AS Rec INNER JOIN "
             "入库目录 AS Lst ON Rec.BillID = Lst.BillID) INNER JOIN 仓库设置 AS Dp ON Rec.dpID = Dp.dpID) LEFT JOIN "
             "厂商资料 AS Ks ON Lst.ksID = Ks.KSID  Order by Lst.年份,Lst.月份,Lst.日子,Lst.单据类型,Lst.单据编号 ")}},
        {"inbound, negative ids mean all",
         [](CTables& t) { t.rs入库记录(-1, -5); },
         {Executed(
             "SELECT Lst.BillID As BillID, Lst.*, Rec.*, Dp.仓库名称, Ks.企业名称 FROM ((入库记录 AS Rec INNER JOIN "
             "入库目录 AS Lst ON Rec.BillID = Lst.BillID) INNER JOIN 仓库设置 AS Dp ON Rec.dpID = Dp.dpID) LEFT JOIN "
             "厂商资料 AS Ks ON Lst.ksID = Ks.KSID  Order by Lst.年份,Lst.月份,Lst.日子,Lst.单据类型,Lst.单据编号 ")}},
        {"inbound, warehouse",
         [](CTables& t) { t.rs入库记录(3, 0); },
         {Executed(
             "SELECT Lst.BillID As BillID, Lst.*, Rec.*, Dp.仓库名称, Ks.企业名称 FROM ((入库记录 AS Rec INNER JOIN "
             "入库目录 AS Lst ON Rec.BillID = Lst.BillID) INNER JOIN 仓库设置 AS Dp ON Rec.dpID = Dp.dpID) LEFT JOIN "
             "厂商资料 AS Ks ON Lst.ksID = Ks.KSID  Where  Lst.dpID=3 Order by "
             "Lst.年份,Lst.月份,Lst.日子,Lst.单据类型,Lst.单据编号 ")}},
        {"inbound, product",
         [](CTables& t) { t.rs入库记录(-1, 2147483647); },
         {Executed(
             "SELECT Lst.BillID As BillID, Lst.*, Rec.*, Dp.仓库名称, Ks.企业名称 FROM ((入库记录 AS Rec INNER JOIN "
             "入库目录 AS Lst ON Rec.BillID = Lst.BillID) INNER JOIN 仓库设置 AS Dp ON Rec.dpID = Dp.dpID) LEFT JOIN "
             "厂商资料 AS Ks ON Lst.ksID = Ks.KSID  Where  Rec.pdID=2147483647 Order by "
             "Lst.年份,Lst.月份,Lst.日子,Lst.单据类型,Lst.单据编号 ")}},
        {"inbound, both",
         [](CTables& t) { t.rs入库记录(3, 17); },
         {Executed(
             "SELECT Lst.BillID As BillID, Lst.*, Rec.*, Dp.仓库名称, Ks.企业名称 FROM ((入库记录 AS Rec INNER JOIN "
             "入库目录 AS Lst ON Rec.BillID = Lst.BillID) INNER JOIN 仓库设置 AS Dp ON Rec.dpID = Dp.dpID) LEFT JOIN "
             "厂商资料 AS Ks ON Lst.ksID = Ks.KSID  Where  Lst.dpID=3 And Rec.pdID=17 Order by "
             "Lst.年份,Lst.月份,Lst.日子,Lst.单据类型,Lst.单据编号 ")}},
        {"outbound, all",
         [](CTables& t) { t.rs出库记录(0, 0); },
         {Executed(
             "SELECT Lst.BillID As BillID, Lst.*, Rec.*, Dp.仓库名称, ks.企业名称 FROM ((出库记录 AS Rec INNER JOIN "
             "出库目录 AS Lst ON Rec.BillID = Lst.BillID) INNER JOIN 仓库设置 AS Dp ON Rec.dpID = Dp.dpID) LEFT JOIN "
             "客户资料 AS KS ON Lst.ksID = KS.ksID  Order by Lst.年份,Lst.月份,Lst.日子,Lst.单据类型,Lst.单据编号 ")}},
        {"outbound, warehouse",
         [](CTables& t) { t.rs出库记录(1, -1); },
         {Executed(
             "SELECT Lst.BillID As BillID, Lst.*, Rec.*, Dp.仓库名称, ks.企业名称 FROM ((出库记录 AS Rec INNER JOIN "
             "出库目录 AS Lst ON Rec.BillID = Lst.BillID) INNER JOIN 仓库设置 AS Dp ON Rec.dpID = Dp.dpID) LEFT JOIN "
             "客户资料 AS KS ON Lst.ksID = KS.ksID  Where  Lst.dpID=1 Order by "
             "Lst.年份,Lst.月份,Lst.日子,Lst.单据类型,Lst.单据编号 ")}},
        {"outbound, product",
         [](CTables& t) { t.rs出库记录(0, 9); },
         {Executed(
             "SELECT Lst.BillID As BillID, Lst.*, Rec.*, Dp.仓库名称, ks.企业名称 FROM ((出库记录 AS Rec INNER JOIN "
             "出库目录 AS Lst ON Rec.BillID = Lst.BillID) INNER JOIN 仓库设置 AS Dp ON Rec.dpID = Dp.dpID) LEFT JOIN "
             "客户资料 AS KS ON Lst.ksID = KS.ksID  Where  Rec.pdID=9 Order by "
             "Lst.年份,Lst.月份,Lst.日子,Lst.单据类型,Lst.单据编号 ")}},
        {"outbound, both",
         [](CTables& t) { t.rs出库记录(1, 9); },
         {Executed(
             "SELECT Lst.BillID As BillID, Lst.*, Rec.*, Dp.仓库名称, ks.企业名称 FROM ((出库记录 AS Rec INNER JOIN "
             "出库目录 AS Lst ON Rec.BillID = Lst.BillID) INNER JOIN 仓库设置 AS Dp ON Rec.dpID = Dp.dpID) LEFT JOIN "
             "客户资料 AS KS ON Lst.ksID = KS.ksID  Where  Lst.dpID=1 And Rec.pdID=9 Order by "
             "Lst.年份,Lst.月份,Lst.日子,Lst.单据类型,Lst.单据编号 ")}},
    };
    ExpectStatements(cases);
}

TEST(BillStatements, PartnerListings) {
    const StatementCase cases[] = {
        {"supplier, all",
         [](CTables& t) { t.rs单位入库记录(0); },
         {Executed(
             "SELECT Lst.BillID As BillID, Lst.*, Rec.*, Dp.仓库名称, "
             "Prod.商品名称,Prod.商品编号,Prod.规格,Prod.型号,Prod.计量单位,Prod.进位方法 FROM ((入库记录 AS Rec INNER "
             "JOIN "
             "入库目录 AS Lst ON Rec.BillID = Lst.BillID) INNER JOIN 仓库设置 AS Dp ON Rec.dpID = Dp.dpID) LEFT JOIN "
             "商品设置 AS Prod ON Rec.pdID = Prod.pdID  Order by "
             "Lst.年份,Lst.月份,Lst.日子,Lst.单据类型,Lst.单据编号 ")}},
        {"supplier, negative",
         [](CTables& t) { t.rs单位入库记录(-7); },
         {Executed(
             "SELECT Lst.BillID As BillID, Lst.*, Rec.*, Dp.仓库名称, "
             "Prod.商品名称,Prod.商品编号,Prod.规格,Prod.型号,Prod.计量单位,Prod.进位方法 FROM ((入库记录 AS Rec INNER "
             "JOIN "
             "入库目录 AS Lst ON Rec.BillID = Lst.BillID) INNER JOIN 仓库设置 AS Dp ON Rec.dpID = Dp.dpID) LEFT JOIN "
             "商品设置 AS Prod ON Rec.pdID = Prod.pdID  Order by "
             "Lst.年份,Lst.月份,Lst.日子,Lst.单据类型,Lst.单据编号 ")}},
        {"supplier, one",
         [](CTables& t) { t.rs单位入库记录(12); },
         {Executed(
             "SELECT Lst.BillID As BillID, Lst.*, Rec.*, Dp.仓库名称, "
             "Prod.商品名称,Prod.商品编号,Prod.规格,Prod.型号,Prod.计量单位,Prod.进位方法 FROM ((入库记录 AS Rec INNER "
             "JOIN "
             "入库目录 AS Lst ON Rec.BillID = Lst.BillID) INNER JOIN 仓库设置 AS Dp ON Rec.dpID = Dp.dpID) LEFT JOIN "
             "商品设置 AS Prod ON Rec.pdID = Prod.pdID  Where  Lst.KSID=12 Order by "
             "Lst.年份,Lst.月份,Lst.日子,Lst.单据类型,Lst.单据编号 ")}},
        {"customer, all",
         [](CTables& t) { t.rs单位出库记录(0); },
         {Executed(
             "SELECT Lst.BillID As BillID, Lst.*, Rec.*, Dp.仓库名称, "
             "Prod.商品名称,Prod.商品编号,Prod.规格,Prod.型号,Prod.计量单位,Prod.进位方法 FROM ((出库记录 AS Rec INNER "
             "JOIN "
             "出库目录 AS Lst ON Rec.BillID = Lst.BillID) INNER JOIN 仓库设置 AS Dp ON Rec.dpID = Dp.dpID) LEFT JOIN "
             "商品设置 AS Prod ON Rec.pdID = Prod.pdID  Order by "
             "Lst.年份,Lst.月份,Lst.日子,Lst.单据类型,Lst.单据编号 ")}},
        {"customer, one",
         [](CTables& t) { t.rs单位出库记录(1); },
         {Executed(
             "SELECT Lst.BillID As BillID, Lst.*, Rec.*, Dp.仓库名称, "
             "Prod.商品名称,Prod.商品编号,Prod.规格,Prod.型号,Prod.计量单位,Prod.进位方法 FROM ((出库记录 AS Rec INNER "
             "JOIN "
             "出库目录 AS Lst ON Rec.BillID = Lst.BillID) INNER JOIN 仓库设置 AS Dp ON Rec.dpID = Dp.dpID) LEFT JOIN "
             "商品设置 AS Prod ON Rec.pdID = Prod.pdID  Where  Lst.KSID=1 Order by "
             "Lst.年份,Lst.月份,Lst.日子,Lst.单据类型,Lst.单据编号 ")}},
    };
    ExpectStatements(cases);
}

TEST(BillStatements, DistinctValues) {
    const StatementCase cases[] = {
        {"handlers in",
         [](CTables& t) { t.rs经手人("入库"); },
         {Executed("Select Distinct 经手人 From 入库记录 Order by 经手人")}},
        {"handlers out",
         [](CTables& t) { t.rs经手人("出库"); },
         {Executed("Select Distinct 经手人 From 出库记录 Order by 经手人")}},
        {"handlers, any other",
         [](CTables& t) { t.rs经手人(""); },
         {Executed("Select Distinct 经手人 From 出库记录 Order by 经手人")}},
        {"counterparts in",
         [](CTables& t) { t.rs交接人("入库"); },
         {Executed("Select Distinct 交接人 From 入库记录 Order by 交接人")}},
        {"counterparts out",
         [](CTables& t) { t.rs交接人("出库"); },
         {Executed("Select Distinct 交接人 From 出库记录 Order by 交接人")}},
        {"counterparts, a blank behind is another value",
         [](CTables& t) { t.rs交接人("入库 "); },
         {Executed("Select Distinct 交接人 From 出库记录 Order by 交接人")}},
        {"packings in",
         [](CTables& t) { t.rs包装("入库"); },
         {Executed("Select Distinct 包装 From 入库记录 Order by 包装")}},
        {"packings out",
         [](CTables& t) { t.rs包装("出库"); },
         {Executed("Select Distinct 包装 From 出库记录 Order by 包装")}},
        {"packings, cost",
         [](CTables& t) { t.rs包装("成本"); },
         {Executed("Select Distinct 包装 From 出库记录 Order by 包装")}},
        {"slots in",
         [](CTables& t) { t.rs货位("入库"); },
         {Executed("Select Distinct 货位 From  入库记录 Order by 货位")}},
        {"slots out",
         [](CTables& t) { t.rs货位("出库"); },
         {Executed("Select Distinct 货位 From  出库记录 Order by 货位")}},
        {"slots, cost",
         [](CTables& t) { t.rs货位("成本"); },
         {Executed("Select Distinct 货位 From  出库记录 Order by 货位")}},
    };
    ExpectStatements(cases);
}

const FieldInfo kAmount{"金额", VarType::Currency};
const FieldInfo kQuantity{"数量", VarType::Double};

/// A connection that answers one statement.
std::shared_ptr<ScriptedConnection> Answering(RecordsetPtr rows) {
    const auto cnn = std::make_shared<ScriptedConnection>();
    cnn->Answer(std::move(rows));
    return cnn;
}

TEST(BillTotals, StatementsTakeTheSelectorDifferently) {
    struct Case {
        std::int32_t bill;
        const char* which;
        const char* amount;
        const char* quantity;
    };
    const Case cases[] = {
        {7, "入库", "Select Sum(除税金额) As 金额 From 入库记录 Where BillID=7",
         "Select Sum(数量) As 数量 From 入库记录 Where BillID=7"},
        {7, "出库", "Select Sum(除税金额) As 金额 From 出库记录 Where BillID=7",
         "Select Sum(数量) As 数量 From 出库记录 Where BillID=7"},
        {7, "成本", "Select Sum(除税金额) As 金额 From 成本记录 Where BillID=7",
         "Select Sum(数量) As 数量 From 出库记录 Where BillID=7"},
        {-2147483647 - 1, "", "Select Sum(除税金额) As 金额 From 记录 Where BillID=-2147483648",
         "Select Sum(数量) As 数量 From 出库记录 Where BillID=-2147483648"},
    };
    for (const Case& each : cases) {
        for (const bool isSQL : {false, true}) {
            SCOPED_TRACE(each.which);
            const auto cnn = Answering(MakeRows({kAmount}, {{Variant::Null()}}));
            cnn->Answer(MakeRows({kQuantity}, {{Variant::Null()}}));
            CTables tables;
            tables.Cnn(cnn);
            tables.isSQL(isSQL);
            EXPECT_EQ(tables.Get单据金额(each.bill, each.which).Scaled(), 0);
            EXPECT_EQ(tables.Get单据数量(each.bill, each.which), 0);
            EXPECT_EQ(cnn->Statements(), (std::vector<Sent>{Executed(each.amount), Executed(each.quantity)}));
        }
    }
}

TEST(BillTotals, Amount) {
    struct Case {
        const char* name;
        RecordsetPtr rows;
        std::int64_t scaled;
    };
    const auto unknownCount = MakeRows({kAmount}, {{Currency::FromScaled(125000)}});
    unknownCount->ReportCount(-1);
    const Case cases[] = {
        {"a sum", MakeRows({kAmount}, {{Currency::FromScaled(125001)}}), 125001},
        {"a negative sum", MakeRows({kAmount}, {{Currency::FromScaled(-1)}}), -1},
        {"a Double", MakeRows({{"金额", VarType::Double}}, {{2.03125}}), 20312},  // half to even
        {"no lines", MakeRows({kAmount}, {{Variant::Null()}}), 0},
        {"no row", MakeRows({kAmount}, {}), 0},
        {"count unknown", unknownCount, 0},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.name);
        CTables tables;
        tables.Cnn(Answering(each.rows));
        EXPECT_EQ(tables.Get单据金额(1, "入库").Scaled(), each.scaled);
    }
}

TEST(BillTotals, Quantity) {
    struct Case {
        const char* name;
        RecordsetPtr rows;
        double quantity;
    };
    const auto unknownCount = MakeRows({kQuantity}, {{2.5}});
    unknownCount->ReportCount(-1);
    const Case cases[] = {
        {"a sum", MakeRows({kQuantity}, {{2.5}}), 2.5},
        {"a negative sum", MakeRows({kQuantity}, {{-0.125}}), -0.125},
        {"no lines", MakeRows({kQuantity}, {{Variant::Null()}}), 0},
        {"no row", MakeRows({kQuantity}, {}), 0},
        {"count unknown", unknownCount, 0},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.name);
        CTables tables;
        tables.Cnn(Answering(each.rows));
        EXPECT_EQ(tables.Get单据数量(1, "出库"), each.quantity);
    }
}

TEST(AuditStamp, Statements) {
    const Date day = *Date::ParseIso("2004-03-07");
    const StatementCase cases[] = {
        {"inbound",
         [=](CTables& t) { EXPECT_TRUE(t.BillAdulting("入库", 5, "张三", day)); },
         {Executed("Update 入库目录 Set 审核员='张三',审核日期=#2004-3-7# Where BillID=5")}},
        {"outbound",
         [=](CTables& t) { EXPECT_TRUE(t.BillAdulting("出库", -1, "", day)); },
         {Executed("Update 出库目录 Set 审核员='',审核日期=#2004-3-7# Where BillID=-1")}},
        {"the date as the caller gave it",
         [](CTables& t) { EXPECT_TRUE(t.BillAdulting("出库", 5, "O'X", "2004年3月7日")); },
         {Executed("Update 出库目录 Set 审核员='O'X',审核日期=#2004年3月7日# Where BillID=5")}},
        {"with a time",
         [](CTables& t) { EXPECT_TRUE(t.BillAdulting("入库", 5, "张三", *Date::ParseIso("2004-03-07T08:05:00"))); },
         {Executed("Update 入库目录 Set 审核员='张三',审核日期=#2004-3-7 8:05:00# Where BillID=5")}},
        {"Null",
         [](CTables& t) { EXPECT_TRUE(t.BillAdulting("入库", 5, "张三", Variant::Null())); },
         {Executed("Update 入库目录 Set 审核员='张三',审核日期=## Where BillID=5")}},
        {"cost bills have no stamp", [=](CTables& t) { EXPECT_TRUE(t.BillAdulting("成本", 5, "张三", day)); }, {}},
        {"no kind", [=](CTables& t) { EXPECT_TRUE(t.BillAdulting("", 5, "张三", day)); }, {}},
    };
    ExpectStatements(cases);
}

TEST(AuditStamp, LeavesItsArgumentsAlone) {
    CTables tables;
    tables.Cnn(std::make_shared<ScriptedConnection>());
    std::string which = "入库", auditor = "张三";
    std::int32_t bill = 5;
    Variant date = "2004-3-7";
    EXPECT_TRUE(tables.BillAdulting(which, bill, auditor, date));
    EXPECT_EQ(which, "入库");
    EXPECT_EQ(bill, 5);
    EXPECT_EQ(auditor, "张三");
    EXPECT_TRUE(date.Is("2004-3-7"));
}

TEST(AuditStamp, AnswersFalseAfterAnyError) {
    const auto cnn = std::make_shared<ScriptedConnection>();
    cnn->FailAt(1);
    CTables tables;
    EXPECT_FALSE(tables.BillAdulting("入库", 5, "张三", "2004-3-7")) << "no connection";
    EXPECT_TRUE(tables.BillAdulting("成本", 5, "张三", "2004-3-7")) << "no connection needed";
    tables.Cnn(cnn);
    EXPECT_FALSE(tables.BillAdulting("入库", 5, "张三", "2004-3-7")) << "refused";
    EXPECT_FALSE(tables.BillAdulting("入库", 5, "张三", Variant(nullptr))) << "an object has no text";
    EXPECT_EQ(cnn->Statements().size(), 1u);
}

TEST(Deletion, HeaderFirstAndAlwaysFalse) {
    const StatementCase cases[] = {
        {"inbound",
         [](CTables& t) { EXPECT_FALSE(t.Del_单据(5, "入库")); },
         {Executed("Delete From 入库目录 Where BillID=5"), Executed("Delete From 入库记录 Where BillID=5")}},
        {"outbound",
         [](CTables& t) { EXPECT_FALSE(t.Del_单据(2147483647, "出库")); },
         {Executed("Delete From 出库目录 Where BillID=2147483647"),
          Executed("Delete From 出库记录 Where BillID=2147483647")}},
        {"cost", [](CTables& t) { EXPECT_FALSE(t.Del_单据(5, "成本")); }, {}},
        {"no kind", [](CTables& t) { EXPECT_FALSE(t.Del_单据(5, "")); }, {}},
    };
    ExpectStatements(cases);
}

TEST(Deletion, AnErrorReachesTheCaller) {
    for (const int failing : {1, 2}) {
        const auto cnn = std::make_shared<ScriptedConnection>();
        cnn->FailAt(failing);
        CTables tables;
        tables.Cnn(cnn);
        EXPECT_EQ(FailureOf([&] { tables.Del_单据(5, "入库"); }), kRefused);
        EXPECT_EQ(cnn->Statements().size(), static_cast<std::size_t>(failing));
    }
}

struct NamedQuery {
    const char* name;
    std::function<RecordsetPtr(CTables&)> run;
};
const NamedQuery kListings[] = {
    {"rs入库记录", [](CTables& t) { return t.rs入库记录(1, 2); }},
    {"rs出库记录", [](CTables& t) { return t.rs出库记录(1, 2); }},
    {"rs单位入库记录", [](CTables& t) { return t.rs单位入库记录(1); }},
    {"rs单位出库记录", [](CTables& t) { return t.rs单位出库记录(1); }},
    {"rs经手人", [](CTables& t) { return t.rs经手人("入库"); }},
    {"rs交接人", [](CTables& t) { return t.rs交接人("入库"); }},
    {"rs包装", [](CTables& t) { return t.rs包装("入库"); }},
    {"rs货位", [](CTables& t) { return t.rs货位("入库"); }},
};

TEST(BillListings, HandOutTheConnectionsRows) {
    for (const auto& each : kListings) ExpectHandsOut(each.name, each.run);
}

TEST(BillListings, PassErrorsOn) {
    for (const auto& each : kListings) {
        SCOPED_TRACE(each.name);
        const auto cnn = std::make_shared<ScriptedConnection>();
        cnn->FailAt(1, "no such table");
        CTables tables;
        EXPECT_EQ(FailureOf([&] { each.run(tables); }), 91);
        tables.Cnn(cnn);
        try {
            each.run(tables);
            ADD_FAILURE() << "no error";
        } catch (const DatabaseError& error) {
            EXPECT_EQ(error.Description(), "no such table");
            EXPECT_EQ(error.Statement(), cnn->Statements().back().text);
        }
    }
}

TEST(BillTotals, PassErrorsOn) {
    CTables tables;
    EXPECT_EQ(FailureOf([&] { tables.Get单据金额(1, "入库"); }), 91);
    EXPECT_EQ(FailureOf([&] { tables.Get单据数量(1, "入库"); }), 91);
    EXPECT_EQ(FailureOf([&] { tables.Del_单据(1, "入库"); }), 91);
    const auto cnn = std::make_shared<ScriptedConnection>();
    cnn->FailAt(1).FailAt(2);
    tables.Cnn(cnn);
    EXPECT_EQ(FailureOf([&] { tables.Get单据金额(1, "入库"); }), kRefused);
    EXPECT_EQ(FailureOf([&] { tables.Get单据数量(1, "入库"); }), kRefused);
}

}  // namespace
}  // namespace kpTables::test
