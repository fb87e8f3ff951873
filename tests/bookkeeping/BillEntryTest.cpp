#include "kpTables/bookkeeping/BillEntry.h"

#include <gtest/gtest.h>

#include "BookOfAYear.h"
#include "kpTables/CTables.h"
#include "kpTables/bookkeeping/BillNumbers.h"
#include "kpTables/bookkeeping/NewBook.h"
#include "kpTables/bookkeeping/StockOnHand.h"

namespace kpTables::bookkeeping {
namespace {

Date Day(int month, int day, int year = 2004) { return Date::FromYearMonthDay(year, month, day); }

Currency Money(const char* text) { return Currency::FromDecimalText(text); }

NewBillLine Line(std::int32_t product, double quantity, const char* netPrice = nullptr) {
    NewBillLine line;
    line.product = product;
    line.quantity = quantity;
    if (netPrice) line.amounts.netPrice = Money(netPrice);
    return line;
}

NewBill BillOf(EntryKind kind, Date date, std::vector<NewBillLine> lines) {
    NewBill bill;
    bill.kind = kind;
    bill.date = date;
    bill.warehouse = 1;
    bill.lines = std::move(lines);
    if (kind == EntryKind::Transfer) bill.toWarehouse = 2;
    return bill;
}

EntryOptions Today() { return {Day(2, 1), false, false}; }

class BillEntryTest : public ::testing::Test {
protected:
    std::vector<EnteredBill> Enter(const std::vector<NewBill>& bills, const EntryOptions& options = Today()) {
        return EnterBills(book_, bills, options);
    }
    /// The reasons, one a line.
    std::string RefusalOf(const std::vector<NewBill>& bills, const EntryOptions& options = Today()) {
        const auto before = Counts();
        try {
            Enter(bills, options);
            return "not refused";
        } catch (const BillsRefused& refused) {
            EXPECT_EQ(Counts(), before);
            std::string text;
            for (const auto& fault : refused.Faults())
                text += (text.empty() ? "" : "\n") + fault.column + (fault.column.empty() ? "" : ": ") + fault.reason;
            return text;
        }
    }
    std::vector<std::string> Rows(const std::string& query) { return RowsOf(*book_, query); }
    std::vector<std::string> Counts() {
        std::vector<std::string> counts;
        for (const char* table : {"入库目录", "入库记录", "出库目录", "出库记录", "成本目录", "成本记录"})
            counts.push_back(Rows(std::string("Select Count(*) As n From ") + table).front());
        return counts;
    }

    BookPtr book_ = BookOfAYear();
};

TEST_F(BillEntryTest, ABillFillsEveryColumn) {
    book_->Execute("Insert Into 厂商资料 (KSID,单位名称) Values (4,'宏图')");
    book_->Execute("Insert Into 项目设置 (项目ID,项目名称) Values (6,'大桥')");
    NewBill bill = BillOf(EntryKind::Inbound, Day(1, 9), {Line(1, 2.5, "401.5555")});
    bill.partner = 4;
    bill.project = 6;
    bill.type = "增值税发票";
    bill.subtype = "赊购";
    bill.remarks = "O'Hara's";
    bill.clerk = "张三";
    bill.lines[0].taxRate = 6;
    bill.lines[0].handler = "甲";
    bill.lines[0].counterpart = "乙";
    bill.lines[0].packing = "袋";
    bill.lines[0].slot = "A1";
    bill.lines[0].term = 30;
    const auto entered = Enter({bill});
    ASSERT_EQ(entered.size(), 1U);
    EXPECT_EQ(entered[0].bill.number, "JZ1-01-0001");
    EXPECT_EQ(
        Rows("Select * From 入库目录"),
        std::vector<std::string>{"1|2004|1|9|增值税发票|赊购|JZ1-01-0001|R000001|03|1|4|6|张三|2004-2-1|||O'Hara's"});
    EXPECT_EQ(Rows("Select * From 入库记录"),
              std::vector<std::string>{"1|1|1|425.6488|2.5|1064.1221|60.2333|401.5555|1003.8888|甲|乙|袋|A1|30|1"});
    const auto read = ReadBill(*book_, BillFamily::Inbound, 1);
    EXPECT_EQ(read.number, "JZ1-01-0001");
    EXPECT_EQ(read.partner, 4);
    EXPECT_EQ(read.lines.at(0).amounts.net, Money("1003.8888"));
}

TEST_F(BillEntryTest, TaxRatesAreTheProductsByTheKindOfBill) {
    book_->Execute("Update 商品设置 Set 普通税率=3,增值税率=13,普购税率=6,增购税率=17 Where pdID=1");
    book_->Execute("Update 商品设置 Set 增值税率=9 Where pdID=2");
    const auto tax = [&](EntryKind kind, const char* type, std::int32_t product = 1) {
        NewBill bill = BillOf(kind, Day(1, 9), {Line(product, 1, "100")});
        bill.type = type;
        return Enter({bill})[0].bill.lines[0].amounts.tax.ToText();
    };
    EXPECT_EQ(tax(EntryKind::Inbound, ""), "6");
    EXPECT_EQ(tax(EntryKind::Inbound, "普通发票"), "6");
    EXPECT_EQ(tax(EntryKind::Inbound, "增值税发票"), "17");
    EXPECT_EQ(tax(EntryKind::Outbound, ""), "3");
    EXPECT_EQ(tax(EntryKind::Outbound, "普通发票"), "3");
    EXPECT_EQ(tax(EntryKind::Outbound, "增值税发票"), "13");
    // A rate of 0 counts as not set.
    EXPECT_EQ(tax(EntryKind::Outbound, "", 2), "9");
    NewBill bill = BillOf(EntryKind::Inbound, Day(1, 9), {Line(1, 1, "100")});
    bill.lines[0].taxRate = 0.13;
    EXPECT_EQ(RefusalOf({bill}), "tax rates are percentages: 0.13 means 0.13 %; write 13 for 13 %");
    bill.lines[0].taxRate = 0;
    EXPECT_EQ(Enter({bill})[0].bill.lines[0].amounts.tax.ToText(), "0");
}

TEST_F(BillEntryTest, WithoutAPriceTheProductsIsTaken) {
    book_->Execute("Update 商品设置 Set 购进单价=113,默认单价=226,增值税率=13,增购税率=13 Where pdID=1");
    EXPECT_EQ(Enter({BillOf(EntryKind::Inbound, Day(1, 9), {Line(1, 2)})})[0].bill.lines[0].amounts.net, Money("200"));
    EXPECT_EQ(Enter({BillOf(EntryKind::Outbound, Day(1, 9), {Line(1, 2)})})[0].bill.lines[0].amounts.net, Money("400"));
    EXPECT_EQ(RefusalOf({BillOf(EntryKind::Outbound, Day(1, 9), {Line(2, 2)})}),
              "there is no 单价, and 商品2 has no 默认单价");
}

TEST_F(BillEntryTest, NumbersCountOnUntilOneIsFree) {
    const auto number = [&](EntryKind kind, Date date) {
        return Enter({BillOf(kind, date, {Line(1, 1, "1")})})[0].bill.number;
    };
    EXPECT_EQ(number(EntryKind::Inbound, Day(1, 9)), "RK1-01-0001");
    EXPECT_EQ(number(EntryKind::Inbound, Day(1, 9)), "RK1-01-0002");
    EXPECT_EQ(number(EntryKind::Inbound, Day(2, 9)), "RK1-02-0001");
    EXPECT_EQ(number(EntryKind::Outbound, Day(1, 9)), "CK1-01-0001");
    // The count would give 0002 again.
    book_->Execute("Delete From 入库目录 Where 单据编号='RK1-01-0001'");
    EXPECT_EQ(number(EntryKind::Inbound, Day(1, 9)), "RK1-01-0003");
    NewBill own = BillOf(EntryKind::Inbound, Day(1, 10), {Line(1, 1, "1")});
    own.number = "RK1-01-0003";
    EXPECT_EQ(RefusalOf({own}), "单据编号: month 1 has a 入库单 RK1-01-0003 already");
    own.number = "X 7";
    EXPECT_EQ(Enter({own})[0].bill.number, "X 7");
}

TEST_F(BillEntryTest, ThePatternIsTheFirms) {
    CTables tables;
    tables.Cnn(book_);
    tables.Update_Option(kNumberPatternOption, Variant("{前缀}-{年份}{月份}{日子}/{序号:3}"));
    NewBill bill = BillOf(EntryKind::Inbound, Day(1, 9), {Line(1, 1, "1")});
    EXPECT_EQ(Enter({bill})[0].bill.number, "RK-20040109/001");
    // Without the warehouse in it, the count is that of all.
    bill.warehouse = 2;
    EXPECT_EQ(Enter({bill})[0].bill.number, "RK-20040109/002");
    for (const char* bad : {"{前缀}", "{号}{序号}", "{序号", "{序号:12}"}) {
        EXPECT_THROW(CheckNumberPattern(bad), Error) << bad;
    }
}

TEST_F(BillEntryTest, ATransferIsTwoBillsThatFindEachOther) {
    // 10 for 50 and 30 for 250 lie in 东库: 300 / 40 = 7.5.
    Enter({BillOf(EntryKind::Inbound, Day(1, 5), {Line(1, 30, "8.33333333")})});
    book_->Execute("Update 入库记录 Set 除税金额=250");
    const auto entered = Enter({BillOf(EntryKind::Transfer, Day(1, 9), {Line(1, 4)})});
    EXPECT_EQ(entered[0].bill.number, "DB1-01-0001");
    CTables tables;
    tables.Cnn(book_);
    EXPECT_EQ(tables.GetShiftID(entered[0].id, "出库"), entered[0].counterpart);
    EXPECT_EQ(tables.GetShiftID(entered[0].counterpart, "入库"), entered[0].id);
    EXPECT_EQ(Rows("Select 单价,数量,金额,税额,除税单价,除税金额,dpID From 出库记录"),
              std::vector<std::string>{"7.5|4|30|0|7.5|30|1"});
    EXPECT_EQ(Rows("Select 单价,数量,金额,税额,除税单价,除税金额,dpID From 入库记录 Where BillID=2"),
              std::vector<std::string>{"7.5|4|30|0|7.5|30|2"});
    EXPECT_EQ(
        Rows("Select 单据类型,dpID,说明 From 出库目录 UNION Select 单据类型,dpID,说明 From 入库目录 Where BillID=2"),
        (std::vector<std::string>{"调拨单|1|调往西库", "调拨单|2|由东库调入"}));
    // A number that one of the families has is not given again.
    book_->Execute("Update 入库目录 Set 单据编号='DB1-01-0002' Where BillID=2");
    EXPECT_EQ(Enter({BillOf(EntryKind::Transfer, Day(1, 9), {Line(1, 1, "5")})})[0].bill.number, "DB1-01-0003");
}

TEST_F(BillEntryTest, TransfersThatCannotBe) {
    NewBill bill = BillOf(EntryKind::Transfer, Day(1, 9), {Line(3, 4)});
    EXPECT_EQ(RefusalOf({bill}), "商品3 has no cost in 东库 yet; give a 单价");
    bill.toWarehouse = 1;
    EXPECT_EQ(RefusalOf({bill}),
              "调入仓库: a transfer goes from one warehouse to another, not to the same\n"
              "商品3 has no cost in 东库 yet; give a 单价");
    EXPECT_EQ(RefusalOf({BillOf(EntryKind::Transfer, Day(1, 9), {Line(1, 11, "5")})}),
              "商品1 in 东库: stock 10 on 2004-1-9, wanted 11");
}

TEST_F(BillEntryTest, CostBillsHavePriceQuantityAndAmount) {
    NewBillLine amount = Line(2, 3);
    amount.amounts.net = Money("10");
    const auto entered = Enter({BillOf(EntryKind::Cost, Day(1, 31), {Line(1, 2), Line(1, 3, "1.25"), amount})});
    EXPECT_EQ(Rows("Select * From 成本记录"),
              (std::vector<std::string>{"1|1|5|2|10", "1|1|1.25|3|3.75", "1|2|3.3333|3|10"}));
    EXPECT_EQ(Rows("Select * From 成本目录"), std::vector<std::string>{"1|2004|1|31|1"});
    EXPECT_EQ(entered[0].id, 1);
}

TEST_F(BillEntryTest, StockMustNotGoBelowZero) {
    // 10 lie there; 6 are gone on the 20th, so that 5 on the 10th leave too little.
    Enter({BillOf(EntryKind::Outbound, Day(1, 20), {Line(1, 6, "1")})});
    EXPECT_EQ(RefusalOf({BillOf(EntryKind::Outbound, Day(1, 10), {Line(1, 2, "1"), Line(1, 3, "1")})}),
              "商品1 in 东库: stock 4 on 2004-1-20, wanted 5");
    EXPECT_EQ(Enter({BillOf(EntryKind::Outbound, Day(1, 10), {Line(1, 4, "1")})}).size(), 1U);
    EntryOptions allowed = Today();
    allowed.allowNegativeStock = true;
    EXPECT_EQ(Enter({BillOf(EntryKind::Outbound, Day(1, 10), {Line(1, 5, "1")})}, allowed).size(), 1U);
    // What comes in on the same day may go out.
    Enter({BillOf(EntryKind::Inbound, Day(1, 25), {Line(3, 0.3, "1")})});
    EXPECT_EQ(Enter({BillOf(EntryKind::Outbound, Day(1, 25), {Line(3, 0.1, "1"), Line(3, 0.2, "1")})}).size(), 1U);
    EXPECT_EQ(LowestStock(*book_, 1, 2, Day(1, 1)).quantity, 100);
}

TEST_F(BillEntryTest, ReturnsMustBeAskedFor) {
    const NewBill bill = BillOf(EntryKind::Outbound, Day(1, 10), {Line(1, -2, "8")});
    EXPECT_EQ(RefusalOf({bill}), "the quantity -2 is negative, which only a red bill (returns) may have");
    EntryOptions returns = Today();
    returns.returns = true;
    Enter({bill}, returns);
    EXPECT_EQ(LowestStock(*book_, 1, 1, Day(1, 10)).quantity, 12);
    EXPECT_EQ(RefusalOf({BillOf(EntryKind::Inbound, Day(1, 11), {Line(1, -13, "8")})}, returns),
              "商品1 in 东库: stock 12 on 2004-1-11, wanted 13");
}

TEST_F(BillEntryTest, AllFaultsAreTold) {
    CloseMonth(book_, std::make_shared<OneAnswer>(MessageAnswer::Yes), Month(1));
    NewBill empty = BillOf(EntryKind::Inbound, Day(2, 1, 2005), {});
    empty.partner = 9;
    empty.project = 8;
    empty.type = "出库单";
    NewBill bad = BillOf(EntryKind::Inbound, Day(1, 31), {Line(0, 1), Line(77, 1), Line(1, 0), Line(1, 1)});
    EXPECT_EQ(RefusalOf({empty, bad}),
              "a bill needs at least one line\n"
              "日期: 东库: 2005-2-1 is not in the book's year 2004\n"
              "单位: the book has no supplier 9\n"
              "项目: the book has no project 8\n"
              "单据类型: a bill of this kind cannot be a 出库单\n"
              "日期: 东库: month 1 is closed\n"
              "the line has no product\n"
              "the book has no product 77\n"
              "the quantity is 0\n"
              "there is no 单价, and 商品1 has no 购进单价");
    // The other warehouse's January is open, but one half of a transfer is not.
    NewBill transfer = BillOf(EntryKind::Transfer, Day(1, 31), {Line(1, 1, "5")});
    std::swap(transfer.warehouse, transfer.toWarehouse);
    EXPECT_EQ(RefusalOf({transfer}), "日期: 东库: month 1 is closed");
    bad.warehouse = 9;
    bad.lines = {Line(1, 1, "1")};
    EXPECT_EQ(RefusalOf({bad}), "仓库: the book has no warehouse 9");
}

TEST_F(BillEntryTest, AnEmptyBookTakesTheYearOfItsFirstBill) {
    book_ = CreateBook("memory:");
    book_->Execute("Insert Into 仓库设置 (dpID,仓库名称) Values (1,'东库')");
    book_->Execute("Insert Into 商品设置 (pdID,商品名称) Values (1,'水泥')");
    EXPECT_EQ(RefusalOf({BillOf(EntryKind::Inbound, Day(1, 1, 2026), {Line(1, 1, "1")}),
                         BillOf(EntryKind::Inbound, Day(1, 1, 2025), {Line(1, 1, "1")})}),
              "日期: 东库: 2025-1-1 is not in the book's year 2026");
}

TEST_F(BillEntryTest, AFirmsBookTakesNoBillBeforeItsFirstMonth) {
    book_ = CreateBook("memory:");
    BeginBook(book_, {.company = "甲", .year = 2026, .month = 3, .warehouses = {"东库"}});
    book_->Execute("Insert Into 商品设置 (pdID,商品名称) Values (1,'水泥')");
    const auto bill = [](Date date) { return BillOf(EntryKind::Inbound, date, {Line(1, 1, "1")}); };
    EXPECT_EQ(RefusalOf({bill(Day(2, 28, 2026))}), "日期: 东库: 2026-2-28 is before the book's first month, 3");
    Enter({bill(Day(3, 1, 2026)), bill(Day(12, 31, 2026))});
    // A book that was only made has the day of its making, which says nothing of its months.
    book_ = CreateBook("memory:");
    PrepareBook(book_, Day(11, 22, 2026));
    book_->Execute("Insert Into 仓库设置 (dpID,仓库名称) Values (1,'东库')");
    book_->Execute("Insert Into 商品设置 (pdID,商品名称) Values (1,'水泥')");
    Enter({bill(Day(1, 1, 2026))});
    // Nor does the first month of another year.
    book_->Execute("Insert Into AccInfo (建帐日期) Values ('2025年03月01日')");
    Enter({bill(Day(1, 2, 2026))});
}

TEST_F(BillEntryTest, CurrentCostIsTheWeightedAverage) {
    EXPECT_EQ(CurrentCost(*book_, 1, 1, Day(1, 31)), Money("5"));
    Enter({BillOf(EntryKind::Inbound, Day(1, 10), {Line(1, 5, "8")})});
    EXPECT_EQ(CurrentCost(*book_, 1, 1, Day(1, 9)), Money("5"));
    // (50 + 40) / 15
    EXPECT_EQ(CurrentCost(*book_, 1, 1, Day(1, 10)), Money("6"));
    EXPECT_EQ(CurrentCost(*book_, 1, 1, Day(2, 1)), Money("6"));
    EXPECT_EQ(CurrentCost(*book_, 1, 4, Day(2, 1)), std::nullopt);
}

}  // namespace
}  // namespace kpTables::bookkeeping
