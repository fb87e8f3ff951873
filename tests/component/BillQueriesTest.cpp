// Ad-hoc queries on bills and their lines: results.
#include <gtest/gtest.h>

#include "BillQueryFilters.h"
#include "support/Failure.h"

namespace kpTables::test {
namespace {

TEST(BillNumbers, WithoutAProductReadsNothing) {
    const auto cnn = std::make_shared<ScriptedConnection>();
    CTables tables;
    EXPECT_EQ(Numbers(tables, {.values = nullptr}), "");
    tables.Cnn(cnn);
    EXPECT_EQ(Numbers(tables,
                      {.warehouse = 3, .values = At({{0, "2004-3-7"}, {2, "A01"}, {4, "张三"}, {6, "箱"}, {7, "<>"}})}),
              "");
    EXPECT_TRUE(cnn->Statements().empty());
}

TEST(BillNumbers, AreJoinedInTheOrderOfTheRows) {
    struct Case {
        Rows rows;
        const char* text;
    };
    const Case cases[] = {
        {{}, ""},
        {{{"B2"}}, "B2"},
        {{{"B2"}, {"A1"}, {"A1"}}, "B2;A1;A1"},
        {{{"A1"}, {Variant::Null()}, {"A3"}}, "A1;;A3"},
        {{{Variant::Null()}, {"A1"}}, "A1"},
        {{{" A1 "}, {"A;2"}}, " A1 ;A;2"},
    };
    for (const Case& each : cases) {
        const auto cnn = std::make_shared<ScriptedConnection>();
        cnn->Answer(MakeRows({{"单据编号", VarType::String}}, each.rows));
        CTables tables;
        tables.Cnn(cnn);
        EXPECT_EQ(Numbers(tables, {.product = 17}), each.text);
    }
}

TEST(BillStatistics, IsTheCountOfTheFirstRow) {
    struct Case {
        Variant count;
        std::int32_t result, error;
    };
    const Case cases[] = {{0, 0, 0}, {1, 1, 0}, {32767, 32767, 0}, {32768, 0, 6}, {Variant::Null(), 0, 94}};
    for (const Case& each : cases) {
        const auto cnn = std::make_shared<ScriptedConnection>();
        cnn->Answer(Counted(each.count));
        CTables tables;
        tables.Cnn(cnn);
        std::int32_t result = 0;
        EXPECT_EQ(FailureOf([&] { result = Count(tables, {}); }), each.error);
        EXPECT_EQ(result, each.result);
    }
}

}  // namespace
}  // namespace kpTables::test
