// The daily report: a day's sums per product, and a month's movements per day.
#include <gtest/gtest.h>

#include "HandsOut.h"
#include "kpTables/Convert.h"
#include "support/Failure.h"

namespace kpTables::test {
namespace {

// rs日报记录

TEST(DayRecords, HandsOutTheConnectionsRowsOrItsError) {
    const Date day = *Date::ParseIso("2004-03-07");
    for (const bool isSQL : {false, true}) {
        const auto run = [&](CTables& t) {
            t.isSQL(isSQL);
            return t.rs日报记录(0, 0, day, "入库");
        };
        ExpectHandsOut(isSQL ? "SQL Server" : "Jet", run);
        CTables tables;
        EXPECT_EQ(FailureOf([&] { run(tables); }), 91);
        const auto cnn = std::make_shared<ScriptedConnection>();
        cnn->FailAt(1);
        tables.Cnn(cnn);
        EXPECT_EQ(FailureOf([&] { run(tables); }), kRefused);
    }
}

// rs日报列表

/// A day's movements as the database sums them.
struct Movement {
    std::int16_t day;
    Variant quantity;
    Variant amount;
};

RecordsetPtr Sums(const std::vector<Movement>& movements) {
    Rows rows;
    for (const auto& each : movements) rows.push_back({std::int16_t{3}, each.day, each.amount, each.quantity});
    return MakeRows(
        {{"月份", VarType::Integer}, {"日子", VarType::Integer}, {"金额", VarType::Double}, {"数量", VarType::Double}},
        rows);
}

RecordsetPtr Opening(const Variant& quantity, const Variant& amount) {
    return MakeRows({{"数量", VarType::Double}, {"金额", VarType::Double}}, {{quantity, amount}});
}

struct Month {
    RecordsetPtr inbound;
    RecordsetPtr outbound;
    RecordsetPtr opening;
};

RecordsetPtr Report(const Month& month) {
    const auto cnn = std::make_shared<ScriptedConnection>();
    cnn->Answer(month.inbound).Answer(month.outbound).Answer(month.opening);
    CTables tables;
    tables.Cnn(cnn);
    return tables.rs日报列表(3, 0);
}

/// All rows from the current one on, as numbers.
std::vector<std::vector<double>> NumbersOf(Recordset& rows) {
    std::vector<std::vector<double>> numbers;
    for (; !rows.Eof(); rows.MoveNext()) {
        auto& row = numbers.emplace_back();
        for (int i = 0; i < rows.FieldCount(); ++i) row.push_back(CDbl(rows.GetValue(i)));
    }
    return numbers;
}

TEST(MonthDays, FieldsOfARecordsetOfItsOwn) {
    const auto report = Report({Sums({{5, 1.0, 2.0}}), Sums({}), Opening(0.0, 0.0)});
    const FieldInfo fields[] = {
        {"日子", VarType::Long},       {"期初数量", VarType::Double}, {"期初金额", VarType::Double},
        {"入库数量", VarType::Double}, {"入库金额", VarType::Double}, {"出库数量", VarType::Double},
        {"出库金额", VarType::Double}, {"库存数量", VarType::Double}, {"库存金额", VarType::Double},
    };
    ASSERT_EQ(report->FieldCount(), 9);
    for (int i = 0; i < 9; ++i) {
        EXPECT_EQ(report->FieldAt(i).name, fields[i].name);
        EXPECT_EQ(report->FieldAt(i).type, fields[i].type);
    }
    report->SetValue(1, 7.5);  // the host may go on editing it
    report->Update();
    EXPECT_TRUE(report->GetValue(1).Is(7.5));
    EXPECT_TRUE(report->GetValue(0).Is(std::int32_t{5}));
}

TEST(MonthDays, Figures) {
    const Variant null = Variant::Null();
    struct Case {
        const char* name;
        Month month;
        std::vector<std::vector<double>> days;
    };
    const Case cases[] = {
        {"a day with both directions",
         {Sums({{5, 4.0, 24.0}}), Sums({{5, 3.0, 21.0}}), Opening(10.0, 50.0)},
         {{5, 10, 50, 4, 24, 3, 21, 11, 53}}},
        {"stock is carried from day to day",
         {Sums({{1, 4.0, 24.0}, {9, 2.0, 14.0}}), Sums({{9, 5.0, 40.0}}), Opening(10.0, 50.0)},
         {{1, 10, 50, 4, 24, 0, 0, 14, 74}, {9, 14, 74, 2, 14, 5, 40, 11, 48}}},
        {"outbound-only days come last, through which the stock passes there",
         {Sums({{10, 1.0, 10.0}, {20, 2.0, 20.0}}), Sums({{2, 1.0, 5.0}, {10, 3.0, 30.0}, {25, 4.0, 8.0}}),
          Opening(100.0, 1000.0)},
         {{10, 100, 1000, 1, 10, 3, 30, 98, 980},
          {20, 98, 980, 2, 20, 0, 0, 100, 1000},
          {2, 100, 1000, 0, 0, 1, 5, 99, 995},
          {25, 99, 995, 0, 0, 4, 8, 95, 987}}},
        {"outbound days alone",
         {Sums({}), Sums({{3, 1.0, 2.0}, {30, 1.5, 3.0}}), Opening(2.0, 4.0)},
         {{3, 2, 4, 0, 0, 1, 2, 1, 2}, {30, 1, 2, 0, 0, 1.5, 3, -0.5, -1}}},
        {"Null counts 0 everywhere",
         {Sums({{5, null, null}, {6, 1.0, null}}), Sums({{5, null, null}, {6, null, 2.0}}), Opening(null, null)},
         {{5, 0, 0, 0, 0, 0, 0, 0, 0}, {6, 0, 0, 1, 0, 0, 2, 1, -2}}},
        {"amounts go on in steps of a ten-thousandth",
         {Sums({{1, 0.0, 0.00004}, {2, 0.0, 0.00004}, {3, 0.0, 0.00016}}), Sums({}), Opening(0.0, 10.00006)},
         {{1, 0, 10.0001, 0, 0.00004, 0, 0, 0, 10.0001},
          {2, 0, 10.0001, 0, 0.00004, 0, 0, 0, 10.0001},
          {3, 0, 10.0001, 0, 0.00016, 0, 0, 0, 10.0003}}},
        {"quantities stay Doubles, in before out",
         {Sums({{1, 0.2, 0.0}}), Sums({{1, 0.3, 0.0}}), Opening(0.1, 0.0)},
         {{1, 0.1, 0, 0.2, 0, 0.3, 0, (0.1 + 0.2) - 0.3, 0}}},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.name);
        const auto report = Report(each.month);
        EXPECT_EQ(report->RecordCount(), static_cast<std::int32_t>(each.days.size()));
        EXPECT_EQ(report->AbsolutePosition(), 1);
        EXPECT_EQ(NumbersOf(*report), each.days);
    }
}

TEST(MonthDays, AMonthWithoutBillsHasNone) {
    const auto report = Report({Sums({}), Sums({}), Opening(10.0, 50.0)});
    ASSERT_NE(report, nullptr);
    EXPECT_EQ(report->RecordCount(), 0);
    EXPECT_TRUE(report->Eof());
    EXPECT_EQ(report->FieldCount(), 9);
}

TEST(MonthDays, EveryErrorReachesTheCaller) {
    CTables tables;
    EXPECT_EQ(FailureOf([&] { tables.rs日报列表(3, 0); }), 91);
    for (const int failing : {1, 2, 3}) {
        SCOPED_TRACE(failing);
        const auto cnn = std::make_shared<ScriptedConnection>();
        cnn->Answer(Sums({{5, 1.0, 2.0}})).Answer(Sums({{6, 1.0, 2.0}})).FailAt(failing);
        tables.Cnn(cnn);
        EXPECT_EQ(FailureOf([&] { tables.rs日报列表(3, 0); }), kRefused);
        EXPECT_EQ(cnn->Statements().size(), static_cast<std::size_t>(failing));
    }
}

}  // namespace
}  // namespace kpTables::test
