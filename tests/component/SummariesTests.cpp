// Sums per product and per partner: statements of every filter, results and failures.
#include <gtest/gtest.h>

#include "StatementCase.h"
#include "support/Failure.h"

namespace kpTables::test {
namespace {

/// What follows the joined tables: a condition.
struct Period {
    std::int16_t begin;
    std::int16_t end;
    const char* condition;
};

using PeriodQuery = std::function<void(CTables&, std::int16_t, std::int16_t)>;

/// Expects start, the period's condition and end as the statement of every period.
void ExpectPeriods(std::span<const Period> periods, const PeriodQuery& query, const std::string& start,
                   const std::string& end) {
    for (const Period& each : periods) {
        const std::string name = std::to_string(each.begin) + " to " + std::to_string(each.end);
        const StatementCase cases[] = {{name.c_str(),
                                        [&](CTables& t) { query(t, each.begin, each.end); },
                                        {Executed(start + each.condition + end)}}};
        ExpectStatements(cases);
    }
}

// rs商品汇总

const std::string kProductsOut =
    "SELECT Rec.pdID, Sum(Rec.数量) AS 数量, Avg(Rec.单价) AS 单价, Sum(Rec.除税金额) AS 金额, Sum(Rec.税额) AS 税额, "
    "Sum(Rec.除税单价) AS 除税单价, Sum(Rec.除税金额) AS 合计, Prod.商品名称, Prod.商品编号, Prod.规格, Prod.型号, "
    "Prod.计量单位, Prod.进位方法, Prod.最低库存, Prod.最高库存, Prod.ClassCode FROM (出库目录 AS Lst INNER JOIN "
    "出库记录 AS Rec ON Lst.BillID = Rec.BillID) LEFT JOIN 商品设置 AS Prod ON Rec.pdID = Prod.pdID ";
const std::string kProductsIn =
    "SELECT Rec.pdID, Sum(Rec.数量) AS 数量, Avg(Rec.单价) AS 单价, Sum(Rec.除税金额) AS 金额, Sum(Rec.税额) AS 税额, "
    "Sum(Rec.除税单价) AS 除税单价, Sum(Rec.除税金额) AS 合计, Prod.商品名称, Prod.商品编号, Prod.规格, Prod.型号, "
    "Prod.计量单位, Prod.进位方法, Prod.最低库存, Prod.最高库存, Prod.ClassCode FROM (入库目录 AS Lst INNER JOIN "
    "入库记录 AS Rec ON Lst.BillID = Rec.BillID) LEFT JOIN 商品设置 AS Prod ON Rec.pdID = Prod.pdID ";
const std::string kProductsCost =
    "SELECT Rec.pdID, Sum(Rec.数量) AS 数量, Avg(Rec.单价) AS 单价, Sum(Rec.金额) AS 金额, Prod.商品名称, "
    "Prod.商品编号, Prod.规格, Prod.型号, Prod.计量单位, Prod.进位方法, Prod.最低库存, Prod.最高库存, Prod.ClassCode "
    "FROM (成本目录 AS Lst INNER JOIN 成本记录 AS Rec ON Lst.CostID = Rec.CostID) INNER JOIN 商品设置 AS Prod ON "
    "Rec.pdID = Prod.pdID ";
const std::string kPerProduct =
    " GROUP BY Rec.pdID, Prod.商品名称, Prod.商品编号, Prod.规格, Prod.型号, Prod.计量单位, Prod.进位方法, "
    "Prod.最低库存, Prod.最高库存, Prod.ClassCode ";

// A side below 1 is open, whichever it is.
const Period kProductPeriods[] = {
    {2, 5, "Where  (Lst.月份>=2 And Lst.月份<=5)"},
    {1, 12, "Where  (Lst.月份>=1 And Lst.月份<=12)"},
    {5, 2, "Where  (Lst.月份>=5 And Lst.月份<=2)"},
    {3, 3, "Where  (Lst.月份=3)"},
    {1, 1, "Where  (Lst.月份=1)"},
    {0, 5, "Where  Lst.月份<=5"},
    {-1, 5, "Where  Lst.月份<=5"},
    {2, 0, "Where  Lst.月份>=2"},
    {2, -1, "Where  Lst.月份>=2"},
    {0, 0, ""},
    {-1, 0, ""},
    {0, -1, ""},
    {-3, -3, ""},
};

TEST(ProductSums, PeriodsOfInboundBills) {
    ExpectPeriods(
        kProductPeriods,
        [](CTables& t, std::int16_t begin, std::int16_t end) { t.rs商品汇总("入库", begin, end, 0, 0, ""); },
        kProductsIn, kPerProduct);
}

TEST(ProductSums, PeriodsOfOutboundBills) {
    ExpectPeriods(
        kProductPeriods,
        [](CTables& t, std::int16_t begin, std::int16_t end) { t.rs商品汇总("出库", begin, end, 0, 0, ""); },
        kProductsOut, kPerProduct);
}

TEST(ProductSums, PeriodsOfCostBills) {
    ExpectPeriods(
        kProductPeriods,
        [](CTables& t, std::int16_t begin, std::int16_t end) { t.rs商品汇总("成本", begin, end, 0, 0, ""); },
        kProductsCost, kPerProduct);
}

TEST(ProductSums, Filters) {
    const StatementCase cases[] = {
        {"negative ids mean all",
         [](CTables& t) { t.rs商品汇总("入库", 0, 0, -1, -1, "销售"); },
         {Executed(kProductsIn + kPerProduct)}},
        {"warehouse",
         [](CTables& t) { t.rs商品汇总("入库", 0, 0, 1, 0, ""); },
         {Executed(kProductsIn + "Where  Lst.dpID=1" + kPerProduct)}},
        {"partner",
         [](CTables& t) { t.rs商品汇总("出库", 0, 0, 0, 1, ""); },
         {Executed(kProductsOut + "Where  Lst.ksID=1" + kPerProduct)}},
        {"bought",
         [](CTables& t) { t.rs商品汇总("入库", 0, 0, 0, 0, "购进"); },
         {Executed(kProductsIn + "Where  (单据类型='普通发票' or 单据类型='增值税发票')" + kPerProduct)}},
        {"transferred",
         [](CTables& t) { t.rs商品汇总("出库", 0, 0, 0, 0, "调拨"); },
         {Executed(kProductsOut + "Where  单据类型='调拨单'" + kPerProduct)}},
        {"everything, bought",
         [](CTables& t) { t.rs商品汇总("入库", 3, 3, 7, 12, "购进"); },
         {Executed(kProductsIn +
                   "Where  (Lst.月份=3) And Lst.dpID=7 And (单据类型='普通发票' or 单据类型='增值税发票') And "
                   "Lst.ksID=12" +
                   kPerProduct)}},
        {"everything, transferred",
         [](CTables& t) { t.rs商品汇总("出库", 2, 5, 7, 12, "调拨"); },
         {Executed(kProductsOut +
                   "Where  (Lst.月份>=2 And Lst.月份<=5) And Lst.dpID=7 And 单据类型='调拨单' And Lst.ksID=12" +
                   kPerProduct)}},
        {"cost bills have neither partner nor kind",
         [](CTables& t) { t.rs商品汇总("成本", 0, 5, 7, 12, "购进"); },
         {Executed(kProductsCost + "Where  Lst.月份<=5 And Lst.dpID=7" + kPerProduct)}},
        {"cost bills, warehouse",
         [](CTables& t) { t.rs商品汇总("成本", 0, 0, 7, 12, "调拨"); },
         {Executed(kProductsCost + "Where  Lst.dpID=7" + kPerProduct)}},
    };
    ExpectStatements(cases);
}

TEST(ProductSums, TheSelectorNamesTheTables) {
    const StatementCase cases[] = {
        {"an unknown one",
         [](CTables& t) { t.rs商品汇总("盘点", 0, 0, 0, 0, ""); },
         {Executed("SELECT Rec.pdID, Sum(Rec.数量) AS 数量, Avg(Rec.单价) AS 单价, Sum(Rec.除税金额) AS 金额, "
                   "Sum(Rec.税额) AS 税额, Sum(Rec.除税单价) AS 除税单价, Sum(Rec.除税金额) AS 合计, Prod.商品名称, "
                   "Prod.商品编号, Prod.规格, Prod.型号, Prod.计量单位, Prod.进位方法, Prod.最低库存, Prod.最高库存, "
                   "Prod.ClassCode FROM (盘点目录 AS Lst INNER JOIN 盘点记录 AS Rec ON Lst.BillID = Rec.BillID) LEFT "
                   "JOIN 商品设置 AS Prod ON Rec.pdID = Prod.pdID  GROUP BY Rec.pdID, Prod.商品名称, Prod.商品编号, "
                   "Prod.规格, Prod.型号, Prod.计量单位, Prod.进位方法, Prod.最低库存, Prod.最高库存, "
                   "Prod.ClassCode ")}},
    };
    ExpectStatements(cases);
}

// rs成本汇总

const std::string kCosts =
    "SELECT Rec.pdID, Avg(Rec.单价) AS 单价, Sum(Rec.数量) AS 数量, Sum(Rec.金额) AS 金额 FROM 成本记录 As Rec INNER "
    "JOIN 成本目录 As Lst ON Rec.CostID = Lst.CostID ";

TEST(CostSums, Periods) {
    // A negative month leaves both sides open.
    const Period periods[] = {
        {2, 5, " Where  (Lst.月份>=2 And Lst.月份<=5)"},
        {1, 12, " Where  (Lst.月份>=1 And Lst.月份<=12)"},
        {5, 2, " Where  (Lst.月份>=5 And Lst.月份<=2)"},
        {3, 3, " Where  (Lst.月份=3)"},
        {1, 1, " Where  (Lst.月份=1)"},
        {0, 5, " Where  Lst.月份<=5"},
        {2, 0, " Where  Lst.月份>=2"},
        {-1, 5, ""},
        {2, -1, ""},
        {0, 0, ""},
        {-1, 0, ""},
        {0, -1, ""},
        {-3, -3, ""},
    };
    ExpectPeriods(
        periods, [](CTables& t, std::int16_t begin, std::int16_t end) { t.rs成本汇总(begin, end, 0); }, kCosts,
        " GROUP BY Rec.pdID ");
}

TEST(CostSums, Warehouse) {
    const StatementCase cases[] = {
        {"negative means all", [](CTables& t) { t.rs成本汇总(0, 0, -1); }, {Executed(kCosts + " GROUP BY Rec.pdID ")}},
        {"alone", [](CTables& t) { t.rs成本汇总(0, 0, 1); }, {Executed(kCosts + " Where  dpID=1 GROUP BY Rec.pdID ")}},
        {"with a negative month",
         [](CTables& t) { t.rs成本汇总(-1, 5, 4); },
         {Executed(kCosts + " Where  dpID=4 GROUP BY Rec.pdID ")}},
        {"with a period",
         [](CTables& t) { t.rs成本汇总(3, 3, 4); },
         {Executed(kCosts + " Where  (Lst.月份=3) And dpID=4 GROUP BY Rec.pdID ")}},
    };
    ExpectStatements(cases);
}

// rs单位汇总

const std::string kSuppliers =
    "SELECT Lst.ksID,ks.ClassCode, Ks.企业名称 , Sum(Rec.数量) AS 数量, Avg(Rec.除税单价) AS 除税单价, "
    "Sum(Rec.除税金额) AS 除税金额, Sum(Rec.单价) AS 单价, Sum(Rec.金额) AS 金额, Sum(Rec.税额) AS 税额 FROM (入库记录 "
    "AS Rec INNER JOIN 入库目录 AS Lst ON Rec.BillID = Lst.BillID) LEFT JOIN 厂商资料 AS Ks ON Lst.ksID = Ks.KSID ";
const std::string kCustomers =
    "SELECT Lst.ksID,ks.ClassCode, Ks.企业名称,Sum(Rec.数量) AS 数量, Avg(Rec.除税单价) AS 除税单价, "
    "Sum(Rec.除税金额) AS 除税金额, Sum(Rec.单价) AS 单价, Sum(Rec.金额) AS 金额, Sum(Rec.税额) AS 税额 FROM (出库记录 "
    "AS Rec INNER JOIN 出库目录 AS Lst ON Rec.BillID = Lst.BillID) LEFT JOIN 客户资料 AS Ks ON Lst.ksID = Ks.KSID ";
const std::string kPerPartner = " GROUP BY Lst.ksID, Ks.企业名称,Ks.ClassCode";

// Equal months stay a range; a negative month leaves both sides open.
const Period kPartnerPeriods[] = {
    {2, 5, "Where (Lst.月份>=2 And Lst.月份<=5)"},
    {1, 12, "Where (Lst.月份>=1 And Lst.月份<=12)"},
    {5, 2, "Where (Lst.月份>=5 And Lst.月份<=2)"},
    {3, 3, "Where (Lst.月份>=3 And Lst.月份<=3)"},
    {0, 5, "Where Lst.月份<=5"},
    {2, 0, "Where Lst.月份>=2"},
    {-1, 5, ""},
    {2, -1, ""},
    {0, 0, ""},
    {-1, 0, ""},
    {0, -1, ""},
    {-3, -3, ""},
};

TEST(PartnerSums, PeriodsOfSuppliers) {
    ExpectPeriods(
        kPartnerPeriods, [](CTables& t, std::int16_t begin, std::int16_t end) { t.rs单位汇总(begin, end, "厂商"); },
        kSuppliers, kPerPartner);
}

TEST(PartnerSums, PeriodsOfCustomers) {
    ExpectPeriods(
        kPartnerPeriods, [](CTables& t, std::int16_t begin, std::int16_t end) { t.rs单位汇总(begin, end, "客户"); },
        kCustomers, kPerPartner);
}

TEST(PartnerSums, AnyOtherKindMeansCustomers) {
    for (const char* kind : {"", "入库", "厂商 ", "厂"}) {
        const StatementCase cases[] = {
            {kind, [&](CTables& t) { t.rs单位汇总(0, 0, kind); }, {Executed(kCustomers + kPerPartner)}}};
        ExpectStatements(cases);
    }
}

struct NamedQuery {
    const char* name;
    std::function<RecordsetPtr(CTables&)> run;
};
const NamedQuery kSums[] = {
    {"rs商品汇总", [](CTables& t) { return t.rs商品汇总("入库", 1, 2, 0, 0, ""); }},
    {"rs商品汇总, cost", [](CTables& t) { return t.rs商品汇总("成本", 1, 2, 0, 0, ""); }},
    {"rs成本汇总", [](CTables& t) { return t.rs成本汇总(1, 2, 0); }},
    {"rs单位汇总, suppliers", [](CTables& t) { return t.rs单位汇总(1, 2, "厂商"); }},
    {"rs单位汇总, customers", [](CTables& t) { return t.rs单位汇总(1, 2, "客户"); }},
};

TEST(Sums, HandOutTheConnectionsRows) {
    for (const auto& each : kSums) ExpectHandsOut(each.name, each.run);
}

TEST(Sums, PassErrorsOn) {
    for (const auto& each : kSums) {
        SCOPED_TRACE(each.name);
        CTables tables;
        EXPECT_EQ(FailureOf([&] { each.run(tables); }), 91);
        const auto cnn = std::make_shared<ScriptedConnection>();
        cnn->FailAt(1);
        tables.Cnn(cnn);
        EXPECT_EQ(FailureOf([&] { each.run(tables); }), kRefused);
        EXPECT_EQ(cnn->Statements().size(), 1u);
    }
}

TEST(Sums, LeaveByReferenceArgumentsAlone) {
    const auto cnn = std::make_shared<ScriptedConnection>();
    CTables tables;
    tables.Cnn(cnn);
    std::int16_t begin = -1;
    std::int16_t end = 0;
    std::int32_t warehouse = -2;
    std::string kind = "厂";
    tables.rs成本汇总(begin, end, warehouse);
    tables.rs单位汇总(begin, end, kind);
    EXPECT_EQ(begin, -1);
    EXPECT_EQ(end, 0);
    EXPECT_EQ(warehouse, -2);
    EXPECT_EQ(kind, "厂");
}

}  // namespace
}  // namespace kpTables::test
