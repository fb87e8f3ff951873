// Methods of several statements when one of them is refused, or a step of an edit fails: what was sent before, what is
// answered or raised, what stays done.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <span>

#include "BookScript.h"
#include "ClosingScript.h"
#include "PaySheetScript.h"
#include "TableScript.h"
#include "corpus/Call.h"
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
    Journal statements;             ///< from the corpus
    std::vector<Outcome> outcomes;  ///< first when none fails, then for the failure of each in turn
    bool isSQL = false;
};

/// The outcomes of a method that the first failure ends.
std::vector<Outcome> Ends(const std::string& done, const std::string& failed, std::size_t statements) {
    std::vector<Outcome> outcomes = {{done, statements}};
    for (std::size_t i = 1; i <= statements; ++i) outcomes.push_back({failed, i});
    return outcomes;
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
    EXPECT_TRUE(std::equal(sent.begin(), sent.end(), each.statements.begin()));
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
    const FailingCase cases[] = {
        {"a setting",
         settings(1),
         [](CTables& t) {
             t.Update_Option("A", "1");
             return std::string();
         },
         corpus::Entries(R"(Update_Option("A", "1"))"),
         {{"", 1}, {"", 1, {kRefusedOption}}}},
        {"an item of the book's: its second statement fails quietly",
         [] {
             return Answers{OptionRows({}), MakeRows({{"单位名称", VarType::String}}, {{"旧"}})};
         },
         [](CTables& t) { return Text(t.Update_AccInfo("单位名称", "新")); },
         corpus::Entries(R"(Update_AccInfo("单位名称", "新"))"),
         {{"False", 2}, {"False", 2, {kRefusedOption}}, {"False", 2}}},
        {"a new book goes on",
         settings(3),
         [](CTables& t) { return Text(t.Create_NewBook()); },
         corpus::Entries(R"(Create_NewBook())"),
         {{"True", 3}, {"True", 3, {kRefusedOption}}, {"True", 3, {kRefusedOption}}, {"True", 3, {kRefusedOption}}}},
        {"a creation taken back",
         settings(1),
         [](CTables& t) { return Text(t.CancCreateBook()); },
         corpus::Entries(R"(CancCreateBook())"),
         {{"False", 1}, {"False", 1, {kRefusedOption}}}},
        {"the day the book was set up",
         [] {
             return Answers{Setting(nullptr), Periods({{Short(2004), Short(3)}}), OptionRows({})};
         },
         [](CTables& t) { return t.Get_BuiltDate().ToIso(); },
         corpus::Entries(R"(Get_BuiltDate())", "no stored date"),
         {{"2004-03-01", 3}, {"2004-03-01", 3}, {"1899-12-30", 2}, {"2004-03-01", 3, {kRefusedOption}}}},
        {"the book's current day",
         [] {
             return Answers{Setting("2003-01-05"), Setting("2004年02月05日"),
                            Periods({{Short(2004), Short(3)}, {Short(2004), Short(2)}}), OptionRows({})};
         },
         [](CTables& t) { return t.Get_CurrentDate().ToIso(); },
         corpus::Entries(R"(Get_CurrentDate())", "repaired"),
         {{"2004-03-01", 4},
          {"2004-03-01", 4},
          {"2003-01-05", 3},
          {"2003-01-05", 3},
          {"2004-03-01", 4, {kRefusedOption}}}},
        {"payment methods",
         [] {
             return Answers{MakeRows({}, {}), nullptr, nullptr};
         },
         [](CTables& t) { return Text(t.SetDefaultSFK()); }, corpus::Entries(R"(SetDefaultSFK())", "an empty table"),
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
        {"inbound bills cleared", nothing, [](CTables& t) { return Text(t.ClearInputRecs()); },
         corpus::Entries(R"(ClearInputRecs())"), Ends("True", "raised", 2)},
        {"outbound bills cleared", nothing, [](CTables& t) { return Text(t.ClearOutputRecs()); },
         corpus::Entries(R"(ClearOutputRecs())"), Ends("True", "raised", 2)},
        {"cost bills cleared", nothing, [](CTables& t) { return Text(t.ClearCostRecs()); },
         corpus::Entries(R"(ClearCostRecs())"), Ends("True", "False", 2)},
        {"a bill deleted", nothing, [](CTables& t) { return Text(t.Del_单据(5, "入库")); },
         corpus::Entries(R"(Del_单据(5, "入库"))"), Ends("False", "raised", 2)},
        {"the other half of an outbound bill", transfer,
         [](CTables& t) { return Text(t.GetShiftID(5, std::string("出库"))); },
         corpus::Entries(R"(GetShiftID(5, "出库"))"), Ends("8", "0", 2)},
        {"the outbound half of an inbound bill", transfer, [](CTables& t) { return Text(t.Get_FromBillID(5)); },
         corpus::Entries(R"(Get_FromBillID(5))"), Ends("8", "raised", 2)},
        {"days with bills",
         [] {
             return Answers{MakeRows({}, {}), MakeRows({{"日期", VarType::Date}}, {{Day("2004-03-07")}})};
         },
         [](CTables& t) { return Text(t.rs单据日期列表()->RecordCount()); },
         corpus::Entries(R"(rs单据日期列表())", "", true), Ends("1", "raised", 2), true},
        {"a product by any of its texts",
         [] {
             return Answers{Ids("pdID", {}), Ids("pdID", {}), Ids("pdID", {}), Ids("pdID", {{6}})};
         },
         [](CTables& t) { return Text(t.Get商品ID("甲")); }, corpus::Entries(R"(Get商品ID("甲"))"), Ends("6", "0", 4)},
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
         corpus::Entries(R"(rs余额记录(0, 0))", "month 0 is the first month, 3"),
         {{"month 3", 2}, {"raised, month 0", 1}, {"raised, month 3", 2}}},
        {"balance rows repaired",
         [=] { return Answers{missing(7), year(), nullptr, missing(8), year(), nullptr}; },
         [](CTables& t) {
             t.CheckBnProduct(3);
             return std::string("done");
         },
         corpus::Entries(R"(CheckBnProduct(3))", "a row missing on each side"),
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
         corpus::Entries(R"(Close_DepotBalance(2, 3, True, "note"))"), Ends("True", "False", 8)},
        {"sales in a month: a failure counts as no rows",
         [] {
             return Answers{Ids("BillID", {}), Ids("ListID", {{1}})};
         },
         [](CTables& t) { return Text(t.isSaled(2, 3)); },
         corpus::Entries(R"(isSaled(2, 3))", "no bills"),
         {{"True", 2}, {"True", 2}, {"False", 2}}},
    };
    ExpectOutcomes(cases);
}

TEST(FailingStatement, OfFiguresAndReports) {
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
         corpus::Entries(R"(Get本期库存(2, 7, 3, "数量"))"),
         {{"11", 3}, {"1", 3}, {"7", 3}, {"14", 3}}},
        {"stock of the month by costs",
         figures,
         [](CTables& t) { return Text(t.Get本期库存(2, 7, 3, "金额", true)); },
         corpus::Entries(R"(Get本期库存(2, 7, 3, "金额", True))"),
         {{"110", 3}, {"10", 3}, {"60", 3}, {"150", 3}}},
        {"stock",
         figures,
         [](CTables& t) { return Text(t.Get商品库存(2, 7, 3, "金额")); },
         corpus::Entries(R"(Get商品库存(2, 7, 3, "金额"))"),
         {{"110", 3}, {"10", 3}, {"60", 3}, {"150", 3}}},
        {"days of a month",
         [=] {
             return Answers{day(), day(), Figures(10, 100)};
         },
         [](CTables& t) { return Text(t.rs日报列表(Short(3), 2)->RecordCount()); },
         corpus::Entries(R"(rs日报列表(3, 2))"), Ends("1", "raised", 3)},
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

/// The corpus's call that saves the pay of March 2004.
std::string PayCall() {
    const auto grid = PayGrid();
    std::string keys;
    for (std::int32_t i = 0; i < grid->Cols(); ++i) keys += (i ? ", \"" : "\"") + grid->ColKey(i) + "\"";
    return "Update工资表(2004, 3, Grid(" + keys + "))";
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
         [](CTables& t) { return Text(t.rs操作员()->RecordCount()); }, corpus::Entries(R"(rs操作员())"),
         Ends("1", "raised", 3)},
        {"an operator added", [] { return Answers{Operators()}; },
         [](CTables& t) { return Text(t.操作员_Append("李四")); }, corpus::Entries(R"(操作员_Append("李四"))"),
         Ends("7", "raised", 1)},
        {"rights cleared",
         [] {
             return Answers{Operators({{5, "张三"}})};
         },
         [](CTables& t) { return Text(t.操作权限_Clear(5)); }, corpus::Entries(R"(操作权限_Clear(5))"),
         Ends("True", "False", 1)},
        {"the log pruned",
         [] {
             return Answers{Ids("logID", {{12}, {11}}), nullptr};
         },
         [](CTables& t) { return Text(t.Delete_LogRecs(300)); }, corpus::Entries(R"(Delete_LogRecs(300))"),
         Ends("True", "False", 2)},
        {"a layout saved",
         [] {
             return Answers{nullptr, Layout(false)};
         },
         SaveTwoColumns, corpus::Entries(R"(Header(Grid("A", "B"), "L", "F", True))"), Ends("False", "raised", 2)},
        {"a layout applied", [] { return Answers{Layout(false)}; },
         [](CTables& t) { return Text(t.Header(TwoColumns(), std::string("L"), std::string("F"))); },
         corpus::Entries(R"(Header(Grid("A", "B"), "L", "F"))"), Ends("False", "raised", 1)},
        {"a report's setting added", [] { return Answers{Reports({})}; }, AddReport,
         corpus::Entries(R"(History_Update(0, "月报", "x", #2004-03-07#))"), Ends("-1, id 7", "0, id 0", 1)},
        {"a report's setting changed",
         [] {
             return Answers{Reports({{5, "旧"}})};
         },
         ChangeReport, corpus::Entries(R"(History_Update(5, "月报", "x", #2004-03-07#))"),
         Ends("-1, id 5", "0, id 5", 1)},
        {"the pay of a month",
         [] {
             return Answers{nullptr, PaySheet()};
         },
         PayTwoDrivers, corpus::Entries(PayCall()), Ends("True", "raised", 2)},
    };
    ExpectOutcomes(cases);
}

}  // namespace
}  // namespace kpTables::test
