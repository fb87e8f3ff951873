// Numbers of values that may not be numeric.
#include "kpTables/Numbers.h"

#include <gtest/gtest.h>

#include "support/Failure.h"
#include "support/ScriptedRecordset.h"

namespace kpTables::test {
namespace {

Date Day(const char* iso) { return *Date::ParseIso(iso); }

TEST(ValueFunctions, NumericOrZero) {
    struct Case {
        Variant value;
        double number;
        std::int64_t scaled;
    };
    const Case cases[] = {
        {Variant::Null(), 0, 0},
        {Variant(), 0, 0},
        {"", 0, 0},
        {"abc", 0, 0},
        {"12.5", 12.5, 125000},
        {" 1,234.5 ", 1234.5, 12345000},
        {"1e3", 1000, 10000000},
        {7, 7, 70000},
        {std::int16_t{-3}, -3, -30000},
        {0.03125, 0.03125, 312},  // half to even
        {0.09375, 0.09375, 938},
        {Currency::FromScaled(12345), 1.2345, 12345},
        {true, -1, -10000},
        {Day("2004-03-07"), 0, 0},
        {Variant(nullptr), 0, 0},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(Shown(each.value));
        EXPECT_EQ(vDbl(each.value), each.number);
        EXPECT_EQ(vCur(each.value).Scaled(), each.scaled);
    }
}

TEST(ValueFunctions, CurrencyOverflows) {
    EXPECT_EQ(vDbl(1e15), 1e15);
    EXPECT_EQ(FailureOf([] { vCur(1e15); }), 6);
}

}  // namespace
}  // namespace kpTables::test
