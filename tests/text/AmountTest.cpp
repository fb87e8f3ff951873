#include "text/Amount.h"

#include <gtest/gtest.h>

#include <limits>

namespace kpTables::text {
namespace {

constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t kLeast = std::numeric_limits<std::int64_t>::min();

TEST(Amount, OfDoublesHalfToEven) {
    EXPECT_EQ(AmountOf(12.5), 125000);
    EXPECT_EQ(AmountOf(0.03125), 312);
    EXPECT_EQ(AmountOf(0.09375), 938);
    EXPECT_EQ(AmountOf(-0.03125), -312);
    EXPECT_EQ(AmountOf(1e15), std::nullopt);
    EXPECT_EQ(AmountOf(-1e15), std::nullopt);
    EXPECT_EQ(AmountOf(std::numeric_limits<double>::quiet_NaN()), std::nullopt);
}

TEST(Amount, OfWholeNumbers) {
    EXPECT_EQ(AmountOfWhole(3), 30000);
    EXPECT_EQ(AmountOfWhole(kMost / kAmountScale), kMost / kAmountScale * kAmountScale);
    EXPECT_EQ(AmountOfWhole(kMost / kAmountScale + 1), std::nullopt);
    EXPECT_EQ(AmountOfWhole(kLeast / kAmountScale), kLeast / kAmountScale * kAmountScale);
    EXPECT_EQ(AmountOfWhole(kLeast / kAmountScale - 1), std::nullopt);
}

TEST(Amount, ProductsHalfToEven) {
    EXPECT_EQ(AmountProduct(12500, 20000), 25000);
    EXPECT_EQ(AmountProduct(1, 5000), 0);
    EXPECT_EQ(AmountProduct(3, 5000), 2);
    EXPECT_EQ(AmountProduct(-3, 5000), -2);
    // The largest factors whose product fits 64 bits, and the next ones.
    EXPECT_EQ(AmountProduct(4294967295, 4294967295), 1844674406511962);
    EXPECT_EQ(AmountProduct(4294967296, -4294967296), -1844674407370955);
    EXPECT_EQ(AmountProduct(kLeast, kAmountScale), kLeast);
    EXPECT_EQ(AmountProduct(kLeast, -kAmountScale), std::nullopt);
    EXPECT_EQ(AmountProduct(kMost, kAmountScale), kMost);
    EXPECT_EQ(AmountProduct(9000000000000000, 9000000000000000), std::nullopt);
}

TEST(Amount, TextForm) {
    EXPECT_EQ(AmountText(0), "0");
    EXPECT_EQ(AmountText(125000), "12.5");
    EXPECT_EQ(AmountText(-1), "-0.0001");
    EXPECT_EQ(AmountText(kLeast), "-922337203685477.5808");
}

}  // namespace
}  // namespace kpTables::text
