#include "kpbook/output/JsonText.h"

#include <gtest/gtest.h>

#include <limits>

#include "kpTables/Error.h"
#include "kpTables/MemoryGrid.h"
#include "kpTables/MemoryRecordset.h"
#include "kpbook/HostObjects.h"

namespace kpTables::kpbook::output {
namespace {

std::string Json(const Variant& value) {
    std::string text;
    AppendJsonValue(text, value);
    return text;
}

struct JsonCase {
    Variant value;
    std::string json;
};

TEST(JsonText, ValuesInArgumentForm) {
    const JsonCase cases[] = {
        {Variant(), R"({"empty":true})"},
        {Variant::Null(), "null"},
        {Variant::Missing(), R"({"missing":true})"},
        {nullptr, R"({"nothing":true})"},
        {true, "true"},
        {false, "false"},
        {std::int16_t{-5}, "-5"},
        {std::int32_t{2147483647}, "2147483647"},
        {25.0, "25.0"},
        {0.0, "0.0"},
        {-0.0, "-0.0"},
        {0.1, "0.1"},
        {66.666666666666671, "66.66666666666667"},
        {1e300, "1e+300"},
        {1.5e-10, "1.5e-10"},
        {123456789.0, "123456789.0"},
        {5e-324, "5e-324"},
        {Currency::FromScaled(125000), R"({"currency":"12.5"})"},
        {Currency::FromScaled(-1), R"({"currency":"-0.0001"})"},
        {*Date::FromParts({2004, 3, 7, 0, 0, 0}), R"({"date":"2004-03-07"})"},
        {*Date::FromParts({2004, 3, 7, 12, 30, 0}), R"({"date":"2004-03-07T12:30:00"})"},
        {"", R"("")"},
        {"仓库 A", R"("仓库 A")"},
        {"say \"hi\" \\ / \n\r\t\x01\x1F", R"("say \"hi\" \\ / \n\r\t\u0001\u001f")"},
        {"bad \xFF byte", "\"bad \xEF\xBF\xBD byte\""},
        {std::make_shared<VariantArray>(std::vector<Variant>{std::int32_t{1}, "a", Variant::Null()}),
         R"({"array":[1,"a",null]})"},
        {std::make_shared<VariantArray>(), R"({"array":[]})"},
        {std::make_shared<RecordingProgressBar>(), R"({"progress":true})"},
        {std::make_shared<RowArgument>(std::vector<std::pair<std::string, Variant>>{
             {"月份", std::int32_t{3}}, {"价", Currency::FromScaled(5000)}}),
         R"({"row":{"月份":3,"价":{"currency":"0.5"}}})"},
    };
    for (const auto& each : cases) EXPECT_EQ(Json(each.value), each.json);
}

TEST(JsonText, ArrayOfTwoDimensionsNests) {
    auto array = std::make_shared<VariantArray>();
    array->bounds = {{0, 2}, {1, 3}};
    for (std::int32_t i = 1; i <= 6; ++i) array->items.emplace_back(i);
    EXPECT_EQ(Json(array), R"({"array":[[1,2,3],[4,5,6]]})");
}

TEST(JsonText, GridsInArgumentForm) {
    EXPECT_EQ(Json(std::make_shared<MemoryGrid>(0)), R"({"grid":{"FixedRows":0,"cols":[],"rows":[]}})");

    const auto grid = std::make_shared<MemoryGrid>(2);
    grid->AddColumn({"a", "say \"甲\"", true, 1.5});
    grid->AddColumn({"", "", false, 100});
    grid->SetTextMatrix(1, 0, "the second header row is not written");
    grid->AddRow({"x", Currency::FromScaled(25000)});
    grid->AddRow({std::int32_t{7}});
    grid->AddRow({Variant::Null(), 25.0});
    EXPECT_EQ(Json(grid),
              R"({"grid":{"FixedRows":2,"cols":[{"key":"a","title":"say \"甲\"","hidden":true,"width":1.5},)"
              R"({"key":"","title":"","hidden":false,"width":100}],)"
              R"("rows":[["x",{"currency":"2.5"}],[7,""],[null,25.0]]}})");
}

TEST(JsonText, NumberThatIsNotFiniteOverflows) {
    for (const double value : {std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
                               std::numeric_limits<double>::quiet_NaN()}) {
        try {
            Json(value);
            FAIL() << value;
        } catch (const Error& error) {
            EXPECT_EQ(error.Number(), 6);
        }
    }
}

TEST(JsonText, RecordsetIsReadToItsEnd) {
    auto recordset = std::make_shared<MemoryRecordset>(std::vector<FieldInfo>{{"flag", VarType::Boolean},
                                                                              {"月份", VarType::Integer},
                                                                              {"id", VarType::Long},
                                                                              {"数量", VarType::Double},
                                                                              {"金额", VarType::Currency},
                                                                              {"日期", VarType::Date},
                                                                              {"说明", VarType::String},
                                                                              {"何", VarType::Empty}});
    recordset->AddNew();
    recordset->SetValue(0, true);
    recordset->SetValue(1, std::int16_t{3});
    recordset->SetValue(2, std::int32_t{70000});
    recordset->SetValue(3, 25.0);
    recordset->SetValue(4, Currency::FromScaled(125000));
    recordset->SetValue(5, *Date::FromParts({2004, 3, 7, 0, 0, 0}));
    recordset->SetValue(6, "水泥");
    recordset->SetValue(7, Variant::Null());
    recordset->Update();
    recordset->AddNew();
    recordset->SetValue(5, *Date::FromParts({2004, 3, 7, 12, 30, 0}));
    recordset->Update();
    recordset->MoveFirst();
    EXPECT_EQ(Json(recordset),
              R"({"columns":[{"name":"flag","type":"Boolean"},{"name":"月份","type":"Integer"},)"
              R"({"name":"id","type":"Long"},{"name":"数量","type":"Double"},{"name":"金额","type":"Currency"},)"
              R"({"name":"日期","type":"Date"},{"name":"说明","type":"String"},{"name":"何","type":"Empty"}],)"
              R"("rows":[[true,3,70000,25.0,"12.5","2004-03-07","水泥",null],)"
              R"([null,null,null,null,null,"2004-03-07T12:30:00",null,null]]})");
    EXPECT_TRUE(recordset->Eof());
}

TEST(JsonText, EmptyRecordset) {
    EXPECT_EQ(Json(std::make_shared<MemoryRecordset>(std::vector<FieldInfo>{{"a", VarType::Long}})),
              R"({"columns":[{"name":"a","type":"Long"}],"rows":[]})");
}

}  // namespace
}  // namespace kpTables::kpbook::output
