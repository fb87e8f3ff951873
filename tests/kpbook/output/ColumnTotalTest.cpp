#include "kpbook/output/ColumnTotal.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "kpTables/Error.h"
#include "kpTables/MemoryRecordset.h"
#include "kpbook/output/CellText.h"

namespace kpTables::kpbook::output {
namespace {

struct SumCase {
    std::vector<Variant> values;
    VarType type;
    const char* text;
};

TEST(ColumnTotal, Sums) {
    const Currency least = Currency::FromScaled(1);
    const Currency large = Currency::FromScaled(9'000'000'000'000'000'000);
    const SumCase cases[] = {
        {{least, Variant::Null(), Currency::FromScaled(125000), Variant()}, VarType::Currency, "12.5001"},
        {{large, least, -large}, VarType::Currency, "0.0001"},
        {{0.1, 0.2}, VarType::Double, "0.3"},
        {{0.1, 0.7, 0.25}, VarType::Double, "1.05"},
        {{1565.1049999999998, 0.1}, VarType::Double, "1565.205"},
        {{2e15, 0.5}, VarType::Double, "2000000000000000.5"},
        {{1.1, -1.1, 0.0}, VarType::Double, "0"},
        {{-0.0}, VarType::Double, "0"},
        {{1e15, 0.3, -1e15}, VarType::Double, "0.3"},
        {{1e-7, 1.0}, VarType::Double, "1.0000001"},
        {{1e300, 1e300}, VarType::Double, "2e+300"},
        {{std::int16_t{3}, std::int32_t{4}}, VarType::Double, "7"},
        {{std::numeric_limits<double>::infinity(), 1.0}, VarType::Double, "inf"},
        {{Variant::Null()}, VarType::Currency, "0"},
    };
    for (const auto& each : cases) {
        ColumnTotal total;
        for (const auto& value : each.values) total.Add(value);
        EXPECT_EQ(total.Value().Type(), each.type) << each.text;
        EXPECT_EQ(CellText(total.Value()), each.text);
    }
}

TEST(ColumnTotal, WhatIsNoSum) {
    ColumnTotal total;
    total.Add(Currency::FromScaled(std::numeric_limits<std::int64_t>::max()));
    EXPECT_THROW(total.Add(Currency::FromScaled(1)), Error);
    EXPECT_THROW(ColumnTotal().Add(Variant("吨")), Error);
}

TEST(TotalsRow, LabelsTheFirstColumnThatIsNotSummed) {
    MemoryRecordset rows({{"数量", VarType::Double}, {"名称", VarType::String}, {"金额", VarType::Currency}});
    rows.AddNew();
    rows.SetValue(0, 1.5);
    rows.Update();
    rows.MoveFirst();
    TotalsRow some(rows, std::vector<int>{0});
    EXPECT_FALSE(some.IsShown());
    some.Add(rows);
    EXPECT_TRUE(some.IsShown());
    EXPECT_EQ(some.Cell(0) + "|" + some.Cell(1) + "|" + some.Cell(2), "1.5|合计|");
    TotalsRow all(rows, std::vector<int>{0, 1, 2});
    all.Add(rows);
    EXPECT_EQ(all.Cell(0) + "|" + all.Cell(1) + "|" + all.Cell(2), "1.5|0|0");
    TotalsRow none(rows, std::vector<int>{});
    none.Add(rows);
    EXPECT_FALSE(none.IsShown());
}

}  // namespace
}  // namespace kpTables::kpbook::output
