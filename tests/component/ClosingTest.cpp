// Month-end closing: statements, figures and their order.
#include <gtest/gtest.h>

#include "ClosingScript.h"
#include "HandsOut.h"
#include "support/Failure.h"

namespace kpTables::test {
namespace {

/// The journal's entries of the statements from first to last, from 1, of a closing with costs.
Journal Asked(std::size_t first, std::size_t last) {
    const Journal all = corpus::Entries("Close_DepotBalance(2, 3, True, #2004-03-31#)");
    return {all.begin() + static_cast<std::ptrdiff_t>(first) - 1, all.begin() + static_cast<std::ptrdiff_t>(last)};
}
const Journal kOpenAndMovements = Asked(1, 5);
const Journal kCosts = Asked(6, 7);
const std::string kNextMonth = Asked(8, 8).front();

Journal Joined(const std::vector<Journal>& parts) {
    Journal all;
    for (const Journal& each : parts) all.insert(all.end(), each.begin(), each.end());
    return all;
}

const Journal kFillWithoutCosts = {
    // product 7
    "Set 本期入库单价=12.5", "Set 本期入库数量=4", "Set 本期入库金额=50", "Set 本期出库单价=15", "Set 本期出库数量=6",
    "Set 本期出库金额=90", "Set 累计入库数量=14", "Set 累计入库金额=150", "Set 累计出库数量=9", "Set 累计出库金额=135",
    "Set 本期库存数量=8", "Set 本期库存金额=60", "Set 本期库存单价=7.5", "Update",
    // product 3: 5+1-2, 10+3-8
    "Set 本期库存数量=4", "Set 本期库存金额=5", "Set 本期库存单价=1.25", "Update",
    // product 9: 0+0-1, 0.0001+0-0.0002
    "Set 本期入库单价=0", "Set 本期入库数量=0", "Set 本期入库金额=0", "Set 本期出库单价=0.5", "Set 本期出库数量=1",
    "Set 本期出库金额=0.0002", "Set 累计入库数量=3", "Set 累计入库金额=0.0004", "Set 累计出库数量=1.25",
    "Set 累计出库金额=0.0005", "Set 本期库存数量=-1", "Set 本期库存金额=-0.0001", "Set 本期库存单价=0", "Update"};

const Journal kFillWithCosts = {
    // product 7: costs 72 instead of 90, 108.0001 instead of 135; 100+50-72
    "Set 本期入库单价=12.5", "Set 本期入库数量=4", "Set 本期入库金额=50", "Set 本期出库单价=15", "Set 本期出库数量=6",
    "Set 本期出库金额=90", "Set 累计入库数量=14", "Set 累计入库金额=150", "Set 累计出库数量=9", "Set 累计出库金额=135",
    "Set 本期出库金额=72", "Set 累计出库金额=108.0001", "Set 本期库存数量=8", "Set 本期库存金额=78",
    "Set 本期库存单价=9.75", "Update",
    // product 3
    "Set 本期库存数量=4", "Set 本期库存金额=5", "Set 本期库存单价=1.25", "Update",
    // product 9: a cost without an amount is 0, no cumulative cost leaves the outbound bills' amount
    "Set 本期入库单价=0", "Set 本期入库数量=0", "Set 本期入库金额=0", "Set 本期出库单价=0.5", "Set 本期出库数量=1",
    "Set 本期出库金额=0.0002", "Set 累计入库数量=3", "Set 累计入库金额=0.0004", "Set 累计出库数量=1.25",
    "Set 累计出库金额=0.0005", "Set 本期出库金额=0", "Set 本期库存数量=-1", "Set 本期库存金额=0.0001",
    "Set 本期库存单价=0", "Update"};

Journal CarriedForward(const std::string& product, const std::string& price, const std::string& quantity,
                       const std::string& amount) {
    return {"AddNew",
            "Set dpID=2",
            "Set pdID=" + product,
            "Set 年份=2004",
            "Set 月份=4",
            "Set 上期库存单价=" + price,
            "Set 上期库存数量=" + quantity,
            "Set 上期库存金额=" + amount,
            "Set 本期入库单价=0",
            "Set 本期入库数量=0",
            "Set 本期入库金额=0",
            "Set 累计入库数量=0",
            "Set 累计入库金额=0",
            "Set 本期出库单价=0",
            "Set 本期出库数量=0",
            "Set 本期出库金额=0",
            "Set 累计出库数量=0",
            "Set 累计出库金额=0",
            "Set 本期库存单价=" + price,
            "Set 本期库存数量=" + quantity,
            "Set 本期库存金额=" + amount,
            "Set 备注=2004-3-31",
            "Update"};
}

const Date kNote = *Date::ParseIso("2004-03-31");

TEST(Closing, WithoutABar) {
    for (const bool isSQL : {false, true}) {
        ClosingScript script;
        script.Prepare(false);
        script.tables.isSQL(isSQL);
        EXPECT_TRUE(script.tables.Close_DepotBalance(2, 3, false, kNote));
        EXPECT_EQ(*script.cnn->Log(), Joined({kOpenAndMovements,
                                              kFillWithoutCosts,
                                              {kNextMonth},
                                              CarriedForward("7", "7.5", "8", "60"),
                                              CarriedForward("3", "1.25", "4", "5"),
                                              {"Close"}}));
    }
}

TEST(Closing, WithCosts) {
    for (const bool isSQL : {false, true}) {
        ClosingScript script;
        script.Prepare(true);
        script.tables.isSQL(isSQL);
        bool costUsed = true;
        Variant note = kNote;
        EXPECT_TRUE(script.tables.Close_DepotBalance(2, 3, costUsed, note));
        EXPECT_TRUE(costUsed);
        EXPECT_TRUE(note.Is(kNote));
        EXPECT_EQ(*script.cnn->Log(), Joined({kOpenAndMovements,
                                              kCosts,
                                              kFillWithCosts,
                                              {kNextMonth},
                                              CarriedForward("7", "7.5", "8", "60"),
                                              CarriedForward("3", "1.25", "4", "5"),
                                              {"Close"}}));
    }
}

TEST(Closing, DrivesTheBar) {
    ClosingScript script;
    script.Prepare(false);
    ScriptedBar bar(script.cnn->Log());
    EXPECT_TRUE(script.tables.Close_DepotBalance(2, 3, false, kNote, &bar));
    Journal expected = {kOpenAndMovements.front(), "Visible=True"};
    expected.insert(expected.end(), kOpenAndMovements.begin() + 1, kOpenAndMovements.end());
    expected.push_back("Value=16.6666666666667");
    expected.insert(expected.end(), kFillWithoutCosts.begin(), kFillWithoutCosts.begin() + 14);
    expected.push_back("Value=33.3333333333333");
    expected.insert(expected.end(), kFillWithoutCosts.begin() + 14, kFillWithoutCosts.begin() + 18);
    expected.push_back("Value=50");
    expected.insert(expected.end(), kFillWithoutCosts.begin() + 18, kFillWithoutCosts.end());
    expected = Joined({expected,
                       {kNextMonth, "Value=75"},
                       CarriedForward("7", "7.5", "8", "60"),
                       {"Value=100"},
                       CarriedForward("3", "1.25", "4", "5"),
                       {"Value=100", "Close", "Visible=False"}});
    EXPECT_EQ(*script.cnn->Log(), expected);
}

TEST(Closing, FillsTheRowsAndAddsNextMonths) {
    ClosingScript script;
    script.Prepare(false);
    ASSERT_TRUE(script.tables.Close_DepotBalance(2, 3, false, kNote));
    const auto rows = script.balance->Contents();
    ASSERT_EQ(rows.size(), 5u);
    const auto expectRow = [&](std::size_t row, const std::vector<std::string>& texts) {
        SCOPED_TRACE(row);
        ASSERT_EQ(rows[row].size(), texts.size());
        for (std::size_t i = 0; i < texts.size(); ++i)
            EXPECT_EQ(Shown(rows[row][i]), texts[i]) << BalanceColumns()[i].name;
    };
    expectRow(0, {"2004", "3",  "7", "2",  "10", "10",  "100", "12.5", "4",  "50", "14",
                  "150",  "15", "6", "90", "9",  "135", "7.5", "8",    "60", "一"});
    expectRow(1, {"2004", "3", "3", "2", "2",   "5",  "10",   "3", "1", "3", "1.5",
                  "4.5",  "4", "2", "8", "2.5", "10", "1.25", "4", "5", "二"});
    expectRow(2, {"2004",   "3",   "9", "2",      "0",    "0",      "0.0001", "0",  "0",       "0", "3",
                  "0.0004", "0.5", "1", "0.0002", "1.25", "0.0005", "0",      "-1", "-0.0001", "三"});
    expectRow(3, {"2004", "4", "7", "2", "7.5", "8", "60",  "0", "0",  "0",        "0",
                  "0",    "0", "0", "0", "0",   "0", "7.5", "8", "60", "2004-3-31"});
    expectRow(4, {"2004", "4", "3", "2", "1.25", "4", "5",    "0", "0", "0",        "0",
                  "0",    "0", "0", "0", "0",    "0", "1.25", "4", "5", "2004-3-31"});
}

TEST(Closing, GivesEveryQueryItsCacheSize) {
    ClosingScript script;
    script.Prepare(true);
    ASSERT_TRUE(script.tables.Close_DepotBalance(2, 3, true, kNote));
    for (const auto& rows :
         {script.inbound, script.outbound, script.inboundTotals, script.outboundTotals, script.cost, script.costTotals})
        EXPECT_EQ(rows->CacheSize(), 200);
}

TEST(Closing, WithoutRowsThereIsNothingToClose) {
    for (const std::int32_t count : {0, -1}) {
        const auto cnn = std::make_shared<ScriptedConnection>();
        const auto balance = MakeRows(BalanceColumns(), {});
        balance->ReportCount(count).RecordTo(cnn->Log());
        cnn->Answer(balance);
        CTables tables;
        tables.Cnn(cnn);
        ScriptedBar bar(cnn->Log());
        EXPECT_TRUE(tables.Close_DepotBalance(-2147483647, 13, true, kNote, &bar));
        EXPECT_EQ(*cnn->Log(), corpus::Entries("Close_DepotBalance(-2147483647, 13, True, #2004-03-31#, Bar)"));
    }
}

TEST(Closing, WithoutMovementsRowsKeepWhatTheyHold) {
    ClosingScript script;
    script.inbound = script.outbound = MonthFigures({});
    script.inboundTotals = script.outboundTotals = Totals({});
    // A movement whose count is not known counts as one without rows.
    script.outboundTotals = Totals({{7, 9.0, Money(1350000)}});
    script.outboundTotals->ReportCount(-1);
    script.Prepare(false);
    ASSERT_TRUE(script.tables.Close_DepotBalance(2, 3, false, kNote));
    const auto rows = script.balance->Contents();
    // product 7: 10+0-0; product 3: 5+1-2; product 9: 0+8-8, 0.0001+0.0008-0.0008
    const std::string closing[3][3] = {{"10", "10", "100"}, {"1.25", "4", "5"}, {"0", "0", "0.0001"}};
    for (std::size_t row = 0; row < 3; ++row)
        for (std::size_t i = 0; i < 3; ++i) EXPECT_EQ(Shown(rows[row][17 + i]), closing[row][i]) << row << "," << i;
    EXPECT_EQ(Shown(rows[0][16]), "0");
}

TEST(Closing, TheLastMonthAddsNoRows) {
    struct Case {
        std::int16_t month;
        bool adds;
    };
    const Case cases[] = {{11, true}, {12, false}, {13, false}, {0, true}, {-1, true}};
    for (const Case& each : cases) {
        SCOPED_TRACE(each.month);
        ClosingScript script;
        script.closed = MakeRows(BalanceColumns(), {});
        script.Prepare(false);
        ScriptedBar bar(script.cnn->Log());
        EXPECT_TRUE(script.tables.Close_DepotBalance(2, each.month, false, kNote, &bar));
        EXPECT_EQ(script.cnn->Statements(), corpus::Expected("Close_DepotBalance(2, " + std::to_string(each.month) +
                                                             ", False, #2004-03-31#, Bar)"));
        EXPECT_EQ(script.cnn->Statements().size(), each.adds ? 6u : 5u);
        const auto& log = *script.cnn->Log();
        const Journal end(log.end() - 3, log.end());
        EXPECT_EQ(end, (Journal{"Value=100", "Close", "Visible=False"}));
        EXPECT_EQ(script.balance->Contents().size(), 3u);
    }
}

TEST(Closing, TheNextMonthIsTheSourceRowsMonthPlusOne) {
    ClosingScript script;
    script.closed = MakeRows({{"dpID", VarType::Long},
                              {"pdID", VarType::Long},
                              {"年份", VarType::Integer},
                              {"月份", VarType::Integer},
                              {"本期库存单价", VarType::Double},
                              {"本期库存数量", VarType::Double},
                              {"本期库存金额", VarType::Currency}},
                             {{2, 7, std::int16_t{1999}, std::int16_t{8}, 1.0, 2.0, Money(20000)}});
    script.Prepare(false);
    ASSERT_TRUE(script.tables.Close_DepotBalance(2, 3, false, "备注文字"));
    const auto rows = script.balance->Contents();
    ASSERT_EQ(rows.size(), 4u);
    EXPECT_EQ(Shown(rows[3][0]), "1999");
    EXPECT_EQ(Shown(rows[3][1]), "9");
    EXPECT_EQ(Shown(rows[3][20]), "备注文字");
}

TEST(ClosedFlag, LeavesItsArgumentsAlone) {
    for (const bool isSQL : {false, true}) {
        for (const bool given : {false, true}) {
            CTables tables;
            tables.Cnn(std::make_shared<ScriptedConnection>());
            tables.isSQL(isSQL);
            std::int32_t warehouse = 4;
            Date date = kNote;
            bool closed = given;
            tables.UpdateDepotClosedFlag(warehouse, date, closed);
            EXPECT_EQ(warehouse, 4);
            EXPECT_EQ(date, kNote);
            EXPECT_EQ(closed, given);
        }
    }
}

TEST(ClosedFlag, PassesErrorsOn) {
    CTables tables;
    EXPECT_EQ(FailureOf([&] { tables.UpdateDepotClosedFlag(1, kNote, true); }), 91);
    const auto cnn = std::make_shared<ScriptedConnection>();
    cnn->FailAt(1);
    tables.Cnn(cnn);
    EXPECT_EQ(FailureOf([&] { tables.UpdateDepotClosedFlag(1, kNote, true); }), kRefused);
}

TEST(Sold, AsksTheBillsThenTheSummaries) {
    const FieldInfo id{"ID", VarType::Long};
    const auto counted = [&](std::int32_t count) {
        const auto rows = MakeRows({id}, {{1}});
        rows->ReportCount(count);
        return rows;
    };
    struct Case {
        const char* name;
        RecordsetPtr bills, summary;
        int failing;  // statement that is refused, 0: none
        bool sold;
        std::size_t sent;
    };
    const Case cases[] = {
        {"bills", counted(1), counted(0), 0, true, 1},
        {"many bills", counted(5), nullptr, 0, true, 1},
        {"summaries", counted(0), counted(1), 0, true, 2},
        {"neither", counted(0), counted(0), 0, false, 2},
        {"counts unknown", counted(-1), counted(-1), 0, false, 2},
        {"bills refused, summaries", counted(1), nullptr, 1, true, 2},
        {"bills refused, no summaries", counted(0), nullptr, 1, false, 2},
        {"summaries refused", counted(0), nullptr, 2, false, 2},
        {"no recordsets", nullptr, nullptr, 0, false, 2},
    };
    for (const Case& each : cases) {
        for (const bool isSQL : {false, true}) {
            SCOPED_TRACE(each.name);
            const auto cnn = std::make_shared<ScriptedConnection>();
            cnn->Answer(each.bills).Answer(each.summary);
            if (each.failing) cnn->FailAt(each.failing);
            CTables tables;
            tables.Cnn(cnn);
            tables.isSQL(isSQL);
            EXPECT_EQ(tables.isSaled(2, 3), each.sold);
            EXPECT_EQ(cnn->Statements(), corpus::Expected("isSaled(2, 3)", each.sent == 1 ? "bills" : "no bills"));
        }
    }
}

TEST(Sold, FalseWithoutAConnection) { EXPECT_FALSE(CTables().isSaled(2, 3)); }

}  // namespace
}  // namespace kpTables::test
