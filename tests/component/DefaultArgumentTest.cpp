// Arguments that a C++ caller leaves out are those that a call by name leaves out.
#include <gtest/gtest.h>

#include <functional>

#include "BookScript.h"
#include "corpus/Call.h"
#include "kpTables/MemoryGrid.h"

namespace kpTables::test {
namespace {

GridPtr GridWithKeys(const std::vector<std::string>& keys) {
    const auto grid = std::make_shared<MemoryGrid>();
    for (const auto& key : keys) grid->AddColumn({key, key, false, 10});
    return grid;
}

TEST(DefaultArguments, SendTheStatementsOfTheShorterCall) {
    struct Case {
        const char* call;  ///< as the corpus has it
        std::function<void(CTables&)> same;
    };
    const Case cases[] = {
        {"rs厂商分类()", [](CTables& t) { t.rs厂商分类(); }},
        {"rs厂商资料()", [](CTables& t) { t.rs厂商资料(); }},
        {"rs客户分类()", [](CTables& t) { t.rs客户分类(); }},
        {"rs客户资料()", [](CTables& t) { t.rs客户资料(); }},
        {"rs项目分类()", [](CTables& t) { t.rs项目分类(); }},
        {"rs项目资料()", [](CTables& t) { t.rs项目资料(); }},
        {"rs部门分类()", [](CTables& t) { t.rs部门分类(); }},
        {"rs雇员资料()", [](CTables& t) { t.rs雇员资料(); }},
        {"rs仓库列表()", [](CTables& t) { t.rs仓库列表(); }},
        {"rs厂商列表()", [](CTables& t) { t.rs厂商列表(); }},
        {"rs项目列表()", [](CTables& t) { t.rs项目列表(); }},
        {"rs商品分类()", [](CTables& t) { t.rs商品分类(); }},
        {"rs商品资料(5)", [](CTables& t) { t.rs商品资料(5); }},
        {R"(rs商品资料(5, " 01 "))", [](CTables& t) { t.rs商品资料(5, " 01 "); }},
        {"rs商品资料()", [](CTables& t) { t.rs商品资料(); }},
        {"商品已被使用(9)", [](CTables& t) { t.商品已被使用(9); }},
        {"Get商品数量()", [](CTables& t) { t.Get商品数量(); }},
        {"rs月份列表()", [](CTables& t) { t.rs月份列表(); }},
        {"rs仓库余额表()", [](CTables& t) { t.rs仓库余额表(); }},
        {"rs仓库余额表(2)", [](CTables& t) { t.rs仓库余额表(2); }},
        {"Del仓库余额表()", [](CTables& t) { t.Del仓库余额表(); }},
        {"Del仓库余额表(3)", [](CTables& t) { t.Del仓库余额表(3); }},
        {"清理仓库余额表(5)", [](CTables& t) { t.清理仓库余额表(5); }},
        {"商品已经入库(8)", [](CTables& t) { t.商品已经入库(8); }},
        {"rs仓库余额表期初()", [](CTables& t) { t.rs仓库余额表期初(); }},
        {"rs仓库余额表期初(3)", [](CTables& t) { t.rs仓库余额表期初(3); }},
        {"rs仓库余额表期初(3, 2)", [](CTables& t) { t.rs仓库余额表期初(3, 2); }},
        {"rs余额记录()", [](CTables& t) { t.rs余额记录(); }},
        {"Close_DepotBalance(2, 3, False, #2004-03-31#)",
         [](CTables& t) { t.Close_DepotBalance(2, 3, false, Day("2004-03-31")); }},
        {R"(Get本期库存(2, 7, 3, "数量"))", [](CTables& t) { t.Get本期库存(2, 7, 3, "数量"); }},
        {R"(Get商品入库(0, 0, 0, "数量"))", [](CTables& t) { t.Get商品入库(0, 0, 0, "数量"); }},
        {R"(Get商品入库(0, 0, 0, "数量", "直接"))", [](CTables& t) { t.Get商品入库(0, 0, 0, "数量", "直接"); }},
        {R"(Get商品出库(0, 0, 12, "数量"))", [](CTables& t) { t.Get商品出库(0, 0, 12, "数量"); }},
        {R"(Get商品出库(2, 7, 3, "单价", "购进"))", [](CTables& t) { t.Get商品出库(2, 7, 3, "单价", "购进"); }},
        {R"(Get商品库存(2, 7, 3, "金额"))", [](CTables& t) { t.Get商品库存(2, 7, 3, "金额"); }},
        {R"(Get商品成本(0, 0, "", "数量"))", [](CTables& t) { t.Get商品成本(0, 0, "", "数量"); }},
        {R"(rs商品列表(0, 0, 2, 5, "仓库"))", [](CTables& t) { t.rs商品列表(0, 0, 2, 5, "仓库"); }},
        {R"(rs商品列表(0, 0, 0, 0, "入库", "A1"))", [](CTables& t) { t.rs商品列表(0, 0, 0, 0, "入库", "A1"); }},
        {R"(rs日报记录(0, 0, #2004-03-07#, "出库"))",
         [](CTables& t) { t.rs日报记录(0, 0, Day("2004-03-07"), "出库"); }},
        {"rs项目汇总表()", [](CTables& t) { t.rs项目汇总表(); }},
        {"rs操作员()", [](CTables& t) { t.rs操作员(); }},
        {R"(GetPassword("张三"))", [](CTables& t) { t.GetPassword("张三"); }},
        {R"(Update_Password("张三", "m1"))", [](CTables& t) { t.Update_Password("张三", "m1"); }},
        {R"(Header(Grid("A", "B"), "L", "F", True))",
         [](CTables& t) {
             t.Header(GridWithKeys({"A", "B"}), "L", "F", true);
         }},
        {R"(Header(Grid("A", "B"), "L", "F"))",
         [](CTables& t) {
             t.Header(GridWithKeys({"A", "B"}), "L", "F");
         }},
        {R"(Header(Grid("A", "B", "C"), "L"))",
         [](CTables& t) {
             t.Header(GridWithKeys({"A", "B", "C"}), "L");
         }},
        {"rs工资表(3)", [](CTables& t) { t.rs工资表(3); }},
        {"rs工资表(1, 6)", [](CTables& t) { t.rs工资表(1, 6); }},
    };
    for (const Case& each : cases) {
        for (const bool isSQL : {false, true}) {
            SCOPED_TRACE(each.call);
            const corpus::Case& expected = corpus::Find(each.call);
            BookScript book;
            for (const corpus::Statement& statement : expected.Statements(isSQL))
                book.cnn->Answer(statement.answer.empty() ? MakeRows({}, {}) : corpus::ParseRows(statement.answer));
            book.tables.isSQL(isSQL);
            each.same(book.tables);
            EXPECT_EQ(book.cnn->Statements(), corpus::Expected(expected, isSQL));
        }
    }
}

}  // namespace
}  // namespace kpTables::test
