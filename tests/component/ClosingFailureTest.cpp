// A closing that fails answers False, keeps what it wrote and leaves the bar visible.
#include <gtest/gtest.h>

#include <algorithm>

#include "ClosingScript.h"

namespace kpTables::test {
namespace {

const Date kClosingDate = *Date::ParseIso("2004-03-31");

std::ptrdiff_t Times(const Journal& journal, const std::string& entry) {
    return std::count(journal.begin(), journal.end(), entry);
}

TEST(ClosingFailure, NoConnection) {
    auto journal = std::make_shared<Journal>();
    ScriptedBar bar(journal);
    EXPECT_FALSE(CTables().Close_DepotBalance(2, 3, false, kClosingDate, &bar));
    EXPECT_TRUE(journal->empty());
}

TEST(ClosingFailure, AtEachStatement) {
    // 1: the balance rows; 2 to 7: the movements; 8: the rows for next month
    for (int failing = 1; failing <= 8; ++failing) {
        SCOPED_TRACE(failing);
        ClosingScript script;
        script.Prepare(true);
        script.cnn->FailAt(failing);
        ScriptedBar bar(script.cnn->Log());
        EXPECT_FALSE(script.tables.Close_DepotBalance(2, 3, true, kClosingDate, &bar));
        EXPECT_EQ(script.cnn->Statements().size(), static_cast<std::size_t>(failing));
        EXPECT_EQ(bar.Visible(), failing > 1);
        EXPECT_EQ(Times(*script.cnn->Log(), "Visible=False"), 0);
        EXPECT_EQ(Times(*script.cnn->Log(), "Update"), failing == 8 ? 3 : 0);
    }
}

TEST(ClosingFailure, AtEachOperationOnTheBalanceRows) {
    struct Case {
        const char* operation;
        int call;
        int updates;  // rows written before the failure
        std::size_t rows;
    };
    const Case cases[] = {
        {"Set", 1, 0, 3},                          // the first figure of the first row
        {"Set", 14, 1, 3},                         // the second row's first figure
        {"Update", 1, 0, 3},                       // the first row
        {"Update", 3, 2, 3},                       // the last row
        {"AddNew", 1, 3, 3}, {"Update", 4, 3, 4},  // the first row of next month is being added
        {"AddNew", 2, 4, 4}, {"Close", 1, 5, 5},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(std::string(each.operation) + " " + std::to_string(each.call));
        ClosingScript script;
        script.Prepare(false);
        script.balance->FailAt(each.operation, each.call);
        ScriptedBar bar(script.cnn->Log());
        EXPECT_FALSE(script.tables.Close_DepotBalance(2, 3, false, kClosingDate, &bar));
        EXPECT_EQ(Times(*script.cnn->Log(), "Update"), each.updates);
        EXPECT_EQ(script.balance->RecordCount(), static_cast<std::int32_t>(each.rows));
        EXPECT_TRUE(bar.Visible());
    }
}

TEST(ClosingFailure, AtAMovement) {
    for (const char* operation : {"MoveFirst", "Find"}) {
        SCOPED_TRACE(operation);
        ClosingScript script;
        script.Prepare(false);
        script.outbound->FailAt(operation, 2);
        ScriptedBar bar(script.cnn->Log());
        EXPECT_FALSE(script.tables.Close_DepotBalance(2, 3, false, kClosingDate, &bar));
        EXPECT_EQ(Times(*script.cnn->Log(), "Update"), 1);
        EXPECT_TRUE(bar.Visible());
    }
}

TEST(ClosingFailure, ANullOpeningAmount) {
    ClosingScript script;
    script.balance =
        MakeRows(BalanceColumns(), {{std::int16_t{2004}, std::int16_t{3}, 7, 2, 10.0, 10.0, Money(1000000)},
                                    {std::int16_t{2004}, std::int16_t{3}, 3, 2, 2.0, 5.0, Variant::Null()}});
    script.balance->RecordTo(script.cnn->Log());
    script.Prepare(false);
    ScriptedBar bar(script.cnn->Log());
    EXPECT_FALSE(script.tables.Close_DepotBalance(2, 3, false, kClosingDate, &bar));
    EXPECT_EQ(script.cnn->Statements().size(), 5u);
    EXPECT_EQ(script.cnn->Log()->back(), "Set 本期库存数量=5") << "the quantity of product 3 is the last thing written";
    EXPECT_EQ(Times(*script.cnn->Log(), "Update"), 1) << "product 7 stays";
    EXPECT_TRUE(bar.Visible());
}

TEST(ClosingFailure, NullFiguresOtherThanTheOpeningAmountCountAsZero) {
    ClosingScript script;
    const Variant null = Variant::Null();
    script.balance = MakeRows(BalanceColumns(), {{std::int16_t{2004},
                                                  std::int16_t{12},
                                                  3,
                                                  2,
                                                  null,
                                                  null,
                                                  Money(100000),
                                                  null,
                                                  null,
                                                  null,
                                                  null,
                                                  null,
                                                  null,
                                                  null,
                                                  null,
                                                  null,
                                                  null,
                                                  null,
                                                  null,
                                                  null,
                                                  null}});
    script.balance->RecordTo(script.cnn->Log());
    script.Prepare(false);
    EXPECT_TRUE(script.tables.Close_DepotBalance(2, 12, false, kClosingDate));
    const auto rows = script.balance->Contents();
    EXPECT_EQ(Shown(rows[0][18]), "0");
    EXPECT_EQ(Shown(rows[0][19]), "10");
    EXPECT_EQ(Shown(rows[0][17]), "0");
}

TEST(ClosingFailure, AnAmountThatDoesNotFit) {
    ClosingScript script;
    script.inbound = MakeRows(
        {{"pdID", VarType::Long}, {"单价", VarType::Double}, {"数量", VarType::Double}, {"金额", VarType::Double}},
        {{7, 1.0, 1.0, 1e15}});
    script.Prepare(false);
    EXPECT_FALSE(script.tables.Close_DepotBalance(2, 3, false, kClosingDate));
    EXPECT_EQ(Times(*script.cnn->Log(), "Update"), 0);
}

TEST(ClosingFailure, AQuantityThatIsTooLarge) {
    ClosingScript script;
    script.balance =
        MakeRows(BalanceColumns(), {{std::int16_t{2004}, std::int16_t{3}, 7, 2, 1.0, 1e308, Money(10000), 1.0, 1e308}});
    script.balance->RecordTo(script.cnn->Log());
    script.inbound = MakeRows({{"pdID", VarType::Long}}, {});
    script.Prepare(false);
    EXPECT_FALSE(script.tables.Close_DepotBalance(2, 3, false, kClosingDate));
    EXPECT_EQ(Times(*script.cnn->Log(), "Update"), 0);
    EXPECT_EQ(script.cnn->Statements().size(), 5u);
}

TEST(ClosingFailure, AColumnThatIsNotThere) {
    ClosingScript script;
    script.outboundTotals = MakeRows({{"pdID", VarType::Long}, {"数量", VarType::Double}}, {{7, 1.0}});
    script.Prepare(false);
    EXPECT_FALSE(script.tables.Close_DepotBalance(2, 3, false, kClosingDate));
    EXPECT_EQ(Times(*script.cnn->Log(), "Update"), 0);
}

TEST(ClosingFailure, ABarThatFails) {
    // 1: shown; 2 to 4: the rows of the month; 5 and 6: the rows added; 7: 100; 8: hidden
    const int updatesBefore[] = {0, 0, 1, 2, 3, 4, 5, 5};
    for (int failing = 1; failing <= 8; ++failing) {
        SCOPED_TRACE(failing);
        ClosingScript script;
        script.Prepare(false);
        ScriptedBar bar(script.cnn->Log(), failing);
        EXPECT_FALSE(script.tables.Close_DepotBalance(2, 3, false, kClosingDate, &bar));
        EXPECT_EQ(Times(*script.cnn->Log(), "Update"), updatesBefore[failing - 1]);
        EXPECT_EQ(bar.Visible(), failing > 1);
    }
    ClosingScript script;
    script.Prepare(false);
    ScriptedBar bar(script.cnn->Log(), 9);
    EXPECT_TRUE(script.tables.Close_DepotBalance(2, 3, false, kClosingDate, &bar)) << "there is no ninth call";
}

}  // namespace
}  // namespace kpTables::test
