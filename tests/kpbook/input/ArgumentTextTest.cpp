#include "kpbook/input/ArgumentText.h"

#include <gtest/gtest.h>

#include "kpTables/Error.h"

namespace kpTables::kpbook::input {
namespace {

struct ArgumentCase {
    std::string text;
    Variant value;
};

TEST(ArgumentText, Forms) {
    const ArgumentCase cases[] = {
        {"", ""},
        {"12", "12"},
        {"入库", "入库"},
        {"null:", Variant::Null()},
        {"empty:", Variant()},
        {"missing:", Variant::Missing()},
        {"nothing:", nullptr},
        {"null", "null"},
        {"null:x", "null:x"},
        {"12:30", "12:30"},
        {"Note: paid", "Note: paid"},
        {"text:null:", "null:"},
        {"text:", ""},
        {"date:2004-03-07", *Date::FromParts({2004, 3, 7, 0, 0, 0})},
        {"date:2004-03-07T12:30:00", *Date::FromParts({2004, 3, 7, 12, 30, 0})},
        {"date:2004年3月7日", *Date::FromParts({2004, 3, 7, 0, 0, 0})},
        {"currency:12.5", Currency::FromScaled(125000)},
        {"number:0.25", 0.25},
        {"number:3", 3.0},
        {"bool:true", true},
        {"bool:0", false},
        {"json:5", std::int32_t{5}},
        {"json:{\"currency\":\"1\"}", Currency::FromScaled(10000)},
    };
    for (const auto& each : cases) EXPECT_TRUE(ReadArgument(each.text).Is(each.value)) << each.text;
}

struct Bad {
    std::string text;
    int number;
};

TEST(ArgumentText, RefusesValuesThatAreNone) {
    const Bad cases[] = {{"date:tomorrow", 5}, {"date:", 5},       {"currency:x", 13}, {"number:x", 13},
                         {"bool:maybe", 13},   {"json:{\"a\"", 5}, {"json:{}", 5}};
    for (const auto& each : cases) {
        try {
            ReadArgument(each.text);
            ADD_FAILURE() << each.text << " was taken";
        } catch (const Error& error) {
            EXPECT_EQ(error.Number(), each.number) << each.text;
        }
    }
}

}  // namespace
}  // namespace kpTables::kpbook::input
