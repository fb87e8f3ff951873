#include "functions/FunctionTable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

#include "functions/Cases.h"

namespace kpTables::functions::test {
namespace {

TEST(FunctionTable, EveryRowIsWholeAndFound) {
    for (const Function& function : AllFunctions()) {
        EXPECT_EQ(FindFunction(function.name), &function) << function.name;
        EXPECT_NE(function.body, nullptr) << function.name;
        EXPECT_LE(0, function.minimumArguments) << function.name;
        EXPECT_LE(function.minimumArguments, function.maximumArguments) << function.name;
        EXPECT_LE(function.maximumArguments, kMostArguments) << function.name;
    }
    EXPECT_EQ(FindFunction("kp_none"), nullptr);
    EXPECT_EQ(FindFunction(""), nullptr);
    EXPECT_EQ(FindFunction("kp_zzz"), nullptr);
}

TEST(FunctionTable, NamesAreDistinct) {
    const auto functions = AllFunctions();
    const auto twice = std::ranges::adjacent_find(functions, {}, &Function::name);
    EXPECT_TRUE(twice == functions.end()) << twice->name;
}

TEST(FunctionTable, OnlyClocksAndChanceAreNotDeterministic) {
    std::set<std::string_view> names;
    for (const Function& function : AllFunctions()) {
        if (!function.deterministic) names.insert(function.name);
    }
    EXPECT_EQ(names, (std::set<std::string_view>{"kp_date", "kp_newid", "kp_now", "kp_rnd", "kp_time"}));
}

TEST(FunctionTable, EveryFunctionOfArgumentsHasACase) {
    std::set<std::string> called;
    for (const AnswerCase& each : AnswerCases()) {
        const std::string call = each.call;
        called.insert(call.substr(0, call.find('(')));
    }
    for (const FaultCase& each : FaultCases()) {
        const std::string call = each.call;
        called.insert(call.substr(0, call.find('(')));
    }
    for (const Function& function : AllFunctions()) {
        const bool asked = function.maximumArguments == 0 || called.contains(std::string(function.name));
        EXPECT_TRUE(asked) << function.name;
    }
}

}  // namespace
}  // namespace kpTables::functions::test
