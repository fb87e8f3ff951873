#include "kpTables/bookkeeping/Operators.h"

#include <gtest/gtest.h>

#include "bookkeeping/BookOfAYear.h"
#include "kpTables/Error.h"
#include "kpTables/bookkeeping/ActingOperator.h"

namespace kpTables::bookkeeping {
namespace {

class OperatorsTest : public testing::Test {
protected:
    template <class Action>
    std::string Refused(Action action) {
        const auto before = RowsOf(*book_, "Select * From 操作员");
        try {
            action();
        } catch (const Error& error) {
            EXPECT_EQ(error.Number(), 5) << error.Description();
            EXPECT_EQ(RowsOf(*book_, "Select * From 操作员"), before);
            return error.Description();
        }
        return "done";
    }
    /// The rights that are given.
    std::vector<std::string> RightsOf(std::int32_t id) {
        std::vector<std::string> given;
        const auto row = book_->Execute("Select * From 操作员 Where ID=" + std::to_string(id));
        for (const auto& right : AllRights(book_)) {
            if (CBool(row->Fields(right).Value())) given.push_back(right);
        }
        return given;
    }
    BookPtr book_ = BookOfAYear();
};

using Rights = std::vector<std::string>;

TEST_F(OperatorsTest, TheFirstHasAllRightsAndTheNextHardlyAny) {
    const auto first = AddOperator(book_, " 系统操作员 ");
    const auto second = AddOperator(book_, "O'Hara");
    EXPECT_EQ(OperatorId(book_, "系统操作员"), first);
    EXPECT_EQ(OperatorId(book_, "o'hara"), second);
    EXPECT_EQ(OperatorId(book_, std::to_string(second)), second);
    EXPECT_EQ(AllRights(book_).size(), 16U);
    EXPECT_EQ(RightsOf(first), AllRights(book_));
    EXPECT_EQ(RightsOf(second), Rights{"凭证处理"});
    EXPECT_EQ(Refused([&] { AddOperator(book_, "o'hara"); }), "an operator has the name o'hara already");
    EXPECT_EQ(Refused([&] { AddOperator(book_, " "); }), "the operator needs a name");
    EXPECT_EQ(Refused([&] { OperatorId(book_, "9"); }), "the book has no operator 9");
}

TEST_F(OperatorsTest, RightsAreGivenAndTaken) {
    AddOperator(book_, "系统操作员");
    const auto id = AddOperator(book_, "李明");
    ChangeRights(book_, id, {{"入库处理"}, {"发货单位"}, {"凭证处理", false}});
    EXPECT_EQ(RightsOf(id), (Rights{"入库处理", "资产处理"}));
    EXPECT_NE(Refused([&] {
                  ChangeRights(book_, id, {{"出库处理"}, {"入库处里"}});
              }).find("there is no right 入库处里; did you mean 入库处理? (rights: 入库处理、出库处理、"),
              std::string::npos);
    EXPECT_NE(Refused([&] { ChangeRights(book_, id, {{"密码"}}); }).find("there is no right 密码"), std::string::npos);
    ClearRights(book_, id);
    EXPECT_EQ(RightsOf(id), Rights{});
    EXPECT_EQ(Refused([&] { ClearRights(book_, 9); }), "the book has no operator 9");
}

TEST_F(OperatorsTest, NamesWarehousesAndPasswords) {
    const auto id = AddOperator(book_, "李明");
    RenameOperator(book_, id, "O'Hara");
    SetManagedWarehouse(book_, id, 2);
    SetPassword(book_, id, "a'b c");
    EXPECT_EQ(RowsOf(*book_, "Select 姓名,dpID,密码 From 操作员"), (std::vector<std::string>{"O'Hara|2|a'b c"}));
    EXPECT_EQ(ActingOperator(book_, "O'Hara", [] { return "a'b c"; }).Warehouse(), 2);
    ClearPassword(book_, id);
    SetManagedWarehouse(book_, id, 0);
    EXPECT_EQ(RowsOf(*book_, "Select dpID,密码 From 操作员"), (std::vector<std::string>{"0|"}));
    EXPECT_EQ(Refused([&] { SetManagedWarehouse(book_, id, 3); }), "the book has no warehouse 3");
    AddOperator(book_, "王芳");
    EXPECT_EQ(Refused([&] { RenameOperator(book_, id, "王芳"); }), "an operator has the name 王芳 already");
}

TEST_F(OperatorsTest, WhoLeftTracesStays) {
    AddOperator(book_, "系统操作员");
    const auto id = AddOperator(book_, "李明");
    book_->Execute("Insert Into 入库目录 (BillID,录入员) Values (1,'李明')");
    EXPECT_EQ(Refused([&] { RemoveOperator(book_, id); }),
              "the operator 李明 has entered or audited bills: 1 row of 入库目录; take the rights instead");
    book_->Execute("Delete From 入库目录");
    ActingOperator(book_, "李明", [] { return ""; }).Log(Date(), "something");
    EXPECT_EQ(Refused([&] { RemoveOperator(book_, id); }),
              "the operator 李明 has lines in the log; take the rights instead");
    book_->Execute("Delete From Log");
    RemoveOperator(book_, id);
    EXPECT_EQ(RowsOf(*book_, "Select 姓名 From 操作员"), (std::vector<std::string>{"系统操作员"}));
}

TEST_F(OperatorsTest, TheLastWhoMayChangeSettingsKeepsTheRight) {
    const auto first = AddOperator(book_, "系统操作员");
    const auto second = AddOperator(book_, "李明");
    RequireOperator(book_, true);
    const std::string why =
        "no operator would have the right 系统设置, and the book demands an operator for every change";
    EXPECT_EQ(Refused([&] { ClearRights(book_, first); }), why);
    EXPECT_EQ(Refused([&] { ChangeRights(book_, first, {{"系统设置", false}}); }), why);
    EXPECT_EQ(Refused([&] { RemoveOperator(book_, first); }), why);
    ChangeRights(book_, second, {{"系统设置"}});
    ClearRights(book_, first);
    RequireOperator(book_, false);
    ClearRights(book_, second);
}

TEST_F(OperatorsTest, AFailureThatAMethodTrapsIsAnError) {
    const auto id = AddOperator(book_, "李明");
    book_->Execute("Drop Table 操作员");
    EXPECT_THROW(SetPassword(book_, id, "x"), Error);
    EXPECT_THROW(ClearRights(book_, id), Error);
}

}  // namespace
}  // namespace kpTables::bookkeeping
