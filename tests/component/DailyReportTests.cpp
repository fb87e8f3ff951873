// The daily report: a day's sums per product, and a month's movements per day.
#include <gtest/gtest.h>

#include "DialectCase.h"
#include "kpTables/Convert.h"
#include "support/Failure.h"

namespace kpTables::test {
namespace {

// rs日报记录

const std::string kJetInbound =
    "SELECT Prod.ClassCode, rec.pdID,Prod.商品名称,Prod.商品编号, Prod.规格, Prod.型号, "
    "Prod.计量单位,Prod.进位方法,Prod.最低库存,Prod.最高库存, Sum(Rec.数量) AS 数量, Avg(Rec.除税单价) AS 单价, "
    "Sum(Rec.除税金额) AS 金额, Sum(Rec.税额) AS 税额, Sum(Rec.金额) AS 合计 FROM (入库记录 AS rec INNER JOIN 入库目录 "
    "AS lst ON Rec.BillID = Lst.BillID) INNER JOIN 商品设置 AS Prod ON Rec.pdID = Prod.pdID ";
const std::string kJetOutbound =
    "SELECT Prod.ClassCode, rec.pdID,Prod.商品名称,Prod.商品编号, Prod.规格, Prod.型号, "
    "Prod.计量单位,Prod.进位方法,Prod.最低库存,Prod.最高库存, Sum(Rec.数量) AS 数量, Avg(Rec.除税单价) AS 单价, "
    "Sum(Rec.除税金额) AS 金额, Sum(Rec.税额) AS 税额, Sum(Rec.金额) AS 合计 FROM (出库记录 AS rec INNER JOIN 出库目录 "
    "AS lst ON Rec.BillID = Lst.BillID) INNER JOIN 商品设置 AS Prod ON Rec.pdID = Prod.pdID ";
const std::string kJetEnd =
    " GROUP BY Prod.ClassCode, rec.pdID,Prod.商品名称,Prod.商品编号,Prod.规格, Prod.型号, Prod.计量单位, "
    "Prod.进位方法,Prod.最低库存,Prod.最高库存  ORDER BY Prod.ClassCode,Prod.商品编号 ";
const std::string kServer =
    "SELECT Prod.ClassCode, rec.pdID, Prod.商品名称, Prod.商品编号, Prod.规格, Prod.型号,Prod.计量单位 , "
    "Prod.进位方法, Prod.最低库存, Prod.最高库存, Sum(rec.数量) AS 数量, AVG(rec.除税单价) AS 单价, SUM(rec.除税金额) "
    "AS 金额, SUM(rec.税额) AS 税额, SUM(rec.金额) AS 合计  FROM 出库记录 rec INNER JOIN  出库目录 lst ON rec.BillID = "
    "lst.BillID INNER JOIN  商品设置 Prod ON rec.pdID = Prod.pdID ";
const std::string kServerEnd =
    " GROUP BY Prod.ClassCode, rec.pdID, Prod.商品名称, Prod.商品编号, Prod.规格,Prod.型号 , Prod.计量单位, "
    "Prod.进位方法, Prod.最低库存, Prod.最高库存  ORDER BY Prod.ClassCode, Prod.商品编号";
const std::string kJetOnTheDay = "Where (CDATE(年份 & '-' & 月份 & '-' & 日子)=#2004-3-7#) ";
const std::string kServerOnTheDay =
    "Where (CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + '-' + CAST(日子 AS char(2)) AS "
    "DATETIME)=CAST('2004-3-7' AS DATETIME)) ";

struct RecordCase {
    const char* name;
    std::int32_t warehouse;
    std::int32_t partner;
    const char* which;
    const std::string& jetTables;
    const char* pieces;
};

TEST(DayRecords, Filters) {
    const RecordCase cases[] = {
        {"inbound, all", 0, 0, "入库", kJetInbound, ""},
        {"outbound, negative ids", -1, -1, "出库", kJetOutbound, ""},
        {"warehouse", 1, 0, "入库", kJetInbound, " And Lst.dpID=1"},
        {"partner", 0, 1, "出库", kJetOutbound, " And Lst.ksID=1"},
        {"bought", 0, 0, "购进", kJetInbound, " And (Lst.单据类型='普通发票' OR Lst.单据类型='增值税发票') "},
        {"sold", 0, 0, "销售", kJetOutbound, " And (Lst.单据类型='普通发票' OR Lst.单据类型='增值税发票') "},
        {"transferred", 0, 0, "调拨", kJetOutbound, " And (Lst.单据类型='调拨单') "},
        {"transferred in", 0, 0, "调入", kJetInbound, ""},
        {"transferred out", 0, 0, "调出", kJetOutbound, ""},
        {"everything, bought", 7, 12, "购进", kJetInbound,
         " And Lst.dpID=7 And Lst.ksID=12 And (Lst.单据类型='普通发票' OR Lst.单据类型='增值税发票') "},
        {"everything, transferred", 7, 12, "调拨", kJetOutbound,
         " And Lst.dpID=7 And Lst.ksID=12 And (Lst.单据类型='调拨单') "},
        {"a part of the inbound names", 0, 0, "入", kJetInbound, ""},
        {"no name is a part of any", 0, 0, "", kJetInbound, ""},
        {"with a blank it is none of them", 0, 0, "入库 ", kJetOutbound, ""},
        {"another", 0, 0, "成本", kJetOutbound, ""},
    };
    const Date day = *Date::ParseIso("2004-03-07");
    for (const RecordCase& each : cases) {
        const DialectCase rows[] = {
            {each.name,
             [&](CTables& t) { t.rs日报记录(each.warehouse, each.partner, day, each.which, false); },
             {Executed(each.jetTables + kJetOnTheDay + each.pieces + kJetEnd)},
             {Executed(kServer + kServerOnTheDay + each.pieces + kServerEnd)}}};
        ExpectDialects(rows);
    }
}

TEST(DayRecords, Days) {
    const auto day = [](const char* iso) { return *Date::ParseIso(iso); };
    const DialectCase cases[] = {
        {"a day, as it is without rTotal",
         [=](CTables& t) { t.rs日报记录(0, 0, day("2004-03-07"), "出库"); },
         {Executed(kJetOutbound + kJetOnTheDay + kJetEnd)},
         {Executed(kServer + kServerOnTheDay + kServerEnd)}},
        {"a day with its time",
         [=](CTables& t) { t.rs日报记录(0, 0, day("2004-12-31T08:05:00"), "出库", false); },
         {Executed(kJetOutbound + "Where (CDATE(年份 & '-' & 月份 & '-' & 日子)=#2004-12-31 8:05:00#) " + kJetEnd)},
         {Executed(kServer +
                   "Where (CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + '-' + CAST(日子 AS char(2)) AS "
                   "DATETIME)=CAST('2004-12-31 8:05:00' AS DATETIME)) " +
                   kServerEnd)}},
        {"its month before it",
         [=](CTables& t) { t.rs日报记录(0, 0, day("2004-03-07"), "入库", true); },
         {Executed(kJetInbound +
                   "Where (CDATE(年份 & '-' & 月份 & '-' & 日子)>=#2004-3-1#) And (CDATE(年份 & '-' & 月份 & '-' & "
                   "日子)<#2004-3-7#) " +
                   kJetEnd)},
         {Executed(kServer +
                   "Where (CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + '-' + CAST(日子 AS char(2)) AS "
                   "DATETIME)>=CAST(2004-3-1 AS DATETIME)) And (CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS "
                   "char(2)) + '-' + CAST(日子 AS char(2)) AS DATETIME)<CAST('2004-3-7' AS DATETIME)) " +
                   kServerEnd)}},
        {"nothing before the first, with filters behind",
         [=](CTables& t) { t.rs日报记录(7, 12, day("2003-12-01"), "购进", true); },
         {Executed(kJetInbound +
                   "Where (CDATE(年份 & '-' & 月份 & '-' & 日子)>=#2003-12-1#) And (CDATE(年份 & '-' & 月份 & '-' & "
                   "日子)<#2003-12-1#)  And Lst.dpID=7 And Lst.ksID=12 And (Lst.单据类型='普通发票' OR "
                   "Lst.单据类型='增值税发票') " +
                   kJetEnd)},
         {Executed(kServer +
                   "Where (CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + '-' + CAST(日子 AS char(2)) AS "
                   "DATETIME)>=CAST(2003-12-1 AS DATETIME)) And (CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS "
                   "char(2)) + '-' + CAST(日子 AS char(2)) AS DATETIME)<CAST('2003-12-1' AS DATETIME))  And "
                   "Lst.dpID=7 And Lst.ksID=12 And (Lst.单据类型='普通发票' OR Lst.单据类型='增值税发票') " +
                   kServerEnd)}},
        {"a month's first keeps the time",
         [=](CTables& t) { t.rs日报记录(0, 0, day("2004-02-29T12:30:00"), "出库", true); },
         {Executed(kJetOutbound +
                   "Where (CDATE(年份 & '-' & 月份 & '-' & 日子)>=#2004-2-1 12:30:00#) And (CDATE(年份 & '-' & 月份 & "
                   "'-' & 日子)<#2004-2-29 12:30:00#) " +
                   kJetEnd)},
         {Executed(kServer +
                   "Where (CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + '-' + CAST(日子 AS char(2)) AS "
                   "DATETIME)>=CAST(2004-2-1 12:30:00 AS DATETIME)) And (CAST(CAST(年份 AS char(4)) + '-' + "
                   "CAST(月份 AS char(2)) + '-' + CAST(日子 AS char(2)) AS DATETIME)<CAST('2004-2-29 12:30:00' AS "
                   "DATETIME)) " +
                   kServerEnd)}},
    };
    ExpectDialects(cases);
}

TEST(DayRecords, HandsOutTheConnectionsRowsOrItsError) {
    const Date day = *Date::ParseIso("2004-03-07");
    for (const bool isSQL : {false, true}) {
        const auto run = [&](CTables& t) {
            t.isSQL(isSQL);
            return t.rs日报记录(0, 0, day, "入库");
        };
        ExpectHandsOut(isSQL ? "SQL Server" : "Jet", run);
        CTables tables;
        EXPECT_EQ(FailureOf([&] { run(tables); }), 91);
        const auto cnn = std::make_shared<ScriptedConnection>();
        cnn->FailAt(1);
        tables.Cnn(cnn);
        EXPECT_EQ(FailureOf([&] { run(tables); }), kRefused);
    }
}

// rs日报列表

TEST(MonthDays, Statements) {
    const StatementCase cases[] = {
        {"all warehouses",
         [](CTables& t) { t.rs日报列表(3, 0); },
         {Executed("SELECT Lst.月份, Lst.日子, Sum(Rec.除税金额) AS 金额, Sum(Rec.数量) AS 数量 FROM 入库目录 AS Lst "
                   "INNER JOIN 入库记录 AS Rec ON Lst.BillID = Rec.BillID Where 月份=3 GROUP BY Lst.月份, Lst.日子 "
                   "Order by 日子"),
          Executed("SELECT Lst.月份, Lst.日子, Sum(Rec.除税金额) AS 金额, Sum(Rec.数量) AS 数量 FROM 出库目录 AS Lst "
                   "INNER JOIN 出库记录 AS Rec ON Lst.BillID = Rec.BillID Where 月份=3 GROUP BY Lst.月份, Lst.日子 "
                   "Order by 日子"),
          Executed("Select Sum(上期库存数量) As 数量,Sum(上期库存金额) As 金额 From 仓库余额表 Where 月份=3")}},
        {"negative month and warehouse",
         [](CTables& t) { t.rs日报列表(-1, -1); },
         {Executed("SELECT Lst.月份, Lst.日子, Sum(Rec.除税金额) AS 金额, Sum(Rec.数量) AS 数量 FROM 入库目录 AS Lst "
                   "INNER JOIN 入库记录 AS Rec ON Lst.BillID = Rec.BillID Where 月份=-1 GROUP BY Lst.月份, Lst.日子 "
                   "Order by 日子"),
          Executed("SELECT Lst.月份, Lst.日子, Sum(Rec.除税金额) AS 金额, Sum(Rec.数量) AS 数量 FROM 出库目录 AS Lst "
                   "INNER JOIN 出库记录 AS Rec ON Lst.BillID = Rec.BillID Where 月份=-1 GROUP BY Lst.月份, Lst.日子 "
                   "Order by 日子"),
          Executed("Select Sum(上期库存数量) As 数量,Sum(上期库存金额) As 金额 From 仓库余额表 Where 月份=-1")}},
        {"a warehouse",
         [](CTables& t) { t.rs日报列表(12, 1); },
         {Executed("SELECT Lst.月份, Lst.日子, Sum(Rec.除税金额) AS 金额, Sum(Rec.数量) AS 数量 FROM 入库目录 AS Lst "
                   "INNER JOIN 入库记录 AS Rec ON Lst.BillID = Rec.BillID Where 月份=12 And Lst.dpID=1 GROUP BY "
                   "Lst.月份, Lst.日子 Order by 日子"),
          Executed("SELECT Lst.月份, Lst.日子, Sum(Rec.除税金额) AS 金额, Sum(Rec.数量) AS 数量 FROM 出库目录 AS Lst "
                   "INNER JOIN 出库记录 AS Rec ON Lst.BillID = Rec.BillID Where 月份=12 And Lst.dpID=1 GROUP BY "
                   "Lst.月份, Lst.日子 Order by 日子"),
          Executed("Select Sum(上期库存数量) As 数量,Sum(上期库存金额) As 金额 From 仓库余额表 Where 月份=12 And "
                   "dpID=1")}},
    };
    ExpectStatements(cases);
}

/// A day's movements as the database sums them.
struct Movement {
    std::int16_t day;
    Variant quantity;
    Variant amount;
};

RecordsetPtr Sums(const std::vector<Movement>& movements) {
    Rows rows;
    for (const auto& each : movements) rows.push_back({std::int16_t{3}, each.day, each.amount, each.quantity});
    return MakeRows(
        {{"月份", VarType::Integer}, {"日子", VarType::Integer}, {"金额", VarType::Double}, {"数量", VarType::Double}},
        rows);
}

RecordsetPtr Opening(const Variant& quantity, const Variant& amount) {
    return MakeRows({{"数量", VarType::Double}, {"金额", VarType::Double}}, {{quantity, amount}});
}

struct Month {
    RecordsetPtr inbound;
    RecordsetPtr outbound;
    RecordsetPtr opening;
};

RecordsetPtr Report(const Month& month) {
    const auto cnn = std::make_shared<ScriptedConnection>();
    cnn->Answer(month.inbound).Answer(month.outbound).Answer(month.opening);
    CTables tables;
    tables.Cnn(cnn);
    return tables.rs日报列表(3, 0);
}

/// All rows from the current one on, as numbers.
std::vector<std::vector<double>> NumbersOf(Recordset& rows) {
    std::vector<std::vector<double>> numbers;
    for (; !rows.Eof(); rows.MoveNext()) {
        auto& row = numbers.emplace_back();
        for (int i = 0; i < rows.FieldCount(); ++i) row.push_back(CDbl(rows.GetValue(i)));
    }
    return numbers;
}

TEST(MonthDays, FieldsOfARecordsetOfItsOwn) {
    const auto report = Report({Sums({{5, 1.0, 2.0}}), Sums({}), Opening(0.0, 0.0)});
    const FieldInfo fields[] = {
        {"日子", VarType::Long},       {"期初数量", VarType::Double}, {"期初金额", VarType::Double},
        {"入库数量", VarType::Double}, {"入库金额", VarType::Double}, {"出库数量", VarType::Double},
        {"出库金额", VarType::Double}, {"库存数量", VarType::Double}, {"库存金额", VarType::Double},
    };
    ASSERT_EQ(report->FieldCount(), 9);
    for (int i = 0; i < 9; ++i) {
        EXPECT_EQ(report->FieldAt(i).name, fields[i].name);
        EXPECT_EQ(report->FieldAt(i).type, fields[i].type);
    }
    report->SetValue(1, 7.5);  // the host may go on editing it
    report->Update();
    EXPECT_TRUE(report->GetValue(1).Is(7.5));
    EXPECT_TRUE(report->GetValue(0).Is(std::int32_t{5}));
}

TEST(MonthDays, Figures) {
    const Variant null = Variant::Null();
    struct Case {
        const char* name;
        Month month;
        std::vector<std::vector<double>> days;
    };
    const Case cases[] = {
        {"a day with both directions",
         {Sums({{5, 4.0, 24.0}}), Sums({{5, 3.0, 21.0}}), Opening(10.0, 50.0)},
         {{5, 10, 50, 4, 24, 3, 21, 11, 53}}},
        {"stock is carried from day to day",
         {Sums({{1, 4.0, 24.0}, {9, 2.0, 14.0}}), Sums({{9, 5.0, 40.0}}), Opening(10.0, 50.0)},
         {{1, 10, 50, 4, 24, 0, 0, 14, 74}, {9, 14, 74, 2, 14, 5, 40, 11, 48}}},
        {"outbound-only days come last, through which the stock passes there",
         {Sums({{10, 1.0, 10.0}, {20, 2.0, 20.0}}), Sums({{2, 1.0, 5.0}, {10, 3.0, 30.0}, {25, 4.0, 8.0}}),
          Opening(100.0, 1000.0)},
         {{10, 100, 1000, 1, 10, 3, 30, 98, 980},
          {20, 98, 980, 2, 20, 0, 0, 100, 1000},
          {2, 100, 1000, 0, 0, 1, 5, 99, 995},
          {25, 99, 995, 0, 0, 4, 8, 95, 987}}},
        {"outbound days alone",
         {Sums({}), Sums({{3, 1.0, 2.0}, {30, 1.5, 3.0}}), Opening(2.0, 4.0)},
         {{3, 2, 4, 0, 0, 1, 2, 1, 2}, {30, 1, 2, 0, 0, 1.5, 3, -0.5, -1}}},
        {"Null counts 0 everywhere",
         {Sums({{5, null, null}, {6, 1.0, null}}), Sums({{5, null, null}, {6, null, 2.0}}), Opening(null, null)},
         {{5, 0, 0, 0, 0, 0, 0, 0, 0}, {6, 0, 0, 1, 0, 0, 2, 1, -2}}},
        {"amounts go on in steps of a ten-thousandth",
         {Sums({{1, 0.0, 0.00004}, {2, 0.0, 0.00004}, {3, 0.0, 0.00016}}), Sums({}), Opening(0.0, 10.00006)},
         {{1, 0, 10.0001, 0, 0.00004, 0, 0, 0, 10.0001},
          {2, 0, 10.0001, 0, 0.00004, 0, 0, 0, 10.0001},
          {3, 0, 10.0001, 0, 0.00016, 0, 0, 0, 10.0003}}},
        {"quantities stay Doubles, in before out",
         {Sums({{1, 0.2, 0.0}}), Sums({{1, 0.3, 0.0}}), Opening(0.1, 0.0)},
         {{1, 0.1, 0, 0.2, 0, 0.3, 0, (0.1 + 0.2) - 0.3, 0}}},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.name);
        const auto report = Report(each.month);
        EXPECT_EQ(report->RecordCount(), static_cast<std::int32_t>(each.days.size()));
        EXPECT_EQ(report->AbsolutePosition(), 1);
        EXPECT_EQ(NumbersOf(*report), each.days);
    }
}

TEST(MonthDays, AMonthWithoutBillsHasNone) {
    const auto report = Report({Sums({}), Sums({}), Opening(10.0, 50.0)});
    ASSERT_NE(report, nullptr);
    EXPECT_EQ(report->RecordCount(), 0);
    EXPECT_TRUE(report->Eof());
    EXPECT_EQ(report->FieldCount(), 9);
}

TEST(MonthDays, EveryErrorReachesTheCaller) {
    CTables tables;
    EXPECT_EQ(FailureOf([&] { tables.rs日报列表(3, 0); }), 91);
    for (const int failing : {1, 2, 3}) {
        SCOPED_TRACE(failing);
        const auto cnn = std::make_shared<ScriptedConnection>();
        cnn->Answer(Sums({{5, 1.0, 2.0}})).Answer(Sums({{6, 1.0, 2.0}})).FailAt(failing);
        tables.Cnn(cnn);
        EXPECT_EQ(FailureOf([&] { tables.rs日报列表(3, 0); }), kRefused);
        EXPECT_EQ(cnn->Statements().size(), static_cast<std::size_t>(failing));
    }
}

}  // namespace
}  // namespace kpTables::test
