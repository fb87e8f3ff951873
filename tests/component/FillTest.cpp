// Texts with named gaps.
#include "kpTables/Fill.h"

#include <gtest/gtest.h>

#include "kpTables/Date.h"

namespace kpTables::test {
namespace {

TEST(Fill, PutsEachValueIntoItsGaps) {
    EXPECT_EQ(Fill("Select * From {table} Where {key}={id}", "id"_gap(7), "table"_gap("厂商资料"), "key"_gap("ksID")),
              "Select * From 厂商资料 Where ksID=7");
    EXPECT_EQ(Fill("{kind}目录,{kind}记录", "kind"_gap("入库")), "入库目录,入库记录");
    EXPECT_EQ(Fill("{a}{b}", "a"_gap(""), "b"_gap("")), "");
    EXPECT_EQ(Fill("a text without gaps"), "a text without gaps");
}

TEST(Fill, TakesVisualBasicsTextForms) {
    const auto shown = [](const auto& value) { return Fill("<{value}>", "value"_gap(value)); };
    EXPECT_EQ(shown(std::int16_t{-3}), "<-3>");
    EXPECT_EQ(shown(-2147483647 - 1), "<-2147483648>");
    EXPECT_EQ(shown(66.66666666666667), "<66.6666666666667>");
    EXPECT_EQ(shown(Currency::FromScaled(12345)), "<1.2345>");
    EXPECT_EQ(shown(*Date::ParseIso("2004-03-07")), "<2004-3-7>");
    EXPECT_EQ(shown(true), "<True>");
    EXPECT_EQ(shown(Variant::Null()), "<>");
    EXPECT_EQ(shown(Variant("O'X")), "<O'X>");
    EXPECT_EQ(shown(InOut<std::string>("text")), "<text>");
    EXPECT_EQ(shown(InOut<Variant>(2.5)), "<2.5>");
}

TEST(Fill, LeavesBracesInValuesAlone) { EXPECT_EQ(Fill("{a}{b}", "a"_gap("{b}"), "b"_gap("}{")), "{b}}{"); }

TEST(Fill, KeepsATemporaryText) {
    const auto gap = "text"_gap(std::string(100, 'x'));
    EXPECT_EQ(Fill("{text}", gap), std::string(100, 'x'));
}

/// Why a text with these names is refused; "" when it is not.
std::string Fault(std::string_view text, const std::vector<std::string_view>& names) {
    try {
        static_cast<void>(CutTemplate(text, names));
        return "";
    } catch (const std::invalid_argument& fault) {
        return fault.what();
    }
}

// The same function refuses a text when it is compiled.
TEST(Fill, RefusesATextWhoseGapsAreNotTheNames) {
    EXPECT_EQ(Fault("a{b}c{d}", {"d", "b"}), "");
    EXPECT_EQ(Fault("a{b}c{d}", {"b"}), "a gap without a value");
    EXPECT_EQ(Fault("a{b }", {"b"}), "a gap without a value");
    EXPECT_EQ(Fault("a{}", {"b"}), "a gap without a value");
    EXPECT_EQ(Fault("a{b}", {"b", "d"}), "a value without a gap");
    EXPECT_EQ(Fault("a{b", {"b"}), "a brace without its other half");
    EXPECT_EQ(Fault("a b}", {"b"}), "a brace without its other half");
    EXPECT_EQ(Fault("{b}{b}{b}{b}{b}{b}{b}", {"b"}), "");
    EXPECT_EQ(Fault("{b}{b}{b}{b}{b}{b}{b}{b}", {"b"}), "too many gaps");
    EXPECT_EQ(Fault(std::string(65536, 'x'), {}), "the text is too long");
}

}  // namespace
}  // namespace kpTables::test
