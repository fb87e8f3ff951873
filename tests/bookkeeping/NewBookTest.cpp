#include "kpTables/bookkeeping/NewBook.h"

#include <gtest/gtest.h>

#include "bookkeeping/BookOfAYear.h"
#include "kpTables/CTables.h"
#include "kpTables/Error.h"

namespace kpTables::bookkeeping {
namespace {

std::string InfoOf(const BookPtr& book, const std::string& item) {
    CTables tables;
    tables.Cnn(book);
    return Text(tables.Get_AccInfo(item));
}

TEST(NewBook, BelongsToAFirmAndAMonth) {
    const BookPtr book = CreateBook("memory:");
    BeginBook(book, {.company = " 测试商行 ", .year = 2024, .month = 11, .warehouses = {"中心仓库", "O'Hara 库"}});
    EXPECT_EQ(InfoOf(book, "单位名称"), "测试商行");
    EXPECT_EQ(InfoOf(book, "帐簿名称"), "新帐簿");
    EXPECT_EQ(InfoOf(book, "建帐日期"), "2024-11-1");
    EXPECT_EQ(InfoOf(book, "建帐月份"), "11");
    EXPECT_EQ(InfoOf(book, "帐簿年份"), "2024");
    EXPECT_EQ(InfoOf(book, "当前月份"), "11");
    EXPECT_EQ(RowsOf(*book, "Select dpID,仓库名称,结帐标志 From 仓库设置 Order by dpID"),
              (std::vector<std::string>{"1|中心仓库|False", "2|O'Hara 库|False"}));
    EXPECT_EQ(RowsOf(*book, "Select 帐簿名称,单位名称,建帐日期,当前日期 From AccInfo"),
              std::vector<std::string>{"新帐簿|测试商行|2024年11月01日|2024-11-1"});
    EXPECT_EQ(RowsOf(*book, "Select 科目代码 From 收付款方式"), (std::vector<std::string>{" ", "101"}));
}

TEST(NewBook, TakesBothEndsOfItsYears) {
    for (const std::int16_t year : {kFirstYear, kLastYear}) {
        const BookPtr book = CreateBook("memory:");
        BeginBook(book, {.company = "甲", .year = year, .month = 12});
        EXPECT_EQ(InfoOf(book, "帐簿年份"), std::to_string(year));
        EXPECT_EQ(InfoOf(book, "建帐日期"), std::to_string(year) + "-12-1");
    }
}

TEST(NewBook, PreparedBookHasTodaysDate) {
    const BookPtr book = CreateBook("memory:");
    PrepareBook(book, Date::FromYearMonthDay(2025, 3, 9));
    EXPECT_EQ(InfoOf(book, "建帐日期"), "2025-3-9");
    EXPECT_EQ(InfoOf(book, "单位名称"), "(新单位)");
    EXPECT_EQ(RowsOf(*book, "Select Count(*) As n From 收付款方式"), std::vector<std::string>{"2"});
}

TEST(NewBook, WrongBeginningsLeaveTheBookEmpty) {
    const auto expectRefused = [](const Beginning& beginning, const std::string& reason) {
        const BookPtr book = CreateBook("memory:");
        try {
            BeginBook(book, beginning);
            ADD_FAILURE() << reason;
        } catch (const Error& error) {
            EXPECT_EQ(error.Description(), reason);
            EXPECT_EQ(error.Number(), 5);
        }
        for (const char* table : {"系统选项", "AccInfo", "仓库设置", "收付款方式"})
            EXPECT_EQ(RowsOf(*book, std::string("Select Count(*) As n From ") + table), std::vector<std::string>{"0"});
    };
    expectRefused({.company = "甲", .year = 1999, .month = 1}, "the year must be from 2000 to 9999");
    expectRefused({.company = "甲", .year = 10000, .month = 1}, "the year must be from 2000 to 9999");
    expectRefused({.company = "甲", .year = 2026, .month = 0}, "the month must be from 1 to 12");
    expectRefused({.company = "甲", .year = 2026, .month = 13}, "the month must be from 1 to 12");
    expectRefused({.company = "  ", .year = 2026, .month = 1}, "the company has no name");
    expectRefused({.company = "甲", .year = 2026, .month = 1, .warehouses = {"东库", ""}}, "a warehouse has no name");
    expectRefused({.company = "甲", .year = 2026, .month = 1, .warehouses = {"东库", "西库", "东库 "}},
                  "the warehouse '东库' is given twice");
    expectRefused({.company = "甲", .year = 2026, .month = 1, .warehouses = {"全部"}},
                  "'全部' stands for all warehouses; give the warehouse another name");
}

/// What the component traps is not lost: the error of the statement ends the beginning, and nothing of it stays.
TEST(NewBook, AFailedStepIsAnError) {
    for (const char* table : {"系统选项", "AccInfo", "收付款方式", "仓库设置"}) {
        SCOPED_TRACE(table);
        const BookPtr book = CreateBook("memory:");
        book->Execute(std::string("Drop Table ") + table);
        EXPECT_THROW(BeginBook(book, {.company = "甲", .year = 2026, .month = 1, .warehouses = {"东库"}}),
                     DatabaseError);
        for (const char* other : {"系统选项", "AccInfo", "收付款方式", "仓库设置"}) {
            if (std::string(other) == table) continue;
            EXPECT_EQ(RowsOf(*book, std::string("Select Count(*) As n From ") + other), std::vector<std::string>{"0"});
        }
    }
}

}  // namespace
}  // namespace kpTables::bookkeeping
