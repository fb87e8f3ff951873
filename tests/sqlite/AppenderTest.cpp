// Rows added without a recordset.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "TestBook.h"
#include "kpTables/Book.h"

namespace kpTables {
namespace {

using namespace test;

class Appender : public testing::Test {
protected:
    BookPtr book_ = NewBook();
};

std::int32_t Id(int id) { return id; }

TEST_F(Appender, TakesColumnsInAnyOrderAndCase) {
    const auto rows = book_->AppendTo("入库记录", {"数量", "BILLID", "除税金额", "经手人"});
    rows->Append({2.5, Id(7), Currency::FromScaled(125'000), "陈建国"});
    rows->Append({Variant::Null(), Id(8), Currency::FromScaled(-1), Variant::Null()});
    EXPECT_EQ(RowsOf(*book_, "Select BillID,数量,除税金额,经手人 From 入库记录 Order by BillID"),
              "7|2.5|12.5|陈建国 / 8|Null|-0.0001|Null");
}

TEST_F(Appender, AMissingValueIsLeftToTheEngine) {
    const auto rows = book_->AppendTo("仓库设置", {"dpID", "仓库名称", "结帐标志", "结帐日期"});
    rows->Append({Id(5), "东库", true, Date::FromYearMonthDay(2003, 1, 31)});
    rows->Append({Variant::Missing(), "西库", Variant::Missing(), Variant::Missing()});
    EXPECT_EQ(RowsOf(*book_, "Select dpID,仓库名称,结帐标志,结帐日期 From 仓库设置 Order by dpID"),
              "5|东库|True|2003-1-31 / 6|西库|False|Null");
}

TEST_F(Appender, RefusesWhatIsNoValueOfTheColumn) {
    const auto rows = book_->AppendTo("商品设置", {"pdID", "商品名称", "默认单价"});
    EXPECT_EQ(NumberOf([&] { rows->Append({"1", "水泥", 1.0}); }), Code(ErrorNumber::TypeMismatch));
    EXPECT_EQ(NumberOf([&] { rows->Append({Id(1), 2.0, 1.0}); }), Code(ErrorNumber::TypeMismatch));
    EXPECT_EQ(NumberOf([&] { rows->Append({Id(1), "水泥", Id(1)}); }), Code(ErrorNumber::TypeMismatch));
    EXPECT_EQ(NumberOf([&] { rows->Append({Id(1), "水泥"}); }), Code(ErrorNumber::InvalidArgument));
    EXPECT_EQ(NumberOf([&] {
                  rows->Append({Id(1), std::string(256, 'a'), 1.0});
              }),
              Code(DatabaseErrorNumber::Overflow));
    EXPECT_EQ(ValueOf(*book_, "Select Count(*) From 商品设置"), "0");
    rows->Append({Id(1), std::string(255, 'a'), 1.0});
    EXPECT_EQ(NumberOf([&] { rows->Append({Id(1), "石灰", 1.0}); }), Code(DatabaseErrorNumber::ConstraintViolated));
    rows->Append({Id(2), "石灰", 1.0});
    EXPECT_EQ(RowsOf(*book_, "Select pdID From 商品设置 Order by pdID"), "1 / 2");
}

TEST_F(Appender, RefusesWrongNames) {
    EXPECT_EQ(NumberOf([&] { book_->AppendTo("商品设置", {"pdID", "名称"}); }), Code(ErrorNumber::ItemNotFound));
    EXPECT_EQ(NumberOf([&] { book_->AppendTo("商品设置", {"pdID", "PDID"}); }), Code(ErrorNumber::InvalidArgument));
    EXPECT_TRUE(Refused([&] { book_->AppendTo("商品", {"pdID"}); }));
}

TEST_F(Appender, ItsRowsBelongToTheHostsTransaction) {
    const auto rows = book_->AppendTo("系统选项", {"Item"});
    rows->Append({"a"});
    book_->BeginTrans();
    rows->Append({"b"});
    book_->RollbackTrans();
    rows->Append({"c"});
    EXPECT_EQ(RowsOf(*book_, "Select Item From 系统选项 Order by Item"), "a / c");
}

TEST(AppenderOfAFile, SavesWhatAnOpenRecordsetHasWritten) {
    const TemporaryDirectory directory;
    const auto book = CreateBook(directory.Book("book"));
    const auto reader = OpenBook(directory.Book("book"));
    const auto opened = book->Open("系统选项", SourceKind::Table);
    opened->AddNew();
    opened->Fields("Item").SetValue("a");
    opened->Update();
    EXPECT_EQ(RowsOf(*reader, "Select Item From 系统选项"), "");
    book->AppendTo("系统选项", {"Item"})->Append({"b"});
    EXPECT_EQ(RowsOf(*reader, "Select Item From 系统选项 Order by Item"), "a / b");
}

}  // namespace
}  // namespace kpTables
