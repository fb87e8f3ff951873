// Rows that are looked for by a text are searched for in an index, however large the book is.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "QueryPlan.h"
#include "TestBook.h"
#include "TestDatabase.h"
#include "corpus/Call.h"
#include "engines/sqlite/BookFile.h"
#include "kpTables/Convert.h"
#include "sql/Translate.h"
#include "sql/parse/Parser.h"
#include "sql/print/sqlite/SqliteEngine.h"

namespace kpTables::engines::sqlite {
namespace {

using namespace test;

struct Lookup {
    const char* call;    ///< of the component, with the value as row 77 stores it
    std::size_t number;  ///< of the statement that looks for it
    const char* table;
    const char* index;   ///< as the schema names it; "" for the index of the primary key
    const char* column;  ///< that the index begins with
    const char* value;   ///< as row 77 stores it
    const char* other;   ///< in other letters and with blanks behind it
    const char* key;
};

constexpr Lookup kLookups[] = {
    {R"(Get商品ID("B00000000077x"))", 1, "商品设置", "商品条码", "商品条码", "B00000000077x", "b00000000077X  ",
     "pdID"},
    {R"(Get商品ID("SnJm77"))", 2, "商品设置", "输入简码", "输入简码", "SnJm77", "sNjM77 ", "pdID"},
    {R"(Get商品ID("No-77"))", 3, "商品设置", "商品编号", "商品编号", "No-77", "nO-77   ", "pdID"},
    {R"(Get商品ID("水泥Pc77"))", 4, "商品设置", "商品名称", "商品名称", "水泥Pc77", "水泥pC77 ", "pdID"},
    {R"(Get_Option("Item77"))", 1, "系统选项", "", "Item", "Item77", "iTEM77 ", "Discription"},
    {R"(Get厂商ID("Firm77厂"))", 1, "厂商资料", "单位名称", "单位名称", "Firm77厂", "fIRM77厂 ", "KSID"},
    {R"(Get客户ID("Firm77店"))", 1, "客户资料", "单位名称", "单位名称", "Firm77店", "fIRM77店 ", "KSID"},
    {R"(Get仓库ID("Dept77库"))", 1, "仓库设置", "仓库名称", "仓库名称", "Dept77库", "dEPT77库 ", "dpID"},
    {R"(GetPassword("Li77"))", 1, "操作员", "姓名", "姓名", "Li77", "lI77 ", "ID"},
    {R"(Update_Password("Li77", "x"))", 1, "操作员", "姓名", "姓名", "Li77", "lI77 ", ""},
    {"AllowDelOperator(77)", 1, "Log", "Operator", "Operator", "77", "77 ", "logID"},
};

/// What the call sends, with another value in place of its own.
std::string TextFor(const Lookup& lookup, const std::string& value) {
    std::string text = corpus::SentBy(lookup.call).at(lookup.number - 1);
    const std::string own = "'" + std::string(lookup.value) + "'";
    return text.replace(text.find(own), own.size(), "'" + value + "'");
}

/// A book with a hundred thousand products and as many other rows as a large book may have.
void Fill(const Database& database) {
    const auto insert = [&](int rows, const std::string& into, const std::string& values) {
        database.Run("WITH RECURSIVE n(i) AS (VALUES (1) UNION ALL SELECT i + 1 FROM n WHERE i < " +
                     std::to_string(rows) + ") INSERT INTO " + into + " SELECT " + values + " FROM n");
    };
    database.Run("BEGIN");
    insert(100000, "商品设置 (商品条码, 输入简码, 商品编号, 商品名称)",
           "printf('B%011dx', i), 'SnJm' || i, 'No-' || i, '水泥Pc' || i");
    insert(1000, "系统选项 (Item, Discription)", "'Item' || i, i");
    insert(5000, "厂商资料 (单位名称)", "'Firm' || i || '厂'");
    insert(5000, "客户资料 (单位名称)", "'Firm' || i || '店'");
    insert(100, "仓库设置 (仓库名称)", "'Dept' || i || '库'");
    insert(100, "操作员 (姓名)", "'Li' || i");
    insert(20000, "Log (Operator)", "i");
    database.Run("COMMIT");
}

class LookupPlan : public testing::Test {
protected:
    static void SetUpTestSuite() {
        directory = std::make_unique<TemporaryDirectory>();
        CreateBook(directory->File("book"));
        session = std::make_unique<TestDatabase>(OpenBookFile(directory->File("book"), {}));
        Fill(session->GetDatabase());
    }
    static void TearDownTestSuite() {
        session.reset();
        directory.reset();
    }

    static std::string PlanOf(std::string_view translated) { return test::PlanOf(session->GetDatabase(), translated); }
    static std::string PlanOfExecute(const std::string& text) {
        session->GetCatalog().Refresh();
        return PlanOf(
            sql::Translate(*sql::parse::Parse(text), session->GetCatalog(), sql::print::sqlite::SqliteEngine()).text);
    }
    static std::string IndexOf(const Lookup& lookup) {
        const std::string table = lookup.table;
        return *lookup.index ? table + "." + lookup.index : "sqlite_autoindex_" + table + "_1";
    }

    static std::unique_ptr<TemporaryDirectory> directory;
    static std::unique_ptr<TestDatabase> session;
};

std::unique_ptr<TemporaryDirectory> LookupPlan::directory;
std::unique_ptr<TestDatabase> LookupPlan::session;

TEST_F(LookupPlan, EveryLookupSearchesItsIndex) {
    if (const std::string reason = OtherPlans(); !reason.empty()) GTEST_SKIP() << reason;
    for (const Lookup& lookup : kLookups) {
        const std::string expected =
            std::string("SEARCH ") + lookup.table + " USING INDEX " + IndexOf(lookup) + " (" + lookup.column + "=?)";
        for (const char* value : {lookup.value, lookup.other, "无"}) {
            const std::string text = TextFor(lookup, value);
            EXPECT_EQ(PlanOfExecute(text), expected) << text;
            if (!*lookup.key) continue;
            const engines::BoundQuery opened = session->PrepareOpen(text, SourceKind::Text);
            EXPECT_EQ(PlanOf(opened.statement->translation.text), expected) << text;
        }
    }
}

TEST_F(LookupPlan, TheRowIsFoundInAnyLettersAndWithBlanksBehind) {
    for (const Lookup& lookup : kLookups) {
        if (!*lookup.key) continue;
        for (const char* value : {lookup.value, lookup.other}) {
            const std::string text = TextFor(lookup, value);
            const RecordsetPtr rows = session->Execute(text);
            ASSERT_EQ(rows->RecordCount(), 1) << text;
            EXPECT_EQ(Text(rows->Fields(lookup.key).Value()), "77") << text;
        }
        const std::string unknown = TextFor(lookup, std::string(lookup.value) + "7x");
        EXPECT_EQ(session->Execute(unknown)->RecordCount(), 0) << unknown;
    }
}

TEST_F(LookupPlan, WithoutTheIndexItWouldBeAScan) {
    if (const std::string reason = OtherPlans(); !reason.empty()) GTEST_SKIP() << reason;
    for (const Lookup& lookup : kLookups) {
        if (!*lookup.index) continue;
        const std::string text = TextFor(lookup, lookup.value);
        session->GetTransaction().Begin();
        session->Execute(std::string("Drop Index ") + lookup.index + " On " + lookup.table);
        EXPECT_EQ(PlanOfExecute(text), std::string("SCAN ") + lookup.table);
        session->GetTransaction().Rollback();
    }
}

}  // namespace
}  // namespace kpTables::engines::sqlite
