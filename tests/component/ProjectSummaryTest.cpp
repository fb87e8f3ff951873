// Outbound goods per project and month.
#include <gtest/gtest.h>

#include <utility>

#include "kpTables/CTables.h"
#include "support/Failure.h"
#include "support/ScriptedConnection.h"

namespace kpTables::test {
namespace {

TEST(ProjectSummary, TheMeasureIsWrittenBack) {
    const std::pair<const char*, const char*> cases[] = {
        {"金额", "金额"},  {"数量", "数量"},     {"", "数量"},    {"金", "数量"},
        {"金额 ", "数量"}, {"除税金额", "数量"}, {"O'X", "数量"},
    };
    for (const auto& [given, after] : cases) {
        for (const bool isSQL : {false, true}) {
            SCOPED_TRACE(given);
            CTables tables;
            tables.Cnn(std::make_shared<ScriptedConnection>());
            tables.isSQL(isSQL);
            std::string measure = given;
            tables.rs项目汇总表(measure);
            EXPECT_EQ(measure, after);
        }
    }
}

TEST(ProjectSummary, HandsOutTheConnectionsRowsWithTheirCacheSize) {
    for (const bool isSQL : {false, true}) {
        const auto cnn = std::make_shared<ScriptedConnection>();
        const auto rows = MakeRows({{"pjID", VarType::Long}}, {{1}, {2}});
        rows->SetCacheSize(37);
        cnn->Answer(rows);
        CTables tables;
        tables.Cnn(cnn);
        tables.isSQL(isSQL);
        EXPECT_EQ(tables.rs项目汇总表("金额"), rows);
        EXPECT_EQ(rows->CacheSize(), 37);
        EXPECT_EQ(rows->AbsolutePosition(), 1);
    }
}

TEST(ProjectSummary, AnErrorReachesTheCaller) {
    CTables tables;
    EXPECT_EQ(FailureOf([&] { tables.rs项目汇总表("金额"); }), 91);
    const auto cnn = std::make_shared<ScriptedConnection>();
    cnn->FailAt(1);
    tables.Cnn(cnn);
    std::string measure = "合计";
    EXPECT_EQ(FailureOf([&] { tables.rs项目汇总表(measure); }), kRefused);
    EXPECT_EQ(measure, "数量");
}

}  // namespace
}  // namespace kpTables::test
