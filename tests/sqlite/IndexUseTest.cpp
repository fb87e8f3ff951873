// Every index of a book costs something at each row that is entered, so each must serve something that is asked.
#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>
#include <string_view>

#include "QueryPlan.h"
#include "TestBook.h"
#include "TestDatabase.h"
#include "corpus/Call.h"
#include "engines/sqlite/BookFile.h"
#include "sql/Translate.h"
#include "sql/parse/Parser.h"
#include "sql/print/sqlite/SqliteEngine.h"

namespace kpTables::engines::sqlite {
namespace {

using namespace test;

/// A closing reads what it is answered, so its statements are the corpus's.
constexpr const char* kClosing = "Close_DepotBalance(2, 3, True, #2004-03-31#)";

struct IndexUse {
    const char* index;       ///< a table and its index
    const char* call;        ///< of the component
    std::size_t number = 1;  ///< which of its statements is faster with it
};

constexpr IndexUse kUses[] = {
    {"仓库设置.仓库名称", R"(Get仓库ID("东库"))"},
    {"厂商资料.单位名称", R"(Get厂商ID("华新"))"},
    {"客户资料.单位名称", R"(Get客户ID("城建"))"},
    {"商品设置.商品条码", R"(Get商品ID("6900000000017"))"},
    {"商品设置.输入简码", R"(Get商品ID("SN"))", 2},
    {"商品设置.商品编号", R"(Get商品ID("01001"))", 3},
    {"商品设置.商品名称", R"(Get商品ID("水泥"))", 4},
    {"商品设置.ClassCode", R"(Get商品数量("01"))"},
    {"入库目录.仓库月份", kClosing, 2},
    {"入库目录.dpID", R"(rs单据列表("入库", "", "", "", "", "", 1, 0, 0, "", "", "", "", "", "", "", "", 0, 0, 0, 0))"},
    {"入库目录.日期",
     R"(rs单据列表("入库", "", #2004-03-07#, #2004-03-07#, "", "", 0, 0, 0, "", "", "", "", "", "", "", "", 0, 0, 0, 0))"},
    {"入库目录.月份单据", R"(GetShiftID(7, "出库"))", 2},
    {"入库目录.单据编号",
     R"(rs单据列表("入库", "", "", "", "R1", "R2", 0, 0, 0, "", "", "", "", "", "", "", "", 0, 0, 0, 0))"},
    {"入库目录.ksID", "rs单位入库记录(5)"},
    {"入库记录.BillID", R"(Get单据金额(7, "入库"))"},
    {"入库记录.pdID", "商品已经入库(5, 1)"},
    {"出库目录.仓库月份", kClosing, 3},
    {"出库目录.dpID", R"(rs单据列表("出库", "", "", "", "", "", 1, 0, 0, "", "", "", "", "", "", "", "", 0, 0, 0, 0))"},
    {"出库目录.日期",
     R"(rs单据列表("出库", "", #2004-03-07#, #2004-03-07#, "", "", 0, 0, 0, "", "", "", "", "", "", "", "", 0, 0, 0, 0))"},
    {"出库目录.月份单据", R"(GetShiftID(7, "入库"))", 2},
    {"出库目录.单据编号",
     R"(rs单据列表("出库", "", "", "", "R1", "R2", 0, 0, 0, "", "", "", "", "", "", "", "", 0, 0, 0, 0))"},
    {"出库目录.ksID", "rs单位出库记录(5)"},
    {"出库记录.BillID", R"(Get单据金额(7, "出库"))"},
    {"出库记录.pdID", R"(Get商品出库(1, 5, 3, "数量"))"},
    {"成本目录.仓库月份", kClosing, 6},
    {"成本记录.CostID", kClosing, 6},
    {"仓库余额表.仓库月份", kClosing},
    {"仓库余额表.年份月份", "rs月份列表()"},
    {"仓库余额表.pdID", R"(Get上期库存(1, 5, 3, "数量"))"},
    {"仓库盘点表.仓库月份", R"(rs商品列表(1, 0, 3, 3, "盘点"))"},
    {"销售汇总记录.ListID", "isSaled(1, 3)", 2},
    {"操作员.姓名", R"(GetPassword("朱琳"))"},
    {"Log.Operator", "AllowDelOperator(5)"},
    {"Log.logDate", "rsLog()"},
    {"Header.TableFlag", R"(Header(Grid("A"), "入库"))"},
    {"派遣目录.日期", "rs工作单列表(r起始日期:=#2004-03-07#, r结束日期:=#2004-03-07#)"},
    {"派遣记录.BillID", "rs工作单列表(r起始日期:=#2004-03-07#, r结束日期:=#2004-03-07#)"},
    {"工资表.月份", "rs工资表(3)"},
};

std::string TextOf(const IndexUse& use) {
    if (use.call == kClosing || std::string_view(use.call).starts_with("GetShiftID"))
        return corpus::Text(use.call, use.number);
    return corpus::SentBy(use.call).at(use.number - 1);
}

class IndexUseTest : public testing::Test {
protected:
    IndexUseTest() {
        CreateBook(directory_.File("book"));
        session_ = std::make_unique<TestDatabase>(OpenBookFile(directory_.File("book"), {}));
        session_->GetCatalog().Refresh();
    }

    std::string PlanOf(const std::string& text) const {
        const sql::StatementPtr statement = sql::parse::Parse(text);
        return test::PlanOf(
            session_->GetDatabase(),
            sql::Translate(*statement, session_->GetCatalog(), sql::print::sqlite::SqliteEngine()).text);
    }
    static bool Uses(const std::string& plan, const std::string& index) {
        const std::string use = "INDEX " + index;
        return (plan + ";").find(use + ";") != std::string::npos || plan.find(use + " ") != std::string::npos;
    }

    TemporaryDirectory directory_;
    std::unique_ptr<TestDatabase> session_;
};

TEST_F(IndexUseTest, EachServesAQuestion) {
    if (const std::string reason = test::OtherPlans(); !reason.empty()) GTEST_SKIP() << reason;
    for (const IndexUse& use : kUses) {
        const std::string text = TextOf(use);
        const auto plan = PlanOf(text);
        EXPECT_TRUE(Uses(plan, use.index)) << use.index << " is not used by " << text << ": " << plan;
    }
}

TEST_F(IndexUseTest, TheBookHasNoOthers) {
    std::set<std::string> used;
    for (const IndexUse& use : kUses) used.insert(use.index);
    std::set<std::string> made;
    PreparedStatement indexes =
        session_->GetDatabase().Prepare("SELECT name FROM sqlite_schema WHERE type = 'index' AND sql IS NOT NULL");
    while (indexes.Step()) made.emplace(indexes.Text(0));
    EXPECT_EQ(made, used);
}

}  // namespace
}  // namespace kpTables::engines::sqlite
