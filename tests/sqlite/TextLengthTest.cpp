// A text column takes as many characters as it declares.
#include <gtest/gtest.h>

#include "TestBook.h"
#include "kpTables/Convert.h"

namespace kpTables {
namespace {

using namespace test;

class TextLength : public testing::Test {
protected:
    void SetUp() override {
        Run("Create Table 便笺 (ID COUNTER PRIMARY KEY, 题目 TEXT(4), 内容 MEMO, 备注 TEXT, 编号 CHAR(2))");
        Run("Insert Into 便笺 (题目, 内容) Values ('水泥', '普通硅酸盐水泥')");
    }
    void Run(std::string_view text) { book->Execute(text); }
    std::string Titles() { return RowsOf(*book, "Select 题目 From 便笺 Order by ID"); }

    static void ExpectTooLong(const std::function<void()>& call, const std::string& complaint) {
        const auto error = Refused(call);
        ASSERT_TRUE(error);
        EXPECT_EQ(error->Number(), Code(DatabaseErrorNumber::Overflow));
        EXPECT_EQ(error->Description(), complaint);
    }

    BookPtr book = NewBook();
};

TEST_F(TextLength, ALongerTextIsRefusedInEveryStatement) {
    const char* const kRefused[] = {
        "Insert Into 便笺 (题目) Values ('普通水泥沙')",
        "Insert Into 便笺 (题目) Values ('abcde')",
        "Insert Into 便笺 (题目) Values ('abc  ')",
        "Insert Into 便笺 (题目) Values (12345)",
        "Insert Into 便笺 (题目) Values ('普通' & '水泥沙')",
        "Insert Into 便笺 (题目) Select Left(内容, 5) From 便笺",
        "Insert Into 便笺 (题目) Select TOP 1 Left(内容, 5) From 便笺",
        "Update 便笺 Set 题目='普通水泥沙'",
        "Update 便笺 Set 题目=Left(内容, 5)",
        "Update 便笺 Set 题目=题目 & '普通A'",
    };
    for (const char* statement : kRefused) {
        SCOPED_TRACE(statement);
        ExpectTooLong([&] { Run(statement); }, "The field '题目' is too small for a text of 5 characters: it takes 4");
    }
    EXPECT_EQ(Titles(), "水泥");
}

TEST_F(TextLength, ATextOfAsManyCharactersIsTaken) {
    Run("Insert Into 便笺 (题目) Values ('普通水泥')");
    Run("Insert Into 便笺 (题目) Select Left(内容, 4) From 便笺 Where ID=1");
    Run("Insert Into 便笺 (题目) Values (Null)");
    Run("Insert Into 便笺 (题目) Values (1234)");
    Run("Update 便笺 Set 题目='𠮷𠮷𠮷𠮷' Where ID=1");
    EXPECT_EQ(Titles(), "𠮷𠮷𠮷𠮷 / 普通水泥 / 普通硅酸 / Null / 1234");
}

TEST_F(TextLength, EveryTypeHasItsOwn) {
    const std::string text255(255, 'x');
    Run("Update 便笺 Set 备注='" + text255 + "'");
    Run("Update 便笺 Set 内容='" + std::string(70000, 'x') + "'");
    EXPECT_EQ(ValueOf(*book, "Select Len(内容) From 便笺"), "70000");
    ExpectTooLong([&] { Run("Update 便笺 Set 备注='" + text255 + "x'"); },
                  "The field '备注' is too small for a text of 256 characters: it takes 255");
    ExpectTooLong([&] { Run("Update 便笺 Set 编号='A12'"); },
                  "The field '编号' is too small for a text of 3 characters: it takes 2");
    Run("Alter Table 便笺 Add Column 地点 TEXT(3)");
    ExpectTooLong([&] { Run("Update 便笺 Set 地点='一号仓库'"); },
                  "The field '地点' is too small for a text of 4 characters: it takes 3");
}

TEST_F(TextLength, TheSameTextIsTakenAndRefusedByItsValue) {
    Run("Update 便笺 Set 题目='abcd'");
    ExpectTooLong([&] { Run("Update 便笺 Set 题目='abcde'"); },
                  "The field '题目' is too small for a text of 5 characters: it takes 4");
    Run("Update 便笺 Set 题目='ab'");
    EXPECT_EQ(Titles(), "ab");
}

TEST_F(TextLength, ARowThatIsWrittenIsRefusedAsAWhole) {
    const RecordsetPtr rows = book->Open("便笺", SourceKind::Table);
    rows->AddNew();
    rows->Fields("题目").SetValue("普通水泥");
    rows->Update();
    rows->AddNew();
    rows->Fields("内容").SetValue("普通硅酸盐水泥");
    rows->Fields("题目").SetValue("普通水泥沙");
    ExpectTooLong([&] { rows->Update(); }, "The field '题目' is too small for a text of 5 characters: it takes 4");
    rows->Fields("题目").SetValue("沙");
    rows->Update();
    rows->Close();
    EXPECT_EQ(Titles(), "水泥 / 普通水泥 / 沙");

    const RecordsetPtr first = book->Open("Select ID, 题目 From 便笺 Where ID=1", SourceKind::Text);
    first->Fields("题目").SetValue("普通水泥沙");
    ExpectTooLong([&] { first->Update(); }, "The field '题目' is too small for a text of 5 characters: it takes 4");
    EXPECT_EQ(Titles(), "水泥 / 普通水泥 / 沙");
}

TEST_F(TextLength, ALongerTextIsLookedForAndNotFound) {
    EXPECT_EQ(ValueOf(*book, "Select Count(*) From 便笺 Where 题目='普通水泥沙'"), "0");
    Run("Delete From 便笺 Where 题目='普通水泥沙'");
    EXPECT_EQ(Titles(), "水泥");
}

}  // namespace
}  // namespace kpTables
