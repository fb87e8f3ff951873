#include "kpTables/bookkeeping/BookCopy.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "bookkeeping/BookOfAYear.h"
#include "kpTables/Error.h"

namespace kpTables::bookkeeping {
namespace {

const TableSum& SumOf(const BookCopy& copy, const std::string& table) {
    return *std::ranges::find(copy.tables, table, &TableSum::table);
}

/// A table of a host's own; the row with the highest number is gone.
void AddOwnTable(Book& book) {
    book.Execute("Create Table T (a COUNTER PRIMARY KEY,t TEXT(9),d DOUBLE,c CURRENCY,w DATETIME,f YESNO,s SHORT)");
    book.Execute("Insert Into T (t,d,c,w,f,s) Values ('水泥 ',0.1,-0.0001,#2026-1-31 13:05:09#,True,7)");
    book.Execute("Insert Into T (a,t,d,c,w,f,s) Values (3,Null,-0.0,12.3456,Null,False,-7)");
    book.Execute("Insert Into T (a,t) Values (9,'')");
    book.Execute("Delete From T Where a=9");
}

TEST(BookCopy, HoldsWhatTheBookHolds) {
    const auto book = BookOfAYear();
    AddOwnTable(*book);
    book->Execute("Alter Table 商品设置 Add Column 产地 TEXT(3)");
    book->Execute("Update 商品设置 Set 产地='浙江' Where pdID=2");
    const auto copy = CreateBook("memory:");
    const auto done = CopyBook(*book, copy);
    EXPECT_EQ(Everything(*copy), Everything(*book));
    EXPECT_EQ(SumOf(done, "商品设置").rows, 4);
    EXPECT_EQ(SumOf(done, "入库目录"), (TableSum{"入库目录", 0, 0}));
    // Worked out by hand from the bytes of the values.
    EXPECT_EQ(SumOf(done, "T"), (TableSum{"T", 2, 0xf98be46a7485d1cbU}));
    copy->Execute("Insert Into T (t) Values ('next')");
    EXPECT_EQ(CLng(copy->Execute("Select Max(a) From T")->GetValue(0)), 10);
    EXPECT_THROW(copy->Execute("Update 商品设置 Set 产地='浙江省杭州'"), DatabaseError);
}

TEST(BookCopy, TellsHowFarItIs) {
    const auto book = BookOfAYear();
    book->Execute("Create Table T (a COUNTER PRIMARY KEY)");
    const auto rows = book->AppendTo("T", {"a"});
    for (std::int32_t row = 1; row <= 2500; ++row) rows->Append({row});
    book->FlushRows();
    std::vector<std::int64_t> told;
    std::int64_t steps = 0;
    CopyBook(*book, CreateBook("memory:"), [&](std::int64_t done, std::int64_t of) {
        told.push_back(done);
        steps = of;
    });
    EXPECT_EQ(told, (std::vector<std::int64_t>{1000, 2000, 3000, 4000, 5000}));
    std::int64_t expected = 0;
    for (const TableInfo& table : book->Tables())
        expected += 2 * CLng(book->Execute("Select Count(*) From [" + table.name + "]")->GetValue(0));
    EXPECT_EQ(steps, expected);
}

TEST(BookCopy, IsWholeOrNothing) {
    const auto book = BookOfAYear();
    book->Execute("Create Table T (a COUNTER PRIMARY KEY)");
    const auto rows = book->AppendTo("T", {"a"});
    for (std::int32_t row = 1; row <= 1000; ++row) rows->Append({row});
    book->FlushRows();
    const auto copy = CreateBook("memory:");
    EXPECT_THROW(CopyBook(*book, copy, [](std::int64_t, std::int64_t) { throw Error(5, "ended"); }), Error);
    EXPECT_EQ(Everything(*copy), Everything(*CreateBook("memory:")));
}

TEST(BookCopy, NamesTheRowThatDoesNotFit) {
    const auto book = BookOfAYear();
    const auto copy = CreateBook("memory:");
    copy->Execute("Create Unique Index u On 商品设置 (计量单位)");
    book->Execute("Update 商品设置 Set 计量单位='吨' Where pdID=2 Or pdID=3");
    try {
        CopyBook(*book, copy);
        FAIL();
    } catch (const Error& error) {
        EXPECT_NE(error.Description().find("row 3 of 商品设置 (it begins with 3) cannot be copied"), std::string::npos)
            << error.Description();
    }
    EXPECT_EQ(copy->Execute("Select * From 商品设置")->RecordCount(), 0);
}

TEST(BookCopy, ADefaultThatMayBeTheTimeOfEntryIsLeftBehind) {
    const auto book = BookOfAYear();
    book->Execute("Create Table T (a COUNTER PRIMARY KEY,w DATETIME DEFAULT Date(),n LONG DEFAULT 7)");
    const auto copy = CreateBook("memory:");
    EXPECT_EQ(CopyBook(*book, copy).leftDefaults, std::vector<std::string>{"T.w"});
    copy->Execute("Insert Into T (a) Values (1)");
    const auto row = copy->Execute("Select w,n From T");
    EXPECT_TRUE(row->GetValue(0).IsNull());
    EXPECT_EQ(CLng(row->GetValue(1)), 7);
}

}  // namespace
}  // namespace kpTables::bookkeeping
