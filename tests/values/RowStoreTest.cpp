#include "recordset/RowStore.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "Raised.h"

namespace kpTables::recordset {
namespace {

using Limits16 = std::numeric_limits<std::int16_t>;
using Limits32 = std::numeric_limits<std::int32_t>;

TEST(RowStore, WholeNumbersTakeTheColumnsTypeWhereTheyFit) {
    struct Case {
        VarType column;
        std::int64_t value;
        Variant read;
    };
    const Case cases[] = {
        {VarType::Integer, 0, std::int16_t{0}},
        {VarType::Integer, 32767, std::int16_t{32767}},
        {VarType::Integer, -32768, std::int16_t{-32768}},
        {VarType::Integer, 32768, std::int32_t{32768}},
        {VarType::Integer, -32769, std::int32_t{-32769}},
        {VarType::Integer, 3000000000, 3000000000.0},
        {VarType::Long, 5, std::int32_t{5}},
        {VarType::Long, Limits32::max(), Limits32::max()},
        {VarType::Long, Limits32::min(), Limits32::min()},
        {VarType::Long, 2147483648, 2147483648.0},
        {VarType::Long, -2147483649, -2147483649.0},
        {VarType::Boolean, -1, true},
        {VarType::Boolean, 0, false},
        {VarType::Double, 5, 5.0},
        {VarType::Currency, 5, Currency::FromLong(5)},
        {VarType::Currency, 3000000000, 3000000000.0},
        {VarType::Empty, 5, std::int32_t{5}},
        {VarType::String, 5, std::int32_t{5}},
        {VarType::Date, 5, std::int32_t{5}},
    };
    for (const Case& c : cases) {
        RowStore rows({{"a", c.column}});
        rows.BeginRow();
        rows.PutLong(0, c.value);
        EXPECT_TRUE(rows.GetValue(0, 0).Is(c.read)) << static_cast<int>(c.column) << ' ' << c.value;
        EXPECT_EQ(rows.TypeAt(0, 0), c.read.Type());
    }
}

TEST(RowStore, EveryTypeInEveryColumn) {
    const std::vector<Variant> values = {Variant::Null(),
                                         true,
                                         false,
                                         std::int16_t{-7},
                                         std::int32_t{70000},
                                         2.5,
                                         -0.0,
                                         1e300,
                                         Currency::FromScaled(-1),
                                         Date::FromSerial(38053.5),
                                         Date::FromSerial(-1.25),
                                         "",
                                         "商品",
                                         std::string("a\0b", 3)};
    for (VarType column : {VarType::Empty, VarType::Boolean, VarType::Integer, VarType::Long, VarType::Double,
                           VarType::Currency, VarType::Date, VarType::String}) {
        RowStore rows({{"first", VarType::Long}, {"a", column}, {"last", VarType::Long}});
        for (const Variant& value : values) {
            rows.BeginRow();
            rows.PutValue(1, value);
        }
        ASSERT_EQ(rows.Rows(), values.size());
        for (std::size_t i = 0; i < values.size(); ++i) {
            EXPECT_TRUE(rows.GetValue(i, 1).Is(values[i])) << i;
            EXPECT_TRUE(rows.IsNull(i, 0));
            EXPECT_TRUE(rows.IsNull(i, 2));
        }
    }
}

TEST(RowStore, CheapReads) {
    RowStore rows({{"a", VarType::Empty}});
    const auto number = [&](const Variant& value) {
        rows.BeginRow();
        rows.PutValue(0, value);
        return rows.NumberAt(rows.Rows() - 1, 0);
    };
    EXPECT_EQ(number(true), -1);
    EXPECT_EQ(number(false), 0);
    EXPECT_EQ(number(std::int16_t{-5}), -5);
    EXPECT_EQ(number(std::int32_t{-70000}), -70000);
    EXPECT_EQ(number(2.5), 2.5);
    EXPECT_EQ(number(Currency::FromScaled(-12345)), -1.2345);
    EXPECT_EQ(number(Date::FromSerial(38053.5)), 38053.5);
    EXPECT_EQ(number("7"), 0);
    EXPECT_EQ(rows.TextAt(rows.Rows() - 1, 0), "7");
    EXPECT_EQ(number(Variant::Null()), 0);
    EXPECT_EQ(rows.TextAt(rows.Rows() - 1, 0), "");
    EXPECT_TRUE(rows.IsNull(rows.Rows() - 1, 0));
}

TEST(RowStore, ObjectsAndArraysAreRefused) {
    RowStore rows({{"a", VarType::Empty}});
    rows.BeginRow();
    EXPECT_EQ(Raised([&] { rows.PutValue(0, nullptr); }), 13);
    EXPECT_EQ(Raised([&] { rows.PutValue(0, std::make_shared<VariantArray>()); }), 13);
    EXPECT_EQ(Raised([&] { rows.PutValue(0, Variant::Missing()); }), 13);
    rows.PutValue(0, Variant());
    EXPECT_TRUE(rows.IsNull(0, 0));
}

TEST(RowStore, EditRowWritesOneRowAndLeavesTheOthers) {
    RowStore rows({{"a", VarType::String}, {"b", VarType::Long}});
    for (int i = 0; i < 3; ++i) {
        rows.BeginRow();
        rows.PutText(0, "same");
        rows.PutLong(1, i);
    }
    rows.EditRow(1);
    rows.PutText(0, "other");
    rows.PutNull(1);
    EXPECT_EQ(rows.TextAt(0, 0), "same");
    EXPECT_EQ(rows.TextAt(1, 0), "other");
    EXPECT_EQ(rows.TextAt(2, 0), "same");
    EXPECT_TRUE(rows.GetValue(0, 1).Is(std::int32_t{0}));
    EXPECT_TRUE(rows.IsNull(1, 1));
    EXPECT_TRUE(rows.GetValue(2, 1).Is(std::int32_t{2}));
    rows.BeginRow();
    EXPECT_EQ(rows.Rows(), 4u);
    EXPECT_TRUE(rows.IsNull(3, 0));
}

TEST(RowStore, ManyRowsOverManyBlocks) {
    constexpr std::size_t kRows = 100000;
    RowStore rows({{"pdID", VarType::Long}, {"name", VarType::String}, {"amount", VarType::Currency}});
    rows.Reserve(kRows);
    for (std::size_t i = 0; i < kRows; ++i) {
        rows.BeginRow();
        rows.PutLong(0, static_cast<std::int64_t>(i));
        rows.PutText(1, "商品" + std::to_string(i));
        rows.PutCurrency(2, static_cast<std::int64_t>(i) * 3);
    }
    ASSERT_EQ(rows.Rows(), kRows);
    for (std::size_t i = 0; i < kRows; i += 97) {
        ASSERT_EQ(rows.NumberAt(i, 0), static_cast<double>(i));
        ASSERT_EQ(rows.TextAt(i, 1), "商品" + std::to_string(i));
        ASSERT_TRUE(rows.GetValue(i, 2).Is(Currency::FromScaled(static_cast<std::int64_t>(i) * 3)));
    }
}

TEST(RowStore, ACellTakesSixteenBytesAtMostBesideItsText) {
    constexpr std::size_t kRows = 200000;
    for (std::size_t columns : {std::size_t{1}, std::size_t{7}, std::size_t{16}, std::size_t{30}}) {
        RowStore rows(std::vector<FieldInfo>(columns, {"a", VarType::String}));
        std::size_t textBytes = 0;
        for (std::size_t i = 0; i < kRows / columns; ++i) {
            rows.BeginRow();
            for (std::size_t c = 0; c < columns; ++c) {
                const std::string text = std::to_string(i * columns + c);
                rows.PutText(static_cast<int>(c), text);
                textBytes += text.size();
            }
        }
        const std::size_t cells = rows.Rows() * columns;
        EXPECT_LE(rows.Bytes(), cells * 16 + textBytes + (std::size_t{1} << 20)) << columns;
        EXPECT_GE(rows.Bytes(), cells * 9 + textBytes) << columns;
    }
}

TEST(RowStore, AnEmptyResultTakesLittle) {
    RowStore rows(std::vector<FieldInfo>(20, {"a", VarType::String}));
    EXPECT_LT(rows.Bytes(), 1000u);
    rows.BeginRow();
    rows.PutText(0, "x");
    EXPECT_LT(rows.Bytes(), 3000u);
}

TEST(RowStore, LongTextsAndRepeatedTexts) {
    RowStore rows({{"memo", VarType::String}});
    const std::string longText(5000000, 'x');
    for (int i = 0; i < 3; ++i) {
        rows.BeginRow();
        rows.PutText(0, longText);
    }
    rows.BeginRow();
    rows.PutText(0, "short");
    EXPECT_EQ(rows.TextAt(0, 0), longText);
    EXPECT_EQ(rows.TextAt(2, 0), longText);
    EXPECT_EQ(rows.TextAt(3, 0), "short");
    EXPECT_LT(rows.Bytes(), 2 * longText.size());
}

TEST(RowStore, NoColumns) {
    RowStore rows(std::vector<FieldInfo>{});
    rows.BeginRow();
    EXPECT_EQ(rows.Rows(), 1u);
    EXPECT_EQ(rows.Columns(), 0);
}

TEST(RowStore, IsArrangedAndNarrowedInPlace) {
    // Several blocks.
    constexpr std::uint32_t kRows = 70000;
    RowStore rows({{"n", VarType::Long}, {"t", VarType::String}, {"key", VarType::Double}});
    for (std::uint32_t row = 0; row < kRows; ++row) {
        rows.BeginRow();
        rows.PutLong(0, row);
        if (row % 3 != 0) rows.PutText(1, "t" + std::to_string(row / 5));
        rows.PutDouble(2, 0.5);
    }
    std::vector<std::uint32_t> order;
    for (std::uint32_t place = 0; place < kRows; ++place) order.push_back((place * 3 + 2) % kRows);
    rows.Arrange(order);
    rows.DropLastColumns(1);
    ASSERT_EQ(rows.Columns(), 2);
    EXPECT_EQ(rows.Fields()[1].name, "t");
    ASSERT_EQ(rows.Rows(), kRows);
    for (std::uint32_t place = 0; place < kRows; ++place) {
        const std::uint32_t row = order[place];
        ASSERT_TRUE(rows.GetValue(place, 0).Is(static_cast<std::int32_t>(row))) << place;
        ASSERT_EQ(rows.IsNull(place, 1), row % 3 == 0) << place;
        if (row % 3 != 0) {
            ASSERT_EQ(rows.TextAt(place, 1), "t" + std::to_string(row / 5)) << place;
        }
    }
    rows.BeginRow();
    rows.PutText(1, "last");
    EXPECT_EQ(rows.TextAt(kRows, 1), "last");
    EXPECT_TRUE(rows.IsNull(kRows, 0));
}

TEST(RowStore, WithoutRowsIsNarrowed) {
    RowStore rows({{"n", VarType::Long}, {"key", VarType::Double}});
    rows.Arrange({});
    rows.DropLastColumns(1);
    rows.BeginRow();
    rows.PutLong(0, 7);
    EXPECT_TRUE(rows.GetValue(0, 0).Is(std::int32_t{7}));
}

}  // namespace
}  // namespace kpTables::recordset
