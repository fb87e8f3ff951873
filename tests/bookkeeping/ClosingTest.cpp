#include "kpTables/bookkeeping/Closing.h"

#include <gtest/gtest.h>

#include <random>

#include "bookkeeping/BookOfAYear.h"
#include "kpTables/CTables.h"
#include "kpTables/Error.h"
#include "kpTables/bookkeeping/Check.h"
#include "kpTables/bookkeeping/NewBook.h"

namespace kpTables::bookkeeping {
namespace {

class ClosingTest : public ::testing::Test {
protected:
    ClosingResult Close(const ClosingOptions& options) { return CloseMonth(book_, host_, options).front(); }
    ClosingOutcome Reopen(int month) {
        return ReopenMonth(book_, {static_cast<std::int16_t>(month), 1}).front().outcome;
    }

    BookPtr book_ = BookOfAYear();
    std::shared_ptr<OneAnswer> host_ = std::make_shared<OneAnswer>(MessageAnswer::Yes);
};

TEST_F(ClosingTest, FillsCarriesAndMarks) {
    Enter(*book_, {"入库", 1, 1, 1, 1, "4", "24"});
    Enter(*book_, {"出库", 1, 1, 1, 1, "5", "40"});
    const auto result = Close(Month(1));
    EXPECT_EQ(result.outcome, ClosingOutcome::Done);
    ASSERT_EQ(result.months.size(), 1U);
    EXPECT_EQ(result.months[0].products, 2);
    EXPECT_EQ(result.months[0].year, 2004);
    EXPECT_EQ(
        RowsOf(*book_, "Select 月份,pdID,本期库存数量,本期库存金额 From 仓库余额表 Where dpID=1 Order by 月份,pdID"),
        (std::vector<std::string>{"1|1|9|34", "1|2|100|25", "2|1|9|34", "2|2|100|25"}));
    EXPECT_EQ(RowsOf(*book_, "Select 结帐标志,结帐日期 From 仓库设置 Order by dpID"),
              (std::vector<std::string>{"True|2004-1-31", "False|"}));
    EXPECT_EQ(ClosedThrough(*book_, 1), 1);
    EXPECT_EQ(ClosedThrough(*book_, 2), 0);
}

TEST_F(ClosingTest, OutcomesThatChangeNothing) {
    Close(Month(1));
    Close(Month(2));
    const auto before = Everything(*book_);
    EXPECT_EQ(Close(Month(2)).outcome, ClosingOutcome::ClosedAlready);
    auto again = Month(1);
    again.again = true;
    const auto stale = Close(again);
    EXPECT_EQ(stale.outcome, ClosingOutcome::LaterMonthsClosed);
    EXPECT_EQ(stale.month, 2);
    const auto open = Close(Month(4));
    EXPECT_EQ(open.outcome, ClosingOutcome::EarlierMonthOpen);
    EXPECT_EQ(open.month, 3);
    EXPECT_EQ(Close(Month(6)).outcome, ClosingOutcome::NothingToDo);
    EXPECT_EQ(Reopen(1), ClosingOutcome::LaterMonthsClosed);
    EXPECT_EQ(Reopen(3), ClosingOutcome::NothingToDo);
    EXPECT_EQ(Everything(*book_), before);
    EXPECT_THROW(Close(Month(3, 9)), Error);
}

TEST_F(ClosingTest, AFailureIsUndone) {
    Close(Month(1));
    book_->Execute("Update 仓库余额表 Set 上期库存金额=Null Where dpID=1 And 月份=1 And pdID=2");
    const auto before = Everything(*book_);
    auto again = Month(1);
    again.again = true;
    const auto result = Close(again);
    EXPECT_EQ(result.outcome, ClosingOutcome::Failed);
    EXPECT_EQ(result.reason, "1 of its rows have no 上期库存金额");
    EXPECT_EQ(Everything(*book_), before);
}

TEST_F(ClosingTest, AHostThatRaisesLeavesTheBook) {
    class Absent : public Host {};
    Enter(*book_, {"入库", 1, 1, 2, 3, "1", "9"});
    const auto before = Everything(*book_);
    ClosingOptions all = Month(1);
    all.warehouse.reset();
    EXPECT_THROW(CloseMonth(book_, std::make_shared<Absent>(), all), Error);
    EXPECT_EQ(Everything(*book_), before);
    book_->BeginTrans();  // no transaction was left open
    book_->RollbackTrans();
}

TEST_F(ClosingTest, NoQuestionInsideATransaction) {
    class Asking : public Host {
    public:
        explicit Asking(BookPtr book) : book_(std::move(book)) {}
        MessageAnswer MsgBox(const std::string&, MessageButtons, const std::string&) override {
            book_->BeginTrans();
            EXPECT_EQ(RowsOf(*book_, "Select Count(*) As n From 仓库余额表").front(), "3");
            book_->RollbackTrans();
            ++asked;
            return MessageAnswer::Yes;
        }
        int asked = 0;

    private:
        BookPtr book_;
    };
    Enter(*book_, {"入库", 1, 1, 1, 3, "1", "9"});
    Enter(*book_, {"出库", 2, 1, 1, 4, "1", "9"});
    const auto asking = std::make_shared<Asking>(book_);
    const auto result = CloseMonth(book_, asking, Month(1)).front();
    EXPECT_EQ(result.outcome, ClosingOutcome::Done);
    EXPECT_EQ(result.months[0].products, 4);
    EXPECT_EQ(asking->asked, 2);
}

TEST_F(ClosingTest, ProductsOfOtherWarehousesAndOfCostBills) {
    Enter(*book_, {"入库", 1, 1, 2, 2, "10", "5"});
    book_->Execute("Insert Into 成本目录 (CostID,年份,月份,日子,dpID) Values (1,2004,1,31,2)");
    book_->Execute("Insert Into 成本记录 (CostID,pdID,单价,数量,金额) Values (1,3,2,1,2)");
    auto options = Month(1, 2);
    options.costUsed = true;
    const auto result = Close(options);
    EXPECT_EQ(result.rowsAdded, 2);
    EXPECT_EQ(host_->questions, (std::vector<std::string>{"入库记录中，有仓库余额表中没有的记录：1,是否修正？",
                                                          "成本记录中，有仓库余额表中没有的记录：1,是否修正？"}));
    EXPECT_EQ(
        RowsOf(*book_, "Select pdID,本期库存数量,本期库存金额 From 仓库余额表 Where dpID=2 And 月份=2 Order by pdID"),
        (std::vector<std::string>{"1|3|15", "2|10|5", "3|0|-2"}));
}

TEST_F(ClosingTest, ADryRunChangesNothing) {
    Enter(*book_, {"入库", 1, 1, 1, 1, "4", "24"});
    const auto before = Everything(*book_);
    auto options = Month(1);
    options.dryRun = true;
    const auto result = Close(options);
    EXPECT_EQ(Everything(*book_), before);
    const auto find = [&result](int month, const std::string& column) -> const Change* {
        for (const auto& change : result.changes) {
            if (change.month == month && change.product == 1 && change.column == column) return &change;
        }
        return nullptr;
    };
    ASSERT_TRUE(find(1, "本期入库数量"));
    EXPECT_TRUE(find(1, "本期入库数量")->before.Is(0.0));
    EXPECT_TRUE(find(1, "本期入库数量")->after.Is(4.0));
    ASSERT_TRUE(find(2, "上期库存金额"));
    EXPECT_TRUE(find(2, "上期库存金额")->before.IsNull());
    EXPECT_TRUE(find(2, "上期库存金额")->after.Is(Currency::FromLong(74)));
    EXPECT_FALSE(find(1, "本期出库数量"));
}

TEST_F(ClosingTest, ABarForEachMonth) {
    class Bar : public ProgressBar {
    public:
        explicit Bar(std::vector<double>& values) : values_(values) {}
        void SetVisible(bool) override {}
        void SetValue(double value) override { values_.push_back(value); }

    private:
        std::vector<double>& values_;
    };
    std::vector<std::string> labels;
    std::vector<double> values;
    ClosingWatch watch;
    watch.bar = [&](const std::string& label) {
        labels.push_back(label);
        return std::make_unique<Bar>(values);
    };
    auto options = Month(1, 2);
    options.through = 2;
    CloseMonth(book_, host_, options, watch);
    EXPECT_EQ(labels, (std::vector<std::string>{"西库 2004-1", "西库 2004-2"}));
    EXPECT_EQ(values, (std::vector<double>{50, 100, 100, 50, 100, 100}));
}

/// Nobody is asked for a book's first rows. Their year is the book's; that of the bills in a book that has none.
TEST(ClosingOfANewBook, NeedsNoOpeningStock) {
    class Absent : public Host {};
    for (const bool begun : {true, false}) {
        const BookPtr book = CreateBook("memory:");
        if (begun) {
            BeginBook(book, {.company = "甲", .year = 2005, .month = 1, .warehouses = {"东库", "西库"}});
        } else {
            PrepareBook(book);
            for (const char* name : {"东库", "西库"})
                book->Execute(std::string("Insert Into 仓库设置 (仓库名称) Values ('") + name + "')");
        }
        Enter(*book, {"入库", 1, 1, 1, 1, "4", "24"});
        Enter(*book, {"出库", 1, 1, 1, 1, "1", "5.5"});
        Enter(*book, {"入库", 2, 1, 2, 2, "2", "3"});
        auto all = Month(1);
        all.warehouse.reset();
        const auto results = CloseMonth(book, std::make_shared<Absent>(), all);
        ASSERT_EQ(results.size(), 2U);
        for (const auto& result : results) {
            EXPECT_EQ(result.outcome, ClosingOutcome::Done) << result.reason;
            EXPECT_EQ(result.rowsAdded, 1);
        }
        const std::string year = begun ? "2005" : "2004";
        EXPECT_EQ(
            RowsOf(*book, "Select 年份,月份,dpID,pdID,本期库存数量,本期库存金额 From 仓库余额表 Order by 月份,dpID"),
            (std::vector<std::string>{year + "|1|1|1|3|18.5", year + "|1|2|2|2|3", year + "|2|1|1|3|18.5",
                                      year + "|2|2|2|2|3"}));
        // From then on a product without a row is a question again.
        Enter(*book, {"入库", 3, 2, 1, 3, "1", "1"});
        EXPECT_THROW(CloseMonth(book, std::make_shared<Absent>(), Month(2)), Error);
    }
}

/// As docs/book.md advises hosts that call Close_DepotBalance themselves.
TEST(ClosingOfANewBook, ByTheMethodsAloneNeedsTheFirstRows) {
    const BookPtr book = CreateBook("memory:");
    BeginBook(book, {.company = "甲", .year = 2004, .month = 1, .warehouses = {"东库", "西库"}});
    Enter(*book, {"入库", 1, 1, 1, 1, "4", "24"});
    Enter(*book, {"入库", 2, 1, 2, 1, "2", "3"});
    Enter(*book, {"出库", 1, 1, 1, 1, "1", "5.5"});
    Enter(*book, {"出库", 2, 1, 1, 3, "1", "2"});
    CTables tables(std::make_shared<OneAnswer>(MessageAnswer::Yes));
    tables.Cnn(book);
    EXPECT_THROW(tables.CheckBnProduct(1), DatabaseError);
    for (const std::string kind : {"入库", "出库"}) {
        book->Execute("Insert Into 仓库余额表 (年份,月份,pdID,dpID) Select Distinct 2004,1,R.pdID,L.dpID From " + kind +
                      "记录 As R Inner Join " + kind +
                      "目录 As L On R.BillID=L.BillID Where L.月份=1 And Not Exists (Select * From 仓库余额表 As B "
                      "Where B.pdID=R.pdID And B.dpID=L.dpID And B.月份=1)");
    }
    tables.CheckBnProduct(1);
    for (const int warehouse : {1, 2})
        EXPECT_TRUE(tables.Close_DepotBalance(warehouse, 1, false, Variant("2004-1-31"), nullptr));
    EXPECT_EQ(
        RowsOf(*book, "Select dpID,pdID,上期库存数量,上期库存金额 From 仓库余额表 Where 月份=2 Order by dpID,pdID"),
        (std::vector<std::string>{"1|1|3|18.5", "1|3|-1|-2", "2|1|2|3"}));
}

/// Bills come and go, months are closed, reopened and closed again in any order: what is closed in the end is what a
/// book gives that has only the bills that are left and was closed once.
TEST(ClosingProperty, AnyWayToClosedMonthsGivesTheSameRows) {
    for (unsigned seed = 1; seed <= 25; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        const auto below = [&random](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
        const auto host = std::make_shared<OneAnswer>(MessageAnswer::Yes);
        const BookPtr book = BookOfAYear();
        std::vector<Bill> bills;
        for (int step = 1; step <= 40; ++step) {
            const int closed = ClosedThrough(*book, 1);
            switch (below(5)) {
                case 0:
                case 1: {
                    // Late bills too: a closing that is done again has to take them in.
                    const Bill bill{below(2) ? "入库" : "出库",
                                    step,
                                    1 + below(4),
                                    1,
                                    1 + below(2),
                                    std::to_string(1 + below(50)) + "." + std::to_string(below(1000)),
                                    std::to_string(below(500)) + "." + std::to_string(1000 + below(9000))};
                    Enter(*book, bill);
                    bills.push_back(bill);
                    break;
                }
                case 2:
                    if (!bills.empty()) {
                        const auto gone = bills.begin() + below(static_cast<int>(bills.size()));
                        Remove(*book, *gone);
                        bills.erase(gone);
                    }
                    break;
                case 3:
                    if (closed > 0) ReopenMonth(book, {static_cast<std::int16_t>(closed), 1});
                    break;
                default:
                    if (closed < 4) CloseMonth(book, host, Month(closed + 1));
            }
        }
        auto all = Month(1);
        all.again = true;
        all.through = 4;
        ASSERT_EQ(CloseMonth(book, host, all).front().outcome, ClosingOutcome::Done);

        const BookPtr fresh = BookOfAYear();
        for (const Bill& bill : bills) Enter(*fresh, bill);
        for (int month = 1; month <= 4; ++month) CloseMonth(fresh, host, Month(month));
        EXPECT_EQ(Everything(*book), Everything(*fresh));
        EXPECT_TRUE(CheckBook(*book).empty());
    }
}

}  // namespace
}  // namespace kpTables::bookkeeping
