#include "kpTables/Currency.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "Raised.h"

namespace kpTables {
namespace {

constexpr std::int64_t kMin = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kMax = std::numeric_limits<std::int64_t>::max();

Currency Scaled(std::int64_t value) { return Currency::FromScaled(value); }

TEST(Currency, TextForm) {
    struct Case {
        std::int64_t scaled;
        const char* text;
    };
    const Case cases[] = {
        {0, "0"},
        {1, "0.0001"},
        {-1, "-0.0001"},
        {10, "0.001"},
        {1000, "0.1"},
        {10000, "1"},
        {-10000, "-1"},
        {125000, "12.5"},
        {120500, "12.05"},
        {123456789, "12345.6789"},
        {100000001, "10000.0001"},
        {10000000000000000, "1000000000000"},
        {kMax, "922337203685477.5807"},
        {kMin, "-922337203685477.5808"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(Scaled(c.scaled).ToText(), c.text);
        EXPECT_EQ(Currency::FromDecimalText(c.text).Scaled(), c.scaled) << c.text;
    }
}

TEST(Currency, FromDecimalText) {
    struct Case {
        const char* text;
        std::int64_t scaled;
    };
    const Case cases[] = {
        {"+5", 50000},
        {"5.", 50000},
        {".5", 5000},
        {"-.5", -5000},
        {"0005.10", 51000},
        {"0.00005", 0},
        {"0.00015", 2},
        {"0.00025", 2},
        {"0.00035", 4},
        {"-0.00025", -2},
        {"-0.00015", -2},
        {"0.000250000000000000000000000000000000000000000000000000000000000000000000000001", 3},
        {"0.00024999999999999999999999999999999999999999999999999999999999999999999999999", 2},
        {"0.0000499999", 0},
        {"0.0000500001", 1},
        {"0.000000001", 0},
        {"0.00009", 1},
        {"1.00005", 10000},
        {"1.00015", 10002},
        {"922337203685477.58074999", kMax},
        {"-922337203685477.58085", kMin},
        {"-0", 0},
    };
    for (const Case& c : cases) EXPECT_EQ(Currency::FromDecimalText(c.text).Scaled(), c.scaled) << c.text;
    for (const char* text : {"922337203685477.58075", "922337203685477.5808", "-922337203685477.58086",
                             "1000000000000000", "99999999999999999999999999"}) {
        EXPECT_EQ(Raised([&] { Currency::FromDecimalText(text); }), 6) << text;
    }
    for (const char* text : {"", " 1", "1 ", "abc", "1,000", "1e3", "--1", "1.2.3", ".", "-", "$1", "&HFF", "1-"}) {
        EXPECT_EQ(Raised([&] { Currency::FromDecimalText(text); }), 13) << text;
    }
}

TEST(Currency, FromDoubleRoundsHalfToEven) {
    struct Case {
        double value;
        std::int64_t scaled;
    };
    const Case cases[] = {
        {0, 0},
        {-0.0, 0},
        {12.5, 125000},
        {0.1, 1000},
        {-0.1, -1000},
        {1.0 / 3, 3333},
        {2.0 / 3, 6667},
        {-2.0 / 3, -6667},
        // Exact ties: multiples of 1/32 of an odd count.
        {0.00048828125, 5},  // 4.8828125
        {0.03125, 312},      // 312.5
        {0.09375, 938},      // 937.5
        {0.15625, 1562},     // 1562.5
        {-0.03125, -312},
        {-0.09375, -938},
        {1.03125, 10312},
        {1.09375, 10938},
        // Not ties: the nearest Double lies to one side.
        {0.00005, 1},
        {1.00005, 10001},
        {0.00015, 1},
        {0.00025, 3},
        {2.00005, 20000},
        {-0.00005, -1},
        {-0.00015, -1},
        {450359962737.12345, 4503599627371235},
        {100000000000.12344, 1000000000001234},
        {922337203685477.5, 9223372036854775000},
        {-922337203685477.5, -9223372036854775000},
        {1e-300, 0},
    };
    for (const Case& c : cases) EXPECT_EQ(Currency::FromDouble(c.value).Scaled(), c.scaled) << c.value;
    for (double value : {922337203685477.5808, -922337203685477.5808, 1e15, -1e15, 1e300, std::nan(""),
                         std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()}) {
        EXPECT_EQ(Raised([&] { Currency::FromDouble(value); }), 6) << value;
    }
}

TEST(Currency, FromLong) {
    EXPECT_EQ(Currency::FromLong(-7).Scaled(), -70000);
    EXPECT_EQ(Currency::FromLong(922337203685477).Scaled(), 9223372036854770000);
    EXPECT_EQ(Currency::FromLong(-922337203685477).Scaled(), -9223372036854770000);
    EXPECT_EQ(Raised([] { Currency::FromLong(922337203685478); }), 6);
    EXPECT_EQ(Raised([] { Currency::FromLong(-922337203685478); }), 6);
}

TEST(Currency, ToDouble) {
    EXPECT_EQ(Scaled(125000).ToDouble(), 12.5);
    EXPECT_EQ(Scaled(1).ToDouble(), 0.0001);
    EXPECT_EQ(Scaled(-123456789).ToDouble(), -12345.6789);
}

TEST(Currency, SumsAreExactAndOverflowIsError6) {
    EXPECT_EQ((Scaled(1000) + Scaled(2000)).Scaled(), 3000);
    EXPECT_EQ((Scaled(1000) - Scaled(2000)).Scaled(), -1000);
    EXPECT_EQ((-Scaled(5)).Scaled(), -5);
    EXPECT_EQ((Scaled(kMax) + Scaled(kMin)).Scaled(), -1);
    EXPECT_EQ((Scaled(kMin) + Scaled(kMax)).Scaled(), -1);
    EXPECT_EQ((Scaled(kMax) - Scaled(kMax)).Scaled(), 0);
    EXPECT_EQ((Scaled(kMin) - Scaled(kMin)).Scaled(), 0);
    EXPECT_EQ((Scaled(-1) - Scaled(kMin)).Scaled(), kMax);
    EXPECT_EQ((Scaled(kMax - 1) + Scaled(1)).Scaled(), kMax);
    EXPECT_EQ((Scaled(kMin + 1) - Scaled(1)).Scaled(), kMin);
    EXPECT_EQ(Raised([] { Scaled(kMax) + Scaled(1); }), 6);
    EXPECT_EQ(Raised([] { Scaled(kMin) + Scaled(-1); }), 6);
    EXPECT_EQ(Raised([] { Scaled(kMin) - Scaled(1); }), 6);
    EXPECT_EQ(Raised([] { Scaled(kMax) - Scaled(-1); }), 6);
    EXPECT_EQ(Raised([] { Scaled(0) - Scaled(kMin); }), 6);
    EXPECT_EQ(Raised([] { -Scaled(kMin); }), 6);
}

TEST(Currency, ProductsRoundHalfToEven) {
    struct Case {
        const char* a;
        const char* b;
        const char* product;
    };
    const Case cases[] = {
        {"0", "5", "0"},
        {"12.5", "4", "50"},
        {"-12.5", "4", "-50"},
        {"-12.5", "-4", "50"},
        {"0.01", "0.01", "0.0001"},
        {"0.005", "0.01", "0"},         // 0.00005
        {"0.015", "0.01", "0.0002"},    // 0.00015
        {"0.025", "0.01", "0.0002"},    // 0.00025
        {"-0.015", "0.01", "-0.0002"},  // -0.00015
        {"-0.025", "0.01", "-0.0002"},  // -0.00025
        {"0.0001", "0.0001", "0"},
        {"0.5", "0.0001", "0"},
        {"0.5", "0.0003", "0.0002"},
        {"0.5001", "0.0001", "0.0001"},
        {"1.2345", "2.3456", "2.8956"},  // 2.89564320
        {"30370000.4999", "30370000.4999", "922336930363926.2499"},
        {"922337203685477.5807", "1", "922337203685477.5807"},
        {"-922337203685477.5808", "1", "-922337203685477.5808"},
        {"922337203685477.5807", "0.0001", "92233720368.5478"},
        {"9223372036854.7758", "100", "922337203685477.58"},
    };
    for (const Case& c : cases) {
        const Currency a = Currency::FromDecimalText(c.a), b = Currency::FromDecimalText(c.b);
        EXPECT_EQ((a * b).ToText(), c.product) << c.a << " * " << c.b;
        EXPECT_EQ((b * a).ToText(), c.product) << c.b << " * " << c.a;
    }
    EXPECT_EQ(Raised([] { Scaled(kMax) * Scaled(10001); }), 6);
    EXPECT_EQ(Raised([] { Scaled(kMin) * Scaled(-10000); }), 6);
    EXPECT_EQ(Raised([] { Scaled(kMin) * Scaled(kMin); }), 6);
    EXPECT_EQ(Raised([] { Scaled(kMax) * Scaled(kMax); }), 6);
    EXPECT_EQ(Raised([] { Currency::FromLong(30370006) * Currency::FromLong(30370006); }), 6);
}

TEST(Currency, Order) {
    EXPECT_LT(Scaled(-1), Scaled(0));
    EXPECT_GT(Scaled(kMax), Scaled(kMin));
    EXPECT_EQ(Scaled(7), Scaled(7));
}

TEST(Currency, TextReadsBackToTheSameValue) {
    std::uint64_t seed = 19970101;
    for (int i = 0; i < 50000; ++i) {
        seed = seed * 6364136223846793005u + 1442695040888963407u;
        const Currency value = Scaled(static_cast<std::int64_t>(seed) >> (i % 60));
        ASSERT_EQ(Currency::FromDecimalText(value.ToText()), value) << value.ToText();
    }
}

}  // namespace
}  // namespace kpTables
