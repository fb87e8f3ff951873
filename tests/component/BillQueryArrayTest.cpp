// The array of filter values of an ad-hoc query: its shape, what does not fit into a text, and failures.
#include <gtest/gtest.h>

#include <functional>

#include "BillQueryFilters.h"
#include "support/Failure.h"

namespace kpTables::test {
namespace {

/// A query, whether it answered with nothing ("" and 0 are nothing, too), and whether "(无名称)" counts as not given.
struct Query {
    const char* name;
    std::function<bool(CTables&, const Filters&)> answersNothing;
    bool knowsPlaceholder;
};
const Query kQueries[] = {
    {"rsSql单据记录", [](CTables& t, const Filters& f) { return !Summary(t, f); }, false},
    {"rsSql查询记录", [](CTables& t, const Filters& f) { return !Lines(t, f); }, false},
    {"Get单据列表", [](CTables& t, const Filters& f) { return Numbers(t, f).empty(); }, true},
    {"Get单据统计", [](CTables& t, const Filters& f) { return Count(t, f) == 0; }, true},
};

Filters With(Values values) { return {.product = 17, .values = std::move(values)}; }

void ExpectNothingSent(const Query& query, Values values) {
    for (const bool isSQL : {false, true}) {
        const auto cnn = std::make_shared<ScriptedConnection>();
        cnn->Answer(Counted(5));
        CTables tables;
        tables.Cnn(cnn);
        tables.isSQL(isSQL);
        EXPECT_TRUE(query.answersNothing(tables, With(values))) << query.name;
        EXPECT_TRUE(cnn->Statements().empty()) << query.name;
    }
}

TEST(BillQueryArray, PositionsCountFromTheLowerBound) {
    for (const std::int32_t lower : {-3, 0, 1, 100}) {
        SCOPED_TRACE(lower);
        const Filters filters = With(At({{2, "A01"}, {4, "张三"}, {8, "R1"}, {9, "<>"}, {10, 30}, {11, "="}}, lower));
        const std::string lines = " And 经手人='张三' And 货位<>'R1' And 期限=30";
        const std::string where = "Where  Lst.单据编号>='A01' " + lines;
        EXPECT_NE(StatementOf(Summary, filters).find("pj.项目ID=Lst.pjID " + where + " GROUP BY"), std::string::npos);
        EXPECT_TRUE(StatementOf(Lines, filters).ends_with("Lst.ksID = B.KSID " + where));
        EXPECT_NE(StatementOf(Numbers, filters).find("Where True  And pdID=17" + lines + ") "), std::string::npos);
        EXPECT_TRUE(StatementOf(Count, filters).ends_with("Where True  And pdID=17" + lines + ") "));
    }
}

TEST(BillQueryArray, MoreThanTwelveValuesAreEnough) {
    const auto longer = std::make_shared<VariantArray>(std::vector<Variant>(13, ""));
    longer->items[12] = Variant::Null();
    EXPECT_EQ(StatementOf(Summary, With(longer)), StatementOf(Summary, With(At({}))));
    EXPECT_EQ(StatementOf(Lines, With(longer)), StatementOf(Lines, With(At({}))));
    EXPECT_EQ(StatementOf(Numbers, With(longer)), StatementOf(Numbers, With(At({}))));
    EXPECT_EQ(StatementOf(Count, With(longer)), StatementOf(Count, With(At({}))));
}

TEST(BillQueryArray, AShapeThatDoesNotFitSendsNothing) {
    const auto twoDimensions = At({});
    twoDimensions->bounds = {{0, 12}, {0, 1}};
    const auto rowsAndColumns = At({});
    rowsAndColumns->bounds = {{1, 3}, {1, 4}};
    const Values unfit[] = {
        nullptr,
        std::make_shared<VariantArray>(),
        std::make_shared<VariantArray>(std::vector<Variant>(11, "")),
        std::make_shared<VariantArray>(std::vector<Variant>(11, ""), 1),
        twoDimensions,
        rowsAndColumns,
    };
    for (const auto& values : unfit)
        for (const Query& query : kQueries) ExpectNothingSent(query, values);
}

TEST(BillQueryArray, WhatIsNoTextSendsNothing) {
    for (const Query& query : kQueries) {
        for (const std::size_t position : {4, 5, 6, 8, 10}) {
            SCOPED_TRACE(position);
            ExpectNothingSent(query, At({{position, Variant::Null()}}));
            ExpectNothingSent(query, At({{position, Variant(nullptr)}}));
            ExpectNothingSent(query, At({{position, At({})}}));
        }
        for (const std::size_t position : {7, 9, 11}) {
            SCOPED_TRACE(position);
            ExpectNothingSent(query, At({{position - 1, "1"}, {position, Variant::Null()}}));
        }
        // Two queries compose the range of bill numbers for nothing.
        for (const std::size_t position : {2, 3}) {
            SCOPED_TRACE(position);
            ExpectNothingSent(query, At({{position, Variant(nullptr)}}));
            ExpectNothingSent(query, At({{position, At({})}}));
        }
        for (const std::size_t position : {0, 1}) {
            SCOPED_TRACE(position);
            ExpectNothingSent(query, At({{position, "2004-02-30"}}));
            ExpectNothingSent(query, At({{position, Variant(nullptr)}}));
        }
    }
}

TEST(BillQueryArray, AnOperatorThatIsNotAskedForMayBeAnything) {
    const Filters filters = With(At({{7, Variant::Null()}, {9, Variant(nullptr)}, {11, Variant::Missing()}}));
    EXPECT_EQ(StatementOf(Summary, filters), StatementOf(Summary, With(At({}))));
    EXPECT_EQ(StatementOf(Lines, filters), StatementOf(Lines, With(At({}))));
    EXPECT_EQ(StatementOf(Numbers, filters), StatementOf(Numbers, With(At({}))));
    EXPECT_EQ(StatementOf(Count, filters), StatementOf(Count, With(At({}))));
}

TEST(BillQueryArray, NullDatesAndNumbersAreNotGiven) {
    const Variant null = Variant::Null();
    const Filters filters = With(At({{0, null}, {1, null}, {2, null}, {3, null}}));
    EXPECT_EQ(StatementOf(Summary, filters), StatementOf(Summary, With(At({}))));
    EXPECT_EQ(StatementOf(Lines, filters), StatementOf(Lines, With(At({}))));
    EXPECT_EQ(StatementOf(Numbers, filters), StatementOf(Numbers, With(At({}))));
    EXPECT_EQ(StatementOf(Count, filters), StatementOf(Count, With(At({}))));
}

TEST(BillQueryArray, ThePlaceholderCountsInTwoQueriesOnly) {
    for (const Query& query : kQueries) {
        const auto cnn = std::make_shared<ScriptedConnection>();
        cnn->Answer(Counted(1));
        CTables tables;
        tables.Cnn(cnn);
        EXPECT_FALSE(query.answersNothing(tables, With(At({{5, "(无名称)"}})))) << query.name;
        ASSERT_EQ(cnn->Statements().size(), 1u) << query.name;
        EXPECT_EQ(cnn->Statements()[0].text.find("交接人='(无名称)'") == std::string::npos, query.knowsPlaceholder)
            << query.name;
    }
}

TEST(BillQueries, PassErrorsOn) {
    for (const Query& query : kQueries) {
        SCOPED_TRACE(query.name);
        const auto cnn = std::make_shared<ScriptedConnection>();
        cnn->FailAt(1, "syntax error");
        CTables tables;
        EXPECT_EQ(FailureOf([&] { query.answersNothing(tables, With(At({}))); }), 91);
        tables.Cnn(cnn);
        try {
            query.answersNothing(tables, With(At({{6, "箱"}})));
            ADD_FAILURE() << "no error";
        } catch (const DatabaseError& error) {
            EXPECT_EQ(error.Number(), kRefused);
            EXPECT_EQ(error.Description(), "syntax error");
            EXPECT_NE(error.Statement().find(" 包装'箱'"), std::string::npos);
        }
    }
}

TEST(BillQueries, HandOutTheConnectionsRows) {
    for (const auto& query : {Summary, Lines}) {
        const auto cnn = std::make_shared<ScriptedConnection>();
        const auto rows = MakeRows({{"pdID", VarType::Long}}, {{1}, {2}});
        cnn->Answer(rows);
        CTables tables;
        tables.Cnn(cnn);
        EXPECT_EQ(query(tables, {}), rows);
        EXPECT_EQ(rows->CacheSize(), 200);
        EXPECT_EQ(rows->AbsolutePosition(), 1);
    }
}

}  // namespace
}  // namespace kpTables::test
