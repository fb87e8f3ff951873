// The balance table: results and failures.
#include <gtest/gtest.h>

#include "HandsOut.h"
#include "support/Failure.h"

namespace kpTables::test {
namespace {

TEST(BalanceReport, MonthZeroBecomesTheFirstMonth) {
    struct Case {
        const char* name;
        Rows firstMonth;
        std::int16_t month;
    };
    const Case cases[] = {
        {"month 0 is the first month, 3", {{std::int16_t{3}}}, 3},
        {"month 0 is the first month, Null", {{Variant::Null()}}, 1},
    };
    for (const Case& each : cases) {
        for (const bool isSQL : {false, true}) {
            SCOPED_TRACE(each.name);
            const auto cnn = std::make_shared<ScriptedConnection>();
            const auto rows = MakeRows({{"pdID", VarType::Long}}, {{1}});
            cnn->Answer(MakeRows({{"月份", VarType::Integer}}, each.firstMonth)).Answer(rows);
            CTables tables;
            tables.Cnn(cnn);
            tables.isSQL(isSQL);
            std::int16_t month = 0;
            EXPECT_EQ(tables.rs余额记录(0, month), rows);
            EXPECT_EQ(rows->CacheSize(), 200);
            EXPECT_EQ(month, each.month);
            EXPECT_EQ(cnn->Statements(), corpus::Expected(corpus::Find("rs余额记录(0, 0)", each.name), isSQL));
        }
    }
}

TEST(BalanceReport, NothingToReport) {
    const auto unknownCount = MakeRows({{"月份", VarType::Integer}}, {{std::int16_t{3}}});
    unknownCount->ReportCount(-1);
    const RecordsetPtr firstMonths[] = {MakeRows({{"月份", VarType::Integer}}, {}), unknownCount};
    for (const auto& firstMonth : firstMonths) {
        const auto cnn = std::make_shared<ScriptedConnection>();
        cnn->Answer(firstMonth);
        CTables tables;
        tables.Cnn(cnn);
        std::int16_t month = 0;
        EXPECT_EQ(tables.rs余额记录(2, month), nullptr);
        EXPECT_EQ(month, 0);
        EXPECT_EQ(cnn->Statements(), corpus::Expected("rs余额记录(2, 0)"));
    }
}

TEST(BalanceReport, PassesErrorsOn) {
    for (const int failing : {1, 2}) {
        const auto cnn = std::make_shared<ScriptedConnection>();
        cnn->FailAt(failing).Answer(MakeRows({{"月份", VarType::Integer}}, {{std::int16_t{3}}}));
        CTables tables;
        tables.Cnn(cnn);
        std::int16_t month = 0;
        EXPECT_EQ(FailureOf([&] { tables.rs余额记录(0, month); }), kRefused);
        EXPECT_EQ(month, failing == 1 ? 0 : 3);
    }
}

TEST(BalanceRows, HandOutTheConnectionsRows) {
    ExpectHandsOut("rs月份列表", [](CTables& t) { return t.rs月份列表(); });
    ExpectHandsOut("rs仓库余额表, all", [](CTables& t) { return t.rs仓库余额表(); });
    ExpectHandsOut("rs仓库余额表, some", [](CTables& t) { return t.rs仓库余额表(1, 2); });
    ExpectHandsOut("rs仓库余额表期初, month", [](CTables& t) { return t.rs仓库余额表期初(1); });
    ExpectHandsOut("rs仓库余额表期初, initial", [](CTables& t) { return t.rs仓库余额表期初(0, 0, true); });
    ExpectHandsOut("rs仓库余额表期初, initial, warehouse", [](CTables& t) { return t.rs仓库余额表期初(0, 1, true); });
    ExpectHandsOut("rs余额记录", [](CTables& t) { return t.rs余额记录(1, 2); });
}

TEST(BalanceFailures, OnlyDeletionOfAWarehouseTraps) {
    struct Case {
        const char* name;
        std::function<void(CTables&)> call;
    };
    const Case raising[] = {
        {"rs月份列表", [](CTables& t) { t.rs月份列表(); }},
        {"rs仓库余额表, all", [](CTables& t) { t.rs仓库余额表(); }},
        {"rs仓库余额表, some", [](CTables& t) { t.rs仓库余额表(1); }},
        {"Del仓库余额表", [](CTables& t) { t.Del仓库余额表(); }},
        {"清理仓库余额表", [](CTables& t) { t.清理仓库余额表(1); }},
        {"商品已经入库", [](CTables& t) { t.商品已经入库(1); }},
        {"rs仓库余额表期初", [](CTables& t) { t.rs仓库余额表期初(); }},
        {"rs余额记录", [](CTables& t) { t.rs余额记录(); }},
        {"CheckBnProduct", [](CTables& t) { t.CheckBnProduct(1); }},
    };
    for (const Case& each : raising) {
        SCOPED_TRACE(each.name);
        CTables tables;
        EXPECT_EQ(FailureOf([&] { each.call(tables); }), 91);
        const auto cnn = std::make_shared<ScriptedConnection>();
        cnn->FailAt(1);
        tables.Cnn(cnn);
        EXPECT_EQ(FailureOf([&] { each.call(tables); }), kRefused);
        EXPECT_EQ(cnn->Statements().size(), 1u);
    }

    CTables tables;
    EXPECT_FALSE(tables.Del仓库余额(1));
    const auto cnn = std::make_shared<ScriptedConnection>();
    cnn->FailAt(1);
    tables.Cnn(cnn);
    EXPECT_FALSE(tables.Del仓库余额(1));
    EXPECT_EQ(cnn->Statements().size(), 1u);
}

TEST(BalanceRows, AQueryWithoutARecordsetIsAnError) {
    const auto cnn = std::make_shared<ScriptedConnection>();
    cnn->Answer(nullptr).Answer(nullptr);
    CTables tables;
    tables.Cnn(cnn);
    EXPECT_EQ(FailureOf([&] { tables.rs月份列表(); }), 91);
    EXPECT_EQ(FailureOf([&] { tables.rs仓库余额表(); }), 91);
}

}  // namespace
}  // namespace kpTables::test
