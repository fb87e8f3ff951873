#include <gtest/gtest.h>

#include "Raised.h"
#include "kpTables/Convert.h"

namespace kpTables {
namespace {

TEST(Format, Patterns) {
    const Variant day = Date::FromParts({2004, 3, 7, 0, 0, 0}).value();
    const Variant lateDay = Date::FromParts({1997, 12, 31, 9, 5, 8}).value();
    const auto whole = [](int value) { return Variant(std::int32_t{value}); };
    struct Case {
        Variant value;
        const char* pattern;
        const char* text;
    };
    const Case cases[] = {
        {day, "yyyy-M-d", "2004-3-7"},
        {lateDay, "yyyy-M-d", "1997-12-31"},
        {"2004-03-07 12:30", "yyyy-M-d", "2004-3-7"},
        {"2004年3月7日", "yyyy-M-d", "2004-3-7"},
        {whole(38053), "yyyy-M-d", "2004-3-7"},
        {"38053", "yyyy-M-d", "2004-3-7"},
        {day, "yyyy年MM月dd日", "2004年03月07日"},
        {lateDay, "yyyy年MM月dd日", "1997年12月31日"},
        {day, "yyyy-MM-dd", "2004-03-07"},
        {day, "yyyy-mm-dd", "2004-03-07"},
        {lateDay, "H:mm:ss", "9:05:08"},
        {lateDay, "HH:mm:ss", "09:05:08"},
        {lateDay, "yyyy-M-d H:mm:ss", "1997-12-31 9:05:08"},
        {lateDay, "HH:mm MM", "09:05 12"},
        {day, "yy/M", "04/3"},
        {"abc", "yyyy-M-d", "abc"},
        {"", "yyyy年MM月dd日", ""},
        {"2023-2-30", "yyyy-M-d", "2023-2-30"},
        {whole(3), "00月", "03月"},
        {whole(7), "00日", "07日"},
        {whole(12), "00月", "12月"},
        {whole(123), "00月", "123月"},
        {std::int16_t{3}, "00月", "03月"},
        {3.0, "00月", "03月"},
        {"3", "00月", "03月"},
        {"三", "00月", "三"},
        {"", "00月", ""},
        {whole(0), "00月", "00月"},
        {whole(-3), "00月", "-03月"},
        {Currency::FromLong(3), "00月", "03月"},
        {2.5, "00", "03"},
        {-2.5, "00", "-03"},
        {0.4, "0", "0"},
        {whole(5), "##### 张", "5 张"},
        {whole(12345), "##### 张", "12345 张"},
        {whole(1234567), "##### 张", "1234567 张"},
        {whole(0), "##### 张", " 张"},
        {whole(42), "#0000#", "00042"},
        {whole(7), "A-000", "A-007"},
        {"abc", "&", "abc"},
        {"", "&", ""},
        {whole(12), "&", "12"},
        {2.5, "&", "2.5"},
        {day, "&", "2004-3-7"},
        {"张三", "\\<&\\>", "<张三>"},
        {"张三A", "<&>", "张三A"},
        {"张三A", "<&", "张三a"},
        {true, "&", "True"},
        {Currency::FromScaled(12345), "&", "1.2345"},
        {1234.5, "#,##0.00", "1,234.50"},
        {day, "Short Date", "2004-3-7"},
        {"abc", "", "abc"},
        {Variant::Null(), "&", ""},
        {Variant::Null(), "00月", ""},
        {Variant::Null(), "yyyy-M-d", ""},
        {Variant(), "&", ""},
        {whole(5), "张", "张"},
    };
    for (const Case& c : cases) EXPECT_EQ(Format(c.value, c.pattern), c.text) << c.pattern;
}

TEST(Format, Refuses) {
    EXPECT_EQ(Raised([] { Format(nullptr, "&"); }), 13);
    EXPECT_EQ(Raised([] { Format(nullptr, "00"); }), 13);
    EXPECT_EQ(Raised([] { Format(nullptr, "yyyy"); }), 13);
    EXPECT_EQ(Raised([] { Format(1e10, "yyyy-M-d"); }), 6);
}

}  // namespace
}  // namespace kpTables
