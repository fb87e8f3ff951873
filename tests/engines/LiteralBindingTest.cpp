// The value that a literal gives a parameter, by the parameter's binding.
#include "engines/common/LiteralBinding.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "kpTables/Convert.h"
#include "sql/SqlError.h"

namespace kpTables::engines {
namespace {

using sql::Binding;
using sql::LiteralKind;

/// Keeps the last value with the name of the call that set it.
struct LastValue {
    std::string text;

    void Keep(int parameter, const char* call, const std::string& value) {
        text = std::to_string(parameter) + " " + call + " " + value;
    }
    void BindNull(int parameter) { Keep(parameter, "null", ""); }
    void BindInteger(int parameter, std::int64_t value) { Keep(parameter, "integer", std::to_string(value)); }
    void BindReal(int parameter, double value) { Keep(parameter, "real", Text(Variant(value))); }
    void BindBoolean(int parameter, bool value) { Keep(parameter, "boolean", value ? "True" : "False"); }
    void BindCurrency(int parameter, Currency value) { Keep(parameter, "currency", value.ToText()); }
    void BindCurrencyBound(int parameter, double value) { Keep(parameter, "bound", Text(Variant(value))); }
    void BindDate(int parameter, Date value) { Keep(parameter, "date", value.ToIso()); }
    void BindText(int parameter, std::string_view value) { Keep(parameter, "text", std::string(value)); }
    void BindTextCopy(int parameter, std::string_view value) { Keep(parameter, "copy", std::string(value)); }
};

struct Case {
    Binding binding;
    LiteralKind kind;
    const char* literal;
    const char* expected;  ///< the call and its value, or the error's message
    bool negative = false;
};

void PrintTo(const Case& one, std::ostream* out) { *out << one.literal << " -> " << one.expected; }

class Literals : public testing::TestWithParam<Case> {};

TEST_P(Literals, BecomeTheParametersValue) {
    const Case& one = GetParam();
    const std::string text =
        one.kind == LiteralKind::Text ? "a='" + std::string(one.literal) + "'" : "a=" + std::string(one.literal);
    sql::Parameter parameter{0, one.binding};
    parameter.negative = one.negative;
    LastValue last;
    std::string answer;
    try {
        BindLiterals(last, {parameter}, {{one.kind, one.literal, 2}}, text);
        answer = last.text;
    } catch (const sql::SqlError& error) {
        answer = error.what();
    }
    EXPECT_EQ(answer, one.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Table, Literals,
    testing::Values(
        Case{Binding::Short, LiteralKind::Integer, "32767", "1 integer 32767"},
        Case{Binding::Short, LiteralKind::Integer, "32768",
             "Overflow at line 1, column 3: 32768 is too large for a whole number"},
        Case{Binding::Long, LiteralKind::Decimal, "2.5", "1 integer 2"},
        Case{Binding::Long, LiteralKind::Text, "7", "1 integer 7"},
        Case{Binding::Long, LiteralKind::Integer, "2147483648",
             "Overflow at line 1, column 3: 2147483648 is too large for a whole number"},
        Case{Binding::Long, LiteralKind::Text, "x", "Type mismatch at line 1, column 3: 'x' is not a whole number"},
        Case{Binding::Number, LiteralKind::Integer, "7", "1 integer 7"},
        Case{Binding::Number, LiteralKind::Decimal, "7.25", "1 real 7.25"},
        Case{Binding::Number, LiteralKind::Text, "1,000.5", "1 real 1000.5"},
        Case{Binding::Currency, LiteralKind::Decimal, "1.00005", "1 currency 1"},
        Case{Binding::Currency, LiteralKind::Decimal, "922337203685477.5808", "1 currency -922337203685477.5808", true},
        Case{Binding::Currency, LiteralKind::Decimal, "922337203685477.5808",
             "Overflow at line 1, column 3: 922337203685477.5808 is too large for an amount of money"},
        Case{Binding::CurrencyBound, LiteralKind::Decimal, "12.3456", "1 currency 12.3456"},
        Case{Binding::CurrencyBound, LiteralKind::Decimal, "12.34567", "1 bound 123456.7"},
        Case{Binding::CurrencyBound, LiteralKind::Decimal, "922337203685478", "1 bound 9.22337203685478E+18"},
        Case{Binding::Boolean, LiteralKind::Text, "True", "1 boolean True"},
        Case{Binding::Boolean, LiteralKind::Integer, "0", "1 boolean False"},
        Case{Binding::Boolean, LiteralKind::Text, "x", "Type mismatch at line 1, column 3: 'x' is not True or False"},
        Case{Binding::Date, LiteralKind::Date, "2004-3-7", "1 date 2004-03-07"},
        Case{Binding::Date, LiteralKind::Integer, "2", "1 date 1900-01-01"},
        Case{Binding::ServerDate, LiteralKind::Integer, "2", "1 date 1900-01-03"},
        Case{Binding::ServerDate, LiteralKind::Text, "20040307", "1 date 2004-03-07"},
        Case{Binding::Date, LiteralKind::Text, "soon", "Type mismatch at line 1, column 3: 'soon' is not a date"},
        Case{Binding::DateYear, LiteralKind::Date, "2004-3-7", "1 integer 2004"},
        Case{Binding::DateMonth, LiteralKind::Date, "2004-3-7", "1 integer 3"},
        Case{Binding::DateDay, LiteralKind::Date, "2004-3-7", "1 integer 7"},
        Case{Binding::DateDay, LiteralKind::Date, "2004-3-7 12:00:00", "1 real 7.5"},
        Case{Binding::Text, LiteralKind::Text, "007", "1 text 007"},
        Case{Binding::Text, LiteralKind::Decimal, "7.50", "1 copy 7.5"},
        Case{Binding::Text, LiteralKind::Date, "2004-03-07", "1 copy 2004-3-7"}));

TEST(LiteralsOfAText, AreTakenByTheirOrdinal) {
    LastValue last;
    const std::vector<sql::LiteralValue> literals = {{LiteralKind::Integer, "7"}, {LiteralKind::Integer, "8"}};
    BindLiterals(last, {{1, Binding::Long}, {0, Binding::Long}}, literals, "a=7 b=8");
    EXPECT_EQ(last.text, "2 integer 7");
}

TEST(Values, AreBoundByTheirType) {
    const std::pair<Variant, const char*> cases[] = {
        {Variant("甲"), "3 text 甲"},
        {Variant(2.5), "3 real 2.5"},
        {Variant(Currency::FromScaled(-1)), "3 currency -0.0001"},
        {Variant(std::int32_t{70000}), "3 integer 70000"},
        {Variant(std::int16_t{-7}), "3 integer -7"},
        {Variant(true), "3 boolean True"},
        {Variant(Date::FromYearMonthDay(2004, 3, 7)), "3 date 2004-03-07"},
        {Variant::Null(), "3 null "},
    };
    for (const auto& [value, expected] : cases) {
        LastValue last;
        BindValue(last, 3, value);
        EXPECT_EQ(last.text, expected);
    }
}

}  // namespace
}  // namespace kpTables::engines
