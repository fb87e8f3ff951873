#include "kpTables/bookkeeping/Opening.h"

#include <gtest/gtest.h>

#include "bookkeeping/BookOfAYear.h"
#include "kpTables/Error.h"
#include "kpTables/bookkeeping/NewBook.h"

namespace kpTables::bookkeeping {
namespace {

class OpeningTest : public ::testing::Test {
protected:
    OpeningTest() {
        BeginBook(book_, {.company = "甲", .year = 2026, .month = 3, .warehouses = {"东库", "西库"}});
        for (const char* product : {"'01001','水泥'", "'01002','螺栓'", "'01003','油漆'"})
            book_->Execute(std::string("Insert Into 商品设置 (商品编号,商品名称) Values (") + product + ")");
    }

    OpeningResult Enter(const std::vector<OpeningRow>& rows) { return EnterOpening(book_, rows); }
    std::vector<std::string> Stock() {
        return RowsOf(*book_,
                      "Select dpID,pdID,年份,月份,上期库存单价,上期库存数量,上期库存金额,本期库存单价,本期库存数量,"
                      "本期库存金额 From 仓库余额表 Order by dpID,pdID");
    }
    std::vector<std::string> FaultsOf(const std::vector<OpeningRow>& rows) {
        std::vector<std::string> lines;
        for (const auto& fault : Enter(rows).faults)
            lines.push_back(std::to_string(fault.row) + " " + fault.column + ": " + fault.reason);
        return lines;
    }

    BookPtr book_ = CreateBook("memory:");
    std::shared_ptr<OneAnswer> host_ = std::make_shared<OneAnswer>(MessageAnswer::Yes);
};

Currency Yuan(std::string_view text) { return Currency::FromDecimalText(text); }

TEST_F(OpeningTest, FillsTheFirstMonth) {
    const auto result = Enter({{"东库", "01001", 8, Yuan("100.0004")},
                               {"西库", "螺栓", 0.25, Yuan("900000000000000.0001")},
                               {"2", "01003", 0, Yuan("0")},
                               {"东库", "01002", 4, Yuan("0")}});
    EXPECT_TRUE(result.faults.empty());
    EXPECT_EQ(result.year, 2026);
    EXPECT_EQ(result.month, 3);
    EXPECT_EQ(result.added, 4);
    EXPECT_EQ(result.changed, 0);
    // 100.0004 / 8 = 12.50005; 900,000,000,000,000.0001 / 0.25 as the nearest double, shown with 15 digits.
    EXPECT_EQ(Stock(), (std::vector<std::string>{
                           "1|1|2026|3|12.50005|8|100.0004|12.50005|8|100.0004",
                           "1|2|2026|3|0|4|0|0|4|0",
                           "2|2|2026|3|3.6E+15|0.25|900000000000000.0001|3.6E+15|0.25|900000000000000.0001",
                           "2|3|2026|3|0|0|0|0|0|0",
                       }));
}

TEST_F(OpeningTest, AgainReplacesWhatIsNamed) {
    Enter({{"东库", "01001", 8, Yuan("100")}, {"东库", "01002", 4, Yuan("2")}});
    const auto result = Enter({{"东库", "水泥", 5, Yuan("20")}, {"西库", "水泥", 1, Yuan("3")}});
    EXPECT_EQ(result.added, 1);
    EXPECT_EQ(result.changed, 1);
    EXPECT_EQ(Stock(), (std::vector<std::string>{"1|1|2026|3|4|5|20|4|5|20", "1|2|2026|3|0.5|4|2|0.5|4|2",
                                                 "2|1|2026|3|3|1|3|3|1|3"}));
}

TEST_F(OpeningTest, FaultsOfAllRowsAndNothingEntered) {
    EXPECT_EQ(
        FaultsOf({{"东库", "01001", 1, Yuan("1")},
                  {"北库", "01009", 1, Yuan("1")},
                  {"东库", "水泥", 1, Yuan("1")},
                  {"全部", "", -0.5, Yuan("-0.0001")},
                  {"西库", "01001", 0, Yuan("0.0001")}}),
        (std::vector<std::string>{"1 仓库: the book has no warehouse 北库", "1 商品编号: the book has no product 01009",
                                  "2 : the product 水泥 stands twice for 东库",
                                  "3 仓库: the book has no warehouse 全部", "3 商品编号: is empty",
                                  "3 数量: is below 0", "3 金额: is below 0", "4 金额: is there without a quantity"}));
    EXPECT_TRUE(Stock().empty());
}

TEST_F(OpeningTest, CheckEntersNothing) {
    EXPECT_TRUE(EnterOpening(book_, {{"东库", "01001", 1, Yuan("1")}}, OpeningPurpose::Check).faults.empty());
    EXPECT_TRUE(Stock().empty());
}

TEST_F(OpeningTest, RefusesAClosedMonth) {
    Enter({{"东库", "01001", 8, Yuan("100")}, {"西库", "01001", 1, Yuan("1")}});
    ASSERT_EQ(CloseMonth(book_, host_, Month(3)).front().outcome, ClosingOutcome::Done);
    const auto before = Everything(*book_);
    EXPECT_EQ(FaultsOf({{"西库", "01002", 1, Yuan("1")}, {"东库", "01001", 1, Yuan("1")}}),
              std::vector<std::string>{"1 : month 3 of 东库 is closed"});
    EXPECT_EQ(Everything(*book_), before);
    EXPECT_EQ(Enter({{"西库", "01002", 1, Yuan("1")}}).added, 1);
    // Reopened, it takes the opening stock again, and its closing carries that on.
    ASSERT_EQ(ReopenMonth(book_, {3, 1}).front().outcome, ClosingOutcome::Done);
    EXPECT_EQ(Enter({{"东库", "01001", 2, Yuan("6")}}).changed, 1);
    ASSERT_EQ(CloseMonth(book_, host_, Month(3)).front().outcome, ClosingOutcome::Done);
    EXPECT_EQ(RowsOf(*book_, "Select 上期库存单价,上期库存数量,上期库存金额 From 仓库余额表 Where 月份=4 And dpID=1"),
              std::vector<std::string>{"3|2|6"});
}

TEST_F(OpeningTest, DoubledRowsAreAFault) {
    for (int i = 0; i < 2; ++i) book_->Execute("Insert Into 仓库余额表 (年份,月份,pdID,dpID) Values (2026,3,1,1)");
    EXPECT_EQ(FaultsOf({{"东库", "01001", 1, Yuan("1")}}),
              std::vector<std::string>{"0 : the product 01001 has two balance rows in 东库; remove one"});
}

TEST_F(OpeningTest, RefusesABookThatBeganEarlier) {
    book_->Execute("Insert Into 仓库余额表 (年份,月份,pdID,dpID) Values (2026,2,1,1)");
    try {
        Enter({{"东库", "01001", 1, Yuan("1")}});
        FAIL();
    } catch (const Error& error) {
        EXPECT_EQ(error.Description(),
                  "the book has balance rows of 2026-2, but was set up in 2026-3; set 建帐日期 to its "
                  "first month");
    }
}

/// Fails to open the balance rows of warehouse 2.
class FailsInTheSecond : public Connection {
public:
    explicit FailsInTheSecond(BookPtr book) : book_(std::move(book)) {}
    RecordsetPtr Execute(std::string_view text) override { return book_->Execute(text); }
    RecordsetPtr Open(std::string_view source, SourceKind kind) override {
        if (source.find("dpID=2") != source.npos) throw DatabaseError(1, "no more", std::string(source));
        return book_->Open(source, kind);
    }
    int BeginTrans() override { return book_->BeginTrans(); }
    void CommitTrans() override { book_->CommitTrans(); }
    void RollbackTrans() override { book_->RollbackTrans(); }

private:
    BookPtr book_;
};

TEST_F(OpeningTest, AFailureLeavesTheBook) {
    Enter({{"东库", "01001", 8, Yuan("100")}});
    const auto before = Stock();
    const auto failing = std::make_shared<FailsInTheSecond>(book_);
    const std::vector<OpeningRow> rows{{"东库", "01001", 1, Yuan("1")}, {"西库", "01002", 1, Yuan("1")}};
    EXPECT_THROW(EnterOpening(failing, rows), DatabaseError);
    EXPECT_EQ(Stock(), before);
}

}  // namespace
}  // namespace kpTables::bookkeeping
