#include "kpTables/bookkeeping/BillCorrection.h"

#include <gtest/gtest.h>

#include "BookOfAYear.h"

namespace kpTables::bookkeeping {
namespace {

Date DayOf2004(int month, int day) { return Date::FromYearMonthDay(2004, month, day); }

NewBillLine PricedLine(std::int32_t product, double quantity, const char* netPrice) {
    NewBillLine line;
    line.product = product;
    line.quantity = quantity;
    line.amounts.netPrice = Currency::FromDecimalText(netPrice);
    return line;
}

class BillCorrectionTest : public ::testing::Test {
protected:
    EnteredBill Entered(EntryKind kind, std::vector<NewBillLine> lines) {
        NewBill bill;
        bill.kind = kind;
        bill.date = DayOf2004(1, 10);
        bill.warehouse = 1;
        if (kind == EntryKind::Transfer) bill.toWarehouse = 2;
        bill.lines = std::move(lines);
        return EnterBills(book_, {bill}, options_).front();
    }
    template <class Action>
    std::string RefusalOf(Action action) {
        const auto before = All();
        try {
            action();
            return "not refused";
        } catch (const Error& error) {
            EXPECT_EQ(All(), before);
            return error.Description();
        }
    }
    std::vector<std::string> Rows(const std::string& query) { return RowsOf(*book_, query); }
    std::vector<std::string> All() {
        std::vector<std::string> all;
        for (const char* table : {"入库目录", "入库记录", "出库目录", "出库记录", "成本目录", "成本记录"})
            for (auto& row : Rows(std::string("Select * From ") + table)) all.push_back(row);
        return all;
    }

    BookPtr book_ = BookOfAYear();
    EntryOptions options_{DayOf2004(2, 1), false, false};
};

TEST_F(BillCorrectionTest, FieldsAndLinesAreReplaced) {
    const auto bill = Entered(EntryKind::Inbound, {PricedLine(1, 2, "5"), PricedLine(2, 1, "9")});
    BillChanges changes;
    changes.date = DayOf2004(1, 12);
    changes.remarks = "改";
    EditBill(book_, BillFamily::Inbound, bill.id, changes, options_);
    EXPECT_EQ(Rows("Select 日子,说明,单据编号 From 入库目录"), std::vector<std::string>{"12|改|RK1-01-0001"});
    EXPECT_EQ(Rows("Select pdID,数量,除税金额 From 入库记录"), (std::vector<std::string>{"1|2|10", "2|1|9"}));
    changes = {};
    changes.warehouse = 2;
    changes.lines = {PricedLine(3, 4, "2.5")};
    const auto corrected = EditBill(book_, BillFamily::Inbound, bill.id, changes, options_);
    EXPECT_EQ(corrected.bill.lines.size(), 1U);
    EXPECT_EQ(Rows("Select BillID,pdID,dpID,仓库,数量,除税金额 From 入库记录"),
              std::vector<std::string>{"1|3|2|2|4|10"});
    EXPECT_EQ(Rows("Select dpID,日子 From 入库目录"), std::vector<std::string>{"2|12"});
}

TEST_F(BillCorrectionTest, BothHalvesOfATransferChange) {
    const auto bill = Entered(EntryKind::Transfer, {PricedLine(1, 2, "5")});
    BillChanges changes;
    changes.date = DayOf2004(1, 12);
    changes.number = "T1";
    changes.lines = {PricedLine(1, 3, "5")};
    EXPECT_EQ(EditBill(book_, BillFamily::Inbound, bill.counterpart, changes, options_).counterpart, bill.id);
    for (const char* family : {"出库", "入库"}) {
        EXPECT_EQ(Rows(std::string("Select 日子,单据编号 From ") + family + "目录"), std::vector<std::string>{"12|T1"});
        EXPECT_EQ(Rows(std::string("Select 数量,除税金额 From ") + family + "记录"), std::vector<std::string>{"3|15"});
    }
    EXPECT_EQ(Rows("Select dpID From 出库目录"), std::vector<std::string>{"1"});
    EXPECT_EQ(Rows("Select dpID From 入库目录"), std::vector<std::string>{"2"});
    changes = {};
    changes.warehouse = 1;
    EXPECT_EQ(RefusalOf([&] { EditBill(book_, BillFamily::Inbound, bill.counterpart, changes, options_); }),
              "bill T1: 调入仓库: a transfer goes from one warehouse to another, not to the same");
    EXPECT_EQ(RemoveBill(book_, BillFamily::Outbound, bill.id, options_).counterpart, bill.counterpart);
    EXPECT_EQ(All(), std::vector<std::string>{});
}

TEST_F(BillCorrectionTest, TransfersWithOneNumberAreNotGuessedAt) {
    const auto bill = Entered(EntryKind::Transfer, {PricedLine(1, 2, "5")});
    Entered(EntryKind::Transfer, {PricedLine(1, 2, "5")});
    book_->Execute("Update 入库目录 Set 单据编号='DB1-01-0001'");
    EXPECT_EQ(
        RefusalOf([&] { RemoveBill(book_, BillFamily::Outbound, bill.id, options_); }),
        "the other half of the transfer DB1-01-0001 may be any of 2 bills of month 1: give them different numbers "
        "first");
}

TEST_F(BillCorrectionTest, StockMustStay) {
    const auto in = Entered(EntryKind::Inbound, {PricedLine(3, 5, "5")});
    Entered(EntryKind::Outbound, {PricedLine(3, 4, "9")});
    EXPECT_EQ(RefusalOf([&] { RemoveBill(book_, BillFamily::Inbound, in.id, options_); }),
              "bill RK1-01-0001: 商品3 in 东库: stock 1 on 2004-1-10, wanted 5");
    BillChanges later;
    later.date = DayOf2004(1, 11);
    EXPECT_EQ(RefusalOf([&] { EditBill(book_, BillFamily::Inbound, in.id, later, options_); }),
              "商品3 in 东库: stock 1 on 2004-1-10, wanted 5");
    BillChanges less;
    less.lines = {PricedLine(3, 4, "5")};
    EXPECT_EQ(EditBill(book_, BillFamily::Inbound, in.id, less, options_).bill.lines.size(), 1U);
    options_.allowNegativeStock = true;
    RemoveBill(book_, BillFamily::Inbound, in.id, options_);
    EXPECT_EQ(Rows("Select Count(*) As n From 入库记录").front(), "0");
}

TEST_F(BillCorrectionTest, AuditedBillsStayUntilTheAuditIsTakenBack) {
    const auto bill = Entered(EntryKind::Transfer, {PricedLine(1, 2, "5")});
    AuditBill(book_, BillFamily::Outbound, bill.id, "O'Hara", DayOf2004(1, 31));
    EXPECT_EQ(Rows("Select 审核员,审核日期 From 出库目录"), std::vector<std::string>{"O'Hara|2004-1-31"});
    EXPECT_EQ(Rows("Select 审核员,审核日期 From 入库目录"), std::vector<std::string>{"O'Hara|2004-1-31"});
    const std::string audited = "bill DB1-01-0001: it is audited by O'Hara; take the audit back first";
    EXPECT_EQ(RefusalOf([&] { RemoveBill(book_, BillFamily::Inbound, bill.counterpart, options_); }), audited);
    BillChanges changes;
    changes.remarks = "x";
    EXPECT_EQ(RefusalOf([&] { EditBill(book_, BillFamily::Outbound, bill.id, changes, options_); }), audited);
    EXPECT_EQ(RefusalOf([&] { AuditBill(book_, BillFamily::Outbound, bill.id, "x", DayOf2004(1, 31)); }),
              "bill DB1-01-0001: it is audited by O'Hara already");
    UndoAudit(book_, BillFamily::Inbound, bill.counterpart);
    EXPECT_EQ(Rows("Select 审核员,审核日期 From 出库目录"), std::vector<std::string>{"|"});
    EXPECT_EQ(RefusalOf([&] { UndoAudit(book_, BillFamily::Outbound, bill.id); }),
              "bill DB1-01-0001: it is not audited");
    EditBill(book_, BillFamily::Outbound, bill.id, changes, options_);
    EXPECT_EQ(RefusalOf([&] { AuditBill(book_, BillFamily::Cost, 1, "x", DayOf2004(1, 31)); }),
              "cost bills have no auditor");
}

TEST_F(BillCorrectionTest, ClosedMonthsStay) {
    const auto bill = Entered(EntryKind::Transfer, {PricedLine(1, 2, "5")});
    CloseMonth(book_, std::make_shared<OneAnswer>(MessageAnswer::Yes), Month(1, 2));
    EXPECT_EQ(RefusalOf([&] { RemoveBill(book_, BillFamily::Outbound, bill.id, options_); }),
              "bill DB1-01-0001: 西库: month 1 is closed");
    BillChanges changes;
    changes.date = DayOf2004(2, 3);
    EXPECT_EQ(RefusalOf([&] { EditBill(book_, BillFamily::Outbound, bill.id, changes, options_); }),
              "bill DB1-01-0001: 西库: month 1 is closed");
    const auto open = Entered(EntryKind::Outbound, {PricedLine(1, 1, "5")});
    changes = {};
    changes.warehouse = 2;
    EXPECT_EQ(RefusalOf([&] { EditBill(book_, BillFamily::Outbound, open.id, changes, options_); }),
              "bill CK1-01-0001: 日期: 西库: month 1 is closed");
}

TEST_F(BillCorrectionTest, CostBillsAreRemovedAndChanged) {
    const auto bill = Entered(EntryKind::Cost, {PricedLine(1, 2, "5")});
    BillChanges changes;
    changes.remarks = "x";
    EXPECT_EQ(RefusalOf([&] { EditBill(book_, BillFamily::Cost, bill.id, changes, options_); }),
              "bill 1: a cost bill has a date, a warehouse and lines only");
    changes = {};
    changes.date = DayOf2004(1, 31);
    changes.lines = {PricedLine(2, 2, "6")};
    EditBill(book_, BillFamily::Cost, bill.id, changes, options_);
    EXPECT_EQ(Rows("Select * From 成本记录"), std::vector<std::string>{"1|2|6|2|12"});
    RemoveBill(book_, BillFamily::Cost, bill.id, options_);
    EXPECT_EQ(All(), std::vector<std::string>{});
}

TEST_F(BillCorrectionTest, BillsAreFoundByNumberAndId) {
    const auto first = Entered(EntryKind::Inbound, {PricedLine(1, 2, "5")});
    const auto second = Entered(EntryKind::Inbound, {PricedLine(1, 2, "5")});
    const auto find = [&](const char* text, std::int16_t month = 0) {
        return FindBill(*book_, BillFamily::Inbound, text, month);
    };
    EXPECT_EQ(find("RK1-01-0002"), second.id);
    EXPECT_EQ(find("2"), second.id);
    EXPECT_EQ(find("id:1"), first.id);
    EXPECT_EQ(RefusalOf([&] { find("3"); }), "the book has no inbound bill 3");
    EXPECT_EQ(RefusalOf([&] { find("x'y"); }), "the book has no inbound bill x'y");
    EXPECT_EQ(RefusalOf([&] { find("RK1-01-0002", 2); }), "the book has no inbound bill RK1-01-0002 in month 2");
    book_->Execute("Update 入库目录 Set 单据编号='2' Where BillID=1");
    EXPECT_EQ(
        RefusalOf([&] { find("2"); }),
        "2 may be any of 2 inbound bills: id:1 (2004-1-10 入库单 2), id:2 (2004-1-10 入库单 RK1-01-0002); name one "
        "as id:N");
    EXPECT_EQ(find("id:2"), second.id);
}

}  // namespace
}  // namespace kpTables::bookkeeping
