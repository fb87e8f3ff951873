#include "kpTables/bookkeeping/BookSummary.h"

#include <gtest/gtest.h>

#include "bookkeeping/BookOfAYear.h"
#include "kpTables/Error.h"
#include "kpTables/bookkeeping/NewBook.h"

namespace kpTables::bookkeeping {
namespace {

TEST(BookSummary, OfAFirmsBook) {
    const auto book = CreateBook("memory:");
    BeginBook(book, {.company = "测试商行", .year = 2005, .month = 4, .warehouses = {"东库"}});
    auto summary = SummaryOf(book);
    EXPECT_EQ(summary.company, "测试商行");
    EXPECT_EQ(summary.year, 2005);
    EXPECT_EQ(summary.firstMonth, 0);
    EXPECT_EQ(summary.lastMonth, 0);
    for (const char* month : {"4", "6", "5"})
        book->Execute(std::string("Insert Into 仓库余额表 (年份,月份,pdID,dpID) Values (2005,") + month + ",1,1)");
    summary = SummaryOf(book);
    EXPECT_EQ(summary.firstMonth, 4);
    EXPECT_EQ(summary.lastMonth, 6);
}

TEST(BookSummary, OfAnEmptyBook) {
    const auto summary = SummaryOf(CreateBook("memory:"));
    EXPECT_EQ(summary.company, "");
    EXPECT_EQ(summary.year, 0);
}

TEST(BookSummary, AFailedLookIsAnError) {
    const auto book = BookOfAYear();
    book->Execute("Drop Table 系统选项");
    EXPECT_THROW(SummaryOf(book), DatabaseError);
}

}  // namespace
}  // namespace kpTables::bookkeeping
