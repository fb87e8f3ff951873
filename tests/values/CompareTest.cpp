#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <string>

#include "Raised.h"
#include "kpTables/Convert.h"

namespace kpTables {
namespace {

Variant Whole(int value) { return std::int32_t{value}; }
Variant Small(int value) { return static_cast<std::int16_t>(value); }
Variant Money(const char* text) { return Currency::FromDecimalText(text); }
Variant Day(double serial) { return Date::FromSerial(serial); }

/// "<", "=", ">", "Null", "?" for unordered, or "!number".
std::string Outcome(const Variant& left, const Variant& right) {
    std::string text;
    const int number = Raised([&] {
        const auto order = Compare(left, right);
        text = !order ? "Null" : *order < 0 ? "<" : *order > 0 ? ">" : *order == 0 ? "=" : "?";
    });
    return number == 0 ? text : std::string("!").append(std::to_string(number));
}

std::string Turned(const std::string& outcome) { return outcome == "<" ? ">" : outcome == ">" ? "<" : outcome; }

TEST(Compare, EveryPairOfTypes) {
    struct Case {
        Variant left;
        Variant right;
        const char* outcome;
    };
    const Case cases[] = {
        // Empty is 0 or "" by the other side.
        {Variant(), Variant(), "="},
        {Variant(), false, "="},
        {Variant(), true, ">"},
        {Variant(), Small(0), "="},
        {Variant(), Whole(1), "<"},
        {Variant(), -0.5, ">"},
        {Variant(), Money("0"), "="},
        {Variant(), Money("0.0001"), "<"},
        {Variant(), Day(0), "="},
        {Variant(), Day(1), "<"},
        {Variant(), "", "="},
        {Variant(), "0", "<"},
        {Variant(), "abc", "<"},
        // Booleans are -1 and 0.
        {true, true, "="},
        {true, false, "<"},
        {true, Small(-1), "="},
        {true, Whole(1), "<"},
        {false, 0.0, "="},
        {true, Money("-1"), "="},
        {true, Day(-1), "="},
        {true, "True", "="},
        {true, "false", "<"},
        {true, "-1", "="},
        {false, "0", "="},
        {false, "no", "!13"},
        // Numbers of all kinds by value.
        {Small(5), Small(5), "="},
        {Small(5), Whole(5), "="},
        {Small(5), 5.0, "="},
        {Small(5), Money("5"), "="},
        {Small(5), Day(5), "="},
        {Small(5), "5", "="},
        {Small(5), "10", "<"},
        {Whole(100000), Whole(99999), ">"},
        {Whole(5), 5.5, "<"},
        {Whole(5), Money("4.9999"), ">"},
        {Whole(5), Day(6), "<"},
        {Whole(5), " 5 ", "="},
        {Whole(5), "5.0", "="},
        {Whole(5), "(5)", ">"},
        {Whole(5), "abc", "!13"},
        {Whole(5), "", "!13"},
        {0.1, 0.1, "="},
        {0.5, Money("0.5"), "="},
        {12.34, Money("12.34"), "="},
        {0.5, Day(0.5), "="},
        {0.5, "0.5", "="},
        {0.5, "1e-1", ">"},
        {0.5, "x", "!13"},
        {std::nan(""), 1.0, "?"},
        {Money("922337203685477.5807"), Money("922337203685477.5806"), ">"},
        {Money("-3"), Money("-3"), "="},
        {Money("38053"), Day(38053), "="},
        {Money("1234.5"), "1,234.50", "="},
        {Money("1"), "yi", "!13"},
        {Day(38053), Day(38053), "="},
        {Day(38053), Day(38053.5), "<"},
        {Day(38053), "2004-3-7", "="},
        {Day(38053), "2004年3月8日", "<"},
        {Day(38053), "38052", ">"},
        {Day(38053), "2023-2-30", "!13"},
        // Texts by code point: capitals first, nothing ignored.
        {"", "", "="},
        {"abc", "abc", "="},
        {"abc", "ABC", ">"},
        {"Z", "a", "<"},
        {"a", "a ", "<"},
        {"10", "9", "<"},
        {"abc", "abcd", "<"},
        {"一", "丁", "<"},
        {"z", "一", "<"},
        {"\uFFE5", "\U00020000", "<"},
        // Null with anything is Null.
        {Variant::Null(), Variant::Null(), "Null"},
        {Variant::Null(), Variant(), "Null"},
        {Variant::Null(), true, "Null"},
        {Variant::Null(), Small(0), "Null"},
        {Variant::Null(), Whole(0), "Null"},
        {Variant::Null(), 0.0, "Null"},
        {Variant::Null(), Money("0"), "Null"},
        {Variant::Null(), Day(0), "Null"},
        {Variant::Null(), "", "Null"},
        // What has no order.
        {nullptr, Whole(1), "!13"},
        {nullptr, Variant::Null(), "!13"},
        {nullptr, nullptr, "!13"},
        {Variant::Missing(), "", "!13"},
        {Variant(std::make_shared<VariantArray>()), Variant(), "!13"},
    };
    for (const Case& c : cases) {
        const std::string where = "case " + std::to_string(&c - cases);
        EXPECT_EQ(Outcome(c.left, c.right), c.outcome) << where;
        EXPECT_EQ(Outcome(c.right, c.left), Turned(c.outcome)) << where << ", turned";
    }
}

TEST(Compare, EqualsText) {
    EXPECT_EQ(EqualsText(Variant(), ""), true);
    EXPECT_EQ(EqualsText("", ""), true);
    EXPECT_EQ(EqualsText("abc", "abc"), true);
    EXPECT_EQ(EqualsText("abc", "ABC"), false);
    EXPECT_EQ(EqualsText("a", "a "), false);
    EXPECT_EQ(EqualsText(Whole(0), ""), false);
    EXPECT_EQ(EqualsText(Whole(5), "5"), true);
    EXPECT_EQ(EqualsText(Whole(5), "5.0"), false);
    EXPECT_EQ(EqualsText(2.5, "2.5"), true);
    EXPECT_EQ(EqualsText(Money("12.50"), "12.5"), true);
    EXPECT_EQ(EqualsText(true, "True"), true);
    EXPECT_EQ(EqualsText(Day(38053), "2004-3-7"), true);
    EXPECT_EQ(EqualsText(Day(38053), ""), false);
    EXPECT_EQ(EqualsText(Variant::Null(), ""), std::nullopt);
    EXPECT_EQ(Raised([] { EqualsText(nullptr, ""); }), 13);
    EXPECT_EQ(Raised([] { EqualsText(Variant::Missing(), ""); }), 13);
}

TEST(Compare, EqualsNumber) {
    EXPECT_EQ(EqualsNumber(Variant(), 0), true);
    EXPECT_EQ(EqualsNumber(Whole(0), 0), true);
    EXPECT_EQ(EqualsNumber(Small(3), 3), true);
    EXPECT_EQ(EqualsNumber(2.5, 2), false);
    EXPECT_EQ(EqualsNumber(Money("2.5"), 2.5), true);
    EXPECT_EQ(EqualsNumber(true, -1), true);
    EXPECT_EQ(EqualsNumber(Day(38053), 38053), true);
    EXPECT_EQ(EqualsNumber("0", 0), true);
    EXPECT_EQ(EqualsNumber(" 1,000 ", 1000), true);
    EXPECT_EQ(EqualsNumber(Variant::Null(), 0), std::nullopt);
    EXPECT_EQ(Raised([] { EqualsNumber("", 0); }), 13);
    EXPECT_EQ(Raised([] { EqualsNumber("abc", 0); }), 13);
    EXPECT_EQ(Raised([] { EqualsNumber(nullptr, 0); }), 13);
}

}  // namespace
}  // namespace kpTables
