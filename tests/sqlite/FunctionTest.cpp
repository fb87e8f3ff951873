// The functions that translated texts call, through SQLite.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <set>
#include <string>

#include "engines/sqlite/Collation.h"
#include "engines/sqlite/Database.h"
#include "engines/sqlite/Functions.h"
#include "functions/Cases.h"
#include "functions/FunctionTable.h"
#include "kpTables/Error.h"
#include "sql/print/sqlite/FunctionList.h"

namespace kpTables::engines::sqlite {
namespace {

using functions::FaultNumber;
using functions::test::AnswerCase;
using functions::test::FaultCase;

Database OpenWithFunctions() {
    Database database(":memory:", SQLITE_OPEN_READWRITE);
    RegisterCollation(database.Get());
    RegisterFunctions(database.Get());
    return database;
}

TEST(Functions, EveryListedOneIsRegisteredWithItsArity) {
    const Database database = OpenWithFunctions();
    std::set<std::pair<std::string, int>> registered;
    PreparedStatement list =
        database.Prepare("SELECT name, narg FROM pragma_function_list WHERE name LIKE 'kp\\_%' ESCAPE '\\'");
    while (list.Step()) registered.emplace(std::string(list.Text(0)), static_cast<int>(list.Integer(1)));
    std::size_t expected = 0;
    for (const sql::print::sqlite::EngineFunction& function : sql::print::sqlite::EngineFunctions()) {
        for (int count = function.minimumArguments; count <= function.maximumArguments; ++count, ++expected) {
            EXPECT_TRUE(registered.contains({std::string(function.name), count})) << function.name << '/' << count;
        }
    }
    EXPECT_EQ(registered.size(), expected);
}

TEST(Functions, TheTableOfBodiesAndTheListAgree) {
    for (const sql::print::sqlite::EngineFunction& listed : sql::print::sqlite::EngineFunctions()) {
        if (listed.aggregate) continue;
        const functions::Function* function = functions::FindFunction(listed.name);
        ASSERT_NE(function, nullptr) << listed.name;
        EXPECT_EQ(function->minimumArguments, listed.minimumArguments) << listed.name;
        EXPECT_EQ(function->maximumArguments, listed.maximumArguments) << listed.name;
        EXPECT_EQ(function->deterministic, listed.deterministic) << listed.name;
    }
}

TEST(Functions, AMissingBodyIsRefusedByName) {
    const sql::print::sqlite::EngineFunction listed[] = {
        {"kp_left", 2, 2, true, false, ""},
        {"kp_first", 1, 1, true, true, ""},
        {"kp_none", 1, 1, true, false, ""},
    };
    EXPECT_NO_THROW(RequireBodies({listed, 2}));
    try {
        RequireBodies(listed);
        FAIL() << "was accepted";
    } catch (const DatabaseError& error) {
        EXPECT_EQ(error.Description(), "The engine has no body for the function kp_none");
    }
    const sql::print::sqlite::EngineFunction wrong[] = {{"kp_left", 2, 3, true, false, ""},
                                                        {"kp_left", 1, 2, true, false, ""},
                                                        {"kp_left", 1, 1, true, true, ""},
                                                        {"kp_first", 1, 1, true, false, ""}};
    for (const sql::print::sqlite::EngineFunction& each : wrong)
        EXPECT_THROW(RequireBodies({&each, 1}), DatabaseError) << each.name;
}

/// What needs SQLite: its operators and its own functions.
constexpr AnswerCase kExpressions[] = {
    {"kp_char(7,2)||'|'", "7 |"},
    {"kp_space(3)||'|'", "   |"},
    {"length(kp_date())", "10"},
    {"kp_now() >= kp_date()", "1"},
    {"substr(kp_time(),1,10)", "1899-12-30"},
    {"kp_text_double(200.0/3)", "66.6666666666667"},
};

constexpr AnswerCase kAggregates[] = {
    {"kp_first(column1) FROM (VALUES (7),(8),(9))", "7"},
    {"kp_last(column1) FROM (VALUES (7),(8),(9))", "9"},
    {"kp_first(column1) FROM (VALUES (NULL),(8))", nullptr},
    {"kp_last(column1) FROM (VALUES ('a'),('张'))", "张"},
    {"kp_var(column1) FROM (VALUES (2),(4),(NULL),(9))", "13.0"},
    {"kp_varp(column1) FROM (VALUES (2),(4),(9),(9))", "9.5"},
    {"kp_stdev(column1) FROM (VALUES (1e9),(1e9+2),(1e9+4))", "2.0"},
    {"kp_stdevp(column1) FROM (VALUES (7))", "0.0"},
    {"kp_stdev(column1) FROM (VALUES (7),(NULL))", nullptr},
    {"kp_varp(column1) FROM (VALUES (1)) WHERE 0", nullptr},
    {"kp_first(column1) FROM (VALUES (1)) WHERE 0", nullptr},
};

constexpr FaultCase kFailures[] = {
    {"kp_cur_fit(9223372036854775807+1)", FaultNumber::Overflow, "Overflow"},
    {"kp_cur_int(-9223372036854775807-1)", FaultNumber::Overflow, "Overflow"},
};

class FunctionAnswers : public testing::TestWithParam<AnswerCase> {};

TEST_P(FunctionAnswers, AsListed) {
    const auto [expression, expected] = GetParam();
    const Database database = OpenWithFunctions();
    PreparedStatement statement = database.Prepare(std::string("SELECT ") + expression);
    ASSERT_TRUE(statement.Step());
    if (expected) {
        EXPECT_EQ(statement.Text(0), expected);
    } else {
        EXPECT_TRUE(statement.IsNull(0)) << statement.Text(0);
    }
}

INSTANTIATE_TEST_SUITE_P(Bodies, FunctionAnswers, testing::ValuesIn(functions::test::AnswerCases()));
INSTANTIATE_TEST_SUITE_P(Expressions, FunctionAnswers, testing::ValuesIn(kExpressions));
INSTANTIATE_TEST_SUITE_P(Aggregates, FunctionAnswers, testing::ValuesIn(kAggregates));

DatabaseErrorNumber NumberOf(FaultNumber number) {
    switch (number) {
        case FaultNumber::TypeMismatch:
            return DatabaseErrorNumber::TypeMismatch;
        case FaultNumber::Overflow:
            return DatabaseErrorNumber::Overflow;
        default:
            return DatabaseErrorNumber::Failure;
    }
}

class FunctionFails : public testing::TestWithParam<FaultCase> {};

TEST_P(FunctionFails, WithNumberAndText) {
    const auto [expression, number, text] = GetParam();
    const Database database = OpenWithFunctions();
    PreparedStatement statement = database.Prepare(std::string("SELECT ") + expression);
    try {
        statement.Step("the host's text");
        FAIL() << "answered " << statement.Text(0);
    } catch (const DatabaseError& error) {
        EXPECT_EQ(error.Number(), static_cast<std::int32_t>(NumberOf(number))) << error.what();
        EXPECT_NE(error.Description().find(text), std::string::npos) << error.what();
        EXPECT_EQ(error.Statement(), "the host's text");
    }
}

INSTANTIATE_TEST_SUITE_P(Bodies, FunctionFails, testing::ValuesIn(functions::test::FaultCases()));
INSTANTIATE_TEST_SUITE_P(Expressions, FunctionFails, testing::ValuesIn(kFailures));

}  // namespace
}  // namespace kpTables::engines::sqlite
