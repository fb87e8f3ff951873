// Bill dates, and the lists and sums by a free-text column.
#include <gtest/gtest.h>

#include "StatementCase.h"
#include "support/Failure.h"

namespace kpTables::test {
namespace {

const char* const kJetDates =
    "SELECT Distinct CDATE([list1].年份 & '-' &  [list1].月份 & '-' & [list1].日子) AS 日期 FROM 入库目录 as list1  "
    "ORDER BY CDATE([list1].年份 & '-' &  [list1].月份 & '-' & [list1].日子) UNION (SELECT Distinct CDATE([list2].年份 "
    "& '-' &  [list2].月份 & '-' & [list2].日子) AS 日期 FROM 出库目录 AS list2 ORDER BY CDATE([list2].年份 & '-' &  "
    "[list2].月份 & '-' & [list2].日子))";
const char* const kServerDatesUnread =
    "select distinct CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + '-' + CAST(日子 AS char(2)) AS "
    "DATETIME) from 入库目录 union select distinct CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + '-' + "
    "CAST(日子 AS char(2)) AS DATETIME) from 出库目录";
const char* const kServerDates =
    "select distinct CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + '-' + CAST(日子 AS char(2)) AS "
    "DATETIME) AS 日期 from 入库目录 union select distinct CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + "
    "'-' + CAST(日子 AS char(2)) AS DATETIME) from 出库目录";

/// A connection that answers rows in turn.
std::shared_ptr<ScriptedConnection> Answering(const std::vector<RecordsetPtr>& answers) {
    const auto cnn = std::make_shared<ScriptedConnection>();
    for (const auto& each : answers) cnn->Answer(each);
    return cnn;
}

/// Bill dates, given in ISO form.
std::shared_ptr<ScriptedRecordset> Days(const std::vector<const char*>& days) {
    Rows rows;
    for (const char* day : days) rows.push_back({*Date::ParseIso(day)});
    return MakeRows({{"日期", VarType::Date}}, rows);
}

std::vector<std::string> TextsOf(Recordset& rows) {
    std::vector<std::string> texts;
    for (; !rows.Eof(); rows.MoveNext()) texts.push_back(Shown(rows.GetValue(0)));
    return texts;
}

TEST(BillDates, JetSortsThemItself) {
    const auto days = Days({"2004-03-07", "2004-03-01"});
    const auto cnn = Answering({days});
    CTables tables;
    tables.Cnn(cnn);
    const auto answer = tables.rs单据日期列表();
    EXPECT_EQ(cnn->Statements(), std::vector<Sent>{Executed(kJetDates)});
    EXPECT_EQ(answer, days);
    EXPECT_EQ(answer->CacheSize(), 200);
    EXPECT_EQ(TextsOf(*answer), (std::vector<std::string>{"2004-3-7", "2004-3-1"}));
}

TEST(BillDates, SqlServerIsAskedTwiceAndTheSecondAnswerSorted) {
    const auto unread = Days({"2004-01-01"});
    const auto days = Days({"2004-03-10", "2004-03-09", "2003-12-31"});
    const auto cnn = Answering({unread, days});
    CTables tables;
    tables.Cnn(cnn);
    tables.isSQL(true);
    const auto answer = tables.rs单据日期列表();
    EXPECT_EQ(cnn->Statements(), (std::vector<Sent>{Executed(kServerDatesUnread), Executed(kServerDates)}));
    EXPECT_EQ(answer, days);
    EXPECT_EQ(answer->CacheSize(), 200);
    EXPECT_EQ(TextsOf(*answer), (std::vector<std::string>{"2003-12-31", "2004-3-9", "2004-3-10"}));
}

TEST(BillDates, EveryErrorReachesTheCaller) {
    struct Case {
        bool isSQL;
        int failing;
    };
    for (const Case& each : {Case{false, 1}, Case{true, 1}, Case{true, 2}}) {
        SCOPED_TRACE(each.failing);
        const auto cnn = std::make_shared<ScriptedConnection>();
        cnn->FailAt(each.failing);
        CTables tables;
        tables.isSQL(each.isSQL);
        EXPECT_EQ(FailureOf([&] { tables.rs单据日期列表(); }), 91);
        tables.Cnn(cnn);
        EXPECT_EQ(FailureOf([&] { tables.rs单据日期列表(); }), kRefused);
        EXPECT_EQ(cnn->Statements().size(), static_cast<std::size_t>(each.failing));
    }
}

TEST(FreeTextColumns, InboundValues) {
    const StatementCase cases[] = {
        {"handlers",
         [](CTables& t) { t.rs入库扩展列表("经手人", 0, 0); },
         {Executed("Select Distinct 经手人 From 入库记录 Where BillID in (Select billID From 入库目录 Where True ) "
                   "Order by 经手人")}},
        {"counterparts of a month",
         [](CTables& t) { t.rs入库扩展列表("交接人", 1, -1); },
         {Executed("Select Distinct 交接人 From 入库记录 Where BillID in (Select billID From 入库目录 Where True  And "
                   "月份=1) Order by 交接人")}},
        {"packings in a warehouse, negative month",
         [](CTables& t) { t.rs入库扩展列表("包装", -1, 1); },
         {Executed("Select Distinct 包装 From 入库记录 Where BillID in (Select billID From 入库目录 Where True  And "
                   "dpID=1) Order by 包装")}},
        {"slots, both",
         [](CTables& t) { t.rs入库扩展列表("货位", 12, 7); },
         {Executed("Select Distinct 货位 From 入库记录 Where BillID in (Select billID From 入库目录 Where True  And "
                   "月份=12 And dpID=7) Order by 货位")}},
    };
    ExpectStatements(cases);
}

TEST(FreeTextColumns, OutboundValuesOfAllLines) {
    const StatementCase cases[] = {
        {"handlers",
         [](CTables& t) { t.rs出库扩展列表("经手人", 0, 0); },
         {Executed("Select Distinct 经手人 From 出库记录  Order by 经手人")}},
        {"counterparts, whatever the month",
         [](CTables& t) { t.rs出库扩展列表("交接人", 3, 0); },
         {Executed("Select Distinct 交接人 From 出库记录  Order by 交接人")}},
        {"packings, whatever the warehouse",
         [](CTables& t) { t.rs出库扩展列表("包装", 0, 7); },
         {Executed("Select Distinct 包装 From 出库记录  Order by 包装")}},
        {"slots",
         [](CTables& t) { t.rs出库扩展列表("货位", -1, -1); },
         {Executed("Select Distinct 货位 From 出库记录  Order by 货位")}},
    };
    ExpectStatements(cases);
}

TEST(FreeTextColumns, OutboundSumsAlwaysOfAMonth) {
    const StatementCase cases[] = {
        {"handlers, month 0",
         [](CTables& t) { t.rs出库扩展合计("经手人", 0, 0); },
         {Executed("Select pdID,经手人,Sum(数量) as 数量,sum(除税金额) as 金额 From 出库记录 Where BillID in (Select "
                   "billID From 出库目录 Where True  And 月份=0) Group by pdID,经手人")}},
        {"counterparts, negative month and warehouse",
         [](CTables& t) { t.rs出库扩展合计("交接人", -1, -1); },
         {Executed("Select pdID,交接人,Sum(数量) as 数量,sum(除税金额) as 金额 From 出库记录 Where BillID in (Select "
                   "billID From 出库目录 Where True  And 月份=-1) Group by pdID,交接人")}},
        {"packings of a month",
         [](CTables& t) { t.rs出库扩展合计("包装", 12, 0); },
         {Executed("Select pdID,包装,Sum(数量) as 数量,sum(除税金额) as 金额 From 出库记录 Where BillID in (Select "
                   "billID From 出库目录 Where True  And 月份=12) Group by pdID,包装")}},
        {"slots in a warehouse",
         [](CTables& t) { t.rs出库扩展合计("货位", 0, 1); },
         {Executed("Select pdID,货位,Sum(数量) as 数量,sum(除税金额) as 金额 From 出库记录 Where BillID in (Select "
                   "billID From 出库目录 Where True  And 月份=0 And dpID=1) Group by pdID,货位")}},
    };
    ExpectStatements(cases);
}

struct NamedList {
    const char* name;
    RecordsetPtr (CTables::*method)(InOut<std::string>, InOut<std::int16_t>, InOut<std::int32_t>);
};
const NamedList kLists[] = {
    {"rs入库扩展列表", &CTables::rs入库扩展列表},
    {"rs出库扩展列表", &CTables::rs出库扩展列表},
    {"rs出库扩展合计", &CTables::rs出库扩展合计},
};

TEST(FreeTextColumns, AnUnknownColumnHasNoRowsAndSendsNothing) {
    for (const auto& each : kLists) {
        for (const char* column : {"", "数量", "经手", "手人", "人", "、", "经手人、交接人", "货位 ", " 货位"}) {
            SCOPED_TRACE(std::string(each.name) + " <" + column + ">");
            const auto cnn = std::make_shared<ScriptedConnection>();
            CTables tables;
            tables.Cnn(cnn);
            std::string who = column;
            EXPECT_EQ((tables.*each.method)(who, 3, 1), nullptr);
            EXPECT_EQ(who, column);
            EXPECT_TRUE(cnn->Statements().empty());
        }
    }
}

TEST(FreeTextColumns, HandOutTheConnectionsRowsOrItsErrors) {
    for (const auto& each : kLists) {
        const auto run = [&](CTables& t) { return (t.*each.method)("经手人", 3, 1); };
        ExpectHandsOut(each.name, run);
        SCOPED_TRACE(each.name);
        CTables tables;
        EXPECT_EQ(FailureOf([&] { run(tables); }), 91);
        const auto cnn = std::make_shared<ScriptedConnection>();
        cnn->FailAt(1);
        tables.Cnn(cnn);
        EXPECT_EQ(FailureOf([&] { run(tables); }), kRefused);
    }
}

}  // namespace
}  // namespace kpTables::test
