// The filtered list of bills: statements, results and failures.
#include <gtest/gtest.h>

#include <span>

#include "kpTables/CTables.h"
#include "support/Failure.h"
#include "support/ScriptedConnection.h"

namespace kpTables::test {
namespace {

/// What the list is asked for, in the order of its parameters. Nothing is given at first.
struct Filters {
    Variant which = "入库";
    Variant kind = "";
    Variant firstDay = "";
    Variant lastDay = "";
    Variant firstNumber = "";
    Variant lastNumber = "";
    Variant warehouse = 0;
    Variant partner = 0;
    std::int32_t project = 0;
    Variant handler = "";
    Variant counterpart = "";
    Variant packing = "";
    Variant packingOperator = "";
    Variant slot = "";
    Variant slotOperator = "";
    Variant term = "";
    Variant termOperator = "";
    Variant minQuantity = 0;
    Variant maxQuantity = 0;
    Variant minAmount = 0;
    Variant maxAmount = 0;
};

RecordsetPtr List(CTables& tables, Filters f) {
    return tables.rs单据列表(f.which, f.kind, f.firstDay, f.lastDay, f.firstNumber, f.lastNumber, f.warehouse,
                             f.partner, f.project, f.handler, f.counterpart, f.packing, f.packingOperator, f.slot,
                             f.slotOperator, f.term, f.termOperator, f.minQuantity, f.maxQuantity, f.minAmount,
                             f.maxAmount);
}

/// The one statement that the list sends.
std::string StatementOf(const Filters& filters, bool isSQL) {
    const auto cnn = std::make_shared<ScriptedConnection>();
    CTables tables;
    tables.Cnn(cnn);
    tables.isSQL(isSQL);
    List(tables, filters);
    if (cnn->Statements().size() != 1 || cnn->Statements()[0].op != "execute") return "not one statement executed";
    return cnn->Statements()[0].text;
}

const std::string kSelect =
    "SELECT Lst.年份, Lst.月份, Lst.日子, Lst.单据类型, Lst.类型, Lst.单据编号, Sum(Rec.数量) AS 数量, "
    "Sum(Rec.除税金额) AS 金额,Sum(Rec.税额) As 税额,Sum(Rec.金额) As 合计, Lst.BillID, Lst.录入员, Lst.录入日期, "
    "Lst.审核员, Lst.审核日期, Lst.说明, dp.仓库名称, ks.企业名称,pj.项目名称,pj.项目编号 ";
const std::string kFromInbound =
    "FROM 项目设置 AS pj RIGHT JOIN (仓库设置 AS dp RIGHT JOIN (厂商资料 AS ks RIGHT JOIN (入库目录 AS Lst LEFT JOIN "
    "入库记录 AS Rec ON Lst.BillID = Rec.BillID) ON ks.KSID = Lst.ksID) ON dp.dpID = Lst.dpID) ON pj.项目ID = "
    "Lst.pjID ";
const std::string kFromOutbound =
    "FROM 项目设置 AS pj RIGHT JOIN (仓库设置 AS dp RIGHT JOIN (客户资料 AS ks RIGHT JOIN (出库目录 AS Lst LEFT JOIN "
    "出库记录 AS Rec ON Lst.BillID = Rec.BillID) ON ks.KSID = Lst.ksID) ON dp.dpID = Lst.dpID) ON pj.项目ID = "
    "Lst.pjID ";
const std::string kGroup =
    " GROUP BY Lst.年份, Lst.月份, Lst.日子, Lst.单据类型, Lst.类型, Lst.单据编号, Lst.BillID, Lst.录入员, "
    "Lst.录入日期, Lst.审核员, Lst.审核日期, Lst.说明, Rec.dpID, dp.仓库名称,ks.企业名称,pj.项目名称,pj.项目编号 ";
const std::string kOrder = " Order by Lst.月份,Lst.单据类型,Lst.单据编号 ";

TEST(BillList, WithoutFiltersHasNeitherWhereNorHaving) {
    const std::string inbound =
        "SELECT Lst.年份, Lst.月份, Lst.日子, Lst.单据类型, Lst.类型, Lst.单据编号, Sum(Rec.数量) AS 数量, "
        "Sum(Rec.除税金额) AS 金额,Sum(Rec.税额) As 税额,Sum(Rec.金额) As 合计, Lst.BillID, Lst.录入员, Lst.录入日期, "
        "Lst.审核员, Lst.审核日期, Lst.说明, dp.仓库名称, ks.企业名称,pj.项目名称,pj.项目编号 FROM 项目设置 AS pj "
        "RIGHT "
        "JOIN (仓库设置 AS dp RIGHT JOIN (厂商资料 AS ks RIGHT JOIN (入库目录 AS Lst LEFT JOIN 入库记录 AS Rec ON "
        "Lst.BillID = Rec.BillID) ON ks.KSID = Lst.ksID) ON dp.dpID = Lst.dpID) ON pj.项目ID = Lst.pjID  GROUP BY "
        "Lst.年份, Lst.月份, Lst.日子, Lst.单据类型, Lst.类型, Lst.单据编号, Lst.BillID, Lst.录入员, Lst.录入日期, "
        "Lst.审核员, Lst.审核日期, Lst.说明, Rec.dpID, dp.仓库名称,ks.企业名称,pj.项目名称,pj.项目编号  Order by "
        "Lst.月份,Lst.单据类型,Lst.单据编号 ";
    for (const bool isSQL : {false, true}) EXPECT_EQ(StatementOf({}, isSQL), inbound);
}

TEST(BillList, EveryFilterAtOnce) {
    Filters all{"出库",
                "销售",
                *Date::ParseIso("2004-03-07"),
                "2004-12-31",
                "A01",
                "A99",
                3,
                12,
                7,
                "张三",
                "李四",
                "箱",
                "<>",
                "R1",
                "=",
                30,
                ">=",
                1.5,
                200,
                10,
                99999};
    const std::string before =
        "SELECT Lst.年份, Lst.月份, Lst.日子, Lst.单据类型, Lst.类型, Lst.单据编号, Sum(Rec.数量) AS 数量, "
        "Sum(Rec.除税金额) AS 金额,Sum(Rec.税额) As 税额,Sum(Rec.金额) As 合计, Lst.BillID, Lst.录入员, Lst.录入日期, "
        "Lst.审核员, Lst.审核日期, Lst.说明, dp.仓库名称, ks.企业名称,pj.项目名称,pj.项目编号 FROM 项目设置 AS pj "
        "RIGHT "
        "JOIN (仓库设置 AS dp RIGHT JOIN (客户资料 AS ks RIGHT JOIN (出库目录 AS Lst LEFT JOIN 出库记录 AS Rec ON "
        "Lst.BillID = Rec.BillID) ON ks.KSID = Lst.ksID) ON dp.dpID = Lst.dpID) ON pj.项目ID = Lst.pjID  WHERE  "
        "类型='销售' And Lst.dpID=3 And Lst.ksID=12 And Lst.pjID=7 And ";
    const std::string after =
        " And (Lst.单据编号>='A01' And Lst.单据编号<='A99')  And 经手人='张三' And 交接人='李四' And 包装='箱' And "
        "包装='箱' GROUP BY Lst.年份, Lst.月份, Lst.日子, Lst.单据类型, Lst.类型, Lst.单据编号, Lst.BillID, "
        "Lst.录入员, Lst.录入日期, Lst.审核员, Lst.审核日期, Lst.说明, Rec.dpID, "
        "dp.仓库名称,ks.企业名称,pj.项目名称,pj.项目编号 HAVING (Sum(Rec.数量)>=1.5 And Sum(Rec.数量)<=200) And "
        "(Sum(Rec.除税金额)>=10 And Sum(Rec.除税金额)<=99999) Order by Lst.月份,Lst.单据类型,Lst.单据编号 ";
    EXPECT_EQ(StatementOf(all, false),
              before +
                  "((CDATE(年份 & '-' & 月份 & '-' & 日子)>=#2004-3-7#) And (CDATE(年份 & '-' & "
                  "月份 & '-' & 日子)<=#2004-12-31#))" +
                  after);
    EXPECT_EQ(
        StatementOf(all, true),
        before +
            "(CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + '-' + CAST(日子 AS char(2)) AS "
            "DATETIME)>=CAST('2004-3-7' AS DATETIME) And CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + "
            "'-' + CAST(日子 AS char(2)) AS DATETIME)<=CAST('2004-12-31' AS DATETIME))" +
            after);
}

TEST(BillList, OnlyInboundSelectsTheInboundTables) {
    struct Case {
        Variant which;
        const std::string& from;
    };
    const Case cases[] = {
        {"入库", kFromInbound},   {"出库", kFromOutbound}, {"成本", kFromOutbound},          {"", kFromOutbound},
        {"入库 ", kFromOutbound}, {0, kFromOutbound},      {Variant::Null(), kFromOutbound}, {Variant(), kFromOutbound},
    };
    for (const Case& each : cases)
        EXPECT_EQ(StatementOf({.which = each.which}, false), kSelect + each.from + kGroup + kOrder)
            << Shown(each.which);
}

struct ConditionCase {
    const char* name;
    Filters filters;
    std::string where;
};

void ExpectConditions(std::span<const ConditionCase> cases) {
    for (const ConditionCase& each : cases)
        for (const bool isSQL : {false, true})
            EXPECT_EQ(StatementOf(each.filters, isSQL), kSelect + kFromInbound + each.where + kGroup + kOrder)
                << each.name;
}

TEST(BillList, TextFilters) {
    const ConditionCase cases[] = {
        {"kind", {.kind = "采购"}, " WHERE  类型='采购'"},
        {"kind, a blank", {.kind = " "}, " WHERE  类型=' '"},
        {"kind, a quote", {.kind = "O'X"}, " WHERE  类型='O'X'"},
        {"kind, a number", {.kind = 0}, " WHERE  类型='0'"},
        {"kind, Null", {.kind = Variant::Null()}, " WHERE  类型=''"},
        {"kind, Empty", {.kind = Variant()}, ""},
        {"handler", {.handler = "张三"}, " WHERE  经手人='张三'"},
        {"handler, a number", {.handler = 7}, " WHERE  经手人='7'"},
        {"handler, Null", {.handler = Variant::Null()}, " WHERE  经手人=''"},
        {"handler, Empty", {.handler = Variant()}, ""},
        {"counterpart", {.counterpart = "李四"}, " WHERE  交接人='李四'"},
        {"counterpart, 0", {.counterpart = 0}, " WHERE  交接人='0'"},
        {"counterpart, Null", {.counterpart = Variant::Null()}, " WHERE  交接人=''"},
        {"counterpart, Empty", {.counterpart = Variant()}, ""},
        {"packing stands twice", {.packing = "箱"}, " WHERE  包装='箱' And 包装='箱'"},
        {"packing, 0", {.packing = 0}, " WHERE  包装='0' And 包装='0'"},
        {"packing, Null", {.packing = Variant::Null()}, " WHERE  包装='' And 包装=''"},
        {"packing, Empty", {.packing = Variant()}, ""},
    };
    ExpectConditions(cases);
}

TEST(BillList, IdFilters) {
    const ConditionCase cases[] = {
        {"warehouse", {.warehouse = 3}, " WHERE  Lst.dpID=3"},
        {"warehouse, negative", {.warehouse = -1}, " WHERE  Lst.dpID=-1"},
        {"warehouse, 16-bit", {.warehouse = std::int16_t{4}}, " WHERE  Lst.dpID=4"},
        {"warehouse, a text", {.warehouse = "5"}, " WHERE  Lst.dpID=5"},
        {"warehouse, a text that is 0", {.warehouse = "0.0"}, ""},
        {"warehouse, Null", {.warehouse = Variant::Null()}, " WHERE  Lst.dpID="},
        {"warehouse, Empty", {.warehouse = Variant()}, ""},
        {"partner", {.partner = 2147483647}, " WHERE  Lst.ksID=2147483647"},
        {"partner, negative", {.partner = -9}, " WHERE  Lst.ksID=-9"},
        {"partner, a text", {.partner = "12"}, " WHERE  Lst.ksID=12"},
        {"partner, a text that is 0", {.partner = "0"}, ""},
        {"partner, Null", {.partner = Variant::Null()}, " WHERE  Lst.ksID="},
        {"partner, Empty", {.partner = Variant()}, ""},
        {"project", {.project = 7}, " WHERE  Lst.pjID=7"},
        {"project, negative", {.project = -7}, " WHERE  Lst.pjID=-7"},
        {"all ids", {.warehouse = 1, .partner = 2, .project = 3}, " WHERE  Lst.dpID=1 And Lst.ksID=2 And Lst.pjID=3"},
    };
    ExpectConditions(cases);
}

TEST(BillList, NumberRange) {
    const ConditionCase cases[] = {
        {"first", {.firstNumber = "A01"}, " WHERE  Lst.单据编号>='A01' "},
        {"last", {.lastNumber = "A99"}, " WHERE  Lst.单据编号<='A99' "},
        {"both", {.firstNumber = "A01", .lastNumber = "A99"}, " WHERE  (Lst.单据编号>='A01' And Lst.单据编号<='A99') "},
        {"a number", {.firstNumber = 0}, " WHERE  Lst.单据编号>='0' "},
        {"Null and Empty", {.firstNumber = Variant::Null(), .lastNumber = Variant()}, ""},
    };
    ExpectConditions(cases);
}

TEST(BillList, FiltersWithoutEffect) {
    const ConditionCase cases[] = {
        {"packing operator", {.packingOperator = "<>"}, ""},
        {"slot", {.slot = "R1"}, ""},
        {"slot operator", {.slotOperator = "<>"}, ""},
        {"term", {.term = 30}, ""},
        {"term operator", {.termOperator = ">="}, ""},
        {"all, of any type",
         {.packingOperator = Variant::Null(),
          .slot = Variant(),
          .slotOperator = 0,
          .term = "abc",
          .termOperator = true},
         ""},
        {"beside a packing",
         {.packing = "箱", .packingOperator = "<>", .slot = "R1", .slotOperator = "=", .term = 30, .termOperator = ">"},
         " WHERE  包装='箱' And 包装='箱'"},
    };
    ExpectConditions(cases);
}

TEST(BillList, DateRangeFollowsTheDialect) {
    struct Case {
        Variant first, last;
        const char* jet;
        const char* server;
    };
    const Case cases[] = {
        {*Date::ParseIso("2004-03-07T10:20:30"), "", " WHERE  (CDATE(年份 & '-' & 月份 & '-' & 日子)>=#2004-3-7#) ",
         " WHERE  CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + '-' + CAST(日子 AS char(2)) AS "
         "DATETIME)>=CAST('2004-3-7' AS DATETIME) "},
        {Variant(), "2004-12-31", " WHERE  (CDATE(年份 & '-' & 月份 & '-' & 日子)<=#2004-12-31#)",
         " WHERE  CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + '-' + CAST(日子 AS char(2)) AS "
         "DATETIME)<=CAST('2004-12-31' AS DATETIME)"},
        {"2004-3-7", "2004-3-7",
         " WHERE  ((CDATE(年份 & '-' & 月份 & '-' & 日子)>=#2004-3-7#) And (CDATE(年份 & '-' & 月份 & '-' & "
         "日子)<=#2004-3-7#))",
         " WHERE  (CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + '-' + CAST(日子 AS char(2)) AS "
         "DATETIME)>=CAST('2004-3-7' AS DATETIME) And CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + '-' + "
         "CAST(日子 AS char(2)) AS DATETIME)<=CAST('2004-3-7' AS DATETIME))"},
        {Variant::Null(), Variant::Null(), "", ""},
        {Variant(), Variant(), "", ""},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(Shown(each.first) + " to " + Shown(each.last));
        const Filters filters{.firstDay = each.first, .lastDay = each.last};
        EXPECT_EQ(StatementOf(filters, false), kSelect + kFromInbound + each.jet + kGroup + kOrder);
        EXPECT_EQ(StatementOf(filters, true), kSelect + kFromInbound + each.server + kGroup + kOrder);
    }
}

TEST(BillList, Having) {
    struct Case {
        const char* name;
        Variant minQuantity, maxQuantity, minAmount, maxAmount;
        const char* having;
    };
    const Variant null = Variant::Null();
    const Case cases[] = {
        {"none", 0, 0, 0, 0, ""},
        {"Empty", {}, {}, {}, {}, ""},
        {"texts that are 0", "0", " 0 ", "0.00", "-0", ""},
        {"False", false, false, false, false, ""},
        {"quantity, from", 5, 0, 0, 0, "HAVING Sum(Rec.数量)>=5"},
        {"quantity, to", 0, 50, 0, 0, "HAVING Sum(Rec.数量)<=50"},
        {"quantity, both", 5, 50, 0, 0, "HAVING (Sum(Rec.数量)>=5 And Sum(Rec.数量)<=50)"},
        {"amount, from", 0, 0, 10, 0, " HAVING Sum(Rec.除税金额)>=10"},
        {"amount, to", 0, 0, 0, 99, " HAVING Sum(Rec.除税金额)<=99"},
        {"amount, both", 0, 0, 10, 99, " HAVING (Sum(Rec.除税金额)>=10 And Sum(Rec.除税金额)<=99)"},
        {"both, from", 5, 0, 10, 0, "HAVING Sum(Rec.数量)>=5 And Sum(Rec.除税金额)>=10"},
        {"both, to", 0, 50, 0, 99, "HAVING Sum(Rec.数量)<=50 And Sum(Rec.除税金额)<=99"},
        {"both, from and to", 5, 0, 0, 99, "HAVING Sum(Rec.数量)>=5 And Sum(Rec.除税金额)<=99"},
        {"both, both", 5, 50, 10, 99,
         "HAVING (Sum(Rec.数量)>=5 And Sum(Rec.数量)<=50) And (Sum(Rec.除税金额)>=10 And Sum(Rec.除税金额)<=99)"},
        {"negative and fractional", -1.5, 0.25, Currency::FromScaled(-12345), 0,
         "HAVING (Sum(Rec.数量)>=-1.5 And Sum(Rec.数量)<=0.25) And Sum(Rec.除税金额)>=-1.2345"},
        {"texts as they stand", "5", "1e2", " 7 ", 0,
         "HAVING (Sum(Rec.数量)>=5 And Sum(Rec.数量)<=1e2) And Sum(Rec.除税金额)>= 7 "},
        {"Null suppresses its pair", null, 50, 10, null, ""},
        {"Null suppresses no other pair", 5, null, 10, 0, " HAVING Sum(Rec.除税金额)>=10"},
        {"Null beside an amount pair", 5, 0, null, 99, "HAVING Sum(Rec.数量)>=5"},
        {"Null everywhere", null, null, null, null, ""},
    };
    for (const Case& each : cases) {
        const Filters filters{.minQuantity = each.minQuantity,
                              .maxQuantity = each.maxQuantity,
                              .minAmount = each.minAmount,
                              .maxAmount = each.maxAmount};
        for (const bool isSQL : {false, true})
            EXPECT_EQ(StatementOf(filters, isSQL), kSelect + kFromInbound + kGroup + each.having + kOrder) << each.name;
    }
}

TEST(BillList, WhatCannotBeComposedSendsNothing) {
    const Variant bad[] = {"abc", "", " ", "12x", Variant(nullptr), Variant::Missing()};
    Variant Filters::*const numbers[] = {&Filters::warehouse,   &Filters::partner,   &Filters::minQuantity,
                                         &Filters::maxQuantity, &Filters::minAmount, &Filters::maxAmount};
    const Variant noDate[] = {"abc", "2004-02-30", " ", Variant(nullptr)};
    std::vector<Filters> cases;
    for (const auto number : numbers)
        for (const Variant& value : bad) cases.emplace_back().*number = value;
    for (const auto day : {&Filters::firstDay, &Filters::lastDay})
        for (const Variant& value : noDate) cases.emplace_back().*day = value;
    for (const auto text : {&Filters::which, &Filters::kind, &Filters::firstNumber, &Filters::lastNumber,
                            &Filters::handler, &Filters::counterpart, &Filters::packing})
        cases.emplace_back().*text = Variant(nullptr);
    for (std::size_t i = 0; i < cases.size(); ++i) {
        for (const bool isSQL : {false, true}) {
            SCOPED_TRACE(i);
            const auto cnn = std::make_shared<ScriptedConnection>();
            CTables tables;
            tables.Cnn(cnn);
            tables.isSQL(isSQL);
            EXPECT_EQ(List(tables, cases[i]), nullptr);
            EXPECT_TRUE(cnn->Statements().empty());
        }
    }
}

TEST(BillList, HandsOutTheConnectionsRowsAndLeavesTheFilters) {
    const auto cnn = std::make_shared<ScriptedConnection>();
    const auto rows = MakeRows({{"BillID", VarType::Long}}, {{1}, {2}});
    cnn->Answer(rows);
    CTables tables;
    tables.Cnn(cnn);
    Variant which = "入库", kind = "采购", day = "2004-3-7", number = "A", id = "5", text = "箱", bound = "2.50";
    std::int32_t project = 7;
    EXPECT_EQ(tables.rs单据列表(which, kind, day, day, number, number, id, id, project, text, text, text, text, text,
                                text, text, text, bound, bound, bound, bound),
              rows);
    EXPECT_EQ(rows->CacheSize(), 200);
    EXPECT_EQ(rows->AbsolutePosition(), 1);
    EXPECT_TRUE(which.Is("入库"));
    EXPECT_TRUE(kind.Is("采购"));
    EXPECT_TRUE(day.Is("2004-3-7"));
    EXPECT_TRUE(number.Is("A"));
    EXPECT_TRUE(id.Is("5"));
    EXPECT_EQ(project, 7);
    EXPECT_TRUE(text.Is("箱"));
    EXPECT_TRUE(bound.Is("2.50"));
}

TEST(BillList, PassesErrorsOn) {
    CTables tables;
    EXPECT_EQ(FailureOf([&] { List(tables, {}); }), 91);
    const auto cnn = std::make_shared<ScriptedConnection>();
    cnn->FailAt(1, "no such table");
    tables.Cnn(cnn);
    try {
        List(tables, {.warehouse = Variant::Null()});
        ADD_FAILURE() << "no error";
    } catch (const DatabaseError& error) {
        EXPECT_EQ(error.Number(), kRefused);
        EXPECT_EQ(error.Description(), "no such table");
        EXPECT_EQ(error.Statement(), kSelect + kFromInbound + " WHERE  Lst.dpID=" + kGroup + kOrder);
    }
}

}  // namespace
}  // namespace kpTables::test
