// The figures of an owner's reports. All expected figures are worked out by hand.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "bookkeeping/BookOfAYear.h"
#include "kpTables/CTables.h"
#include "kpTables/Error.h"
#include "kpTables/bookkeeping/BookYear.h"
#include "kpTables/bookkeeping/ReportBalance.h"
#include "kpTables/bookkeeping/ReportDays.h"
#include "kpTables/bookkeeping/ReportMonths.h"
#include "kpTables/bookkeeping/ReportStock.h"
#include "kpTables/bookkeeping/ReportValuation.h"

namespace kpTables::bookkeeping {
namespace {

/// January in 东库: product 1 comes in on the 20th (6 for 38) and goes out on the 10th (5 for 40, which cost 27.5; the
/// cost bill is of the 31st). 西库 has no bills.
class Reports : public testing::Test {
protected:
    Reports() : book_(BookOfAYear()) {
        tables_.Cnn(book_);
        Enter(*book_, {"入库", 1, 1, 1, 1, "6", "38"});
        Enter(*book_, {"出库", 1, 1, 1, 1, "5", "40"});
        book_->Execute("Update 入库目录 Set 日子=20");
        book_->Execute("Update 出库目录 Set 日子=10");
        EnterCost(1, 1, 1, "27.5");
    }

    void EnterCost(int id, int month, int product, const std::string& amount) {
        const std::string bill = std::to_string(id);
        book_->Execute("Insert Into 成本目录 (CostID,年份,月份,日子,dpID) Values (" + bill + ",2004," +
                       std::to_string(month) + ",31,1)");
        book_->Execute("Insert Into 成本记录 (CostID,pdID,数量,金额) Values (" + bill + "," + std::to_string(product) +
                       ",5," + amount + ")");
    }

    void Close(int month, int warehouse, bool atCost) {
        auto options = Month(month, warehouse);
        options.costUsed = atCost;
        const auto results = CloseMonth(book_, std::make_shared<OneAnswer>(MessageAnswer::Yes), options);
        ASSERT_EQ(results.front().outcome, ClosingOutcome::Done) << results.front().reason;
    }

    /// "day: opening in out closing", quantity and amount each.
    std::vector<std::string> Days(int warehouse, Valuation valuation) {
        std::vector<std::string> lines;
        for (const auto& day : DailyFigures(tables_, 1, warehouse, valuation)) {
            const auto pair = [](double quantity, Currency amount) {
                return " " + Text(quantity) + "/" + amount.ToText();
            };
            lines.push_back(Text(day.day) + ":" + pair(day.openingQuantity, day.openingAmount) +
                            pair(day.inQuantity, day.inAmount) + pair(day.outQuantity, day.outAmount) +
                            pair(day.quantity, day.amount));
        }
        return lines;
    }

    std::vector<std::string> States(std::int16_t month) {
        std::vector<std::string> lines;
        for (const auto& each : MonthStates(*book_, month, std::nullopt)) {
            static constexpr const char* kNames[] = {"closed", "open", "not reached", "unused"};
            lines.push_back(each.name + " " + kNames[static_cast<int>(each.state)]);
        }
        return lines;
    }

    /// Outbound and closing amounts of product 1.
    std::string Balance(std::int32_t warehouse, Valuation valuation) {
        const auto rows = BalanceAt(tables_, warehouse, std::int16_t{1}, valuation);
        rows->Find("pdID=1");
        return Text(rows->Fields("本期出库金额").Value()) + " " + Text(rows->Fields("本期出库单价").Value()) + " " +
               Text(rows->Fields("本期库存金额").Value()) + " " + Text(rows->Fields("本期库存单价").Value());
    }

    BookPtr book_;
    CTables tables_;
};

using Lines = std::vector<std::string>;

TEST_F(Reports, DaysComeInOrderWithARunningStock) {
    EXPECT_EQ(Days(1, Valuation::OutboundBills), (Lines{"10: 110/75 0/0 5/40 105/35", "20: 105/35 6/38 0/0 111/73"}));
    EXPECT_EQ(Days(0, Valuation::OutboundBills), (Lines{"10: 113/90 0/0 5/40 108/50", "20: 108/50 6/38 0/0 114/88"}));
}

TEST_F(Reports, AtCostADayHasTheAmountOfItsCostBills) {
    EXPECT_EQ(Days(1, Valuation::CostBills),
              (Lines{"10: 110/75 0/0 5/0 105/75", "20: 105/75 6/38 0/0 111/113", "31: 111/113 0/0 0/27.5 111/85.5"}));
}

TEST_F(Reports, DaysOfAMonthWithCostBillsAloneBeginWithItsOpeningStock) {
    Remove(*book_, {"入库", 1, 1, 1, 1, "", ""});
    Remove(*book_, {"出库", 1, 1, 1, 1, "", ""});
    EXPECT_EQ(Days(1, Valuation::CostBills), (Lines{"31: 110/75 0/0 0/27.5 110/47.5"}));
    EXPECT_EQ(Days(1, Valuation::OutboundBills), Lines());
}

TEST_F(Reports, StatesOfMonths) {
    EXPECT_EQ(States(1), (Lines{"东库 open", "西库 open"}));
    EXPECT_EQ(States(2), (Lines{"东库 not reached", "西库 not reached"}));
    Close(1, 1, false);
    EXPECT_EQ(States(1), (Lines{"东库 closed", "西库 open"}));
    EXPECT_EQ(States(2), (Lines{"东库 open", "西库 not reached"}));
    EXPECT_EQ(States(3), (Lines{"东库 not reached", "西库 not reached"}));
    EXPECT_EQ(MonthStates(*book_, 1, 2).front().state, MonthState::Open);
    EXPECT_THROW(MonthStates(*book_, 1, 9), Error);
}

TEST_F(Reports, AWarehouseWithoutAnyFiguresIsUnused) {
    book_->Execute("Delete From 仓库余额表 Where dpID=2");
    EXPECT_EQ(States(1), (Lines{"东库 open", "西库 unused"}));
    book_->Execute("Update 仓库余额表 Set 月份=3");
    book_->Execute("Update 入库目录 Set 月份=3");
    book_->Execute("Update 出库目录 Set 月份=3");
    book_->Execute("Update 成本目录 Set 月份=3");
    EXPECT_EQ(States(2), (Lines{"东库 unused", "西库 unused"}));
    EXPECT_EQ(LastUsedMonth(*book_), 3);
    EXPECT_EQ(BookYear(*book_), 2004);
    const auto empty = CreateBook("memory:");
    EXPECT_EQ(LastUsedMonth(*empty), 0);
    EXPECT_EQ(BookYear(*empty), 0);
    empty->Execute("Insert Into 系统选项 (Item,Discription) Values ('建帐日期','2027年01月01日')");
    EXPECT_EQ(BookYear(*empty), 2027);
    empty->Execute("Insert Into 出库目录 (年份,月份,日子) Values (2026,1,1)");
    EXPECT_EQ(BookYear(*empty), 2026);
    EXPECT_TRUE(MonthStates(*empty, 1, std::nullopt).empty());
}

TEST_F(Reports, AClosedMonthTellsItsValuation) {
    EXPECT_EQ(ClosedWith(*book_, 1, 1), std::nullopt);
    Close(1, 1, true);
    EXPECT_EQ(ClosedWith(*book_, 1, 1), Valuation::CostBills);
    EXPECT_EQ(ValuationOf(tables_), Valuation::CostBills);
    EXPECT_EQ(ClosedWith(*book_, 2, 1), std::nullopt);
}

TEST_F(Reports, TheSettingComesFirst) {
    EXPECT_EQ(ValuationOf(tables_), Valuation::OutboundBills);
    EXPECT_EQ(ValuationSetting(tables_), std::nullopt);
    tables_.Update_Option(kValuationSetting, Variant("成本"));
    EXPECT_EQ(ValuationOf(tables_), Valuation::CostBills);
    Close(1, 1, true);
    tables_.Update_Option(kValuationSetting, Variant("出库"));
    EXPECT_EQ(ValuationOf(tables_), Valuation::OutboundBills);
    tables_.Update_Option(kValuationSetting, Variant("移动平均"));
    EXPECT_THROW(ValuationOf(tables_), Error);
}

TEST_F(Reports, TheBalanceIsShownAtEitherValuation) {
    EXPECT_EQ(Balance(1, Valuation::CostBills), Balance(1, Valuation::OutboundBills)) << "an open month";
    Close(1, 1, true);
    // Opens with 50 for 10; 11 are left. The price of 5.5 is the cost bill's 27.5 for 5.
    const auto asStored = Balance(1, Valuation::CostBills);
    EXPECT_TRUE(asStored.starts_with("27.5 ") && asStored.ends_with(" 60.5 5.5")) << asStored;
    EXPECT_EQ(Balance(1, Valuation::OutboundBills), "40 8 48 4.36363636363636");
    Close(1, 2, false);
    // 3 for 15 in 西库: 14 for 63.
    EXPECT_EQ(Balance(0, Valuation::OutboundBills), "40 8 63 4.5");
}

TEST_F(Reports, BalanceWithoutRowsHasColumns) {
    const auto empty = CreateBook("memory:");
    tables_.Cnn(empty);
    std::int16_t month = 0;
    const auto rows = BalanceAt(tables_, 0, month, Valuation::OutboundBills);
    EXPECT_TRUE(rows->Eof());
    EXPECT_EQ(rows->FieldAt(0).name, "pdID");
}

TEST_F(Reports, StockOfOneProductEqualsThatOfAll) {
    const auto watched = std::make_shared<WatchedConnection>(book_, [] { return 0; });
    tables_.Cnn(watched);
    for (const auto valuation : {Valuation::OutboundBills, Valuation::CostBills}) {
        const StockScope scope{1, 1, valuation};
        const auto all = StockByProduct(*book_, scope);
        ASSERT_EQ(all.size(), 2U);
        const auto one = StockOf(tables_, *watched, scope, 1);
        const bool atCost = valuation == Valuation::CostBills;
        EXPECT_EQ(one.Quantity(), 11);
        EXPECT_EQ(one.Amount().ToText(), atCost ? "60.5" : "48");
        EXPECT_EQ(one.Amount(), all.at(1).Amount());
        EXPECT_EQ(one.Price(), all.at(1).Price());
    }
}

/// As the closing values them: 1 of product 2 goes out for 0.3, and only product 1 has a cost bill.
TEST_F(Reports, GoodsWithoutACostBillLeaveAtTheirOutboundBills) {
    Enter(*book_, {"出库", 2, 1, 1, 2, "1", "0.3"});
    Close(1, 1, true);
    const auto stored = book_->Execute("Select Sum(本期库存金额) As 金额 From 仓库余额表 Where dpID=1 And 月份=1");
    // 50 + 38 - 27.5, and 25 - 0.3.
    EXPECT_EQ(Text(stored->GetValue(0)), "85.2");
    EXPECT_EQ(ClosedWith(*book_, 1, 1), Valuation::CostBills);
    EXPECT_EQ(Days(1, Valuation::CostBills),
              (Lines{"10: 110/75 0/0 5/0 105/75", "15: 105/75 0/0 1/0.3 104/74.7", "20: 104/74.7 6/38 0/0 110/112.7",
                     "31: 110/112.7 0/0 0/27.5 110/85.2"}));
    const StockScope scope{1, 1, Valuation::CostBills};
    EXPECT_EQ(StockByProduct(*book_, scope).at(2).Amount().ToText(), "24.7");
    const auto watched = std::make_shared<WatchedConnection>(book_, [] { return 0; });
    tables_.Cnn(watched);
    EXPECT_EQ(StockOf(tables_, *watched, scope, 2).Amount().ToText(), "24.7");
    EXPECT_EQ(StockOf(tables_, *watched, {1, std::nullopt, Valuation::CostBills}, 1).Amount().ToText(), "75.5");
    // 40 and 0.3 at the outbound bills.
    EXPECT_NE(Balance(1, Valuation::OutboundBills), Balance(1, Valuation::CostBills));
    EXPECT_EQ(StockValues(*book_, Valuation::CostBills).front().amount.ToText(), "85.2");
}

TEST_F(Reports, StockValuesByWarehouseAndMonth) {
    const auto lines = [&](Valuation valuation) {
        Lines values;
        for (const auto& value : StockValues(*book_, valuation)) {
            values.push_back(Text(value.warehouse) + " " + Text(value.month) + " " + value.amount.ToText());
        }
        return values;
    };
    EXPECT_EQ(lines(Valuation::OutboundBills), (Lines{"1 1 73", "2 1 15"}));
    EXPECT_EQ(lines(Valuation::CostBills), (Lines{"1 1 85.5", "2 1 15"}));
    Close(1, 1, true);
    EXPECT_EQ(lines(Valuation::CostBills), (Lines{"1 1 85.5", "1 2 85.5", "2 1 15"}));
}

}  // namespace
}  // namespace kpTables::bookkeeping
