// Reading a recordset's rows as a host does: in a range-based for, with typed fields.
#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "kpTables/Error.h"
#include "kpTables/InOut.h"
#include "kpTables/MemoryRecordset.h"

namespace kpTables {
namespace {

RecordsetPtr SomeRows() {
    auto made = std::make_shared<MemoryRecordset>(std::vector<FieldInfo>{
        {"pdID", VarType::Long}, {"金额", VarType::Currency}, {"日期", VarType::Date}, {"备注", VarType::String}});
    MemoryRecordset& rows = *made;
    for (int i = 1; i <= 3; ++i) {
        rows.AddNew();
        rows.SetValue(0, i * 40000);
        rows.SetValue(1, Currency::FromDecimalText(std::to_string(i) + ".2501"));
        if (i != 2) rows.SetValue(2, Date::FromYearMonthDay(2026, 1, i));
        if (i != 2) rows.SetValue(3, "note " + std::to_string(i));
        rows.Update();
    }
    return made;
}

template <class Call>
std::int32_t NumberOf(const Call& call) {
    try {
        call();
    } catch (const Error& error) {
        return error.Number();
    }
    return 0;
}

TEST(Rows, AreReadFromTheFirstOnWithTypedFields) {
    const RecordsetPtr made = SomeRows();
    Recordset& rows = *made;
    rows.MoveFirst();
    rows.MoveNext();
    std::vector<std::int32_t> ids;
    Currency total;
    std::string notes;
    int dates = 0;
    for (auto& row : *made) {
        ids.push_back(row.get<std::int32_t>("PDID"));
        total = total + row.get<Currency>("金额");
        notes += row.get<std::string>(3) + ";";
        dates += row.get<std::optional<Date>>("日期").has_value() ? 1 : 0;
    }
    EXPECT_EQ(ids, (std::vector<std::int32_t>{40000, 80000, 120000}));
    EXPECT_EQ(total, Currency::FromDecimalText("6.7503"));
    EXPECT_EQ(notes, "note 1;;note 3;");
    EXPECT_EQ(dates, 2);
    EXPECT_TRUE(rows.Eof());
    EXPECT_EQ(rows.AbsolutePosition(), PositionEof);
}

TEST(Rows, OfAnEmptyRecordsetAreNone) {
    MemoryRecordset rows({{"pdID", VarType::Long}});
    for (auto& row : rows) FAIL() << row.get<std::string>(0);
}

TEST(Rows, SayWhatDoesNotFit) {
    const RecordsetPtr made = SomeRows();
    Recordset& rows = *made;
    rows.MoveFirst();
    const Row row(rows);
    EXPECT_EQ(NumberOf([&] { row.get<std::int16_t>("pdID"); }), static_cast<int>(ErrorNumber::Overflow));
    EXPECT_EQ(NumberOf([&] { row.get<double>("备注"); }), static_cast<int>(ErrorNumber::TypeMismatch));
    EXPECT_EQ(NumberOf([&] { row.get<double>("价格"); }), static_cast<int>(ErrorNumber::ItemNotFound));
    EXPECT_EQ(NumberOf([&] { row.get<double>(4); }), static_cast<int>(ErrorNumber::ItemNotFound));
    rows.MoveNext();
    EXPECT_EQ(NumberOf([&] { row.get<Date>("日期"); }), static_cast<int>(ErrorNumber::InvalidUseOfNull));
    EXPECT_EQ(row.get<std::optional<std::string>>("备注"), std::nullopt);
    EXPECT_TRUE(row.get<Variant>("备注").IsNull());
    rows.Find("pdID=120000", 0, SearchForward);
    EXPECT_EQ(row.get<double>("金额"), 3.2501);
}

TEST(InOutArguments, DoNotConvertSilently) {
    using Month = InOut<std::int16_t>;
    EXPECT_EQ(Month(12).get(), 12);
    EXPECT_EQ(Month(std::uint64_t{12}).get(), 12);
    EXPECT_EQ(NumberOf([] { Month month(70000); }), static_cast<int>(ErrorNumber::Overflow));
    EXPECT_EQ(NumberOf([] { InOut<std::int32_t> id(std::int64_t{1} << 31); }), static_cast<int>(ErrorNumber::Overflow));
    EXPECT_EQ(InOut<double>(3).get(), 3.0);
    EXPECT_EQ(InOut<std::string>("入库").get(), "入库");
    static_assert(!std::is_constructible_v<Month, double>);
    static_assert(!std::is_constructible_v<Month, bool>);
    static_assert(!std::is_constructible_v<InOut<bool>, int>);
    static_assert(!std::is_constructible_v<InOut<bool>, const char*>);
    std::int16_t month = 3;
    Month bound(month);
    bound = 4;
    EXPECT_EQ(month, 4);
}

}  // namespace
}  // namespace kpTables
