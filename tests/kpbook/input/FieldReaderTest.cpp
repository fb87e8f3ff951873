#include "kpbook/input/FieldReader.h"

#include <gtest/gtest.h>

#include <limits>

namespace kpTables::kpbook::input {
namespace {

struct GoodField {
    VarType type;
    std::string text;
    Variant value;
};

TEST(FieldReader, ReadsValuesOfEveryType) {
    const auto march7 = *Date::FromParts({2004, 3, 7, 0, 0, 0});
    const GoodField cases[] = {
        {VarType::Integer, "0", std::int16_t{0}},
        {VarType::Integer, "-32768", std::int16_t{-32768}},
        {VarType::Integer, "32767", std::int16_t{32767}},
        {VarType::Integer, "+7", std::int16_t{7}},
        {VarType::Integer, " 12 ", std::int16_t{12}},
        {VarType::Integer, "0012", std::int16_t{12}},
        {VarType::Long, "2147483647", std::numeric_limits<std::int32_t>::max()},
        {VarType::Long, "-2147483648", std::numeric_limits<std::int32_t>::min()},
        {VarType::Double, "0.1", 0.1},
        {VarType::Double, "-12", -12.0},
        {VarType::Double, "+1.5", 1.5},
        {VarType::Double, ".5", 0.5},
        {VarType::Double, "5.", 5.0},
        {VarType::Double, "1e3", 1000.0},
        {VarType::Double, "-2.5E-3", -0.0025},
        {VarType::Currency, "12.5", Currency::FromScaled(125000)},
        {VarType::Currency, "-0.0001", Currency::FromScaled(-1)},
        {VarType::Currency, "491.4000", Currency::FromScaled(4914000)},
        {VarType::Currency, "+3", Currency::FromScaled(30000)},
        {VarType::Currency, "922337203685477.5807", Currency::FromScaled(std::numeric_limits<std::int64_t>::max())},
        {VarType::Currency, "-922337203685477.5808", Currency::FromScaled(std::numeric_limits<std::int64_t>::min())},
        {VarType::Currency, ".5", Currency::FromScaled(5000)},
        {VarType::Currency, "-.5", Currency::FromScaled(-5000)},
        {VarType::Currency, "+.0001", Currency::FromScaled(1)},
        {VarType::Currency, "5.", Currency::FromScaled(50000)},
        {VarType::Currency, "-0.0000", Currency::FromScaled(0)},
        {VarType::Currency, "0000000000000000000000001.25", Currency::FromScaled(12500)},
        {VarType::Currency, " 7.1 ", Currency::FromScaled(71000)},
        {VarType::Date, "2004-03-07", march7},
        {VarType::Date, "2004-3-7", march7},
        {VarType::Date, "2004/3/7", march7},
        {VarType::Date, "2004年3月7日", march7},
        {VarType::Date, "2004-03-07T12:30:00", *Date::FromParts({2004, 3, 7, 12, 30, 0})},
        {VarType::Date, "2004-03-07 12:30:00", *Date::FromParts({2004, 3, 7, 12, 30, 0})},
        {VarType::Date, "2004-02-29", *Date::FromParts({2004, 2, 29, 0, 0, 0})},
        {VarType::Boolean, "True", true},
        {VarType::Boolean, "yes", true},
        {VarType::Boolean, "-1", true},
        {VarType::Boolean, "1", true},
        {VarType::Boolean, "FALSE", false},
        {VarType::Boolean, "No", false},
        {VarType::Boolean, "0", false},
        {VarType::String, " 水泥 ", " 水泥 "},
        {VarType::String, "it's", "it's"},
        {VarType::String, "12", "12"},
        {VarType::Empty, "as it is", "as it is"},
    };
    for (const auto& each : cases) {
        const auto read = ReadField(each.text, each.type);
        EXPECT_EQ(read.problem, "") << each.text;
        EXPECT_TRUE(read.value.Is(each.value)) << each.text;
    }
}

struct BadField {
    VarType type;
    std::string text;
    std::string problem;
};

TEST(FieldReader, TellsWhyATextIsNoValue) {
    const BadField cases[] = {
        {VarType::Integer, "abc", "'abc' is no whole number"},
        {VarType::Integer, "1 2", "'1 2' is no whole number"},
        {VarType::Integer, "+-3", "'+-3' is no whole number"},
        {VarType::Integer, "--3", "'--3' is no whole number"},
        {VarType::Integer, "-", "'-' is no whole number"},
        {VarType::Integer, ".", "'.' is no whole number"},
        {VarType::Integer, " ", "'' is no whole number"},
        {VarType::Integer, "1e3", "'1e3' is no whole number"},
        {VarType::Integer, "1,000", "'1,000' is no whole number"},
        {VarType::Integer, "1.5", "'1.5' has decimals; the column takes whole numbers"},
        {VarType::Integer, "32768", "'32768' is out of range (-32768 to 32767)"},
        {VarType::Integer, "-32769", "'-32769' is out of range (-32768 to 32767)"},
        {VarType::Integer, "5.", "'5.' has decimals; the column takes whole numbers"},
        {VarType::Integer, "99999.5", "'99999.5' has decimals; the column takes whole numbers"},
        {VarType::Integer, "99999x", "'99999x' is no whole number"},
        {VarType::Long, "2147483648", "'2147483648' is out of range (-2147483648 to 2147483647)"},
        {VarType::Long, "-2147483649", "'-2147483649' is out of range (-2147483648 to 2147483647)"},
        {VarType::Long, "99999999999999999999999",
         "'99999999999999999999999' is out of range (-2147483648 to 2147483647)"},
        {VarType::Double, "abc", "'abc' is no number"},
        {VarType::Double, "1.2.3", "'1.2.3' is no number"},
        {VarType::Double, "nan", "'nan' is no number"},
        {VarType::Double, "inf", "'inf' is no number"},
        {VarType::Double, "0x10", "'0x10' is no number"},
        {VarType::Double, "+-1", "'+-1' is no number"},
        {VarType::Double, "12kg", "'12kg' is no number"},
        {VarType::Double, "1e", "'1e' is no number"},
        {VarType::Double, "1e999", "'1e999' is out of range"},
        {VarType::Double, "-infinity", "'-infinity' is no number"},
        {VarType::Double, "-nan", "'-nan' is no number"},
        {VarType::Double, "1e999kg", "'1e999kg' is no number"},
        {VarType::Double, "-1e999", "'-1e999' is out of range"},
        {VarType::Double, " ", "'' is no number"},
        {VarType::Currency, "abc", "'abc' is no plain decimal number"},
        {VarType::Currency, "1e3", "'1e3' is no plain decimal number"},
        {VarType::Currency, "￥5", "'￥5' is no plain decimal number"},
        {VarType::Currency, "1.23456", "'1.23456' has more than four decimals"},
        {VarType::Currency, "1.50000", "'1.50000' has more than four decimals"},
        {VarType::Currency, "1.2.3", "'1.2.3' is no plain decimal number"},
        {VarType::Currency, "+-5", "'+-5' is no plain decimal number"},
        {VarType::Currency, ".", "'.' is no plain decimal number"},
        {VarType::Currency, "-", "'-' is no plain decimal number"},
        {VarType::Currency, "1 5", "'1 5' is no plain decimal number"},
        {VarType::Currency, "-922337203685477.5809",
         "'-922337203685477.5809' is out of range (-922337203685477.5808 to 922337203685477.5807)"},
        {VarType::Currency, "922337203685478",
         "'922337203685478' is out of range (-922337203685477.5808 to 922337203685477.5807)"},
        {VarType::Currency, "99999999999999999999",
         "'99999999999999999999' is out of range (-922337203685477.5808 to 922337203685477.5807)"},
        {VarType::Currency, "922337203685477.5808",
         "'922337203685477.5808' is out of range (-922337203685477.5808 to 922337203685477.5807)"},
        {VarType::Date, "1997-02-30", "'1997-02-30' is no date"},
        {VarType::Date, "1997-13-01", "'1997-13-01' is no date"},
        {VarType::Date, "yesterday", "'yesterday' is no date"},
        {VarType::Date, "12345", "'12345' is no date"},
        {VarType::Boolean, "2", "'2' is no flag (True, False, yes, no, -1, 1 or 0)"},
        {VarType::Boolean, "ja", "'ja' is no flag (True, False, yes, no, -1, 1 or 0)"},
        {VarType::String, "\xB2\xD6", "'\xEF\xBF\xBD\xEF\xBF\xBD' is not valid UTF-8"},
        {VarType::String, std::string("a\0b", 3), "'a\\x00b' holds a NUL character"},
        {VarType::Double, "一二三四五六七八九十一二三四五六七八九十", "'一二三四五六七八九十一二三...' is no number"},
    };
    for (const auto& each : cases) EXPECT_EQ(ReadField(each.text, each.type).problem, each.problem) << each.text;
}

}  // namespace
}  // namespace kpTables::kpbook::input
