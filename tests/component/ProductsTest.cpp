// The product catalogue: results and failures.
#include <gtest/gtest.h>

#include "BookScript.h"
#include "HandsOut.h"
#include "support/Failure.h"

namespace kpTables::test {
namespace {

TEST(ProductLists, HandOutTheConnectionsRows) {
    ExpectHandsOut("rs商品资料", [](CTables& t) { return t.rs商品资料(1); });
    ExpectHandsOut("rs生产厂家", [](CTables& t) { return t.rs生产厂家(); });
    ExpectHandsOut("rs存放位置", [](CTables& t) { return t.rs存放位置(); });

    BookScript book;
    const auto rows = MakeRows({{"ClassCode", VarType::String}}, {{"01"}});
    rows->SetCacheSize(17);
    book.cnn->Answer(rows);
    EXPECT_EQ(book.tables.rs商品分类(), rows);
    EXPECT_EQ(rows->CacheSize(), 17) << "left as it was";
}

TEST(ProductIsUsed, Results) {
    const std::vector<FieldInfo> fields = {{"pdID", VarType::Long}};
    BookScript book;
    const auto unknown = MakeRows(fields, {{1}});
    unknown->ReportCount(-1);
    book.cnn->Answer(MakeRows(fields, {{1}})).Answer(MakeRows(fields, {{1}, {2}})).Answer(unknown).FailAt(4);
    std::int32_t product = 9, warehouse = 3;
    EXPECT_TRUE(book.tables.商品已被使用(product, warehouse)) << "another product's row";
    EXPECT_TRUE(book.tables.商品已被使用(product, warehouse));
    EXPECT_FALSE(book.tables.商品已被使用(product, warehouse)) << "count unknown";
    EXPECT_EQ(FailureOf([&] { book.tables.商品已被使用(product, warehouse); }), kRefused);
    EXPECT_EQ(product, 9);
    EXPECT_EQ(warehouse, 3);
}

/// A product whose attributes are all different; numbers and ids in the types of their columns.
std::shared_ptr<ScriptedRecordset> OneProduct() {
    const auto text = VarType::String;
    const auto number = VarType::Double;
    return MakeRows({{"pdID", VarType::Long},
                     {"商品名称", text},
                     {"商品编号", text},
                     {"KSID", VarType::Long},
                     {"存放地点", text},
                     {"ClassCode", text},
                     {"输入简码", text},
                     {"计量单位", text},
                     {"计价方法", text},
                     {"规格", text},
                     {"型号", text},
                     {"进位方法", text},
                     {"默认单价", VarType::Currency},
                     {"普通税率", number},
                     {"增值税率", number},
                     {"购进单价", number},
                     {"普购税率", number},
                     {"增购税率", number},
                     {"存放位置", text},
                     {"最低库存", number},
                     {"最高库存", VarType::Integer},
                     {"商品条码", text},
                     {"单位数量", VarType::Long},
                     {"备注", text},
                     {"生产厂家", text}},
                    {{5,       " 螺纹钢 ", " A-1 ",          12,         " 东 区 ", " 0102 ", " LWG ", " 吨 ", " 移动 ",
                      " Φ12 ", " HRB ",    " 四 ",           Money(125), 0.03,      0.17,     3.5,     0.04,   0.13,
                      " 架1 ", -2.5,       std::int16_t{90}, " 690 ",    24,        " 注 ",   "某厂"}});
}

TEST(ProductAttribute, EveryName) {
    struct Case {
        const char* which;
        Variant answer;
    };
    const Case cases[] = {
        {"ID", 5},
        {"商品名称", "螺纹钢"},
        {"商品编号", "A-1"},
        {"生产厂商", 12},
        {"存放地点", "东 区"},
        {"ClassCode", "0102"},
        {"输入简码", "LWG"},
        {"计量单位", "吨"},
        {"计价方法", "移动"},
        {"规格", "Φ12"},
        {"型号", "HRB"},
        {"进位方法", "四"},
        {"默认单价", Money(125)},
        {"普通税率", 0.03},
        {"增值税率", 0.17},
        {"购进单价", 3.5},
        {"普购税率", 0.04},
        {"增购税率", 0.13},
        {"存放位置", "架1"},
        {"最低库存", -2.5},
        {"最高库存", std::int16_t{90}},
        {"商品条码", " 690 "},
        {"单位数量", 24},
        {"分类代码”", " 0102 "},
        {"备注", "注"},
        // no such names
        {"分类代码", ""},
        {"生产厂家", ""},
        {"pdID", ""},
        {"id", ""},
        {"classcode", ""},
        {"商品名称 ", ""},
        {"单价", ""},
        {"", ""},
    };
    for (const Case& each : cases) {
        for (const bool isSQL : {false, true}) {
            SCOPED_TRACE(each.which);
            BookScript book;
            book.tables.isSQL(isSQL);
            book.cnn->Answer(OneProduct());
            const Variant answer = book.tables.Get商品资料(5, each.which);
            EXPECT_TRUE(answer.Is(each.answer)) << Shown(answer);
            EXPECT_EQ(book.cnn->Statements(), corpus::Expected("Get商品资料(5, \"" + std::string(each.which) + "\")"));
        }
    }
}

TEST(ProductAttribute, Null) {
    const Variant null = Variant::Null(), none = std::int16_t{0};
    struct Case {
        const char* which;
        Variant answer;
    };
    const Case cases[] = {
        {"ID", null},       {"商品名称", ""},   {"商品编号", ""},   {"生产厂商", null}, {"存放地点", ""},
        {"ClassCode", ""},  {"输入简码", ""},   {"计量单位", ""},   {"计价方法", ""},   {"规格", ""},
        {"型号", ""},       {"进位方法", ""},   {"默认单价", none}, {"普通税率", none}, {"增值税率", none},
        {"购进单价", none}, {"普购税率", none}, {"增购税率", none}, {"存放位置", ""},   {"最低库存", none},
        {"最高库存", none}, {"商品条码", ""},   {"单位数量", none}, {"分类代码”", ""},  {"备注", ""},
    };
    const auto columns = OneProduct();
    std::vector<FieldInfo> fields;
    for (int i = 0; i < columns->FieldCount(); ++i) fields.push_back(columns->FieldAt(i));
    for (const Case& each : cases) {
        SCOPED_TRACE(each.which);
        BookScript book;
        book.cnn->Answer(MakeRows(fields, {std::vector<Variant>(fields.size(), null)}));
        const Variant answer = book.tables.Get商品资料(5, each.which);
        EXPECT_TRUE(answer.Is(each.answer)) << Shown(answer);
    }
}

TEST(ProductAttribute, WithoutTheProduct) {
    struct Case {
        const char* which;
        bool isNumber;
    };
    const Case cases[] = {
        {"单价", true},       {"税率", true},
        {"库存", true},       {"数量", true},
        {"单", true},         {"价,税", true},
        {",", true},          {"", true},
        {"单价,税率", true},  {"单价,税率,库存,数量", true},
        {"默认单价", false},  {"数量,", false},
        {"税率,数量", false}, {"商品名称", false},
        {"ID", false},        {"单位数量", false},
        {"unknown", false},   {" ", false},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.which);
        BookScript book;
        const Variant answer = book.tables.Get商品资料(-1, each.which);
        EXPECT_TRUE(answer.Is(each.isNumber ? Variant(std::int16_t{0}) : Variant("")));
        EXPECT_EQ(book.cnn->Statements(), corpus::Expected("Get商品资料(-1, \"" + std::string(each.which) + "\")"));
    }
}

TEST(ProductClassName, Results) {
    const std::vector<FieldInfo> fields = {{"ClassName", VarType::String}};
    struct Case {
        const char* name;
        Rows rows;
        const char* answer;
    };
    const Case cases[] = {
        {"found", {{" 钢材 "}, {"木材"}}, " 钢材 "}, {"Null", {{Variant::Null()}}, ""}, {"none", {}, ""}};
    for (const Case& each : cases) {
        for (const bool isSQL : {false, true}) {
            SCOPED_TRACE(each.name);
            BookScript book;
            book.tables.isSQL(isSQL);
            book.cnn->Answer(MakeRows(fields, each.rows));
            EXPECT_EQ(book.tables.Get商品分类名称(" 01"), each.answer);
            EXPECT_EQ(book.cnn->Statements(), corpus::Expected("Get商品分类名称(\" 01\")"));
        }
    }
}

TEST(ProductCount, StatementsAndResults) {
    const auto counted = [](std::int32_t count) {
        const auto rows = MakeRows({{"pdID", VarType::Long}}, {});
        rows->ReportCount(count);
        return rows;
    };
    const Sent all = corpus::Expected("Get商品数量()").front();
    for (const bool isSQL : {false, true}) {
        BookScript book;
        book.tables.isSQL(isSQL);
        book.cnn->Answer(counted(32767))
            .Answer(counted(0))
            .Answer(counted(3))
            .Answer(counted(2))
            .Answer(counted(32768));
        book.cnn->FailAt(6);
        EXPECT_EQ(book.tables.Get商品数量(), 32767);
        EXPECT_EQ(book.tables.Get商品数量(""), 0);
        EXPECT_EQ(book.tables.Get商品数量("0102"), 3);
        EXPECT_EQ(book.tables.Get商品数量(" "), 2);
        EXPECT_EQ(book.tables.Get商品数量(), 0) << "more than the result can hold";
        EXPECT_EQ(book.tables.Get商品数量(), 0) << "refused";
        EXPECT_EQ(book.cnn->Statements(),
                  (std::vector<Sent>{all, all, corpus::Expected("Get商品数量(\"0102\")").front(),
                                     corpus::Expected("Get商品数量(\" \")").front(), all, all}));
    }
    CTables unconnected;
    EXPECT_EQ(unconnected.Get商品数量(), 0);
}

TEST(ProductId, FourTextsInTurn) {
    const std::vector<Sent> queries = corpus::Expected("Get商品ID(\"A 1\")", "found by its name or not at all");
    const std::vector<FieldInfo> fields = {{"pdID", VarType::Long}};
    for (std::size_t found = 0; found <= queries.size(); ++found) {
        for (const bool isSQL : {false, true}) {
            SCOPED_TRACE(found);
            BookScript book;
            book.tables.isSQL(isSQL);
            for (std::size_t i = 0; i < queries.size(); ++i)
                book.cnn->Answer(
                    MakeRows(fields, i < found ? Rows{} : Rows{{static_cast<std::int32_t>(10 + i)}, {99}}));
            const bool exists = found < queries.size();
            EXPECT_EQ(book.tables.Get商品ID("A 1"), exists ? static_cast<std::int32_t>(10 + found) : 0);
            const auto sent = static_cast<std::ptrdiff_t>(exists ? found + 1 : queries.size());
            EXPECT_EQ(book.cnn->Statements(), std::vector<Sent>(queries.begin(), queries.begin() + sent));
        }
    }
}

TEST(ProductId, TrapsEveryError) {
    for (const int failing : {1, 2, 3, 4}) {
        BookScript book;
        book.cnn->FailAt(failing);
        EXPECT_EQ(book.tables.Get商品ID("A"), 0);
        EXPECT_EQ(book.cnn->Statements().size(), static_cast<std::size_t>(failing)) << "no further query";
    }
    BookScript book;
    book.cnn->Answer(MakeRows({{"pdID", VarType::Long}}, {{Variant::Null()}}));
    EXPECT_EQ(book.tables.Get商品ID("A"), 0);
    CTables unconnected;
    EXPECT_EQ(unconnected.Get商品ID("A"), 0);
}

TEST(CustomerPrice, TheFirstThatIsNeitherNullNorZero) {
    const Variant null = Variant::Null();
    struct Case {
        const char* name;
        Rows rows;
        double price;
    };
    const Case cases[] = {
        {"the first", {{3.25}, {4.0}}, 3.25},
        {"after Null", {{null}, {4.0}}, 4},
        {"after 0", {{0.0}, {4.0}}, 4},
        {"none", {{null}, {0.0}}, 0},
        {"no line", {}, 0},
        {"negative", {{-1.5}, {4.0}}, -1.5},
        {"one line", {{7.0}}, 7},
        {"Currency", {{Money(12345)}}, 1.2345},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.name);
        BookScript book;
        book.cnn->Answer(MakeRows({{"单价", VarType::Empty}}, each.rows));
        EXPECT_EQ(book.tables.Get客户单价(12, 5, Day("2004-03-07")), each.price);
    }
}

TEST(ProductFailures, ReachTheCaller) {
    struct Case {
        const char* name;
        std::function<void(CTables&)> call;
    };
    const Case raising[] = {
        {"rs商品分类", [](CTables& t) { t.rs商品分类(); }},
        {"rs商品资料", [](CTables& t) { t.rs商品资料(); }},
        {"rs生产厂家", [](CTables& t) { t.rs生产厂家(); }},
        {"rs存放位置", [](CTables& t) { t.rs存放位置(); }},
        {"商品已被使用", [](CTables& t) { t.商品已被使用(1); }},
        {"Get商品资料", [](CTables& t) { t.Get商品资料(1, "ID"); }},
        {"Get商品分类名称", [](CTables& t) { t.Get商品分类名称("01"); }},
        {"Get客户单价", [](CTables& t) { t.Get客户单价(1, 2, Day("2004-03-07")); }},
    };
    for (const Case& each : raising) {
        SCOPED_TRACE(each.name);
        CTables unconnected;
        EXPECT_EQ(FailureOf([&] { each.call(unconnected); }), 91);
        BookScript book;
        book.cnn->FailAt(1);
        EXPECT_EQ(FailureOf([&] { each.call(book.tables); }), kRefused);
        EXPECT_EQ(book.cnn->Statements().size(), 1u);
    }
    BookScript noColumn;
    noColumn.cnn->Answer(MakeRows({{"pdID", VarType::Long}}, {{1}}));
    EXPECT_EQ(FailureOf([&] { noColumn.tables.Get商品资料(1, "备注"); }), 3265);
}

}  // namespace
}  // namespace kpTables::test
