#include "kpTables/bookkeeping/NextYear.h"

#include <gtest/gtest.h>

#include "bookkeeping/BookOfAYear.h"
#include "kpTables/CTables.h"
#include "kpTables/Error.h"
#include "kpTables/bookkeeping/Check.h"
#include "kpTables/bookkeeping/NewBook.h"

namespace kpTables::bookkeeping {
namespace {

class NextYearTest : public ::testing::Test {
protected:
    void CloseAll(int first = 1) {
        auto year = Month(first);
        year.warehouse.reset();
        year.through = 12;
        for (const auto& result : CloseMonth(book_, host_, year)) ASSERT_EQ(result.outcome, ClosingOutcome::Done);
    }
    std::string Refusal() {
        try {
            BeginNextYear(*book_, next_);
        } catch (const Error& error) {
            EXPECT_EQ(error.Number(), 5);
            for (const TableInfo& table : next_->Tables())
                EXPECT_EQ(RowsOf(*next_, "Select Count(*) As n From [" + table.name + "]"),
                          std::vector<std::string>{"0"});
            return error.Description();
        }
        return "";
    }

    BookPtr book_ = BookOfAYear();
    BookPtr next_ = CreateBook("memory:");
    std::shared_ptr<OneAnswer> host_ = std::make_shared<OneAnswer>(MessageAnswer::Yes);
};

TEST_F(NextYearTest, OpensWithTheClosingStock) {
    Enter(*book_, {"入库", 1, 1, 1, 1, "3", "7.0001"});
    Enter(*book_, {"出库", 1, 5, 1, 1, "6", "20"});
    Enter(*book_, {"出库", 2, 12, 1, 2, "100", "24.9999"});
    CloseAll();
    const NextYear result = BeginNextYear(*book_, next_);
    EXPECT_EQ(result.year, 2005);
    EXPECT_EQ(result.openingRows, 3);
    EXPECT_TRUE(result.ownTables.empty());
    // 10 + 3 - 6 = 7 for 50 + 7.0001 - 20 = 37.0001; 100 - 100 = 0 for 25 - 24.9999 = 0.0001.
    EXPECT_EQ(RowsOf(*next_,
                     "Select 年份,月份,dpID,pdID,上期库存数量,上期库存金额,本期库存数量,本期库存金额,本期入库数量,"
                     "累计入库金额 From 仓库余额表 Order by dpID,pdID"),
              (std::vector<std::string>{"2005|1|1|1|7|37.0001|7|37.0001|0|0", "2005|1|1|2|0|0.0001|0|0.0001|0|0",
                                        "2005|1|2|1|3|15|3|15|0|0"}));
    const auto closing = book_->Execute(
        "Select 本期库存单价,本期库存数量,本期库存金额 From 仓库余额表 Where 月份=12 Order by dpID,pdID");
    const auto opening =
        next_->Execute("Select 上期库存单价,上期库存数量,上期库存金额 From 仓库余额表 Order by dpID,pdID");
    for (; !closing->Eof(); closing->MoveNext(), opening->MoveNext()) {
        for (int column = 0; column < 3; ++column) EXPECT_TRUE(opening->GetValue(column).Is(closing->GetValue(column)));
    }
    EXPECT_TRUE(opening->Eof());
    EXPECT_TRUE(CheckBook(*next_).empty());
}

TEST_F(NextYearTest, CarriesMastersOptionsOperatorsAndLayouts) {
    for (const char* text : {
             "Insert Into 厂商分类 (ClassID,ClassCode,ClassName) Values (4,'01','本地')",
             "Insert Into 厂商资料 (KSID,ClassCode,企业名称) Values (7,'01','华东水泥')",
             "Insert Into 客户分类 (ClassID,ClassCode) Values (5,'02')",
             "Insert Into 客户资料 (KSID,单位名称) Values (8,'杭州宏图')",
             "Insert Into 项目分类 (ClassID,ClassCode) Values (6,'03')",
             "Insert Into 项目设置 (项目ID,项目名称,ksID) Values (9,'桥',8)",
             "Insert Into 部门分类 (ClassID,ClassCode) Values (2,'04')",
             "Insert Into 雇员资料 (雇员ID,姓名) Values (11,'李明')",
             "Insert Into 商品分类 (ClassCode,ClassName) Values ('05','建材')",
             "Insert Into 收付款方式 (收付款方式,科目名称,科目代码) Values ('支票','银行','102')",
             "Insert Into 系统选项 (Item,Discription) Values ('单据位数','5')",
             "Insert Into AccInfo (单位名称,建帐日期) Values ('测试商行','2004年01月01日')",
             "Insert Into 操作员 (ID,姓名,密码,dpID,月末结帐) Values (3,'王','x',2,True)",
             "Insert Into Header ([Table],[Index],Flag,colkey,Width) Values ('单据',1,'a','数量',90.5)",
             "Insert Into History (rpID,Caption,setting) Values (12,'日报','...')",
             "Insert Into Log (logID,Operator) Values (1,'王')",
             "Insert Into 工资表 (年份,月份,姓名) Values (2004,1,'李明')",
             "Delete From 商品设置 Where pdID=3",
         })
        book_->Execute(text);
    Enter(*book_, {"入库", 1, 1, 1, 1, "3", "7"});
    CloseAll();
    BeginNextYear(*book_, next_);
    for (const char* table : {"厂商分类", "厂商资料", "客户分类", "客户资料", "项目分类", "项目设置", "部门分类",
                              "雇员资料", "商品分类", "商品设置", "收付款方式", "操作员", "Header", "History"}) {
        const std::string all = std::string("Select * From ") + table;
        EXPECT_EQ(RowsOf(*next_, all), RowsOf(*book_, all)) << table;
        EXPECT_FALSE(RowsOf(*next_, all).empty()) << table;
    }
    for (const char* table : {"入库目录", "入库记录", "Log", "工资表"})
        EXPECT_TRUE(RowsOf(*next_, std::string("Select * From ") + table).empty()) << table;
    EXPECT_EQ(RowsOf(*next_, "Select dpID,仓库名称,结帐标志 From 仓库设置 Order by dpID"),
              (std::vector<std::string>{"1|东库|False", "2|西库|False"}));
    EXPECT_EQ(RowsOf(*next_, "Select 单位名称,建帐日期,当前日期 From AccInfo"),
              std::vector<std::string>{"测试商行|2005年01月01日|2005-1-1"});
    CTables tables;
    tables.Cnn(next_);
    EXPECT_EQ(tables.Get_Option("单据位数"), "5");
    EXPECT_EQ(Text(tables.Get_AccInfo("帐簿年份")), "2005");
    EXPECT_EQ(Text(tables.Get_AccInfo("建帐月份")), "1");
    // A new product gets the next id.
    next_->Execute("Insert Into 商品设置 (商品名称) Values ('新')");
    EXPECT_EQ(RowsOf(*next_, "Select pdID From 商品设置 Where 商品名称='新'"), std::vector<std::string>{"5"});
}

TEST_F(NextYearTest, ARowWithoutStockNeedsAMovement) {
    book_->Execute("Insert Into 仓库余额表 (年份,月份,pdID,dpID) Values (2004,1,3,1)");
    book_->Execute("Insert Into 仓库余额表 (年份,月份,pdID,dpID) Values (2004,1,4,1)");
    Enter(*book_, {"入库", 1, 2, 1, 4, "3", "7"});
    Enter(*book_, {"出库", 1, 2, 1, 4, "3", "7"});
    CloseAll();
    BeginNextYear(*book_, next_);
    EXPECT_EQ(RowsOf(*next_, "Select pdID From 仓库余额表 Where dpID=1 Order by pdID"),
              (std::vector<std::string>{"1", "2", "4"}));
}

TEST_F(NextYearTest, NamesTheOpenWarehouses) {
    EXPECT_EQ(Refusal(), "month 12 is open in 东库, 西库; close it first");
    auto one = Month(1, 2);
    one.through = 12;
    CloseMonth(book_, host_, one);
    EXPECT_EQ(Refusal(), "month 12 is open in 东库; close it first");
    one.warehouse = 1;
    one.through = 11;
    CloseMonth(book_, host_, one);
    EXPECT_EQ(Refusal(), "month 12 is open in 东库; close it first");
    CloseMonth(book_, host_, Month(12));
    // A warehouse that was never used is not held against the others; one that only bills know is.
    book_->Execute("Insert Into 仓库设置 (dpID,仓库名称) Values (3,'新库')");
    Enter(*book_, {"入库", 1, 12, 9, 1, "3", "7"});
    EXPECT_EQ(Refusal(), "month 12 is open in warehouse 9; close it first");
    Remove(*book_, {"入库", 1, 12, 9, 1, "3", "7"});
    EXPECT_EQ(Refusal(), "");
}

TEST_F(NextYearTest, RefusesDoubledRows) {
    CloseAll();
    book_->Execute("Insert Into 仓库余额表 (年份,月份,pdID,dpID) Values (2004,12,1,2)");
    EXPECT_EQ(Refusal(), "month 12 has more than one balance row of product 1 in warehouse 2; remove the others first");
}

TEST_F(NextYearTest, ABookWithoutBalanceTakesItsYearFromItsDates) {
    book_ = CreateBook("memory:");
    EXPECT_EQ(Refusal(), "the book has no year: it has neither balance rows nor 建帐日期");
    PrepareBook(book_, Date::FromYearMonthDay(2025, 3, 9));
    EXPECT_EQ(BeginNextYear(*book_, next_).year, 2026);
}

TEST_F(NextYearTest, OwnColumnsComeAlongAndOwnTablesAreNamed) {
    book_->Execute("Alter Table 商品设置 Add Column 颜色 TEXT(50)");
    book_->Execute("Update 商品设置 Set 颜色='红' Where pdID=2");
    book_->Execute("Create Table 备忘 (id LONG)");
    CloseAll();
    const NextYear result = BeginNextYear(*book_, next_);
    EXPECT_EQ(result.ownColumns, std::vector<std::string>{"商品设置.颜色"});
    EXPECT_EQ(result.ownTables, std::vector<std::string>{"备忘"});
    EXPECT_EQ(RowsOf(*next_, "Select 颜色 From 商品设置 Where pdID=2"), std::vector<std::string>{"红"});
}

TEST_F(NextYearTest, KeepsTheNamesOfHeader) {
    EXPECT_EQ(HeaderDialectOf(*book_), HeaderDialect::Jet);
    NewBookOptions options;
    options.header = HeaderDialect::SqlServer;
    book_ = CreateBook("memory:", options);
    EXPECT_EQ(HeaderDialectOf(*book_), HeaderDialect::SqlServer);
    PrepareBook(book_);
    book_->Execute("Insert Into Header (TableName,ColIndex,Flag) Values ('单据',1,'a')");
    next_ = CreateBook("memory:", options);
    BeginNextYear(*book_, next_);
    EXPECT_EQ(RowsOf(*next_, "Select TableName,ColIndex,Flag From Header"), std::vector<std::string>{"单据|1|a"});
}

TEST_F(NextYearTest, TheOldBookIsOnlyRead) {
    book_->Execute("Insert Into 系统选项 (Item,Discription) Values ('当前日期','2001-1-1')");
    CloseAll();
    const auto before = Everything(*book_);
    BeginNextYear(*book_, next_);
    EXPECT_EQ(Everything(*book_), before);
    EXPECT_EQ(RowsOf(*book_, "Select Discription From 系统选项"), std::vector<std::string>{"2001-1-1"});
}

}  // namespace
}  // namespace kpTables::bookkeeping
