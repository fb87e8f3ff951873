#include "functions/Spread.h"

#include <gtest/gtest.h>

namespace kpTables::functions {
namespace {

Spread Of(std::initializer_list<double> numbers) {
    Spread spread{};
    for (const double number : numbers) spread.Add(number);
    return spread;
}

TEST(Spread, Variances) {
    EXPECT_EQ(Of({2, 4, 9}).Variance(true), 13);
    EXPECT_EQ(Of({2, 4, 9, 9}).Variance(false), 9.5);
    EXPECT_EQ(Of({7}).Variance(false), 0);
}

TEST(Spread, LargeNumbersThatLieCloseTogetherKeepTheirDigits) {
    EXPECT_EQ(Of({1e9, 1e9 + 2, 1e9 + 4}).Variance(true), 4);
}

TEST(Spread, TooFewNumbers) {
    EXPECT_EQ(Of({}).Variance(false), std::nullopt);
    EXPECT_EQ(Of({7}).Variance(true), std::nullopt);
}

}  // namespace
}  // namespace kpTables::functions
