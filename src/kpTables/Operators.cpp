// The operators: names, rights, managed warehouses and passwords.
#include <string_view>

#include "kpTables/CTables.h"
#include "kpTables/Convert.h"
#include "kpTables/db/Access.h"

namespace kpTables {
namespace {

/// The column that keeps a right.
std::string RightColumn(const std::string& right) {
    if (right == "发货单位") return "资产处理";
    if (right == "收货单位") return "卡片打印";
    if (right == "部件管理") return "资产折旧";
    return right;
}

std::string OperatorText(std::int32_t id) { return "Select * From 操作员 Where ID=" + Text(id); }

/// Runs a statement; false when it fails.
bool Done(const ConnectionPtr& cnn, const std::string& text) {
    try {
        db::Execute(cnn, text);
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

void SetColumnsFrom(Recordset& row, int first, const Variant& value) {
    for (int i = first; i < row.FieldCount(); ++i) row.SetValue(i, value);
}

}  // namespace

RecordsetPtr CTables::rs操作员(std::int32_t rID) {
    if (rID >= 1) return db::Execute(cnn_, OperatorText(rID));
    const std::string all = "Select * From 操作员 Order By ID";
    auto operators = db::Execute(cnn_, all);
    if (operators && operators->Eof()) {
        操作员_Append("系统操作员");
        operators = db::Execute(cnn_, all);
    }
    return operators;
}

std::int32_t CTables::操作员_Append(const std::string& rName) {
    constexpr int kFirstRight = 3;
    const auto operators = db::OpenTable(cnn_, "操作员");
    operators->AddNew();
    operators->Fields("姓名").SetValue(rName);
    operators->Fields("密码").SetValue("");
    // The new row counts already, on purpose: the first operator too is added without rights.
    const bool first = operators->RecordCount() == 0;
    SetColumnsFrom(*operators, kFirstRight, std::int16_t{first});
    operators->Fields("凭证处理").SetValue(std::int16_t{1});
    operators->Update();
    const std::int32_t id = CLng(operators->Fields("ID").Value());
    operators->Close();
    return id;
}

bool CTables::操作员_Update(std::int32_t rID, const std::string& rName) {
    return Done(cnn_, "Update 操作员 set 姓名='" + rName + "' Where ID=" + Text(rID));
}

bool CTables::操作权限_Update(std::int32_t rID, const std::string& rRightName, InOut<bool> rValue) {
    return Done(cnn_,
                "Update 操作员 Set " + RightColumn(rRightName) + "=" + Text(rValue.get()) + " Where ID=" + Text(rID));
}

bool CTables::管理仓库_Update(std::int32_t rID, InOut<std::int32_t> rdpID) {
    return Done(cnn_, "Update 操作员 Set dpID=" + Text(rdpID.get()) + " Where ID=" + Text(rID));
}

bool CTables::操作员_Delete(std::int32_t rID) { return Done(cnn_, "Delete From 操作员 Where ID=" + Text(rID)); }

bool CTables::操作权限_Clear(std::int32_t rID) {
    // One column later than 操作员_Append on purpose: the column at position 3 is left as it is.
    constexpr int kFirstCleared = 4;
    try {
        const auto row = db::OpenText(cnn_, OperatorText(rID));
        if (row->RecordCount() == 1) {
            SetColumnsFrom(*row, kFirstCleared, false);
            row->Update();
        }
        row->Close();
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

std::string CTables::GetPassword(const std::string& rName, std::int32_t rID) {
    try {
        const auto row =
            db::OpenText(cnn_, rID < 1 ? "Select * From 操作员 Where姓名='" + rName + "'" : OperatorText(rID));
        return row->RecordCount() >= 1 ? db::TextField(*row, "密码") : "";
    } catch (const std::exception&) {
        return "";
    }
}

bool CTables::Update_Password(const std::string& rName, InOut<std::string> rPassWord, std::int32_t rID) {
    return Done(cnn_, "Update 操作员 Set 密码='" + rPassWord.get() +
                          (rID >= 1 ? "' Where ID=" + Text(rID) : "' Where 姓名='" + rName + "'"));
}

bool CTables::Clear_Password(std::int32_t rID) { return Done(cnn_, "Update 操作员 Set 密码='' Where ID=" + Text(rID)); }

bool CTables::Get操作权限(std::int32_t rID, const std::string& rFieldName) {
    try {
        return CBool(db::OpenText(cnn_, OperatorText(rID))->Fields(RightColumn(rFieldName)).Value());
    } catch (const std::exception&) {
        return false;
    }
}

std::int32_t CTables::Get管理仓库(std::int32_t rID) {
    try {
        return CLng(db::OpenText(cnn_, OperatorText(rID))->Fields("dpID").Value());
    } catch (const std::exception&) {
        return 0;
    }
}

std::string CTables::Get操作员(std::int32_t rID, const std::string& rFieldName) {
    try {
        return db::TextField(*db::OpenText(cnn_, OperatorText(rID)), rFieldName);
    } catch (const std::exception&) {
        return "";
    }
}

}  // namespace kpTables
