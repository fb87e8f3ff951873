// Ad-hoc queries on bills and their lines: statements, results and failures.
#include <gtest/gtest.h>

#include <span>

#include "BillQueryFilters.h"
#include "support/Failure.h"

namespace kpTables::test {
namespace {

const std::string kSums =
    " Sum(Rec.数量) AS 数量, Avg(Rec.单价) AS 单价, Sum(Rec.金额) AS 金额, Sum(Rec.税额) AS 税额, "
    "Sum(Rec.除税单价) AS 除税单价, Sum(Rec.除税金额) AS 除税金额, Prod.商品名称, Prod.商品编号, Prod.规格, Prod.型号, "
    "Prod.计量单位, Prod.进位方法, Prod.最低库存, Prod.最高库存, Prod.ClassCode FROM 项目设置 As pj RIGHT JOIN "
    "((入库目录 AS Lst INNER JOIN 入库记录 AS Rec ON Lst.BillID = Rec.BillID) INNER JOIN 商品设置 AS Prod ON Rec.pdID "
    "= "
    "Prod.pdID) ON pj.项目ID=Lst.pjID ";
const std::string kProduct =
    " Prod.商品名称, Prod.商品编号, Prod.规格, Prod.型号, Prod.计量单位, Prod.进位方法, Prod.最低库存, Prod.最高库存, "
    "Prod.ClassCode ";
const std::string kLines =
    "SELECT (Lst.年份 & '-' & Lst.月份 & '-' &  Lst.日子) AS 日期,Lst.单据类型 AS 单据名称,Lst.类型 AS "
    "单据类型,Lst.单据编号, Lst.单据类型, Lst.单据编号, P.pdID,P.ClassCode,P.商品名称,P.商品编号, P.规格, "
    "P.型号,P.计量单位,P.进位方法,P.最高库存,P.最低库存, R.单价, R.数量, R.金额,R.税额,R.除税单价,R.除税金额, "
    "R.经手人, R.交接人, R.包装, R.货位, J.项目编号, J.项目名称, J.工程名称 , B.企业名称 AS 单位名称,R.BillID FROM "
    "(项目设置 AS J RIGHT JOIN ((入库记录 AS R INNER JOIN 入库目录 AS Lst ON R.BillID = Lst.BillID) INNER JOIN "
    "商品设置 "
    "AS P ON R.pdID = P.pdID) ON J.项目ID = Lst.pjID) LEFT JOIN 客户资料 AS B ON Lst.ksID = B.KSID ";

TEST(BillQueries, ProductSummaryOfEveryOutboundLine) {
    EXPECT_EQ(
        StatementOf(Summary, {.which = "出库"}),
        "SELECT Rec.pdID, Sum(Rec.数量) AS 数量, Avg(Rec.单价) AS 单价, Sum(Rec.金额) AS 金额, Sum(Rec.税额) AS 税额, "
        "Sum(Rec.除税单价) AS 除税单价, Sum(Rec.除税金额) AS 除税金额, Prod.商品名称, Prod.商品编号, Prod.规格, "
        "Prod.型号, Prod.计量单位, Prod.进位方法, Prod.最低库存, Prod.最高库存, Prod.ClassCode FROM 项目设置 As pj "
        "RIGHT "
        "JOIN ((出库目录 AS Lst INNER JOIN 出库记录 AS Rec ON Lst.BillID = Rec.BillID) INNER JOIN 商品设置 AS Prod ON "
        "Rec.pdID = Prod.pdID) ON pj.项目ID=Lst.pjID  GROUP BY Rec.pdID, Prod.商品名称, Prod.商品编号, Prod.规格, "
        "Prod.型号, Prod.计量单位, Prod.进位方法, Prod.最低库存, Prod.最高库存, Prod.ClassCode ");
}

TEST(BillQueries, EveryOutboundLine) {
    EXPECT_EQ(
        StatementOf(Lines, {.which = "出库"}),
        "SELECT (Lst.年份 & '-' & Lst.月份 & '-' &  Lst.日子) AS 日期,Lst.单据类型 AS 单据名称,Lst.类型 AS "
        "单据类型,Lst.单据编号, Lst.单据类型, Lst.单据编号, P.pdID,P.ClassCode,P.商品名称,P.商品编号, P.规格, "
        "P.型号,P.计量单位,P.进位方法,P.最高库存,P.最低库存, R.单价, R.数量, R.金额,R.税额,R.除税单价,R.除税金额, "
        "R.经手人, R.交接人, R.包装, R.货位, J.项目编号, J.项目名称, J.工程名称 , B.企业名称 AS 单位名称,R.BillID FROM "
        "(项目设置 AS J RIGHT JOIN ((出库记录 AS R INNER JOIN 出库目录 AS Lst ON R.BillID = Lst.BillID) INNER JOIN "
        "商品设置 AS P ON R.pdID = P.pdID) ON J.项目ID = Lst.pjID) LEFT JOIN 客户资料 AS B ON Lst.ksID = B.KSID ");
}

TEST(BillQueries, GroupColumn) {
    struct Case {
        const char* group;
        const char* text;
    };
    const Case cases[] = {
        {"", ""},
        {"项目名称", "pj.项目名称,"},
        {"项目编号", "pj.项目编号,"},
        {"经手人", "rec.经手人,"},
        {"项目名称 ", "rec.项目名称 ,"},
        {" ", "rec. ,"},
    };
    for (const Case& each : cases)
        for (const bool isSQL : {false, true})
            EXPECT_EQ(
                StatementOf(Summary, {.group = each.group}, isSQL),
                "SELECT Rec.pdID," + std::string(each.text) + kSums + " GROUP BY Rec.pdID," + each.text + kProduct);
}

struct ConditionCase {
    const char* name;
    Filters filters;
    std::string where;
};

/// The two recordsets take the same condition.
void ExpectConditions(std::span<const ConditionCase> cases, bool isSQL) {
    for (const ConditionCase& each : cases) {
        SCOPED_TRACE(each.name);
        EXPECT_EQ(StatementOf(Summary, each.filters, isSQL),
                  "SELECT Rec.pdID," + kSums + each.where + " GROUP BY Rec.pdID," + kProduct);
        EXPECT_EQ(StatementOf(Lines, each.filters, isSQL), kLines + each.where);
    }
}

TEST(BillQueries, Conditions) {
    const ConditionCase cases[] = {
        {"nothing given", {}, ""},
        {"Empty is not given",
         {.values = At({{0, {}}, {1, {}}, {2, {}}, {3, {}}, {4, {}}, {5, {}}, {6, {}}, {8, {}}, {10, {}}})},
         ""},
        {"kind", {.kind = "采购"}, "Where  类型='采购'"},
        {"kind, untrimmed", {.kind = " 采购 "}, "Where  类型=' 采购 '"},
        {"kind of blanks", {.kind = "  "}, ""},
        {"warehouse", {.warehouse = 3}, "Where  Lst.dpID=3"},
        {"partner", {.partner = 12}, "Where  Lst.ksID=12"},
        {"project", {.project = 7}, "Where  Lst.pjID=7"},
        {"negative ids mean all", {.warehouse = -1, .partner = -2, .project = -3}, ""},
        {"2, first number", {.values = At({{2, "A01"}})}, "Where  Lst.单据编号>='A01' "},
        {"3, last number", {.values = At({{3, "A99"}})}, "Where  Lst.单据编号<='A99' "},
        {"2 and 3", {.values = At({{2, "A01"}, {3, "A99"}})}, "Where  (Lst.单据编号>='A01' And Lst.单据编号<='A99') "},
        {"4, handler", {.values = At({{4, "张三"}})}, "Where  经手人='张三'"},
        {"5, counterpart", {.values = At({{5, "李四"}})}, "Where  交接人='李四'"},
        {"6 and 7, packing", {.values = At({{6, "箱"}, {7, "<>"}})}, "Where  包装<>'箱'"},
        {"6 without 7", {.values = At({{6, "箱"}})}, "Where  包装'箱'"},
        {"7 without 6", {.values = At({{7, "="}})}, ""},
        {"8 and 9, slot", {.values = At({{8, "R%"}, {9, " Like "}})}, "Where  货位 Like 'R%'"},
        {"8 without 9", {.values = At({{8, "R1"}})}, "Where  货位'R1'"},
        {"9 without 8", {.values = At({{9, "="}})}, ""},
        {"10 and 11, term, unquoted", {.values = At({{10, 30}, {11, ">="}})}, "Where  期限>=30"},
        {"10, a text", {.values = At({{10, "30.50"}, {11, "<"}})}, "Where  期限<30.50"},
        {"10 without 11", {.values = At({{10, 1.5}})}, "Where  期限1.5"},
        {"11 without 10", {.values = At({{11, ">"}})}, ""},
        {"numbers in text positions",
         {.values = At({{4, 0}, {5, 7}, {6, 0}, {7, "="}, {10, 0}, {11, "="}})},
         "Where  经手人='0' And 交接人='7' And 包装='0' And 期限=0"},
        {"an operator is any text", {.values = At({{8, "x"}, {9, " Is Null Or 1="}})}, "Where  货位 Is Null Or 1='x'"},
        {"a placeholder is a text like any other",
         {.values = At({{4, "(无名称)"}, {6, "(无名称)"}, {7, "="}})},
         "Where  经手人='(无名称)' And 包装='(无名称)'"},
        {"nothing is escaped", {.values = At({{4, "O'X"}})}, "Where  经手人='O'X'"},
    };
    for (const bool isSQL : {false, true}) ExpectConditions(cases, isSQL);
}

Values AllValues() {
    return At({{0, *Date::ParseIso("2004-03-07")},
               {1, "2004-12-31"},
               {2, "A01"},
               {3, "A99"},
               {4, "张三"},
               {5, "李四"},
               {6, "箱"},
               {7, "<>"},
               {8, "R1"},
               {9, "="},
               {10, 30},
               {11, ">="}});
}

const std::string kJetDates =
    " And ((CDATE(年份 & '-' & 月份 & '-' & 日子)>=#2004-3-7#) And (CDATE(年份 & '-' & 月份 & '-' & "
    "日子)<=#2004-12-31#))";
const std::string kServerDates =
    " And (CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + '-' + CAST(日子 AS char(2)) AS "
    "DATETIME)>=CAST('2004-3-7' AS DATETIME) And CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + '-' + "
    "CAST(日子 AS char(2)) AS DATETIME)<=CAST('2004-12-31' AS DATETIME))";

TEST(BillQueries, EveryConditionAtOnce) {
    const Filters all{.kind = "采购", .warehouse = 3, .partner = 12, .project = 7, .values = AllValues()};
    const std::string after =
        " And Lst.dpID=3 And 类型='采购' And (Lst.单据编号>='A01' And Lst.单据编号<='A99')  And Lst.ksID=12 And "
        "Lst.pjID=7 And 经手人='张三' And 交接人='李四' And 包装<>'箱' And 货位='R1' And 期限>=30";
    const ConditionCase jet[] = {{"Jet", all, "Where " + kJetDates.substr(4) + after}};
    ExpectConditions(jet, false);
    const ConditionCase server[] = {{"SQL Server", all, "Where " + kServerDates.substr(4) + after}};
    ExpectConditions(server, true);
}

TEST(BillQueries, OneDate) {
    const ConditionCase jet[] = {
        {"0", {.values = At({{0, "2004-3-7"}})}, "Where  (CDATE(年份 & '-' & 月份 & '-' & 日子)>=#2004-3-7#) "},
        {"1", {.values = At({{1, "2004-3-7"}})}, "Where  (CDATE(年份 & '-' & 月份 & '-' & 日子)<=#2004-3-7#)"},
    };
    ExpectConditions(jet, false);
    const ConditionCase server[] = {
        {"0",
         {.values = At({{0, "2004-3-7"}})},
         "Where  CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + '-' + CAST(日子 AS char(2)) AS "
         "DATETIME)>=CAST('2004-3-7' AS DATETIME) "},
        {"1",
         {.values = At({{1, "2004-3-7"}})},
         "Where  CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + '-' + CAST(日子 AS char(2)) AS "
         "DATETIME)<=CAST('2004-3-7' AS DATETIME)"},
    };
    ExpectConditions(server, true);
}

struct TextCase {
    const char* name;
    Filters filters;
    const char* text;
};

TEST(BillNumbers, Statements) {
    const TextCase cases[] = {
        {"a product",
         {.product = 17},
         "Select 单据编号 FROM 入库目录 Where billID in (Select billID From 入库记录 Where True  And pdID=17)  Order "
         "by "
         "月份,BillType,单据编号"},
        {"a negative product",
         {.which = "出库", .product = -1},
         "Select 单据编号 FROM 出库目录 Where billID in (Select billID From 出库记录 Where True  And pdID=-1)  Order "
         "by "
         "月份,BillType,单据编号"},
        {"a warehouse and a partner",
         {.warehouse = 3, .partner = 12, .product = 17},
         "Select 单据编号 FROM 入库目录 Where billID in (Select billID From 入库记录 Where True  And pdID=17)  And "
         "dpID=3 "
         "And ksID=12 Order by 月份,BillType,单据编号"},
        {"negative ids mean all",
         {.warehouse = -3, .partner = -12, .product = 17},
         "Select 单据编号 FROM 入库目录 Where billID in (Select billID From 入库记录 Where True  And pdID=17)  Order "
         "by "
         "月份,BillType,单据编号"},
        {"kind and numbers have no effect",
         {.kind = "采购", .product = 17, .values = At({{2, "A01"}, {3, "A99"}})},
         "Select 单据编号 FROM 入库目录 Where billID in (Select billID From 入库记录 Where True  And pdID=17)  Order "
         "by "
         "月份,BillType,单据编号"},
        {"the placeholder is not given",
         {.product = 17,
          .values = At({{4, "(无名称)"}, {5, "(无名称)"}, {6, "(无名称)"}, {8, "(无名称)"}, {10, "(无名称)"}})},
         "Select 单据编号 FROM 入库目录 Where billID in (Select billID From 入库记录 Where True  And pdID=17)  Order "
         "by "
         "月份,BillType,单据编号"},
        {"the placeholder with a blank is given",
         {.product = 17, .values = At({{4, "(无名称) "}})},
         "Select 单据编号 FROM 入库目录 Where billID in (Select billID From 入库记录 Where True  And pdID=17 And "
         "经手人='(无名称) ')  Order by 月份,BillType,单据编号"},
        {"operators without a value",
         {.product = 17, .values = At({{7, "="}, {9, "="}, {11, "="}})},
         "Select 单据编号 FROM 入库目录 Where billID in (Select billID From 入库记录 Where True  And pdID=17)  Order "
         "by "
         "月份,BillType,单据编号"},
        {"values without an operator",
         {.product = 17, .values = At({{6, "箱"}, {8, "R1"}, {10, 30}})},
         "Select 单据编号 FROM 入库目录 Where billID in (Select billID From 入库记录 Where True  And pdID=17 And "
         "包装'箱' "
         "And 货位'R1' And 期限30)  Order by 月份,BillType,单据编号"},
    };
    for (const TextCase& each : cases)
        for (const bool isSQL : {false, true})
            EXPECT_EQ(StatementOf(Numbers, each.filters, isSQL), each.text) << each.name;
}

TEST(BillNumbers, EveryConditionAtOnce) {
    const Filters all{
        .which = "出库", .kind = "销售", .warehouse = 3, .partner = 12, .product = 17, .values = AllValues()};
    const std::string before =
        "Select 单据编号 FROM 出库目录 Where billID in (Select billID From 出库记录 Where True  And pdID=17 And "
        "经手人='张三' And 交接人='李四' And 包装<>'箱' And 货位='R1' And 期限>=30)  And dpID=3 And ksID=12";
    const std::string after = " Order by 月份,BillType,单据编号";
    EXPECT_EQ(StatementOf(Numbers, all, false), before + kJetDates + after);
    EXPECT_EQ(StatementOf(Numbers, all, true), before + kServerDates + after);
}

TEST(BillNumbers, WithoutAProductReadsNothing) {
    const auto cnn = std::make_shared<ScriptedConnection>();
    CTables tables;
    EXPECT_EQ(Numbers(tables, {.values = nullptr}), "");
    tables.Cnn(cnn);
    EXPECT_EQ(Numbers(tables, {.warehouse = 3, .values = AllValues()}), "");
    EXPECT_TRUE(cnn->Statements().empty());
}

TEST(BillNumbers, AreJoinedInTheOrderOfTheRows) {
    struct Case {
        Rows rows;
        const char* text;
    };
    const Case cases[] = {
        {{}, ""},
        {{{"B2"}}, "B2"},
        {{{"B2"}, {"A1"}, {"A1"}}, "B2;A1;A1"},
        {{{"A1"}, {Variant::Null()}, {"A3"}}, "A1;;A3"},
        {{{Variant::Null()}, {"A1"}}, "A1"},
        {{{" A1 "}, {"A;2"}}, " A1 ;A;2"},
    };
    for (const Case& each : cases) {
        const auto cnn = std::make_shared<ScriptedConnection>();
        cnn->Answer(MakeRows({{"单据编号", VarType::String}}, each.rows));
        CTables tables;
        tables.Cnn(cnn);
        EXPECT_EQ(Numbers(tables, {.product = 17}), each.text);
    }
}

TEST(BillStatistics, Statements) {
    const TextCase cases[] = {
        {"nothing given",
         {},
         "Select Count(单据类型) As 单据计数 FROM 入库目录 Where billID in (Select billID From 入库记录 Where True ) "},
        {"a product",
         {.which = "出库", .product = 17},
         "Select Count(单据类型) As 单据计数 FROM 出库目录 Where billID in (Select billID From 出库记录 Where True  "
         "And "
         "pdID=17) "},
        {"negative ids mean all",
         {.warehouse = -3, .partner = -12, .product = -17},
         "Select Count(单据类型) As 单据计数 FROM 入库目录 Where billID in (Select billID From 入库记录 Where True ) "},
        {"a warehouse and a partner",
         {.warehouse = 3, .partner = 12},
         "Select Count(单据类型) As 单据计数 FROM 入库目录 Where billID in (Select billID From 入库记录 Where True )  "
         "And "
         "dpID=3 And ksID=12"},
        {"a bill kind",
         {.billKind = "入库单"},
         "Select Count(单据类型) As 单据计数 FROM 入库目录 Where billID in (Select billID From 入库记录 Where True )  "
         "And "
         "单据类型 = '入库单'"},
        {"a sub-kind",
         {.kind = "采购"},
         "Select Count(单据类型) As 单据计数 FROM 入库目录 Where billID in (Select billID From 入库记录 Where True )  "
         "And "
         "类型='采购'"},
        {"kinds untrimmed",
         {.kind = " 采购", .billKind = "入库单 "},
         "Select Count(单据类型) As 单据计数 FROM 入库目录 Where billID in (Select billID From 入库记录 Where True )  "
         "And "
         "单据类型 = '入库单 ' And 类型=' 采购'"},
        {"kinds of blanks",
         {.kind = " ", .billKind = "  "},
         "Select Count(单据类型) As 单据计数 FROM 入库目录 Where billID in (Select billID From 入库记录 Where True ) "},
        {"numbers have no effect, the placeholder is not given",
         {.values = At({{2, "A01"}, {3, "A99"}, {4, "(无名称)"}, {8, "(无名称)"}, {9, "="}})},
         "Select Count(单据类型) As 单据计数 FROM 入库目录 Where billID in (Select billID From 入库记录 Where True ) "},
    };
    for (const TextCase& each : cases)
        for (const bool isSQL : {false, true})
            EXPECT_EQ(StatementOf(Count, each.filters, isSQL), each.text) << each.name;
}

TEST(BillStatistics, EveryConditionAtOnce) {
    const Filters all{.which = "出库",
                      .kind = "销售",
                      .warehouse = 3,
                      .partner = 12,
                      .product = 17,
                      .billKind = "出库单",
                      .values = AllValues()};
    const std::string before =
        "Select Count(单据类型) As 单据计数 FROM 出库目录 Where billID in (Select billID From 出库记录 Where True  And "
        "pdID=17 And 经手人='张三' And 交接人='李四' And 包装<>'箱' And 货位='R1' And 期限>=30)  And dpID=3 And "
        "ksID=12";
    const std::string after = " And 单据类型 = '出库单' And 类型='销售'";
    EXPECT_EQ(StatementOf(Count, all, false), before + kJetDates + after);
    EXPECT_EQ(StatementOf(Count, all, true), before + kServerDates + after);
}

TEST(BillStatistics, IsTheCountOfTheFirstRow) {
    struct Case {
        Variant count;
        std::int32_t result, error;
    };
    const Case cases[] = {{0, 0, 0}, {1, 1, 0}, {32767, 32767, 0}, {32768, 0, 6}, {Variant::Null(), 0, 94}};
    for (const Case& each : cases) {
        const auto cnn = std::make_shared<ScriptedConnection>();
        cnn->Answer(Counted(each.count));
        CTables tables;
        tables.Cnn(cnn);
        std::int32_t result = 0;
        EXPECT_EQ(FailureOf([&] { result = Count(tables, {}); }), each.error);
        EXPECT_EQ(result, each.result);
    }
}

}  // namespace
}  // namespace kpTables::test
