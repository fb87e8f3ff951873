#include "kpbook/JsonInput.h"

#include <gtest/gtest.h>

#include "kpTables/Error.h"
#include "kpbook/HostObjects.h"

namespace kpTables::kpbook {
namespace {

struct Good {
    std::string json;
    Variant value;
};

TEST(JsonInput, ReadsEveryForm) {
    const Good cases[] = {
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

struct Bad {
    std::string json;
    int number;
    std::string part;  ///< of the description
};

template <class Action>
void ExpectRefused(const Bad& each, Action action) {
    try {
        action();
        ADD_FAILURE() << each.json << " was taken";
    } catch (const Error& error) {
        EXPECT_EQ(error.Number(), each.number) << each.json;
        EXPECT_NE(error.Description().find(each.part), std::string::npos) << each.json << ": " << error.Description();
    }
}

TEST(JsonInput, RefusesWhatIsNoForm) {
    const Bad cases[] = {
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
        {"1e999", 6, ""},
        {"nul", 5, "not JSON at column"},
        {"", 5, "not JSON at column"},
        {"\"a\" \"b\"", 5, "not JSON at column"},
        {"\"\xFF\"", 5, "not JSON at column"},
    };
    for (const auto& each : cases) {
        ExpectRefused(each, [&] { ReadJsonValue(each.json); });
    }
}

TEST(JsonInput, RefusesDeepNesting) {
    const std::string deep = std::string(100'000, '[') + std::string(100'000, ']');
    ExpectRefused({deep, 5, "nested too deep"}, [&] { ReadJsonValue(deep); });
}

TEST(JsonInput, ReadsARequest) {
    BatchRequest request;
    ReadRequest(R"({"args":[1,"a"],"method":"x","isSQL":true,"today":"2026-11-21","answer":"no"})", request);
    EXPECT_EQ(request.method, "x");
    EXPECT_FALSE(request.execute);
    ASSERT_EQ(request.arguments.size(), 2U);
    EXPECT_TRUE(request.arguments[0].Is(std::int32_t{1}));
    EXPECT_EQ(request.isSQL, true);
    EXPECT_EQ(request.today, *Date::FromParts({2026, 11, 21, 0, 0, 0}));
    EXPECT_EQ(request.answer, MessageAnswer::No);
}

TEST(JsonInput, ReadsAStatement) {
    BatchRequest request;
    ReadRequest(R"({"execute":"Select 1"})", request);
    EXPECT_EQ(request.execute, "Select 1");
    EXPECT_FALSE(request.method);
    EXPECT_FALSE(request.isSQL);
    EXPECT_FALSE(request.today);
    EXPECT_FALSE(request.answer);
}

TEST(JsonInput, RefusesOtherRequests) {
    const Bad cases[] = {
        {"5", 5, "a line takes an object"},
        {"[]", 5, "a line takes an object"},
        {"{}", 5, "\"method\" or \"execute\""},
        {R"({"method":5})", 5, "\"method\" takes a text"},
        {R"({"execute":null})", 5, "\"execute\" takes a text"},
        {R"({"method":"a","execute":"b"})", 5, "not both"},
        {R"({"method":"a","arguments":[]})", 5, "unknown key \"arguments\""},
        {R"({"method":"a","args":5})", 5, "\"args\" takes a list"},
        {R"({"method":"a","isSQL":1})", 5, "\"isSQL\" takes true or false"},
        {R"({"method":"a","today":"today"})", 5, "is no date"},
        {R"({"method":"a","answer":"maybe"})", 5, "\"answer\" takes \"yes\" or \"no\""},
        {R"({"execute":"a","args":[]})", 5, "\"method\" only"},
        {R"({"method":"a",})", 5, "not JSON at column 15"},
    };
    for (const auto& each : cases) {
        ExpectRefused(each, [&] {
            BatchRequest request;
            ReadRequest(each.json, request);
        });
    }
}

TEST(JsonInput, RefusedRequestStillNamesItsMethod) {
    BatchRequest request;
    EXPECT_THROW(ReadRequest(R"({"args":5,"method":"x"})", request), Error);
    EXPECT_EQ(request.method, "x");
}

}  // namespace
}  // namespace kpTables::kpbook
