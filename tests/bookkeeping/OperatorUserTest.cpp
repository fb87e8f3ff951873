#include "kpTables/bookkeeping/OperatorUser.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "bookkeeping/BookOfAYear.h"
#include "kpTables/Error.h"
#include "kpTables/bookkeeping/Operators.h"

namespace kpTables::bookkeeping {
namespace {

/// "table: insert remove column column", a line a table, in order.
std::vector<std::string> RightsLines(const BookUser& user) {
    std::vector<std::string> lines;
    for (const TableRights& rights : user.rights) {
        std::string line = rights.table + ":";
        if (rights.insert) line += " insert";
        if (rights.remove) line += " remove";
        for (const std::string& column : rights.columns) line += " " + column;
        if (!rights.ownColumn.empty()) line += " where " + rights.ownColumn + "=" + rights.ownValue;
        lines.push_back(std::move(line));
    }
    std::ranges::sort(lines);
    return lines;
}

class OperatorUserTest : public ::testing::Test {
protected:
    OperatorUserTest() { AddOperator(book_, "系统操作员"); }

    std::vector<std::string> RightsWith(const std::vector<std::string>& rights) {
        const auto id = AddOperator(book_, "李明");
        std::vector<RightChange> changes;
        for (const std::string& right : rights) changes.push_back({right, true});
        ChangeRights(book_, id, changes);
        return RightsLines(UserOf(book_, id));
    }

    std::string ColumnsOf(const std::string& name) {
        std::string columns;
        for (const TableInfo& table : book_->Tables()) {
            if (table.name != name) continue;
            for (const auto& column : table.columns) columns += (columns.empty() ? "" : " ") + column.name;
        }
        return columns;
    }

    BookPtr book_ = BookOfAYear();
    const std::string own_ = "操作员: 密码 where 姓名=李明";
    const std::string log_ = "Log: insert";
};

TEST_F(OperatorUserTest, EverybodyWritesTheLogAndTheOwnPassword) {
    EXPECT_EQ(RightsWith({}), (std::vector<std::string>{log_, own_}));
}

TEST_F(OperatorUserTest, AuditorsChangeTheAuditAlone) {
    EXPECT_EQ(RightsWith({"单据审核"}),
              (std::vector<std::string>{log_, "入库目录: 审核员 审核日期", "出库目录: 审核员 审核日期", own_}));
}

TEST_F(OperatorUserTest, WhoEntersBillsChangesAllButTheAudit) {
    EXPECT_EQ(RightsWith({"入库处理", "成本处理"}),
              (std::vector<std::string>{
                  log_,
                  "入库目录: insert BillID 年份 月份 日子 单据类型 类型 单据编号 编号 BillType dpID ksID pjID 录入员 "
                  "录入日期 说明",
                  "入库记录: insert remove " + ColumnsOf("入库记录"), "成本目录: insert CostID 年份 月份 日子 dpID",
                  "成本记录: insert remove CostID pdID 单价 数量 金额", own_}));
}

TEST_F(OperatorUserTest, ClosingWritesTheBalanceAndTheClosingOfWarehouses) {
    const auto lines = RightsWith({"月末结帐", "商品管理"});
    ASSERT_EQ(lines.size(), 6U);
    EXPECT_TRUE(std::ranges::count(lines, "仓库设置: 结帐日期 结帐标志") == 1);
    EXPECT_TRUE(std::ranges::count(lines, "商品分类: insert remove ClassCode ClassName") == 1);
    EXPECT_TRUE(std::ranges::any_of(
        lines, [](const std::string& line) { return line.starts_with("仓库余额表: insert remove 年份 月份"); }));
}

TEST_F(OperatorUserTest, SettingsOpenEverything) {
    const auto user = UserOf(book_, OperatorId(book_, "系统操作员"));
    EXPECT_EQ(user.name, "系统操作员");
    const auto tables = book_->Tables();
    ASSERT_EQ(user.rights.size(), tables.size());
    for (const TableRights& rights : user.rights) {
        const auto table = std::ranges::find(tables, rights.table, &TableInfo::name);
        EXPECT_TRUE(rights.insert && rights.remove && rights.columns.size() == table->columns.size()) << rights.table;
        EXPECT_EQ(rights.ownColumn, rights.table == "操作员" ? "姓名" : "");
        EXPECT_EQ(rights.ownValue, "");
    }
}

TEST_F(OperatorUserTest, AnUnknownOperatorIsRefused) { EXPECT_THROW(UserOf(book_, 99), Error); }

}  // namespace
}  // namespace kpTables::bookkeeping
