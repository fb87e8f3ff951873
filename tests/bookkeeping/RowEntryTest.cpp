#include "kpTables/bookkeeping/RowEntry.h"

#include <gtest/gtest.h>

#include "bookkeeping/BookOfAYear.h"
#include "kpTables/Error.h"
#include "kpTables/Transaction.h"

namespace kpTables::bookkeeping {
namespace {

using Outcome = RowEntryResult::Outcome;

TableInfo TableOf(Book& book, const std::string& name) {
    for (auto& table : book.Tables())
        if (table.name == name) return table;
    throw std::runtime_error("no table " + name);
}

class RowEntryTest : public testing::Test {
protected:
    RowEntry Entry(const std::string& table, const std::vector<std::string>& columns, const RowEntryOptions& options) {
        return RowEntry(*book, TableOf(*book, table), columns, options);
    }
    std::string Rows(const std::string& query) {
        std::string text;
        const auto rows = book->Execute(query);
        for (; !rows->Eof(); rows->MoveNext()) {
            for (int i = 0; i < rows->FieldCount(); ++i) {
                const Variant value = rows->GetValue(i);
                text += (i > 0 ? "," : "") + (value.IsNull() ? "Null" : Text(value));
            }
            text += ";";
        }
        return text;
    }

    BookPtr book = BookOfAYear();
    const RowEntryOptions update{.update = true};
};

TEST_F(RowEntryTest, AddsAndChangesByThePrimaryKey) {
    auto entry = Entry("商品设置", {"商品名称", "pdID", "最低库存"}, update);
    EXPECT_EQ(entry.Enter({"水泥", 2, 0.1}).outcome, Outcome::Changed);
    EXPECT_EQ(entry.Enter({"商品3", 3, 0.0}).outcome, Outcome::Unchanged);
    EXPECT_EQ(entry.Enter({"钢筋", 9, Variant::Missing()}).outcome, Outcome::Added);
    EXPECT_EQ(entry.Enter({"木材", Variant::Missing(), 1.0}).outcome, Outcome::Added);
    EXPECT_EQ(Rows("Select pdID,商品名称,最低库存 From 商品设置 Order by pdID"),
              "1,商品1,0;2,水泥,0.1;3,商品3,0;4,商品4,0;9,钢筋,0;10,木材,1;");
}

TEST_F(RowEntryTest, LeavesOtherColumnsAsTheyAre) {
    book->Execute("Update 商品设置 Set 商品编号='01001',备注=Null,规格='x' Where pdID=1");
    auto entry = Entry("商品设置", {"商品编号", "备注", "商品名称"}, {.update = true, .key = {"商品编号"}});
    EXPECT_EQ(entry.Enter({"01001", "", "商品1"}).outcome, Outcome::Unchanged);
    EXPECT_EQ(Rows("Select 备注,规格 From 商品设置 Where pdID=1"), "Null,x;");
    auto again = Entry("商品设置", {"商品编号", "规格"}, {.update = true, .key = {"商品编号"}});
    EXPECT_EQ(again.Enter({"01001", Variant::Null()}).outcome, Outcome::Changed);
    EXPECT_EQ(Rows("Select 规格,商品名称 From 商品设置 Where pdID=1"), "Null,商品1;");
}

TEST_F(RowEntryTest, KeysOfEveryType) {
    book->Execute("Create Table 价格 (d DATETIME, n DOUBLE, c CURRENCY, f YESNO, t TEXT(20), x LONG)");
    const std::vector<Variant> keys = {*Date::ParseIso("2004-03-07 12:30:00"), 0.1 + 0.2, Currency::FromScaled(-1),
                                       true, "it's"};
    const RowEntryOptions options{.update = true, .key = {"d", "n", "c", "f", "t"}};
    auto add = Entry("价格", {"d", "n", "c", "f", "t", "x"}, options);
    auto row = keys;
    row.emplace_back(1);
    EXPECT_EQ(add.Enter(row).outcome, Outcome::Added);
    row.back() = 2;
    EXPECT_EQ(Entry("价格", {"d", "n", "c", "f", "t", "x"}, options).Enter(row).outcome, Outcome::Changed);
    EXPECT_EQ(Entry("价格", {"d", "n", "c", "f", "t", "x"}, options).Enter(row).outcome, Outcome::Unchanged);
    EXPECT_EQ(Rows("Select x From 价格"), "2;");
}

TEST_F(RowEntryTest, RefusesKeysThatDoNotTellRowsApart) {
    book->Execute("Update 商品设置 Set 商品编号='01001' Where pdID<=2");
    auto entry = Entry("商品设置", {"商品编号", "商品名称"}, {.update = true, .key = {"商品编号"}});
    EXPECT_EQ(entry.Enter({"01001", "a"}).refusal, "2 rows of 商品设置 have this key");
    EXPECT_EQ(entry.Enter({"01003", "a"}).outcome, Outcome::Added);
    EXPECT_EQ(entry.Enter({"01003", "b"}).refusal, "the key stands above already");
    EXPECT_EQ(entry.Enter({"", "b"}).refusal, "the key 商品编号 is empty");
    EXPECT_EQ(entry.Enter({Variant::Null(), "b"}).refusal, "the key 商品编号 is empty");
}

TEST_F(RowEntryTest, NeedsAKeyThatIsGiven) {
    EXPECT_THROW(Entry("商品设置", {"商品名称"}, update), Error);
    EXPECT_THROW(Entry("入库记录", {"BillID"}, update), Error);
    EXPECT_THROW(Entry("商品设置", {"商品名称"}, (RowEntryOptions{.update = true, .key = {"商品编号"}})), Error);
    EXPECT_THROW(Entry("商品设置", {"没有"}, {}), Error);
}

TEST_F(RowEntryTest, KeepsBillsOutOfClosedMonths) {
    book->Execute("Insert Into 入库目录 (BillID,年份,月份,日子,dpID) Values (1,2004,1,5,1)");
    book->Execute("Insert Into 入库目录 (BillID,年份,月份,日子,dpID) Values (2,2004,2,5,1)");
    book->Execute("Insert Into 入库记录 (BillID,pdID,dpID,数量) Values (1,1,1,4)");
    CloseMonth(book, std::make_shared<OneAnswer>(MessageAnswer::Yes),
               {.month = 1, .warehouse = 1, .note = "2004-1-31"});
    auto bills = Entry("入库目录", {"BillID", "月份", "说明"}, update);
    EXPECT_EQ(bills.Enter({1, 1, Variant::Null()}).outcome, Outcome::Unchanged);
    EXPECT_EQ(Entry("入库目录", {"BillID", "月份", "说明"}, update).Enter({1, 1, "x"}).refusal,
              "month 1 of 东库 is closed");
    // Neither out of a closed month nor into one.
    EXPECT_EQ(Entry("入库目录", {"BillID", "月份"}, update).Enter({1, 2}).refusal, "month 1 of 东库 is closed");
    EXPECT_EQ(Entry("入库目录", {"BillID", "月份"}, update).Enter({2, 1}).refusal, "month 1 of 东库 is closed");
    EXPECT_EQ(bills.Enter({2, 2, "x"}).outcome, Outcome::Changed);
    const RowEntryOptions lines{.update = true, .key = {"BillID", "pdID"}};
    EXPECT_EQ(Entry("入库记录", {"BillID", "pdID", "数量"}, lines).Enter({1, 1, 5.0}).refusal,
              "month 1 of 东库 is closed");
    EXPECT_EQ(Entry("入库记录", {"BillID", "pdID"}, {}).Enter({1, 2}).refusal, "month 1 of 东库 is closed");
    EXPECT_EQ(Entry("入库记录", {"BillID", "pdID"}, {.closedMonths = true}).Enter({1, 2}).outcome, Outcome::Added);
}

TEST(FirstTableWithRowsTest, NamesIt) {
    const auto book = CreateBook("memory:");
    EXPECT_EQ(FirstTableWithRows(*book), "");
    book->Execute("Insert Into 系统选项 (Item) Values ('a')");
    EXPECT_EQ(FirstTableWithRows(*book), "系统选项");
}

}  // namespace
}  // namespace kpTables::bookkeeping
