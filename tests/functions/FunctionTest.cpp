// The functions called without an engine.
#include "functions/Function.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "functions/Cases.h"
#include "functions/Fault.h"
#include "functions/FunctionTable.h"

namespace kpTables::functions::test {
namespace {

/// NULL, a text between quotes, or a number, as a statement writes it.
Value ArgumentOf(std::string_view text) {
    if (text == "NULL") return {};
    if (text.starts_with('\'')) return Value(text.substr(1, text.size() - 2));
    const std::string number(text);
    if (text.find_first_of(".e") == text.npos) return Value(std::int64_t{std::stoll(number)});
    return Value(std::strtod(number.c_str(), nullptr));
}

std::vector<Value> ArgumentsOf(std::string_view text) {
    std::vector<Value> values;
    while (!text.empty()) {
        const std::size_t quoted = text.starts_with('\'') ? text.find('\'', 1) : 0;
        const std::size_t end = std::min(text.find(',', quoted), text.size());
        values.push_back(ArgumentOf(text.substr(0, end)));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return values;
}

/// Fifteen digits, and a point.
std::string TextOf(double number) {
    char text[40];
    std::snprintf(text, sizeof text, "%.15g", number);
    std::string digits = text;
    const auto exponent = std::min(digits.find('e'), digits.size());
    if (digits.find('.') == digits.npos) digits.insert(exponent, ".0");
    return digits;
}

/// The answer's text; nothing for Null.
std::optional<std::string> AnswerTo(std::string_view call) {
    const auto bracket = call.find('(');
    const Function* function = FindFunction(call.substr(0, bracket));
    EXPECT_NE(function, nullptr) << call;
    const auto values = ArgumentsOf(call.substr(bracket + 1, call.size() - bracket - 2));
    const auto count = static_cast<int>(values.size());
    EXPECT_TRUE(count >= function->minimumArguments && count <= function->maximumArguments) << call;
    const Arguments arguments(values);
    Answer answer;
    Call(*function, arguments, answer);
    const Value& value = answer.Get();
    switch (value.Type()) {
        case Value::Kind::Text:
            return std::string(value.Text());
        case Value::Kind::Whole:
            return std::to_string(value.Whole());
        case Value::Kind::Real:
            return TextOf(value.Real());
        case Value::Kind::Null:
            break;
    }
    return std::nullopt;
}

class FunctionAnswers : public testing::TestWithParam<AnswerCase> {};

TEST_P(FunctionAnswers, AsListed) {
    const auto [call, expected] = GetParam();
    const auto answer = AnswerTo(call);
    ASSERT_EQ(answer.has_value(), expected != nullptr);
    if (expected) {
        EXPECT_EQ(*answer, expected);
    }
}

INSTANTIATE_TEST_SUITE_P(Bodies, FunctionAnswers, testing::ValuesIn(AnswerCases()));

class FunctionFails : public testing::TestWithParam<FaultCase> {};

TEST_P(FunctionFails, WithNumberAndText) {
    const auto [call, number, text] = GetParam();
    try {
        const auto answer = AnswerTo(call);
        FAIL() << "answered " << answer.value_or("Null");
    } catch (const Fault& fault) {
        EXPECT_EQ(fault.Number(), number) << fault.what();
        EXPECT_NE(std::string_view(fault.what()).find(text), std::string_view::npos) << fault.what();
    }
}

INSTANTIATE_TEST_SUITE_P(Bodies, FunctionFails, testing::ValuesIn(FaultCases()));

TEST(Arguments, NumbersHaveTheirTextForms) {
    const Value values[] = {Value(std::int64_t{-12}), Value(66.0 + 2.0 / 3), Value(2.0), Value(std::string_view("a")),
                            Value()};
    const Arguments arguments(values);
    EXPECT_EQ(arguments.Count(), 5);
    EXPECT_EQ(arguments.Text(0), "-12");
    EXPECT_EQ(arguments.Text(1), "66.6666666666667");
    EXPECT_EQ(arguments.Text(2), "2");
    EXPECT_EQ(arguments.Text(3), "a");
    EXPECT_EQ(arguments.Text(4), "");
    EXPECT_EQ(arguments.Text(0), "-12");
    EXPECT_TRUE(arguments.AnyNull());
    EXPECT_EQ(arguments.Number(4), 0);
}

TEST(Arguments, AmountsThatRanOverStayWithinTheRange) {
    const Value values[] = {Value(1e300), Value(-1e300), Value(12.9), Value(std::string_view("5"))};
    const Arguments arguments(values);
    EXPECT_EQ(arguments.Amount(0), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(arguments.Amount(1), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(arguments.Amount(2), 12);
    EXPECT_EQ(arguments.Amount(3), 5);
}

TEST(Functions, TheCurrentDateAndTime) {
    const std::string today = AnswerTo("kp_date()").value();
    ASSERT_EQ(today.size(), 10u);
    EXPECT_EQ(today.substr(0, 2), "20");
    EXPECT_GE(AnswerTo("kp_now()").value(), today);
    EXPECT_EQ(AnswerTo("kp_time()").value().substr(0, 10), "1899-12-30");
}

TEST(Functions, PadWithBlanks) {
    EXPECT_EQ(AnswerTo("kp_char(7,2)"), "7 ");
    EXPECT_EQ(AnswerTo("kp_space(3)"), "   ");
}

}  // namespace
}  // namespace kpTables::functions::test
