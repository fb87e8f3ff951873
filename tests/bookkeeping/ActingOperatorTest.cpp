#include "kpTables/bookkeeping/ActingOperator.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "bookkeeping/BookOfAYear.h"
#include "kpTables/Error.h"

namespace kpTables::bookkeeping {
namespace {

class ActingOperatorTest : public testing::Test {
protected:
    ActingOperatorTest() {
        for (const char* text :
             {"Insert Into 操作员 (ID,姓名,密码,dpID,月末结帐,资产处理) Values (1,'李明','秘密 8801',2,True,True)",
              "Insert Into 操作员 (ID,姓名,密码) Values (2,'王芳','')",
              "Insert Into 操作员 (ID,姓名,密码) Values (3,'赵六',Null)",
              "Insert Into 操作员 (ID,姓名,密码) Values (4,'O''Hara','a')",
              "Insert Into 操作员 (ID,姓名,密码) Values (5,'同名','a')",
              "Insert Into 操作员 (ID,姓名,密码) Values (6,'同名','a')"})
            book_->Execute(text);
    }
    ActingOperator LogIn(const std::string& name, const std::string& password) {
        return ActingOperator(book_, name, [&] {
            ++asked_;
            return password;
        });
    }
    std::string Refusal(const std::string& name, const std::string& password) {
        try {
            LogIn(name, password);
        } catch (const Error& error) {
            return error.Description();
        }
        return "logged in";
    }
    BookPtr book_ = BookOfAYear();
    int asked_ = 0;
};

TEST_F(ActingOperatorTest, KnowsWhoLoggedIn) {
    const auto acting = LogIn("李明 ", "秘密 8801");
    EXPECT_EQ(acting.Id(), 1);
    EXPECT_EQ(acting.Name(), "李明");
    EXPECT_EQ(acting.Warehouse(), 2);
    EXPECT_EQ(asked_, 1);
    EXPECT_EQ(LogIn("O'Hara", "a").Id(), 4);
}

TEST_F(ActingOperatorTest, UnknownNamesAndWrongPasswordsAreRefusedAlike) {
    const std::string words = "the operator's name or password is wrong";
    EXPECT_EQ(Refusal("李明", "秘密"), words);
    EXPECT_EQ(Refusal("李明", ""), words);
    EXPECT_EQ(Refusal("李明", "秘密 8801 "), words);
    EXPECT_EQ(Refusal("张三", ""), words);
    EXPECT_EQ(asked_, 4);
    EXPECT_EQ(Refusal("' Or 1=1", ""), words);
    EXPECT_EQ(Refusal("同名", "a"), "several operators have the name 同名; rename one");
}

TEST_F(ActingOperatorTest, OneWithoutAPasswordIsNotAskedForIt) {
    EXPECT_EQ(LogIn("王芳", "any").Id(), 2);
    EXPECT_EQ(LogIn("赵六", "any").Id(), 3);
    EXPECT_EQ(asked_, 0);
}

TEST_F(ActingOperatorTest, ALostPasswordColumnLetsNobodyIn) {
    book_->Execute("Drop Table 操作员");
    book_->Execute("Create Table 操作员 (ID COUNTER PRIMARY KEY, 姓名 TEXT(255), dpID LONG)");
    book_->Execute("Insert Into 操作员 (ID,姓名) Values (1,'李明')");
    book_->Execute("Insert Into 操作员 (ID,姓名) Values (2,'王芳')");
    EXPECT_THROW(LogIn("李明", ""), Error);
    EXPECT_THROW(LogIn("王芳", ""), Error);
    book_->Execute("Drop Table 操作员");
    EXPECT_THROW(LogIn("李明", ""), Error);
}

TEST_F(ActingOperatorTest, ABookForReadingOnlyKnowsItsOperators) {
    const std::string path = testing::TempDir() + "acting.kpbook";
    std::filesystem::remove(path);
    CreateBook(path)->Execute("Insert Into 操作员 (姓名,密码,报表打印) Values ('李明','8801',True)");
    const auto book = OpenBook(path, {.readOnly = true});
    const ActingOperator acting(book, "李明", [] { return "8801"; });
    EXPECT_TRUE(acting.Has(rights::kReports));
    EXPECT_FALSE(acting.Has(rights::kStock));
    EXPECT_FALSE(OperatorRequired(book));
    EXPECT_THROW(acting.Log(Date(), "a change"), Error);
}

TEST_F(ActingOperatorTest, RightsAreThoseOfTheRow) {
    const auto acting = LogIn("李明", "秘密 8801");
    EXPECT_TRUE(acting.Has(rights::kClose));
    EXPECT_TRUE(acting.Has(rights::kSuppliers));
    EXPECT_FALSE(acting.Has(rights::kInbound));
    EXPECT_FALSE(acting.Has("no such right"));
    EXPECT_NO_THROW(acting.Require(rights::kClose));
    try {
        acting.Require(rights::kCustomers);
        FAIL();
    } catch (const Error& error) {
        EXPECT_EQ(error.Description(), "the operator 李明 does not have the right 收货单位");
    }
}

TEST_F(ActingOperatorTest, LinesOfTheLogGoWithTheirTransaction) {
    const auto acting = LogIn("李明", "秘密 8801");
    acting.Log(*Date::ParseIso("2004-03-01T08:30:00"), "商品 7");
    book_->BeginTrans();
    acting.Log(Date(), "undone");
    book_->RollbackTrans();
    std::string long_;
    for (int i = 0; i < 300; ++i) long_ += "长";
    acting.Log(*Date::ParseIso("2004-03-02"), long_);
    EXPECT_EQ(RowsOf(*book_, "Select Operator,logDate,内容 From Log Where Len(内容)<255"),
              (std::vector<std::string>{"1|2004-3-1 8:30:00|商品 7"}));
    EXPECT_EQ(RowsOf(*book_, "Select Count(*),Max(Len(内容)) From Log"), (std::vector<std::string>{"2|255"}));
}

TEST_F(ActingOperatorTest, TheSettingNeedsSomebodyWhoCanChangeIt) {
    EXPECT_FALSE(OperatorRequired(book_));
    EXPECT_THROW(RequireOperator(book_, true), Error);
    EXPECT_FALSE(OperatorRequired(book_));
    book_->Execute("Update 操作员 Set 系统设置=True Where ID=1");
    RequireOperator(book_, true);
    EXPECT_TRUE(OperatorRequired(book_));
    RequireOperator(book_, false);
    EXPECT_FALSE(OperatorRequired(book_));
}

TEST_F(ActingOperatorTest, ASettingThatCannotBeReadIsAnError) {
    book_->Execute("Update 操作员 Set 系统设置=True Where ID=1");
    RequireOperator(book_, true);
    book_->Execute("Drop Table 系统选项");
    book_->Execute("Create Table 系统选项 (Item TEXT(255) PRIMARY KEY)");
    book_->Execute("Insert Into 系统选项 (Item) Values ('操作员登录')");
    EXPECT_THROW(OperatorRequired(book_), Error);
    book_->Execute("Drop Table 系统选项");
    EXPECT_FALSE(OperatorRequired(book_));
}

}  // namespace
}  // namespace kpTables::bookkeeping
