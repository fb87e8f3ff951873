// Account book creation and clearing.
#include "kpTables/CTables.h"
#include "kpTables/Convert.h"
#include "kpTables/Fill.h"
#include "kpTables/Trapped.h"
#include "kpTables/db/Access.h"

namespace kpTables {
namespace {

/// Deletes all headers of a bill family, then all lines.
void ClearBills(const ConnectionPtr& cnn, const std::string& kind) {
    db::Execute(cnn, Fill("Delete from {kind}目录", "kind"_gap(kind)));
    db::Execute(cnn, Fill("Delete from {kind}记录", "kind"_gap(kind)));
}

}  // namespace

bool CTables::Create_NewBook() {
    Update_Option("帐簿名称", "新帐簿");
    Update_Option("单位名称", "(新单位)");
    Update_Option("建帐日期", Variant(Format(host_->Today(), "yyyy年MM月dd日")));
    return true;
}

bool CTables::CancCreateBook() {
    Update_Option("当前日期", "");
    return false;
}

bool CTables::SetDefaultSFK() {
    return Done([&] {
        const auto methods = db::Query(cnn_, "Select * From 收付款方式");
        if (methods->Eof()) {
            db::Execute(cnn_, "Insert into 收付款方式 (收付款方式,科目名称,科目代码) Values (' ',' ',' ')");
            db::Execute(cnn_, "Insert into 收付款方式 (收付款方式,科目名称,科目代码) Values ('现金','现金','101')");
        }
    });
}

bool CTables::ClearInputRecs() {
    ClearBills(cnn_, "入库");
    return true;
}

bool CTables::ClearOutputRecs() {
    ClearBills(cnn_, "出库");
    return true;
}

// Unlike in the other two, an error is trapped; kept for compatibility.
bool CTables::ClearCostRecs() {
    return Done([&] { ClearBills(cnn_, "成本"); });
}

bool CTables::SetBnCurrentDate(std::int16_t rYear, InOut<std::int16_t> rMonth) {
    db::Execute(cnn_, Fill("Update 仓库余额表 Set 年份={year} ,月份={month}", "year"_gap(rYear), "month"_gap(rMonth)));
    return true;
}

}  // namespace kpTables
