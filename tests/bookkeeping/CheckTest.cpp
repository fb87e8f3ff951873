#include "kpTables/bookkeeping/Check.h"

#include <gtest/gtest.h>

#include "bookkeeping/BookOfAYear.h"
#include "kpTables/CTables.h"
#include "kpTables/bookkeeping/EntryGuard.h"

namespace kpTables::bookkeeping {
namespace {

class CheckTest : public ::testing::Test {
protected:
    void Close(int month) { CloseMonth(book_, std::make_shared<OneAnswer>(MessageAnswer::Yes), Month(month)); }
    std::vector<std::string> Findings() {
        std::vector<std::string> lines;
        for (const auto& finding : CheckBook(*book_)) {
            lines.push_back((finding.warehouse ? std::to_string(*finding.warehouse) : "") + "/" +
                            std::to_string(finding.month) + "/" +
                            (finding.product ? std::to_string(*finding.product) : "") + " " + finding.what + ": " +
                            Text(finding.expected) + ", " + Text(finding.found));
        }
        return lines;
    }

    BookPtr book_ = BookOfAYear();
};

TEST_F(CheckTest, SilentOnABookInOrder) {
    EXPECT_TRUE(book_->IntegrityFaults().empty());
    Enter(*book_, {"入库", 1, 1, 1, 1, "0.1", "0.3333"});
    Enter(*book_, {"入库", 2, 1, 1, 1, "0.2", "0.0001"});
    EXPECT_TRUE(Findings().empty());
    Close(1);
    Close(2);
    EXPECT_TRUE(Findings().empty());
}

TEST_F(CheckTest, AmountsAreComparedToTheTenThousandth) {
    Close(1);
    book_->Execute("Update 仓库余额表 Set 累计入库金额=0.0001 Where dpID=1 And 月份=1 And pdID=2");
    EXPECT_EQ(Findings(), (std::vector<std::string>{"1/1/2 累计入库金额 is not what the bills add up to: 0, 0.0001"}));
}

TEST_F(CheckTest, TheLargestAmountsDoNotOverflow) {
    Close(1);
    book_->Execute("Update 仓库余额表 Set 本期入库金额=922337203685477.5807 Where dpID=1 And 月份=1 And pdID=2");
    EXPECT_EQ(Findings().size(), 2U);
}

TEST_F(CheckTest, ChangesNothing) {
    Close(1);
    book_->Execute("Delete From 仓库余额表 Where 月份=2");
    const auto before = Everything(*book_);
    EXPECT_FALSE(Findings().empty());
    EXPECT_EQ(Everything(*book_), before);
    book_->BeginTrans();
    book_->RollbackTrans();
}

TEST_F(CheckTest, RepairKeepsOneOfEqualRows) {
    CTables tables;
    tables.Cnn(book_);
    for (int time = 0; time < 3; ++time) tables.Close_DepotBalance(1, 1, false, Variant("x"));
    EXPECT_EQ(Findings(), (std::vector<std::string>{"1/2/1 仓库余额表: more than one row: 1, 3",
                                                    "1/2/2 仓库余额表: more than one row: 1, 3"}));
    const auto host = std::make_shared<OneAnswer>(MessageAnswer::No);
    EXPECT_EQ(RemoveDoubledRows(*book_, host).removed, 0);
    EXPECT_EQ(Findings().size(), 2U);
    const auto repair = RemoveDoubledRows(*book_, std::make_shared<OneAnswer>(MessageAnswer::Yes));
    EXPECT_EQ(repair.doubled, 4);
    EXPECT_EQ(repair.removed, 4);
    EXPECT_TRUE(Findings().empty());
    EXPECT_EQ(RowsOf(*book_, "Select pdID,上期库存数量,上期库存金额,备注 From 仓库余额表 Where 月份=2 Order by pdID"),
              (std::vector<std::string>{"1|10|50|x", "2|100|25|x"}));
}

TEST_F(CheckTest, GuardRefusesBillsOfClosedMonths) {
    Enter(*book_, {"出库", 5, 1, 1, 1, "1", "1"});
    Enter(*book_, {"出库", 6, 2, 1, 1, "1", "1"});
    Close(1);
    const EntryGuard headers(*book_, "入库目录", {"月份", "DPID"});
    EXPECT_EQ(headers.Refusal({std::int16_t{1}, std::int32_t{1}}), "month 1 of 东库 is closed");
    EXPECT_EQ(headers.Refusal({std::int16_t{2}, std::int32_t{1}}), "");
    EXPECT_EQ(headers.Refusal({std::int16_t{1}, std::int32_t{2}}), "");
    EXPECT_EQ(headers.Refusal({Variant::Null(), Variant::Missing()}), "");
    const EntryGuard lines(*book_, "出库记录", {"pdID", "BillID"});
    EXPECT_EQ(lines.Refusal({std::int32_t{1}, std::int32_t{5}}), "month 1 of 东库 is closed");
    EXPECT_EQ(lines.Refusal({std::int32_t{1}, std::int32_t{6}}), "");
    EXPECT_EQ(EntryGuard(*book_, "入库记录", {"BillID"}).Refusal({std::int32_t{5}}), "");
    EXPECT_EQ(EntryGuard(*book_, "商品设置", {"pdID"}).Refusal({std::int32_t{5}}), "");
}

}  // namespace
}  // namespace kpTables::bookkeeping
