// Methods of several statements when one of them is refused, or a step of an edit fails: what was sent before, what is
// answered or raised, what stays done.
#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <span>

#include "BookScript.h"
#include "ClosingScript.h"
#include "PaySheetScript.h"
#include "TableScript.h"
#include "kpTables/MemoryGrid.h"
#include "support/Failure.h"

namespace kpTables::test {
namespace {

using Answers = std::vector<RecordsetPtr>;

std::int16_t Short(int value) { return static_cast<std::int16_t>(value); }

struct Outcome {
    std::string result;  ///< "raised" for the connection's error
    std::size_t sent;    ///< how many of the statements
    std::vector<std::string> messages = {};
};

struct FailingCase {
    const char* name;
    std::function<Answers()> answers;  ///< one a statement
    std::function<std::string(CTables&)> call;
    std::vector<std::string> statements;  ///< as the journal has them; one that ends in * is only begun
    std::vector<Outcome> outcomes;        ///< first when none fails, then for the failure of each in turn
    bool isSQL = false;
};

/// The outcomes of a method that the first failure ends.
std::vector<Outcome> Ends(const std::string& done, const std::string& failed, std::size_t statements) {
    std::vector<Outcome> outcomes = {{done, statements}};
    for (std::size_t i = 1; i <= statements; ++i) outcomes.push_back({failed, i});
    return outcomes;
}

bool IsSame(const std::string& sent, const std::string& expected) {
    if (!expected.ends_with('*')) return sent == expected;
    return sent.starts_with(expected.substr(0, expected.size() - 1));
}

void ExpectOutcome(const FailingCase& each, std::size_t failing) {
    SCOPED_TRACE(std::string(each.name) + ", failing: " + std::to_string(failing));
    // Yes to every question; any answer does for what is only shown.
    BookScript book({MessageAnswer::Yes, MessageAnswer::Yes, MessageAnswer::Yes});
    book.tables.isSQL(each.isSQL);
    if (failing > 0) book.cnn->FailAt(static_cast<int>(failing));
    const auto answers = each.answers();
    ASSERT_EQ(answers.size(), each.statements.size());
    for (std::size_t i = 0; i < answers.size(); ++i)
        if (i + 1 != failing) book.cnn->Answer(answers[i]);

    std::string result;
    const auto error = FailureOf([&] { result = each.call(book.tables); });
    if (error == kRefused) result = "raised";
    EXPECT_TRUE(error == 0 || error == kRefused) << error;

    const Outcome& outcome = each.outcomes.at(failing);
    EXPECT_EQ(result, outcome.result);
    EXPECT_EQ(book.Messages(), outcome.messages);
    const Journal& sent = *book.cnn->Log();
    ASSERT_EQ(sent.size(), outcome.sent);
    for (std::size_t i = 0; i < sent.size(); ++i) EXPECT_PRED2(IsSame, sent[i], each.statements[i]);
}

void ExpectOutcomes(std::span<const FailingCase> cases) {
    for (const FailingCase& each : cases) {
        ASSERT_EQ(each.outcomes.size(), each.statements.size() + 1) << each.name;
        for (std::size_t failing = 0; failing <= each.statements.size(); ++failing) ExpectOutcome(each, failing);
    }
}

std::shared_ptr<ScriptedRecordset> Periods(const Rows& rows) {
    return MakeRows({{"年份", VarType::Integer}, {"月份", VarType::Integer}}, rows);
}

std::shared_ptr<ScriptedRecordset> Figures(double quantity, double amount) {
    return MakeRows({{"数量", VarType::Double}, {"金额", VarType::Double}}, {{quantity, amount}});
}

std::shared_ptr<ScriptedRecordset> Ids(const char* name, const Rows& rows) {
    return MakeRows({{name, VarType::Long}}, rows);
}

const std::string kRefusedOption = "修改系统选项: refused";

TEST(FailingStatement, OfSettingsAndDates) {
    const auto settings = [](std::size_t count) {
        return [count] {
            Answers answers;
            for (std::size_t i = 0; i < count; ++i) answers.push_back(OptionRows({}));
            return answers;
        };
    };
    const std::string write = "open table 系统选项";
    const FailingCase cases[] = {
        {"a setting",
         settings(1),
         [](CTables& t) {
             t.Update_Option("A", "1");
             return std::string();
         },
         {write},
         {{"", 1}, {"", 1, {kRefusedOption}}}},
        {"an item of the book's: its second statement fails quietly",
         [] {
             return Answers{OptionRows({}), MakeRows({{"单位名称", VarType::String}}, {{"旧"}})};
         },
         [](CTables& t) { return Text(t.Update_AccInfo("单位名称", "新")); },
         {write, "open table AccInfo"},
         {{"False", 2}, {"False", 2, {kRefusedOption}}, {"False", 2}}},
        {"a new book goes on",
         settings(3),
         [](CTables& t) { return Text(t.Create_NewBook()); },
         {write, write, write},
         {{"True", 3}, {"True", 3, {kRefusedOption}}, {"True", 3, {kRefusedOption}}, {"True", 3, {kRefusedOption}}}},
        {"a creation taken back",
         settings(1),
         [](CTables& t) { return Text(t.CancCreateBook()); },
         {write},
         {{"False", 1}, {"False", 1, {kRefusedOption}}}},
        {"the day the book was set up",
         [] {
             return Answers{Setting(nullptr), Periods({{Short(2004), Short(3)}}), OptionRows({})};
         },
         [](CTables& t) { return t.Get_BuiltDate().ToIso(); },
         {"open Select * From 系统选项 Where Item='建帐日期'",
          "execute Select Distinct top 1 年份,月份 From 仓库余额表 Order by 年份,月份", write},
         {{"2004-03-01", 3}, {"2004-03-01", 3}, {"1899-12-30", 2}, {"2004-03-01", 3, {kRefusedOption}}}},
        {"the book's current day",
         [] {
             return Answers{Setting("2003-01-05"), Setting("2004年02月05日"),
                            Periods({{Short(2004), Short(3)}, {Short(2004), Short(2)}}), OptionRows({})};
         },
         [](CTables& t) { return t.Get_CurrentDate().ToIso(); },
         {"open Select * From 系统选项 Where Item='当前日期'", "open Select * From 系统选项 Where Item='建帐日期'",
          "execute Select Distinct Top 2 年份,月份 From 仓库余额表 Order by 年份,月份 DESC", write},
         {{"2004-03-01", 4},
          {"2004-03-01", 4},
          {"2003-01-05", 3},
          {"2003-01-05", 3},
          {"2004-03-01", 4, {kRefusedOption}}}},
        {"payment methods",
         [] {
             return Answers{MakeRows({}, {}), nullptr, nullptr};
         },
         [](CTables& t) { return Text(t.SetDefaultSFK()); },
         {"execute Select * From 收付款方式",
          "execute Insert into 收付款方式 (收付款方式,科目名称,科目代码) Values (' ',' ',' ')",
          "execute Insert into 收付款方式 (收付款方式,科目名称,科目代码) Values ('现金','现金','101')"},
         Ends("True", "False", 3)},
    };
    ExpectOutcomes(cases);
}

TEST(FailingStatement, OfBills) {
    const auto nothing = [] { return Answers{nullptr, nullptr}; };
    const auto bill = [](std::int32_t id) {
        return MakeRows({{"BillID", VarType::Long},
                         {"月份", VarType::Integer},
                         {"单据类型", VarType::String},
                         {"单据编号", VarType::String}},
                        {{id, Short(3), "调拨单", "D1"}});
    };
    const auto transfer = [bill] { return Answers{bill(5), bill(8)}; };
    const FailingCase cases[] = {
        {"inbound bills cleared",
         nothing,
         [](CTables& t) { return Text(t.ClearInputRecs()); },
         {"execute Delete from 入库目录", "execute Delete from 入库记录"},
         Ends("True", "raised", 2)},
        {"outbound bills cleared",
         nothing,
         [](CTables& t) { return Text(t.ClearOutputRecs()); },
         {"execute Delete from 出库目录", "execute Delete from 出库记录"},
         Ends("True", "raised", 2)},
        {"cost bills cleared",
         nothing,
         [](CTables& t) { return Text(t.ClearCostRecs()); },
         {"execute Delete from 成本目录", "execute Delete from 成本记录"},
         Ends("True", "False", 2)},
        {"a bill deleted",
         nothing,
         [](CTables& t) { return Text(t.Del_单据(5, "入库")); },
         {"execute Delete From 入库目录 Where BillID=5", "execute Delete From 入库记录 Where BillID=5"},
         Ends("False", "raised", 2)},
        {"the other half of an outbound bill",
         transfer,
         [](CTables& t) { return Text(t.GetShiftID(5, std::string("出库"))); },
         {"open Select * From 出库目录 Where billid=5",
          "open Select * From 入库目录 Where 月份=3 And 单据类型='调拨单' And 单据编号='D1'"},
         Ends("8", "0", 2)},
        {"the outbound half of an inbound bill",
         transfer,
         [](CTables& t) { return Text(t.Get_FromBillID(5)); },
         {"open Select * From 入库目录 Where billID=5",
          "open Select * From 出库目录 Where 月份=3 And 单据类型='调拨单' And 单据编号='D1'"},
         Ends("8", "raised", 2)},
        {"days with bills",
         [] {
             return Answers{MakeRows({}, {}), MakeRows({{"日期", VarType::Date}}, {{Day("2004-03-07")}})};
         },
         [](CTables& t) { return Text(t.rs单据日期列表()->RecordCount()); },
         {"execute select distinct CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + '-' + CAST(日子 AS "
          "char(2)) AS DATETIME) from 入库目录 union select distinct CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS "
          "char(2)) + '-' + CAST(日子 AS char(2)) AS DATETIME) from 出库目录",
          "execute select distinct CAST(CAST(年份 AS char(4)) + '-' + CAST(月份 AS char(2)) + '-' + CAST(日子 AS "
          "char(2)) AS DATETIME) AS 日期 from 入库目录 union select distinct CAST(CAST(年份 AS char(4)) + '-' + "
          "CAST(月份 AS char(2)) + '-' + CAST(日子 AS char(2)) AS DATETIME) from 出库目录"},
         Ends("1", "raised", 2),
         true},
        {"a product by any of its texts",
         [] {
             return Answers{Ids("pdID", {}), Ids("pdID", {}), Ids("pdID", {}), Ids("pdID", {{6}})};
         },
         [](CTables& t) { return Text(t.Get商品ID("甲")); },
         {"execute Select * From 商品设置 Where 商品条码='甲'", "execute Select * From 商品设置 Where 输入简码='甲'",
          "execute Select * From 商品设置 Where 商品编号='甲'", "execute Select * From 商品设置 Where 商品名称='甲'"},
         Ends("6", "0", 4)},
    };
    ExpectOutcomes(cases);
}

/// The month that is written back, and whether the call failed.
std::string BalanceMonth(CTables& tables) {
    std::int16_t month = 0;
    const auto error = FailureOf([&] { tables.rs余额记录(0, month); });
    return (error == kRefused ? "raised, month " : "month ") + Text(month);
}

TEST(FailingStatement, OfTheBalance) {
    const auto missing = [](std::int32_t product) {
        return MakeRows({{"pdID", VarType::Long}, {"dpID", VarType::Long}}, {{product, 2}});
    };
    const auto year = [] { return MakeRows({{"年份", VarType::Integer}}, {{Short(2004)}}); };
    const std::string askedIn = "检查入库记录: 入库记录中，有仓库余额表中没有的记录：1,是否修正？";
    const std::string askedOut = "检查出库记录: 出库记录中，有仓库余额表中没有的记录：1,是否修正？";
    const FailingCase cases[] = {
        {"balance rows of the first month",
         [] {
             return Answers{MakeRows({{"月份", VarType::Integer}}, {{Short(3)}}), MakeRows({}, {})};
         },
         BalanceMonth,
         {"execute Select TOP 1 月份 From 仓库余额表  ORDER BY 月份", "execute SELECT BnRec.pdID As pdID,*"},
         {{"month 3", 2}, {"raised, month 0", 1}, {"raised, month 3", 2}}},
        {"balance rows repaired",
         [=] { return Answers{missing(7), year(), nullptr, missing(8), year(), nullptr}; },
         [](CTables& t) {
             t.CheckBnProduct(3);
             return std::string("done");
         },
         {"execute Select Distinct pdID,dpID From 入库记录 Where pdID not in (Select Distinct pdID From 仓库余额表 "
          "Where 月份<=3) And BillID In (Select BillId From 入库目录 Where 月份<=3)",
          "execute Select Top 2 年份 From 仓库余额表 Order by 年份 DESC",
          "execute Insert into 仓库余额表 (年份,月份,pdID,dpID) Values (2004,3,7,2)",
          "execute Select Distinct pdID,dpID From 出库记录 Where pdID not in (Select Distinct  pdID From 仓库余额表 "
          "Where 月份<=3) And BillID In (Select BillId From 出库目录 Where 月份<=3)",
          "execute Select Top 2 年份 From 仓库余额表 Order by 年份 DESC",
          "execute Insert into 仓库余额表 (年份,月份,pdID,dpID) Values (2004,3,8,2)"},
         {{"done", 6, {askedIn, askedOut}},
          {"raised", 1},
          {"raised", 2, {askedIn}},
          {"raised", 3, {askedIn}},
          {"raised", 4, {askedIn}},
          {"raised", 5, {askedIn, askedOut}},
          {"raised", 6, {askedIn, askedOut}}}},
        {"a month closed",
         [] {
             const ClosingScript s;
             return Answers{s.balance,        s.inbound, s.outbound,   s.inboundTotals,
                            s.outboundTotals, s.cost,    s.costTotals, s.closed};
         },
         [](CTables& t) { return Text(t.Close_DepotBalance(2, 3, true, "note")); },
         {"open Select * From 仓库余额表 Where dpID=2 And 月份=3",
          "execute Select pdID,Avg(除税单价) As 单价,Sum(数量) As 数量,Sum(除税金额) As 金额 From 入库记录 Where "
          "BillID "
          "in (Select BillID From 入库目录 Where dpID=2 And 月份=3) Group by pdID",
          "execute Select pdID,Avg(除税单价) As 单价,Sum(数量) As 数量,Sum(除税金额) As 金额 From 出库记录 Where "
          "BillID "
          "in (Select BillID From 出库目录 Where dpID=2 And 月份=3) Group by pdID",
          "execute Select pdID,Sum(数量) As 数量,Sum(除税金额) As 金额 From 入库记录 Where BillID in (Select BillID "
          "From 入库目录 Where dpID=2 And 月份<=3) Group by pdID",
          "execute Select pdID,Sum(数量) As 数量,Sum(除税金额) As 金额 From 出库记录 Where BillID in (Select BillID "
          "From 出库目录 Where dpID=2 And 月份<=3) Group by pdID",
          "execute Select pdID,Avg(单价) As 单价,Sum(数量) As 数量,Sum(金额) As 金额 From 成本记录 Where CostID in "
          "(Select CostID From 成本目录 Where dpID=2 And 月份=3) Group by pdID",
          "execute Select pdID,Avg(单价) As 单价,Sum(数量) As 数量,Sum(金额) As 金额 From 成本记录 Where CostID in "
          "(Select CostID From 成本目录 Where dpID=2 And 月份<=3) Group by pdID",
          "execute Select * From 仓库余额表 Where 月份=3 And dpID=2"},
         Ends("True", "False", 8)},
        {"sales in a month: a failure counts as no rows",
         [] {
             return Answers{Ids("BillID", {}), Ids("ListID", {{1}})};
         },
         [](CTables& t) { return Text(t.isSaled(2, 3)); },
         {"execute Select * from 出库记录 Where billID in (Select billID From 出库目录 Where 月份=3 And dpID=2)",
          "execute Select * From 销售汇总记录 Where ListID in (Select ID As ListID From 销售汇总目录 Where 月份=3 And "
          "dpID=2)"},
         {{"True", 2}, {"True", 2}, {"False", 2}}},
    };
    ExpectOutcomes(cases);
}

TEST(FailingStatement, OfFiguresAndReports) {
    const std::string opening =
        "execute SELECT Sum(Bn.上期库存数量) AS 数量, Sum(Bn.上期库存金额) AS 金额 FROM 仓库余额表 AS Bn Where  "
        "bn.月份=3 And bn.dpID=2 And bn.pdID=7";
    const std::string in =
        "execute SELECT Sum(Rec.数量) AS 数量, Sum(Rec.除税金额) AS 金额, Sum(Rec.税额) AS 税额, Sum(Rec.金额) AS 合计 "
        "FROM 入库记录 AS Rec INNER JOIN 入库目录 AS Lst ON Rec.BillID = Lst.BillID Where  Lst.月份=3 And Lst.dpID=2 "
        "And Rec.pdID=7";
    const std::string out =
        "execute SELECT Sum(Rec.数量) AS 数量, Sum(Rec.除税金额) AS 金额, Sum(Rec.税额) AS 税额, Sum(Rec.金额) AS 合计 "
        "FROM 出库记录 AS Rec INNER JOIN 出库目录 AS Lst ON Rec.BillID = Lst.BillID Where  Lst.月份=3 And Lst.dpID=2 "
        "And Rec.pdID=7";
    const std::string cost =
        "execute Select pdID,Sum(数量) As 数量,Sum(金额) As 金额 From 成本记录 Where 成本记录.CostID in (Select CostID "
        "From 成本目录 Where True  And dpID=2 And 月份=3) And pdID=7 Group by pdID";
    const auto figures = [] { return Answers{Figures(10, 100), Figures(4, 50), Figures(3, 40)}; };
    const auto day = [] {
        return MakeRows({{"月份", VarType::Integer},
                         {"日子", VarType::Integer},
                         {"金额", VarType::Double},
                         {"数量", VarType::Double}},
                        {{Short(3), Short(7), 50.0, 4.0}});
    };
    const FailingCase cases[] = {
        {"stock of the month: a figure that fails counts as 0",
         figures,
         [](CTables& t) { return Text(t.Get本期库存(2, 7, 3, "数量")); },
         {opening, in, out},
         {{"11", 3}, {"1", 3}, {"7", 3}, {"14", 3}}},
        {"stock of the month by costs",
         figures,
         [](CTables& t) { return Text(t.Get本期库存(2, 7, 3, "金额", true)); },
         {opening, in, cost},
         {{"110", 3}, {"10", 3}, {"60", 3}, {"150", 3}}},
        {"stock",
         figures,
         [](CTables& t) { return Text(t.Get商品库存(2, 7, 3, "金额")); },
         {opening, in, out},
         {{"110", 3}, {"10", 3}, {"60", 3}, {"150", 3}}},
        {"days of a month",
         [=] {
             return Answers{day(), day(), Figures(10, 100)};
         },
         [](CTables& t) { return Text(t.rs日报列表(Short(3), 2)->RecordCount()); },
         {"execute SELECT Lst.月份, Lst.日子, Sum(Rec.除税金额) AS 金额, Sum(Rec.数量) AS 数量 FROM 入库目录 AS Lst "
          "INNER JOIN 入库记录 AS Rec ON Lst.BillID = Rec.BillID Where 月份=3 And Lst.dpID=2 GROUP BY Lst.月份, "
          "Lst.日子 Order by 日子",
          "execute SELECT Lst.月份, Lst.日子, Sum(Rec.除税金额) AS 金额, Sum(Rec.数量) AS 数量 FROM 出库目录 AS Lst "
          "INNER JOIN 出库记录 AS Rec ON Lst.BillID = Rec.BillID Where 月份=3 And Lst.dpID=2 GROUP BY Lst.月份, "
          "Lst.日子 Order by 日子",
          "execute Select Sum(上期库存数量) As 数量,Sum(上期库存金额) As 金额 From 仓库余额表 Where 月份=3 And dpID=2"},
         Ends("1", "raised", 3)},
    };
    ExpectOutcomes(cases);
}

GridPtr TwoColumns() {
    const auto grid = std::make_shared<MemoryGrid>();
    grid->AddColumn({"A", "甲", false, 10});
    grid->AddColumn({"B", "乙", false, 20});
    return grid;
}

std::string SaveTwoColumns(CTables& tables) {
    return Text(tables.Header(TwoColumns(), std::string("L"), std::string("F"), true));
}

std::string PayTwoDrivers(CTables& tables) {
    const auto grid = PayGrid();
    for (const char* name : {"王五", "赵六", "合计"}) AddDriver(*grid, name, 0);
    return Text(tables.Update工资表(2004, 3, GridPtr(grid)));
}

/// The answer and the id as it comes back.
std::string SaveReport(CTables& tables, std::int32_t id) {
    const auto answer = tables.History_Update(id, std::string("月报"), std::string("x"), Day("2004-03-07"));
    return Text(answer) + ", id " + Text(id);
}
std::string AddReport(CTables& tables) { return SaveReport(tables, 0); }
std::string ChangeReport(CTables& tables) { return SaveReport(tables, 5); }

TEST(FailingStatement, OfOperatorsLayoutsReportsAndPay) {
    const FailingCase cases[] = {
        {"operators of an empty table",
         [] {
             return Answers{Operators(), Operators(), Operators({{7, "系统操作员"}})};
         },
         [](CTables& t) { return Text(t.rs操作员()->RecordCount()); },
         {"execute Select * From 操作员 Order By ID", "open table 操作员", "execute Select * From 操作员 Order By ID"},
         Ends("1", "raised", 3)},
        {"an operator added",
         [] { return Answers{Operators()}; },
         [](CTables& t) { return Text(t.操作员_Append("李四")); },
         {"open table 操作员"},
         Ends("7", "raised", 1)},
        {"rights cleared",
         [] {
             return Answers{Operators({{5, "张三"}})};
         },
         [](CTables& t) { return Text(t.操作权限_Clear(5)); },
         {"open Select * From 操作员 Where ID=5"},
         Ends("True", "False", 1)},
        {"the log pruned",
         [] {
             return Answers{Ids("logID", {{12}, {11}}), nullptr};
         },
         [](CTables& t) { return Text(t.Delete_LogRecs(300)); },
         {"execute Select Top 200 * From Log Order by logDate DESC", "execute Delete From Log Where logID<12"},
         Ends("True", "False", 2)},
        {"a layout saved",
         [] {
             return Answers{nullptr, Layout(false)};
         },
         SaveTwoColumns,
         {"execute Delete From Header Where Table='L' And Flag='F'", "open table Header"},
         Ends("False", "raised", 2)},
        {"a layout applied",
         [] { return Answers{Layout(false)}; },
         [](CTables& t) { return Text(t.Header(TwoColumns(), std::string("L"), std::string("F"))); },
         {"open Select * From Header Where Table='L' And Flag='F'"},
         Ends("False", "raised", 1)},
        {"a report's setting added",
         [] { return Answers{Reports({})}; },
         AddReport,
         {"open table History"},
         Ends("-1, id 7", "0, id 0", 1)},
        {"a report's setting changed",
         [] {
             return Answers{Reports({{5, "旧"}})};
         },
         ChangeReport,
         {"open Select * From History Where rpID=5"},
         Ends("-1, id 5", "0, id 5", 1)},
        {"the pay of a month",
         [] {
             return Answers{nullptr, PaySheet()};
         },
         PayTwoDrivers,
         {"execute Delete From 工资表 Where 月份=3", "open table 工资表"},
         Ends("True", "raised", 2)},
    };
    ExpectOutcomes(cases);
}

}  // namespace
}  // namespace kpTables::test
