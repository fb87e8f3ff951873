// Bills: results and failures.
#include <gtest/gtest.h>

#include "HandsOut.h"
#include "support/Failure.h"

namespace kpTables::test {
namespace {

const FieldInfo kAmount{"金额", VarType::Currency};
const FieldInfo kQuantity{"数量", VarType::Double};

/// A connection that answers one statement.
std::shared_ptr<ScriptedConnection> Answering(RecordsetPtr rows) {
    const auto cnn = std::make_shared<ScriptedConnection>();
    cnn->Answer(std::move(rows));
    return cnn;
}

TEST(BillTotals, WithoutLinesAreZeroForEverySelector) {
    for (const char* which : {"入库", "出库", "成本", ""}) {
        for (const bool isSQL : {false, true}) {
            SCOPED_TRACE(which);
            const auto cnn = Answering(MakeRows({kAmount}, {{Variant::Null()}}));
            cnn->Answer(MakeRows({kQuantity}, {{Variant::Null()}}));
            CTables tables;
            tables.Cnn(cnn);
            tables.isSQL(isSQL);
            EXPECT_EQ(tables.Get单据金额(7, which).Scaled(), 0);
            EXPECT_EQ(tables.Get单据数量(7, which), 0);
        }
    }
}

TEST(BillTotals, Amount) {
    struct Case {
        const char* name;
        RecordsetPtr rows;
        std::int64_t scaled;
    };
    const auto unknownCount = MakeRows({kAmount}, {{Currency::FromScaled(125000)}});
    unknownCount->ReportCount(-1);
    const Case cases[] = {
        {"a sum", MakeRows({kAmount}, {{Currency::FromScaled(125001)}}), 125001},
        {"a negative sum", MakeRows({kAmount}, {{Currency::FromScaled(-1)}}), -1},
        {"a Double", MakeRows({{"金额", VarType::Double}}, {{2.03125}}), 20312},  // half to even
        {"no lines", MakeRows({kAmount}, {{Variant::Null()}}), 0},
        {"no row", MakeRows({kAmount}, {}), 0},
        {"count unknown", unknownCount, 0},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.name);
        CTables tables;
        tables.Cnn(Answering(each.rows));
        EXPECT_EQ(tables.Get单据金额(1, "入库").Scaled(), each.scaled);
    }
}

TEST(BillTotals, Quantity) {
    struct Case {
        const char* name;
        RecordsetPtr rows;
        double quantity;
    };
    const auto unknownCount = MakeRows({kQuantity}, {{2.5}});
    unknownCount->ReportCount(-1);
    const Case cases[] = {
        {"a sum", MakeRows({kQuantity}, {{2.5}}), 2.5},
        {"a negative sum", MakeRows({kQuantity}, {{-0.125}}), -0.125},
        {"no lines", MakeRows({kQuantity}, {{Variant::Null()}}), 0},
        {"no row", MakeRows({kQuantity}, {}), 0},
        {"count unknown", unknownCount, 0},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.name);
        CTables tables;
        tables.Cnn(Answering(each.rows));
        EXPECT_EQ(tables.Get单据数量(1, "出库"), each.quantity);
    }
}

TEST(AuditStamp, LeavesItsArgumentsAlone) {
    CTables tables;
    tables.Cnn(std::make_shared<ScriptedConnection>());
    std::string which = "入库", auditor = "张三";
    std::int32_t bill = 5;
    Variant date = "2004-3-7";
    EXPECT_TRUE(tables.BillAdulting(which, bill, auditor, date));
    EXPECT_EQ(which, "入库");
    EXPECT_EQ(bill, 5);
    EXPECT_EQ(auditor, "张三");
    EXPECT_TRUE(date.Is("2004-3-7"));
}

TEST(AuditStamp, AnswersFalseAfterAnyError) {
    const auto cnn = std::make_shared<ScriptedConnection>();
    cnn->FailAt(1);
    CTables tables;
    EXPECT_FALSE(tables.BillAdulting("入库", 5, "张三", "2004-3-7")) << "no connection";
    EXPECT_TRUE(tables.BillAdulting("成本", 5, "张三", "2004-3-7")) << "no connection needed";
    tables.Cnn(cnn);
    EXPECT_FALSE(tables.BillAdulting("入库", 5, "张三", "2004-3-7")) << "refused";
    EXPECT_FALSE(tables.BillAdulting("入库", 5, "张三", Variant(nullptr))) << "an object has no text";
    EXPECT_EQ(cnn->Statements().size(), 1u);
}

TEST(Deletion, AnErrorReachesTheCaller) {
    for (const int failing : {1, 2}) {
        const auto cnn = std::make_shared<ScriptedConnection>();
        cnn->FailAt(failing);
        CTables tables;
        tables.Cnn(cnn);
        EXPECT_EQ(FailureOf([&] { tables.Del_单据(5, "入库"); }), kRefused);
        EXPECT_EQ(cnn->Statements().size(), static_cast<std::size_t>(failing));
    }
}

struct BillListing {
    const char* name;
    std::function<RecordsetPtr(CTables&)> run;
};
const BillListing kListings[] = {
    {"rs入库记录", [](CTables& t) { return t.rs入库记录(1, 2); }},
    {"rs出库记录", [](CTables& t) { return t.rs出库记录(1, 2); }},
    {"rs单位入库记录", [](CTables& t) { return t.rs单位入库记录(1); }},
    {"rs单位出库记录", [](CTables& t) { return t.rs单位出库记录(1); }},
    {"rs经手人", [](CTables& t) { return t.rs经手人("入库"); }},
    {"rs交接人", [](CTables& t) { return t.rs交接人("入库"); }},
    {"rs包装", [](CTables& t) { return t.rs包装("入库"); }},
    {"rs货位", [](CTables& t) { return t.rs货位("入库"); }},
};

TEST(BillListings, HandOutTheConnectionsRows) {
    for (const auto& each : kListings) ExpectHandsOut(each.name, each.run);
}

TEST(BillListings, PassErrorsOn) {
    for (const auto& each : kListings) {
        SCOPED_TRACE(each.name);
        const auto cnn = std::make_shared<ScriptedConnection>();
        cnn->FailAt(1, "no such table");
        CTables tables;
        EXPECT_EQ(FailureOf([&] { each.run(tables); }), 91);
        tables.Cnn(cnn);
        try {
            each.run(tables);
            ADD_FAILURE() << "no error";
        } catch (const DatabaseError& error) {
            EXPECT_EQ(error.Description(), "no such table");
            EXPECT_EQ(error.Statement(), cnn->Statements().back().text);
        }
    }
}

TEST(BillTotals, PassErrorsOn) {
    CTables tables;
    EXPECT_EQ(FailureOf([&] { tables.Get单据金额(1, "入库"); }), 91);
    EXPECT_EQ(FailureOf([&] { tables.Get单据数量(1, "入库"); }), 91);
    EXPECT_EQ(FailureOf([&] { tables.Del_单据(1, "入库"); }), 91);
    const auto cnn = std::make_shared<ScriptedConnection>();
    cnn->FailAt(1).FailAt(2);
    tables.Cnn(cnn);
    EXPECT_EQ(FailureOf([&] { tables.Get单据金额(1, "入库"); }), kRefused);
    EXPECT_EQ(FailureOf([&] { tables.Get单据数量(1, "入库"); }), kRefused);
}

}  // namespace
}  // namespace kpTables::test
