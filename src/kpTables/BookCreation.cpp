// Account book creation and clearing.
#include "kpTables/CTables.h"
#include "kpTables/Convert.h"
#include "kpTables/db/Access.h"

namespace kpTables {
namespace {

/// Deletes all headers of a bill family, then all lines.
void ClearBills(const ConnectionPtr& cnn, const std::string& kind) {
    db::Execute(cnn, "Delete from " + kind + "目录");
    db::Execute(cnn, "Delete from " + kind + "记录");
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
    try {
        const auto methods = db::Query(cnn_, "Select * From 收付款方式");
        if (methods->Eof()) {
            db::Execute(cnn_, "Insert into 收付款方式 (收付款方式,科目名称,科目代码) Values (' ',' ',' ')");
            db::Execute(cnn_, "Insert into 收付款方式 (收付款方式,科目名称,科目代码) Values ('现金','现金','101')");
        }
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

bool CTables::ClearInputRecs() {
    ClearBills(cnn_, "入库");
    return true;
}

bool CTables::ClearOutputRecs() {
    ClearBills(cnn_, "出库");
    return true;
}

// Unlike the other two on purpose: an error is trapped here and reaches the caller there.
bool CTables::ClearCostRecs() {
    try {
        ClearBills(cnn_, "成本");
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

bool CTables::SetBnCurrentDate(std::int16_t rYear, InOut<std::int16_t> rMonth) {
    db::Execute(cnn_, "Update 仓库余额表 Set 年份=" + Text(rYear) + " ,月份=" + Text(rMonth.get()));
    return true;
}

}  // namespace kpTables
