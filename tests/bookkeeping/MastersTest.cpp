#include "kpTables/bookkeeping/Masters.h"

#include <gtest/gtest.h>

#include "kpTables/Book.h"
#include "kpTables/Error.h"

namespace kpTables::bookkeeping {
namespace {

BookPtr BookWithMasters() {
    auto book = CreateBook("memory:");
    for (const char* text :
         {"Insert Into 仓库设置 (dpID,仓库名称) Values (1,'中心仓库')",
          "Insert Into 仓库设置 (dpID,仓库名称) Values (2,'Depot B')",
          "Insert Into 仓库设置 (dpID,仓库名称) Values (7,'2')",
          "Insert Into 仓库设置 (dpID,仓库名称) Values (8,'旧库')",
          "Insert Into 仓库设置 (dpID,仓库名称) Values (9,'旧库')",
          "Insert Into 厂商资料 (KSID,企业名称,单位名称) Values (1,'杭州宏图建材有限公司','杭州宏图')",
          "Insert Into 厂商资料 (KSID,企业名称,单位名称) Values (2,'杭州宏图',Null)",
          "Insert Into 厂商资料 (KSID,企业名称) Values (3,'O''Hara')",
          "Insert Into 客户资料 (KSID,企业名称) Values (4,'金桥建筑公司')",
          "Insert Into 商品设置 (pdID,商品编号,商品名称,商品条码,规格) Values (1,'01001','水泥','690001','425#')",
          "Insert Into 商品设置 (pdID,商品编号,商品名称,规格) Values (2,'01003','水泥','525#')",
          "Insert Into 商品设置 (pdID,商品编号,商品名称) Values (3,'690001','螺栓')",
          "Insert Into 项目设置 (项目ID,项目编号,项目名称) Values (5,'A-1','南桥')",
          "Insert Into 雇员资料 (雇员ID,姓名) Values (6,'李明')", "Insert Into 收付款方式 (收付款方式) Values (' ')",
          "Insert Into 收付款方式 (收付款方式) Values ('现金')",
          "Insert Into 客户分类 (ClassID,ClassCode,ClassName) Values (3,'01','零售')",
          "Insert Into 商品分类 (ClassCode,ClassName) Values ('02','水泥制品')",
          "Insert Into 商品分类 (ClassCode,ClassName) Values ('01','水泥')"})
        book->Execute(text);
    return book;
}

class MastersTest : public testing::Test {
protected:
    std::int32_t IdOf(MasterKind kind, const std::string& text) { return MasterId(book_, kind, text); }
    std::string Refusal(MasterKind kind, const std::string& text) {
        try {
            const auto id = IdOf(kind, text);
            return "found " + std::to_string(id);
        } catch (const Error& error) {
            EXPECT_EQ(error.Number(), 5);
            return error.Description();
        }
    }
    BookPtr book_ = BookWithMasters();
};

TEST_F(MastersTest, NamesAreFoundAsTheBookComparesThem) {
    EXPECT_EQ(IdOf(MasterKind::Warehouse, "中心仓库"), 1);
    EXPECT_EQ(IdOf(MasterKind::Warehouse, "ｄepot b  "), 2);
    EXPECT_EQ(IdOf(MasterKind::Supplier, "O'Hara"), 3);
    EXPECT_EQ(IdOf(MasterKind::Customer, "金桥建筑公司"), 4);
    EXPECT_EQ(IdOf(MasterKind::Project, "a-1"), 5);
    EXPECT_EQ(IdOf(MasterKind::Project, "南桥"), 5);
    EXPECT_EQ(IdOf(MasterKind::Employee, "李明"), 6);
    EXPECT_EQ(IdOf(MasterKind::CustomerClass, "零售"), 3);
}

TEST_F(MastersTest, TheLookUpsOrderDecides) {
    EXPECT_EQ(IdOf(MasterKind::Supplier, "杭州宏图"), 1) << "单位名称 before 企业名称";
    EXPECT_EQ(IdOf(MasterKind::Product, "690001"), 1) << "the bar code before the number";
    EXPECT_EQ(IdOf(MasterKind::Product, "01003"), 2);
}

TEST_F(MastersTest, DigitsAreAnIdUnlessTheyAreAName) {
    EXPECT_EQ(IdOf(MasterKind::Warehouse, "1"), 1);
    EXPECT_EQ(IdOf(MasterKind::Warehouse, "2"), 7) << "a warehouse is called 2";
    EXPECT_EQ(IdOf(MasterKind::Product, "3"), 3);
    EXPECT_EQ(Refusal(MasterKind::Product, "4"), "the book has no product 4");
    EXPECT_EQ(Refusal(MasterKind::Product, "-1"), "the book has no product -1");
    EXPECT_EQ(Refusal(MasterKind::Product, "99999999999"), "the book has no product 99999999999");
}

TEST_F(MastersTest, SeveralMatchesAreListed) {
    EXPECT_EQ(Refusal(MasterKind::Product, "水泥"),
              "'水泥' may be any of these products: 1 (01001 水泥 425#), 2 (01003 水泥 525#); give the id");
    EXPECT_EQ(Refusal(MasterKind::Warehouse, "旧库"),
              "'旧库' may be any of these warehouses: 8 (旧库), 9 (旧库); give the id");
}

TEST_F(MastersTest, WhatIsNotFoundIsSaidWithNearNames) {
    EXPECT_EQ(Refusal(MasterKind::Customer, "金桥"), "the book has no customer 金桥; near: 4 (金桥建筑公司)");
    EXPECT_EQ(Refusal(MasterKind::Employee, "王芳"), "the book has no employee 王芳");
    EXPECT_EQ(Refusal(MasterKind::Employee, " "), "the employee is not named");
    EXPECT_EQ(Refusal(MasterKind::Warehouse, "全部"), "the book has no warehouse 全部");
}

TEST_F(MastersTest, RowsWithoutIdsAreKnownByTheirPlace) {
    EXPECT_EQ(IdOf(MasterKind::Payment, "现金"), 2);
    EXPECT_EQ(IdOf(MasterKind::Payment, "2"), 2);
    EXPECT_EQ(Refusal(MasterKind::Payment, "3"), "the book has no payment method 3");
    EXPECT_EQ(IdOf(MasterKind::ProductClass, "02"), 1);
    EXPECT_EQ(IdOf(MasterKind::ProductClass, "水泥"), 2);
}

TEST_F(MastersTest, AClassIsKnownByItsCode) {
    EXPECT_EQ(ClassCodeOf(book_, MasterKind::CustomerClass, "零售"), "01");
    EXPECT_EQ(ClassCodeOf(book_, MasterKind::ProductClass, "水泥制品"), "02");
    EXPECT_THROW(ClassCodeOf(book_, MasterKind::Product, "1"), Error);
}

}  // namespace
}  // namespace kpTables::bookkeeping
