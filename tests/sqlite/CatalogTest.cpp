// What a book tells of its tables.
#include <gtest/gtest.h>

#include "TestBook.h"
#include "kpTables/Convert.h"

namespace kpTables {
namespace {

using namespace test;

const TableInfo* Find(const std::vector<TableInfo>& tables, std::string_view name) {
    for (const TableInfo& table : tables) {
        if (table.name == name) return &table;
    }
    return nullptr;
}

TEST(Catalog, TablesComeInTheSchemasOrder) {
    const auto book = NewBook();
    book->Execute("CREATE TABLE 另表 (a LONG)");
    const auto tables = book->Tables();
    ASSERT_GE(tables.size(), 3u);
    EXPECT_EQ(tables[0].name, "仓库设置");
    EXPECT_EQ(tables[1].name, "厂商分类");
    EXPECT_EQ(tables.back().name, "另表");
}

TEST(Catalog, ColumnsHaveTypesDefaultsAndKeys) {
    const auto book = NewBook();
    book->Execute(
        "CREATE TABLE T (k COUNTER PRIMARY KEY, b YESNO DEFAULT True, s SHORT NOT NULL, l LONG DEFAULT 5, d DOUBLE, "
        "c CURRENCY DEFAULT 1.5, t DATETIME, x TEXT(20) DEFAULT 'it''s', m MEMO)");
    const auto tables = book->Tables();
    const TableInfo* table = Find(tables, "T");
    ASSERT_TRUE(table);
    struct Expected {
        const char* name;
        VarType type;
        const char* defaultText;
        bool required;
        bool counter;
    };
    const Expected expected[] = {
        {"k", VarType::Long, "", false, true},    {"b", VarType::Boolean, "True", false, false},
        {"s", VarType::Integer, "", true, false}, {"l", VarType::Long, "5", false, false},
        {"d", VarType::Double, "", false, false}, {"c", VarType::Currency, "1.5", false, false},
        {"t", VarType::Date, "", false, false},   {"x", VarType::String, "it's", false, false},
        {"m", VarType::String, "", false, false},
    };
    ASSERT_EQ(table->columns.size(), std::size(expected));
    for (std::size_t i = 0; i < table->columns.size(); ++i) {
        const auto& column = table->columns[i];
        EXPECT_EQ(column.name, expected[i].name);
        EXPECT_EQ(column.type, expected[i].type) << column.name;
        EXPECT_EQ(Text(column.defaultValue), expected[i].defaultText) << column.name;
        EXPECT_EQ(column.required, expected[i].required) << column.name;
        EXPECT_EQ(column.counter, expected[i].counter) << column.name;
    }
}

TEST(Catalog, AKeyOfOneNumberIsRequired) {
    const auto book = NewBook();
    book->Execute("CREATE TABLE T (k LONG PRIMARY KEY, x TEXT(5))");
    book->Execute("CREATE TABLE U (a LONG, b TEXT(5), CONSTRAINT pk PRIMARY KEY (a, b))");
    const auto tables = book->Tables();
    EXPECT_TRUE(Find(tables, "T")->columns[0].required);
    EXPECT_FALSE(Find(tables, "T")->columns[0].counter);
    EXPECT_FALSE(Find(tables, "T")->columns[1].required);
    EXPECT_TRUE(Find(tables, "U")->columns[0].required);
    EXPECT_TRUE(Find(tables, "U")->columns[1].required);
}

TEST(Catalog, HeaderHasTheNamesOfItsDialect) {
    struct Case {
        HeaderDialect dialect;
        const char* table;
        const char* position;
    };
    for (const auto& [dialect, table, position] :
         {Case{HeaderDialect::Jet, "Table", "Index"}, Case{HeaderDialect::SqlServer, "TableName", "ColIndex"}}) {
        const auto book = NewBook({.header = dialect});
        const auto tables = book->Tables();
        const TableInfo* header = Find(tables, "Header");
        ASSERT_TRUE(header);
        ASSERT_EQ(header->columns.size(), 7u);
        EXPECT_EQ(header->columns[0].name, table);
        EXPECT_EQ(header->columns[0].type, VarType::String);
        EXPECT_EQ(header->columns[1].name, position);
        EXPECT_EQ(header->columns[1].type, VarType::Long);
    }
}

TEST(Catalog, SeesAnotherProgramsTable) {
    const TemporaryDirectory directory;
    const auto book = CreateBook(directory.Book("book"));
    const auto before = book->Tables().size();
    OpenBook(directory.Book("book"))->Execute("CREATE TABLE T (a LONG)");
    EXPECT_EQ(book->Tables().size(), before + 1);
}

}  // namespace
}  // namespace kpTables
