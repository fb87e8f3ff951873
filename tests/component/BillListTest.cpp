// The filtered list of bills: results and failures.
#include <gtest/gtest.h>

#include "corpus/Call.h"
#include "kpTables/CTables.h"
#include "support/Failure.h"
#include "support/ScriptedConnection.h"

namespace kpTables::test {
namespace {

/// What the list is asked for, in the order of its parameters. Nothing is given at first.
struct BillListFilters {
    Variant which = "入库";
    Variant kind = "";
    Variant firstDay = "";
    Variant lastDay = "";
    Variant firstNumber = "";
    Variant lastNumber = "";
    Variant warehouse = 0;
    Variant partner = 0;
    std::int32_t project = 0;
    Variant handler = "";
    Variant counterpart = "";
    Variant packing = "";
    Variant packingOperator = "";
    Variant slot = "";
    Variant slotOperator = "";
    Variant term = "";
    Variant termOperator = "";
    Variant minQuantity = 0;
    Variant maxQuantity = 0;
    Variant minAmount = 0;
    Variant maxAmount = 0;
};

RecordsetPtr List(CTables& tables, BillListFilters f) {
    return tables.rs单据列表(f.which, f.kind, f.firstDay, f.lastDay, f.firstNumber, f.lastNumber, f.warehouse,
                             f.partner, f.project, f.handler, f.counterpart, f.packing, f.packingOperator, f.slot,
                             f.slotOperator, f.term, f.termOperator, f.minQuantity, f.maxQuantity, f.minAmount,
                             f.maxAmount);
}

TEST(BillList, WhatCannotBeComposedSendsNothing) {
    const Variant bad[] = {"abc", "", " ", "12x", Variant(nullptr), Variant::Missing()};
    Variant BillListFilters::*const numbers[] = {&BillListFilters::warehouse,   &BillListFilters::partner,
                                                 &BillListFilters::minQuantity, &BillListFilters::maxQuantity,
                                                 &BillListFilters::minAmount,   &BillListFilters::maxAmount};
    const Variant noDate[] = {"abc", "2004-02-30", " ", Variant(nullptr)};
    std::vector<BillListFilters> cases;
    for (const auto number : numbers)
        for (const Variant& value : bad) cases.emplace_back().*number = value;
    for (const auto day : {&BillListFilters::firstDay, &BillListFilters::lastDay})
        for (const Variant& value : noDate) cases.emplace_back().*day = value;
    for (const auto text :
         {&BillListFilters::which, &BillListFilters::kind, &BillListFilters::firstNumber, &BillListFilters::lastNumber,
          &BillListFilters::handler, &BillListFilters::counterpart, &BillListFilters::packing})
        cases.emplace_back().*text = Variant(nullptr);
    for (std::size_t i = 0; i < cases.size(); ++i) {
        for (const bool isSQL : {false, true}) {
            SCOPED_TRACE(i);
            const auto cnn = std::make_shared<ScriptedConnection>();
            CTables tables;
            tables.Cnn(cnn);
            tables.isSQL(isSQL);
            EXPECT_EQ(List(tables, cases[i]), nullptr);
            EXPECT_TRUE(cnn->Statements().empty());
        }
    }
}

TEST(BillList, HandsOutTheConnectionsRowsAndLeavesTheFilters) {
    const auto cnn = std::make_shared<ScriptedConnection>();
    const auto rows = MakeRows({{"BillID", VarType::Long}}, {{1}, {2}});
    cnn->Answer(rows);
    CTables tables;
    tables.Cnn(cnn);
    Variant which = "入库", kind = "采购", day = "2004-3-7", number = "A", id = "5", text = "箱", bound = "2.50";
    std::int32_t project = 7;
    EXPECT_EQ(tables.rs单据列表(which, kind, day, day, number, number, id, id, project, text, text, text, text, text,
                                text, text, text, bound, bound, bound, bound),
              rows);
    EXPECT_EQ(rows->CacheSize(), 200);
    EXPECT_EQ(rows->AbsolutePosition(), 1);
    EXPECT_TRUE(which.Is("入库"));
    EXPECT_TRUE(kind.Is("采购"));
    EXPECT_TRUE(day.Is("2004-3-7"));
    EXPECT_TRUE(number.Is("A"));
    EXPECT_TRUE(id.Is("5"));
    EXPECT_EQ(project, 7);
    EXPECT_TRUE(text.Is("箱"));
    EXPECT_TRUE(bound.Is("2.50"));
}

TEST(BillList, PassesErrorsOn) {
    CTables tables;
    EXPECT_EQ(FailureOf([&] { List(tables, {}); }), 91);
    const auto cnn = std::make_shared<ScriptedConnection>();
    cnn->FailAt(1, "no such table");
    tables.Cnn(cnn);
    try {
        List(tables, {.warehouse = Variant::Null()});
        ADD_FAILURE() << "no error";
    } catch (const DatabaseError& error) {
        EXPECT_EQ(error.Number(), kRefused);
        EXPECT_EQ(error.Description(), "no such table");
        EXPECT_EQ(error.Statement(),
                  corpus::Text("rs单据列表(\"入库\", \"\", \"\", \"\", \"\", \"\", Null, 0, 0, \"\", \"\", \"\", "
                               "\"\", \"\", \"\", \"\", \"\", 0, 0, 0, 0)"));
    }
}

}  // namespace
}  // namespace kpTables::test
