#include "hostile/HostileValues.h"

#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <utility>

namespace kpTables::test {

namespace {

std::string Repeated(const std::string& text, std::size_t count) {
    std::string all;
    for (; count > 0; --count) all += text;
    return all;
}

Variant Nested(int depth) {
    Variant value = "x";
    for (; depth > 0; --depth) value = std::make_shared<VariantArray>(std::vector<Variant>{value, "'"});
    return value;
}

std::vector<HostileValue> Made() {
    using namespace std::string_literals;
    const bool storable = true;
    return {
        // Characters that mean something to a statement, but not inside a text.
        {"Brackets", "[a] (b) {c}", storable},
        {"CommentMarks", "a--b /* c */", storable},
        {"Semicolon", "a; Delete From 仓库设置;", storable},
        {"Wildcards", "100%_*?#!", storable},
        {"DoubleQuotes", "\"a\" `b`", storable},
        {"Backslash", "a\\b\\", storable},
        {"Parameters", "?1 :a @b $c", storable},
        {"DateMarks", "#2004-3-7#", storable},
        {"LineBreaks", "a\r\nb\tc", storable},
        {"Chinese", "中心仓库（一）号、“甲”", storable},
        {"Rare", "𠀀㐀龥", storable},
        {"Emoji", "👩‍👩‍👧🙂", storable},
        {"RightToLeft", "\u202Eabc\u202C", storable},
        {"Longest", Repeated("宽", 254), storable},
        // Quotes.
        {"Quote", "O'Brien"},
        {"OpenQuote", "'"},
        {"TwoQuotes", "''"},
        {"AnyRow", "x' Or 'a'='a"},
        {"SecondStatement", "x'; Delete From 仓库设置; Drop Table 商品设置; --"},
        {"SecondStatementInBrackets", "x'); Delete From 仓库设置; --"},
        {"SubQuery", "' & (Select 密码 From 操作员) & '"},
        {"Union", "x' Union Select 密码 From 操作员 Where 'a'='a"},
        {"Comment", "x' --"},
        {"OpenComment", "x' /*"},
        // Names.
        {"ClosingBracket", "姓名] = 'x', [密码"},
        {"Assignment", "密码='x',姓名"},
        {"OtherTable", "操作员; Drop Table 操作员"},
        // Bytes and sizes.
        {"Nul", "a\0b'c"s},
        {"OnlyNul", "\0"s},
        {"InvalidUtf8", "a\xFF\xC3"s},
        {"BeginningOfACharacter", "\xE5\xBC"s},
        {"Surrogate", "\xED\xA0\x80"s},
        {"TooLong", Repeated("x", 70000)},
        {"TooLongChinese", Repeated("长", 70000)},
        {"ManyQuotes", Repeated("'", 70001)},
        {"ManyBrackets", Repeated("(", 5000)},
        // Numbers, and what is neither text nor number.
        {"NumberText", "1E400"},
        {"HexText", "&HFFFFFFFFFF"},
        {"LargeLong", std::numeric_limits<std::int32_t>::max()},
        {"SmallLong", std::numeric_limits<std::int32_t>::min()},
        {"LargeDouble", std::numeric_limits<double>::max()},
        {"Infinite", std::numeric_limits<double>::infinity()},
        {"NotANumber", std::numeric_limits<double>::quiet_NaN()},
        {"LargeCurrency", Currency::FromScaled(std::numeric_limits<std::int64_t>::max())},
        {"LastDay", *Date::ParseIso("9999-12-31T23:59:59")},
        {"FirstDay", *Date::ParseIso("0100-01-01")},
        {"Null", Variant::Null()},
        {"Empty", Variant()},
        {"Nothing", nullptr},
        {"NoArray", std::shared_ptr<VariantArray>()},
        {"EmptyArray", std::make_shared<VariantArray>()},
        {"NestedArray", Nested(100)},
    };
}

}  // namespace

const std::vector<HostileValue>& HostileValues() {
    static const std::vector<HostileValue> values = Made();
    return values;
}

}  // namespace kpTables::test
