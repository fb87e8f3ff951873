// Counts of bills and the two halves of a transfer: results and failures.
#include <gtest/gtest.h>

#include <span>

#include "HandsOut.h"
#include "support/Failure.h"

namespace kpTables::test {
namespace {

/// Header rows of which only the count matters.
std::shared_ptr<ScriptedRecordset> NumbersCounted(std::int32_t count) {
    const auto rows = MakeRows({{"BillID", VarType::Long}}, {});
    rows->ReportCount(count);
    return rows;
}

TEST(BillNum, IsTheRecordCount) {
    for (const std::int32_t count : {0, 1, 32767, -1}) {
        const auto cnn = std::make_shared<ScriptedConnection>();
        cnn->Answer(NumbersCounted(count));
        CTables tables;
        tables.Cnn(cnn);
        EXPECT_EQ(tables.Get_BillNum(1, 1, "", "入库"), count);
    }
}

TEST(BillNum, PassesErrorsOn) {
    CTables tables;
    EXPECT_EQ(FailureOf([&] { tables.Get_BillNum(1, 1, "", "入库"); }), 91);
    const auto cnn = std::make_shared<ScriptedConnection>();
    cnn->Answer(NumbersCounted(32768)).FailAt(2);
    tables.Cnn(cnn);
    EXPECT_EQ(FailureOf([&] { tables.Get_BillNum(1, 1, "", "入库"); }), 6);
    EXPECT_EQ(FailureOf([&] { tables.Get_BillNum(1, 1, "", "入库"); }), kRefused);
}

TEST(BillCount, Text) {
    struct Case {
        std::int32_t count;
        const char* text;
    };
    const Case cases[] = {{0, "(无)"},         {1, "1 张"},         {9, "9 张"},
                          {12345, "12345 张"}, {32768, "32768 张"}, {1234567, "1234567 张"},
                          {-1, "-1 张"}};
    for (const Case& each : cases) {
        const auto cnn = std::make_shared<ScriptedConnection>();
        cnn->Answer(NumbersCounted(each.count));
        CTables tables;
        tables.Cnn(cnn);
        EXPECT_EQ(tables.GetBillCount("入库", "", 0, 0, 0, 0), each.text);
    }
}

TEST(BillCount, LeavesItsArguments) {
    CTables tables;
    tables.Cnn(std::make_shared<ScriptedConnection>());
    std::string kind = "销售 ";
    std::int16_t beginMonth = 1, startDay = 2, endMonth = 3, endDay = 4;
    tables.GetBillCount("入库", kind, beginMonth, startDay, endMonth, endDay);
    EXPECT_EQ(kind, "销售 ");
    EXPECT_EQ(beginMonth, 1);
    EXPECT_EQ(startDay, 2);
    EXPECT_EQ(endMonth, 3);
    EXPECT_EQ(endDay, 4);
}

TEST(BillCount, PassesErrorsOn) {
    CTables tables;
    EXPECT_EQ(FailureOf([&] { tables.GetBillCount("入库", "", 0, 0, 0, 0); }), 91);
    const auto cnn = std::make_shared<ScriptedConnection>();
    cnn->FailAt(1);
    tables.Cnn(cnn);
    EXPECT_EQ(FailureOf([&] { tables.GetBillCount("入库", "", 0, 0, 0, 0); }), kRefused);
}

std::shared_ptr<ScriptedRecordset> Bill(const Variant& month, const Variant& kind, const Variant& number) {
    return MakeRows({{"月份", VarType::Integer}, {"单据类型", VarType::String}, {"单据编号", VarType::String}},
                    {{month, kind, number}});
}

std::shared_ptr<ScriptedRecordset> Bills(const Rows& rows) { return MakeRows({{"BillID", VarType::Long}}, rows); }

const auto kFebruary = std::int16_t{2};

/// A call that looks for a counterpart.
using Asked = std::function<std::int32_t(CTables&)>;

struct CounterpartCase {
    const char* name;
    Asked ask;
    std::vector<RecordsetPtr> answers;
    std::int32_t found;
    const char* call;  ///< as the corpus has it
    const char* title;
};

void ExpectCounterparts(std::span<const CounterpartCase> cases) {
    for (const CounterpartCase& each : cases) {
        for (const bool isSQL : {false, true}) {
            SCOPED_TRACE(each.name);
            const auto cnn = std::make_shared<ScriptedConnection>();
            for (const auto& rows : each.answers) cnn->Answer(rows);
            CTables tables;
            tables.Cnn(cnn);
            tables.isSQL(isSQL);
            EXPECT_EQ(each.ask(tables), each.found);
            EXPECT_EQ(cnn->Statements(), corpus::Expected(each.call, each.title, isSQL));
        }
    }
}

RecordsetPtr CountUnknown(const std::shared_ptr<ScriptedRecordset>& rows) {
    rows->ReportCount(-1);
    return rows;
}

TEST(ShiftID, BothDirections) {
    const Asked outbound = [](CTables& t) { return t.GetShiftID(7, "出库"); };
    const Asked inbound = [](CTables& t) { return t.GetShiftID(7, "入库"); };
    const CounterpartCase cases[] = {
        {"of an outbound bill",
         outbound,
         {Bill(kFebruary, "调拨单", "D-1"), Bills({{31}})},
         31,
         R"(GetShiftID(7, "出库"))",
         "of an outbound bill"},
        {"of an inbound bill",
         inbound,
         {Bill(kFebruary, "调拨单", "D-1"), Bills({{32}})},
         32,
         R"(GetShiftID(7, "入库"))",
         "of an inbound bill"},
        {"the first of two",
         inbound,
         {Bill(kFebruary, "调拨单", "D-1"), Bills({{9}, {8}})},
         9,
         R"(GetShiftID(7, "入库"))",
         "of an inbound bill"},
        {"none",
         outbound,
         {Bill(kFebruary, "调拨单", "D-1"), Bills({})},
         0,
         R"(GetShiftID(7, "出库"))",
         "of an outbound bill"},
        {"the counterpart's count unknown",
         outbound,
         {Bill(kFebruary, "调拨单", "D-1"), CountUnknown(Bills({{31}}))},
         0,
         R"(GetShiftID(7, "出库"))",
         "of an outbound bill"},
        {"no such bill", outbound, {Bills({})}, 0, R"(GetShiftID(7, "出库"))", "no such bill"},
        {"the bill's count unknown",
         inbound,
         {CountUnknown(Bill(kFebruary, "调拨单", "D-1"))},
         0,
         R"(GetShiftID(7, "入库"))",
         "no such bill"},
        {"a bill of Nulls",
         inbound,
         {Bill(Variant::Null(), Variant::Null(), Variant::Null()), Bills({{33}})},
         33,
         R"(GetShiftID(7, "入库"))",
         "a bill of Nulls"},
        {"texts as they stand",
         inbound,
         {Bill(kFebruary, " 调拨单 ", "O'X"), Bills({})},
         0,
         R"(GetShiftID(7, "入库"))",
         "texts unchanged"},
        {"an id as text",
         [](CTables& t) { return t.GetShiftID("0007", "出库"); },
         {Bills({})},
         0,
         R"(GetShiftID("0007", "出库"))",
         "an id as text"},
        {"a Null id",
         [](CTables& t) { return t.GetShiftID(Variant::Null(), "出库"); },
         {Bills({})},
         0,
         R"(GetShiftID(Null, "出库"))",
         "a Null id"},
        {"a cost bill",
         [](CTables& t) { return t.GetShiftID(7, "成本"); },
         {},
         0,
         R"(GetShiftID(7, "成本"))",
         "a cost bill"},
        {"no kind", [](CTables& t) { return t.GetShiftID(7, ""); }, {}, 0, R"(GetShiftID(7, ""))", "no kind"},
        {"a blank behind",
         [](CTables& t) { return t.GetShiftID(7, "出库 "); },
         {},
         0,
         R"(GetShiftID(7, "出库 "))",
         "a blank behind"},
    };
    ExpectCounterparts(cases);
}

TEST(ShiftID, AnswersZeroAfterAnyError) {
    CTables tables;
    EXPECT_EQ(tables.GetShiftID(7, "出库"), 0);
    for (const int failing : {1, 2}) {
        SCOPED_TRACE(failing);
        const auto cnn = std::make_shared<ScriptedConnection>();
        cnn->Answer(Bill(kFebruary, "调拨单", "D-1")).Answer(Bills({{31}})).FailAt(failing);
        tables.Cnn(cnn);
        EXPECT_EQ(tables.GetShiftID(7, "出库"), 0);
        EXPECT_EQ(cnn->Statements().size(), static_cast<std::size_t>(failing));
    }
    const RecordsetPtr unreadable[] = {
        Bills({{7}}),  // no month
        MakeRows({{"月份", VarType::Long}, {"单据类型", VarType::String}, {"单据编号", VarType::String}},
                 {{32768, "调拨单", "D-1"}}),
    };
    for (const auto& rows : unreadable) {
        const auto cnn = std::make_shared<ScriptedConnection>();
        cnn->Answer(rows).Answer(Bills({{31}}));
        tables.Cnn(cnn);
        EXPECT_EQ(tables.GetShiftID(7, "出库"), 0);
        EXPECT_EQ(cnn->Statements().size(), 1u);
    }
    const auto cnn = std::make_shared<ScriptedConnection>();
    cnn->Answer(Bill(kFebruary, "调拨单", "D-1")).Answer(Bills({{Variant::Null()}}));
    tables.Cnn(cnn);
    EXPECT_EQ(tables.GetShiftID(7, "出库"), 0);
}

TEST(FromBillID, OutboundHalfOfAnInboundBill) {
    const Asked seven = [](CTables& t) { return t.Get_FromBillID(7); };
    const CounterpartCase cases[] = {
        {"found", seven, {Bill(kFebruary, "调拨单", "D-1"), Bills({{32}})}, 32, "Get_FromBillID(7)", "found"},
        {"the first of two",
         seven,
         {Bill(kFebruary, "", Variant::Null()), Bills({{9}, {8}})},
         9,
         "Get_FromBillID(7)",
         "a bill without kind and number"},
        {"none", seven, {Bill(kFebruary, "调拨单", "D-1"), Bills({})}, 0, "Get_FromBillID(7)", "found"},
        {"no such bill", seven, {Bills({})}, 0, "Get_FromBillID(7)", "no such bill"},
        {"the bill's count unknown",
         seven,
         {CountUnknown(Bill(kFebruary, "调拨单", "D-1"))},
         0,
         "Get_FromBillID(7)",
         "no such bill"},
        {"the counterpart's count unknown",
         seven,
         {Bill(kFebruary, "调拨单", "D-1"), CountUnknown(Bills({{32}}))},
         0,
         "Get_FromBillID(7)",
         "found"},
        {"an id as text",
         [](CTables& t) { return t.Get_FromBillID("0007"); },
         {Bills({})},
         0,
         R"(Get_FromBillID("0007"))",
         "an id as text"},
    };
    ExpectCounterparts(cases);
}

TEST(FromBillID, PassesErrorsOn) {
    CTables tables;
    EXPECT_EQ(FailureOf([&] { tables.Get_FromBillID(7); }), 91);
    for (const int failing : {1, 2}) {
        SCOPED_TRACE(failing);
        const auto cnn = std::make_shared<ScriptedConnection>();
        cnn->Answer(Bill(kFebruary, "调拨单", "D-1")).Answer(Bills({{31}})).FailAt(failing);
        tables.Cnn(cnn);
        EXPECT_EQ(FailureOf([&] { tables.Get_FromBillID(7); }), kRefused);
        EXPECT_EQ(cnn->Statements().size(), static_cast<std::size_t>(failing));
    }
}

TEST(FromBillID, AMonthThatIsNullIsAnError) {
    const auto cnn = std::make_shared<ScriptedConnection>();
    cnn->Answer(Bill(Variant::Null(), "调拨单", "D-1")).Answer(Bills({{31}}));
    CTables tables;
    tables.Cnn(cnn);
    EXPECT_EQ(FailureOf([&] { tables.Get_FromBillID(7); }), 94);
    EXPECT_EQ(cnn->Statements(), corpus::Expected("Get_FromBillID(7)", "no such bill"));
}

}  // namespace
}  // namespace kpTables::test
