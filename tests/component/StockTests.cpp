// Per-product stock figures: statements, results and failures.
#include <gtest/gtest.h>

#include "BookScript.h"
#include "StatementCase.h"
#include "support/Failure.h"

namespace kpTables::test {
namespace {

TEST(StockStatements, Opening) {
    const StatementCase cases[] = {
        {"all",
         [](CTables& t) { EXPECT_EQ(t.Get上期库存(0, 0, 0, "数量"), 0); },
         {Executed("SELECT Sum(Bn.上期库存数量) AS 数量, Sum(Bn.上期库存金额) AS 金额 FROM 仓库余额表 AS Bn ")}},
        {"negative means all",
         [](CTables& t) { t.Get上期库存(-1, -2, -3, ""); },
         {Executed("SELECT Sum(Bn.上期库存数量) AS 数量, Sum(Bn.上期库存金额) AS 金额 FROM 仓库余额表 AS Bn ")}},
        {"month",
         [](CTables& t) { t.Get上期库存(0, 0, 13, "金额"); },
         {Executed("SELECT Sum(Bn.上期库存数量) AS 数量, Sum(Bn.上期库存金额) AS 金额 FROM 仓库余额表 AS Bn Where  "
                   "bn.月份=13")}},
        {"warehouse",
         [](CTables& t) { t.Get上期库存(2, 0, 0, "单价"); },
         {Executed("SELECT Sum(Bn.上期库存数量) AS 数量, Sum(Bn.上期库存金额) AS 金额 FROM 仓库余额表 AS Bn Where  "
                   "bn.dpID=2")}},
        {"product",
         [](CTables& t) { t.Get上期库存(0, 7, 0, "数量"); },
         {Executed("SELECT Sum(Bn.上期库存数量) AS 数量, Sum(Bn.上期库存金额) AS 金额 FROM 仓库余额表 AS Bn Where  "
                   "bn.pdID=7")}},
        {"all three",
         [](CTables& t) { t.Get上期库存(2, 7, 3, "数量"); },
         {Executed("SELECT Sum(Bn.上期库存数量) AS 数量, Sum(Bn.上期库存金额) AS 金额 FROM 仓库余额表 AS Bn Where  "
                   "bn.月份=3 And bn.dpID=2 And bn.pdID=7")}},
    };
    ExpectStatements(cases);
}

/// The movements' statements up to their filters.
const std::string kInbound =
    "SELECT Sum(Rec.数量) AS 数量, Sum(Rec.除税金额) AS 金额, Sum(Rec.税额) AS 税额, Sum(Rec.金额) AS 合计 FROM "
    "入库记录 AS Rec INNER JOIN 入库目录 AS Lst ON Rec.BillID = Lst.BillID ";
const std::string kOutbound =
    "SELECT Sum(Rec.数量) AS 数量, Sum(Rec.除税金额) AS 金额, Sum(Rec.税额) AS 税额, Sum(Rec.金额) AS 合计 FROM "
    "出库记录 AS Rec INNER JOIN 出库目录 AS Lst ON Rec.BillID = Lst.BillID ";

TEST(StockStatements, Inbound) {
    const StatementCase cases[] = {
        {"all", [](CTables& t) { t.Get商品入库(0, 0, 0, "数量"); }, {Executed(kInbound)}},
        {"year to date needs a month",
         [](CTables& t) { t.Get商品入库(0, 0, 0, "数量", "", true); },
         {Executed(kInbound)}},
        {"a negative month is none",
         [](CTables& t) { t.Get商品入库(-1, -1, -1, "金额", "", true); },
         {Executed(kInbound)}},
        {"month",
         [](CTables& t) { t.Get商品入库(0, 0, 3, "金额", "", false); },
         {Executed(kInbound + "Where  Lst.月份=3")}},
        {"year to date",
         [](CTables& t) { t.Get商品入库(0, 0, 3, "金额", "", true); },
         {Executed(kInbound + "Where  Lst.月份<=3")}},
        {"warehouse", [](CTables& t) { t.Get商品入库(2, 0, 0, "税额"); }, {Executed(kInbound + "Where  Lst.dpID=2")}},
        {"product", [](CTables& t) { t.Get商品入库(0, 7, 0, "合计"); }, {Executed(kInbound + "Where  Rec.pdID=7")}},
        {"all four",
         [](CTables& t) { t.Get商品入库(2, 7, 3, "单价", "直接", true); },
         {Executed(kInbound + "Where  Lst.月份<=3 And Lst.dpID=2 And Rec.pdID=7 And 单据类型='入库单'")}},
        {"direct",
         [](CTables& t) { t.Get商品入库(0, 0, 0, "数量", "直接"); },
         {Executed(kInbound + "Where  单据类型='入库单'")}},
        {"purchases, compared with =",
         [](CTables& t) { t.Get商品入库(0, 0, 0, "数量", "购进"); },
         {Executed(kInbound + "Where  单据类型='%发票'")}},
        {"transfers",
         [](CTables& t) { t.Get商品入库(0, 0, 0, "数量", "调拨"); },
         {Executed(kInbound + "Where  单据类型='调拨单'")}},
        {"any other kind",
         [](CTables& t) { t.Get商品入库(0, 7, 0, "数量", "直接 "); },
         {Executed(kInbound + "Where  Rec.pdID=7")}},
    };
    ExpectStatements(cases);
}

TEST(StockStatements, Outbound) {
    const StatementCase cases[] = {
        {"all", [](CTables& t) { t.Get商品出库(0, 0, 0, "数量", "", true); }, {Executed(kOutbound)}},
        {"month", [](CTables& t) { t.Get商品出库(0, 0, 12, "数量"); }, {Executed(kOutbound + "Where  Lst.月份=12")}},
        {"all four",
         [](CTables& t) { t.Get商品出库(2, 7, 3, "单价", "直接", true); },
         {Executed(kOutbound + "Where  Lst.月份<=3 And Lst.dpID=2 And Rec.pdID=7 And 单据类型='出库单'")}},
        {"purchases",
         [](CTables& t) { t.Get商品出库(2, 7, 3, "单价", "购进"); },
         {Executed(kOutbound + "Where  Lst.月份=3 And Lst.dpID=2 And Rec.pdID=7 And 单据类型='%发票'")}},
        {"transfers",
         [](CTables& t) { t.Get商品出库(0, 0, 0, "数量", "调拨"); },
         {Executed(kOutbound + "Where  单据类型='调拨单'")}},
        {"any other kind", [](CTables& t) { t.Get商品出库(0, 0, 0, "数量", "入库单"); }, {Executed(kOutbound)}},
    };
    ExpectStatements(cases);
}

TEST(StockStatements, Cost) {
    const StatementCase cases[] = {
        {"all",
         [](CTables& t) { EXPECT_EQ(t.Get商品成本(0, 0, "", "数量").Scaled(), 0); },
         {Executed("Select pdID,Sum(数量) As 数量,Sum(金额) As 金额 From 成本记录 Where 成本记录.CostID in (Select "
                   "CostID From 成本目录 Where True ) Group by pdID")}},
        {"month 0, year to date",
         [](CTables& t) { t.Get商品成本(-1, -1, "0", "数量", true); },
         {Executed("Select pdID,Sum(数量) As 数量,Sum(金额) As 金额 From 成本记录 Where 成本记录.CostID in (Select "
                   "CostID From 成本目录 Where True ) Group by pdID")}},
        {"month -1",
         [](CTables& t) { t.Get商品成本(0, 0, "-1", "数量"); },
         {Executed("Select pdID,Sum(数量) As 数量,Sum(金额) As 金额 From 成本记录 Where 成本记录.CostID in (Select "
                   "CostID From 成本目录 Where True ) Group by pdID")}},
        {"month",
         [](CTables& t) { t.Get商品成本(0, 0, "3", "金额"); },
         {Executed("Select pdID,Sum(数量) As 数量,Sum(金额) As 金额 From 成本记录 Where 成本记录.CostID in (Select "
                   "CostID From 成本目录 Where True  And 月份=3) Group by pdID")}},
        {"the month's text as it stands",
         [](CTables& t) { t.Get商品成本(0, 0, " 03", "金额", true); },
         {Executed("Select pdID,Sum(数量) As 数量,Sum(金额) As 金额 From 成本记录 Where 成本记录.CostID in (Select "
                   "CostID From 成本目录 Where True  And 月份<= 03) Group by pdID")}},
        {"warehouse",
         [](CTables& t) { t.Get商品成本(2, 0, "", "金额"); },
         {Executed("Select pdID,Sum(数量) As 数量,Sum(金额) As 金额 From 成本记录 Where 成本记录.CostID in (Select "
                   "CostID From 成本目录 Where True  And dpID=2) Group by pdID")}},
        {"product",
         [](CTables& t) { t.Get商品成本(0, 7, "", "金额"); },
         {Executed("Select pdID,Sum(数量) As 数量,Sum(金额) As 金额 From 成本记录 Where 成本记录.CostID in (Select "
                   "CostID From 成本目录 Where True ) And pdID=7 Group by pdID")}},
        {"all three",
         [](CTables& t) { t.Get商品成本(2, 7, "3", "单价", true); },
         {Executed("Select pdID,Sum(数量) As 数量,Sum(金额) As 金额 From 成本记录 Where 成本记录.CostID in (Select "
                   "CostID From 成本目录 Where True  And dpID=2 And 月份<=3) And pdID=7 Group by pdID")}},
        {"a month that is no number", [](CTables& t) { EXPECT_EQ(t.Get商品成本(2, 7, "三", "金额").Scaled(), 0); }, {}},
        {"a blank month", [](CTables& t) { EXPECT_EQ(t.Get商品成本(2, 7, " ", "金额").Scaled(), 0); }, {}},
    };
    ExpectStatements(cases);
}

/// One row of sums; the columns take any value.
std::shared_ptr<ScriptedRecordset> Sums(const Variant& quantity, const Variant& amount,
                                        const Variant& tax = Variant::Null(), const Variant& gross = Variant::Null()) {
    return MakeRows(
        {{"数量", VarType::Empty}, {"金额", VarType::Empty}, {"税额", VarType::Empty}, {"合计", VarType::Empty}},
        {{quantity, amount, tax, gross}});
}

TEST(OpeningStock, Results) {
    const Variant null = Variant::Null();
    struct Case {
        Variant quantity, amount;
        const char* what;
        double answer;
    };
    const Case cases[] = {
        {2.5, Money(125000), "数量", 2.5},
        {2.5, Money(125000), "金额", 12.5},
        {2.5, Money(125000), "单价", 5},
        {2.5, Money(125000), "", 5},
        {2.5, Money(125000), "合计", 5},
        {-2.5, Money(125000), "单价", -5},
        {0.0, Money(125000), "单价", 0},
        {0.0, Money(0), "单价", 0},
        {null, Money(125000), "单价", 0},
        {2.5, null, "单价", 0},
        {null, null, "单价", 0},
        {null, Money(125000), "数量", 0},
        {2.5, null, "金额", 0},
        {null, null, "数量", 0},
        {3.0, 10.0, "单价", 10.0 / 3.0},
        // too large for a Double
        {1e-300, Money(9'000'000'000'000'000'000), "单价", 0},
        {-1e-300, Money(9'000'000'000'000'000'000), "", 0},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(Shown(each.quantity) + ", " + Shown(each.amount) + ", " + each.what);
        BookScript book;
        book.cnn->Answer(Sums(each.quantity, each.amount));
        EXPECT_EQ(book.tables.Get上期库存(2, 7, 3, each.what), each.answer);
    }
}

struct MovementCase {
    const char* name;
    RecordsetPtr rows;
    const char* what;
    std::int64_t scaled;
};

void ExpectMovements(std::span<const MovementCase> cases) {
    for (const MovementCase& each : cases) {
        SCOPED_TRACE(std::string(each.name) + ", " + each.what);
        BookScript book;
        book.cnn->Answer(each.rows).Answer(each.rows);
        EXPECT_EQ(book.tables.Get商品入库(2, 7, 3, each.what).Scaled(), each.scaled);
        EXPECT_EQ(book.tables.Get商品出库(2, 7, 3, each.what).Scaled(), each.scaled);
    }
}

TEST(Movements, Results) {
    const Variant null = Variant::Null();
    const auto sums = Sums(2.5, Money(125001), Money(16250), Money(141251));
    const MovementCase cases[] = {
        {"sums", sums, "数量", 25000},
        {"sums", sums, "金额", 125001},
        {"sums", sums, "税额", 16250},
        {"sums", sums, "合计", 141251},
        {"sums", sums, "单价", 50000},  // 5.00004
        {"sums", sums, "", 0},
        {"sums", sums, "除税金额", 0},
        {"no lines", Sums(null, null), "数量", 0},
        {"no lines", Sums(null, null), "金额", 0},
        {"no lines", Sums(null, null), "税额", 0},
        {"no lines", Sums(null, null), "合计", 0},
        {"no lines", Sums(null, null), "单价", 0},
        {"no quantity", Sums(0.0, Money(10000)), "单价", 0},
        {"no amount", Sums(2.0, null), "单价", 0},
        {"not numeric", Sums("两", Money(10000)), "单价", 0},
        {"a third", Sums(3.0, Money(10000)), "单价", 3333},
        {"a negative price", Sums(-3.0, Money(20000)), "单价", -6667},
        {"half to even", Sums(0.03125, Money(1)), "数量", 312},
        {"too large", Sums(1e15, Money(1)), "数量", 0},
        {"no row", MakeRows({{"数量", VarType::Double}}, {}), "数量", 0},
        {"no such column", MakeRows({{"别的", VarType::Double}}, {{1.0}}), "数量", 0},
    };
    ExpectMovements(cases);
}

TEST(Cost, Results) {
    const Variant null = Variant::Null();
    struct Case {
        const char* name;
        Rows rows;
        const char* what;
        std::int64_t scaled;
    };
    const Case cases[] = {
        {"quantity", {{7, 2.5, Money(125001)}}, "数量", 25000},
        {"amount", {{7, 2.5, Money(125001)}}, "金额", 125001},
        {"price", {{7, 2.5, Money(125001)}}, "单价", 50000},
        {"any other text is the price", {{7, 2.5, Money(125001)}}, "税额", 50000},
        {"the first product's", {{7, 2.5, Money(1)}, {8, 9.0, Money(2)}}, "金额", 1},
        {"no quantity", {{7, 0.0, Money(1)}}, "单价", 0},
        {"Null", {{7, null, null}}, "单价", 0},
        {"Null", {{7, null, null}}, "数量", 0},
        {"Null", {{7, null, null}}, "金额", 0},
        {"no row", {}, "金额", 0},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(std::string(each.name) + ", " + each.what);
        BookScript book;
        book.cnn->Answer(
            MakeRows({{"pdID", VarType::Long}, {"数量", VarType::Double}, {"金额", VarType::Currency}}, each.rows));
        EXPECT_EQ(book.tables.Get商品成本(2, 7, "3", each.what).Scaled(), each.scaled);
    }
}

const Sent kOpeningText = Executed(
    "SELECT Sum(Bn.上期库存数量) AS 数量, Sum(Bn.上期库存金额) AS 金额 FROM 仓库余额表 AS Bn Where  "
    "bn.月份=3 And bn.dpID=2 And bn.pdID=7");
const Sent kInboundText = Executed(kInbound + "Where  Lst.月份=3 And Lst.dpID=2 And Rec.pdID=7");
const Sent kOutboundText = Executed(kOutbound + "Where  Lst.月份=3 And Lst.dpID=2 And Rec.pdID=7");
const Sent kCostText = Executed(
    "Select pdID,Sum(数量) As 数量,Sum(金额) As 金额 From 成本记录 Where 成本记录.CostID in (Select CostID "
    "From 成本目录 Where True  And dpID=2 And 月份=3) And pdID=7 Group by pdID");

/// The figures of a month, each queue of answers in the order of the statements.
struct StockCase {
    const char* name;
    const char* what;
    bool costUsed;
    std::vector<RecordsetPtr> answers;
    std::vector<Sent> sent;
    double answer;
};

std::vector<StockCase> StockCases() {
    const auto opening = Sums(10.5, Money(1050000)), inbound = Sums(4.25, Money(425001)),
               outbound = Sums(2.125, Money(212500)), cost = Sums(2.0, Money(200001));
    return {
        {"quantity", "数量", false, {opening, inbound, outbound}, {kOpeningText, kInboundText, kOutboundText}, 12.625},
        {"quantity, cost does not matter",
         "数量",
         true,
         {opening, inbound, outbound},
         {kOpeningText, kInboundText, kOutboundText},
         12.625},
        {"amount", "金额", false, {opening, inbound, outbound}, {kOpeningText, kInboundText, kOutboundText}, 126.2501},
        {"amount at cost", "金额", true, {opening, inbound, cost}, {kOpeningText, kInboundText, kCostText}, 127.5},
        {"ten thousandths are exact",
         "金额",
         false,
         {Sums(0.0, 0.1), Sums(0.0, Money(2000)), Sums(0.0, Money(3000))},
         {kOpeningText, kInboundText, kOutboundText},
         0},
        {"the opening figure becomes Currency first",
         "数量",
         false,
         {Sums(0.00004, Money(0)), Sums(0.0, Money(0)), Sums(0.0, Money(0))},
         {kOpeningText, kInboundText, kOutboundText},
         0},
        {"nothing at all", "数量", false, {}, {kOpeningText, kInboundText, kOutboundText}, 0},
        {"less than nothing",
         "数量",
         false,
         {Sums(1.0, Money(0)), Sums(1.0, Money(0)), Sums(3.5, Money(0))},
         {kOpeningText, kInboundText, kOutboundText},
         -1.5},
    };
}

TEST(Stock, QuantityAndAmount) {
    for (const StockCase& each : StockCases()) {
        for (const bool isSQL : {false, true}) {
            SCOPED_TRACE(each.name);
            BookScript current, stock;
            for (BookScript* book : {&current, &stock}) {
                book->tables.isSQL(isSQL);
                for (const auto& rows : each.answers) book->cnn->Answer(rows);
            }
            EXPECT_EQ(current.tables.Get本期库存(2, 7, 3, each.what, each.costUsed), each.answer);
            EXPECT_EQ(current.cnn->Statements(), each.sent);
            EXPECT_EQ(stock.tables.Get商品库存(2, 7, 3, each.what, each.costUsed), each.answer);
            EXPECT_EQ(stock.cnn->Statements(), each.sent);
        }
    }
}

TEST(Stock, WhatAsksForNothing) {
    const StatementCase cases[] = {
        {"month 0",
         [](CTables& t) {
             EXPECT_EQ(t.Get本期库存(2, 7, 0, "数量"), 0);
             EXPECT_EQ(t.Get本期库存(2, 7, 0, "金额", true), 0);
         },
         {}},
        {"no such figure",
         [](CTables& t) {
             EXPECT_EQ(t.Get本期库存(2, 7, 3, "单价"), 0);
             EXPECT_EQ(t.Get本期库存(2, 7, 3, "税额"), 0);
             EXPECT_EQ(t.Get本期库存(2, 7, 3, ""), 0);
             EXPECT_EQ(t.Get商品库存(2, 7, 3, "合计"), 0);
             EXPECT_EQ(t.Get商品库存(2, 7, 3, ""), 0);
         },
         {}},
    };
    ExpectStatements(cases);
}

TEST(Stock, MonthsBelowOne) {
    const std::vector<Sent> wholeBook = {
        Executed("SELECT Sum(Bn.上期库存数量) AS 数量, Sum(Bn.上期库存金额) AS 金额 FROM 仓库余额表 AS Bn "),
        Executed(kInbound), Executed(kOutbound)};
    const StatementCase cases[] = {
        {"month 0 is all months here", [](CTables& t) { t.Get商品库存(0, 0, 0, "数量"); }, wholeBook},
        {"only 0 is nothing there", [](CTables& t) { t.Get本期库存(0, 0, -1, "数量"); }, wholeBook},
    };
    ExpectStatements(cases);
}

TEST(StockPrice, FetchesBothOutboundAmountsAndTakesOne) {
    struct Case {
        bool costUsed;
        double price;
    };
    // (100 + 40 - 15) / (10 + 4 - 4), or with 20 for the outbound lines
    const Case cases[] = {{true, 12.5}, {false, 12}};
    for (const Case& each : cases) {
        for (const bool isSQL : {false, true}) {
            BookScript book;
            book.tables.isSQL(isSQL);
            const auto opening = Sums(10.0, Money(1000000)), inbound = Sums(4.0, Money(400000)),
                       outbound = Sums(4.0, Money(200000)), cost = Sums(3.0, Money(150000));
            for (const auto& rows : {opening, inbound, outbound, opening, inbound, cost, outbound})
                book.cnn->Answer(rows);
            EXPECT_EQ(book.tables.Get商品库存(2, 7, 3, "单价", each.costUsed), each.price);
            EXPECT_EQ(book.cnn->Statements(),
                      (std::vector<Sent>{kOpeningText, kInboundText, kOutboundText, kOpeningText, kInboundText,
                                         kCostText, kOutboundText}));
        }
    }
}

TEST(StockPrice, NoQuantityIsTheDivisionError) {
    BookScript book;
    EXPECT_EQ(FailureOf([&] { book.tables.Get商品库存(2, 7, 3, "单价"); }), 11) << "no row anywhere";
    EXPECT_EQ(book.cnn->Statements().size(), 7u) << "the amounts were fetched before";

    BookScript sold;
    const auto opening = Sums(2.0, Money(100000)), none = Sums(Variant::Null(), Variant::Null()),
               outbound = Sums(2.0, Money(90000));
    for (const auto& rows : {opening, none, outbound, opening, none, none, outbound}) sold.cnn->Answer(rows);
    EXPECT_EQ(FailureOf([&] { sold.tables.Get商品库存(2, 7, 3, "单价"); }), 11) << "an amount is left";
}

TEST(StockFailures, ZeroAfterAnErrorOfAStatement) {
    struct Case {
        const char* name;
        std::function<double(CTables&)> call;
    };
    const Case trapping[] = {
        {"Get上期库存", [](CTables& t) { return t.Get上期库存(2, 7, 3, "数量"); }},
        {"Get商品入库", [](CTables& t) { return t.Get商品入库(2, 7, 3, "数量").ToDouble(); }},
        {"Get商品出库", [](CTables& t) { return t.Get商品出库(2, 7, 3, "数量").ToDouble(); }},
        {"Get商品成本", [](CTables& t) { return t.Get商品成本(2, 7, "3", "数量").ToDouble(); }},
    };
    for (const Case& each : trapping) {
        SCOPED_TRACE(each.name);
        CTables unconnected;
        EXPECT_EQ(each.call(unconnected), 0);
        BookScript book;
        book.cnn->FailAt(1);
        EXPECT_EQ(each.call(book.tables), 0);
        EXPECT_EQ(book.cnn->Statements().size(), 1u);
    }
}

TEST(StockFailures, AFigureThatFailsCountsAsZero) {
    struct Case {
        int failing;
        double answer;
    };
    // 10 + 4 - 3
    const Case cases[] = {{1, 1}, {2, 7}, {3, 14}};
    for (const Case& each : cases) {
        SCOPED_TRACE(each.failing);
        BookScript current, stock;
        for (BookScript* book : {&current, &stock}) {
            const double figures[] = {10, 4, 3};
            for (int i = 0; i < 3; ++i)
                if (i + 1 != each.failing) book->cnn->Answer(Sums(figures[i], Money(0)));
            book->cnn->FailAt(each.failing);
        }
        EXPECT_EQ(current.tables.Get本期库存(2, 7, 3, "数量"), each.answer);
        EXPECT_EQ(stock.tables.Get商品库存(2, 7, 3, "数量"), each.answer);
    }
    CTables unconnected;
    EXPECT_EQ(unconnected.Get本期库存(2, 7, 3, "数量"), 0);
    EXPECT_EQ(unconnected.Get商品库存(2, 7, 3, "数量"), 0);
    EXPECT_EQ(FailureOf([&] { unconnected.Get商品库存(2, 7, 3, "单价"); }), 11);
}

TEST(StockFailures, AnOpeningFigureTooLargeIsTrappedByOneOnly) {
    BookScript current, stock;
    for (BookScript* book : {&current, &stock}) book->cnn->Answer(Sums(1e15, Money(0)));
    EXPECT_EQ(current.tables.Get本期库存(2, 7, 3, "数量"), 0);
    EXPECT_EQ(FailureOf([&] { stock.tables.Get商品库存(2, 7, 3, "数量"); }), 6);
}

}  // namespace
}  // namespace kpTables::test
