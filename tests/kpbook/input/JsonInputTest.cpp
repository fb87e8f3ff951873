#include "kpbook/input/JsonInput.h"

#include <gtest/gtest.h>

#include "kpTables/Error.h"
#include "kpTables/MemoryGrid.h"
#include "kpbook/HostObjects.h"
#include "text/Utf8.h"

namespace kpTables::kpbook::input {
namespace {

struct GoodJson {
    std::string json;
    Variant value;
};

TEST(JsonInput, ReadsEveryForm) {
    const GoodJson cases[] = {
        {"null", Variant::Null()},
        {"true", true},
        {"false", false},
        {"0", std::int32_t{0}},
        {"-5", std::int32_t{-5}},
        {"2147483647", std::int32_t{2147483647}},
        {"-2147483648", std::int32_t{-2147483647 - 1}},
        {"2147483648", 2147483648.0},
        {"-2147483649", -2147483649.0},
        {"99999999999999999999", 1e20},
        {"25.0", 25.0},
        {"0.1", 0.1},
        {"1e3", 1000.0},
        {"\"\"", ""},
        {"\"仓库\"", "仓库"},
        {"\"\\u4ed3\\n\"", "仓\n"},
        {"\"12\"", "12"},
        {R"({"empty":true})", Variant()},
        {R"({"missing":true})", Variant::Missing()},
        {R"({"nothing":true})", nullptr},
        {R"({"date":"2004-03-07"})", *Date::FromParts({2004, 3, 7, 0, 0, 0})},
        {R"({"date":"2004-03-07T12:30:00"})", *Date::FromParts({2004, 3, 7, 12, 30, 0})},
        {R"({"currency":"12.5"})", Currency::FromScaled(125000)},
        {R"({"currency":12.5})", Currency::FromScaled(125000)},
        {R"({"currency":-3})", Currency::FromScaled(-30000)},
        {R"({"currency":9007199254740})", Currency::FromScaled(90071992547400000)},
        {R"({"currency":922337203685477})", Currency::FromScaled(9223372036854770000)},
        {R"({"currency":"0.00005"})", Currency::FromScaled(0)},
        {R"({"currency":"0.00015"})", Currency::FromScaled(2)},
    };
    for (const auto& each : cases) EXPECT_TRUE(ReadJsonValue(each.json).Is(each.value)) << each.json;
}

TEST(JsonInput, ReadsArrays) {
    const auto value = ReadJsonValue(R"({"array":[1,"a",{"currency":"2"},{"array":[null]}]})");
    const auto* array = value.If<std::shared_ptr<VariantArray>>();
    ASSERT_TRUE(array);
    ASSERT_EQ((*array)->items.size(), 4U);
    ASSERT_EQ((*array)->bounds.size(), 1U);
    EXPECT_EQ((*array)->bounds[0].count, 4);
    EXPECT_TRUE((*array)->items[0].Is(std::int32_t{1}));
    EXPECT_TRUE((*array)->items[1].Is("a"));
    EXPECT_TRUE((*array)->items[2].Is(Currency::FromScaled(20000)));
    const auto* inner = (*array)->items[3].If<std::shared_ptr<VariantArray>>();
    ASSERT_TRUE(inner);
    ASSERT_EQ((*inner)->items.size(), 1U);
    EXPECT_TRUE((*inner)->items[0].IsNull());
}

TEST(JsonInput, ReadsARowInItsColumnsOrder) {
    const auto value = ReadJsonValue(R"({"row":{"月份":3,"日子":"7","价":{"currency":"0.5"},"无":null}})");
    const auto* object = value.If<ObjectPtr>();
    ASSERT_TRUE(object);
    auto* row = dynamic_cast<Recordset*>(object->get());
    ASSERT_TRUE(row);
    ASSERT_EQ(row->FieldCount(), 4);
    EXPECT_EQ(row->FieldAt(0).name, "月份");
    EXPECT_EQ(row->FieldAt(0).type, VarType::Long);
    EXPECT_EQ(row->FieldAt(1).type, VarType::String);
    EXPECT_EQ(row->FieldAt(2).type, VarType::Currency);
    EXPECT_EQ(row->FieldAt(3).type, VarType::Empty);
    EXPECT_EQ(row->RecordCount(), 1);
    EXPECT_FALSE(row->Eof());
    EXPECT_TRUE(row->GetValue(0).Is(std::int32_t{3}));
    EXPECT_TRUE(row->GetValue(1).Is("7"));
    EXPECT_TRUE(row->GetValue(2).Is(Currency::FromScaled(5000)));
    EXPECT_TRUE(row->GetValue(3).IsNull());
}

TEST(JsonInput, ReadsAProgressBar) {
    const auto value = ReadJsonValue(R"({"progress":true})");
    const auto* object = value.If<ObjectPtr>();
    ASSERT_TRUE(object);
    EXPECT_TRUE(dynamic_cast<ProgressBar*>(object->get()));
}

std::shared_ptr<MemoryGrid> GridOf(const std::string& json) {
    const auto value = ReadJsonValue(json);
    const auto* object = value.If<ObjectPtr>();
    return object ? std::dynamic_pointer_cast<MemoryGrid>(*object) : nullptr;
}

TEST(JsonInput, ReadsAGrid) {
    const auto grid = GridOf(R"({"grid":{"FixedRows":2,"cols":[{"key":"a","title":"甲","hidden":true,"width":1.5},{}],)"
                             R"("rows":[["x",{"currency":"2.5"}],[7],[null,{"empty":true}],[]]}})");
    ASSERT_TRUE(grid);
    EXPECT_EQ(grid->FixedRows(), 2);
    EXPECT_EQ(grid->Rows(), 6);
    ASSERT_EQ(grid->Cols(), 2);
    EXPECT_EQ(grid->ColKey(0), "a");
    EXPECT_EQ(grid->TextMatrix(0, 0), "甲");
    EXPECT_EQ(grid->TextMatrix(1, 0), "");
    EXPECT_TRUE(grid->ColHidden(0));
    EXPECT_EQ(grid->ColWidth(0), 1.5);
    EXPECT_EQ(grid->ColKey(1), "");
    EXPECT_EQ(grid->TextMatrix(0, 1), "");
    EXPECT_FALSE(grid->ColHidden(1));
    EXPECT_EQ(grid->ColWidth(1), 0);
    EXPECT_TRUE(grid->Cell(2, 0).Is("x"));
    EXPECT_TRUE(grid->Cell(2, 1).Is(Currency::FromScaled(25000)));
    EXPECT_TRUE(grid->Cell(3, 0).Is(std::int32_t{7}));
    EXPECT_TRUE(grid->Cell(3, 1).IsEmpty());
    EXPECT_TRUE(grid->Cell(4, 0).IsNull());
    EXPECT_TRUE(grid->Cell(4, 1).IsEmpty());
    EXPECT_TRUE(grid->Cell(5, 0).IsEmpty());
}

TEST(JsonInput, AGridHasOneHeaderRowUnlessItSaysOtherwise) {
    const auto plain = GridOf(R"({"grid":{}})");
    ASSERT_TRUE(plain);
    EXPECT_EQ(plain->FixedRows(), 1);
    EXPECT_EQ(plain->Rows(), 1);
    EXPECT_EQ(plain->Cols(), 0);
    const auto none = GridOf(R"({"grid":{"rows":[["x"]],"cols":[{"key":"a"}],"FixedRows":0}})");
    ASSERT_TRUE(none) << "the order of the keys does not count";
    EXPECT_EQ(none->Rows(), 1);
    EXPECT_EQ(none->TextMatrix(0, 0), "x");
}

struct BadJson {
    std::string json;
    int number;
    std::string part;  ///< of the description
};

void ExpectRefused(const BadJson& each) {
    try {
        ReadJsonValue(each.json);
        ADD_FAILURE() << each.json << " was read";
    } catch (const Error& error) {
        EXPECT_EQ(error.Number(), each.number) << each.json;
        EXPECT_NE(error.Description().find(each.part), std::string::npos) << each.json << ": " << error.Description();
    }
}

TEST(JsonInput, RefusesWhatIsNoForm) {
    const BadJson cases[] = {
        {R"({"color":1})", 5, "no such value form: {\"color\":1}"},
        {"{}", 5, "no such value form: {}"},
        {R"({"empty":false})", 5, "no such value form"},
        {R"({"progress":1})", 5, "no such value form"},
        {R"({"date":"2004-03-07","time":"12:30"})", 5, "no such value form"},
        {R"([1,2])", 5, R"(a list is written {"array":[...]})"},
        {R"({"date":"2004-02-30"})", 5, "\"2004-02-30\" is no date"},
        {R"({"date":"7.3.2004"})", 5, "is no date"},
        {R"({"date":5})", 5, "takes a text"},
        {R"({"currency":true})", 5, "takes a decimal text or a number"},
        {R"({"currency":"abc"})", 13, ""},
        {R"({"currency":"922337203685477.5808"})", 6, ""},
        {R"({"currency":922337203685478})", 6, ""},
        {R"({"array":5})", 5, "takes a list"},
        {R"({"row":[1]})", 5, "takes an object"},
        {R"({"row":{"a":{"array":[]}}})", 5, "column \"a\" of a row cannot hold"},
        {R"({"row":{"a":{"missing":true}}})", 5, "cannot hold"},
        {R"({"row":{"a":{"nothing":true}}})", 5, "cannot hold"},
        {R"({"grid":[]})", 5, "\"grid\" takes an object, not []"},
        {R"({"grid":{"Rows":[]}})", 5, "unknown key \"Rows\" of a grid"},
        {R"({"grid":{"FixedRows":-1}})", 5, "\"FixedRows\" takes a number from 0 to 1000, not -1"},
        {R"({"grid":{"FixedRows":1001}})", 5, "not 1001"},
        {R"({"grid":{"FixedRows":1.0}})", 5, "\"FixedRows\" takes"},
        {R"({"grid":{"FixedRows":null}})", 5, "\"FixedRows\" takes"},
        {R"({"grid":{"cols":{}}})", 5, "\"cols\" takes a list, not {}"},
        {R"({"grid":{"cols":["a"]}})", 5, "a grid's column takes an object, not \"a\""},
        {R"({"grid":{"cols":[{"name":"a"}]}})", 5, "unknown key \"name\" of a grid's column"},
        {R"({"grid":{"cols":[{"key":1}]}})", 5, "\"key\" takes a text, not 1"},
        {R"({"grid":{"cols":[{"title":null}]}})", 5, "\"title\" takes a text"},
        {R"({"grid":{"cols":[{"hidden":0}]}})", 5, "\"hidden\" takes true or false, not 0"},
        {R"({"grid":{"cols":[{"width":"5"}]}})", 5, "\"width\" takes a number, not \"5\""},
        {R"({"grid":{"rows":5}})", 5, "\"rows\" takes a list, not 5"},
        {R"({"grid":{"rows":["x"]}})", 5, "a grid's row takes a list, not \"x\""},
        {R"({"grid":{"cols":[{}],"rows":[["x","y"]]}})", 5, "more cells than there are columns: [\"x\",\"y\"]"},
        {R"({"grid":{"rows":[["x"]]}})", 5, "more cells than there are columns"},
        {R"({"grid":{"cols":[{}],"rows":[[{"array":[]}]]}})", 5, "a grid's cell cannot hold {\"array\":[]}"},
        {R"({"grid":{"cols":[{}],"rows":[[{"missing":true}]]}})", 5, "a grid's cell cannot hold"},
        {R"({"grid":{"cols":[{}],"rows":[[{"nothing":true}]]}})", 5, "a grid's cell cannot hold"},
        {R"({"grid":{"cols":[{}],"rows":[[{"color":1}]]}})", 5, "no such value form"},
        {"1e999", 6, ""},
        {"nul", 5, "not JSON at column"},
        {"", 5, "not JSON at column"},
        {"\"a\" \"b\"", 5, "not JSON at column"},
        {"\"\xFF\"", 5, "not JSON at column"},
    };
    for (const auto& each : cases) ExpectRefused(each);
}

/// The description of the error that a text raises; "" for none.
std::string RefusalOf(const std::string& json) {
    try {
        ReadJsonValue(json);
    } catch (const Error& error) {
        return error.Description();
    }
    return {};
}

TEST(JsonInput, RefusesInWholeCharacters) {
    for (std::size_t before = 0; before < 3; ++before) {
        std::string name(before, 'x');
        for (int i = 0; i < 40; ++i) name += "仓";
        const std::string refusal = RefusalOf("{\"" + name + "\":1}");
        EXPECT_TRUE(text::IsValidUtf8(refusal)) << refusal;
        EXPECT_TRUE(refusal.ends_with("仓...")) << refusal;
    }
    const std::string refusal = RefusalOf("{\"c\x8B\":1}");
    EXPECT_TRUE(text::IsValidUtf8(refusal)) << refusal;
    EXPECT_NE(refusal.find("\uFFFD"), std::string::npos) << refusal;
}

TEST(JsonInput, RefusesDeepNesting) {
    const std::string deep = std::string(100'000, '[') + std::string(100'000, ']');
    ExpectRefused({deep, 5, "nested too deep"});
}

}  // namespace
}  // namespace kpTables::kpbook::input
