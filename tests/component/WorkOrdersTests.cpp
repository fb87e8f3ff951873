// The list of delivery work orders under its filters.
#include <gtest/gtest.h>

#include <array>
#include <map>
#include <span>

#include "BookScript.h"
#include "StatementCase.h"
#include "support/Failure.h"

namespace kpTables::test {
namespace {

enum Filter {
    kFirstDate,
    kLastDate,
    kFirstNumber,
    kLastNumber,
    kPlate,
    kDriver,
    kEscort,
    kPayment,
    kPaymentOp,
    kHired,
    kViolation,
    kSupplier,
    kNote,
    kNoteOp,
    kCustomer,
    kPlace,
    kProduct,
    kMinQuantity,
    kMaxQuantity,
    kMinAmount,
    kMaxAmount,
    kFilters,
};
using Filters = std::map<Filter, Variant>;

/// What is not given is Empty.
RecordsetPtr List(CTables& tables, const Filters& given) {
    std::array<Variant, kFilters> f;
    for (const auto& [filter, value] : given) f[static_cast<std::size_t>(filter)] = value;
    return tables.rs工作单列表(f[0], f[1], f[2], f[3], f[4], f[5], f[6], f[7], f[8], f[9], f[10], f[11], f[12], f[13],
                               f[14], f[15], f[16], f[17], f[18], f[19], f[20]);
}

const std::string kSelect =
    "SELECT Lst.BillID As BillID, Lst.年份, Lst.月份, Lst.日子, Lst.单据编号, Lst.录入员, Lst.录入日期, Lst.车牌号, "
    "Lst.司机, Lst.跟车人, Lst.货款,Lst.外用车, Lst.违章, Lst.部门ID, Lst.说明, Lst.审核员, Lst.审核日期, Rec.*, "
    "Supp.企业名称 AS 发货单位, Cust.企业名称 AS 收货单位, Pd.商品名称, Pd.型号, Pd.规格, Pd.计量单位, Pd.进位方法 "
    "FROM 商品设置 AS Pd INNER JOIN (客户资料 AS Cust INNER JOIN (厂商资料 AS Supp INNER JOIN (派遣目录 AS Lst "
    "INNER JOIN 派遣记录 AS Rec ON Lst.BillID = Rec.BillID) ON Supp.KSID = Rec.厂商ID) ON Cust.KSID = Rec.客户ID) "
    "ON Pd.pdID = Rec.pdID ";
const std::string kOrder = "ORDER BY Lst.年份, Lst.月份, Lst.日子, Lst.单据编号";

std::vector<Sent> Sends(const std::string& condition) { return {Executed(kSelect + condition + kOrder)}; }

struct ListCase {
    const char* name;
    Filters filters;
    const char* condition;
};

void ExpectConditions(std::span<const ListCase> cases) {
    std::vector<StatementCase> statements;
    for (const ListCase& each : cases)
        statements.push_back(
            {each.name, [&each](CTables& t) { EXPECT_TRUE(List(t, each.filters)); }, Sends(each.condition)});
    ExpectStatements(statements);
}

TEST(WorkOrderConditions, NothingGiven) {
    Filters texts, zeros, nulls;
    for (const Filter each :
         {kFirstDate, kLastDate, kFirstNumber, kLastNumber, kPlate, kDriver, kEscort, kNote, kPlace})
        texts[each] = "";
    for (const Filter each : {kPayment, kHired, kViolation, kSupplier, kCustomer, kProduct, kMinQuantity, kMaxQuantity,
                              kMinAmount, kMaxAmount})
        zeros[each] = 0;
    for (int i = 0; i < kFilters; ++i) nulls[static_cast<Filter>(i)] = Variant::Null();
    const ListCase cases[] = {
        {"Empty", {}, ""},
        {"empty texts", texts, ""},
        {"zeros", zeros, ""},
        {"Null", nulls, ""},
        {"False", {{kHired, false}, {kViolation, false}}, ""},
        {"ids below 0", {{kSupplier, -1}, {kCustomer, -5}}, ""},
        {"operators alone", {{kPaymentOp, ">="}, {kNoteOp, "="}}, ""},
        {"no payment but an operator", {{kPayment, 0}, {kPaymentOp, ">="}}, ""},
        {"a payment of the text 0", {{kPayment, "0"}, {kPaymentOp, ">="}}, ""},
        {"a product takes no part", {{kProduct, 5}}, ""},
    };
    ExpectConditions(cases);
}

TEST(WorkOrderConditions, OneFilter) {
    const ListCase cases[] = {
        {"first number", {{kFirstNumber, "P1"}}, " Where (( Lst.单据编号>='P1' ))"},
        {"last number", {{kLastNumber, "P9"}}, " Where (( Lst.单据编号<='P9' ))"},
        {"both numbers",
         {{kFirstNumber, "P1"}, {kLastNumber, "P9"}},
         " Where (( (Lst.单据编号>='P1' And Lst.单据编号<='P9') ))"},
        {"plate", {{kPlate, "粤A1"}}, " Where (( Lst.车牌号='粤A1'))"},
        {"driver", {{kDriver, " O'X "}}, " Where (( Lst.司机=' O'X '))"},
        {"escort", {{kEscort, 12}}, " Where (( Lst.跟车人='12'))"},
        {"a blank is a text", {{kPlate, " "}}, " Where (( Lst.车牌号=' '))"},
        {"payment", {{kPayment, 100}, {kPaymentOp, ">="}}, " Where (( Lst.货款>=100))"},
        {"payment, money", {{kPayment, Money(-5000)}, {kPaymentOp, "<"}}, " Where (( Lst.货款<-0.5))"},
        {"payment, a text", {{kPayment, "12.50"}, {kPaymentOp, "="}}, " Where (( Lst.货款=12.50))"},
        {"payment without an operator", {{kPayment, 100}}, " Where (( Lst.货款100))"},
        {"hired, True", {{kHired, true}}, " Where (( Lst.外用车<0))"},
        {"hired, 1", {{kHired, 1}}, " Where (( Lst.外用车<0))"},
        {"violation, True", {{kViolation, true}}, " Where (( Lst.违章<0))"},
        {"violation, -1", {{kViolation, -1}}, " Where (( Lst.违章<0))"},
        {"supplier", {{kSupplier, 5}}, " Where (( Rec.厂商ID=5))"},
        {"supplier, a text", {{kSupplier, "5"}}, " Where (( Rec.厂商ID=5))"},
        {"note", {{kNote, "S1"}, {kNoteOp, "="}}, " Where (( Rec.配送单号='S1'))"},
        {"note, Like", {{kNote, "S%"}, {kNoteOp, " Like "}}, " Where (( Rec.配送单号 Like 'S%'))"},
        {"note without an operator", {{kNote, "S1"}}, " Where (( Rec.配送单号'S1'))"},
        {"customer", {{kCustomer, 9}}, " Where (( Rec.客户ID=9))"},
        {"place", {{kPlace, "南门"}}, " Where (( Rec.送货地点='南门'))"},
        {"a product beside another takes no part", {{kCustomer, 9}, {kProduct, 5}}, " Where (( Rec.客户ID=9))"},
    };
    ExpectConditions(cases);
}

TEST(WorkOrderConditions, BoundsStandAsTheyAre) {
    const ListCase cases[] = {
        {"least quantity", {{kMinQuantity, 1}}, "Sum(Rec.数量)>=1"},
        {"most quantity", {{kMaxQuantity, 2.5}}, "Sum(Rec.数量)<=2.5"},
        {"both quantities", {{kMinQuantity, 1}, {kMaxQuantity, 2}}, "(Sum(Rec.数量)>=1 And Sum(Rec.数量)<=2)"},
        {"least amount", {{kMinAmount, 1}}, "Sum(Rec.金额)>=1"},
        {"most amount", {{kMaxAmount, Money(25000)}}, "Sum(Rec.金额)<=2.5"},
        {"both amounts", {{kMinAmount, -1}, {kMaxAmount, 2}}, "(Sum(Rec.金额)>=-1 And Sum(Rec.金额)<=2)"},
        {"quantity and amount",
         {{kMinQuantity, 1}, {kMaxQuantity, 2}, {kMaxAmount, 3}},
         "(Sum(Rec.数量)>=1 And Sum(Rec.数量)<=2)Sum(Rec.金额)<=3"},
        {"a Null takes the other bound with it", {{kMinQuantity, 1}, {kMaxQuantity, Variant::Null()}}, ""},
        {"behind a filter", {{kDriver, "王五"}, {kMinQuantity, 1}}, " Where (( Lst.司机='王五'Sum(Rec.数量)>=1))"},
        {"behind a number range",
         {{kFirstNumber, "P1"}, {kMaxAmount, 3}},
         " Where (( Lst.单据编号>='P1' Sum(Rec.金额)<=3))"},
    };
    ExpectConditions(cases);
}

struct DateCase {
    const char* name;
    Filters filters;
    const char* jet;
    const char* server;
};

TEST(WorkOrderConditions, DatesInEachDialect) {
    const DateCase cases[] = {
        {"first day",
         {{kFirstDate, Day("2004-03-07")}},
         " Where (( (CDATE(年份 & '-' & 月份 & '-' & 日子)>=#2004-3-7#) ))",
         " Where (( CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + '-' + CAST(日子 AS char(2)) AS DATETIME)"
         ">=CAST('2004-3-7' AS DATETIME) ))"},
        {"last day",
         {{kLastDate, "2004-12-31"}},
         " Where (( (CDATE(年份 & '-' & 月份 & '-' & 日子)<=#2004-12-31#)))",
         " Where (( CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + '-' + CAST(日子 AS char(2)) AS DATETIME)"
         "<=CAST('2004-12-31' AS DATETIME)))"},
        {"both, and a driver",
         {{kFirstDate, "2004-03-07"}, {kLastDate, "2004-03-07"}, {kDriver, "王五"}},
         " Where (( ((CDATE(年份 & '-' & 月份 & '-' & 日子)>=#2004-3-7#) And "
         "(CDATE(年份 & '-' & 月份 & '-' & 日子)<=#2004-3-7#)) And Lst.司机='王五'))",
         " Where (( (CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + '-' + CAST(日子 AS char(2)) AS "
         "DATETIME)"
         ">=CAST('2004-3-7' AS DATETIME) And CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + '-' + "
         "CAST(日子 AS char(2)) AS DATETIME)<=CAST('2004-3-7' AS DATETIME)) And Lst.司机='王五'))"},
        {"every filter",
         {{kFirstDate, "2004-3-7"},
          {kFirstNumber, "P1"},
          {kLastNumber, "P9"},
          {kPlate, "粤A1"},
          {kDriver, "王五"},
          {kEscort, "赵六"},
          {kPayment, 100},
          {kPaymentOp, ">"},
          {kHired, true},
          {kViolation, true},
          {kSupplier, 5},
          {kNote, "S1"},
          {kNoteOp, "<>"},
          {kCustomer, 9},
          {kPlace, "南门"},
          {kProduct, 1},
          {kMinQuantity, 1},
          {kMinAmount, 2},
          {kMaxAmount, 3}},
         " Where (( (CDATE(年份 & '-' & 月份 & '-' & 日子)>=#2004-3-7#)  And (Lst.单据编号>='P1' And "
         "Lst.单据编号<='P9')  And Lst.车牌号='粤A1' And Lst.司机='王五' And Lst.跟车人='赵六' And Lst.货款>100 And "
         "Lst.外用车<0 And Lst.违章<0 And Rec.厂商ID=5 And Rec.配送单号<>'S1' And Rec.客户ID=9 And "
         "Rec.送货地点='南门'Sum(Rec.数量)>=1(Sum(Rec.金额)>=2 And Sum(Rec.金额)<=3)))",
         " Where (( CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + '-' + CAST(日子 AS char(2)) AS DATETIME)"
         ">=CAST('2004-3-7' AS DATETIME)  And (Lst.单据编号>='P1' And Lst.单据编号<='P9')  And Lst.车牌号='粤A1' And "
         "Lst.司机='王五' And Lst.跟车人='赵六' And Lst.货款>100 And Lst.外用车<0 And Lst.违章<0 And Rec.厂商ID=5 And "
         "Rec.配送单号<>'S1' And Rec.客户ID=9 And Rec.送货地点='南门'Sum(Rec.数量)>=1(Sum(Rec.金额)>=2 And "
         "Sum(Rec.金额)<=3)))"},
    };
    for (const DateCase& each : cases) {
        for (const bool isSQL : {false, true}) {
            SCOPED_TRACE(std::string(each.name) + (isSQL ? " (SQL Server)" : " (Jet)"));
            BookScript book;
            book.tables.isSQL(isSQL);
            EXPECT_TRUE(List(book.tables, each.filters));
            EXPECT_EQ(book.cnn->Statements(), Sends(isSQL ? each.server : each.jet));
        }
    }
}

TEST(WorkOrderList, HandsOutItsRows) {
    ExpectHandsOut("all", [](CTables& t) { return List(t, {}); });
}

TEST(WorkOrderList, LeavesItsArgumentsAlone) {
    BookScript book;
    Variant date = "2004-03-07", payment = 100, op = ">=", hired = true, other;
    EXPECT_TRUE(book.tables.rs工作单列表(date, other, other, other, other, other, other, payment, op, hired, other,
                                         other, other, other, other, other, other, other, other, other, other));
    EXPECT_TRUE(date.Is("2004-03-07"));
    EXPECT_TRUE(payment.Is(100));
    EXPECT_TRUE(op.Is(">="));
    EXPECT_TRUE(hired.Is(true));
    EXPECT_TRUE(other.IsEmpty());
}

TEST(WorkOrderList, AnErrorWhileComposingAnswersNothing) {
    struct Case {
        const char* name;
        Filters filters;
    };
    const Case cases[] = {
        {"a date that is none", {{kFirstDate, "x"}}},
        {"a payment that is no number", {{kPayment, "x"}, {kPaymentOp, "="}}},
        {"a flag that is no number", {{kHired, "x"}}},
        {"an id that is no number", {{kSupplier, "x"}}},
        {"a bound that is no number", {{kMaxAmount, "x"}}},
        {"an object", {{kPlate, Variant(nullptr)}}},
        {"an array", {{kPlace, std::make_shared<VariantArray>()}}},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.name);
        BookScript book;
        EXPECT_FALSE(List(book.tables, each.filters));
        EXPECT_TRUE(book.cnn->Statements().empty());
    }
}

TEST(WorkOrderList, ARefusedStatementIsTheHosts) {
    for (const Filters& filters : {Filters{}, Filters{{kMinQuantity, 1}}}) {
        BookScript book;
        book.cnn->FailAt(1);
        EXPECT_EQ(FailureOf([&] { List(book.tables, filters); }), kRefused);
    }
    CTables unconnected;
    EXPECT_EQ(FailureOf([&] { List(unconnected, {}); }), 91);
}

}  // namespace
}  // namespace kpTables::test
