#include "kpTables/bookkeeping/BillSheet.h"

#include <gtest/gtest.h>

#include "BookOfAYear.h"

namespace kpTables::bookkeeping {
namespace {

using Cells = std::map<std::string, std::string>;

class BillSheetTest : public ::testing::Test {
protected:
    void SetUp() override {
        book_->Execute("Insert Into 厂商资料 (KSID,单位名称) Values (4,'宏图')");
        sheet_.today = Date::FromYearMonthDay(2004, 1, 20);
        sheet_.clerk = "张三";
    }

    static std::vector<SheetRow> Rows(const std::vector<Cells>& cells) {
        std::vector<SheetRow> rows;
        for (const Cells& row : cells) rows.push_back({static_cast<std::int64_t>(rows.size()) + 2, row});
        return rows;
    }
    std::vector<NewBill> Read(const std::vector<Cells>& cells) {
        faults_.clear();
        return ReadBillSheet(book_, Rows(cells), sheet_, faults_);
    }
    /// "row column: reason", one a line.
    std::string Faults() const {
        std::string text;
        for (const auto& fault : faults_)
            text += std::to_string(fault.row) + " " + fault.column + ": " + fault.reason + "\n";
        return text;
    }

    BookPtr book_ = BookOfAYear();
    SheetOptions sheet_;
    std::vector<BillFault> faults_;
};

TEST_F(BillSheetTest, RowsWithOneKeyAreOneBill) {
    const auto bills = Read({{{"单据", "A"},
                              {"日期", "2004/1/5"},
                              {"仓库", "东库"},
                              {"单位", "宏图"},
                              {"类型", "赊购"},
                              {"商品编号", "商品1"},
                              {"数量", "2.5"},
                              {"单价", "10"},
                              {"税率", "13%"},
                              {"说明", "甲"}},
                             {{"单据", "B"}, {"日期", "2004年1月6日"}, {"仓库", "2"}, {"商品编号", "2"}, {"数量", "1"}},
                             {{"单据", "A"}, {"商品", "2"}, {"数量", "1"}, {"含税单价", "11.3"}},
                             {{"商品", "3"}, {"数量", "1"}}});
    EXPECT_EQ(Faults(), "");
    ASSERT_EQ(bills.size(), 2U);
    EXPECT_EQ(bills[0].key, "A");
    EXPECT_EQ(bills[0].date, Date::FromYearMonthDay(2004, 1, 5));
    EXPECT_EQ(bills[0].warehouse, 1);
    EXPECT_EQ(bills[0].partner, 4);
    EXPECT_EQ(bills[0].type, "");
    EXPECT_EQ(bills[0].subtype, "赊购");
    EXPECT_EQ(bills[0].remarks, "甲");
    EXPECT_EQ(bills[0].clerk, "张三");
    ASSERT_EQ(bills[0].lines.size(), 2U);
    EXPECT_EQ(bills[0].lines[0].row, 2);
    EXPECT_EQ(bills[0].lines[0].quantity, 2.5);
    EXPECT_EQ(bills[0].lines[0].taxRate, 13);
    EXPECT_EQ(bills[0].lines[0].amounts.netPrice, Currency::FromLong(10));
    EXPECT_EQ(bills[0].lines[1].product, 2);
    EXPECT_EQ(bills[0].lines[1].amounts.grossPrice, Currency::FromDecimalText("11.3"));
    // A row without a key belongs to the last new bill above it.
    EXPECT_EQ(bills[1].lines.size(), 2U);
}

TEST_F(BillSheetTest, WithoutKeysNeighboursWithOneHeadAreOneBill) {
    sheet_.defaults = {{"仓库", "东库"}};
    const auto bills = Read({{{"商品", "1"}, {"数量", "1"}, {"日期", "2004-1-5"}},
                             {{"商品", "2"}, {"数量", "1"}},
                             {{"商品", "2"}, {"数量", "1"}, {"日期", "2004-1-6"}},
                             {{"商品", "2"}, {"数量", "1"}, {"日期", "2004-1-6"}}});
    EXPECT_EQ(Faults(), "");
    ASSERT_EQ(bills.size(), 2U);
    EXPECT_EQ(bills[0].lines.size(), 2U);
    EXPECT_EQ(bills[1].lines.size(), 2U);
    EXPECT_EQ(bills[1].warehouse, 1);
}

TEST_F(BillSheetTest, WhatIsMissingTakesDefaults) {
    book_->Execute("Delete From 仓库设置 Where dpID=2");
    sheet_.gross = true;
    const auto bills = Read({{{"商品", "1"}, {"数量", "1"}, {"单价", "5"}, {"类型", "增值税发票"}, {"税率", ""}}});
    ASSERT_EQ(bills.size(), 1U);
    EXPECT_EQ(bills[0].date, sheet_.today);
    EXPECT_EQ(bills[0].warehouse, 1);  // the only one
    EXPECT_EQ(bills[0].type, "增值税发票");
    EXPECT_EQ(bills[0].subtype, "");
    EXPECT_EQ(bills[0].lines[0].amounts.grossPrice, Currency::FromLong(5));
    EXPECT_EQ(bills[0].lines[0].amounts.netPrice, std::nullopt);
    EXPECT_EQ(bills[0].lines[0].taxRate, std::nullopt);
}

TEST_F(BillSheetTest, EveryFaultHasItsRowAndColumn) {
    const auto bills = Read({{{"单据", "A"},
                              {"日期", "2004-2-30"},
                              {"仓库", "东库"},
                              {"商品", "1"},
                              {"数量", "x"},
                              {"单价", "1.23456"},
                              {"税率", "?"},
                              {"客户", "宏图"}},
                             {{"单据", "A"}, {"仓库", "西库"}, {"商品", "1"}, {"数量", ""}, {"金额", "1e3"}},
                             {{"单据", "B"}, {"仓库", "东库"}, {"商品", "1"}, {"数量", "1.2345678"}}});
    EXPECT_TRUE(bills.empty());
    const std::string faults = Faults();
    for (const char* part : {"2 客户: such a bill has no column of this name; it has 单据, 单据编号, 日期, 仓库,",
                             "3 仓库: 西库, but the bill's first row says 东库\n", "2 日期: '2004-2-30' is no date\n",
                             "2 数量: 'x' is no number\n", "2 单价: 1.23456 has more than four decimals\n",
                             "2 税率: '?' is no number\n", "3 数量: no quantity is given\n",
                             "3 金额: '1e3' is no number\n", "4 数量: 1.2345678 has more than six decimals\n"}) {
        EXPECT_NE(faults.find(part), std::string::npos) << part << "\nin\n" << faults;
    }
    EXPECT_EQ(faults_.size(), 9U) << faults;
}

TEST_F(BillSheetTest, EnteringTellsFaultsOfRowsAndOfBills) {
    try {
        EnterBillSheet(book_,
                       Rows({{{"单据", "A"}, {"仓库", "无"}, {"商品", "1"}, {"数量", "1"}, {"单价", "1"}},
                             {{"单据", "B"}, {"仓库", "东库"}, {"商品", "1"}, {"数量", "0"}, {"单价", "1"}},
                             {{"单据", "C"}, {"仓库", "东库"}, {"商品", "1"}, {"数量", "1"}, {"单价", "1"}}}),
                       sheet_, {});
        FAIL() << "not refused";
    } catch (const BillsRefused& refused) {
        ASSERT_EQ(refused.Faults().size(), 2U);
        EXPECT_EQ(refused.Faults()[0].column, "仓库");
        EXPECT_EQ(refused.Faults()[1].bill, "B");
        EXPECT_EQ(refused.Faults()[1].reason, "the quantity is 0");
    }
    EXPECT_EQ(RowsOf(*book_, "Select Count(*) As n From 入库目录").front(), "0");
}

TEST_F(BillSheetTest, TransfersNameTwoWarehouses) {
    sheet_.kind = EntryKind::Transfer;
    const auto bills = Read({{{"调出仓库", "东库"}, {"调入仓库", "西库"}, {"商品", "1"}, {"数量", "1"}, {"单位", ""}}});
    EXPECT_EQ(Faults(), "");
    ASSERT_EQ(bills.size(), 1U);
    EXPECT_EQ(bills[0].warehouse, 1);
    EXPECT_EQ(bills[0].toWarehouse, 2);
}

}  // namespace
}  // namespace kpTables::bookkeeping
