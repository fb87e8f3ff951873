#include "kpTables/bookkeeping/MasterEntry.h"

#include <gtest/gtest.h>

#include "bookkeeping/BookOfAYear.h"
#include "kpTables/Error.h"
#include "kpTables/bookkeeping/Check.h"

namespace kpTables::bookkeeping {
namespace {

class MasterEntryTest : public testing::Test {
protected:
    std::int32_t Add(MasterKind kind, const ColumnValues& values) { return AddMaster(book_, kind, values); }
    template <class Action>
    std::string Refused(Action action) {
        const auto before = Rows();
        try {
            action();
        } catch (const Error& error) {
            EXPECT_EQ(error.Number(), 5) << error.Description();
            EXPECT_EQ(Rows(), before);
            return error.Description();
        }
        return "done";
    }
    std::string RefusedAdd(MasterKind kind, const ColumnValues& values) {
        return Refused([&] { Add(kind, values); });
    }
    std::string RefusedEdit(MasterKind kind, const std::string& which, const ColumnValues& values) {
        return Refused([&] { EditMaster(book_, kind, which, values); });
    }
    std::string RefusedRemoval(MasterKind kind, const std::string& which) {
        return Refused([&] { RemoveMaster(book_, kind, which); });
    }
    std::vector<std::string> Rows() {
        std::vector<std::string> rows;
        for (const char* table : {"仓库设置", "厂商资料", "客户资料", "商品设置", "项目设置", "雇员资料", "收付款方式",
                                  "厂商分类", "客户分类", "项目分类", "部门分类", "商品分类"}) {
            for (auto& row : RowsOf(*book_, "Select * From " + std::string(table))) rows.push_back(table + ("|" + row));
        }
        return rows;
    }
    BookPtr book_ = BookOfAYear();
};

TEST_F(MasterEntryTest, AddsRowsOfEveryKind) {
    EXPECT_EQ(Add(MasterKind::Warehouse, {{"仓库名称", "南库"}}), 3);
    EXPECT_EQ(Add(MasterKind::SupplierClass, {{"ClassCode", "01"}, {"ClassName", "厂家"}}), 1);
    EXPECT_EQ(Add(MasterKind::Supplier, {{"企业名称", "O'Hara"}, {"ClassCode", "厂家"}}), 1);
    EXPECT_EQ(Add(MasterKind::Customer, {{"企业名称", "杭州宏图"}}), 1);
    EXPECT_EQ(Add(MasterKind::ProductClass, {{"ClassCode", "02"}, {"ClassName", "水泥"}}), 1);
    EXPECT_EQ(Add(MasterKind::ProductClass, {{"ClassCode", "01"}, {"ClassName", "螺栓"}}), 2);
    EXPECT_EQ(Add(MasterKind::Product, {{"商品编号", "02001"},
                                        {"商品名称", " 水泥 "},
                                        {"KSID", "O'Hara"},
                                        {"classcode", "水泥"},
                                        {"增值税率", "0.13"}}),
              5);
    EXPECT_EQ(Add(MasterKind::Project, {{"项目名称", "南桥"}, {"ksID", "杭州宏图"}}), 1);
    EXPECT_EQ(Add(MasterKind::Employee, {{"姓名", "李明"}}), 1);
    EXPECT_EQ(Add(MasterKind::Payment, {{"收付款方式", "转账"}, {"科目代码", "102"}}), 1);
    EXPECT_EQ(RowsOf(*book_, "Select KSID,ClassCode,企业名称,单位名称 From 厂商资料"),
              (std::vector<std::string>{"1|01|O'Hara|O'Hara"}));
    EXPECT_EQ(
        RowsOf(*book_, "Select pdID,商品编号,商品名称,KSID,ClassCode,增值税率,默认单价 From 商品设置 Where pdID=5"),
        (std::vector<std::string>{"5|02001|水泥|1|02|0.13|0"}));
    EXPECT_EQ(RowsOf(*book_, "Select 项目名称,ksID From 项目设置"), (std::vector<std::string>{"南桥|1"}));
    EXPECT_EQ(ListMasters(book_, MasterKind::Product)->RecordCount(), 5);
    EXPECT_EQ(ListMasters(book_, MasterKind::ProductClass)->RecordCount(), 2);
}

TEST_F(MasterEntryTest, RefusesWhatIsWrong) {
    EXPECT_EQ(RefusedAdd(MasterKind::Warehouse, {{"名称", "南库"}}),
              "仓库设置 has no column 名称; did you mean 仓库名称? (columns: 仓库名称)");
    EXPECT_EQ(RefusedAdd(MasterKind::Warehouse, {}), "nothing is given for the warehouse");
    EXPECT_EQ(RefusedAdd(MasterKind::Warehouse, {{"dpID", 9}}), "dpID is not set by hand");
    EXPECT_EQ(RefusedAdd(MasterKind::Warehouse, {{"仓库名称", "南库"}, {"结帐标志", "yes"}}),
              "结帐标志 is not set by hand");
    EXPECT_EQ(RefusedAdd(MasterKind::Warehouse, {{"仓库名称", " "}}), "a warehouse needs 仓库名称");
    EXPECT_EQ(RefusedAdd(MasterKind::Warehouse, {{"仓库名称", "全部"}}), "仓库名称: 全部 means all warehouses");
    EXPECT_EQ(RefusedAdd(MasterKind::Warehouse, {{"仓库名称", "a"}, {"仓库名称", "b"}}), "仓库名称 is given twice");
    EXPECT_EQ(RefusedAdd(MasterKind::Product, {{"商品名称", "油漆"}}), "a product needs 商品编号");
    const ColumnValues paint{{"商品编号", "03001"}, {"商品名称", "油漆"}};
    const auto with = [&](const char* column, const char* value) {
        auto values = paint;
        values.push_back({column, value});
        return RefusedAdd(MasterKind::Product, values);
    };
    EXPECT_EQ(with("默认单价", "十元"), "默认单价: '十元' is no number");
    EXPECT_EQ(with("默认单价", "-1"), "默认单价: '-1' is negative");
    EXPECT_EQ(with("KSID", "无此厂"), "the book has no supplier 无此厂");
    EXPECT_EQ(with("ClassCode", "09"), "the book has no product class 09");
}

TEST_F(MasterEntryTest, NamesAndNumbersAreNotGivenTwice) {
    EXPECT_EQ(RefusedAdd(MasterKind::Warehouse, {{"仓库名称", "东库 "}}),
              "仓库名称 东库: the warehouse 1 (东库) has it already");
    Add(MasterKind::Product, {{"商品编号", "A1"}, {"商品名称", "水泥"}, {"规格", "425#"}, {"商品条码", "690"}});
    EXPECT_EQ(RefusedAdd(MasterKind::Product, {{"商品编号", "ａ1"}, {"商品名称", "油漆"}}),
              "商品编号 ａ1: the product 5 (A1 水泥 425#) has it already");
    EXPECT_EQ(RefusedAdd(MasterKind::Product, {{"商品编号", "690"}, {"商品名称", "油漆"}}),
              "商品编号 690: the product 5 (A1 水泥 425#) has it already");
    EXPECT_EQ(RefusedAdd(MasterKind::Product, {{"商品编号", "A2"}, {"商品名称", "水泥"}, {"规格", "425#"}}),
              "商品名称 水泥: the product 5 (A1 水泥 425#) has it already");
    EXPECT_EQ(Add(MasterKind::Product, {{"商品编号", "A2"}, {"商品名称", "水泥"}, {"规格", "525#"}}), 6);
    EXPECT_EQ(RefusedEdit(MasterKind::Product, "A2", {{"规格", "425#"}}),
              "商品名称 水泥: the product 5 (A1 水泥 425#) has it already");
    Add(MasterKind::Customer, {{"企业名称", "杭州宏图建材有限公司"}, {"单位名称", "杭州宏图"}});
    EXPECT_EQ(RefusedAdd(MasterKind::Customer, {{"企业名称", "杭州宏图"}}),
              "企业名称 杭州宏图: the customer 1 (杭州宏图建材有限公司) has it already");
    Add(MasterKind::Payment, {{"收付款方式", "现金"}});
    EXPECT_EQ(RefusedAdd(MasterKind::Payment, {{"收付款方式", "现金"}}),
              "收付款方式 现金: the payment method 1 (现金) has it already");
}

TEST_F(MasterEntryTest, ChangesARow) {
    Add(MasterKind::Supplier, {{"企业名称", "宏图"}});
    EditMaster(book_, MasterKind::Supplier, "宏图", {{"企业名称", "杭州宏图"}});
    EXPECT_EQ(RowsOf(*book_, "Select 企业名称,单位名称 From 厂商资料"),
              (std::vector<std::string>{"杭州宏图|杭州宏图"}));
    EditMaster(book_, MasterKind::Supplier, "1", {{"单位名称", "宏图"}});
    EditMaster(book_, MasterKind::Supplier, "1", {{"企业名称", "杭州宏图厂"}});
    EXPECT_EQ(RowsOf(*book_, "Select 企业名称,单位名称 From 厂商资料"), (std::vector<std::string>{"杭州宏图厂|宏图"}));
    EditMaster(book_, MasterKind::Warehouse, "东库", {{"仓库名称", "东库"}});
    EXPECT_EQ(RefusedEdit(MasterKind::Warehouse, "东库", {{"仓库名称", "西库"}}),
              "仓库名称 西库: the warehouse 2 (西库) has it already");
    EXPECT_EQ(RefusedEdit(MasterKind::Warehouse, "东库", {{"仓库名称", ""}}), "a warehouse needs 仓库名称");
    EXPECT_EQ(RefusedEdit(MasterKind::Warehouse, "北库", {{"仓库名称", "x"}}), "the book has no warehouse 北库");
    Add(MasterKind::Payment, {{"收付款方式", "现金"}});
    EditMaster(book_, MasterKind::Payment, "现金", {{"科目代码", "101"}, {"收付款方式", "现款"}});
    EXPECT_EQ(RowsOf(*book_, "Select 收付款方式,科目代码 From 收付款方式"), (std::vector<std::string>{"现款|101"}));
}

TEST_F(MasterEntryTest, WhatIsUsedStays) {
    book_->Execute("Update 商品设置 Set 商品编号='0' & pdID");
    Enter(*book_, {"入库", 1, 1, 1, 1, "1", "5"});
    book_->Execute("Insert Into 操作员 (姓名,dpID) Values ('李明',2)");
    EXPECT_EQ(RefusedRemoval(MasterKind::Product, "01"),
              "the product 1 (01 商品1) is used: 2 rows of 仓库余额表, 1 row of 入库记录");
    EXPECT_EQ(RefusedRemoval(MasterKind::Warehouse, "西库"),
              "the warehouse 2 (西库) is used: 1 row of 仓库余额表, 1 row of 操作员");
    RemoveMaster(book_, MasterKind::Product, "03");
    EXPECT_EQ(RowsOf(*book_, "Select pdID From 商品设置 Order by pdID"), (std::vector<std::string>{"1", "2", "4"}));
    Add(MasterKind::CustomerClass, {{"ClassCode", "01"}, {"ClassName", "零售"}});
    Add(MasterKind::Customer, {{"企业名称", "金桥"}, {"ClassCode", "01"}});
    EXPECT_EQ(RefusedRemoval(MasterKind::CustomerClass, "零售"),
              "the customer class 1 (01 零售) is used: 1 row of 客户资料");
    EXPECT_EQ(RefusedEdit(MasterKind::CustomerClass, "零售", {{"ClassCode", "02"}}),
              "the ClassCode of the customer class 1 (01 零售) is used: 1 row of 客户资料");
    EditMaster(book_, MasterKind::CustomerClass, "零售", {{"ClassCode", "01"}, {"ClassName", "批发"}});
    RemoveMaster(book_, MasterKind::Customer, "金桥");
    RemoveMaster(book_, MasterKind::CustomerClass, "批发");
    EXPECT_TRUE(RowsOf(*book_, "Select * From 客户分类").empty());
    Add(MasterKind::Employee, {{"姓名", "王芳"}});
    book_->Execute("Update 入库记录 Set 经手人='王芳'");
    EXPECT_EQ(RefusedRemoval(MasterKind::Employee, "王芳"), "the employee 1 (王芳) is used: 1 row of 入库记录");
    Add(MasterKind::Payment, {{"收付款方式", "现金"}});
    RemoveMaster(book_, MasterKind::Payment, "现金");
    EXPECT_TRUE(RowsOf(*book_, "Select * From 收付款方式").empty());
}

TEST_F(MasterEntryTest, ABookWithANewWarehouseCloses) {
    Add(MasterKind::Warehouse, {{"仓库名称", "南库"}});
    ClosingOptions options;
    options.month = 1;
    options.note = "2004-1-31";
    std::vector<ClosingOutcome> outcomes;
    for (const auto& result : CloseMonth(book_, std::make_shared<OneAnswer>(MessageAnswer::Yes), options))
        outcomes.push_back(result.outcome);
    EXPECT_EQ(outcomes, (std::vector{ClosingOutcome::Done, ClosingOutcome::Done, ClosingOutcome::NothingToDo}));
    EXPECT_TRUE(CheckBook(*book_).empty());
}

TEST_F(MasterEntryTest, KindsHaveWords) {
    EXPECT_EQ(MasterKindOf("warehouse"), MasterKind::Warehouse);
    EXPECT_EQ(MasterKindOf("客户分类"), MasterKind::CustomerClass);
    EXPECT_EQ(MasterKindOf("product-class"), MasterKind::ProductClass);
    EXPECT_EQ(MasterKindOf("class"), std::nullopt);
    EXPECT_EQ(ClassKindOf("部门"), MasterKind::DepartmentClass);
    EXPECT_EQ(ClassKindOf("warehouse"), std::nullopt);
    Add(MasterKind::CustomerClass, {{"ClassCode", "01"}, {"ClassName", "零售"}});
    Add(MasterKind::ProductClass, {{"ClassCode", "01"}, {"ClassName", "水泥"}});
    EXPECT_EQ(ClassKindWith(book_, "水泥"), MasterKind::ProductClass);
    EXPECT_EQ(Refused([&] { ClassKindWith(book_, "01"); }),
              "'01' may be any of these classes: 客户 1 (01 零售), 商品 1 (01 水泥); say which kind, and the code: "
              "种类=商品");
    EXPECT_EQ(Refused([&] { ClassKindWith(book_, "07"); }), "the book has no class 07");
}

}  // namespace
}  // namespace kpTables::bookkeeping
