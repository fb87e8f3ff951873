#include "kpTables/bookkeeping/LineAmounts.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <optional>
#include <random>
#include <string>

#include "kpTables/Convert.h"
#include "support/Failure.h"

namespace kpTables::bookkeeping {
namespace {

Currency Money(const char* text) { return Currency::FromDecimalText(text); }

/// "net price|gross price|net|tax|gross"
std::string Shown(const LineAmounts& line) {
    std::string text;
    for (const Currency value : {line.netPrice, line.grossPrice, line.net, line.tax, line.gross})
        text += (text.empty() ? "" : "|") + value.ToText();
    return text;
}

GivenAmounts NetPrice(const char* price) {
    GivenAmounts given;
    given.netPrice = Money(price);
    return given;
}
GivenAmounts GrossPrice(const char* price) {
    GivenAmounts given;
    given.grossPrice = Money(price);
    return given;
}

TEST(LineAmounts, FromANetPriceTheTaxIsRounded) {
    EXPECT_EQ(Shown(WorkOutAmounts(NetPrice("400"), 10, 13)), "400|452|4000|520|4520");
    // 401.5555 x 2.5 = 1003.88875, a tie that goes to the even ten-thousandth; 6 % of 1003.8888 = 60.233328.
    EXPECT_EQ(Shown(WorkOutAmounts(NetPrice("401.5555"), 2.5, 6)), "401.5555|425.6488|1003.8888|60.2333|1064.1221");
    EXPECT_EQ(Shown(WorkOutAmounts(NetPrice("3"), 7, 0)), "3|3|21|0|21");
    EXPECT_EQ(Shown(WorkOutAmounts(NetPrice("0"), 7, 13)), "0|0|0|0|0");
}

TEST(LineAmounts, FromAGrossPriceTheNetAmountIsRounded) {
    // 30 / 1.13 = 26.548672..., 10 / 1.13 = 8.849557...
    EXPECT_EQ(Shown(WorkOutAmounts(GrossPrice("10"), 3, 13)), "8.8496|10|26.5487|3.4513|30");
    // The prices do not suffer from the rounding of a small amount: 0.01 / 1.13 = 0.0088.
    EXPECT_EQ(Shown(WorkOutAmounts(GrossPrice("10"), 0.001, 13)), "8.8496|10|0.0088|0.0012|0.01");
}

TEST(LineAmounts, AnyTwoAmountsGiveTheThird) {
    GivenAmounts given;
    given.net = Money("100");
    given.tax = Money("13.01");
    EXPECT_EQ(Shown(WorkOutAmounts(given, 3, 6)), "33.3333|37.67|100|13.01|113.01");
    given = {};
    given.net = Money("100");
    given.gross = Money("113.01");
    EXPECT_EQ(Shown(WorkOutAmounts(given, 3, 6)), "33.3333|37.67|100|13.01|113.01");
    given = {};
    given.tax = Money("13.01");
    given.gross = Money("113.01");
    EXPECT_EQ(Shown(WorkOutAmounts(given, 3, 6)), "33.3333|37.67|100|13.01|113.01");
    given.net = Money("100");
    EXPECT_EQ(Shown(WorkOutAmounts(given, 3, 6)), "33.3333|37.67|100|13.01|113.01");
    given = NetPrice("50");
    given.tax = Money("13");
    EXPECT_EQ(Shown(WorkOutAmounts(given, 2, 6)), "50|56.5|100|13|113");
}

TEST(LineAmounts, OneAmountAndTheRateGiveTheOthers) {
    GivenAmounts given;
    given.net = Money("100");
    EXPECT_EQ(Shown(WorkOutAmounts(given, 8, 13)), "12.5|14.125|100|13|113");
    given = {};
    given.gross = Money("100");
    // 100 / 1.13 = 88.495575..., and 88.4956 / 8 = 11.06195, a tie.
    EXPECT_EQ(Shown(WorkOutAmounts(given, 8, 13)), "11.062|12.5|88.4956|11.5044|100");
}

TEST(LineAmounts, AnAmountStandsWhereThePriceWasRounded) {
    GivenAmounts given = NetPrice("3.33");
    given.net = Money("10");
    EXPECT_EQ(Shown(WorkOutAmounts(given, 3, 0)), "3.33|3.33|10|0|10");
    given.net = Money("10.05");
    EXPECT_EQ(test::FailureOf([&] { WorkOutAmounts(given, 3, 0); }), 5);
}

TEST(LineAmounts, ReturnsHaveNegativeAmountsAndPositivePrices) {
    EXPECT_EQ(Shown(WorkOutAmounts(NetPrice("400"), -2, 13)), "400|452|-800|-104|-904");
    GivenAmounts given;
    given.net = Money("-100");
    EXPECT_EQ(Shown(WorkOutAmounts(given, -8, 13)), "12.5|14.125|-100|-13|-113");
}

TEST(LineAmounts, WhatDoesNotFitIsRefused) {
    GivenAmounts given;
    EXPECT_EQ(test::FailureOf([&] { WorkOutAmounts(given, 1, 13); }), 5);
    given.tax = Money("13");
    EXPECT_EQ(test::FailureOf([&] { WorkOutAmounts(given, 1, 13); }), 5);
    given.net = Money("100");
    given.gross = Money("112.9999");
    EXPECT_EQ(test::FailureOf([&] { WorkOutAmounts(given, 1, 13); }), 5);
    given = {};
    given.net = Money("-100");
    EXPECT_EQ(test::FailureOf([&] { WorkOutAmounts(given, 1, 13); }), 5);
    EXPECT_EQ(test::FailureOf([&] { WorkOutAmounts(NetPrice("900000000000000"), 9000, 13); }), 6);
    EXPECT_EQ(test::FailureOf([&] { WorkOutAmounts(NetPrice("1"), 1e-20, 13); }), 5);
}

/// price x quantity and amount / quantity, in ten-thousandths, where they need more than 64 bits on the way. The
/// figures are Python's, in whole numbers and fractions without a limit; nothing stands for error 6.
TEST(LineAmounts, FiguresAtTheEdgesOfTheirRangeAreExact) {
    constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
    constexpr std::int64_t kLeast = std::numeric_limits<std::int64_t>::min();
    using Figure = std::optional<std::int64_t>;
    const struct {
        std::int64_t amount;
        double quantity;
        Figure product, quotient;
    } cases[] = {
        {kMost, 1, kMost, kMost},
        {kLeast, 1, kLeast, kLeast},
        {kMost, -1, -kMost, -kMost},
        {kLeast, -1, {}, {}},
        {kMost, 0.999999999999999, 9223372036854766584, {}},
        {kLeast, 0.999999999999999, -9223372036854766585, {}},
        {1, 999999999999999, 999999999999999, 0},
        {9223372037, 999999999999999, {}, 0},
        {-9223372036, 999999999.999999, -9223372035999990777, -9},
        {kMost, 0.000000000000001, 9223, {}},
        {kLeast, -0.000000000000001, 9223, {}},
        {4611686018427387904, 2, {}, 2305843009213693952},
        {4611686018427387904, -2, kLeast, -2305843009213693952},
        {4611686018427387903, 2, 9223372036854775806, 2305843009213693952},
        {9223372036854775806, 0.5, 4611686018427387903, {}},
        {kMost, 0.5, 4611686018427387904, {}},
        {-kMost, 0.5, -4611686018427387904, {}},
        {5, 0.1, 0, 50},
        {15, 0.1, 2, 150},
        {-25, 0.1, -2, -250},
        {123456789012345678, 74.7009999999999, 9222345596011222147, 1652679201246916},
        {987654321987654321, 9.33851234567891, 9223222079144843210, 105761419531094686},
        {4294967297, 4294967297, {}, 1},
        {4294967296, 2147483647.99999, 9223372036854732858, 2},
    };
    const auto figureOf = [](const std::function<Currency()>& work) {
        Figure figure;
        const auto failure = test::FailureOf([&] { figure = work().Scaled(); });
        EXPECT_EQ(failure, figure ? 0 : 6);
        return figure;
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(std::to_string(each.amount) + " and " + Text(each.quantity));
        const Currency amount = Currency::FromScaled(each.amount);
        EXPECT_EQ(figureOf([&] { return AmountOf(amount, each.quantity); }), each.product);
        EXPECT_EQ(figureOf([&] { return PriceOf(amount, each.quantity); }), each.quotient);
    }
}

TEST(LineAmounts, TaxesAtTheEdgesOfTheirRangeAreExact) {
    constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
    const struct {
        double rate;
        std::int64_t net, tax;
    } cases[] = {
        {13, 8162276138809536112, 1061095898045239695},
        {12.3456789012345, 8209814678287039703, 1013557358567736104},
        {0.000000000000001, 9223372036854775715, 92},
        {999999999999999, 922337, 9223372036853853470},
    };
    for (const auto& each : cases) {
        GivenAmounts given;
        given.gross = Currency::FromScaled(kMost);
        const LineAmounts line = WorkOutAmounts(given, 1, each.rate);
        EXPECT_EQ(line.net.Scaled(), each.net) << each.rate;
        EXPECT_EQ(line.tax.Scaled(), each.tax) << each.rate;
    }
    GivenAmounts given;
    given.net = Currency::FromScaled(8000000000000000000);
    EXPECT_EQ(WorkOutAmounts(given, 1, 12.3456789012345).tax.Scaled(), 987654312098760000);
    given.net = Currency::FromScaled(8162276138809536989);
    EXPECT_EQ(test::FailureOf([&] { WorkOutAmounts(given, 1, 13); }), 6);
}

/// On random lines: the parts add up, and what was rounded is within half a ten-thousandth of the exact figure.
TEST(LineAmounts, PartsAddUpOnRandomLines) {
    std::mt19937 random(7);
    const auto between = [&](std::int64_t low, std::int64_t high) {
        return low + static_cast<std::int64_t>(random() % static_cast<std::uint64_t>(high - low + 1));
    };
    for (int i = 0; i < 20'000; ++i) {
        const std::int64_t price = between(1, 50'000'000);
        const std::int64_t thousandths = between(1, 2'000'000) * (i % 7 == 0 ? -1 : 1);
        const std::int64_t rate = between(0, 25);
        const bool isGross = i % 2 == 0;
        GivenAmounts given;
        (isGross ? given.grossPrice : given.netPrice) = Currency::FromScaled(price);
        const LineAmounts line =
            WorkOutAmounts(given, static_cast<double>(thousandths) / 1000, static_cast<double>(rate));
        ASSERT_EQ(line.net + line.tax, line.gross);
        // Ten-thousandths x 1000.
        const std::int64_t known = (isGross ? line.gross : line.net).Scaled() * 1000;
        ASSERT_LE(std::abs(known - price * thousandths), 500);
        // Ten-thousandths x 100, or x (100 + rate).
        const std::int64_t off = isGross ? line.net.Scaled() * (100 + rate) - line.gross.Scaled() * 100
                                         : line.tax.Scaled() * 100 - line.net.Scaled() * rate;
        ASSERT_LE(2 * std::abs(off), isGross ? 100 + rate : 100);
    }
}

}  // namespace
}  // namespace kpTables::bookkeeping
