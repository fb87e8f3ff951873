// Editable sources.
#include "engines/common/TableSource.h"

#include <gtest/gtest.h>

#include "engines/FakeDriver.h"
#include "sql/SqlError.h"
#include "sql/parse/Parser.h"

namespace kpTables {
namespace {

using namespace test;

class Sources : public testing::Test {
protected:
    /// The columns that are written, "*" before them when the recordset holds the whole table; "(none)" when its rows
    /// cannot be edited.
    std::string Written(std::string_view text) {
        sql::StatementPtr tree = sql::parse::Parse(text);
        const auto source = engines::SourceOfSelect(tree, catalog);
        if (!source) return tree ? "(none)" : "(the tree is gone)";
        std::string columns = source->wholeTable ? "*" : "";
        for (const std::string& column : source->columns) columns += " " + column;
        return columns;
    }

    FakeDatabase database;
    FakeCatalog catalog{database};
};

TEST_F(Sources, TheRowsOfOneTable) {
    EXPECT_EQ(Written("Select * From T"), "* k n x");
    EXPECT_EQ(Written("Select x, N From t Order By x"), "* x N");
    EXPECT_EQ(Written("Select n As N From T Where n=1"), " n");
    EXPECT_EQ(Written("Select Top 1 a.n From T As a"), " n");
}

TEST_F(Sources, NothingElse) {
    for (const char* text :
         {"Select Distinct n From T", "Select n From T Group By n", "Select n, n From T", "Select *, n From T",
          "Select n As m From T", "Select n + 1 From T", "Select a.n From T As a, T As b", "Select n From U",
          "Select n From (Select n From T)", "Select n From T Union Select n From T", "Delete From T"}) {
        EXPECT_EQ(Written(text), "(none)") << text;
    }
}

TEST_F(Sources, ATableIsWrittenWithItsDefaultsLengthsAndRowId) {
    const engines::WrittenTable written = engines::WrittenTableOf(engines::SourceOfTable("t", catalog), catalog);
    EXPECT_EQ(written.name, "T");
    EXPECT_TRUE(written.whole);
    ASSERT_EQ(written.columns.size(), 3u);
    EXPECT_EQ(written.rowIdColumn, 0);
    EXPECT_TRUE(written.columns[0].defaultValue.IsNull());
    EXPECT_EQ(*written.columns[1].defaultValue.If<std::int32_t>(), 5);
    EXPECT_EQ(written.columns[2].length, 5);
    EXPECT_THROW(engines::SourceOfTable("U", catalog), sql::SqlError);
}

TEST_F(Sources, TheRowIdStandsBehindTheColumns) {
    const engines::RowIdCatalog withRowId(catalog, "T");
    ASSERT_EQ(withRowId.Find("t")->columns.size(), 4u);
    EXPECT_EQ(withRowId.Find("T")->columns[3].name, "id");
    EXPECT_EQ(withRowId.Find("U"), nullptr);
}

}  // namespace
}  // namespace kpTables
