#include "kpTables/MemoryRecordset.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "Raised.h"
#include "kpTables/Convert.h"
#include "recordset/RowStore.h"

namespace kpTables {
namespace {

std::vector<FieldInfo> Fields() {
    return {{"pdID", VarType::Long},     {"商品名称", VarType::String}, {"数量", VarType::Double},
            {"金额", VarType::Currency}, {"日期", VarType::Date},       {"月份", VarType::Integer},
            {"标记", VarType::Boolean},  {"备注", VarType::Empty},      {"PDID", VarType::String}};
}

void Add(Recordset& rs, int id, const char* name) {
    rs.AddNew();
    rs.SetValue(0, std::int32_t{id});
    rs.SetValue(1, name);
    rs.Update();
}

/// The ids in the recordset's order.
std::string Ids(Recordset& rs) {
    std::string ids;
    if (rs.RecordCount() > 0) {
        for (rs.MoveFirst(); !rs.Eof(); rs.MoveNext()) ids += Text(rs.GetValue(0)) + " ";
    }
    return ids;
}

std::unique_ptr<recordset::RowStore> Store(int rows) {
    auto store = std::make_unique<recordset::RowStore>(Fields());
    for (int i = 1; i <= rows; ++i) {
        store->BeginRow();
        store->PutLong(0, i);
        store->PutText(1, "商品" + std::to_string(i));
    }
    return store;
}

TEST(MemoryRecordset, FieldsByNameAndPosition) {
    MemoryRecordset rs(Fields());
    EXPECT_EQ(rs.FieldCount(), 9);
    EXPECT_EQ(rs.FieldIndex("pdID"), 0);
    EXPECT_EQ(rs.FieldIndex("PDID"), 0) << "the first of two of one name";
    EXPECT_EQ(rs.FieldIndex("pdid"), 0);
    EXPECT_EQ(rs.FieldIndex("商品名称"), 1);
    EXPECT_EQ(rs.FieldAt(3).name, "金额");
    EXPECT_EQ(rs.FieldAt(3).type, VarType::Currency);
    EXPECT_EQ(rs.Fields("PdId").Type(), VarType::Long);
    EXPECT_EQ(rs.Fields(1).Name(), "商品名称");
    EXPECT_EQ(Raised([&] { rs.FieldIndex("pdI"); }), 3265);
    EXPECT_EQ(Raised([&] { rs.FieldIndex(""); }), 3265);
    EXPECT_EQ(Raised([&] { rs.Fields("名称"); }), 3265);
    EXPECT_EQ(Raised([&] { rs.FieldAt(9); }), 3265);
    EXPECT_EQ(Raised([&] { rs.FieldAt(-1); }), 3265);
    EXPECT_EQ(Raised([&] { rs.Fields(9); }), 3265);
}

TEST(MemoryRecordset, AnEmptyOne) {
    MemoryRecordset rs(Fields());
    EXPECT_EQ(rs.RecordCount(), 0);
    EXPECT_TRUE(rs.Eof());
    EXPECT_EQ(rs.AbsolutePosition(), -3);
    EXPECT_EQ(Raised([&] { rs.MoveFirst(); }), 3021);
    EXPECT_EQ(Raised([&] { rs.MoveNext(); }), 3021);
    EXPECT_EQ(Raised([&] { rs.GetValue(0); }), 3021);
    EXPECT_EQ(Raised([&] { rs.SetValue(0, 1.0); }), 3021);
    EXPECT_EQ(Raised([&] { rs.Find("pdID=1"); }), 3021);
    EXPECT_EQ(Raised([&] { rs.Sort("pdID"); }), 0);
    EXPECT_TRUE(rs.Eof());
}

TEST(MemoryRecordset, Navigation) {
    MemoryRecordset rs(Store(3));
    EXPECT_EQ(rs.RecordCount(), 3);
    EXPECT_FALSE(rs.Eof());
    EXPECT_EQ(rs.AbsolutePosition(), 1);
    EXPECT_TRUE(rs.GetValue(0).Is(std::int32_t{1}));
    rs.MoveNext();
    EXPECT_EQ(rs.AbsolutePosition(), 2);
    rs.MoveNext();
    rs.MoveNext();
    EXPECT_TRUE(rs.Eof());
    EXPECT_EQ(rs.AbsolutePosition(), -3);
    EXPECT_EQ(Raised([&] { rs.MoveNext(); }), 3021);
    EXPECT_EQ(Raised([&] { rs.GetValue(0); }), 3021);
    rs.MoveFirst();
    EXPECT_EQ(rs.Fields("商品名称").Value().If<std::string>()->substr(), "商品1");
    EXPECT_EQ(Raised([&] { rs.GetValue(9); }), 3265);
    EXPECT_EQ(Raised([&] { rs.GetValue(-1); }), 3265);
}

TEST(MemoryRecordset, AResultIsReadOnly) {
    MemoryRecordset rs(Store(1));
    EXPECT_EQ(Raised([&] { rs.SetValue(0, 1.0); }), 3251);
    EXPECT_EQ(Raised([&] { rs.AddNew(); }), 3251);
    EXPECT_EQ(Raised([&] { rs.Update(); }), 3251);
    EXPECT_EQ(rs.RecordCount(), 1);
    EXPECT_TRUE(rs.GetValue(0).Is(std::int32_t{1}));
}

TEST(MemoryRecordset, ARowBeingAddedCountsAtOnce) {
    MemoryRecordset rs(Fields());
    rs.AddNew();
    EXPECT_EQ(rs.RecordCount(), 1);
    EXPECT_EQ(rs.AbsolutePosition(), 1);
    EXPECT_FALSE(rs.Eof());
    EXPECT_TRUE(rs.GetValue(1).IsNull());
    rs.SetValue(1, "砖");
    EXPECT_TRUE(rs.GetValue(1).Is("砖"));
    EXPECT_TRUE(rs.GetValue(0).IsNull());
    rs.Update();
    EXPECT_EQ(rs.RecordCount(), 1);
    EXPECT_EQ(rs.AbsolutePosition(), 1);
    EXPECT_TRUE(rs.GetValue(1).Is("砖"));
    EXPECT_TRUE(rs.GetValue(0).IsNull());
    rs.MoveNext();
    EXPECT_TRUE(rs.Eof());
}

TEST(MemoryRecordset, MovingAwaySavesTheRow) {
    MemoryRecordset rs(Fields());
    rs.AddNew();
    rs.SetValue(0, std::int32_t{1});
    rs.AddNew();
    EXPECT_EQ(rs.RecordCount(), 2);
    rs.SetValue(0, std::int32_t{2});
    rs.MoveFirst();
    EXPECT_EQ(rs.RecordCount(), 2);
    EXPECT_TRUE(rs.GetValue(0).Is(std::int32_t{1}));
    rs.SetValue(0, std::int32_t{10});
    EXPECT_TRUE(rs.GetValue(0).Is(std::int32_t{10}));
    rs.MoveNext();
    rs.SetValue(0, std::int32_t{20});
    rs.Find("pdID=20");
    EXPECT_EQ(rs.AbsolutePosition(), 2);
    rs.SetValue(0, std::int32_t{5});
    rs.Sort("pdID");
    EXPECT_EQ(Ids(rs), "5 10 ");
    rs.AddNew();
    rs.MoveNext();
    EXPECT_TRUE(rs.Eof());
    EXPECT_EQ(rs.RecordCount(), 3);
}

TEST(MemoryRecordset, AnEditLeavesTheOtherFields) {
    MemoryRecordset rs(Fields());
    Add(rs, 1, "砖");
    Add(rs, 2, "瓦");
    rs.MoveFirst();
    rs.SetValue(2, 3.5);
    rs.Update();
    EXPECT_TRUE(rs.GetValue(0).Is(std::int32_t{1}));
    EXPECT_TRUE(rs.GetValue(1).Is("砖"));
    EXPECT_TRUE(rs.GetValue(2).Is(3.5));
    rs.SetValue(1, Variant::Null());
    rs.Update();
    rs.Update();
    EXPECT_TRUE(rs.GetValue(1).IsNull());
    rs.MoveNext();
    EXPECT_TRUE(rs.GetValue(1).Is("瓦"));
    EXPECT_TRUE(rs.GetValue(2).IsNull());
}

TEST(MemoryRecordset, WhatIsSetIsPendingUntilItIsWritten) {
    MemoryRecordset rs(Fields());
    Add(rs, 1, "水泥");
    EXPECT_EQ(rs.PendingValue(1), nullptr);
    rs.SetValue(2, "7");
    ASSERT_NE(rs.PendingValue(2), nullptr);
    EXPECT_TRUE(rs.PendingValue(2)->Is(7.0)) << "as the field's type";
    EXPECT_EQ(rs.PendingValue(1), nullptr) << "not set in this edit";
    EXPECT_EQ(Raised([&] { rs.PendingValue(9); }), 3265);
    rs.Update();
    EXPECT_EQ(rs.PendingValue(2), nullptr);
}

TEST(MemoryRecordset, ValuesTakeTheFieldsType) {
    struct Case {
        int field;
        Variant value;
        Variant stored;
    };
    const Case cases[] = {
        {0, "12", std::int32_t{12}},
        {0, 2.5, std::int32_t{2}},
        {1, std::int32_t{12}, "12"},
        {1, 0.5, "0.5"},
        {1, Date::FromSerial(38053), "2004-3-7"},
        {2, std::int16_t{3}, 3.0},
        {2, "1,234.5", 1234.5},
        {3, 12.5, Currency::FromScaled(125000)},
        {3, "0.00015", Currency::FromScaled(2)},
        {4, "2004-3-7", Date::FromSerial(38053)},
        {5, "7", std::int16_t{7}},
        {6, std::int32_t{5}, true},
        {6, "false", false},
        {7, "any", "any"},
        {7, 2.5, 2.5},
        {0, Variant(), std::int32_t{0}},
        {1, Variant(), ""},
        {0, Variant::Null(), Variant::Null()},
        {6, Variant::Null(), Variant::Null()},
    };
    MemoryRecordset rs(Fields());
    for (const Case& c : cases) {
        rs.AddNew();
        rs.Fields(c.field).SetValue(c.value);
        EXPECT_TRUE(rs.GetValue(c.field).Is(c.stored)) << &c - cases;
        rs.Update();
        EXPECT_TRUE(rs.GetValue(c.field).Is(c.stored)) << &c - cases;
    }
    rs.AddNew();
    rs.SetValue(0, std::int32_t{1});
    EXPECT_EQ(Raised([&] { rs.SetValue(0, "abc"); }), 13);
    EXPECT_EQ(Raised([&] { rs.SetValue(5, std::int32_t{32768}); }), 6);
    EXPECT_EQ(Raised([&] { rs.SetValue(4, "2023-2-30"); }), 13);
    EXPECT_EQ(Raised([&] { rs.SetValue(7, nullptr); }), 13);
    EXPECT_EQ(Raised([&] { rs.SetValue(9, 1.0); }), 3265);
    EXPECT_TRUE(rs.GetValue(0).Is(std::int32_t{1})) << "a refused value leaves what was set";
}

TEST(MemoryRecordset, ClosedMeansClosed) {
    MemoryRecordset rs(Store(1));
    rs.Close();
    EXPECT_EQ(Raised([&] { rs.FieldCount(); }), 3704);
    EXPECT_EQ(Raised([&] { rs.FieldAt(0); }), 3704);
    EXPECT_EQ(Raised([&] { rs.FieldIndex("pdID"); }), 3704);
    EXPECT_EQ(Raised([&] { rs.GetValue(0); }), 3704);
    EXPECT_EQ(Raised([&] { rs.SetValue(0, 1.0); }), 3704);
    EXPECT_EQ(Raised([&] { rs.RecordCount(); }), 3704);
    EXPECT_EQ(Raised([&] { rs.AbsolutePosition(); }), 3704);
    EXPECT_EQ(Raised([&] { rs.Eof(); }), 3704);
    EXPECT_EQ(Raised([&] { rs.MoveFirst(); }), 3704);
    EXPECT_EQ(Raised([&] { rs.MoveNext(); }), 3704);
    EXPECT_EQ(Raised([&] { rs.Find("pdID=1"); }), 3704);
    EXPECT_EQ(Raised([&] { rs.Sort(""); }), 3704);
    EXPECT_EQ(Raised([&] { rs.AddNew(); }), 3704);
    EXPECT_EQ(Raised([&] { rs.Update(); }), 3704);
    EXPECT_EQ(Raised([&] { rs.Close(); }), 3704);
}

TEST(MemoryRecordset, CacheSizeIsKept) {
    MemoryRecordset rs(Store(1));
    EXPECT_EQ(rs.CacheSize(), 1);
    rs.SetCacheSize(200);
    EXPECT_EQ(rs.CacheSize(), 200);
}

TEST(Sort, BySeveralColumns) {
    auto rows = std::make_unique<recordset::RowStore>(std::vector<FieldInfo>{
        {"id", VarType::Long}, {"类别", VarType::String}, {"amount of money", VarType::Currency}});
    struct Row {
        int id;
        const char* kind;
        int amount;
    };
    const Row table[] = {{1, "b", 5}, {2, "A", 7}, {3, nullptr, 5}, {4, "B ", -5}, {5, "a", 7}, {6, nullptr, 9}};
    for (const Row& row : table) {
        rows->BeginRow();
        rows->PutLong(0, row.id);
        if (row.kind) rows->PutText(1, row.kind);
        rows->PutCurrency(2, row.amount * Currency::kScale);
    }
    MemoryRecordset rs(std::move(rows));
    struct Case {
        const char* order;
        const char* ids;
    };
    const Case cases[] = {
        {"id DESC", "6 5 4 3 2 1 "},
        {"类别", "3 6 2 5 1 4 "},
        {"类别 asc", "3 6 2 5 1 4 "},
        {"类别 DESC", "1 4 2 5 3 6 "},
        {"", "1 2 3 4 5 6 "},
        {"[amount of money]", "4 1 3 2 5 6 "},
        {"[amount of money] desc, id", "6 2 5 1 3 4 "},
        {" 类别,[amount of money] Desc ,ID desc", "6 3 5 2 1 4 "},
        {"  ", "1 2 3 4 5 6 "},
    };
    for (const Case& c : cases) {
        rs.MoveNext();
        rs.Sort(c.order);
        EXPECT_EQ(rs.AbsolutePosition(), 1) << c.order;
        EXPECT_EQ(Ids(rs), c.ids) << c.order;
        rs.MoveFirst();
    }
    EXPECT_EQ(Raised([&] { rs.Sort("price"); }), 3265);
    for (const char* order : {"id up", "id,", ",id", "id desc asc", "[id", "[]", "id;类别", "id desc,,类别"}) {
        const int number = Raised([&] { rs.Sort(order); });
        EXPECT_TRUE(number == 3001 || number == 3265) << order << ": " << number;
    }
    EXPECT_EQ(Ids(rs), "1 2 3 4 5 6 ") << "a refused order changes nothing";
}

/// Texts with long common beginnings, and numbers of both signs, in a fixed disorder.
struct Disorder {
    struct Row {
        int id;
        std::string text;  // lower case, no blanks behind
        double number;
    };
    std::vector<Row> rows;
    std::unique_ptr<recordset::RowStore> store = std::make_unique<recordset::RowStore>(
        std::vector<FieldInfo>{{"id", VarType::Long}, {"text", VarType::String}, {"number", VarType::Double}});

    Disorder() {
        std::uint64_t state = 7;
        for (int id = 0; id < 5000; ++id) {
            state = state * 6364136223846793005u + 1442695040888963407u;
            const int a = static_cast<int>(state >> 40) % 300, b = static_cast<int>(state >> 50) % 41 - 20;
            rows.push_back({id, a % 7 == 0 ? "" : std::string("common beginning ").append(std::to_string(a)), b / 4.0});
            std::string shown = rows.back().text;
            if (a % 2 == 0) shown += "  ";
            if (a % 3 == 0) shown.replace(0, std::min<std::size_t>(6, shown.size()), a % 7 == 0 ? " " : "COMMON");
            store->BeginRow();
            store->PutLong(0, id);
            store->PutText(1, shown);
            store->PutDouble(2, rows.back().number);
        }
    }
};

TEST(Sort, LikeAStableSortOfAPlainCopy) {
    Disorder disorder;
    MemoryRecordset rs(std::move(disorder.store));
    rs.Sort("text DESC, number");
    std::stable_sort(disorder.rows.begin(), disorder.rows.end(), [](const auto& left, const auto& right) {
        return left.text != right.text ? left.text > right.text : left.number < right.number;
    });
    for (const auto& row : disorder.rows) {
        ASSERT_TRUE(rs.GetValue(0).Is(std::int32_t{row.id})) << row.text << ' ' << row.number;
        rs.MoveNext();
    }
    EXPECT_TRUE(rs.Eof());
}

TEST(Sort, ARowAddedToSortedRowsComesLast) {
    MemoryRecordset rs(Fields());
    Add(rs, 2, "b");
    Add(rs, 1, "a");
    rs.Sort("pdID");
    Add(rs, 0, "c");
    EXPECT_EQ(Ids(rs), "1 2 0 ");
    rs.Sort("pdID");
    EXPECT_EQ(Ids(rs), "0 1 2 ");
    rs.Sort("");
    EXPECT_EQ(Ids(rs), "2 1 0 ");
}

/// The order of the rows whose only field, of that type, gets the values.
std::string OrderOf(VarType type, const std::vector<Variant>& values, const char* direction = "") {
    MemoryRecordset rs({{"v", type}, {"pdID", VarType::Long}});
    for (std::size_t i = 0; i < values.size(); ++i) {
        rs.AddNew();
        rs.SetValue(0, values[i]);
        rs.SetValue(1, static_cast<std::int32_t>(i));
        rs.Update();
    }
    rs.Sort(std::string("v ") + direction);
    std::string order;
    for (; !rs.Eof(); rs.MoveNext()) order += Text(rs.GetValue(1)) + " ";
    return order;
}

TEST(Sort, ByTheMomentOfADate) {
    const auto date = [](double serial) { return Variant(Date::FromSerial(serial)); };
    // Noon of the 28th, six o'clock and noon of the 29th, the 30th of December 1899, and the day after.
    EXPECT_EQ(OrderOf(VarType::Date, {date(1), date(-1.5), date(0), date(-2.5), date(-1.25), date(0.25)}),
              "3 4 1 2 5 0 ");
}

TEST(Sort, ByAmountsBeyondTheDigitsOfADouble) {
    const auto amount = [](std::int64_t scaled) { return Variant(Currency::FromScaled(scaled)); };
    constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
    const std::vector<Variant> amounts = {amount(kMost),  amount(kMost - 1), Variant::Null(), amount(-kMost - 1),
                                          amount(-kMost), amount(0),         amount(-1),      amount(kMost - 1)};
    EXPECT_EQ(OrderOf(VarType::Currency, amounts), "2 3 4 6 5 1 7 0 ");
    EXPECT_EQ(OrderOf(VarType::Currency, amounts, "DESC"), "0 1 7 5 6 4 3 2 ");
}

}  // namespace
}  // namespace kpTables
