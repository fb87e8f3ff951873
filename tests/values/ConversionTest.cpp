// Every conversion of every kind of value: the value or the error's number.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <limits>
#include <memory>
#include <string>

#include "Raised.h"
#include "kpTables/Convert.h"

namespace kpTables {
namespace {

/// The outcome of a conversion as a text: its value, or "!number".
template <class Call>
std::string Outcome(Call&& call) {
    std::string text;
    const int number = Raised([&] { text = call(); });
    return number == 0 ? text : std::string("!").append(std::to_string(number));
}

std::string Exact(double value) {
    char text[40];
    std::snprintf(text, sizeof text, "%.17g", value);
    return text;
}

struct Case {
    const char* name;
    Variant value;
    const char* cbool;
    const char* cint;
    const char* clng;
    const char* cdbl;
    const char* ccur;   // ten-thousandths
    const char* cdate;  // serial
    const char* cstr;
    const char* joined;  // with &
};

std::vector<Case> Cases() {
    const Variant object(std::shared_ptr<Object>{});
    const Variant array(std::make_shared<VariantArray>());
    const auto whole = [](int value) { return Variant(std::int32_t{value}); };
    const auto small = [](int value) { return Variant(static_cast<std::int16_t>(value)); };
    const auto money = [](std::int64_t scaled) { return Variant(Currency::FromScaled(scaled)); };
    const auto day = [](double serial) { return Variant(Date::FromSerial(serial)); };
    return {
        {"Empty", Variant(), "False", "0", "0", "0", "0", "0", "", ""},
        {"Null", Variant::Null(), "!94", "!94", "!94", "!94", "!94", "!94", "!94", ""},
        {"Missing", Variant::Missing(), "!13", "!13", "!13", "!13", "!13", "!13", "!13", "!13"},
        {"Nothing", object, "!13", "!13", "!13", "!13", "!13", "!13", "!13", "!13"},
        {"array", array, "!13", "!13", "!13", "!13", "!13", "!13", "!13", "!13"},
        {"True", true, "True", "-1", "-1", "-1", "-10000", "-1", "True", "True"},
        {"False", false, "False", "0", "0", "0", "0", "0", "False", "False"},

        {"Integer 7", small(7), "True", "7", "7", "7", "70000", "7", "7", "7"},
        {"Integer low", small(-32768), "True", "-32768", "-32768", "-32768", "-327680000", "-32768", "-32768",
         "-32768"},
        {"Long 0", whole(0), "False", "0", "0", "0", "0", "0", "0", "0"},
        {"Long 32767", whole(32767), "True", "32767", "32767", "32767", "327670000", "32767", "32767", "32767"},
        {"Long 32768", whole(32768), "True", "!6", "32768", "32768", "327680000", "32768", "32768", "32768"},
        {"Long high", whole(2147483647), "True", "!6", "2147483647", "2147483647", "21474836470000", "!6", "2147483647",
         "2147483647"},
        {"Long low", whole(std::numeric_limits<std::int32_t>::min()), "True", "!6", "-2147483648", "-2147483648",
         "-21474836480000", "!6", "-2147483648", "-2147483648"},

        {"Double 0.4", 0.4, "True", "0", "0", "0.40000000000000002", "4000", "0.40000000000000002", "0.4", "0.4"},
        {"Double 0.5", 0.5, "True", "0", "0", "0.5", "5000", "0.5", "0.5", "0.5"},
        {"Double 1.5", 1.5, "True", "2", "2", "1.5", "15000", "1.5", "1.5", "1.5"},
        {"Double 2.5", 2.5, "True", "2", "2", "2.5", "25000", "2.5", "2.5", "2.5"},
        {"Double 3.5", 3.5, "True", "4", "4", "3.5", "35000", "3.5", "3.5", "3.5"},
        {"Double -0.5", -0.5, "True", "0", "0", "-0.5", "-5000", "-0.5", "-0.5", "-0.5"},
        {"Double -1.5", -1.5, "True", "-2", "-2", "-1.5", "-15000", "-1.5", "-1.5", "-1.5"},
        {"Double -2.5", -2.5, "True", "-2", "-2", "-2.5", "-25000", "-2.5", "-2.5", "-2.5"},
        {"Double 2.51", 2.51, "True", "3", "3", "2.5099999999999998", "25100", "2.5099999999999998", "2.51", "2.51"},
        {"Double 32767.4", 32767.4, "True", "32767", "32767", "32767.400000000001", "327674000", "32767.400000000001",
         "32767.4", "32767.4"},
        {"Double 32767.5", 32767.5, "True", "!6", "32768", "32767.5", "327675000", "32767.5", "32767.5", "32767.5"},
        {"Double -32768.5", -32768.5, "True", "-32768", "-32768", "-32768.5", "-327685000", "-32768.5", "-32768.5",
         "-32768.5"},
        {"Double -32769", -32769.0, "True", "!6", "-32769", "-32769", "-327690000", "-32769", "-32769", "-32769"},
        {"Double 2147483647.5", 2147483647.5, "True", "!6", "!6", "2147483647.5", "21474836475000", "!6",
         "2147483647.5", "2147483647.5"},
        {"Double -2147483648.5", -2147483648.5, "True", "!6", "-2147483648", "-2147483648.5", "-21474836485000", "!6",
         "-2147483648.5", "-2147483648.5"},
        {"Double 1E+20", 1e20, "True", "!6", "!6", "1e+20", "!6", "!6", "1E+20", "1E+20"},
        {"Double 1E-20", 1e-20, "True", "0", "0", "9.9999999999999995e-21", "0", "9.9999999999999995e-21", "1E-20",
         "1E-20"},
        {"not a number", std::nan(""), "True", "!6", "!6", "nan", "!6", "!6", "-1.#IND", "-1.#IND"},

        {"Currency 12.5", money(125000), "True", "12", "12", "12.5", "125000", "12.5", "12.5", "12.5"},
        {"Currency 13.5", money(135000), "True", "14", "14", "13.5", "135000", "13.5", "13.5", "13.5"},
        {"Currency 0.0001", money(1), "True", "0", "0", "0.0001", "1", "0.0001", "0.0001", "0.0001"},
        {"Currency high", money(std::numeric_limits<std::int64_t>::max()), "True", "!6", "!6", "922337203685477.62",
         "9223372036854775807", "!6", "922337203685477.5807", "922337203685477.5807"},

        {"Date", day(38053), "True", "!6", "38053", "38053", "380530000", "38053", "2004-3-7", "2004-3-7"},
        {"Date and time", day(38053.5), "True", "!6", "38054", "38053.5", "380535000", "38053.5", "2004-3-7 12:00:00",
         "2004-3-7 12:00:00"},
        {"zero date", day(0), "False", "0", "0", "0", "0", "0", "0:00:00", "0:00:00"},

        {"text empty", "", "!13", "!13", "!13", "!13", "!13", "!13", "", ""},
        {"text blank", " ", "!13", "!13", "!13", "!13", "!13", "!13", " ", " "},
        {"text abc", "abc", "!13", "!13", "!13", "!13", "!13", "!13", "abc", "abc"},
        {"text 0", "0", "False", "0", "0", "0", "0", "0", "0", "0"},
        {"text 2.5", "2.5", "True", "2", "2", "2.5", "25000", "2.5", "2.5", "2.5"},
        {"text blanks", " 12.50 ", "True", "12", "12", "12.5", "125000", "12.5", " 12.50 ", " 12.50 "},
        {"text thousands", "1,234.5", "True", "1234", "1234", "1234.5", "12345000", "1234.5", "1,234.5", "1,234.5"},
        {"text exponent", "1e3", "True", "1000", "1000", "1000", "10000000", "1000", "1e3", "1e3"},
        {"text hex", "&HFF", "True", "255", "255", "255", "2550000", "255", "&HFF", "&HFF"},
        {"text minus behind", "5-", "True", "-5", "-5", "-5", "-50000", "-5", "5-", "5-"},
        {"text brackets", "(5)", "True", "-5", "-5", "-5", "-50000", "-5", "(5)", "(5)"},
        {"text yuan", "¥12", "True", "12", "12", "12", "120000", "12", "¥12", "¥12"},
        {"text half of 1/10000", "0.00015", "True", "0", "0", "0.00014999999999999999", "2", "0.00014999999999999999",
         "0.00015", "0.00015"},
        {"text tiny", "1e-30", "True", "0", "0", "1.0000000000000001e-30", "0", "1.0000000000000001e-30", "1e-30",
         "1e-30"},
        {"text 32768", "32768", "True", "!6", "32768", "32768", "327680000", "32768", "32768", "32768"},
        {"text 99999999999", "99999999999", "True", "!6", "!6", "99999999999", "999999999990000", "!6", "99999999999",
         "99999999999"},
        {"text 1e15", "1e15", "True", "!6", "!6", "1000000000000000", "!6", "!6", "1e15", "1e15"},
        {"text money high", "922337203685477.5807", "True", "!6", "!6", "922337203685477.62", "9223372036854775807",
         "!6", "922337203685477.5807", "922337203685477.5807"},
        {"text 1e400", "1e400", "!6", "!6", "!6", "!6", "!6", "!6", "1e400", "1e400"},
        {"text True", "True", "True", "!13", "!13", "!13", "!13", "!13", "True", "True"},
        {"text fALSE", "fALSE", "False", "!13", "!13", "!13", "!13", "!13", "fALSE", "fALSE"},
        {"text date", "2004-3-7", "!13", "!13", "!13", "!13", "!13", "38053", "2004-3-7", "2004-3-7"},
        {"text Chinese date", "2004年3月7日 12:00", "!13", "!13", "!13", "!13", "!13", "38053.5", "2004年3月7日 12:00",
         "2004年3月7日 12:00"},
        {"text no date", "2023-2-30", "!13", "!13", "!13", "!13", "!13", "!13", "2023-2-30", "2023-2-30"},
        {"text serial", "38053", "True", "!6", "38053", "38053", "380530000", "38053", "38053", "38053"},
    };
}

TEST(Conversion, EveryValueToEveryType) {
    for (const Case& c : Cases()) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(Outcome([&] { return CBool(c.value) ? "True" : "False"; }), c.cbool);
        EXPECT_EQ(Outcome([&] { return std::to_string(CInt(c.value)); }), c.cint);
        EXPECT_EQ(Outcome([&] { return std::to_string(CLng(c.value)); }), c.clng);
        EXPECT_EQ(Outcome([&] { return Exact(CDbl(c.value)); }), c.cdbl);
        EXPECT_EQ(Outcome([&] { return std::to_string(CCur(c.value).Scaled()); }), c.ccur);
        EXPECT_EQ(Outcome([&] { return Exact(CDate(c.value).Serial()); }), c.cdate);
        EXPECT_EQ(Outcome([&] { return CStr(c.value); }), c.cstr);
        EXPECT_EQ(Outcome([&] { return Text(c.value); }), c.joined);
    }
}

TEST(Conversion, IsDate) {
    EXPECT_TRUE(IsDate(Date::FromSerial(1)));
    EXPECT_TRUE(IsDate("2004-3-7"));
    EXPECT_TRUE(IsDate("2004年3月7日 12:30"));
    EXPECT_TRUE(IsDate("12:30"));
    for (const Variant& value : {Variant(), Variant::Null(), Variant(true), Variant(std::int32_t{38053}),
                                 Variant(38053.0), Variant(Currency::FromLong(5)), Variant(""), Variant("abc"),
                                 Variant("38053"), Variant("2023-2-30"), Variant(nullptr), Variant::Missing()}) {
        EXPECT_FALSE(IsDate(value)) << static_cast<int>(value.Type());
    }
}

TEST(Conversion, TrimRemovesBlanksOnly) {
    EXPECT_EQ(Trim("  a b  "), "a b");
    EXPECT_EQ(Trim(""), "");
    EXPECT_EQ(Trim("   "), "");
    EXPECT_EQ(Trim("\ta\n"), "\ta\n");
    EXPECT_EQ(Trim("\u3000商品\u3000 "), "\u3000商品\u3000");
}

}  // namespace
}  // namespace kpTables
